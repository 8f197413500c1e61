#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

#include "contract/parameters.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "kit/action_table.h"
#include "kit/current_employee.h"
#include "kit/documents/national_currency.h"
#include "kit/grid_rows.h"
#include "kit/pages.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "kit/required_fields.h"
#include "kit/shared_key.h"
#include "modules/core/tdm_user_blanks_orvane.h"
#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order_report.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr SharedKey kF9{KeyCode::F9, {"acForConfirmation", "acSave"}};
constexpr std::string_view _rTypingIsLost =
    "Има незаписани промени. Желаете ли да ги изоставите и да се покаже избраната поръчка?";

}  // namespace

void TfSuppManifacOrder::AddOwnActions() {
  using Self = TfSuppManifacOrder;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acNewDoc", "Нов документ", KeyCode::F10, &Self::acNewDocExecute, "new"},
      {"acSave", "Запис", KeyCode::F9, &Self::acSaveExecute, "save"},
      {"acCancel", "Отказ", Ctrl(KeyCode::Z), &Self::acCancelExecute, "cancel"},
      {"acDelete", "Изтриване", KeyCode::F5, &Self::acDeleteExecute, "delete"},
      {"acGoToRows", "Редове", KeyCode::F6, &Self::acGoToRowsExecute, "rows"},
      {"acPrint", "Печат", KeyCode::F7, &Self::acPrintExecute, "print"},
      {"acReport", "Справка", Ctrl(KeyCode::S), &Self::acReportExecute, "report"},
  };
  AddActions(*this, kActions);
  searches_ = AddLookupActions(*this, {.searchByCode = "acSearch",
                                       .nomenclature = "Номенклатура",
                                       .openNomenclature = "acGoToNom"});
  AddWorkflow();
  identifiers_.AddTo();
  AddHostActions(*this);
}

/// Beside these: moves and decisions (tf_supp_manifac_order_workflow.cpp) and navigation at the
/// identifier.
const LiveRow TfSuppManifacOrder::kLive[] = {
    // action, focus, state of the head, needs, when
    {"acNewDoc", kAtKeyEdit, InState::Any, paInsert, &When<&TfSuppManifacOrder::MayEnterNew>},
    {"acReport", kAnywhere, InState::Any, {}, &When<&TfSuppManifacOrder::MayLookFurther>},
    {"acPrint", kAnywhere, InState::Any, {}, &When<&TfSuppManifacOrder::IsLoaded>},

    {"acGoToRows", kAtKeyEdit, InState::Any, {}, &When<&TfSuppManifacOrder::IsLoaded>},
    {"acGoToRows", "di"},
    {"acGoToRows", "di2"},

    {"acSave", "di", InState::Any, {}, &When<&TfSuppManifacOrder::MaySave>},
    {"acCancel", "di", InState::Any, {}, &When<&TfSuppManifacOrder::IsTyping>},

    {"acSave", "gSuppManOrderDet", InState::Any, {}, &When<&TfSuppManifacOrder::MaySave>},
    {"acCancel", "gSuppManOrderDet", InState::Any, {}, &When<&TfSuppManifacOrder::IsTyping>},
    {"acDelete", "gSuppManOrderDet", InState::Any, paDelete,
     &When<&TfSuppManifacOrder::MayDeleteRow>},

    {"acSearch", kAtCombo, InState::Any, {}, &When<&TfSuppManifacOrder::MaySearch>},
    {"acSearchByName", kAtCombo, InState::Any, {}, &When<&TfSuppManifacOrder::MaySearch>},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &When<&TfSuppManifacOrder::MaySearch>},
    {"acGoToNom", kAtCombo, InState::Any, {}, &When<&TfSuppManifacOrder::MayGoToNom>},
};

std::span<const LiveRow> TfSuppManifacOrder::LiveRows() const {
  return kLive;
}

void TfSuppManifacOrder::AfterRefreshActions() {
  RefreshWorkflow();
  identifiers_.Refresh(position, viewOnly || !IsLoaded());
  SettleKey(*this, kF9);
  language_.Settle();
  shown_.EventEnds();
}

bool TfSuppManifacOrder::IsLoaded() const {
  const TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  return !order.IsEmpty() && order.State() != DataSetState::Insert;
}

bool TfSuppManifacOrder::IsTyping() const {
  const TdmSuppManifacOrder& rules = *dmSuppManifacOrder;
  return IsTypingInEditor() || rules.cdsSuppManifacOrder.Editing() ||
         rules.cdsSuppManOrderDet.Editing() || HasWaiting();
}

