#pragma once

// The changes of a dataset on their way to the server, and what came of each.

#include <optional>
#include <string>
#include <vector>

#include "packet/failure.h"
#include "packet/variant.h"

namespace orvane {

enum class ChangeKind : unsigned char { Insert, Update, Delete };

/// One changed row. `before` holds the key and the old value of every changed column (update) or of
/// every sent column (delete), byte for byte as loaded: all of it is part of the where clause.
/// `after` holds the new values (insert: every sent column; update: the changed ones).
struct Change {
  ChangeKind kind = ChangeKind::Insert;
  /// Chosen by the client, kept until the server acknowledged the change; the server carries out a
  /// key once and answers a repetition as it answered the first time.
  std::string clientKey;
  NamedValues before;
  NamedValues after;

  bool operator==(const Change&) const = default;
};

using Delta = std::vector<Change>;

/// What came of one change.
struct ChangeOutcome {
  bool applied = false;
  /// Set when it failed; empty and not applied when the apply stopped before it.
  std::optional<Failure> failure;
  /// Values the server filled in or put in place of the sent ones (numbers, stamps, names).
  NamedValues filled;
  /// On conflict the row as it is now; empty when it is gone.
  NamedValues present;
  /// On conflict who changed the row last (his name) and when; empty when history knows of nobody.
  std::string changedBy = {};
  Stamp changedOn = {};
};

}  // namespace orvane
