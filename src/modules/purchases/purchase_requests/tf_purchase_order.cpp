#include "modules/purchases/purchase_requests/tf_purchase_order.h"

#include "contract/parameters.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "kit/action_table.h"
#include "kit/current_employee.h"
#include "kit/grid_rows.h"
#include "kit/pages.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "kit/required_fields.h"
#include "kit/shared_key.h"
#include "modules/core/tdm_user_blanks_orvane.h"
#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/purchase_requests/tf_purchase_order_report.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr int kInformation = 1;
constexpr std::string_view _rOrdersUnlinked =
    "Искания от този вид покупка не ползват поръчки за производство. Връзките на редовете към "
    "поръчки са премахнати.";
constexpr std::string_view _rRateNotPositive =
    "Валутният курс трябва да бъде по-голям от нула. Въведете друг.";
constexpr std::string_view _rNoEmployee =
    "Нямате права за работа с екрана. Липсва информация за Вас в таблица \"Служители\"!";
constexpr SharedKey kF9{KeyCode::F9, {"acForConfirmation", "acSave"}};

}  // namespace

void TfPurchaseOrder::AddOwnActions() {
  using Self = TfPurchaseOrder;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acDocSearch", "Справка", Ctrl(KeyCode::S), &Self::acDocSearchExecute, "report"},
      {"acSave", "Запис", KeyCode::F9, &Self::acSaveExecute, "save"},
      {"acCancel", "Отказ", Ctrl(KeyCode::Z), &Self::acCancelExecute, "cancel"},
      {"acPrint", "Печат", KeyCode::F7, &Self::acPrintExecute, "print"},
      {"acNewDoc", "Нов документ", KeyCode::F10, &Self::acNewDocExecute, "new"},
      {"acNewVersion", "Нова версия", Ctrl(KeyCode::F10), &Self::acNewVersionExecute, "version"},
      {"acDelete", "Изтриване", KeyCode::F5, &Self::acDeleteExecute, "delete"},
      {"acQuantity", "Количество", Ctrl(KeyCode::Q), &Self::acQuantityExecute, "quantity"},
      {"acCopyDoc", "Копиране", Ctrl(KeyCode::K), &Self::acCopyDocExecute, "copy"},
      {"acRows", "Редове", KeyCode::F6, &Self::acRowsExecute, "rows"},
      {"acSearchGroup", "Търсене - групиране", Ctrl(KeyCode::BackQuote),
       &Self::acSearchGroupExecute, "search"},
  };
  AddActions(*this, kActions);
  AddLookupActions(*this, {.searchByCode = "acSearch",
                           .nomenclature = "Номенклатура",
                           .searchByName = "acNameSearch",
                           .searchByPartName = "acPartialSearch"});
  FindAction("acNomenclature")->hint = "Преход към номенклатура";
  AddWorkflow();
  identifiers_.AddTo();
  versions_.AddTo();
  AddHostActions(*this);
}

/// Beside these: moves and decisions (tf_purchase_order_workflow.cpp) and navigation at key edits.
const LiveRow TfPurchaseOrder::kLive[] = {
    // action, focus, state of the head, needs, when
    {"acDocSearch", kAtKeyEdit},
    {"acNewDoc", kAtKeyEdit, InState::Any, paInsert, &When<&TfPurchaseOrder::MayAppend>},
    {"acNewVersion", kAtKeyEdit, InState::Any, paInsert, &When<&TfPurchaseOrder::MayMakeVersion>},
    {"acCopyDoc", kAtKeyEdit, InState::Any, paInsert, &When<&TfPurchaseOrder::MayCopy>},
    {"acPrint", kAtKeyEdit, InState::Any, {}, &When<&TfPurchaseOrder::IsLoaded>},
    {"acRows", kAtKeyEdit, InState::Any, {}, &When<&TfPurchaseOrder::IsLoaded>},

    {"acSave", "diMainInfo", InState::Any, {}, &When<&TfPurchaseOrder::MaySave>},
    {"acSave", kAnywhere, InState::Any, {}, &When<&TfPurchaseOrder::IsTypingRow>},
    {"acCancel", "diMainInfo"},
    {"acRows", "diMainInfo"},

    {"acDelete", "gPurchaseOrderDet", InState::Any, paDelete,
     &When<&TfPurchaseOrder::MayDeleteRow>},
    {"acQuantity",
     "gPurchaseOrderDet",
     InState::Any,
     {},
     &When<&TfPurchaseOrder::MayEnterQuantity>},
    {"acCancel", "gPurchaseOrderDet"},
    {"acDelete", "gPurchaseOrderDel", InState::Any, paDelete,
     &When<&TfPurchaseOrder::MayDeleteRow>},
    {"acCancel", "gPurchaseOrderDel"},
    {"acDelete", "gPOPayPl", InState::Any, paDelete, &When<&TfPurchaseOrder::MayDeleteRow>},
    {"acCancel", "gPOPayPl"},
    {"acCancel", "gPOAdm"},
    {"acCancel", "gDeliveries"},

    {"acSearch", kAtCombo},
    {"acNameSearch", kAtCombo},
    {"acPartialSearch", kAtCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &When<&TfPurchaseOrder::MayGoToNom>},
    {"acSearchGroup", "cbKPL"},
};

