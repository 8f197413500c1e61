#pragma once

// What the server writes by itself into a document's tables, beside what a client sent: each write
// goes with its history, and all of them travel together.

#include <vector>

#include "contract/field.h"
#include "server/providers/change_writer.h"
#include "server/providers/work.h"

namespace orvane::server {

class ServerWrites {
 public:
  explicit ServerWrites(const Work& work)
      : writer_{work.Who().login, work.Who().machineName, work.Now()} {}

  /// A new row; `values` name every column that is written.
  void Insert(const ProviderDef& table, const NamedValues& values);
  /// `row` holds the key and the present value of every column in `values`; columns that have their
  /// value already are left out, and nothing is written when that leaves none.
  void Update(const ProviderDef& table, const NamedValues& row, const NamedValues& values);
  /// `row` holds the key and every column that history is to keep.
  void Delete(const ProviderDef& table, const NamedValues& row);
  /// A statement of its own kind, behind those before it. It may touch any number of rows.
  void Run(Statement statement);

  bool Empty() const { return statements_.empty(); }
  /// Carries everything out in one round trip. Each row must be as it was said to be.
  Answer<Done, Setback> CarryOut(Transaction& transaction, std::string_view doing);

 private:
  void Add(const ProviderDef& table, const Change& change);

  Writer writer_;
  std::vector<Statement> statements_;
  std::vector<bool> touchesOneRow_;
};

/// Key columns of a row.
NamedValues KeyOf(const ProviderDef& table, const NamedValues& row);
/// Sets or adds a value.
void SetValue(NamedValues& values, std::string_view name, const Variant& value);
/// What a change makes of a row; a deleted row keeps its values.
NamedValues After(NamedValues row, const Change& change);

/// Puts the server's value into a change in place of whatever was sent, and tells the client.
/// `present` is the row as it is (empty for an insert), whose value becomes the old one.
void Impose(PreparedChange& change, const NamedValues& present, std::string_view name,
            const Variant& value);

}  // namespace orvane::server
