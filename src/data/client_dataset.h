#pragma once

// A table edited in memory: fetched from a provider, changed row by row, applied to the server as a
// delta. The rules of a screen hang on its events.
//
//   cdsDepartment.BeforePost = [this] { cdsDepartmentBeforePost(); };
//   cdsDepartment.Insert();
//   cdsDepartment[department::Code].Set(7);
//   cdsDepartment.Post();                      // BeforePost, then AfterPost, which applies
//
// Order of an apply: reconcile every failed change, merge what the server filled in, clear the log,
// AfterApplyUpdates. A handler may reload the dataset inside its own event: Generation() tells.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "data/connection.h"
#include "data/text_format.h"
#include "packet/data_packet.h"
#include "packet/delta.h"

namespace orvane::data {

class TVosClientDataSet;

/// The values of one row by their fields' names.
using RowReader = std::function<Variant(std::string_view field)>;

enum class DataSetState : std::uint8_t { Inactive, Browse, Edit, Insert };

/// What to do with a change that the server did not apply.
enum class ReconcileAction : std::uint8_t {
  Skip,     ///< leave it in the log as it is
  Abort,    ///< leave it in the log and end the event
  Merge,    ///< keep mine on top of the present row, to be applied again
  Correct,  ///< take the change out of the log and put the row back into edit with what was typed
  Cancel,   ///< drop the change; the row is as it was loaded
  Refresh,  ///< drop the change; the row is as the server holds it now
};

/// A place in a dataset that survives changes of other rows; not a reload (Generation tells).
struct Bookmark {
  std::uint64_t generation = 0;
  std::uint64_t row = 0;
};

/// A change that was not applied, as OnReconcileError sees it.
struct ReconcileError {
  ChangeKind kind;
  Failure failure;
  NamedValues before;   ///< what was loaded
  NamedValues mine;     ///< what was typed
  NamedValues present;  ///< what the server holds now; empty when the row is gone
  /// Fields of `mine` that the user gives up when he merges: filled by whoever answers Merge.
  mutable std::vector<std::string> givenUp;
  /// Who changed the row meanwhile and when; empty when it is not known.
  std::string changedBy = {};
  Stamp changedOn = {};
  Bookmark row = {};
};

/// A field of a dataset: a view onto the current row. Named by a FieldDef of the contract.
class TField {
 public:
  const FieldDef& Def() const { return def_; }
  std::string_view Name() const { return def_.name; }
  TVosClientDataSet& DataSet() const { return *dataSet_; }
  bool IsLookup() const;
  /// The field that a choice made in this one goes into: of a lookup its key field, else itself.
  TField& Written();

  /// The current row's value (of the row in edit, while one is); Null when there is no row.
  Variant Value() const;
  bool IsNull() const { return Value().IsNull(); }
  /// Null or the empty text.
  bool IsEmpty() const;
  /// Null, empty, or blanks only.
  bool IsBlank() const { return Value().IsEmpty(); }
  std::optional<std::int64_t> AsInt() const { return Value().AsInt(); }
  std::optional<double> AsDouble() const { return Value().AsDouble(); }
  std::optional<Decimal> AsDecimal() const { return Value().AsDecimal(); }
  std::optional<Date> AsDate() const { return Value().AsDate(); }
  bool AsBool() const { return Value().AsBool().value_or(false); }
  /// Empty text for Null.
  std::string AsString() const;
  /// The value before the current edit or, of a posted row, as it was loaded.
  Variant OldValue() const;

  /// Sets the row in edit (asserts that one is). Setting the value it has is no change; a change
  /// runs OnChange at once. A value the field cannot hold is a programmer's error: texts of the
  /// user go through SetText.
  void Set(const Variant& value);
  void Clear() { Set(Variant()); }

  /// As shown: OnGetRowText or OnGetText when bound, otherwise by format.
  std::string Text() const;
  std::string TextOf(const Variant& value) const;
  /// The field as it would be shown in a row of these values; of a lookup the name of its key.
  std::string TextIn(const RowReader& row) const;
  /// What the user typed, through OnSetText when bound. A text that cannot be read is a Refused
  /// failure with a whole sentence naming the field; nothing changes then.
  Answer<Done> SetText(std::string_view text);

  std::string DisplayLabel;  ///< from the contract; screens may add the language's name
  TextFormat Format;
  bool ReadOnly = false;
  std::function<void()> OnChange;
  std::function<std::string(const Variant&)> OnGetText;
  /// In place of OnGetText where the text depends on other fields of the row.
  std::function<std::string(const RowReader& row)> OnGetRowText;
  std::function<Answer<Variant>(std::string_view)> OnSetText;

 private:
  friend class TVosClientDataSet;
  TField(TVosClientDataSet& dataSet, const FieldDef& def);

  struct Lookup {
    TVosClientDataSet* source = nullptr;
    std::string keyField;
    std::string lookupKeyField;
    std::string resultField;
  };

