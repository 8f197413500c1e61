#include "kit/column_hand_over.h"

#include <utility>

#include "host/controls/grid.h"
#include "host/form.h"

namespace orvane::kit {
namespace {

bool Leaves(const HandOver& row, KeyStroke key) {
  if (key.modifiers == ShiftKey) return false;
  return key.code == KeyCode::Tab || key.code == KeyCode::Enter ||
         (row.onDown && key.code == KeyCode::Down);
}

bool Fits(const HandOver& row, TVosDBGrid& grid) {
  if (!SameName(grid.CurrentField().Name(), row.from)) return false;
  const TVosClientDataSet& rows = grid.DataSet();
  const bool inserting = rows.State() == DataSetState::Insert;
  const InState state = inserting                            ? InState::Insert
                        : rows.State() == DataSetState::Edit ? InState::Edit
                                                             : InState::Browse;
  if ((static_cast<int>(row.states) & static_cast<int>(state)) == 0) return false;
  return !row.nextRow || rows.RecNo() + 1 < rows.RecordCount();
}

/// The key's work; false when the row's own column says that it is not ours.
bool GoOver(const HandOver& row, TVosDBGrid& grid) {
  grid.CommitEditor();
  const std::string_view to = row.choose ? row.choose() : row.to;
  if (to.empty()) return false;
  if (row.nextRow) grid.GoToRow(grid.DataSet().RecNo() + 1);
  grid.FocusField(to);
  return true;
}

}  // namespace

void HandOverColumns(TVosDBGrid& grid, std::vector<HandOver> table) {
  grid.OnKeyDown = [&grid, table = std::move(table)](KeyStroke key) {
    for (const HandOver& row : table) {
      if (Leaves(row, key) && Fits(row, grid)) return GoOver(row, grid);
    }
    return false;
  };
}

}  // namespace orvane::kit
