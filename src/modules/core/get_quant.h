#pragma once

// The quantity dialog: a quantity of goods that are counted in ordinary fractions, taken apart into
// units of its block (41 dozens and 8 pieces), and put together again.

#include <cstdint>
#include <optional>

#include "data/client_dataset.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::modules {

/// Asks over `owner` for a quantity in whole smallest units. The dialog opens on `quantity`, taken
/// apart into the units of `units` (Code, Name, Name2, Numerator), largest first, the row's own
/// unit being `measure`. Empty when the user left without confirming.
std::optional<std::int64_t> GetQuant(TVosBaseForm& owner, const Variant& measure,
                                     std::int64_t quantity, TVosClientDataSet& units);

}  // namespace orvane::modules
