#pragma once

// Names for rows whose codes have not arrived with the first portion of a lookup: all that several
// datasets miss is fetched with one call.
//
//   CompleteLookups({{cdsStructure, "CCName", costCenters}, {cdsStructure, "DepName",
//   departments}});

#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/lookup_table.h"

namespace orvane::data {

/// A lookup field of a dataset, and the table whose rows it shows.
struct LookupNeed {
  TVosClientDataSet& dataSet;
  std::string_view lookupField;
  TLookupTable& table;
};

/// Fetches the rows of all keys that the lookups miss; nothing is sent when they miss none. Keys
/// the server does not know are asked for once. Tables must not be stale.
void CompleteLookups(const std::vector<LookupNeed>& needs);

}  // namespace orvane::data
