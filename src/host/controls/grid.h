#pragma once

// The editable grid on a dataset. Enter goes to the next cell, past the last one to the next row
// and, where rows may be inserted, to a new one; leaving a row posts it; leaving the grid cancels a
// row that was not posted, and asks first when the user typed something into it.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "host/controls/field_control.h"

namespace orvane::host {

enum class ColumnKind : unsigned char { Text, Check, Memo };

struct GridColumn {
  std::string field = {};
  int width = 10;          ///< characters
  std::string title = {};  ///< '~' breaks the line
  std::string group = {};  ///< neighbours with the same group share a head cell
  std::string mask = {};
  TVosMTCombo* combo = nullptr;
  ColumnKind kind = ColumnKind::Text;
  bool readOnly = false;
  bool summed = false;  ///< its sum stands at the end of the printed list
};

class TVosDBGrid : public FieldControl {
 public:
  TVosDBGrid(TVosBaseForm& form, std::string_view name, TDataSource& source);

  std::vector<GridColumn> columns;
  int fixedCols = 1;       ///< columns that stay when the others scroll, tinted
  bool canInsert = false;  ///< a new row is appended past the last one
  /// Rows may be appended though `readOnly` keeps those that are there from being changed: a
  /// register whose user may insert but not edit.
  bool insertWhenReadOnly = false;
  bool cancelOnExit = true;
  /// The screen's action that deletes a row: Ctrl+Delete runs it, with all its conditions.
  std::string deleteAction = "acDelete";
  int pageRows = 20;      ///< rows a page of the view holds; set by the view
  std::string emptyText;  ///< what would be here and which key makes it, while there are no rows
  /// Another column became the current one.
  std::function<void()> OnColEnter;
  /// A key of the grid, before the grid's own use of it; true when it was used up. Keys of an open
  /// list or editor do not come here.
  std::function<bool(KeyStroke)> OnKeyDown;
  /// Enter or Tab in the last column, after the row was posted; true when it was used (then no next
  /// row).
  std::function<bool()> OnLastColumn;

  GridColumn* FindColumn(std::string_view field);
  void RemoveColumn(std::string_view field);
  /// Between 0 and the last column; 0 when there are none.
  int CurrentColumn() const;
  TField& CurrentField();
  /// Moves within the row; commits an open editor first.
  void SetCurrentColumn(int column);
  /// Focuses the grid and goes to the field's column in the current row.
  void FocusField(std::string_view field);
  /// Moves to another row: posts the row in edit first (Abort keeps everything where it is). A new
  /// row in which nothing was typed is dropped instead.
  void GoToRow(std::size_t position);
  /// A new row behind the last one; nothing happens where rows may not be inserted.
  void AppendRow();
  bool CanAppend() const;
  /// What stands in place of the rows while there are none. Rows that could not be read are not
  /// rows that are not there: nobody is invited to enter the first one.
  std::string_view EmptyText() const;
  /// The row in edit is left without being posted: an untouched one is cancelled, of one with
  /// typing the user decides; an Abort when he goes back to it, or when its post is refused.
  void GiveUpRow();
  /// What a screen's "Запис" does in a grid: commits the open editor and posts the row in edit.
  void PostRow();
  /// Whether the current cell may be typed into.
  bool CanEditCell() const { return CanEditCurrent(); }
  /// The title of a field's column without line breaks, for messages; the field's label when the
  /// column has no title or is not shown.
  std::string TitleOf(std::string_view field) const;

  bool HandleKey(KeyStroke key) override;
  void BeforeLeave() override;
  void PointAt(int row, int column, bool openEditor) override;
  void NearEnd() override;
  std::string PlaceLabel() const override;

 protected:
  EditedCell CurrentCell() const override;
  bool PrepareToType() override;
  std::size_t LookHash() const override;

 private:
  struct KeyRow;
  static const KeyRow kKeys[];

  bool EnterKey();
  bool TabKey();
  bool BackKey();
  bool LeftKey();
  bool RightKey();
  bool HomeKey();
  bool EndKey();
  bool UpKey();
  bool DownKey();
  bool PageUpKey();
  bool PageDownKey();
  bool FirstKey();
  bool LastKey();
  bool InsertKey();
  bool DeleteRowKey();
  bool EscapeKey();

  /// False when there was no next cell to go to.
  bool GoToNextCell();
  bool GoToNextRow();
  void StartRow(int columnBefore);
  void FetchAtEnd();
  int FirstColumn() const;
  int LastColumn() const { return static_cast<int>(columns.size()) - 1; }
  bool IsUntouchedInsert() const;
  bool HasTypedRow();

  int currentColumn_ = 0;
};

}  // namespace orvane::host
