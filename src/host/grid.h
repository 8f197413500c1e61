#pragma once

// The editable grid on a dataset. Enter goes to the next cell, past the last one to the next row
// and, where rows may be inserted, to a new one; leaving a row posts it; leaving the grid cancels a
// row that was not posted.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/picture_mask.h"
#include "host/cell_editor.h"
#include "host/control.h"

namespace orvane {

enum class ColumnKind : unsigned char { Text, Check, Memo };

struct GridColumn {
  std::string field = {};
  int width = 10;     ///< characters
  std::string title = {};  ///< '~' breaks the line
  std::string group = {};  ///< neighbours with the same group share a head cell
  std::string mask = {};
  TVosMTCombo* combo = nullptr;
  ColumnKind kind = ColumnKind::Text;
  bool readOnly = false;
};

class TVosDBGrid : public Control {
 public:
  TVosDBGrid(TVosBaseForm& form, std::string_view name, TDataSource& source);

  TVosClientDataSet& DataSet() const { return source_.DataSet(); }
  TDataSource& Source() const { return source_; }

  std::vector<GridColumn> columns;
  int fixedCols = 1;  ///< columns that stay when the others scroll, tinted
  bool readOnly = false;
  bool canInsert = false;  ///< a new row is appended past the last one
  bool cancelOnExit = true;
  std::string emptyText;  ///< what would be here and which key makes it, while there are no rows
  std::function<void()> OnColEnter;
  /// Enter or Tab in the last column; true when it was used (then no next row).
  std::function<bool()> OnLastColumn;

  GridColumn* FindColumn(std::string_view field);
  void RemoveColumn(std::string_view field);
  int CurrentColumn() const { return currentColumn_; }
  TField& CurrentField();
  /// Moves within the row; commits an open editor first.
  void SetCurrentColumn(int column);
  void FocusField(std::string_view field);
  /// Moves to another row: posts the row in edit first (Abort keeps everything where it is).
  void GoToRow(std::size_t position);
  /// A new row; used by Down and Enter past the end and by walks.
  void AppendRow();
  /// Whether the current cell may be typed into.
  bool CanEditCell() const;
  /// The title of a field's column without line breaks, for messages.
  std::string TitleOf(std::string_view field) const;

  bool HandleKey(KeyStroke key) override;
  bool HandleText(std::string_view text) override;
  CellEditor* Editor() override { return editor_.IsOpen() ? &editor_ : nullptr; }
  TVosMTCombo* ActiveCombo() override;
  void CommitEditor() override;
  void BeforeLeave() override;
  /// Opens the editor on the current cell (F2-like, double click, or first typing).
  void OpenEditor();
  void CloseEditor();
  /// Flips the current check cell.
  void ToggleCheck();

 private:
  TDataSource& source_;
  int currentColumn_ = 0;
  CellEditor editor_;
};

}  // namespace orvane
