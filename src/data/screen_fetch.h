#pragma once

#include <initializer_list>
#include <vector>

#include "data/client_dataset.h"
#include "data/lookup_table.h"

namespace orvane::data {

/// Fetches what a screen opens with: the first portions of its lookups and its datasets, all with
/// one call; the connections are closed afterwards whatever happens.
void FetchTogether(std::initializer_list<TLookupTable*> lookups,
                   std::initializer_list<TVosClientDataSet*> dataSets);
void FetchTogether(const std::vector<TLookupTable*>& lookups,
                   const std::vector<TVosClientDataSet*>& dataSets);

}  // namespace orvane::data