  TVosClientDataSet* dataSet_;
  FieldDef def_;
  std::optional<Lookup> lookup_;
  std::size_t column_ = 0;
};

/// Watches one dataset for those who show it.
class TDataSource {
 public:
  explicit TDataSource(TVosClientDataSet& dataSet);
  ~TDataSource();
  TDataSource(const TDataSource&) = delete;
  TDataSource& operator=(const TDataSource&) = delete;

  TVosClientDataSet& DataSet() const { return *dataSet_; }
  /// After every change of the dataset's state.
  std::function<void()> OnStateChange;

 private:
  friend class TVosClientDataSet;
  TVosClientDataSet* dataSet_;
};

class TVosClientDataSet {
 public:
  /// Rows of a provider of `connection`'s server class; of a search statement when the provider has
  /// no name. Open and empty from birth.
  TVosClientDataSet(std::string_view name, TVosSQLConnection& connection,
                    const ProviderDef& provider);
  /// Rows of a search statement (provider "dspSQL"): Sql is set before opening.
  TVosClientDataSet(std::string_view name, TVosSQLConnection& connection,
                    std::initializer_list<FieldDef> fields);
  /// Rows in memory only.
  TVosClientDataSet(std::string_view name, std::initializer_list<FieldDef> fields);
  ~TVosClientDataSet();
  TVosClientDataSet(const TVosClientDataSet&) = delete;
  TVosClientDataSet& operator=(const TVosClientDataSet&) = delete;

  const std::string& Name() const;

  // --- fields -----------------------------------------------------------------------------------
  TField& operator[](const FieldDef& field) { return FieldByName(field.name); }
  /// Names do not depend on case; an unknown name is a programmer's error (asserted).
  TField& FieldByName(std::string_view name);
  const TField& FieldByName(std::string_view name) const;
  TField* FindField(std::string_view name);
  std::vector<TField*> Fields();
  /// Adds a field that shows `resultField` of `source` where its `lookupKeyField` equals
  /// `keyField`. What it shows is settled when rows arrive or the key changes, never by a paint.
  TField& AddLookup(const FieldDef& field, TVosClientDataSet& source, std::string_view keyField,
                    std::string_view lookupKeyField, std::string_view resultField);
  /// Another column of the lookup's source (the second language).
  void SetLookupResult(const FieldDef& field, std::string_view resultField);
  /// Keys of loaded rows that the lookup's source does not hold, each once, in the order shown; for
  /// those who fetch what a portion left behind. Such rows show an empty text.
  std::vector<Variant> MissingLookupKeys(const TField& lookup) const;
  /// Largest value of an integer field plus `plus` over all rows; Null when there is no row.
  Variant MaxOf(const FieldDef& field, int plus = 0) const;

  // --- opening ----------------------------------------------------------------------------------
  NamedValues Params;
  void SetParam(std::string_view name, Variant value);
  Variant Param(std::string_view name) const;
  std::string Sql;
  std::int32_t RowLimit = 0;  ///< portion size; 0 is everything
  /// In-memory order: field names parted by semicolons, texts by their fold. Kept while rows
  /// change.
  void SetIndexFieldNames(std::string_view names);
  bool HasIndex() const;

  bool Active() const;
  /// Fetches all rows (or the first portion); one call.
  void Open();
  /// Drops all rows; the fields stay.
  void Close();
  /// What Open would send, for batches that travel together.
  FetchRequest MakeFetchRequest() const;
  /// Takes a packet as the new content: fires one OnAfterScroll and one state change, no OnChange.
  /// Columns are matched by name; columns that no field names are left, fields without a column are
  /// Null.
  void LoadPacket(DataPacket packet);
  /// Adds the rows of the next portion.
  void AppendPacket(DataPacket packet);
  /// Adds rows that came apart from the portions (one found by its key): HasMore stays as it is.
  void AppendRows(DataPacket rows);
  /// True when the last packet said that more follows.
  bool HasMore() const;
  /// What asks for the next portion; empty when there is none.
  const std::string& Continuation() const;
  /// Fetches the next portion; nothing happens when there is none.
  void FetchMore();
  /// Asks for a portion without taking it in: at most so many rows (0: everything) behind a former
  /// portion's continuation (empty: from the beginning).
  DataPacket FetchPortion(std::int32_t rowLimit, const std::string& continuation) const;
  /// Where portions come from when they are the answers of a server method; unset: the provider.
  std::function<DataPacket(std::int32_t rowLimit, const std::string& continuation)> OnFetchPortion;
  /// Sends `data` as a question to the provider (parameter "Data") and loads the answer.
  void DataRequest(Variant data);
  /// Open and without rows; the log is emptied.
  void EmptyDataSet();
  /// A dataset of the same fields, lookups and texts, without rows and without events: for those
  /// who read portions that the screen does not show. Texts made from a whole row (OnGetRowText)
  /// belong to this dataset and are not taken over.
  std::unique_ptr<TVosClientDataSet> EmptyTwin() const;

