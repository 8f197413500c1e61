#include "modules/purchases/registers/employees_fin_supp/tf_employees_fin_supp.h"

#include "contract/employees_fin_supp.h"
#include "kit/action_table.h"
#include "kit/column_hand_over.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "modules/core/lookups.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kEmployeeGroup = "Служител";

constexpr auto kHasRows = &When<&TfEmployeesFinSupp::HasRows>;
constexpr LiveRow kLive[] = {
    // action               focus      state               needs     when
    {"acDelete", kAnywhere, InState::NotInsert, paDelete, kHasRows},
    {"acPrint", kAnywhere, InState::NotInsert, {}, kHasRows},
    {"acCancel", kAnywhere, InState::Insert, {}, kHasRows},
    {"acCancel", kAnywhere, InState::NotInsert, paEdit},
    {"acSearchByCode", "cbEmployees"},
    {"acSearchByName", "cbEmployees"},
    {"acSearchByPartName", "cbEmployees"},
    {"acNomenclature", "cbEmployees", InState::Any, {}, &AtComboOfRegister},
    {"acExit", kAnywhere},
};

}  // namespace

TfEmployeesFinSupp::TfEmployeesFinSupp(const FormIdentity& identity)
    : TVosDBForm(identity, "TfEmployeesFinSupp", "Служители, финансиращи доставки"),
      dmEmployeesFinSupp(std::make_unique<TdmEmployeesFinSupp>(*this)),
      cbNomIn246(*this, "cbNomIn246", dmEmployeesFinSupp->nomIn246),
      cbEmployees(*this, "cbEmployees", dmEmployeesFinSupp->employees),
      gEmployeesFinSupp(*this, "gEmployeesFinSupp", dmEmployeesFinSupp->dsEmployeesFinSupp),
      register_(*this, gEmployeesFinSupp, {.number = 32}, {.nomenclature = "Номенклатура"}) {
  SetUpLookup(cbNomIn246, core::NomIn());
  dmEmployeesFinSupp->nomIn246.SetParam("Nom", employees_fin_supp::kKindsOfSection);
  SetUpLookup(cbEmployees, core::Employees());
  gEmployeesFinSupp.columns = {
      Column("lupKindSectionName", 30, "Вид отдел").Edit(cbNomIn246),
      Column("Employee", 20, "Код").Under(kEmployeeGroup).Edit(cbEmployees),
      Column("EmpName", 30, "Име").Under(kEmployeeGroup).ReadOnly(),
  };
  gEmployeesFinSupp.emptyText = "Няма въведени служители. Стрелка надолу добавя първия.";
  HandOverColumns(gEmployeesFinSupp, {{.from = "Employee", .to = "EmpName"}});
  dmEmployeesFinSupp->dsEmployeesFinSupp.OnStateChange = [this] { register_.StateChange(); };
  register_.AddTo();
}

std::span<const LiveRow> TfEmployeesFinSupp::LiveRows() const {
  return kLive;
}

}  // namespace orvane::modules
