#include "modules/purchases/frame/screens.h"

#include <algorithm>

#include "contract/points.h"
#include "data/abort.h"
#include "host/application.h"
#include "host/dialogs.h"
#include "modules/purchases/contracts/tf_supplies_contracts.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"
#include "modules/purchases/purchase_requests/tf_purchase_order_report.h"
#include "modules/purchases/registers/admissible_notifiers/tf_admissible_notifiers.h"
#include "modules/purchases/registers/cap_ex_plan/tf_cap_ex_plan.h"
#include "modules/purchases/registers/department/tf_department.h"
#include "modules/purchases/registers/employees_fin_supp/tf_employees_fin_supp.h"
#include "modules/purchases/registers/kind_supplies/tf_kind_supplies.h"
#include "modules/purchases/registers/levels_approval/tf_levels_approval.h"
#include "modules/purchases/registers/orvane_parameters/tf_orvane_parameters.h"
#include "modules/purchases/registers/structure/tf_structure.h"
#include "modules/purchases/registers/structure_deputies/tf_structure_deputies.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane {
namespace {

template <class FormClass>
std::unique_ptr<TVosBaseForm> MakeScreen(const FormIdentity& identity) {
  return std::make_unique<FormClass>(identity);
}

struct ScreenEntry {
  std::string_view className;
  FormFactory factory;  ///< null: not available yet
};

constexpr ScreenEntry kScreens[] = {
    {"TfOrvaneMain", &MakeScreen<TfOrvaneMain>},
    {"TfDepartment", &MakeScreen<TfDepartment>},
    {"TfKindSupplies", &MakeScreen<TfKindSupplies>},
    {"TfEmployeesFinSupp", &MakeScreen<TfEmployeesFinSupp>},
    {"TfOrvaneParameters", &MakeScreen<TfOrvaneParameters>},
    {"TfStructure", &MakeScreen<TfStructure>},
    {"TfStructureDeputies", &MakeScreen<TfStructureDeputies>},
    {"TfLevelsApproval", &MakeScreen<TfLevelsApproval>},
    {"TfCapExPlan", &MakeScreen<TfCapExPlan>},
    {"TfDeliveries", nullptr},
    {"TfSuppManifacOrder", &MakeScreen<TfSuppManifacOrder>},
    {"TfAdmissibleNotifiers", &MakeScreen<TfAdmissibleNotifiers>},
    {"TfSuppliesContracts", &MakeScreen<TfSuppliesContracts>},
    {"TfPurchaseOrder", &MakeScreen<TfPurchaseOrder>},
    {"TfRegisterSuppInvoice", nullptr},
    {"TfPurchaseOrderReport", &MakeScreen<TfPurchaseOrderReport>},
    {"TfSuppDocConfirm", nullptr},
    {"TfQuestionInitEvalMap", nullptr},
    {"TfInitialEvaluationMap", nullptr},
    {"TfPeriodEvaluationMap", nullptr},
    {"TfCriteriaEvalSupp", nullptr},
    {"TfEvalCommitteeSupp", nullptr},
};

/// Siblings are linked into the program: bringing one in gives it the next handle.
std::int64_t BringIn(const VosApplication& app) {
  std::int64_t highest = 0;
  for (const ModuleEntry& entry : app.modules)
    highest = std::max(highest, entry.libraryHandle);
  return highest + 1;
}

}  // namespace

void RegisterOrvaneModule(VosApplication& app) {
  for (const ScreenEntry& entry : kScreens)
    app.classes.Register(entry.className, entry.factory);
  for (const PointRow& row : kPoints) {
    app.points.push_back({static_cast<std::int32_t>(row.point),
                          std::string(row.name),
                          std::string(row.screenClass),
                          std::string(row.caption),
                          {}});
  }
  app.modules = {{std::string(kSuppliesModule), "supplies", 0},
                 {std::string(kInvoicesModule), "invoices", 0}};
  app.LoadPackage = [&app](const ModuleEntry&) { return BringIn(app); };
  app.TakeRights();
}

std::unique_ptr<TfOrvaneMain> StartOrvaneModule(VosApplication& app) {
  try {
    return std::make_unique<TfOrvaneMain>(
        FormIdentity{&app, nullptr, kOrvaneModuleNo, 0, nullptr, paOpen});
  } catch (const Abort&) {
    return nullptr;
  }
}

}  // namespace orvane