  // --- rows -------------------------------------------------------------------------------------
  /// Rows shown, with the one being inserted.
  std::size_t RecordCount() const;
  bool IsEmpty() const { return RecordCount() == 0; }
  /// Position of the current row in the order shown, 0-based; 0 when there is none.
  std::size_t RecNo() const;
  /// Moves to a position, to the last row when there are fewer. Moving in any way first posts a
  /// changed row in edit and ends an untouched one; if it stays in edit, the cursor stays too.
  void SetRecNo(std::size_t position);
  void First();
  void Last();
  void Next();
  void Prior();
  bool Bof() const;
  bool Eof() const;
  /// Values of any row without moving: for those who paint. Position as in RecNo.
  Variant ValueAt(std::size_t position, const TField& field) const;
  std::string TextAt(std::size_t position, const TField& field) const;
  RowReader RowAt(std::size_t position) const;
  /// The same of a row as it was last posted, deleted ones too; Null everywhere after a reload.
  RowReader RowAt(const Bookmark& row) const;
  /// Moves to the first row whose field equals the value (texts byte for byte); false leaves the
  /// cursor. Hash-indexed on first use. Posts nothing: an untouched edit ends, a changed row in
  /// edit is not left, and the answer is false then.
  bool Locate(std::string_view field, const Variant& value);
  /// Moves to the first row in which all named fields equal their values.
  bool Locate(const NamedValues& values);
  /// The same without moving: position of the row.
  std::optional<std::size_t> Find(std::string_view field, const Variant& value) const;
  std::optional<std::size_t> Find(const NamedValues& values) const;
  Bookmark GetBookmark() const;
  /// False when the row is gone or the dataset was reloaded.
  bool GotoBookmark(const Bookmark& bookmark);

  // --- editing ----------------------------------------------------------------------------------
  DataSetState State() const;
  bool Editing() const { return State() == DataSetState::Edit || State() == DataSetState::Insert; }
  bool Modified() const;  ///< the row in edit was changed since Edit or Insert
  void Edit();
  void Insert();
  void Append();
  /// BeforePost may throw Abort: the row stays in edit. An unchanged edit ends quietly, without
  /// BeforePost and AfterPost.
  void Post();
  void Cancel();
  void Delete();

  // --- changes ----------------------------------------------------------------------------------
  std::size_t ChangeCount() const;
  /// Sends the log; returns how many changes failed. A failed call keeps the log and what was sent
  /// (the same bytes go first next time) and throws ServerError; one that was refused as a whole
  /// goes through OnReconcileError, when that is bound, like a refusal of its changes. What was
  /// typed after bytes that still wait goes behind them as further changes, and one
  /// AfterApplyUpdates follows both.
  std::size_t ApplyUpdates(std::int32_t maxErrors);
  /// The last apply met a conflict over which the user laid his own: what he laid over it waits in
  /// the log as a new attempt.
  bool HasMerged() const;
  /// Owner data for the next apply; set by BeforeApplyUpdates.
  Variant OwnerData;
  /// Columns of the document's head that the last apply moved.
  const NamedValues& HeadMoved() const;
  /// Takes values that the server holds for the current row as if they had been loaded: no
  /// OnChange, nothing to send. What was typed into the row stays on top. Without a row nothing
  /// happens.
  void TakeLoaded(const NamedValues& values);
  /// Sets what a row shows beside its codes (joined fields), in the row as it was posted and in the
  /// one it came from, each by its own codes; what was typed into it stays on top. Nothing happens
  /// when the row is gone or is only being inserted.
  void NameCodes(const Bookmark& row, const std::function<NamedValues(const RowReader&)>& names);
  /// Drops the log: every row is as it was loaded.
  void CancelUpdates();

  // --- events -----------------------------------------------------------------------------------
  std::function<void()> BeforeInsert, OnNewRecord, BeforeEdit, BeforePost, AfterPost, AfterCancel,
      BeforeDelete, AfterDelete, BeforeScroll, AfterScroll, BeforeApplyUpdates;
  /// Gets the server's owner data.
  std::function<void(const Variant&)> AfterApplyUpdates;
  std::function<ReconcileAction(const ReconcileError&)> OnReconcileError;
  /// What people call a row, by the values of its key, for sentences about it: "Искане за покупка
  /// 17, ред 3". Unset: labels and values of its key.
  std::function<std::string(const RowReader& row)> OnNameRow;

  /// Grows when the content is replaced (Open, LoadPacket, EmptyDataSet).
  std::uint64_t Generation() const;
  /// Grows with every change of content, cursor, state or labels: views compare it before painting.
  std::uint64_t Version() const;
  TVosSQLConnection* Connection() const;

 private:
  friend class TField;
  friend class TDataSource;
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace orvane::data
