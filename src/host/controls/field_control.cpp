#include "host/controls/field_control.h"

#include "data/abort.h"
#include "host/controls/combo.h"
#include "host/form.h"
#include "host/meanwhile.h"

namespace orvane::host {
namespace {

constexpr int kListJump = 10;  // entries that PageUp and PageDown pass

bool IsSame(const Bookmark& left, const Bookmark& right) {
  return left.generation == right.generation && left.row == right.row;
}

}  // namespace

// --- the editor
// -----------------------------------------------------------------------------------

CellEditor* FieldControl::Editor() {
  if (!editor_.IsOpen()) return nullptr;
  if (!committing_ && !IsSame(editedRow_, DataSet().GetBookmark())) CloseEditor();
  return editor_.IsOpen() ? &editor_ : nullptr;
}

bool FieldControl::CanEditCurrent() const {
  const EditedCell cell = CurrentCell();
  if (cell.field == nullptr || readOnly || cell.readOnly) return false;
  if (cell.field->Written().ReadOnly || DataSet().IsEmpty()) return false;
  if (cell.combo == nullptr) return !cell.field->IsLookup();
  return !cell.combo->readOnly;
}

void FieldControl::Open(const EditedCell& cell) {
  const std::string_view mask =
      cell.mask.empty() && cell.combo != nullptr ? std::string_view(cell.combo->mask) : cell.mask;
  editor_.Open(*cell.field, PictureMask(mask), cell.combo);
  editor_.label = PlaceLabel();
  editor_.multiLine = cell.kind == CellKind::Memo;
  if (cell.kind == CellKind::Password) editor_.StartEmpty();
  editedRow_ = DataSet().GetBookmark();
}

bool FieldControl::OpenForEdit() {
  if (Editor() != nullptr) return true;
  if (!CanEditCurrent() || CurrentCell().kind == CellKind::Check) return false;
  Open(CurrentCell());
  editor_.KeepText();
  return true;
}

void FieldControl::OpenEditor() {
  OpenForEdit();
}

void FieldControl::CloseEditor() {
  editor_.Close();
}

bool FieldControl::ClearCell() {
  if (OpenForEdit()) editor_.SetText({});
  return true;
}

bool FieldControl::DropList() {
  TVosMTCombo* combo = ActiveCombo();
  if (combo == nullptr || !OpenForEdit()) return false;
  combo->OpenWholeList(editor_.Field()->Written().Value());
  return true;
}

bool FieldControl::HandleText(std::string_view text) {
  if (text.empty()) return false;
  if (Editor() != nullptr) {
    editor_.Type(text);
    return true;
  }
  if (!PrepareToType()) return true;
  const EditedCell cell = CurrentCell();
  if (cell.kind == CellKind::Check) {
    if (text == " ") ToggleCheck();
    return true;
  }
  Open(cell);
  if (!editor_.Type(text)) CloseEditor();
  return true;
}

bool FieldControl::EditorTextTyped(std::string_view text) {
  return Editor() != nullptr && editor_.SetText(text);
}

void FieldControl::Activate() {
  if (CurrentCell().kind == CellKind::Check)
    ToggleCheck();
  else
    OpenEditor();
}

bool FieldControl::SpaceKey() {
  return HandleText(" ");
}

void FieldControl::CommitEditor() {
  if (committing_ || Editor() == nullptr) return;
  TVosMTCombo* combo = editor_.Combo();
  const bool picked = combo != nullptr && combo->List().open && combo->List().current >= 0;
  if ((!editor_.IsChanged() && !picked) || !CanEditCurrent()) return CloseEditor();
  {
    const Meanwhile committing(committing_);
    if (combo != nullptr) {
      const Answer<Variant> key = combo->Resolve(editor_.Text());
      if (!key) Form().Refuse(key.GetFailure().message);
      PutValue(editor_.Field()->Written(), *key);
    } else {
      const Answer<Done> complete = editor_.CheckComplete();
      if (!complete) Form().Refuse(complete.GetFailure().message);
      const std::string text = editor_.Text();
      const Answer<Done> taken = editor_.Field()->SetText(text);
      if (!taken) Form().Refuse(taken.GetFailure().message);
    }
  }
  CloseEditor();
}

void FieldControl::PutValue(TField& field, const Variant& value) {
  const Answer<Variant> fitting = value.As(field.Def().kind, field.Def().size);
  if (!fitting) Form().Refuse(fitting.GetFailure().message);
  if (field.Value() == *fitting) return;
  if (!DataSet().Editing()) DataSet().Edit();
  if (!DataSet().Editing()) throw Abort{};  // the dataset's rules did not let the edit begin
  field.Set(*fitting);
}

void FieldControl::ToggleCheck() {
  const EditedCell cell = CurrentCell();
  if (!CanEditCurrent() || cell.kind != CellKind::Check) return;
  const bool ticked = cell.field->AsBool();
  const bool isBool = cell.field->Def().kind == ValueKind::Bool;
  PutValue(*cell.field, isBool ? Variant(!ticked) : Variant(ticked ? 0 : 1));
}

// --- keys
// -----------------------------------------------------------------------------------------

std::optional<bool> FieldControl::HandleListKey(KeyStroke key) {
  TVosMTCombo* combo = editor_.Combo();
  if (combo == nullptr) return std::nullopt;
  if (key == Alt(KeyCode::Down)) return DropList();
  if (!combo->List().open || key.modifiers != NoModifier) return std::nullopt;
  switch (key.code) {
    case KeyCode::Down:
      combo->MoveInList(1);
      return true;
    case KeyCode::Up:
      combo->MoveInList(-1);
      return true;
    case KeyCode::PageDown:
      combo->MoveInList(kListJump);
      return true;
    case KeyCode::PageUp:
      combo->MoveInList(-kListJump);
      return true;
    case KeyCode::Escape:
      combo->CloseList();
      return true;
    default:
      return std::nullopt;
  }
}

std::optional<bool> FieldControl::HandleEditorKey(KeyStroke key) {
  if (Editor() == nullptr) return std::nullopt;
  if (const auto used = HandleListKey(key)) return used;
  const bool severalLines = editor_.multiLine && editor_.Text().find('\n') != std::string::npos;
  switch (key.code) {
    case KeyCode::Left:
    case KeyCode::Right:
    case KeyCode::Home:
    case KeyCode::End:
    case KeyCode::Delete:
      return false;
    case KeyCode::Up:
    case KeyCode::Down:
      if (severalLines && key.modifiers == NoModifier) return false;
      return std::nullopt;
    case KeyCode::Backspace:
      editor_.Backspace();
      return true;
    case KeyCode::Escape:
      CloseEditor();
      return true;
    case KeyCode::Enter:
      if (key != Ctrl(KeyCode::Enter) || !editor_.multiLine) return std::nullopt;
      editor_.KeepText();
      editor_.Type("\n");
      return true;
    default:
      return std::nullopt;
  }
}

// --- the combo of the place
// -----------------------------------------------------------------------

bool FieldControl::HasFocus() const {
  return Form().ActiveControl() == this;
}

TVosMTCombo* FieldControl::ActiveCombo() {
  return CanEditCurrent() ? CurrentCell().combo : nullptr;
}

void FieldControl::SettleCombo() {
  TVosMTCombo* wanted = HasFocus() ? ActiveCombo() : nullptr;
  if (wanted == comboInUse_) return;
  TVosMTCombo* left = comboInUse_;
  comboInUse_ = wanted;
  if (left != nullptr) {
    left->CloseList();
    if (left->OnExit) left->OnExit();
  }
  if (wanted != nullptr && comboInUse_ == wanted && wanted->OnEnter) wanted->OnEnter();
}

void FieldControl::Left() {
  TVosMTCombo* left = comboInUse_;
  comboInUse_ = nullptr;
  if (left == nullptr) return;
  left->CloseList();
  if (left->OnExit) left->OnExit();
}

void FieldControl::PickFromList(int index) {
  TVosMTCombo* combo = Editor() == nullptr ? nullptr : editor_.Combo();
  if (combo == nullptr || !combo->List().open) return;
  combo->MoveInList(index - combo->List().current);
  CommitEditor();
}

void FieldControl::TakeFromCombo(const Variant& key) {
  if (!CanEditCurrent()) return;
  const Meanwhile committing(committing_);
  PutValue(CurrentCell().field->Written(), key);
  CloseEditor();
}

std::size_t FieldControl::LookHash() const {
  LookHasher hasher;
  hasher.Add(Control::LookHash()).Add(readOnly ? 1U : 0U);
  hasher.Add(editor_.IsOpen() ? 1U : 0U).Add(editor_.Text());
  if (editor_.Combo() != nullptr) hasher.Add(editor_.Combo()->ListVersion());
  return hasher.Value();
}

}  // namespace orvane::host