bool TfSuppManifacOrder::MayDeleteRow() const {
  const TdmSuppManifacOrder& rules = *dmSuppManifacOrder;
  return HasRowToDelete(gSuppManOrderDet) && (rules.IsOwner() || rules.part.fullAccess) &&
         !viewOnly;
}

/// What is searched for goes into the order: it must be one that may be typed into.
bool TfSuppManifacOrder::MaySearch() const {
  return !di.readOnly && AtSearchableCombo(*this);
}

bool TfSuppManifacOrder::MayGoToNom() const {
  return MaySearch() && AtComboOfRegister(*this);
}

// --- creation and showing -----------------------------------------------------------------------

TfSuppManifacOrder::TfSuppManifacOrder(const FormIdentity& identity)
    : TVosDBForm(identity, "TfSuppManifacOrder", "Поръчки за производство"),
      dmSuppManifacOrder(std::make_unique<TdmSuppManifacOrder>(*this)),
      cbKindSupplies(*this, "cbKindSupplies", dmSuppManifacOrder->kindSupplies),
      cbCostCenters(*this, "cbCostCenters", dmSuppManifacOrder->costCenters),
      cbSuppliers(*this, "cbSuppliers", dmSuppManifacOrder->suppliers),
      cbKindCurrency(*this, "cbKindCurrency", dmSuppManifacOrder->currencies),
      cbContractIds(*this, "cbContractIds", dmSuppManifacOrder->suppliesContracts),
      cbIncTranspInPrice(*this, "cbIncTranspInPrice", dmSuppManifacOrder->nomIn250),
      cbKPL(*this, "cbKPL", dmSuppManifacOrder->kpl),
      cbMeasure(*this, "cbMeasure", dmSuppManifacOrder->measures),
      eIdNumber(*this, "eIdNumber", "Идентификатор"),
      lStatus(*this, "lStatus"),
      di(*this, "di", dmSuppManifacOrder->dsSuppManifacOrder),
      di2(*this, "di2", dmSuppManifacOrder->dsSuppManifacOrder),
      gSuppManOrderDet(*this, "gSuppManOrderDet", dmSuppManifacOrder->dsSuppManOrderDet),
      gSuppManOrderAdmin(*this, "gSuppManOrderAdmin", dmSuppManifacOrder->dsSuppManOrderAdmin),
      gPurchaseOrder(*this, "gPurchaseOrder", dmSuppManifacOrder->dsPurchaseOrder),
      pcTables(*this, "pcTables"),
      shown_(*this, eIdNumber, dmSuppManifacOrder->cdsSuppManifacOrder, MakeShownRules()),
      identifiers_(*this, eIdNumber, "",
                   [this](Nav nav, int step) {
                     dmSuppManifacOrder->GetRecord(nav, step, eIdNumber.Text());
                   }),
      language_(*this,
                {&dmSuppManifacOrder->cdsSuppManifacOrder, &dmSuppManifacOrder->cdsSuppManOrderDet,
                 &dmSuppManifacOrder->cdsSuppManOrderAdmin, &dmSuppManifacOrder->cdsPurchaseOrder},
                [this] {
                  dmSuppManifacOrder->GetParams();
                  if (IsLoaded()) ReloadShown();
                }) {
  RequireEmployee(*this, _rCannotWork);
  ReadParameters();
  SetUpLookups();
  SetUpItems();
  SetUpColumns();
  AddOwnActions();
  SetUpPages();
  BindFocus();
  VisibleItemsDependOnCurrency();
  SetReadWrite(false);
}

void TfSuppManifacOrder::ReadParameters() {
  const auto own = [this](int number) { return ParamNumber(*this, system::kModuleGroup, number); };
  const auto host = [this](int number) { return ParamNumber(*this, system::kHostGroup, number); };
  OrderParameters& read = dmSuppManifacOrder->parameters;
  read.ownMeasuresOnly = host(parameters::kOwnUnitsOnly) == 1;
  read.brm = RequiredParam(*this, system::kModuleGroup, parameters::cpBRM, _rParamBRMIsEmpty);
  read.wares = RequiredParam(*this, system::kModuleGroup, parameters::cpWares, _rParamWaresIsEmpty);
  read.centralBank =
      RequiredParam(*this, system::kHostGroup, parameters::kCentralBank, _rParamCentralBankIsEmpty);
  read.nationalCurrency = RequiredParam(*this, system::kHostGroup, parameters::kNationalCurrency,
                                        _rParamBGNKindCurrencyIsEmpty);
  const std::int64_t list = own(parameters::cpKindSupplyList);
  read.way = {own(parameters::cpKindSupplyChoice), list > 0 ? Variant(list) : Variant()};
  read.amountDecimals = static_cast<int>(host(parameters::kAmountDecimals));
}

