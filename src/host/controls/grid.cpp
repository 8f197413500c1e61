#include "host/controls/grid.h"

#include <algorithm>
#include <cassert>

#include "data/abort.h"
#include "host/controls/combo.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane::host {
namespace {

CellKind KindOf(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Check:
      return CellKind::Check;
    case ColumnKind::Memo:
      return CellKind::Memo;
    case ColumnKind::Text:
      break;
  }
  return CellKind::Text;
}

constexpr std::string_view kUnsavedRow = "Редът не е записан. Да се запише ли?";

/// Where the row that was at `position` is after the row at `from` was moved to `to`.
std::size_t AfterMove(std::size_t position, std::size_t from, std::size_t to) {
  const std::size_t without = position > from ? position - 1 : position;
  return without >= to ? without + 1 : without;
}

}  // namespace

TVosDBGrid::TVosDBGrid(TVosBaseForm& form, std::string_view name, TDataSource& source)
    : FieldControl(form, name, ControlKind::Grid, source) {}

// --- columns
// --------------------------------------------------------------------------------------

GridColumn* TVosDBGrid::FindColumn(std::string_view field) {
  const auto found = std::ranges::find_if(
      columns, [&](const GridColumn& column) { return SameName(column.field, field); });
  return found == columns.end() ? nullptr : &*found;
}

void TVosDBGrid::RemoveColumn(std::string_view field) {
  const GridColumn* column = FindColumn(field);
  if (column == nullptr) return;
  const auto index = static_cast<int>(column - columns.data());
  if (index == currentColumn_) CloseEditor();
  columns.erase(columns.begin() + index);
  if (index < currentColumn_) --currentColumn_;
}

int TVosDBGrid::CurrentColumn() const {
  return std::clamp(currentColumn_, 0, std::max(0, LastColumn()));
}

TField& TVosDBGrid::CurrentField() {
  assert(!columns.empty());
  return DataSet().FieldByName(columns[static_cast<std::size_t>(CurrentColumn())].field);
}

EditedCell TVosDBGrid::CurrentCell() const {
  if (columns.empty()) return {};
  const GridColumn& column = columns[static_cast<std::size_t>(CurrentColumn())];
  return {.field = DataSet().FindField(column.field),
          .mask = column.mask,
          .combo = column.combo,
          .kind = KindOf(column.kind),
          .readOnly = column.readOnly};
}

void TVosDBGrid::SetCurrentColumn(int column) {
  const int wanted = std::clamp(column, 0, std::max(0, LastColumn()));
  if (wanted == CurrentColumn()) return SettleCombo();
  CommitEditor();
  currentColumn_ = wanted;
  SettleCombo();
  if (OnColEnter) OnColEnter();
}

void TVosDBGrid::FocusField(std::string_view field) {
  Form().FocusControl(this);
  const GridColumn* column = FindColumn(field);
  if (column != nullptr) SetCurrentColumn(static_cast<int>(column - columns.data()));
}

std::string TVosDBGrid::TitleOf(std::string_view field) const {
  for (const GridColumn& column : columns) {
    if (!SameName(column.field, field) || column.title.empty()) continue;
    std::string title = column.title;
    std::ranges::replace(title, '~', ' ');
    return title;
  }
  const TField* unnamed = DataSet().FindField(field);
  return unnamed == nullptr ? std::string(field) : unnamed->DisplayLabel;
}

std::string TVosDBGrid::PlaceLabel() const {
  if (columns.empty()) return {};
  const GridColumn& column = columns[static_cast<std::size_t>(CurrentColumn())];
  if (column.group.empty()) return TitleOf(column.field);
  // Of a code and the names beside it, the code is what the group is called by.
  return column.readOnly ? column.group + " - " + TitleOf(column.field) : column.group;
}

/// Rows that are there begin behind the fixed columns; a new one is typed from its code on.
int TVosDBGrid::FirstColumn() const {
  if (DataSet().State() == DataSetState::Insert || fixedCols > LastColumn()) return 0;
  return fixedCols;
}

// --- rows
// -----------------------------------------------------------------------------------------

bool TVosDBGrid::IsUntouchedInsert() const {
  return DataSet().State() == DataSetState::Insert && !DataSet().Modified();
}

bool TVosDBGrid::HasTypedRow() {
  const CellEditor* editor = Editor();
  return (editor != nullptr && editor->IsChanged()) || DataSet().Modified();
}

void TVosDBGrid::GiveUpRow() {
  if (HasTypedRow() && SavesBeforeLeaving(Form(), kUnsavedRow)) return PostRow();
  CloseEditor();
  if (DataSet().Editing()) DataSet().Cancel();
}

/// A rule that reloads the rows leaves the cursor at the place it had,
/// unless it put it somewhere itself.
void TVosDBGrid::PostRow() {
  CommitEditor();
  TVosClientDataSet& rows = DataSet();
  if (!rows.Editing()) return;
  const std::size_t position = rows.RecNo();
  const std::uint64_t generation = rows.Generation();
  rows.Post();
  if (rows.Editing()) throw Abort{};  // refused by the server and put back into edit
  if (rows.Generation() == generation || rows.RecNo() != 0 || rows.IsEmpty()) return;
  rows.SetRecNo(std::min(position, rows.RecordCount() - 1));
}

