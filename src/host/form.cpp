#include "host/form.h"

#include <algorithm>
#include <exception>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/login_form.h"
#include "host/meanwhile.h"

namespace orvane::host {
namespace {

constexpr std::string_view kUnsaved =
    "Има незаписани промени. Желаете ли да затворите екрана без запис?";

/// Counts while it lives.
class Inside {
 public:
  explicit Inside(int& depth) : depth_(depth) { ++depth_; }
  ~Inside() { --depth_; }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

 private:
  int& depth_;
};

InState StateOf(const TVosClientDataSet* dataSet) {
  if (dataSet == nullptr) return InState::Inactive;
  switch (dataSet->State()) {
    case DataSetState::Browse:
      return InState::Browse;
    case DataSetState::Edit:
      return InState::Edit;
    case DataSetState::Insert:
      return InState::Insert;
    case DataSetState::Inactive:
      break;
  }
  return InState::Inactive;
}

/// Screens hand their language to those they open.
int LanguageToBeginIn(const FormIdentity& identity) {
  if (identity.language != 0) return identity.language;
  if (identity.opener != nullptr) return identity.opener->GetLanguageNumber();
  return identity.app->UserLanguage();
}

bool Holds(InState states, InState state) {
  return (static_cast<int>(states) & static_cast<int>(state)) != 0;
}

bool IsLive(const TAction& action) {
  return action.enabled && action.visible;
}

bool HasKey(const TAction& action, KeyStroke key) {
  return !key.IsNone() && (action.shortcut == key || action.secondShortcut == key);
}

/// The dataset that a control edits, when it is kept on the server.
TVosClientDataSet* KeptDataSet(Control* control) {
  if (control == nullptr) return nullptr;
  TVosClientDataSet* dataSet = nullptr;
  if (control->Kind() == ControlKind::Grid)
    dataSet = &static_cast<TVosDBGrid*>(control)->DataSet();
  else if (control->Kind() == ControlKind::Inspector)
    dataSet = &static_cast<TVosDataInspector*>(control)->DataSet();
  return dataSet != nullptr && dataSet->Connection() != nullptr ? dataSet : nullptr;
}

bool IsTyped(const TVosClientDataSet* dataSet) {
  return dataSet != nullptr && dataSet->Editing() && dataSet->Modified();
}

void CancelEdit(TVosClientDataSet* dataSet) {
  if (dataSet != nullptr && dataSet->Editing()) dataSet->Cancel();
}

void CollectControls(const LayoutNode& node, std::vector<Control*>& found) {
  if (node.control != nullptr && node.control->Kind() == ControlKind::PageControl) {
    const auto& pages = *static_cast<TPageControl*>(node.control);
    const auto active = static_cast<std::size_t>(pages.active);
    if (active < pages.pages.size() && pages.pages[active].content != nullptr)
      found.push_back(pages.pages[active].content);
  } else if (node.control != nullptr) {
    found.push_back(node.control);
  }
  for (const LayoutNode& child : node.children)
    CollectControls(child, found);
}

}  // namespace

TVosBaseForm::TVosBaseForm(const FormIdentity& identity, std::string_view className,
                           std::string_view formCaption)
    : caption(formCaption),
      identity_(identity),
      className_(className),
      access_(identity.access),
      language_(LanguageToBeginIn(identity)) {
  App().livingForms_.push_back(this);
}

TVosBaseForm::~TVosBaseForm() {
  std::erase(App().livingForms_, this);
  App().Toolkit().FormGone(*this);
}

void TVosBaseForm::SetAccess(TPointAccess access) {
  access_ = access;
  OnChangeAccess();
  RefreshActions();
}

void TVosBaseForm::SetVosFormStatus(FormStatus status, bool on) {
  status_ = static_cast<std::uint8_t>(on ? status_ | status : status_ & ~status);
}

// --- the gate --------------------------------------------------------------------------

void TVosBaseForm::Dispatch(const Event& event) noexcept {
  RunInGate([this, &event] { Handle(event); });
}

void TVosBaseForm::RunInGate(const std::function<void()>& work) noexcept {
  const Inside inside(gateDepth_);
  RunGuarded(work);
  RunGuarded([this] { RefreshActions(); });
  RunGuarded([this] { App().Toolkit().FormChanged(*this); });
}

void TVosBaseForm::RunGuarded(const std::function<void()>& work) noexcept {
  std::optional<Failure> failure;
  try {
    work();
  } catch (const Abort&) {
    return;  // the user was told
  } catch (const ServerError& error) {
    failure = error.failure;
  } catch (const std::exception& error) {
    const std::string next = HasUnsavedTyping() ? ". Въведеното е запазено; повторете операцията."
                                                : ". Опитайте отново.";
    failure = {FailureKind::Internal, std::string("Неочаквана грешка: ") + error.what() + next};
  }
  if (!failure) return;
  try {
    ShowFailure(*failure);
  } catch (...) {
    // A message that cannot be shown has nobody left to go to; the form goes on.
    return;
  }
}

void TVosBaseForm::ShowFailure(const Failure& failure) {
  ShowFailure(failure, HasUnsavedTyping() ? Typing::Kept : Typing::None);
}

void TVosBaseForm::ShowFailure(const Failure& failure, Typing typing) {
  VosMessageDlg(*this, 0, caption, FailureText(failure, typing));
  if (failure.kind == FailureKind::SessionEnded) LogInAgain();
}

/// What the ended session kept back goes out under the new one, of every screen that is open.
bool TVosBaseForm::LogInAgain() {
  if (!RunLoginAgain(*this)) return false;
  const std::vector<TVosBaseForm*> forms = App().livingForms_;
  for (TVosBaseForm* form : forms)
    form->RunGuarded([form] { form->SendWaiting(); });
  return true;
}

void TVosBaseForm::Refuse(std::string_view text) {
  VosMessageDlg(*this, 0, caption, text);
  throw Abort();
}

void TVosBaseForm::GoToDocument(std::int64_t id) {
  RefuseIf(HasUnsavedTyping(), "Първо запишете въведеното или се откажете от него.");
  ShowDocument(id);
}

// --- life ------------------------------------------------------------------------------

void TVosBaseForm::BeShown() {
  if (shown_) return;
  shown_ = true;
  RunInGate([this] {
    RunGuarded([this] { Read(); });
    if (!closed_ && activeControl_ == nullptr) FocusNext();
  });
}

/// What could not be read is no empty screen: it is read again, or the screen is not opened.
void TVosBaseForm::Read() {
  for (;;) {
    try {
      return OnShow();
    } catch (const ServerError& error) {
      if (MayReadAgain(error.failure)) continue;
      closed_ = true;
      return;
    }
  }
}

bool TVosBaseForm::MayReadAgain(const Failure& failure) {
  if (failure.kind != FailureKind::SessionEnded) return OfferAgain(App(), this, caption, failure);
  VosMessageDlg(*this, 0, caption, FailureText(failure, Typing::None));
  return LogInAgain();
}

void TVosBaseForm::Keeps(TVosClientDataSet& dataSet, std::function<void()> send) {
  std::erase_if(kept_, [&](const Kept& kept) { return kept.dataSet == &dataSet; });
  kept_.push_back({&dataSet, std::move(send)});
}

bool TVosBaseForm::HasWaiting() const {
  return std::ranges::any_of(kept_,
                             [](const Kept& kept) { return kept.dataSet->ChangeCount() > 0; });
}

void TVosBaseForm::SendWaiting() {
  for (std::size_t i = 0; i < kept_.size(); ++i) {
    if (kept_[i].dataSet->ChangeCount() > 0) kept_[i].send();
  }
}

bool TVosBaseForm::HoldsTyping() const {
  return HasWaiting() ||
         std::ranges::any_of(kept_, [](const Kept& kept) { return IsTyped(kept.dataSet); });
}

bool TVosBaseForm::HasUnsavedTyping() const {
  if (HoldsTyping()) return true;
  if (IsTyped(MainDataSet()) || IsTyped(KeptDataSet(activeControl_))) return true;
  return KeptDataSet(activeControl_) != nullptr && IsTypingInEditor();
}

void TVosBaseForm::DropTyping() {
  if (activeControl_ != nullptr) activeControl_->CancelEditor();
  CancelEdit(KeptDataSet(activeControl_));
  CancelEdit(MainDataSet());
}

void TVosBaseForm::Close() {
  if (closed_) return;
  try {
    SendWaiting();
  } catch (const Abort&) {  // it could not be sent: the user decides what becomes of it
  }
  if (HasUnsavedTyping()) {
    if (!Confirmed(*this, caption, kUnsaved)) throw Abort();
    DropTyping();
  }
  OnClose();
  closed_ = true;
}

void TVosBaseForm::ShowModal() {
  App().Toolkit().ShowModal(*this);
}

void TVosBaseForm::SwitchLanguage() {
  if (App().AppNotMultiLang()) return;
  language_ = FirstLanguage() ? 2 : 1;
  OnLanguageChanged();
}

// --- actions ---------------------------------------------------------------------------

TAction& TVosBaseForm::AddAction(TAction action) {
  actions_.push_back(std::make_unique<TAction>(std::move(action)));
  return *actions_.back();
}

TAction* TVosBaseForm::FindAction(std::string_view name) const {
  for (const std::unique_ptr<TAction>& action : actions_) {
    if (action->name == name) return action.get();
  }
  return nullptr;
}

bool TVosBaseForm::Execute(std::string_view name) {
  const TAction* action = FindAction(name);
  if (action == nullptr || !IsLive(*action)) return false;
  if (action->OnExecute) action->OnExecute();
  return true;
}

bool TVosBaseForm::FocusMatches(std::string_view word) const {
  if (word == kAnywhere) return true;
  if (activeControl_ == nullptr) return false;
  const TVosMTCombo* combo = activeControl_->ActiveCombo();
  if (word == kAtCombo) return combo != nullptr;
  if (word == kAtKeyEdit) return activeControl_->Kind() == ControlKind::KeyEdit;
  // A grid stays the place of its actions while one of its combos is in use.
  return activeControl_->Name() == word || (combo != nullptr && combo->Name() == word);
}

bool TVosBaseForm::Matches(const LiveRow& row) const {
  return FocusMatches(row.focus) && Holds(row.states, StateOf(MainDataSet())) &&
         access_.Has(row.needs) && (row.when == nullptr || row.when(*this));
}

void TVosBaseForm::RefreshActions() {
  for (const std::unique_ptr<TAction>& action : actions_)
    action->enabled = action->always;
  for (const LiveRow& row : LiveRows()) {
    TAction* action = FindAction(row.action);
    if (action != nullptr && !action->enabled) action->enabled = Matches(row);
  }
  AfterRefreshActions();
}

std::vector<TAction*> TVosBaseForm::LiveActions() const {
  std::vector<TAction*> live;
  const auto add = [&live](TAction* action) {
    if (action != nullptr && IsLive(*action) && std::ranges::find(live, action) == live.end())
      live.push_back(action);
  };
  for (const LiveRow& row : LiveRows())
    add(FindAction(row.action));
  for (const std::unique_ptr<TAction>& action : actions_)
    add(action.get());
  return live;
}

TAction* TVosBaseForm::LiveActionFor(KeyStroke key) const {
  for (TAction* action : LiveActions()) {
    if (HasKey(*action, key)) return action;
  }
  return nullptr;
}

std::vector<std::string> TVosBaseForm::DuplicateLiveKeys() const {
  std::vector<std::string> duplicates;
  const std::vector<TAction*> live = LiveActions();
  for (std::size_t i = 0; i < live.size(); ++i) {
    for (const KeyStroke key : {live[i]->shortcut, live[i]->secondShortcut}) {
      if (key.IsNone() || LiveActionFor(key) != live[i]) continue;
      std::string names;
      for (std::size_t j = i + 1; j < live.size(); ++j) {
        if (HasKey(*live[j], key)) names += ", " + live[j]->name;
      }
      if (!names.empty()) duplicates.push_back(KeyText(key) + ": " + live[i]->name + names);
    }
  }
  return duplicates;
}

// --- controls and focus ----------------------------------------------------------------

Control* TVosBaseForm::FindControl(std::string_view name) const {
  const auto found = std::ranges::find(controls_, name, &Control::Name);
  return found == controls_.end() ? nullptr : *found;
}

void TVosBaseForm::FocusControl(Control* control) {
  if (control != nullptr && !control->CanFocus()) return;
  focusTarget_ = control;
  if (leaving_ || control == activeControl_) return;
  if (activeControl_ != nullptr) LeaveActiveControl();
  if (focusTarget_ == activeControl_) return;
  cameFrom_ = activeControl_;
  activeControl_ = focusTarget_;
  if (activeControl_ == nullptr) return;
  Control& entered = *activeControl_;
  if (entered.OnEnter) entered.OnEnter();
  if (activeControl_ == &entered) entered.Entered();
}

/// Tells the active control that it loses the focus. A rule that keeps the focus, by Abort or by
/// asking for it back, leaves the control as it was.
void TVosBaseForm::LeaveActiveControl() {
  const Meanwhile leaving(leaving_);
  Control& left = *activeControl_;
  left.BeforeLeave();
  if (focusTarget_ == &left) return;
  left.Left();
  try {
    if (left.OnExit) left.OnExit();
  } catch (...) {
    left.Entered();
    throw;
  }
  if (focusTarget_ == &left) left.Entered();
}

std::vector<Control*> TVosBaseForm::FocusOrder() const {
  std::vector<Control*> order;
  CollectControls(layout, order);
  if (order.empty()) order = controls_;
  std::erase_if(order, [](const Control* control) { return !control->CanFocus(); });
  return order;
}

void TVosBaseForm::FocusNext(bool backwards) {
  std::vector<Control*> order = FocusOrder();
  if (order.empty()) return;
  if (backwards) std::ranges::reverse(order);
  const auto active = std::ranges::find(order, activeControl_);
  const bool last = active == order.end() || active + 1 == order.end();
  FocusControl(last ? order.front() : *(active + 1));
}

bool TVosBaseForm::IsTypingInEditor() const {
  const CellEditor* editor = activeControl_ == nullptr ? nullptr : activeControl_->Editor();
  return editor != nullptr && editor->IsChanged();
}

bool TVosBaseForm::UndoInEditor() {
  if (!IsTypingInEditor()) return false;
  activeControl_->CancelEditor();
  return true;
}

std::string TVosBaseForm::FocusName() const {
  if (activeControl_ == nullptr) return {};
  const TVosMTCombo* combo = activeControl_->ActiveCombo();
  return combo != nullptr ? combo->Name() : activeControl_->Name();
}

}  // namespace orvane::host
