// The change log: what was posted and not yet acknowledged by the server, one entry per row. Only a
// row whose change is on its way has a second entry, for what was typed since.

#include <algorithm>

#include "data/client_dataset.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {

std::string TVosClientDataSet::Impl::NextClientKey() const {
  return connection->Session().NextClientKey();
}

LogEntry* TVosClientDataSet::Impl::FindPending(RowId row) {
  const auto first = log.begin() + static_cast<std::ptrdiff_t>(inFlightCount);
  const auto found =
      std::find_if(first, log.end(), [&](const LogEntry& entry) { return entry.row == row; });
  return found == log.end() ? nullptr : &*found;
}

const LogEntry* TVosClientDataSet::Impl::FirstChangeOf(RowId row) const {
  const auto found = std::ranges::find(log, row, &LogEntry::row);
  return found == log.end() ? nullptr : &*found;
}

void TVosClientDataSet::Impl::EraseFromLog(const LogEntry* entry) {
  log.erase(log.begin() + (entry - log.data()));
}

bool TVosClientDataSet::Impl::Differs(const std::vector<Variant>& left,
                                      const std::vector<Variant>& right) const {
  for (std::size_t i = 0; i < dataDefs.size(); ++i) {
    if (!dataDefs[i].Is(Joined) && left[i] != right[i]) return true;
  }
  return false;
}

void TVosClientDataSet::Impl::LogInsert(RowId row) {
  if (!writable) return;
  log.push_back({ChangeKind::Insert, row, NextClientKey(), {}, 0, false});
}

void TVosClientDataSet::Impl::LogUpdate(RowId row, std::vector<Variant> before) {
  if (!writable) return;
  LogEntry* pending = FindPending(row);
  if (pending == nullptr) {
    if (!Differs(before, store.Values(row))) return;
    log.push_back({ChangeKind::Update, row, NextClientKey(), std::move(before), 0, false});
    return;
  }
  // The server may have carried out what it was sent under the old key.
  if (pending->sent) pending->clientKey = NextClientKey();
  pending->sent = false;
  const bool undone =
      pending->kind == ChangeKind::Update && !Differs(pending->original, store.Values(row));
  if (undone) EraseFromLog(pending);
}

void TVosClientDataSet::Impl::LogDelete(RowId row, std::size_t place) {
  if (!writable) return store.Forget(row);
  LogEntry* pending = FindPending(row);
  if (pending == nullptr) {
    log.push_back({ChangeKind::Delete, row, NextClientKey(), store.Values(row), place, false});
    return;
  }
  if (pending->kind == ChangeKind::Insert) {
    EraseFromLog(pending);
    return store.Forget(row);
  }
  if (pending->sent) pending->clientKey = NextClientKey();
  pending->sent = false;
  pending->kind = ChangeKind::Delete;
  pending->position = place;
}

NamedValues TVosClientDataSet::Impl::SentValues(const std::vector<Variant>& values) const {
  NamedValues sent;
  for (std::size_t i = 0; i < dataDefs.size(); ++i) {
    if (!dataDefs[i].Is(Joined)) sent.push_back({std::string(dataDefs[i].name), values[i]});
  }
  return sent;
}

Change TVosClientDataSet::Impl::MakeChange(const LogEntry& entry) const {
  Change change{entry.kind, entry.clientKey, {}, {}};
  if (entry.kind == ChangeKind::Delete) {
    change.before = SentValues(entry.original);
    return change;
  }
  const std::vector<Variant> values = store.Values(entry.row);
  if (entry.kind == ChangeKind::Insert) {
    change.after = SentValues(values);
    return change;
  }
  for (std::size_t i = 0; i < dataDefs.size(); ++i) {
    if (dataDefs[i].Is(Joined)) continue;
    const std::string column(dataDefs[i].name);
    const bool changed = values[i] != entry.original[i];
    if (changed || dataDefs[i].Is(Key)) change.before.push_back({column, entry.original[i]});
    if (changed) change.after.push_back({column, values[i]});
  }
  return change;
}

void TVosClientDataSet::Impl::Revert(const LogEntry& entry) {
  switch (entry.kind) {
    case ChangeKind::Insert:
      RemoveFromOrder(entry.row);
      return store.Forget(entry.row);
    case ChangeKind::Update:
      return PutRow(entry.row, entry.original);
    case ChangeKind::Delete:
      store.Put(entry.row, entry.original);
      return InsertIntoOrder(entry.row, OldPlace(entry));
  }
}

/// Where a deleted row stood: loaded rows without an index stand in the order they came in.
std::size_t TVosClientDataSet::Impl::OldPlace(const LogEntry& entry) const {
  if (!indexColumns.empty()) return PlaceInOrder(store, indexColumns, order, entry.row);
  if (entry.row >= kInsertedRow) return entry.position;
  const auto before =
      std::find_if(order.rbegin(), order.rend(), [&](RowId row) { return row < entry.row; });
  return static_cast<std::size_t>(order.rend() - before);
}

void TVosClientDataSet::Impl::ForgetLog() {
  log.clear();
  inFlight.reset();
  inFlightCount = 0;
}

std::size_t TVosClientDataSet::ChangeCount() const {
  return impl_->log.size();
}

void TVosClientDataSet::CancelUpdates() {
  const bool wasEditing = impl_->Editing();
  const std::optional<RowId> current = impl_->CurrentRow();
  if (wasEditing) impl_->DropEdit();
  const std::size_t place = impl_->position;
  const auto keep = impl_->CurrentRow();
  for (auto entry = impl_->log.rbegin(); entry != impl_->log.rend(); ++entry)
    impl_->Revert(*entry);
  impl_->ForgetLog();
  impl_->RestoreCursor(keep, place);
  impl_->Touch();
  if (wasEditing) impl_->AnnounceState();
  if (impl_->CurrentRow() != current) Impl::Fire(AfterScroll);
}

}  // namespace orvane::data