std::span<const LiveRow> TfPurchaseOrder::LiveRows() const {
  return kLive;
}

void TfPurchaseOrder::AfterRefreshActions() {
  RefreshWorkflow();
  const bool still = values.DisplayOneDocMode || !IsLoaded();
  identifiers_.Refresh(values.LastGetRecID, still);
  versions_.Refresh(values.LastGetRecVer, still);
  SettleKey(*this, kF9);
  language_.Settle();
  shown_.EventEnds();
}

bool TfPurchaseOrder::IsLoaded() const {
  const TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  return !head.IsEmpty() && head.State() != DataSetState::Insert;
}

bool TfPurchaseOrder::MayMakeVersion() const {
  if (!values.vCanAppend) return false;
  return !IsLoaded() || (values.FDocumentStatus < Fulfilling && !values.FDocumentAnnulated);
}

bool TfPurchaseOrder::MaySave() const {
  return !diMainInfo.readOnly && (May(paEdit) || May(paInsert));
}

bool TfPurchaseOrder::IsTypingRow() const {
  const TVosDBGrid* grid = FocusedRows();
  return grid != nullptr && grid->DataSet().Editing();
}

bool TfPurchaseOrder::MayDeleteRow() const {
  const TVosDBGrid* grid = FocusedRows();
  return grid != nullptr && HasRowToDelete(*grid);
}

/// Behind the orders' combo stands the order of the row, where it names one.
bool TfPurchaseOrder::MayGoToNom() const {
  if (FocusName() != cbSuppManOrd.Name()) return AtComboOfRegister(*this);
  return !dmPurchaseOrder->cdsPurchaseOrderDet[det::SuppManifacOrderId].IsNull();
}

bool TfPurchaseOrder::MayEnterQuantity() const {
  return dmPurchaseOrder->supplyRows.IsAtFraction(gPurchaseOrderDet);
}

// --- creation and showing -----------------------------------------------------------------------

