// Editing one row: Edit, Insert, Post, Cancel, Delete, and the fields of the row in edit.

#include <cassert>

#include "data/client_dataset.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {

DataSetState TVosClientDataSet::State() const {
  return impl_->state;
}

bool TVosClientDataSet::Modified() const {
  return impl_->Editing() && impl_->modified;
}

void TVosClientDataSet::Edit() {
  if (impl_->Editing()) return;
  if (IsEmpty()) return Insert();
  const std::uint64_t before = Generation();
  Impl::Fire(BeforeEdit);
  if (Generation() != before || impl_->Editing() || IsEmpty()) return;
  impl_->editRow = *impl_->CurrentRow();
  impl_->buffer = impl_->store.Values(impl_->editRow);
  impl_->modified = false;
  impl_->state = DataSetState::Edit;
  impl_->Touch();
  impl_->AnnounceState();
}

void TVosClientDataSet::Insert() {
  impl_->BeginInsert(false);
}

void TVosClientDataSet::Append() {
  impl_->BeginInsert(true);
}

void TVosClientDataSet::Impl::BeginInsert(bool atEnd) {
  assert(state != DataSetState::Inactive);
  LeaveEdit();
  if (Editing()) return;
  Fire(self.BeforeInsert);
  if (Editing()) return;
  Fire(self.BeforeScroll);
  if (Editing()) return;

  rowBeforeInsert = CurrentRow();
  editRow = store.AddRow();
  buffer.assign(dataDefs.size(), Variant());
  const std::size_t place = atEnd ? order.size() : position;
  InsertIntoOrder(editRow, place);
  position = place;
  bof = false;
  eof = false;
  modified = false;
  state = DataSetState::Insert;
  Touch();

  const auto stillThere = [this, before = generation, row = editRow] {
    return generation == before && state == DataSetState::Insert && editRow == row;
  };
  try {
    AnnounceState();
    if (stillThere()) Fire(self.OnNewRecord);
  } catch (...) {
    if (stillThere()) {
      DropEdit();
      AnnounceState();
    }
    throw;
  }
  if (!stillThere()) return;
  modified = false;
  Fire(self.AfterScroll);
}

void TVosClientDataSet::Impl::DropEdit() {
  const bool inserted = state == DataSetState::Insert;
  state = DataSetState::Browse;
  buffer.clear();
  modified = false;
  Touch();
  if (!inserted) return;
  if (order.back() == editRow) {
    order.pop_back();  // the indexes have not taken it up
  } else {
    RemoveFromOrder(editRow);
  }
  RestoreCursor(rowBeforeInsert, position);
}

void TVosClientDataSet::Cancel() {
  if (!impl_->Editing()) return;
  const bool inserted = State() == DataSetState::Insert;
  const std::uint64_t before = Generation();
  impl_->DropEdit();
  impl_->AnnounceState();
  Impl::Fire(AfterCancel);
  if (inserted && Generation() == before) Impl::Fire(AfterScroll);
}

bool TVosClientDataSet::Impl::BufferDiffers() const {
  return buffer != store.Values(editRow);
}

void TVosClientDataSet::Post() {
  assert(impl_->Editing());
  if (State() == DataSetState::Edit && !impl_->BufferDiffers()) {
    impl_->DropEdit();
    impl_->AnnounceState();
    return;
  }
  const std::uint64_t before = Generation();
  const RowId row = impl_->editRow;
  Impl::Fire(BeforePost);
  if (Generation() != before || !impl_->Editing() || impl_->editRow != row) return;
  impl_->CommitBuffer();
  impl_->AnnounceState();
  Impl::Fire(AfterPost);
}

void TVosClientDataSet::Impl::CommitBuffer() {
  const RowId row = editRow;
  const bool inserted = state == DataSetState::Insert;
  std::vector<Variant> values = std::move(buffer);
  std::vector<Variant> before = store.Values(row);
  buffer.clear();
  modified = false;
  state = DataSetState::Browse;
  Touch();
  if (!inserted) {
    PutRow(row, std::move(values));
    LogUpdate(row, std::move(before));
    return;
  }
  if (order.back() == row) {
    store.Put(row, std::move(values));  // the indexes have not taken it up
  } else {
    PutRow(row, std::move(values));
  }
  PlaceRow(row);
  LogInsert(row);
}

void TVosClientDataSet::Delete() {
  if (State() == DataSetState::Insert) return Cancel();
  if (State() == DataSetState::Edit) {
    impl_->DropEdit();
    impl_->AnnounceState();
  }
  if (IsEmpty()) return;
  const std::uint64_t before = Generation();
  const RowId row = *impl_->CurrentRow();
  Impl::Fire(BeforeDelete);
  if (Generation() != before || impl_->CurrentRow() != row) return;
  Impl::Fire(BeforeScroll);
  if (Generation() != before || impl_->CurrentRow() != row) return;
  const std::size_t place = impl_->position;
  impl_->RemoveFromOrder(row);
  impl_->LogDelete(row, place);
  impl_->RestoreCursor(std::nullopt, place);
  impl_->Touch();
  Impl::Fire(AfterScroll);
  Impl::Fire(AfterDelete);
}

}  // namespace orvane::data
