#pragma once

// Writes many rows fast: statements of many rows each, one text per table and pattern of nulls, so
// that every engine prepares few of them and runs them in one round trip.
//
//   DemoWriter writer(engine);
//   writer.Add(kCurrencies, {1, "Евро", "Euro", "EUR"});
//   writer.Flush(*transaction);

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packet/variant.h"
#include "server/engine/database.h"

namespace orvane::server {

struct DemoColumn {
  std::string_view name;
  ValueKind kind = ValueKind::Int32;
  bool folded = false;  ///< the table keeps the fold beside it, in the column Fold<name>
};

struct DemoTable {
  std::string_view name;
  std::span<const DemoColumn> columns;
  std::size_t keyColumns = 1;  ///< the first ones
};

/// Zero and an empty text stand for no value.
inline Variant OrNull(std::int64_t code) {
  return code == 0 ? Variant() : Variant(code);
}
inline Variant OrNull(std::string_view text) {
  return text.empty() ? Variant() : Variant(text);
}

class DemoWriter {
 public:
  /// One value per column, in the table's order.
  void Add(const DemoTable& table, VariantArray row);
  /// Sends what was added, tables in the order in which they were first named.
  EngineAnswer<Done> Flush(Transaction& transaction);
  std::int64_t RowsWritten() const { return written_; }

 private:
  /// Rows of one table that have values in the same columns.
  struct Shape {
    std::vector<bool> present;
    VariantArray values;  ///< of all its rows, one after the other
    std::size_t width = 0;
  };
  struct Pending {
    const DemoTable* table;
    std::vector<Shape> shapes;
  };

  Shape& ShapeOf(const DemoTable& table, const VariantArray& row);
  EngineAnswer<Done> Send(Transaction& transaction, const DemoTable& table, Shape& shape);

  std::vector<Pending> pending_;
  std::int64_t written_ = 0;
};

}  // namespace orvane::server