TfPurchaseOrder::TfPurchaseOrder(const FormIdentity& identity)
    : TVosDBForm(identity, "TfPurchaseOrder", kDocumentName),
      dmPurchaseOrder(std::make_unique<TdmPurchaseOrder>(*this)),
      cbCostCenters(*this, "cbCostCenters", dmPurchaseOrder->costCenters),
      cbKindSupplies(*this, "cbKindSupplies", dmPurchaseOrder->kindSupplies),
      cbPartners(*this, "cbPartners", dmPurchaseOrder->partners),
      cbSuppliesContract(*this, "cbSuppliesContract", dmPurchaseOrder->suppliesContracts),
      cbNomIn250(*this, "cbNomIn250", dmPurchaseOrder->nomIn250),
      cbCurrencies(*this, "cbCurrencies", dmPurchaseOrder->currencies),
      cbKPL(*this, "cbKPL", dmPurchaseOrder->kpl),
      cbSuppManOrd(*this, "cbSuppManOrd", dmPurchaseOrder->suppManOrd),
      cbMeasures(*this, "cbMeasures", dmPurchaseOrder->measures),
      eIdNum(*this, "eIdNum", "Идентификатор"),
      eVer(*this, "eVer", "Версия"),
      lStatus(*this, "lStatus"),
      diMainInfo(*this, "diMainInfo", dmPurchaseOrder->dsPurchaseOrder),
      diAdminInfo(*this, "diAdminInfo", dmPurchaseOrder->dsPurchaseOrder),
      gPurchaseOrderDet(*this, "gPurchaseOrderDet", dmPurchaseOrder->dsPurchaseOrderDet),
      gPurchaseOrderDel(*this, "gPurchaseOrderDel", dmPurchaseOrder->dsPurchaseOrderDel),
      gPOPayPl(*this, "gPOPayPl", dmPurchaseOrder->dsPurchaseOrderPayPl),
      gPOAdm(*this, "gPOAdm", dmPurchaseOrder->dsPurchaseOrderAdm),
      gDeliveries(*this, "gDeliveries", dmPurchaseOrder->dsDeliveries),
      pcTables(*this, "pcTables"),
      shown_(*this, eIdNum, dmPurchaseOrder->cdsPurchaseOrder, MakeShownRules()),
      identifiers_(*this, eIdNum, "Y",
                   [this](Nav nav, int step) {
                     dmPurchaseOrder->GetRecord(nav, step, values.LastGetID, 0);
                   }),
      versions_(*this, eVer, "",
                [this](Nav nav, int step) {
                  dmPurchaseOrder->GetRecord(nav, step, values.LastGetID, values.LastGetVer);
                }),
      language_(*this,
                {&dmPurchaseOrder->cdsPurchaseOrder, &dmPurchaseOrder->cdsPurchaseOrderDet,
                 &dmPurchaseOrder->cdsPurchaseOrderDel, &dmPurchaseOrder->cdsPurchaseOrderPayPl,
                 &dmPurchaseOrder->cdsPurchaseOrderAdm},
                [this] {
                  if (IsLoaded()) ReloadShown();
                }) {
  RequireEmployee(*this, _rNoEmployee);
  values.LNG_ = GetLanguageNumber();
  dmPurchaseOrder->SetLanguage();
  ReadParameters();
  SetUpLookups();
  SetUpRowLookups();
  SetUpItems();
  SetUpColumns();
  SetUpPages();
  ChooseLanguages();
  MSGridCols = gPurchaseOrderDet.columns;
  BindFocus();
  AddOwnActions();
  SetReadWrite(false);
}

void TfPurchaseOrder::ReadParameters() {
  const auto own = [this](int number) { return ParamNumber(*this, system::kModuleGroup, number); };
  const auto host = [this](int number) { return ParamNumber(*this, system::kHostGroup, number); };
  values._cpCAR = own(parameters::cpCar);
  values._cpBRM = own(parameters::cpBRM);
  values._cpSuppWares = own(parameters::cpWares);
  values._cpSuppServ = own(parameters::cpSuppServ);
  values._cpKindSupplyChoice = static_cast<int>(own(parameters::cpKindSupplyChoice));
  values._cpKindSupplyList = own(parameters::cpKindSupplyList);
  values._cpMaxTermOfPayment = static_cast<int>(own(parameters::cpMaxTermOfPayment));
  values._cpCountNumberAfterPoint = static_cast<int>(host(parameters::kAmountDecimals));
  values._cpCentralBank = host(parameters::kCentralBank);
  values._cpBGNKindCurrency = host(parameters::kNationalCurrency);
  values._cpLimitMeasures = static_cast<int>(host(parameters::kOwnUnitsOnly));
  values.vMaxTermOfPayment = values._cpMaxTermOfPayment;
}

