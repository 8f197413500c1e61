#include "data/data_module.h"

#include <utility>
#include <vector>

#include "data/connection_scope.h"

namespace orvane::data {

void FetchTogether(std::initializer_list<TVosClientDataSet*> dataSets) {
  FetchTogether(std::vector<TVosClientDataSet*>(dataSets));
}

void FetchTogether(const std::vector<TVosClientDataSet*>& dataSets) {
  ConnectionScope scope;
  std::vector<FetchRequest> requests;
  for (const TVosClientDataSet* dataSet : dataSets) {
    scope.Add(dataSet->Connection());
    requests.push_back(dataSet->MakeFetchRequest());
  }
  std::vector<DataPacket> packets = scope.Fetch(requests);
  for (std::size_t i = 0; i < packets.size(); ++i)
    dataSets[i]->LoadPacket(std::move(packets[i]));
}

}  // namespace orvane::data
