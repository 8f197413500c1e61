#pragma once

// What a provider knows of its table beyond its fields: why the engine may refuse a row, said in
// sentences for the user, and what else happens in the transaction of a change. The engines tell
// little of which rule was broken, and differently; so the rules are asked for one by one after the
// engine refused.

#include <any>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "contract/points.h"
#include "packet/delta.h"
#include "packet/failure.h"

namespace orvane::server {

class Transaction;
class Work;
struct Setback;

/// No two rows have the same values of these columns. In a sentence {Column} stands for the value
/// in the refused change. FoldX is the fold of X.
struct UniqueRule {
  std::span<const std::string_view> columns;
  std::string_view sentence;
};

/// A value of the column must be there in another table.
struct ReferenceRule {
  std::string_view column;
  std::string_view table;
  std::string_view tableColumn;
  std::string_view sentence;
};

/// The row is used by another table, and so neither its key may change nor may it be deleted. In
/// the sentence {used} stands for the value of `shows` in the first row that uses it.
struct UsedByRule {
  std::string_view column;
  std::string_view table;
  std::string_view tableColumn;
  std::string_view sentence;
  std::string_view shows = {};
  ValueKind shownKind = ValueKind::Code;
};

/// One change on its way: checked, its values as the fields keep them, its names as the contract
/// spells them.
struct PreparedChange {
  Change change;
  std::string requestHash;
  /// What the server put in by itself; goes back with the outcome.
  NamedValues filled;
  /// Found before any statement ran.
  std::optional<Failure> failure;
};

/// The apply around a batch of changes.
struct WriteContext {
  Work& work;
  Transaction& transaction;
  const Variant& ownerData;
  Variant ownerAnswer;
  NamedValues headMoved;
  /// The same columns as they stood before the batch: whoever meets a conflict in a row is shown
  /// an outdated head too.
  NamedValues headFound = {};
  /// What a document's first hook read and its second one needs.
  std::any kept = {};
};

/// A step of a document's own: locks and checks before the rows are written, statuses and answers
/// after. `changes` are the batch: the whole delta, or a single change when it goes row by row.
/// May change values of `change.after` and add to `filled`. A setback undoes the batch.
using WriteHook = Answer<Done, Setback> (*)(WriteContext&, std::span<PreparedChange> changes);

/// The right a change needs at the claimed point when it is not its kind's: a document's move and a
/// decision have rights of their own.
using ChangeRight = Right (*)(const Work& work, const Change& change);

/// A value as the user knows it, for sentences; empty where its plain text will do.
using ValueWord = std::string (*)(std::string_view column, const Variant& value);

struct WriteRules {
  std::span<const UniqueRule> unique = {};
  std::span<const ReferenceRule> references = {};
  std::span<const UsedByRule> usedBy = {};
  WriteHook beforeWrite = nullptr;
  WriteHook afterWrite = nullptr;
  ChangeRight right = nullptr;
  /// Updates are decisions on a document, which some points are used for and for nothing else.
  bool decisions = false;
  ValueWord word = nullptr;
};

}  // namespace orvane::server
