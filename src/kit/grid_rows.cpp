#include "kit/grid_rows.h"

#include "host/controls/grid.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane::kit {

void OfferRows(const OfferedRows& rows, bool writable, bool mayInsert) {
  rows.grid.readOnly = !writable;
  rows.grid.canInsert = writable && mayInsert;
  rows.grid.emptyText = rows.none;
  if (rows.grid.canInsert) rows.grid.emptyText += rows.key;
}

bool HasRowToDelete(const TVosDBGrid& grid) {
  return !grid.readOnly && !grid.DataSet().IsEmpty() &&
         grid.DataSet().State() != DataSetState::Insert;
}

bool CancelRow(TVosBaseForm& form, TVosDBGrid& grid) {
  if (form.UndoInEditor()) return false;
  grid.CloseEditor();
  grid.DataSet().Cancel();
  return true;
}

void DeleteAsked(TVosBaseForm& form, TVosDBGrid& grid) {
  if (grid.DataSet().IsEmpty()) return;
  if (!Confirmed(form, _rDeleteCaption, _rDeleteText)) return;
  grid.CloseEditor();
  grid.DataSet().Delete();
}

}  // namespace orvane::kit
