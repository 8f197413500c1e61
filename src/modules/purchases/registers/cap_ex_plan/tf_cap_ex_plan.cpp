#include "modules/purchases/registers/cap_ex_plan/tf_cap_ex_plan.h"

#include "contract/cap_ex_plan.h"
#include "host/dialogs.h"
#include "host/search_dialog.h"
#include "kit/action_table.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "kit/parameters.h"
#include "kit/required_fields.h"

namespace orvane::modules {

using namespace cap_ex_plan;

namespace {

constexpr int kWarningQuestion = 3;
constexpr int kSumDecimals = 2;
constexpr std::string_view kNameMask = "[*50[@]]";
constexpr std::string_view kNumberMask = "[*30[@]]";
constexpr std::string_view _rSaveChanges = "Запис на промените?";
constexpr std::string_view _rValueWanted = "Въведете стойност в поле '%s'";
constexpr std::string_view _rCodeWanted = "Въведете код на позиция от плана.";

/// "Име  <Български>".
struct TitledItem {
  std::string_view field;
  std::string_view caption;
  int language;
};
constexpr TitledItem kTitled[] = {
    {"Name", "Име", 1},
    {"Name2", "Име", 2},
    {"Description", "Описание", 1},
    {"Description2", "Описание", 2},
};

bool Agreed(TVosBaseForm& form, std::string_view text) {
  return VosMessageDlg(form, kWarningQuestion, form.caption, text, DialogButtons::YesNo) ==
         kAnswerYes;
}

}  // namespace

const LiveRow TfCapExPlan::kLive[] = {
    // action, focus, state, needs, when
    {"acSave", "di", InState::Edit, paEdit},
    {"acSave", "di", InState::Insert, paInsert},
    {"acCancel", "di", InState::Editing},
    {"acCancel", "di", InState::Any, {}, &When<&TfCapExPlan::IsTyping>},
    {"acDelete", "eCode", InState::Any, paDelete, &When<&TfCapExPlan::HasPosition>},
    {"acSearch", "eCode"},
    {"acSearchByName", "eCode"},
    {"acSearchByPartName", "eCode"},
    {"acExit", kAnywhere},
};

std::span<const LiveRow> TfCapExPlan::LiveRows() const {
  return kLive;
}

void TfCapExPlan::AfterRefreshActions() {
  navigation_.Refresh(state_, false);
}

TfCapExPlan::TfCapExPlan(const FormIdentity& identity)
    : TVosDBForm(identity, "TfCapExPlan", "План за  капиталови разходи"),
      dmCapExPlan(std::make_unique<TdmCapExPlan>(*this)),
      eCode(*this, "eCode", "Код"),
      di(*this, "di", dmCapExPlan->dsCapExPlan),
      navigation_(*this, eCode, "", [this](Nav nav, int step) { Load(nav, step); }) {
  SetUpItems();
  AddOwnActions();
  eCode.mask = kMaskCode9;
  eCode.OnEditClosed = [this](const std::string&) { FocusControl(&di); };
  eCode.OnExit = [this] { eCodeExit(); };
  di.OnExit = [this] { diExit(); };
  di.OnLastItem = [this] {
    di.SetCurrentItem(0);
    return true;
  };
  dmCapExPlan->dsCapExPlan.OnStateChange = [this] { SettleAccess(); };
  dmCapExPlan->OnFound = [this](const std::string& code) { eCode.SetText(code); };
  Load(Nav::First, 0);
}

void TfCapExPlan::AddOwnActions() {
  using Self = TfCapExPlan;
  static constexpr ActionRow<Self> kActions[] = {
      // action, caption, key, handler, icon
      {"acSave", "Запис", KeyCode::F9, &Self::acSaveExecute, "save"},
      {"acCancel", "Отказ", Ctrl(KeyCode::Z), &Self::acCancelExecute, "cancel"},
      {"acDelete", "Изтриване", KeyCode::F5, &Self::acDeleteExecute, "delete"},
      {"acSearch", "Търсене", KeyCode::F2, &Self::acSearchExecute, "search"},
      {"acSearchByName", "Търсене по име", Shift(KeyCode::F2), &Self::acSearchByNameExecute,
       "search"},
      {"acSearchByPartName", "Търсене по част от име", Ctrl(KeyCode::F2),
       &Self::acSearchByPartNameExecute, "search"},
  };
  AddActions(*this, kActions);
  navigation_.AddTo();
  AddHostActions(*this);
  ribbon = {{"Операции",
             {{"Общи", {"acSave", "acCancel", "acDelete"}},
              {"Търсене", {"acSearch", "acSearchByName", "acSearchByPartName"}},
              {"Изход", {"acExit"}}}}};
  layout = ColumnOf({RowOf({Of(eCode), BarOf(navigation_.ActionNames()), SpaceOf(1)}), Of(di, 1)});
}

void TfCapExPlan::SetUpItems() {
  const auto item = [](const FieldDef& field) { return Item(field.name, field.label); };
  di.items = {
      item(Name).Mask(kNameMask).Required(),
      item(Name2).Mask(kNameMask),
      item(InternalNumber).Mask(kNumberMask),
      item(FromDate).Required(),
      item(TimeLimit).Required(),
      item(CapSum).Mask(SumMask(kSumDecimals)).Required(),
      item(Description).Shown(ItemKind::Memo),
      item(Description2).Shown(ItemKind::Memo),
  };
}

void TfCapExPlan::VosBaseFormShow() {
  for (const TitledItem& titled : kTitled) {
    InspectorItem& item = *di.FindItem(titled.field);
    item.visible = titled.language == 1 || !App().AppNotMultiLang();
    if (App().AppNotMultiLang()) continue;
    item.label = std::string(titled.caption) + "  <" + App().LanguageName(titled.language) + ">";
  }
}

void TfCapExPlan::SettleAccess() {
  const bool inserting = dmCapExPlan->cdsCapExPlan.State() == DataSetState::Insert;
  di.readOnly = !inserting && !May(paEdit);
}

bool TfCapExPlan::HasPosition() const {
  return dmCapExPlan->HasPosition() &&
         eCode.TypedText() == dmCapExPlan->cdsCapExPlan[Code].AsString();
}

bool TfCapExPlan::IsTyping() const {
  return ActiveControl() != nullptr && ActiveControl()->Editor() != nullptr;
}

// --- the code box -------------------------------------------------------------------------------

bool TfCapExPlan::HandleFormKey(KeyStroke key) {
  if (key != KeyStroke(KeyCode::Enter) || ActiveControl() != &eCode) return false;
  FocusControl(&di);
  return true;
}

void TfCapExPlan::Load(Nav mode, int offset) {
  SendWaiting();
  state_ = dmCapExPlan->GetRecord(mode, offset, eCode.Text());
}

/// Leaving the code opens its position, or starts one that the plan does not have yet.
void TfCapExPlan::eCodeExit() {
  RefuseIf(eCode.Text().empty(), _rCodeWanted);
  const std::string typed = eCode.Text();
  Load(Nav::ByKey, 0);
  di.SetCurrentItem(0);
  if (state_ == LoadCode::Between) {
    if (May(paEdit)) dmCapExPlan->cdsCapExPlan.Edit();
    return;
  }
  RefuseIf(!May(paInsert), "В плана няма позиция " + typed + ", а нямате право да въвеждате нови.");
  dmCapExPlan->StartPosition(typed);
}

/// Coming back to the code, what was typed is saved or given up. A position that was only looked at
/// has no changes to ask about.
void TfCapExPlan::diExit() {
  TVosClientDataSet& position = dmCapExPlan->cdsCapExPlan;
  if (!position.Editing()) return;
  if (position.Modified() && Agreed(*this, _rSaveChanges)) return Save();
  position.Cancel();
}

// --- actions ------------------------------------------------------------------------------------

void TfCapExPlan::Save() {
  RequireFields(*this, di, _rValueWanted, {Name.name, FromDate.name, TimeLimit.name, CapSum.name},
                kErrorMessage);
  TVosClientDataSet& position = dmCapExPlan->cdsCapExPlan;
  position.Post();
  if (position.Editing()) throw Abort{};  // refused: what was typed waits for a correction
}

void TfCapExPlan::acSaveExecute() {
  di.FlushChanges();
  Save();
  FocusControl(&eCode);
}

void TfCapExPlan::acCancelExecute() {
  if (UndoInEditor()) return;
  dmCapExPlan->cdsCapExPlan.Cancel();
}

void TfCapExPlan::acDeleteExecute() {
  if (!Agreed(*this, _rDeleteText)) return;
  TVosClientDataSet& position = dmCapExPlan->cdsCapExPlan;
  position.Delete();
  if (!position.IsEmpty()) return;  // refused: the position is still there
  Load(Nav::Next, 0);
  if (state_ == LoadCode::Last) Load(Nav::Previous, 0);
  if (state_ == LoadCode::First) {
    eCode.SetText({});
    position.EmptyDataSet();
  }
}

void TfCapExPlan::Search(std::string_view field, bool partial) {
  SearchSpec spec = SearchOf(dmCapExPlan->search);
  spec.caption = "Търсене";
  spec.startField = field;
  spec.partial = partial;
  const auto chosen = RunSearchDialog(*this, spec);
  if (!chosen) return;
  SendWaiting();
  state_ = dmCapExPlan->GetRecord(Nav::ByKey, 0, FindValue(*chosen, Code.name)->ToText());
}

}  // namespace orvane::modules
