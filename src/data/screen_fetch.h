#pragma once

#include <initializer_list>

#include "data/client_dataset.h"
#include "data/lookup_table.h"

namespace orvane {

/// Fetches what a screen opens with: the first portions of its lookups and its datasets, all with
/// one call; the connections are closed afterwards whatever happens.
void FetchTogether(std::initializer_list<TLookupTable*> lookups,
                   std::initializer_list<TVosClientDataSet*> dataSets);

}  // namespace orvane