void TfSuppManifacOrder::VosBaseFormShow() {
  pcTables.active = 0;
  if (viewOnly) {
    shown_.WasLoaded();
    return FocusControl(&eIdNumber);
  }
  dmSuppManifacOrder->SetLanguage();
  dmSuppManifacOrder->GetParams();
  FocusControl(&eIdNumber);
  dmSuppManifacOrder->GetRecord(Nav::Last, 0, {});
}

void TfSuppManifacOrder::StartSuppManifacOrder(TVosBaseForm& owner, std::int64_t id) {
  TfSuppManifacOrder screen(DialogIdentity(owner));
  screen.viewOnly = true;
  screen.eIdNumber.readOnly = true;
  ShowOneDocument(owner, screen, _rDocNotFound, id, [&screen, id] {
    screen.ShowOwnLanguage();
    screen.dmSuppManifacOrder->SetLanguage();
    screen.dmSuppManifacOrder->GetParams();
    return screen.dmSuppManifacOrder->GetRecord(Nav::ByKey, 0, std::to_string(id));
  });
}

void TfSuppManifacOrder::ShowOwnLanguage() {
  if (App().AppNotMultiLang()) return;
  for (const char* field : {"Description", "Rationale"}) {
    di.FindItem(field)->visible = FirstLanguage();
    di.FindItem(std::string(field) + "2")->visible = !FirstLanguage();
  }
  SetUpColumns();
  gSuppManOrderDet.RemoveColumn(FirstLanguage() ? "Remarks2" : "Remarks");
}

void TfSuppManifacOrder::ShowDocument(std::int64_t id) {
  FocusControl(&eIdNumber);
  eIdNumber.CancelEditor();
  shown_.Show(id);
}

void TfSuppManifacOrder::OnLanguageChanged() {
  dmSuppManifacOrder->SetLanguage();
  if (viewOnly) ShowOwnLanguage();
}

ShownDocumentRules TfSuppManifacOrder::MakeShownRules() {
  ShownDocumentRules rules;
  rules.notFound = _rDocNotFound;
  rules.id = [this] { return shownId_; };
  rules.save = [this] { SaveHead(); };
  rules.reload = [this] {
    const bool any = !eIdNumber.Text().empty();
    dmSuppManifacOrder->GetRecord(any ? Nav::ByKey : Nav::Last, 0, eIdNumber.Text());
  };
  rules.load = [this](std::int64_t id) {
    return dmSuppManifacOrder->GetRecord(Nav::ByKey, 0, std::to_string(id));
  };
  rules.typingDropped = [this] {
    VisibleItemsDependOnCurrency();
    SetReadWrite(false);
  };
  rules.numberLoadsAgain = true;
  return rules;
}

// --- what is shown and what may be written ------------------------------------------------------

void TfSuppManifacOrder::ShowOrder(std::int64_t id) {
  eIdNumber.SetText(std::to_string(id));
  shownId_ = id;
  shown_.WasLoaded();
  OfferPageWithRows(pcTables, "tsPurchaseOrder");
  VisibleItemsDependOnCurrency();
  SetReadWrite(false);
}

void TfSuppManifacOrder::VisibleItemsDependOnCurrency() {
  ShowByCurrency(di, di2,
                 {.sum = "SumManifacOrder",
                  .currencySum = "CurrSumManifacOrder",
                  .plain = "Сума на поръчката",
                  .lev = "Левова сума на поръчката"},
                 !dmSuppManifacOrder->InNationalCurrency(), dmSuppManifacOrder->currencies,
                 dmSuppManifacOrder->parameters.nationalCurrency);
}

void TfSuppManifacOrder::SetReadWrite(bool forceWritable) {
  const bool writable = forceWritable || (IsLoaded() && dmSuppManifacOrder->MayBeChanged());
  di.readOnly = !writable;
  OfferRows({gSuppManOrderDet, "Няма материали и услуги.", " Insert добавя първия ред."}, writable,
            May(paInsert));
  lStatus.text = dmSuppManifacOrder->cdsSuppManifacOrder.FieldByName(lupStatus.name).Text();
  QuantityFollowsUnit();
}

void TfSuppManifacOrder::QuantityFollowsUnit() {
  GridColumn* quantity = gSuppManOrderDet.FindColumn(det::Quantity.name);
  if (quantity == nullptr) return;
  quantity->readOnly = dmSuppManifacOrder->cdsSuppManOrderDet[det::OrdinaryFraction].AsBool();
}

// --- focus --------------------------------------------------------------------------------------

