#pragma once

// Units of measure of a document's row. Units are grouped by hundreds: codes 100 to 199 are one
// block, within which quantities convert; a row may use any unit of its block, or only its item's
// own ones.

#include <string>
#include <vector>

#include "data/client_dataset.h"
#include "data/lookup_table.h"

namespace orvane::kit {

/// Units of a row's item, as its dataset names them.
struct UnitFields {
  std::string_view measure = "Measure";
  std::string_view inventory = "InventoryId";
  std::string_view service = "ServiceCode";
  std::string_view serviceMeasure = "servMeasure";
  /// The item's other units, in the order in which they are offered.
  std::vector<std::string_view> ownMeasures = {"msMeasure", "IncomeMeasure", "BarCodeMeasure"};
};

/// The line that narrows the units to those that make sense for the row: "WHERE Code IN (…)" for a
/// material limited to its own units, otherwise the block of hundreds of its unit (of the service's
/// unit for a service). Empty for a row that is neither: nothing changes then.
std::string UnitsClause(TVosClientDataSet& rows, const UnitFields& fields, bool ownUnitsOnly);

/// Puts the clause into the third line of the units' template. When that changed it they are stale,
/// and fetched when one is needed.
void NarrowUnits(TLookupTable& units, const std::string& clause);

}  // namespace orvane::kit
