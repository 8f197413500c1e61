#pragma once

// What a client dataset is made of. Read only by the units of the dataset itself.
//
// Rows are told by RowId; `order` holds those that are shown, the one being inserted with them. The
// row in edit lives in `buffer` until it is posted. Every event may change or replace the content,
// so whoever fires one looks at `generation` before touching a row again.

#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/client_dataset.h"
#include "data/row_order.h"
#include "data/row_store.h"

namespace orvane::data {

/// A row changed and not yet acknowledged by the server.
struct LogEntry {
  ChangeKind kind = ChangeKind::Insert;
  RowId row = 0;
  std::string clientKey;
  std::vector<Variant> original;  ///< as loaded; of an update or delete
  std::size_t position = 0;       ///< where a deleted row stood
  bool sent = false;
};

struct VariantLess {
  bool operator()(const Variant& left, const Variant& right) const {
    return Variant::Compare(left, right) < 0;
  }
};

struct TVosClientDataSet::Impl {
  Impl(TVosClientDataSet& dataSet, std::string_view dataSetName, TVosSQLConnection* dataConnection,
       std::span<const FieldDef> fieldDefs);

  // --- fields (client_dataset.cpp)
  // ----------------------------------------------------------------
  TField& AddField(const FieldDef& def);
  TField* FindField(std::string_view fieldName);
  const TField* FindDataField(std::string_view fieldName) const;
  Variant ValueOf(RowId row, const TField& field) const;
  Variant LookUp(const TField& field, const Variant& key) const;
  void SettleLookups(const TVosClientDataSet& source);

  // --- events
  // -------------------------------------------------------------------------------------
  static void Fire(const std::function<void()>& handler);
  void AnnounceState();
  void Touch();

  // --- content (client_dataset.cpp)
  // ---------------------------------------------------------------
  void ReplaceContent(DataPacket shaped, DataSetState newState);
  void AppendContent(DataPacket packet);
  void ResetOrder();
  void RequireFit(const Answer<DataPacket>& shaped) const;

  // --- cursor (client_dataset_rows.cpp)
  // -----------------------------------------------------------
  bool Editing() const { return state == DataSetState::Edit || state == DataSetState::Insert; }
  std::optional<RowId> CurrentRow() const;
  std::optional<std::size_t> PositionOf(RowId row) const;
  /// Posts a changed row in edit, ends an untouched one; false when the row stays in edit or the
  /// content was replaced.
  bool LeaveEdit();
  void MoveTo(std::size_t target);
  std::optional<std::size_t> Find(const TField& field, const Variant& value) const;
  std::optional<std::size_t> Find(const NamedValues& values) const;
  bool GoToFound(std::optional<std::size_t> found);
  void RemoveFromOrder(RowId row);
  void InsertIntoOrder(RowId row, std::size_t place);
  /// Moves a row to where its values belong when an order is kept.
  void PlaceRow(RowId row);
  /// Puts the values of a row in place and the row where they belong.
  void PutRow(RowId row, std::vector<Variant> values);
  /// The cursor back on `row`, or on the place nearest to `place`.
  void RestoreCursor(std::optional<RowId> row, std::size_t place);

  // --- editing (client_dataset_edit.cpp)
  // ----------------------------------------------------------
  void BeginInsert(bool atEnd);
  void DropEdit();
  bool BufferDiffers() const;
  void CommitBuffer();

  // --- change log (client_dataset_log.cpp)
  // --------------------------------------------------------
  std::string NextClientKey() const;
  LogEntry* FindPending(RowId row);
  const LogEntry* FirstChangeOf(RowId row) const;
  void LogInsert(RowId row);
  void LogUpdate(RowId row, std::vector<Variant> before);
  void LogDelete(RowId row, std::size_t place);
  bool Differs(const std::vector<Variant>& left, const std::vector<Variant>& right) const;
  Change MakeChange(const LogEntry& entry) const;
  NamedValues SentValues(const std::vector<Variant>& values) const;
  void Revert(const LogEntry& entry);
  std::size_t OldPlace(const LogEntry& entry) const;
  void EraseFromLog(const LogEntry* entry);
  void ForgetLog();

  // --- applying (client_dataset_apply.cpp)
  // --------------------------------------------------------
  /// What became of one sending of the log.
  struct Applied {
    std::size_t failed = 0;
    bool replaced = false;  ///< a handler replaced the content: nothing of the old log is left
    std::exception_ptr thrown;
    Variant ownerData;
  };
  struct Decision {
    std::size_t entry = 0;
    ReconcileAction action = ReconcileAction::Skip;
    std::vector<std::string> givenUp = {};  ///< fields that Merge takes from the present row
  };
  using Outcomes = std::vector<ChangeOutcome>;
  ApplyAnswer SendLog(std::int32_t maxErrors);
  Applied SendAndTake(std::int32_t maxErrors);
  void FoldInLaterChanges(Outcomes& outcomes);
  std::vector<Decision> Reconcile(const Outcomes& outcomes, Applied& applied);
  ReconcileError DescribeError(const LogEntry& entry, const ChangeOutcome& outcome) const;
  void Act(const Outcomes& outcomes, const std::vector<Decision>& decisions);
  void AnnounceOutcome(bool wasEditing, std::optional<RowId> currentBefore, Applied& applied);
  bool Carry(LogEntry& entry, const ChangeOutcome& outcome, const Decision& decision);
  void TakeServerValues(RowId row, const NamedValues& values);
  void MergePresent(LogEntry& entry, const NamedValues& present,
                    const std::vector<std::string>& givenUp);
  void Refresh(const LogEntry& entry, const ChangeOutcome& outcome);
  void BackToEdit(const LogEntry& entry, const NamedValues& present);
  /// `values` with those named in `others` in their place; names that no field has are left.
  std::vector<Variant> With(std::vector<Variant> values, const NamedValues& others) const;

  // --- state
  // --------------------------------------------------------------------------------------
  TVosClientDataSet& self;
  std::string name;
  TVosSQLConnection* connection = nullptr;
  std::string provider;
  bool writable = false;

  std::deque<TField> fields;       // data and lookup fields as they were declared
  std::vector<FieldDef> dataDefs;  // of the store's columns
  std::vector<TDataSource*> sources;
  std::vector<TVosClientDataSet*> dependents;  // those with lookups on this dataset
  // Names seen before the lookup's source was replaced by rows that do not hold the key.
  std::map<const TField*, std::map<Variant, Variant, VariantLess>> settled;

  RowStore store;
  std::vector<RowId> order;
  std::vector<std::size_t> indexColumns;
  mutable std::vector<ColumnIndex> indexes;
  std::string continuation;

  DataSetState state = DataSetState::Browse;
  std::size_t position = 0;
  bool bof = true;
  bool eof = true;
  RowId editRow = 0;
  std::vector<Variant> buffer;
  bool modified = false;
  std::optional<RowId> rowBeforeInsert;

  std::vector<LogEntry> log;
  // What was sent and not answered, with the number of entries it carries: the first of the log.
  std::optional<ApplyRequest> inFlight;
  std::size_t inFlightCount = 0;
  bool taking = false;        // an answer is being worked in
  bool merged = false;        // the last answer left changes laid over another's
  Variant answeredOwnerData;  // owed to AfterApplyUpdates since the link broke again
  NamedValues headMoved;

  std::uint64_t generation = 0;
  std::uint64_t version = 0;
};

}  // namespace orvane::data