void TfSuppManifacOrder::BindFocus() {
  eIdNumber.OnEnter = [this] {
    shown_.KeyEditEnter();
    newDocumentEntry_ = false;
  };
  eIdNumber.OnExit = [this] {
    if (eIdNumber.Text().empty() && !newDocumentEntry_) FocusControl(&eIdNumber);
  };
  eIdNumber.OnEditClosed = [this](const std::string& text) { shown_.IdentifierTyped(text); };
  di.OnLastItem = [this] {
    acGoToRowsExecute();
    return true;
  };
  for (TVosDBGrid* grid : {&gSuppManOrderDet, &gSuppManOrderAdmin, &gPurchaseOrder})
    grid->OnEnter = [this] { TabsEnter(); };
  gSuppManOrderDet.OnColEnter = [this] { QuantityColumnEnter(); };
  cbKPL.OnEnter = [this] { dmSuppManifacOrder->RefreshKPL(); };
  cbMeasure.OnEnter = [this] { dmSuppManifacOrder->RefreshMeasure(); };
}

/// Rows belong to a saved head: a head being typed is saved before one of the grids is used.
void TfSuppManifacOrder::TabsEnter() {
  if (dmSuppManifacOrder->cdsSuppManifacOrder.Editing()) SaveHead();
}

void TfSuppManifacOrder::QuantityColumnEnter() {
  SupplyRows& rows = dmSuppManifacOrder->supplyRows;
  if (!rows.IsAtFraction(gSuppManOrderDet)) return;
  dmSuppManifacOrder->RefreshMeasure();
  rows.AskQuantity(*this, gSuppManOrderDet);
}

/// From wherever nothing is being typed Escape leads back to the identifier.
bool TfSuppManifacOrder::HandleFormKey(KeyStroke key) {
  if (key != KeyStroke(KeyCode::Escape) || ActiveControl() == &eIdNumber || IsTyping())
    return false;
  FocusControl(&eIdNumber);
  return true;
}

// --- what the actions do ------------------------------------------------------------------------

void TfSuppManifacOrder::acNewDocExecute() {
  TdmSuppManifacOrder& rules = *dmSuppManifacOrder;
  RefuseIf(App().vCurrentEmployee.IsNull(), _rNoCurrentEmployee);
  ReadParameters();  // somebody may have changed them while the screen was open
  rules.FetchCostCenters();
  RefuseIf(rules.cdsCostCenters.IsEmpty(), Filled(_rNoCostCenters, {rules.employeeName.ToText()}));
  rules.cdsSuppManifacOrder.Insert();
  rules.EmptyParts();
  OfferPageWithRows(pcTables, "tsPurchaseOrder");
  SetReadWrite(true);
  newDocumentEntry_ = true;
  eIdNumber.SetText("");
  di.FocusField(head::DocumentDate.name);
}

void TfSuppManifacOrder::acSaveExecute() {
  if (ActiveControl() == &gSuppManOrderDet) {
    return gSuppManOrderDet.PostRow();
  }
  di.FlushChanges();
  SaveHead();
  FocusControl(&eIdNumber);
}

void TfSuppManifacOrder::SaveHead() {
  RequireFields(*this, di, _rValueRequired,
                {"DocumentDate", "FromDate", "ToDate", "CostCenter", "KindSupply", "Supplier",
                 "ContractId", lupIncTranspInPrice.name, "KindCurrency", "RateOfExchange"});
  TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  if (!order.Editing()) order.Edit();
  if (dmSuppManifacOrder->documentHead.Post()) return;
  if (order.Editing()) FocusControl(&di);
  throw Abort{};
}

void TfSuppManifacOrder::acCancelExecute() {
  if (ActiveControl() != &gSuppManOrderDet) return shown_.GiveUp();
  if (CancelRow(*this, gSuppManOrderDet)) FocusControl(&di);
}

void TfSuppManifacOrder::acDeleteExecute() {
  DeleteAsked(*this, gSuppManOrderDet);
}

void TfSuppManifacOrder::acGoToRowsExecute() {
  pcTables.ShowPage("tsSuppManOrderDet");
}

void TfSuppManifacOrder::acPrintExecute() {
  TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  TdmUserBlanksOrvane blanks(*this);
  blanks.PrintManifactureOrder(kManifactureOrderBlank, order[head::KindSupply].Value(),
                               order[head::IdNumber].AsInt().value_or(0));
}

void TfSuppManifacOrder::acReportExecute() {
  TfSuppManifacOrderReport report(DialogIdentity(*this));
  report.SetAccess(Access());
  report.ShowModal();
  if (report.pIdNumber <= 0) return;
  if (IsTyping() && !Confirmed(*this, caption, _rTypingIsLost)) return;
  shown_.Show(report.pIdNumber);
  FocusControl(&eIdNumber);
}

}  // namespace orvane::modules
