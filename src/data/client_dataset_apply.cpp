// Sending the log and working in the answer: reconcile every failed change, merge what the server
// filled in, clear the log, AfterApplyUpdates.

#include <algorithm>
#include <cassert>
#include <utility>

#include "data/abort.h"
#include "data/client_dataset.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {
namespace {

/// The server looked at the request and would not have it.
bool IsVerdict(FailureKind kind) {
  return kind == FailureKind::Refused || kind == FailureKind::Conflict ||
         kind == FailureKind::NoRight || kind == FailureKind::BadRequest;
}

/// `base` with the columns in which `mine` was changed against `original`.
std::vector<Variant> OnTopOf(std::vector<Variant> base, const std::vector<Variant>& mine,
                             const std::vector<Variant>& original) {
  for (std::size_t i = 0; i < base.size(); ++i) {
    if (mine[i] != original[i]) base[i] = mine[i];
  }
  return base;
}

}  // namespace

std::size_t TVosClientDataSet::ApplyUpdates(std::int32_t maxErrors) {
  Impl& impl = *impl_;
  if (impl.log.empty() || impl.taking) return 0;
  Impl::Fire(BeforeApplyUpdates);
  if (impl.log.empty()) return 0;
  impl.merged = false;
  const bool resends = impl.inFlight.has_value();
  Impl::Applied applied = impl.SendAndTake(maxErrors);
  if (resends && applied.failed == 0 && !applied.replaced && !impl.log.empty()) {
    impl.answeredOwnerData = applied.ownerData;
    applied = impl.SendAndTake(maxErrors);
  }
  if (const auto handler = AfterApplyUpdates) handler(applied.ownerData);
  if (applied.thrown) std::rethrow_exception(applied.thrown);
  return applied.failed;
}

bool TVosClientDataSet::HasMerged() const {
  return impl_->merged;
}

const NamedValues& TVosClientDataSet::HeadMoved() const {
  return impl_->headMoved;
}

void TVosClientDataSet::TakeLoaded(const NamedValues& values) {
  const std::optional<RowId> row = impl_->CurrentRow();
  if (!row) return;
  impl_->TakeServerValues(*row, values);
  impl_->Touch();
}

void TVosClientDataSet::NameCodes(const Bookmark& row,
                                  const std::function<NamedValues(const RowReader&)>& names) {
  const auto id = static_cast<RowId>(row.row);
  Impl& impl = *impl_;
  const bool inserting = State() == DataSetState::Insert && impl.editRow == id;
  if (row.generation != impl.generation || inserting || !impl.PositionOf(id)) return;
  const auto named = [&](const std::vector<Variant>& values) {
    return impl.With(
        values, names([&](std::string_view field) { return values[FieldByName(field).column_]; }));
  };
  const std::vector<Variant> posted = impl.store.Values(id);
  impl.PutRow(id, named(posted));
  for (LogEntry& entry : impl.log) {
    if (entry.row == id && entry.kind != ChangeKind::Insert) entry.original = named(entry.original);
  }
  if (Editing() && impl.editRow == id)
    impl.buffer = OnTopOf(impl.store.Values(id), impl.buffer, posted);
  impl.Touch();
}

ApplyAnswer TVosClientDataSet::Impl::SendLog(std::int32_t maxErrors) {
  assert(connection != nullptr);
  if (!inFlight) {
    ApplyRequest request{connection->ServerClassName(), provider, maxErrors, self.OwnerData, {}};
    for (LogEntry& entry : log) {
      request.delta.push_back(MakeChange(entry));
      entry.sent = true;
    }
    inFlight = std::move(request);
    inFlightCount = log.size();
  }
  Answer<ApplyAnswer> answer = connection->Apply(*inFlight);
  if (answer) {
    inFlight.reset();
    return *std::move(answer);
  }
  const Failure failure = answer.GetFailure();
  if (KeepsItsBytes(failure.kind)) throw ServerError{failure};
  inFlight.reset();
  if (!IsVerdict(failure.kind) || !self.OnReconcileError) {
    inFlightCount = 0;
    throw ServerError{failure};
  }
  ApplyAnswer refused;
  refused.outcomes.assign(inFlightCount, ChangeOutcome{false, failure, {}, {}});
  return refused;
}