void TVosDBGrid::GoToRow(std::size_t position) {
  CommitEditor();
  TVosClientDataSet& rows = DataSet();
  const std::size_t from = rows.RecNo();
  if (position == from || position >= rows.RecordCount()) return;
  if (rows.Editing()) {
    const bool dropped = IsUntouchedInsert();
    const std::uint64_t generation = rows.Generation();
    if (dropped)
      rows.Cancel();
    else
      PostRow();
    if (rows.Generation() == generation) {
      position =
          dropped ? position - (position > from ? 1 : 0) : AfterMove(position, from, rows.RecNo());
    }
  }
  if (rows.IsEmpty()) return;
  rows.SetRecNo(std::min(position, rows.RecordCount() - 1));
  FetchAtEnd();
  SettleCombo();
}

void TVosDBGrid::FetchAtEnd() {
  if (DataSet().RecNo() + 1 >= DataSet().RecordCount()) NearEnd();
}

bool TVosDBGrid::CanAppend() const {
  return DataSet().Active() && canInsert && (!readOnly || insertWhenReadOnly);
}

std::string_view TVosDBGrid::EmptyText() const {
  return DataSet().Active() ? std::string_view(emptyText) : "Данните не са прочетени.";
}

void TVosDBGrid::AppendRow() {
  CommitEditor();
  if (IsUntouchedInsert()) return;
  PostRow();
  if (!CanAppend()) return;
  const int columnBefore = CurrentColumn();
  DataSet().Append();
  StartRow(columnBefore);
}

/// A new row is typed from the first column on, unless the screen's rules went to another one.
void TVosDBGrid::StartRow(int columnBefore) {
  if (CurrentColumn() == columnBefore) SetCurrentColumn(0);
  SettleCombo();
}

bool TVosDBGrid::PrepareToType() {
  if (DataSet().IsEmpty()) AppendRow();
  return CanEditCurrent();
}

void TVosDBGrid::BeforeLeave() {
  if (!cancelOnExit) {
    CommitEditor();
    if (IsUntouchedInsert())
      DataSet().Cancel();
    else
      PostRow();
    return;
  }
  GiveUpRow();
}

void TVosDBGrid::PointAt(int row, int column, bool openEditor) {
  const bool sameRow = row < 0 || static_cast<std::size_t>(row) == DataSet().RecNo();
  if (!sameRow) GoToRow(static_cast<std::size_t>(row));
  if (column >= 0) SetCurrentColumn(column);
  if (openEditor) Activate();
}

/// A row that is being typed must not move under the user.
void TVosDBGrid::NearEnd() {
  if (!DataSet().Editing() && DataSet().HasMore()) DataSet().FetchMore();
}

// --- keys
// -----------------------------------------------------------------------------------------

struct TVosDBGrid::KeyRow {
  KeyStroke key;
  bool (TVosDBGrid::*handle)();
};

const TVosDBGrid::KeyRow TVosDBGrid::kKeys[] = {
    {KeyCode::Enter, &TVosDBGrid::EnterKey},
    {KeyCode::Tab, &TVosDBGrid::TabKey},
    {Shift(KeyCode::Tab), &TVosDBGrid::BackKey},
    {KeyCode::Left, &TVosDBGrid::LeftKey},
    {KeyCode::Right, &TVosDBGrid::RightKey},
    {KeyCode::Home, &TVosDBGrid::HomeKey},
    {KeyCode::End, &TVosDBGrid::EndKey},
    {KeyCode::Up, &TVosDBGrid::UpKey},
    {KeyCode::Down, &TVosDBGrid::DownKey},
    {KeyCode::PageUp, &TVosDBGrid::PageUpKey},
    {KeyCode::PageDown, &TVosDBGrid::PageDownKey},
    {Ctrl(KeyCode::Home), &TVosDBGrid::FirstKey},
    {Ctrl(KeyCode::End), &TVosDBGrid::LastKey},
    {KeyCode::Insert, &TVosDBGrid::InsertKey},
    {Ctrl(KeyCode::Delete), &TVosDBGrid::DeleteRowKey},
    {KeyCode::Delete, &TVosDBGrid::ClearCell},
    {KeyCode::Backspace, &TVosDBGrid::ClearCell},
    {KeyCode::Space, &TVosDBGrid::SpaceKey},
    {KeyCode::F2, &TVosDBGrid::OpenForEdit},
    {Alt(KeyCode::Down), &TVosDBGrid::DropList},
    {KeyCode::Escape, &TVosDBGrid::EscapeKey},
};

bool TVosDBGrid::HandleKey(KeyStroke key) {
  if (columns.empty()) return false;
  if (const auto used = HandleEditorKey(key)) return *used;
  if (OnKeyDown && OnKeyDown(key)) return true;
  const auto row = std::ranges::find(kKeys, key, &KeyRow::key);
  return row != std::end(kKeys) && (this->*row->handle)();
}

