#include "kit/lookup_setup.h"

#include <utility>

#include "kit/columns.h"

namespace orvane::kit {

void SetUpLookup(TVosMTCombo& combo, LookupSetup setup) {
  combo.mode = setup.mode;
  combo.lookupNameField = std::move(setup.nameField);
  combo.lookupTrNameField = std::move(setup.nameField2);
  combo.dlgCaption = std::move(setup.caption);
  combo.mask = std::move(setup.mask);
  combo.nomenclatureClass = std::move(setup.nomenclatureClass);
  combo.Table().SetTemplate(std::move(setup.sql));
  combo.Table().dlgSearchFields = std::move(setup.searchFields);
}

std::vector<SearchField> CodeAndNames(std::string_view code, std::string_view alias) {
  const std::string before(alias);
  return {
      SearchBy(before + std::string(code), "Код"),
      SearchBy(before + "Name", "Име").In(Visibility::fvFirstLang).ByPart(),
      SearchBy(before + "Name2", "Име 2").In(Visibility::fvSecondLang).ByPart(),
  };
}

}  // namespace orvane::kit