TVosClientDataSet::Impl::Applied TVosClientDataSet::Impl::SendAndTake(std::int32_t maxErrors) {
  ApplyAnswer answer = SendLog(maxErrors);
  Applied applied;
  applied.ownerData = answer.ownerData.IsNull() ? std::exchange(answeredOwnerData, {})
                                                : std::move(answer.ownerData);
  answeredOwnerData = {};
  headMoved = std::move(answer.headMoved);
  Outcomes& outcomes = answer.outcomes;
  outcomes.resize(inFlightCount);
  taking = true;
  FoldInLaterChanges(outcomes);
  inFlightCount = outcomes.size();
  const std::vector<Decision> decisions = Reconcile(outcomes, applied);
  const bool wasEditing = Editing();
  const std::optional<RowId> currentBefore = CurrentRow();
  if (!applied.replaced) Act(outcomes, decisions);
  inFlightCount = 0;
  taking = false;
  if (!applied.replaced) AnnounceOutcome(wasEditing, currentBefore, applied);
  return applied;
}

/// A change that failed for good takes up what was typed on its row since it was sent, and becomes
/// a new change to the server.
void TVosClientDataSet::Impl::FoldInLaterChanges(Outcomes& outcomes) {
  std::size_t i = 0;
  while (i < outcomes.size()) {
    if (outcomes[i].applied) {
      ++i;
      continue;
    }
    LogEntry& entry = log[i];
    entry.clientKey = NextClientKey();
    entry.sent = false;
    inFlightCount = outcomes.size();
    const LogEntry* later = FindPending(entry.row);
    bool undone = false;
    if (later != nullptr) {
      const bool deleted = later->kind == ChangeKind::Delete;
      undone = deleted && entry.kind == ChangeKind::Insert;
      if (undone) store.Forget(entry.row);
      if (deleted && !undone) {
        entry.kind = ChangeKind::Delete;
        entry.position = later->position;
      }
      EraseFromLog(later);
      undone = undone || (entry.kind == ChangeKind::Update &&
                          !Differs(entry.original, store.Values(entry.row)));
    }
    if (undone) {
      EraseFromLog(&log[i]);
      outcomes.erase(outcomes.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
}

std::vector<TVosClientDataSet::Impl::Decision> TVosClientDataSet::Impl::Reconcile(
    const Outcomes& outcomes, Applied& applied) {
  std::vector<Decision> decisions;
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    if (!outcomes[i].failure) continue;
    ++applied.failed;
    if (applied.thrown || applied.replaced) continue;
    const std::uint64_t before = generation;
    Decision decision{i};
    try {
      const ReconcileError error = DescribeError(log[i], outcomes[i]);
      const auto handler = self.OnReconcileError;
      if (handler) decision.action = handler(error);
      decision.givenUp = error.givenUp;
      if (decision.action == ReconcileAction::Abort) throw Abort{};
    } catch (...) {
      applied.thrown = std::current_exception();
      decision.action = ReconcileAction::Abort;
    }
    applied.replaced = generation != before || log.size() < outcomes.size();
    decisions.push_back(std::move(decision));
  }
  return decisions;
}

ReconcileError TVosClientDataSet::Impl::DescribeError(const LogEntry& entry,
                                                      const ChangeOutcome& outcome) const {
  const Change change = MakeChange(entry);
  return {entry.kind, *outcome.failure,  change.before,     change.after,           outcome.present,
          {},         outcome.changedBy, outcome.changedOn, {generation, entry.row}};
}

void TVosClientDataSet::Impl::Act(const Outcomes& outcomes,
                                  const std::vector<Decision>& decisions) {
  const std::size_t place = position;
  std::optional<RowId> current = CurrentRow();
  std::vector<bool> settledEntries(outcomes.size());
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    if (!outcomes[i].applied) continue;
    if (log[i].kind == ChangeKind::Delete) {
      store.Forget(log[i].row);
    } else {
      TakeServerValues(log[i].row, outcomes[i].filled);
    }
    settledEntries[i] = true;
  }
  // From the end, so that deleted rows go back to where they stood.
  const bool wasEditing = Editing();
  for (auto decision = decisions.rbegin(); decision != decisions.rend(); ++decision) {
    const std::size_t i = decision->entry;
    settledEntries[i] = Carry(log[i], outcomes[i], *decision);
  }
  for (std::size_t i = outcomes.size(); i-- > 0;) {
    if (settledEntries[i]) EraseFromLog(&log[i]);
  }
  if (!wasEditing && Editing()) current = editRow;
  RestoreCursor(current, place);
  Touch();
}

/// Tells of the new state and cursor when all is in place; what a handler throws waits for
/// AfterApplyUpdates.
void TVosClientDataSet::Impl::AnnounceOutcome(bool wasEditing, std::optional<RowId> currentBefore,
                                              Applied& applied) {
  const std::uint64_t before = generation;
  try {
    if (Editing() != wasEditing) AnnounceState();
    if (generation == before && CurrentRow() != currentBefore) Fire(self.AfterScroll);
  } catch (...) {
    if (!applied.thrown) applied.thrown = std::current_exception();
  }
  applied.replaced = generation != before;
}

/// Acts on one failed change; true when it leaves the log.
bool TVosClientDataSet::Impl::Carry(LogEntry& entry, const ChangeOutcome& outcome,
                                    const Decision& decision) {
  switch (decision.action) {
    case ReconcileAction::Skip:
    case ReconcileAction::Abort:
      return false;
    case ReconcileAction::Merge:
      MergePresent(entry, outcome.present, decision.givenUp);
      if (entry.kind == ChangeKind::Update && !Differs(entry.original, store.Values(entry.row)))
        return true;
      merged = true;
      return false;
    case ReconcileAction::Correct:
      if (Editing()) return false;
      BackToEdit(entry, outcome.present);
      return true;
    case ReconcileAction::Cancel:
      Revert(entry);
      return true;
    case ReconcileAction::Refresh:
      Refresh(entry, outcome);
      return true;
  }
  return false;
}

std::vector<Variant> TVosClientDataSet::Impl::With(std::vector<Variant> values,
                                                   const NamedValues& others) const {
  for (const NamedValue& other : others) {
    const TField* field = FindDataField(other.name);
    if (field == nullptr) continue;
    Answer<Variant> value = other.value.As(field->def_.kind);
    if (value) values[field->column_] = *std::move(value);
  }
  return values;
}

/// Values of the server under whatever was typed on the row meanwhile.
void TVosClientDataSet::Impl::TakeServerValues(RowId row, const NamedValues& values) {
  if (values.empty()) return;
  const std::vector<Variant> posted = store.Values(row);
  LogEntry* pending = FindPending(row);
  if (pending == nullptr || pending->kind == ChangeKind::Insert) {
    PutRow(row, With(posted, values));
  } else {
    std::vector<Variant> original = With(pending->original, values);
    PutRow(row, OnTopOf(original, posted, pending->original));
    pending->original = std::move(original);
  }
  if (Editing() && editRow == row) buffer = OnTopOf(store.Values(row), buffer, posted);
}

void TVosClientDataSet::Impl::MergePresent(LogEntry& entry, const NamedValues& present,
                                           const std::vector<std::string>& givenUp) {
  if (present.empty()) return;
  NamedValues taken;
  for (const NamedValue& theirs : present) {
    const bool isGivenUp = std::ranges::any_of(
        givenUp, [&](const std::string& field) { return SameName(field, theirs.name); });
    if (isGivenUp) taken.push_back(theirs);
  }
  const std::vector<Variant> mine = store.Values(entry.row);
  if (entry.kind == ChangeKind::Insert) {
    entry.original = With(mine, present);
    entry.kind = ChangeKind::Update;
    return PutRow(entry.row, With(mine, taken));
  }
  std::vector<Variant> theirs = With(entry.original, present);
  if (entry.kind == ChangeKind::Update) {
    PutRow(entry.row, With(OnTopOf(theirs, mine, entry.original), taken));
  }
  entry.original = std::move(theirs);
}

void TVosClientDataSet::Impl::Refresh(const LogEntry& entry, const ChangeOutcome& outcome) {
  const bool gone = outcome.failure->kind == FailureKind::Conflict && outcome.present.empty();
  if (gone && entry.kind != ChangeKind::Insert) {
    RemoveFromOrder(entry.row);
    return store.Forget(entry.row);
  }
  Revert(entry);
  if (entry.kind == ChangeKind::Insert || outcome.present.empty()) return;
  PutRow(entry.row, With(store.Values(entry.row), outcome.present));
}

void TVosClientDataSet::Impl::BackToEdit(const LogEntry& entry, const NamedValues& present) {
  if (entry.kind == ChangeKind::Delete) {
    Revert(entry);
    return PutRow(entry.row, With(entry.original, present));
  }
  const std::vector<Variant> mine = store.Values(entry.row);
  indexes.clear();
  if (entry.kind == ChangeKind::Insert) {
    buffer = mine;
    store.Forget(entry.row);
    rowBeforeInsert.reset();
    state = DataSetState::Insert;
  } else {
    const std::vector<Variant> theirs = With(entry.original, present);
    buffer = OnTopOf(theirs, mine, entry.original);
    PutRow(entry.row, theirs);
    state = DataSetState::Edit;
  }
  editRow = entry.row;
  modified = true;
}

}  // namespace orvane::data
