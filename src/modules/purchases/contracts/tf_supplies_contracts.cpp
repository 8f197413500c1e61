#include "modules/purchases/contracts/tf_supplies_contracts.h"

#include "contract/parameters.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "host/dialogs.h"
#include "kit/action_table.h"
#include "kit/message_text.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "kit/required_fields.h"

namespace orvane::modules {

using namespace supplies_contract;

namespace {

constexpr std::string_view _rWrongParameter =
    "Невалидна стойност на параметър '%s' в таблица 'Параметри'!";
constexpr std::string_view _rFieldIsEmpty = "Полето \"%s\" не е попълнено!";
constexpr std::string_view _rNoSuchContract =
    "Не съществува или нямате достъп до документ с идентификатор %s!";

}  // namespace

void TfSuppliesContracts::AddOwnActions() {
  using Self = TfSuppliesContracts;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acNew", "Нов договор", KeyCode::F10, &Self::acNewExecute, "new"},
      {"acSave", "Запис", KeyCode::F9, &Self::acSaveExecute, "save"},
      {"acCancel", "Отказ", Ctrl(KeyCode::Z), &Self::acCancelExecute, "cancel"},
      {"acDelete", "Изтриване", KeyCode::F5, &Self::acDeleteExecute, "delete"},
  };
  AddActions(*this, kActions);
  searches_ = AddLookupActions(*this, {.nomenclature = "Преход към номенклатура"});
  identifiers_.AddTo();
  AddHostActions(*this);
}

/// Beside these: navigation while the identifier has the focus.
const LiveRow TfSuppliesContracts::kLive[] = {
    // action, focus, state of the contract, needs, when
    {"acNew", kAtKeyEdit, InState::Any, paInsert},
    {"acDelete", kAtKeyEdit, InState::Any, paDelete, &When<&TfSuppliesContracts::IsLoaded>},

    {"acSave", "diLeft", InState::Any, {}, &When<&TfSuppliesContracts::MaySave>},
    {"acCancel", "diLeft"},
    {"acSave", "diRight", InState::Any, {}, &When<&TfSuppliesContracts::MaySave>},
    {"acCancel", "diRight"},

    {"acSearchByCode", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &AtComboOfRegister},
};

std::span<const LiveRow> TfSuppliesContracts::LiveRows() const {
  return kLive;
}

void TfSuppliesContracts::AfterRefreshActions() {
  identifiers_.Refresh(LastGetRecRes, !IsLoaded());
  shown_.EventEnds();
}

bool TfSuppliesContracts::IsLoaded() const {
  const TVosClientDataSet& contract = dmSuppliesContracts->cdsSuppliesContracts;
  return !contract.IsEmpty() && contract.State() != DataSetState::Insert;
}

// --- creation and showing -----------------------------------------------------------------------

TfSuppliesContracts::TfSuppliesContracts(const FormIdentity& identity)
    : TVosDBForm(identity, "TfSuppliesContracts", "Договори за доставки"),
      dmSuppliesContracts(std::make_unique<TdmSuppliesContracts>(*this)),
      cbSupplier(*this, "cbSupplier", dmSuppliesContracts->partner),
      cbKindSupplies(*this, "cbKindSupplies", dmSuppliesContracts->kindSupplies),
      cbCapExPlanCode(*this, "cbCapExPlanCode", dmSuppliesContracts->capExPlan),
      cbSupplyRequestDescr(*this, "cbSupplyRequestDescr", dmSuppliesContracts->supplyRequestDescr),
      cbSupplyArtVchDescr(*this, "cbSupplyArtVchDescr", dmSuppliesContracts->supplyArtVchDescr),
      cbToSupplyArtVchDescr(*this, "cbToSupplyArtVchDescr",
                            dmSuppliesContracts->toSupplyArtVchDescr),
      cbSupplyInvoiceDescr(*this, "cbSupplyInvoiceDescr", dmSuppliesContracts->supplyInvoiceDescr),
      cbSuppAdvInvDescr(*this, "cbSuppAdvInvDescr", dmSuppliesContracts->suppAdvInvDescr),
      cbSuppDNoticeDescr(*this, "cbSuppDNoticeDescr", dmSuppliesContracts->suppDNoticeDescr),
      cbSuppCNoticeDescr(*this, "cbSuppCNoticeDescr", dmSuppliesContracts->suppCNoticeDescr),
      cbKindSupplyList(*this, "cbKindSupplyList", dmSuppliesContracts->kindSupplyList),
      cbNomIn90(*this, "cbNomIn90", dmSuppliesContracts->nomIn90),
      cbSuppElKindPayment(*this, "cbSuppElKindPayment", dmSuppliesContracts->suppElKindPayment),
      eIdNumber(*this, "eIdNumber", IdNumber.label),
      diLeft(*this, "diLeft", dmSuppliesContracts->dsSuppliesContracts),
      diRight(*this, "diRight", dmSuppliesContracts->dsSuppliesContracts),
      shown_(*this, eIdNumber, dmSuppliesContracts->cdsSuppliesContracts, MakeShownRules()),
      identifiers_(*this, eIdNumber, "", [this](Nav nav, int step) {
        dmSuppliesContracts->GetRecord(nav, step, LastGetRec);
      }) {
  ReadParameters();
  SetUpLookups();
  SetUpItems();
  AddOwnActions();
  SetUpRibbon();
  eIdNumber.OnEnter = [this] { shown_.KeyEditEnter(); };
  eIdNumber.OnEditClosed = [this](const std::string& text) { shown_.IdentifierTyped(text); };
  VisibleParamItems();
  dsSuppliesContractsStateChange();
}

