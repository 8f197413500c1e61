#include "modules/purchases/purchase_requests/tf_purchase_order_report.h"

#include "contract/parameters.h"
#include "contract/purchase_request.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "kit/action_table.h"
#include "kit/columns.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "kit/shared_key.h"
#include "modules/core/lookups.h"
#include "modules/purchases/frame/orvane_com.h"

namespace orvane::modules {
namespace {

using purchase_request::new_rec::kCopy;
using purchase_request::new_rec::kNewVersion;

constexpr std::string_view kCaption = "\"Искания за покупка\"";
constexpr std::string_view kCenterGroup = "Център за разход";
constexpr std::string_view kSupplierGroup = "Доставчик";
constexpr SharedKey kF9{KeyCode::F9, {"acFilter", "acChoose"}};

/// What differs between the three modes of the report.
struct ReportMode {
  int kind;
  std::string_view prefix;    ///< of the caption
  std::string_view choose;    ///< caption of the choosing action
  std::string_view question;  ///< before the server is asked; empty: it is not
};
constexpr ReportMode kModes[] = {
    {kReportSearch, "Справка ", "Избор", ""},
    {kNewVersion, "Нова версия ", "Изпълнение", "Потвърдете създаването на нова версия!"},
    {kCopy, "Копиране ", "Копиране", "Потвърдете копирането!"},
};

const ReportMode& ModeOf(int kind) {
  for (const ReportMode& mode : kModes) {
    if (mode.kind == kind) return mode;
  }
  return kModes[0];
}

LookupSetup Suppliers() {
  return {.caption = "Търсене - Доставчици",
          .sql = {"SELECT Partner, Name, Name2", "FROM Partners {$WN}",
                  "WHERE PartnerTypeSupplier = 1", "{$WA}", "{$O}"},
          .searchFields = CodeAndNames("Partner"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfPartners"};
}

LookupSetup SupplierOrders() {
  return {
      .caption = "Търсене - Поръчки за производство",
      .sql = {"SELECT IdNumber, CAST(Description AS VARCHAR(50)) Description, ",
              " CAST(Description2 AS VARCHAR(50)) Description2", "FROM SuppManifacOrder {$WN}",
              "{$W}", "{$O}"},
      .nameField = "Description",
      .nameField2 = "Description2",
      .searchFields = {SearchBy("IdNumber", "Номер"),
                       SearchBy("Description", "Описание").In(Visibility::fvFirstLang).ByPart(),
                       SearchBy("Description2", "Описание").In(Visibility::fvSecondLang).ByPart()},
      .mask = std::string(kMaskCode9)};
}

}  // namespace

const LiveRow TfPurchaseOrderReport::kLive[] = {
    // action, focus, state, needs, when
    {"acFilter", "diFilter"},
    // Enter behind the last condition leads to the grid: without rows there F9 still finds.
    {"acFilter", "gResult", InState::Any, {}, &When<&TfPurchaseOrderReport::HasNoResult>},
    {"acChoose", "gResult", InState::Any, {}, &When<&TfPurchaseOrderReport::HasResult>},
    {"acNew", kAnywhere},
    {"acSearchByCode", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &AtComboOfRegister},
};

TfPurchaseOrderReport::TfPurchaseOrderReport(const FormIdentity& identity)
    : TVosDBForm(identity, "TfPurchaseOrderReport", kCaption),
      dmPurchaseOrderReport(std::make_unique<TdmPurchaseOrderReport>(*this)),
      cbCostCenters(*this, "cbCostCenters", dmPurchaseOrderReport->costCenters),
      cbKindSupplies(*this, "cbKindSupplies", dmPurchaseOrderReport->kindSupplies),
      cbPartners(*this, "cbPartners", dmPurchaseOrderReport->partners),
      cbNomIn249(*this, "cbNomIn249", dmPurchaseOrderReport->nomIn249),
      cbSuppManOrd(*this, "cbSuppManOrd", dmPurchaseOrderReport->suppManOrd),
      cbBSL(*this, "cbBSL", dmPurchaseOrderReport->bsl),
      diFilter(*this, "diFilter", dmPurchaseOrderReport->dsFilter),
      gResult(*this, "gResult", dmPurchaseOrderReport->dsResult) {
  SetUpLookups();
  SetUpItems();
  AddOwnActions();
  dmPurchaseOrderReport->SetLanguage(FirstLanguage());
  gridSelected = gResult.columns;
  layout = ColumnOf({Of(diFilter), Of(gResult, 1)});
}

void TfPurchaseOrderReport::SetUpLookups() {
  SetUpLookup(cbCostCenters, core::CostCentersOfNotifier());
  SetUpLookup(cbKindSupplies, core::KindSupplies());
  SetUpLookup(cbPartners, Suppliers());
  SetUpLookup(cbNomIn249, core::NomIn());
  SetUpLookup(cbSuppManOrd, SupplierOrders());
  SetUpLookup(cbBSL, core::SupplyList());
  dmPurchaseOrderReport->costCenters.SetParam("Notifier", App().vCurrentEmployee);
  dmPurchaseOrderReport->nomIn249.SetParam("Nom", core::kRequestStatuses);
  const auto choice =
      static_cast<int>(ParamNumber(*this, system::kModuleGroup, parameters::cpKindSupplyChoice));
  // A report has no day: what a list holds on one day alone is searched among all its days.
  const SupplyChoice kind = choice == static_cast<int>(SupplyChoice::ByListOnDate) ||
                                    choice == static_cast<int>(SupplyChoice::ByListUpToDate)
                                ? SupplyChoice::ByListUpToDate
                                : SupplyChoice::ByList;
  dmPurchaseOrderReport->bsl.SetTemplate(
      SetSuppListsSQL(static_cast<int>(kind), {}, cbBSL, std::nullopt));
  cbBSL.dlgCaption = "Търсене - Списък за доставка";
}

void TfPurchaseOrderReport::SetUpItems() {
  diFilter.items = {
      Item("CostCenter", "Център за разход").Edit(cbCostCenters),
      Item("FromId", "От номер").Mask(kMaskCode9),
      Item("ToId", "До номер").Mask(kMaskCode9),
      Item("FromDate", "От дата"),
      Item("ToDate", "До дата"),
      Item("KindSupply", "Вид покупка").Edit(cbKindSupplies),
      Item("Supplier", "Доставчик").Edit(cbPartners),
      Item("SuppManifacOrderId", "Номер на поръчка за производство").Edit(cbSuppManOrd),
      Item("Status", "Статус").Edit(cbNomIn249),
      Item("Annuled", "Анулиран").Shown(ItemKind::Check),
      Item("SerialNumber", "Съдържа стока/услуга").Edit(cbBSL),
  };
  gResult.columns = {
      Column("POIdNumber", 10, "Номер"),
      Column("POVersion", 7, "Версия"),
      Column("CostCenter", 10, "Код").Under(kCenterGroup),
      Column("CCName", 24, "Име").Under(kCenterGroup),
      Column("CCName2", 24, "Име").Under(kCenterGroup),
      Column("Supplier", 10, "Код").Under(kSupplierGroup),
      Column("SuppName", 30, "Име").Under(kSupplierGroup),
      Column("SuppName2", 30, "Име").Under(kSupplierGroup),
      Column("Description", 40, "Описание"),
      Column("Description2", 40, "Описание"),
      Column("lupStatusName", 16, "Статус"),
  };
  gResult.readOnly = true;
  gResult.emptyText = "Тук се показват исканията, които отговарят на условията. F9 ги намира.";
}

void TfPurchaseOrderReport::AddOwnActions() {
  using Self = TfPurchaseOrderReport;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acFilter", "Справка", KeyCode::F9, &Self::acFilterExecute, "search"},
      {"acChoose", "Избор", KeyCode::F9, &Self::acChooseExecute, "confirm"},
      {"acNew", "Нов избор", KeyCode::F10, &Self::acNewExecute, "new"},
  };
  AddActions(*this, kActions);
  FindAction("acChoose")->secondShortcut = KeyCode::Enter;
  const std::vector<std::string> searches =
      AddLookupActions(*this, {.nomenclature = "Номенклатура"});
  AddHostActions(*this);
  ribbon = {{"Операции",
             {{"Операции", {"acFilter", "acChoose", "acNew"}},
              {"Търсене", searches},
              {"Изход", {"acExit"}}}}};
}

std::span<const LiveRow> TfPurchaseOrderReport::LiveRows() const {
  return kLive;
}

void TfPurchaseOrderReport::AfterRefreshActions() {
  SettleKey(*this, kF9);
}

void TfPurchaseOrderReport::VosBaseFormShow() {
  const ReportMode& mode = ModeOf(pKind);
  caption = std::string(mode.prefix) + std::string(kCaption);
  TAction& choose = *FindAction("acChoose");
  choose.caption = mode.choose;
  choose.hint = mode.choose;
  dmPurchaseOrderReport->FetchOnOpening();
  dmPurchaseOrderReport->EmptyFilter();
  VisibleColumns();
  FocusControl(&diFilter);
}

void TfPurchaseOrderReport::OnLanguageChanged() {
  dmPurchaseOrderReport->SetLanguage(FirstLanguage());
  VisibleColumns();
}

/// A column that the filter makes the same in every row is left out, and of each pair of names the
/// one in the other language.
void TfPurchaseOrderReport::VisibleColumns() {
  struct FilteredColumns {
    std::string_view filter;
    std::vector<std::string_view> columns;
  };
  static const FilteredColumns kFiltered[] = {
      {"CostCenter", {"CostCenter", "CCName", "CCName2"}},
      {"Status", {"lupStatusName"}},
      {"Supplier", {"Supplier", "SuppName", "SuppName2"}},
  };
  gResult.columns = gridSelected;
  for (const FilteredColumns& filtered : kFiltered) {
    if (!dmPurchaseOrderReport->IsFiltered(filtered.filter)) continue;
    for (std::string_view column : filtered.columns)
      gResult.RemoveColumn(column);
  }
  const bool first = App().AppNotMultiLang() || FirstLanguage();
  for (std::string_view column : {"CCName", "SuppName", "Description"})
    gResult.RemoveColumn(first ? std::string(column) + "2" : std::string(column));
}

void TfPurchaseOrderReport::acFilterExecute() {
  TVosClientDataSet& filter = dmPurchaseOrderReport->cdsFilter;
  diFilter.FlushChanges();
  if (filter.Editing()) filter.Post();
  VisibleColumns();
  dmPurchaseOrderReport->FetchResult(pKind == kNewVersion);
  FocusControl(&gResult);
}

void TfPurchaseOrderReport::acChooseExecute() {
  TVosClientDataSet& result = dmPurchaseOrderReport->cdsResult;
  std::optional<RequestKey> chosen =
      RequestKey{result.FieldByName("POIdNumber").AsInt().value_or(0),
                 static_cast<int>(result.FieldByName("POVersion").AsInt().value_or(0))};
  const std::string_view question = ModeOf(pKind).question;
  if (!question.empty()) {
    if (!Confirmed(*this, caption, question)) return;
    chosen = dmPurchaseOrderReport->NewRec(pKind, *chosen);
  }
  if (!chosen) return;
  pIdNumber = chosen->id;
  pVersion = chosen->version;
  Success = true;
  Close();
}

void TfPurchaseOrderReport::acNewExecute() {
  diFilter.CloseEditor();
  dmPurchaseOrderReport->EmptyFilter();
  dmPurchaseOrderReport->cdsResult.EmptyDataSet();
  VisibleColumns();
  FocusControl(&diFilter);
  diFilter.SetCurrentItem(0);
}

}  // namespace orvane::modules
