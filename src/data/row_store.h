#pragma once

// The rows of a dataset: the packet as it came, column by column, and beside it the rows that were
// changed or inserted since. Nothing here knows of cursors, events or the change log.

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "contract/field.h"
#include "packet/data_packet.h"
#include "packet/failure.h"
#include "packet/variant.h"

namespace orvane::data {

/// Identity of a row within one content: its position in the packet, or kInsertedRow and a number.
using RowId = std::uint32_t;
inline constexpr RowId kInsertedRow = 0x80000000u;

/// A value of one column in the form in which it is compared and hashed: `number` orders integers,
/// decimals (mantissa), days, moments and doubles alike; `text` belongs to the row or variant read.
struct Cell {
  bool null = true;
  std::int64_t number = 0;
  std::string_view text;

  bool operator==(const Cell&) const = default;
};

/// The cell of a value that a field of `kind` keeps; a value of another kind counts as Null.
Cell CellOf(const Variant& value, ValueKind kind);

/// `packet` with one column per field, in the fields' order and of their kinds. Columns that no
/// field names are dropped, fields without a column are Null. Internal failure when a column's
/// values cannot be read as the field's kind.
Answer<DataPacket> ShapePacket(DataPacket packet, std::span<const FieldDef> fields);

class RowStore {
 public:
  /// Takes a shaped packet as the whole content.
  void Replace(DataPacket shaped);
  /// Adds the rows of a shaped packet; returns the first new row.
  RowId Append(const DataPacket& shaped);

  std::size_t LoadedRows() const { return loaded_.rowCount; }
  ValueKind KindOf(std::size_t column) const { return loaded_.columns[column].kind; }
  /// A row of Nulls.
  RowId AddRow() { return kInsertedRow | nextInserted_++; }

  Variant Value(RowId row, std::size_t column) const;
  std::vector<Variant> Values(RowId row) const;
  /// Valid until the row changes.
  Cell CellAt(RowId row, std::size_t column) const;

  /// Sets all values of a row.
  void Put(RowId row, std::vector<Variant> values) { changed_[row] = std::move(values); }
  /// Forgets what was put: a loaded row is as it was loaded, an inserted one is gone.
  void Forget(RowId row) { changed_.erase(row); }

 private:
  const std::vector<Variant>* FindChanged(RowId row) const;

  DataPacket loaded_;
  std::unordered_map<RowId, std::vector<Variant>> changed_;
  RowId nextInserted_ = 0;
};

}  // namespace orvane::data
