#pragma once

// The order in which rows are shown, and finding rows by value.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "data/row_store.h"

namespace orvane::data {

/// Puts `rows` in the order of the columns: Nulls first, texts by their fold, equal rows as they
/// stand. Folds are computed once per row.
void SortRows(const RowStore& store, std::span<const std::size_t> columns,
              std::vector<RowId>& rows);

/// Where `row` belongs among rows that are in that order: behind those equal to it.
std::size_t PlaceInOrder(const RowStore& store, std::span<const std::size_t> columns,
                         std::span<const RowId> rows, RowId row);

/// Finds the first row with a value in one column. Built on first use; rows added at the end are
/// taken up by the next search, any other change of rows or order needs a new index.
class ColumnIndex {
 public:
  explicit ColumnIndex(std::size_t column) : column_(column) {}

  std::size_t Column() const { return column_; }
  /// Position in `rows`, empty when no row has the value.
  std::optional<std::size_t> Find(const RowStore& store, std::span<const RowId> rows,
                                  const Cell& value);

 private:
  struct Slot {
    std::uint32_t place = 0;  // position + 1; 0 is free
    std::uint32_t hash = 0;
  };

  void TakeUp(const RowStore& store, std::span<const RowId> rows);
  void Grow(std::size_t rows);
  Slot& SlotOf(const RowStore& store, std::span<const RowId> rows, const Cell& value,
               std::uint32_t hash);

  std::size_t column_;
  std::size_t takenUp_ = 0;
  std::vector<Slot> slots_;  // a power of two, at most half full
};

}  // namespace orvane::data
