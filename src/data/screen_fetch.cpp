#include "data/screen_fetch.h"

#include <utility>
#include <vector>

#include "data/connection.h"

namespace orvane {
namespace {

/// Closes connections at the end of a scope, also when a call failed.
class ClosesAfter {
 public:
  void Add(TVosSQLConnection* connection) {
    if (connection != nullptr) connections_.push_back(connection);
  }
  TVosSQLConnection& First() const { return *connections_.front(); }
  ~ClosesAfter() {
    for (TVosSQLConnection* connection : connections_)
      connection->Close();
  }

 private:
  std::vector<TVosSQLConnection*> connections_;
};

}  // namespace

void FetchTogether(std::initializer_list<TLookupTable*> lookups,
                   std::initializer_list<TVosClientDataSet*> dataSets) {
  ClosesAfter connections;
  std::vector<FetchRequest> requests;
  for (const TLookupTable* lookup : lookups) {
    requests.push_back(lookup->FillRequest());
    connections.Add(lookup->DataSet().Connection());
  }
  for (const TVosClientDataSet* dataSet : dataSets) {
    requests.push_back(dataSet->MakeFetchRequest());
    connections.Add(dataSet->Connection());
  }
  if (requests.empty()) return;
  std::vector<DataPacket> packets = connections.First().Fetch(requests);
  std::size_t next = 0;
  for (TLookupTable* lookup : lookups)
    lookup->TakeFilled(std::move(packets[next++]));
  for (TVosClientDataSet* dataSet : dataSets)
    dataSet->LoadPacket(std::move(packets[next++]));
}

}  // namespace orvane
