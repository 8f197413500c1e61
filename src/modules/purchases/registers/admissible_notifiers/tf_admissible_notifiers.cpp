#include "modules/purchases/registers/admissible_notifiers/tf_admissible_notifiers.h"

#include "kit/column_hand_over.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "modules/core/lookups.h"
#include "modules/purchases/registers/structure_deputies/open_structure_deputies.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kCostCenterGroup = "Център на разход";
constexpr std::string_view kNotifierGroup = "Заявител";

constexpr LiveRow kDeputies{"acStructureDeputies", kAnywhere, InState::NotInsert};
constexpr auto kLive = WithRow(kRegisterLive, kDeputies);

}  // namespace

TfAdmissibleNotifiers::TfAdmissibleNotifiers(const FormIdentity& identity)
    : TVosDBForm(identity, "TfAdmissibleNotifiers", "Допустими заявители"),
      dmAdmissibleNotifiers(std::make_unique<TdmAdmissibleNotifiers>(*this)),
      cbCostCenter(*this, "cbCostCenter", dmAdmissibleNotifiers->costCenters),
      cbEmployee(*this, "cbEmployee", dmAdmissibleNotifiers->employees),
      gAdmissibleNotifiers(*this, "gAdmissibleNotifiers",
                           dmAdmissibleNotifiers->dsAdmissibleNotifiers),
      register_(*this, gAdmissibleNotifiers,
                {.number = 34, .variantOneLanguage = 2, .variantTwoLanguages = 2},
                {.nomenclature = "Преход към номенклатура", .operations = "Основни"}) {
  SetUpLookup(cbCostCenter, core::CostCenters("Търсене - Център на разход"));
  SetUpLookup(cbEmployee, core::Employees("Търсене - Заявител"));
  gAdmissibleNotifiers.columns = {
      Column("CostCenter", 8, "Код").Under(kCostCenterGroup).Edit(cbCostCenter),
      Column("CostCenterName", 30, "Име").Under(kCostCenterGroup).ReadOnly(),
      Column("Notifier", 8, "Код").Under(kNotifierGroup).Edit(cbEmployee),
      Column("NotifierName", 30, "Име").Under(kNotifierGroup).ReadOnly(),
  };
  gAdmissibleNotifiers.emptyText =
      "Няма въведени допустими заявители. Стрелка надолу добавя първия.";
  HandOverColumns(gAdmissibleNotifiers,
                  {{.from = "Notifier", .to = "NotifierName", .onDown = true}});
  dmAdmissibleNotifiers->dsAdmissibleNotifiers.OnStateChange = [this] { register_.StateChange(); };
  register_.AddTo();
  register_.AddOperation(StructureDeputiesAction(*this));
}

std::span<const LiveRow> TfAdmissibleNotifiers::LiveRows() const {
  return kLive;
}

}  // namespace orvane::modules
