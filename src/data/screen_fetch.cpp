#include "data/screen_fetch.h"

#include <utility>

#include "data/connection_scope.h"

namespace orvane::data {

void FetchTogether(std::initializer_list<TLookupTable*> lookups,
                   std::initializer_list<TVosClientDataSet*> dataSets) {
  FetchTogether(std::vector<TLookupTable*>(lookups), std::vector<TVosClientDataSet*>(dataSets));
}

void FetchTogether(const std::vector<TLookupTable*>& lookups,
                   const std::vector<TVosClientDataSet*>& dataSets) {
  ConnectionScope scope;
  std::vector<FetchRequest> requests;
  for (const TLookupTable* lookup : lookups) {
    scope.Add(lookup->DataSet().Connection());
    requests.push_back(lookup->FillRequest());
  }
  for (const TVosClientDataSet* dataSet : dataSets) {
    scope.Add(dataSet->Connection());
    requests.push_back(dataSet->MakeFetchRequest());
  }
  std::vector<DataPacket> packets = scope.Fetch(requests);
  auto packet = packets.begin();
  for (TLookupTable* lookup : lookups)
    lookup->TakeFilled(std::move(*packet++));
  for (TVosClientDataSet* dataSet : dataSets)
    dataSet->LoadPacket(std::move(*packet++));
}

}  // namespace orvane::data
