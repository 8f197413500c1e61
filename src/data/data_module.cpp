#include "data/data_module.h"

#include <utility>
#include <vector>

namespace orvane {
namespace {

/// Closes the connections of datasets on every way out.
class ConnectionsCloser {
 public:
  explicit ConnectionsCloser(const std::vector<TVosClientDataSet*>& dataSets) {
    for (const TVosClientDataSet* dataSet : dataSets)
      connections_.push_back(dataSet->Connection());
  }
  ~ConnectionsCloser() {
    for (TVosSQLConnection* connection : connections_) {
      if (connection != nullptr) connection->Close();
    }
  }
  ConnectionsCloser(const ConnectionsCloser&) = delete;
  ConnectionsCloser& operator=(const ConnectionsCloser&) = delete;

 private:
  std::vector<TVosSQLConnection*> connections_;
};

}  // namespace

void FetchTogether(std::initializer_list<TVosClientDataSet*> dataSets) {
  FetchTogether(std::vector<TVosClientDataSet*>(dataSets));
}

void FetchTogether(const std::vector<TVosClientDataSet*>& dataSets) {
  if (dataSets.empty()) return;
  const ConnectionsCloser closer(dataSets);
  std::vector<FetchRequest> requests;
  for (const TVosClientDataSet* dataSet : dataSets)
    requests.push_back(dataSet->MakeFetchRequest());
  std::vector<DataPacket> packets = dataSets.front()->Connection()->Fetch(requests);
  for (std::size_t i = 0; i < dataSets.size(); ++i)
    dataSets[i]->LoadPacket(std::move(packets[i]));
}

}  // namespace orvane
