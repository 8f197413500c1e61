#pragma once

// The statements of a change, made from what the contract says of the provider's fields. Old values
// are part of the where clause; folds are written beside their texts; history in the same breath.

#include <string>
#include <vector>

#include "contract/field.h"
#include "packet/date.h"
#include "server/engine/database.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// Who writes, for stamps and history.
struct Writer {
  std::string login;
  std::string machineName;
  Stamp now;
};

/// Puts the server's stamps into the change (CreatedFrom and CreatedOn of an insert, AmendFrom and
/// AmendOn of an update, where the provider has them) and tells them in `filled`.
void StampChange(const ProviderDef& provider, const Writer& writer, PreparedChange& prepared);

/// The insert, update or delete; touches exactly one row unless the row is not as it was.
Statement WriteStatement(const ProviderDef& provider, const Change& change);

/// A history row per changed column, in one statement.
Statement HistoryStatement(const ProviderDef& provider, const Writer& writer, const Change& change);

/// The table's row under the key of `change.before`: every field that is not joined.
Statement PresentRow(const ProviderDef& provider, const Change& change);

/// The last entry of history about the row under the key of `change.before`: UserName (the login
/// where the user is gone) and ChangedOn.
Statement LastChange(const ProviderDef& provider, const Change& change);

/// Names and values of a packet's row.
NamedValues RowValues(const DataPacket& packet, std::size_t row);

}  // namespace orvane::server