bool TVosDBGrid::GoToNextCell() {
  CommitEditor();
  if (CurrentColumn() < LastColumn()) {
    SetCurrentColumn(CurrentColumn() + 1);
    return true;
  }
  if (!IsUntouchedInsert()) PostRow();
  if (OnLastColumn && OnLastColumn()) return true;
  return GoToNextRow();
}

bool TVosDBGrid::GoToNextRow() {
  TVosClientDataSet& rows = DataSet();
  FetchAtEnd();
  if (rows.RecNo() + 1 < rows.RecordCount()) {
    GoToRow(rows.RecNo() + 1);
    SetCurrentColumn(FirstColumn());
    return true;
  }
  if (!CanAppend() || IsUntouchedInsert()) return false;
  AppendRow();
  return true;
}

bool TVosDBGrid::EnterKey() {
  GoToNextCell();
  return true;
}

bool TVosDBGrid::TabKey() {
  if (!GoToNextCell()) Form().FocusNext();
  return true;
}

bool TVosDBGrid::BackKey() {
  CommitEditor();
  const int first = CurrentColumn() < FirstColumn() ? 0 : FirstColumn();
  if (CurrentColumn() > first) {
    SetCurrentColumn(CurrentColumn() - 1);
  } else if (DataSet().RecNo() > 0) {
    GoToRow(DataSet().RecNo() - 1);
    SetCurrentColumn(LastColumn());
  } else {
    Form().FocusNext(true);
  }
  return true;
}

bool TVosDBGrid::LeftKey() {
  SetCurrentColumn(CurrentColumn() - 1);
  return true;
}

bool TVosDBGrid::RightKey() {
  SetCurrentColumn(CurrentColumn() + 1);
  return true;
}

bool TVosDBGrid::HomeKey() {
  SetCurrentColumn(CurrentColumn() == FirstColumn() ? 0 : FirstColumn());
  return true;
}

bool TVosDBGrid::EndKey() {
  SetCurrentColumn(LastColumn());
  return true;
}

bool TVosDBGrid::UpKey() {
  CommitEditor();
  TVosClientDataSet& rows = DataSet();
  const std::size_t position = rows.RecNo();
  if (!IsUntouchedInsert()) {
    if (position > 0) GoToRow(position - 1);
    return true;
  }
  rows.Cancel();
  if (position > 0 && position <= rows.RecordCount()) rows.SetRecNo(position - 1);
  SettleCombo();
  return true;
}

bool TVosDBGrid::DownKey() {
  CommitEditor();
  TVosClientDataSet& rows = DataSet();
  FetchAtEnd();
  if (rows.RecNo() + 1 < rows.RecordCount())
    GoToRow(rows.RecNo() + 1);
  else if (CanAppend() && !IsUntouchedInsert())
    AppendRow();
  return true;
}

bool TVosDBGrid::PageUpKey() {
  const std::size_t step = static_cast<std::size_t>(std::max(1, pageRows));
  const std::size_t position = DataSet().RecNo();
  GoToRow(position > step ? position - step : 0);
  return true;
}

bool TVosDBGrid::PageDownKey() {
  if (DataSet().IsEmpty()) return true;
  const std::size_t step = static_cast<std::size_t>(std::max(1, pageRows));
  FetchAtEnd();
  GoToRow(std::min(DataSet().RecNo() + step, DataSet().RecordCount() - 1));
  return true;
}

bool TVosDBGrid::FirstKey() {
  GoToRow(0);
  SetCurrentColumn(FirstColumn());
  return true;
}

bool TVosDBGrid::LastKey() {
  if (DataSet().IsEmpty()) return true;
  FetchAtEnd();
  GoToRow(DataSet().RecordCount() - 1);
  SetCurrentColumn(LastColumn());
  return true;
}

bool TVosDBGrid::InsertKey() {
  if (!CanAppend()) return true;
  CommitEditor();
  if (IsUntouchedInsert()) return true;
  PostRow();
  const int columnBefore = CurrentColumn();
  DataSet().Insert();
  StartRow(columnBefore);
  return true;
}

bool TVosDBGrid::DeleteRowKey() {
  TVosClientDataSet& rows = DataSet();
  if (rows.State() == DataSetState::Insert)
    GiveUpRow();
  else
    Form().Execute(deleteAction);
  return true;
}

bool TVosDBGrid::EscapeKey() {
  if (!DataSet().Editing()) return false;
  GiveUpRow();
  SettleCombo();
  return true;
}

std::size_t TVosDBGrid::LookHash() const {
  LookHasher hasher;
  hasher.Add(FieldControl::LookHash()).Add(static_cast<std::size_t>(CurrentColumn()));
  hasher.Add(static_cast<std::size_t>(fixedCols)).Add(EmptyText());
  for (const GridColumn& column : columns) {
    hasher.Add(column.field).Add(column.title).Add(column.group);
    hasher.Add(static_cast<std::size_t>(column.width)).Add(column.readOnly ? 1U : 0U);
    hasher.Add(static_cast<std::size_t>(column.kind));
  }
  return hasher.Value();
}

}  // namespace orvane::host
