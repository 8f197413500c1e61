#pragma once

// A lookup combo with everything it needs, as one value:
//
//   SetUpLookup(cbKindSupplies, KindSuppliesLookup());

#include <string>
#include <string_view>
#include <vector>

#include "data/search_template.h"
#include "host/controls/combo.h"

namespace orvane::kit {

struct LookupSetup {
  std::string caption = {};           ///< of its search dialog
  std::vector<std::string> sql = {};  ///< lines of its template; empty: given later
  std::string nameField = "Name";
  std::string nameField2 = "Name2";
  std::vector<SearchField> searchFields = {};
  std::string mask = {};               ///< of the code
  std::string nomenclatureClass = {};  ///< screen of the register behind it
  LookupMode mode = LookupMode::lmCode;
};

/// Masks of codes: whole numbers that do not begin with 0.
inline constexpr std::string_view kMaskCode19 = "{1,2,3,4,5,6,7,8,9}[*18[#]]";
inline constexpr std::string_view kMaskCode9 = "{1,2,3,4,5,6,7,8,9}[*8[#]]";
inline constexpr std::string_view kMaskCode4 = "{1,2,3,4,5,6,7,8,9}[*3[#]]";

/// Settles the combo's names, search and mask, and its table's template.
void SetUpLookup(TVosMTCombo& combo, LookupSetup setup);

/// Search fields of a register with a code and a name in two languages; `alias` ("cc.") stands
/// before the columns where the template needs it.
std::vector<SearchField> CodeAndNames(std::string_view code, std::string_view alias = {});

}  // namespace orvane::kit
