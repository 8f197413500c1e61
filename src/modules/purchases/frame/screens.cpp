#include "modules/purchases/frame/screens.h"

#include <algorithm>

#include "contract/points.h"
#include "data/abort.h"
#include "host/application.h"
#include "host/dialogs.h"
#include "kit/documents/waiting.h"
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
#include "modules/purchases/supplier_orders/tf_supp_manifac_order_report.h"

namespace orvane::modules {
namespace {

template <class FormClass>
std::unique_ptr<TVosBaseForm> MakeScreen(const FormIdentity& identity) {
  return std::make_unique<FormClass>(identity);
}

struct ScreenEntry {
  std::string_view className;
  FormFactory factory;  ///< null: not available yet
};

constexpr std::string_view kModuleCaption = "Управление на покупките";
constexpr int kInformation = 1;

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
    {"TfSuppManifacOrderReport", &MakeScreen<TfSuppManifacOrderReport>},
};

/// Where the documents of each kind are decided on, one by one.
struct DecidedAt {
  DocumentKind kind;
  std::string_view point;
};
constexpr DecidedAt kDecidedAt[] = {
    {DocumentKind::SupplierOrder, "SupplierOrders"},
    {DocumentKind::PurchaseRequest, "PurchaseRequests"},
    {DocumentKind::Delivery, "Deliveries"},
    {DocumentKind::SupplierInvoice, "SupplierInvoices"},
};

/// The point that leads to a document; null when the user may not open it or its screen is not
/// there yet.
const ModulePoint* PointOf(VosApplication& app, DocumentKind kind) {
  const auto row = std::ranges::find(kDecidedAt, kind, &DecidedAt::kind);
  const ModulePoint* point = row == std::end(kDecidedAt) ? nullptr : app.FindPoint(row->point);
  const bool opens = point != nullptr && point->access.Has(paOpen) &&
                     app.classes.Find(point->screenClass) != nullptr;
  return opens ? point : nullptr;
}

/// In the queue all are decided together; until it is there, each on its own screen.
void OpenWaiting(TVosBaseForm& from) {
  VosApplication& app = from.App();
  const std::vector<FirstWaiting> waiting = RefreshWaiting(app);
  if (waiting.empty()) {
    VosMessageDlg(from, kInformation, from.caption, "Няма документи, които чакат Вашето решение.");
    return;
  }
  const ModulePoint* queue = app.FindPoint("ApprovalQueue");
  if (queue != nullptr && queue->access.Has(paOpen) && app.classes.Find(queue->screenClass)) {
    app.OpenPoint(queue->name, from.GetLanguageNumber());
    return;
  }
  for (const FirstWaiting& first : waiting) {
    const ModulePoint* point = PointOf(app, first.kind);
    if (point == nullptr) continue;
    TVosBaseForm* screen = app.OpenPoint(point->name, from.GetLanguageNumber());
    if (screen != nullptr) screen->RunInGate([&] { screen->GoToDocument(first.id); });
    return;
  }
  from.Refuse("Нямате право да отворите екраните, в които се решава за чакащите документи.");
}

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
  app.waiting.Open = &OpenWaiting;
  app.LoadPackage = [&app](const ModuleEntry&) { return BringIn(app); };
  app.TakeRights();
}

std::unique_ptr<TfOrvaneMain> StartOrvaneModule(VosApplication& app) {
  for (;;) {
    try {
      return std::make_unique<TfOrvaneMain>(
          FormIdentity{&app, nullptr, kOrvaneModuleNo, 0, nullptr, paOpen});
    } catch (const Abort&) {
      return nullptr;
    } catch (const ServerError& error) {
      if (!OfferAgain(app, nullptr, kModuleCaption, error.failure)) return nullptr;
    }
  }
}

}  // namespace orvane::modules