void TfPurchaseOrder::VosBaseFormShow() {
  pcTables.active = 0;
  if (values.DisplayOneDocMode) {
    shown_.WasLoaded();
    FocusControl(&eIdNum);
    return;
  }
  dmPurchaseOrder->FetchOnOpening();
  values.vCanAppend = !dmPurchaseOrder->cdsCheckAdmNotifiers.IsEmpty();
  // As it stands when there is no request at all.
  VisibleItemsDependOnKind();
  VisibleItemsDependOnCurrency();
  VisibleMSGridCols();
  FocusControl(&eIdNum);
  dmPurchaseOrder->GetRecord(Nav::Last, 0, 0, 0);
}

void TfPurchaseOrder::StartPurchaseOrder(TVosBaseForm& owner, std::int64_t id) {
  TfPurchaseOrder screen(DialogIdentity(owner));
  screen.values.DisplayOneDocMode = true;
  ShowOneDocument(owner, screen, _rDocNotFound, id, [&screen, id] {
    screen.dmPurchaseOrder->FetchOnOpening();
    return screen.dmPurchaseOrder->GetRecord(Nav::ByKey, 0, id, 0);
  });
}

void TfPurchaseOrder::ShowDocument(std::int64_t id) {
  FocusControl(&eIdNum);
  eIdNum.CancelEditor();
  shown_.Show(id);
}

void TfPurchaseOrder::OnLanguageChanged() {
  values.LNG_ = GetLanguageNumber();
  dmPurchaseOrder->SetLanguage();
}

// --- focus --------------------------------------------------------------------------------------

void TfPurchaseOrder::BindFocus() {
  eIdNum.OnEnter = [this] { shown_.KeyEditEnter(); };
  eIdNum.OnExit = [this] { eIdNumExit(); };
  eIdNum.OnEditClosed = [this](const std::string& text) { shown_.IdentifierTyped(text); };
  eVer.OnEnter = [this] { shown_.KeyEditEnter(); };
  eVer.OnEditClosed = [this](const std::string& text) { eVerClosed(text); };
  diMainInfo.OnLastItem = [this] {
    acRowsExecute();
    return true;
  };
  for (TVosDBGrid* grid :
       {&gPurchaseOrderDet, &gPurchaseOrderDel, &gPOPayPl, &gPOAdm, &gDeliveries})
    grid->OnEnter = [this] { GridEnter(); };
  for (TVosDBGrid* grid : {&gPurchaseOrderDet, &gPurchaseOrderDel})
    grid->OnLastColumn = [this] { return ShowNextPage(pcTables); };
  gPurchaseOrderDet.OnColEnter = [this] { QuantityColumnEnter(); };
  cbMeasures.OnEnter = [this] {
    if (dmPurchaseOrder->cdsPurchaseOrderDet.State() != DataSetState::Insert)
      dmPurchaseOrder->RefreshMeasure();
  };
  cbSuppManOrd.OnEnter = [this] { OrderComboEnter(); };
  cbSuppManOrd.OnOpenNomenclature = [this] {
    const auto order = dmPurchaseOrder->cdsPurchaseOrderDet[det::SuppManifacOrderId].AsInt();
    if (order) TfSuppManifacOrder::StartSuppManifacOrder(*this, *order);
  };
}

/// Rows belong to a saved head: a head being typed is saved before one of the grids is used.
void TfPurchaseOrder::GridEnter() {
  if (dmPurchaseOrder->cdsPurchaseOrder.Editing()) SaveHead(SavedBy::EnteringGrid);
}

void TfPurchaseOrder::QuantityColumnEnter() {
  if (!MayEnterQuantity()) return;
  dmPurchaseOrder->RefreshMeasure();
  acQuantityExecute();
}

/// What an order still leaves changes while others request: its list is fetched anew each time.
void TfPurchaseOrder::OrderComboEnter() {
  if (gPurchaseOrderDet.readOnly) return;
  dmPurchaseOrder->SetOrderParams();
  dmPurchaseOrder->suppManOrd.Forget();
}

TVosDBGrid* TfPurchaseOrder::FocusedRows() const {
  Control* active = ActiveControl();
  for (const TVosDBGrid* grid : {&gPurchaseOrderDet, &gPurchaseOrderDel, &gPOPayPl}) {
    if (active == grid) return static_cast<TVosDBGrid*>(active);
  }
  return nullptr;
}

// --- what the actions do ------------------------------------------------------------------------

