#include "modules/purchases/registers/admissible_notifiers/tdm_admissible_notifiers.h"

#include "contract/admissible_notifiers.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/name_fills.h"
#include "kit/required_fields.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/registers/admissible_notifiers/tf_admissible_notifiers.h"

namespace orvane::modules {

using namespace admissible_notifiers;

TdmAdmissibleNotifiers::TdmAdmissibleNotifiers(TfAdmissibleNotifiers& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcAdmissibleNotifiers(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsAdmissibleNotifiers("cdsAdmissibleNotifiers", sqlcAdmissibleNotifiers,
                             dspAdmissibleNotifiers),
      cdsCostCenters("cdsCostCenters", cSQL, {core::CostCenter, core::Name30, core::Name30Second}),
      cdsEmployees("cdsEmployees", cSQL, {core::Employee, core::Name30, core::Name30Second}),
      costCenters(cdsCostCenters, "CostCenter"),
      employees(cdsEmployees, "Employee"),
      dsAdmissibleNotifiers(cdsAdmissibleNotifiers),
      form_(form) {
  cdsAdmissibleNotifiers.SetIndexFieldNames("CostCenter;Notifier");
  NameRows(cdsAdmissibleNotifiers,
           {{"Заявител", Notifier.name}, {"център на разход", CostCenter.name}});
  ApplyAtOnce(form_, cdsAdmissibleNotifiers, {.maxErrors = -1, .form = ApplyForm::Repeated});
  FillNames(
      form_, cdsAdmissibleNotifiers,
      {{"CostCenter", costCenters, "CostCenterName"}, {"Notifier", employees, "NotifierName"}},
      FillLanguage::First);
  cdsAdmissibleNotifiers.BeforePost = [this] { cdsAdmissibleNotifiersBeforePost(); };
}

void TdmAdmissibleNotifiers::Fetch() {
  FetchTogether({&costCenters, &employees}, {&cdsAdmissibleNotifiers});
}

void TdmAdmissibleNotifiers::cdsAdmissibleNotifiersBeforePost() {
  if (!cdsAdmissibleNotifiers[Notifier].IsEmpty()) return;
  RefuseAt(form_, form_.gAdmissibleNotifiers, Notifier.name, "Не е въведено поле \"Заявител\"!",
           kErrorMessage);
}

}  // namespace orvane::modules
