#pragma once

// Names that a row shows beside its codes, filled on the client as soon as a code is typed. One
// rule for all of them: an empty code clears the name, a code that its list does not know leaves
// it.
//
//   FillNames(form, cdsStructure, {{"CostCenter", costCenters, "CCName"},
//                                  {"Department", departments, "DepName"}});

#include <cstdint>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/lookup_table.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// A code, the list it is chosen from, and the field that shows its name.
struct NameFill {
  std::string_view code;
  TLookupTable& table;
  std::string_view name;
};

/// Whose name it is: of the language the user works in, or always of the first one.
enum class FillLanguage : std::uint8_t { Working, First };

/// Binds OnChange of every code. A code that has not arrived with its list is asked for (one call).
/// After a change that was not taken the names follow the codes that its row holds then, whether or
/// not it is the current one. Called after ApplyAtOnce, whose handlers go first.
void FillNames(TVosBaseForm& form, TVosClientDataSet& rows, const std::vector<NameFill>& fills,
               FillLanguage language = FillLanguage::Working);

/// The language of names that the server joins to rows: 1 first, 2 second (parameter LNG).
int NamesLanguage(const TVosBaseForm& form);

}  // namespace orvane::kit