void TfPurchaseOrder::acSaveExecute() {
  if (TVosDBGrid* grid = FocusedRows()) return grid->PostRow();
  if (ActiveControl() == &diMainInfo) diMainInfo.FlushChanges();
  SaveHead(SavedBy::Action);
}

void TfPurchaseOrder::SaveHead(SavedBy by) {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  RequireFields(*this, diMainInfo, _rFieldNotFilled, {"DocumentDate", "CostCenter", "KindSupply"});
  if (values.IsContracted(dmPurchaseOrder->KindSupply()))
    RequireFields(*this, diMainInfo, _rFieldNotFilled, {"Supplier", "ContractId"});
  RequireFields(*this, diMainInfo, _rFieldNotFilled,
                {"IncTranspInPrice", "KindCurrency", "RateOfExchange"});
  if (head[head::RateOfExchange].AsDecimal().value_or(Decimal()) <= Decimal())
    RefuseAt(*this, diMainInfo, "RateOfExchange", _rRateNotPositive);
  const bool unlinks =
      !values.IsContracted(dmPurchaseOrder->KindSupply()) && dmPurchaseOrder->NamesOrders();
  if (!head.Editing()) head.Edit();
  if (!dmPurchaseOrder->documentHead.Post()) {
    if (head.Editing()) FocusControl(&diMainInfo);
    throw Abort{};
  }
  if (unlinks) VosMessageDlg(*this, kInformation, caption, _rOrdersUnlinked);
  if (by == SavedBy::Action) FocusControl(&eVer);
}

void TfPurchaseOrder::acCancelExecute() {
  if (ActiveControl() == &diMainInfo) return shown_.GiveUp();
  TVosDBGrid* rows = FocusedRows();
  if (rows != nullptr && !CancelRow(*this, *rows)) return;
  FocusControl(&diMainInfo);
  diMainInfo.SetCurrentItem(0);
}

void TfPurchaseOrder::acNewDocExecute() {
  ReadParameters();  // somebody may have changed them while the screen was open
  dmPurchaseOrder->cdsPurchaseOrder.Insert();
  dmPurchaseOrder->EmptyParts();
  ShowDeliveriesPage();
  VisibleItemsDependOnKind();
  SetPropertiesVals();
  SetReadWrite(May(paInsert));
  eIdNum.SetText("");
  eVer.SetText("");
  diMainInfo.FocusField("DocumentDate");
}

void TfPurchaseOrder::acDeleteExecute() {
  TVosDBGrid* grid = FocusedRows();
  if (grid != nullptr) DeleteAsked(*this, *grid);
}

void TfPurchaseOrder::acPrintExecute() {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  TdmUserBlanksOrvane blanks(*this);
  blanks.PrintPurchaseOrder(kPurchaseOrderBlank, head[head::KindSupply].Value(),
                            head[head::POIdNumber].AsInt().value_or(0),
                            static_cast<int>(head[head::POVersion].AsInt().value_or(0)));
}

void TfPurchaseOrder::acQuantityExecute() {
  dmPurchaseOrder->supplyRows.AskQuantity(*this, gPurchaseOrderDet);
}

void TfPurchaseOrder::acRowsExecute() {
  pcTables.ShowPage("tsPurchaseOrderDet");
}

void TfPurchaseOrder::acDocSearchExecute() {
  OpenReport(kReportSearch);
}

void TfPurchaseOrder::acNewVersionExecute() {
  OpenReport(new_rec::kNewVersion);
}

void TfPurchaseOrder::acCopyDocExecute() {
  OpenReport(new_rec::kCopy);
}

void TfPurchaseOrder::OpenReport(int kind) {
  Control* edit = ActiveControl();
  TfPurchaseOrderReport report(DialogIdentity(*this));
  report.SetAccess(Access());
  report.pKind = kind;
  report.ShowModal();
  if (!report.Success) return;
  dmPurchaseOrder->GetRecord(Nav::ByKey, 0, report.pIdNumber, report.pVersion);
  shown_.WasLoaded();
  FocusControl(edit);
}

}  // namespace orvane::modules
