#pragma once

// A table of values that travels whole: the answer to a fetch, a part of a document, a page of a
// list. Columns are typed arrays, so that a hundred thousand rows are a few allocations.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packet/value_kind.h"
#include "packet/variant.h"

namespace orvane {

/// One column. Rows without a value have their bit in `nulls` set and a zero (or an empty text) in
/// the array; a column without nulls may leave `nulls` empty.
struct PacketColumn {
  std::string name;
  ValueKind kind = ValueKind::Int32;
  std::uint16_t size = 0;              ///< code points of a String, 0 otherwise
  std::vector<std::uint64_t> nulls;    ///< bit (row % 64) of word (row / 64)
  std::vector<std::int64_t> integers;  ///< Storage::Integer
  std::vector<double> reals;           ///< Storage::Real
  std::string heap;                    ///< Storage::Text, all texts one after the other
  std::vector<std::uint32_t> ends;     ///< Storage::Text, end offset of each row's text

  bool IsNull(std::size_t row) const {
    return row / 64 < nulls.size() && (nulls[row / 64] >> (row % 64) & 1u) != 0;
  }
  std::string_view TextAt(std::size_t row) const {
    const std::size_t begin = row == 0 ? 0 : ends[row - 1];
    return std::string_view(heap).substr(begin, ends[row] - begin);
  }
};

/// Rows of typed columns. Column names do not depend on case.
class DataPacket {
 public:
  std::vector<PacketColumn> columns;
  std::size_t rowCount = 0;
  /// Empty when the answer is whole; otherwise what to send to get the next portion.
  std::string continuation;

  /// Adds an empty column; only while there are no rows.
  DataPacket& AddColumn(std::string_view name, ValueKind kind, std::uint16_t size = 0);
  /// Position of a column, empty when there is none of that name.
  std::optional<std::size_t> FindColumn(std::string_view name) const;
  Variant At(std::size_t row, std::size_t column) const;
  /// Null when there is no such column.
  Variant At(std::size_t row, std::string_view column) const;
  /// One value per column, each already of the column's kind (asserted).
  void AppendRow(std::span<const Variant> values);
  /// Bytes of the values, as they are held.
  std::int64_t Bytes() const;
  /// Arrays have the row count, offsets ascend and end at the heap's end, texts are UTF-8 without
  /// zero bytes and of the column's size (0: no limit), integers lie in their kind's range, reals
  /// are finite, rows without a value hold a zero. What came from outside is checked by this.
  bool IsSound() const;
};

/// Same columns (names by case too), same values, same continuation.
bool operator==(const DataPacket& left, const DataPacket& right);

/// Appends one value to one column; `row` is its position. Writers that fill column by column use
/// this, and set rowCount when all columns are filled.
void AppendValue(PacketColumn& column, std::size_t row, const Variant& value);
void AppendNull(PacketColumn& column, std::size_t row);

}  // namespace orvane
