#pragma once

// What grids and inspectors share: a cursor on one field of a dataset's current row, the in-place
// editor there, and the lookup combo of the place.

#include <optional>
#include <string>
#include <string_view>

#include "data/client_dataset.h"
#include "host/controls/cell_editor.h"
#include "host/controls/control.h"

namespace orvane::host {

enum class CellKind : unsigned char { Text, Check, Memo, Password };

/// The place that the cursor stands on. The field is null when there is no column or item.
struct EditedCell {
  TField* field = nullptr;
  std::string_view mask;
  TVosMTCombo* combo = nullptr;
  CellKind kind = CellKind::Text;
  bool readOnly = false;
};

class FieldControl : public Control {
 public:
  FieldControl(TVosBaseForm& form, std::string_view name, ControlKind kind, TDataSource& source)
      : Control(form, name, kind), source_(source) {}

  TVosClientDataSet& DataSet() const { return source_.DataSet(); }
  TDataSource& Source() const { return source_; }

  bool readOnly = false;

  bool HandleText(std::string_view text) override;
  /// An editor whose row is gone (cancelled, reloaded) is no longer open.
  CellEditor* Editor() override;
  TVosMTCombo* ActiveCombo() override;
  void CommitEditor() override;
  void CancelEditor() override { CloseEditor(); }
  void Entered() override { SettleCombo(); }
  void Left() override;
  bool EditorTextTyped(std::string_view text) override;
  void PickFromList(int index) override;
  void OpenList() override { DropList(); }
  void TakeFromCombo(const Variant& key) override;

  /// Opens the editor on the current place with its text kept (F2-like, double click). Nothing
  /// happens where nothing may be typed.
  void OpenEditor();
  void CloseEditor();
  /// Flips the current check place.
  void ToggleCheck();

 protected:
  virtual EditedCell CurrentCell() const = 0;
  /// Makes sure that there is a row to type into; false when nothing may be typed here.
  virtual bool PrepareToType() { return CanEditCurrent(); }

  bool CanEditCurrent() const;
  /// Keys while the editor or its list is open: true when used, false when they belong to the
  /// toolkit's own editor, empty when they are the control's.
  std::optional<bool> HandleEditorKey(KeyStroke key);
  /// Opens the editor emptied.
  bool ClearCell();
  /// Opens the editor and the whole list of its combo.
  bool DropList();
  bool OpenForEdit();
  bool SpaceKey();
  /// What a double click does: flips a check, otherwise opens the editor.
  void Activate();
  /// Runs OnExit and OnEnter of the combos as the current place says.
  void SettleCombo();
  std::size_t LookHash() const override;

 private:
  std::optional<bool> HandleListKey(KeyStroke key);
  void Open(const EditedCell& cell);
  void PutValue(TField& field, const Variant& value);
  bool HasFocus() const;

  TDataSource& source_;
  CellEditor editor_;
  Bookmark editedRow_;
  TVosMTCombo* comboInUse_ = nullptr;
  bool committing_ = false;
};

}  // namespace orvane::host
