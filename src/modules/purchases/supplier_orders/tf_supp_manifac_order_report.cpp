#include "modules/purchases/supplier_orders/tf_supp_manifac_order_report.h"

#include "contract/supplier_order.h"
#include "kit/action_table.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "kit/register_screen.h"
#include "kit/shared_key.h"
#include "modules/core/lookups.h"
#include "modules/purchases/frame/orvane_msgs.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr std::string_view kCenterGroup = "Център за разход";
constexpr std::string_view kSupplierGroup = "Доставчик";
constexpr int kDescriptionLines = 4;
constexpr SharedKey kF9{KeyCode::F9, {"acRep", "acReturn"}};

}  // namespace

const LiveRow TfSuppManifacOrderReport::kLive[] = {
    // action, focus, state, needs, when
    {"acRep", "di"},
    // Enter behind the last condition leads to the grid: without rows there F9 still finds.
    {"acRep", "gReport", InState::Any, {}, &When<&TfSuppManifacOrderReport::HasNoResult>},
    {"acReturn", "gReport", InState::Any, {}, &When<&TfSuppManifacOrderReport::HasResult>},
    {"acReturn", "diDescription", InState::Any, {}, &When<&TfSuppManifacOrderReport::HasResult>},
    {"acNew", kAnywhere},
    {"acSearchByCode", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
};

TfSuppManifacOrderReport::TfSuppManifacOrderReport(const FormIdentity& identity)
    : TVosDBForm(identity, "TfSuppManifacOrderReport", "Справка Поръчки за производство "),
      dmSuppManifacOrderReport(std::make_unique<TdmSuppManifacOrderReport>(*this)),
      cbCostCenters(*this, "cbCostCenters", dmSuppManifacOrderReport->costCenters),
      cbSuppliers(*this, "cbSuppliers", dmSuppManifacOrderReport->suppliers),
      cbStatus(*this, "cbStatus", dmSuppManifacOrderReport->nomIn249),
      lFilter(*this, "lFilter"),
      di(*this, "di", dmSuppManifacOrderReport->dsFilter),
      lReport(*this, "lReport"),
      gReport(*this, "gReport", dmSuppManifacOrderReport->dsReport),
      diDescription(*this, "diDescription", dmSuppManifacOrderReport->dsReport) {
  constexpr int kSeesEverything = 0;
  if (App().vCurrentEmployee.IsNull() && App().UserCategory() != kSeesEverything)
    Refuse(_rCannotWork);
  SetUpLookups();
  SetUpItems();
  AddOwnActions();
  lFilter.text = "Филтър";
  lReport.text = "Справка - резултат";
  layout = ColumnOf({Of(lFilter), Of(di), Of(lReport), Of(gReport, 1), Of(diDescription)});
}

void TfSuppManifacOrderReport::SetUpLookups() {
  SetUpLookup(cbCostCenters, core::CostCentersOfNotifier("Търсене - Центрове за разход"));
  SetUpLookup(cbSuppliers, core::Suppliers());
  SetUpLookup(cbStatus, core::NomInOfLanguage());
  cbStatus.mask = "#";  // an annulled order's is 0
  dmSuppManifacOrderReport->costCenters.SetParam("Notifier", App().vCurrentEmployee);
  dmSuppManifacOrderReport->nomIn249.SetParam("NomIn", core::kRequestStatuses);
  dmSuppManifacOrderReport->SetLanguage();
}

void TfSuppManifacOrderReport::SetUpItems() {
  di.items = {
      ItemOf(report::CostCenter).Edit(cbCostCenters), ItemOf(report::FromNumber).Mask(kMaskCode9),
      ItemOf(report::ToNumber).Mask(kMaskCode9),      ItemOf(report::Supplier).Edit(cbSuppliers),
      ItemOf(report::Status).Edit(cbStatus),
  };
  gReport.columns = {
      Column("IdNumber", 10, "Номер"),
      Column("CostCenter", 10, "Код").Under(kCenterGroup),
      Column("CostCenterName", 26, "Име").Under(kCenterGroup),
      Column("Supplier", 10, "Код").Under(kSupplierGroup),
      Column("SupplierName", 30, "Име").Under(kSupplierGroup),
      Column("Description", 44, "Описание"),
      Column("lupStatusName", 18, "Статус"),
  };
  gReport.readOnly = true;
  gReport.emptyText = "Тук се показват поръчките, които отговарят на условията. F9 ги намира.";
  diDescription.items = {
      ItemOf(report::Description).Shown(ItemKind::Memo).Lines(kDescriptionLines)};
  diDescription.readOnly = true;
}

void TfSuppManifacOrderReport::AddOwnActions() {
  using Self = TfSuppManifacOrderReport;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acRep", "Справка", KeyCode::F9, &Self::acRepExecute, "search"},
      {"acReturn", "Избор", KeyCode::F9, &Self::acReturnExecute, "confirm"},
      {"acNew", "Нов избор", KeyCode::F10, &Self::acNewExecute, "new"},
  };
  AddActions(*this, kActions);
  FindAction("acReturn")->secondShortcut = KeyCode::Enter;
  const std::vector<std::string> searches = AddLookupActions(*this);
  AddHostActions(*this);
  ribbon = {{"Операции",
             {{"Операции", {"acRep", "acReturn", "acNew"}},
              {"Търсене", searches},
              {"Изход", {"acExit"}}}}};
}

std::span<const LiveRow> TfSuppManifacOrderReport::LiveRows() const {
  return kLive;
}

void TfSuppManifacOrderReport::AfterRefreshActions() {
  SettleKey(*this, kF9);
}

void TfSuppManifacOrderReport::OnShow() {
  dmSuppManifacOrderReport->GetParams();
  dmSuppManifacOrderReport->EmptyFilter();
  FocusControl(&di);
}

/// Names and descriptions come in one language: those that are shown are asked for again.
void TfSuppManifacOrderReport::OnLanguageChanged() {
  dmSuppManifacOrderReport->SetLanguage();
  dmSuppManifacOrderReport->nomIn249.FillIfStale();
  if (HasResult()) dmSuppManifacOrderReport->GetReport();
}

void TfSuppManifacOrderReport::acRepExecute() {
  TVosClientDataSet& filter = dmSuppManifacOrderReport->cdsFilter;
  di.FlushChanges();
  if (filter.Editing()) filter.Post();
  filter.Edit();
  dmSuppManifacOrderReport->GetReport();
  if (HasResult()) FocusControl(&gReport);
}

void TfSuppManifacOrderReport::acReturnExecute() {
  pIdNumber = dmSuppManifacOrderReport->cdsReport[report::IdNumber].AsInt().value_or(0);
  Close();
}

void TfSuppManifacOrderReport::acNewExecute() {
  di.CloseEditor();
  dmSuppManifacOrderReport->EmptyFilter();
  dmSuppManifacOrderReport->cdsReport.EmptyDataSet();
  FocusControl(&di);
  di.SetCurrentItem(0);
}

}  // namespace orvane::modules
