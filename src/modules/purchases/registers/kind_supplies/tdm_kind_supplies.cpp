#include "modules/purchases/registers/kind_supplies/tdm_kind_supplies.h"

#include "contract/kind_supplies.h"
#include "kit/immediate_apply.h"
#include "kit/row_names.h"

namespace orvane::modules {

using namespace kind_supplies;

TdmKindSupplies::TdmKindSupplies(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqKindSupplies(Session(), Point(), kServerClass),
      cdKindSupplies("cdKindSupplies", sqKindSupplies, kind_supplies::dsKindSupplies),
      dsKindSupplies(cdKindSupplies),
      form_(form) {
  cdKindSupplies.SetIndexFieldNames("Code");
  cdKindSupplies.BeforePost = [this] {
    form_.RefuseIf(cdKindSupplies[Name].IsBlank(), "Попълнете стойност в поле 'Име'");
  };
  NameRows(cdKindSupplies, {{"Вид покупка", Code.name}});
  ApplyAtOnce(form_, cdKindSupplies, {.maxErrors = 0, .form = ApplyForm::Once});
}

void TdmKindSupplies::Fetch() {
  FetchTogether({&cdKindSupplies});
}

}  // namespace orvane::modules
