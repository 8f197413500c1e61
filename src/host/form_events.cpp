// How a form handles each kind of event: who gets a key, what pointing does.

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/small_controls.h"
#include "host/form.h"

namespace orvane::host {
namespace {

/// A function object of many functions, one per kind of event.
template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};

bool IsListKey(KeyStroke key) {
  if (key.modifiers != NoModifier) return false;
  switch (key.code) {
    case KeyCode::Up:
    case KeyCode::Down:
    case KeyCode::PageUp:
    case KeyCode::PageDown:
    case KeyCode::Enter:
    case KeyCode::Escape:
      return true;
    default:
      return false;
  }
}

}  // namespace

void TVosBaseForm::Handle(const Event& event) {
  std::visit(Overloaded{
                 [this](const KeyPressed& pressed) { HandleKey(pressed.key); },
                 [this](const TextTyped& typed) {
                   if (activeControl_ != nullptr) activeControl_->HandleText(typed.text);
                 },
                 [this](const EditorTextChanged& changed) {
                   if (activeControl_ != nullptr) activeControl_->EditorTextTyped(changed.text);
                 },
                 [this](const ActionChosen& chosen) { Execute(chosen.action); },
                 [this](const Pointed& pointed) { HandlePointed(pointed); },
                 [this](const ListPicked& picked) {
                   if (activeControl_ != nullptr) activeControl_->PickFromList(picked.index);
                 },
                 [this](const ListWanted&) {
                   if (activeControl_ != nullptr) activeControl_->OpenList();
                 },
                 [this](const PageChosen& chosen) {
                   Control* control = FindControl(chosen.pageControl);
                   if (control != nullptr && control->Kind() == ControlKind::PageControl)
                     static_cast<TPageControl*>(control)->ShowPage(chosen.page);
                 },
                 [this](const EndNeared& neared) {
                   Control* control = neared.control != nullptr ? neared.control : activeControl_;
                   if (control != nullptr) control->NearEnd();
                 },
                 [this](const CloseWanted&) { Close(); },
             },
             event);
}

bool TVosBaseForm::GoesToEditor(KeyStroke key) const {
  if (activeControl_ == nullptr || activeControl_->Editor() == nullptr) return false;
  if (key == KeyStroke(KeyCode::Escape)) return true;
  const TVosMTCombo* combo = activeControl_->ActiveCombo();
  return combo != nullptr && combo->List().open && IsListKey(key);
}

void TVosBaseForm::HandleKey(KeyStroke key) {
  if (GoesToEditor(key) && activeControl_->HandleKey(key)) return;
  if (const TAction* action = LiveActionFor(key)) {
    Execute(action->name);
    return;
  }
  if (activeControl_ != nullptr && activeControl_->HandleKey(key)) return;
  if (HandleFormKey(key)) return;
  if (key == KeyStroke(KeyCode::Tab)) FocusNext();
  if (key == Shift(KeyCode::Tab)) FocusNext(true);
}

void TVosBaseForm::HandlePointed(const Pointed& event) {
  if (event.control == nullptr) return;
  FocusControl(event.control);
  if (activeControl_ != event.control) return;  // the old control kept the focus
  activeControl_->PointAt(event.row, event.column, event.openEditor);
  if (!event.openEditor || event.control->Kind() != ControlKind::Grid) return;
  if (static_cast<TVosDBGrid*>(event.control)->CanEditCell()) return;
  // Where nothing can be typed a double click means what Enter means: open, choose.
  if (const TAction* action = LiveActionFor(KeyCode::Enter)) Execute(action->name);
}

}  // namespace orvane::host