void TfSuppliesContracts::ReadParameters() {
  struct KindRow {
    int number;
    std::string_view name;
    std::int64_t& value;
  };
  for (const KindRow& kind :
       {KindRow{parameters::cpCar, "Вид покупка \"Капиталов разход\"", _cpCar},
        KindRow{parameters::cpBRM, "Вид покупка \"ОСМ\"", _cpBRM},
        KindRow{parameters::cpWares, "Вид покупка \"Стоки\"", _cpSuppWares}}) {
    kind.value = RequiredParam(*this, system::kModuleGroup, kind.number,
                               Filled(_rWrongParameter, {kind.name}));
  }
}

void TfSuppliesContracts::VosBaseFormShow() {
  FetchTogether({&dmSuppliesContracts->nomIn90}, {});
  dmSuppliesContracts->GetRecord(Nav::First, 0, 0);
  FocusControl(&eIdNumber);
}

ShownDocumentRules TfSuppliesContracts::MakeShownRules() {
  ShownDocumentRules rules;
  rules.notFound = _rNoSuchContract;
  rules.id = [this] { return LastGetRec; };
  rules.save = [this] {
    if (!SaveContract()) throw Abort{};
  };
  rules.reload = [this] {
    // Its deletion waited for the server, and went through.
    if (dmSuppliesContracts->cdsSuppliesContracts.IsEmpty()) return ShowNeighbour(LastGetRec);
    dmSuppliesContracts->GetRecord(Nav::ByKey, 0, LastGetRec);
  };
  rules.load = [this](std::int64_t id) {
    const LoadCode code = dmSuppliesContracts->GetRecord(Nav::ByKey, 0, id);
    if (code == LoadCode::None && LastGetRec != 0)
      dmSuppliesContracts->GetRecord(Nav::ByKey, 0, LastGetRec);
    return code;
  };
  rules.typingDropped = [this] {
    if (LastGetRec == 0) eIdNumber.SetText("");
    VisibleParamItems();
  };
  return rules;
}

// --- what is shown and what may be written ------------------------------------------------------

void TfSuppliesContracts::ShowKey(std::int64_t id) {
  eIdNumber.SetText(std::to_string(id));
  LastGetRec = id;
  shown_.WasLoaded();
}

void TfSuppliesContracts::VisibleParamItems() {
  TVosClientDataSet& contract = dmSuppliesContracts->cdsSuppliesContracts;
  const std::int64_t kind = contract[KindContract].AsInt().value_or(0);
  const bool listed = NeedsSupplyList(kind, _cpBRM, _cpSuppWares);
  diLeft.FindItem(ManifacOrder.name)->visible = listed;
  diLeft.FindItem(CapExPlanCode.name)->visible = kind != 0 && kind == _cpCar;
  diLeft.FindItem(NoticePeriod.name)->visible = contract[AutomaticRenewal].AsBool();
  diRight.FindItem(KindSupplyList.name)->required = listed;
}

void TfSuppliesContracts::dsSuppliesContractsStateChange() {
  const TVosClientDataSet& contract = dmSuppliesContracts->cdsSuppliesContracts;
  const bool inserting = contract.State() == DataSetState::Insert;
  SetVosFormStatus(fsInserting, inserting);
  const bool writable = inserting ? May(paInsert) : IsLoaded() && May(paEdit);
  diLeft.readOnly = !writable;
  diRight.readOnly = !writable;
}

// --- what the actions do ------------------------------------------------------------------------

void TfSuppliesContracts::acNewExecute() {
  dmSuppliesContracts->cdsSuppliesContracts.Insert();
  eIdNumber.SetText("");
  VisibleParamItems();
  diLeft.FocusField(Supplier.name);
}

void TfSuppliesContracts::acSaveExecute() {
  ActiveControl()->CommitEditor();
  if (SaveContract()) FocusControl(&eIdNumber);
}

bool TfSuppliesContracts::SaveContract() {
  TVosClientDataSet& contract = dmSuppliesContracts->cdsSuppliesContracts;
  RequireFields(*this, diLeft, _rFieldIsEmpty,
                {Supplier.name, ContractNumber.name, ShortDescription.name, ContractDate.name,
                 KindContract.name});
  if (NeedsSupplyList(contract[KindContract].AsInt().value_or(0), _cpBRM, _cpSuppWares))
    RequireFields(*this, diRight, _rFieldIsEmpty, {KindSupplyList.name});
  RequireFields(*this, diRight, _rFieldIsEmpty, {KindSupplyChoice.name});
  if (!contract.Editing()) contract.Edit();
  return dmSuppliesContracts->documentHead.Post();
}

void TfSuppliesContracts::acCancelExecute() {
  shown_.GiveUp();
}

void TfSuppliesContracts::acDeleteExecute() {
  const std::int64_t id = shown_.TypedIdentifier();
  eIdNumber.CancelEditor();
  if (!shown_.Show(id) || !Confirmed(*this, _rDeleteCaption, _rDeleteText)) return;
  dmSuppliesContracts->cdsSuppliesContracts.Delete();
  if (!dmSuppliesContracts->documentHead.ReconcileError) ShowNeighbour(id);
}

void TfSuppliesContracts::ShowNeighbour(std::int64_t id) {
  LoadCode code = dmSuppliesContracts->GetRecord(Nav::Next, 0, id);
  if (code == LoadCode::Last || code == LoadCode::None)
    code = dmSuppliesContracts->GetRecord(Nav::Previous, 0, id);
  if (code != LoadCode::None) return;
  LastGetRec = 0;
  eIdNumber.SetText("");
  VisibleParamItems();
}

}  // namespace orvane::modules
