// How a form handles each kind of event: who gets a key, what pointing does.

#include "host/combo.h"
#include "host/form.h"
#include "host/grid.h"
#include "host/inspector.h"
#include "host/small_controls.h"

namespace orvane {
namespace {

/// A function object of many functions, one per kind of event.
template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};

void PointAtCell(TVosDBGrid& grid, const Pointed& event) {
  const bool sameRow =
      event.row < 0 || static_cast<std::size_t>(event.row) == grid.DataSet().RecNo();
  const bool sameColumn = event.column < 0 || event.column == grid.CurrentColumn();
  if (sameRow && sameColumn && grid.Editor() != nullptr) return;
  if (!sameRow) grid.GoToRow(static_cast<std::size_t>(event.row));
  if (!sameColumn) grid.SetCurrentColumn(event.column);
  if (!event.openEditor) return;
  if (!grid.CanEditCell()) {
    // Where nothing can be typed a double click means what Enter means: open, choose.
    const TAction* action = grid.Form().LiveActionFor(KeyCode::Enter);
    if (action != nullptr) grid.Form().Execute(action->name);
    return;
  }
  const GridColumn& column = grid.columns[static_cast<std::size_t>(grid.CurrentColumn())];
  if (column.kind == ColumnKind::Check)
    grid.ToggleCheck();
  else
    grid.OpenEditor();
}

void PointAtItem(TVosDataInspector& inspector, const Pointed& event) {
  const bool same = event.row < 0 || event.row == inspector.CurrentItem();
  if (same && inspector.Editor() != nullptr) return;
  if (!same) inspector.SetCurrentItem(event.row);
  if (!event.openEditor || !inspector.CanEditItem()) return;
  const InspectorItem& item = inspector.items[static_cast<std::size_t>(inspector.CurrentItem())];
  if (item.kind == ItemKind::Check)
    inspector.ToggleCheck();
  else
    inspector.OpenEditor();
}

void FetchBehind(Control* control) {
  if (control == nullptr || control->Kind() != ControlKind::Grid) return;
  TVosClientDataSet& dataSet = static_cast<TVosDBGrid*>(control)->DataSet();
  // A row being typed must not move under the user.
  if (!dataSet.Editing() && dataSet.HasMore()) dataSet.FetchMore();
}

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
                 [this](const EditorTextChanged& changed) { HandleEditorText(changed.text); },
                 [this](const ActionChosen& chosen) { Execute(chosen.action); },
                 [this](const Pointed& pointed) { HandlePointed(pointed); },
                 [this](const ListPicked& picked) { HandleListPicked(picked.index); },
                 [this](const ListWanted&) {
                   if (activeControl_ != nullptr) activeControl_->HandleKey(Alt(KeyCode::Down));
                 },
                 [this](const PageChosen& chosen) {
                   Control* control = FindControl(chosen.pageControl);
                   if (control != nullptr && control->Kind() == ControlKind::PageControl)
                     static_cast<TPageControl*>(control)->ShowPage(chosen.page);
                 },
                 [this](const EndNeared& neared) {
                   FetchBehind(neared.control != nullptr ? neared.control : activeControl_);
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
  if (event.control->Kind() == ControlKind::Grid)
    PointAtCell(static_cast<TVosDBGrid&>(*event.control), event);
  if (event.control->Kind() == ControlKind::Inspector)
    PointAtItem(static_cast<TVosDataInspector&>(*event.control), event);
}

void TVosBaseForm::HandleListPicked(int index) {
  TVosMTCombo* combo = activeControl_ == nullptr ? nullptr : activeControl_->ActiveCombo();
  if (combo == nullptr || !combo->List().open) return;
  combo->MoveInList(index - combo->List().current);
  activeControl_->CommitEditor();
}

void TVosBaseForm::HandleEditorText(const std::string& text) {
  CellEditor* editor = activeControl_ == nullptr ? nullptr : activeControl_->Editor();
  if (editor == nullptr || !editor->SetText(text)) return;
  if (TVosMTCombo* combo = activeControl_->ActiveCombo()) combo->TextChanged(editor->Text());
}

}  // namespace orvane
