#include "data/row_order.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <string>
#include <string_view>

#include "packet/fold.h"

namespace orvane::data {
namespace {

bool IsText(const RowStore& store, std::size_t column) {
  return RowOf(store.KindOf(column)).storage == Storage::Text;
}

/// Orders like the number, unsigned.
std::uint64_t NumberWord(std::int64_t number) {
  return static_cast<std::uint64_t>(number) ^ std::uint64_t{1} << 63;
}

/// The first eight bytes of a text, as a number that orders like them.
std::uint64_t TextWord(std::string_view text) {
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < 8; ++i)
    word = word << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0u);
  return word;
}

/// One column of all rows, ready for comparing: a word that decides most comparisons, and behind it
/// what those need that it leaves open.
struct SortColumn {
  std::vector<std::uint64_t> words;
  std::vector<bool> nulls;
  std::string folds;
  std::vector<std::size_t> foldEnds;  // empty for a column of numbers

  std::string_view FoldAt(std::size_t row) const {
    if (foldEnds.empty()) return {};
    const std::size_t begin = row == 0 ? 0 : foldEnds[row - 1];
    return std::string_view(folds).substr(begin, foldEnds[row] - begin);
  }

  int Compare(std::size_t left, std::size_t right) const {
    if (words[left] != words[right]) return words[left] < words[right] ? -1 : 1;
    if (nulls[left] != nulls[right]) return nulls[left] ? -1 : 1;
    return FoldAt(left).compare(FoldAt(right));
  }
};

SortColumn MakeSortColumn(const RowStore& store, std::size_t column,
                          const std::vector<RowId>& rows) {
  SortColumn made;
  made.words.reserve(rows.size());
  made.nulls.reserve(rows.size());
  const bool isText = IsText(store, column);
  if (isText) made.foldEnds.reserve(rows.size());
  for (const RowId row : rows) {
    const Cell cell = store.CellAt(row, column);
    made.nulls.push_back(cell.null);
    if (isText) {
      const std::string fold = Fold(cell.text);
      made.words.push_back(TextWord(fold));
      made.folds += fold;
      made.foldEnds.push_back(made.folds.size());
    } else {
      made.words.push_back(cell.null ? 0 : NumberWord(cell.number));
    }
  }
  return made;
}

int CompareCells(const Cell& left, const Cell& right) {
  if (left.null != right.null) return left.null ? -1 : 1;
  if (left.number != right.number) return left.number < right.number ? -1 : 1;
  return left.text == right.text ? 0 : Fold(left.text).compare(Fold(right.text));
}

int CompareRows(const RowStore& store, std::span<const std::size_t> columns, RowId left,
                RowId right) {
  for (const std::size_t column : columns) {
    const int order = CompareCells(store.CellAt(left, column), store.CellAt(right, column));
    if (order != 0) return order;
  }
  return 0;
}

std::uint32_t HashOf(const Cell& cell) {
  std::uint64_t hash = cell.text.empty() ? static_cast<std::uint64_t>(cell.number)
                                         : std::hash<std::string_view>()(cell.text);
  hash = (hash ^ hash >> 32) * 0x9E3779B97F4A7C15u;
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

void SortRows(const RowStore& store, std::span<const std::size_t> columns,
              std::vector<RowId>& rows) {
  if (columns.empty() || rows.size() < 2) return;
  std::vector<SortColumn> sortColumns;
  for (const std::size_t column : columns)
    sortColumns.push_back(MakeSortColumn(store, column, rows));

  struct Entry {
    std::uint64_t word;
    std::uint32_t place;
  };
  std::vector<Entry> entries(rows.size());
  for (std::uint32_t place = 0; place < rows.size(); ++place)
    entries[place] = {sortColumns[0].words[place], place};
  std::ranges::sort(entries, [&](const Entry& left, const Entry& right) {
    if (left.word != right.word) return left.word < right.word;
    for (const SortColumn& column : sortColumns) {
      const int order = column.Compare(left.place, right.place);
      if (order != 0) return order < 0;
    }
    return left.place < right.place;
  });

  std::vector<RowId> sorted;
  sorted.reserve(rows.size());
  for (const Entry& entry : entries)
    sorted.push_back(rows[entry.place]);
  rows = std::move(sorted);
}

std::size_t PlaceInOrder(const RowStore& store, std::span<const std::size_t> columns,
                         std::span<const RowId> rows, RowId row) {
  const auto place = std::ranges::upper_bound(rows, row, [&](RowId left, RowId right) {
    return CompareRows(store, columns, left, right) < 0;
  });
  return static_cast<std::size_t>(place - rows.begin());
}

std::optional<std::size_t> ColumnIndex::Find(const RowStore& store, std::span<const RowId> rows,
                                             const Cell& value) {
  TakeUp(store, rows);
  if (slots_.empty()) return std::nullopt;
  const Slot& slot = SlotOf(store, rows, value, HashOf(value));
  if (slot.place == 0) return std::nullopt;
  return slot.place - 1;
}

void ColumnIndex::TakeUp(const RowStore& store, std::span<const RowId> rows) {
  if (takenUp_ >= rows.size()) return;
  if (rows.size() * 2 > slots_.size()) Grow(rows.size());
  for (; takenUp_ < rows.size(); ++takenUp_) {
    const Cell cell = store.CellAt(rows[takenUp_], column_);
    const std::uint32_t hash = HashOf(cell);
    Slot& slot = SlotOf(store, rows, cell, hash);
    if (slot.place == 0) slot = {static_cast<std::uint32_t>(takenUp_ + 1), hash};
  }
}

void ColumnIndex::Grow(std::size_t rows) {
  std::vector<Slot> grown(std::bit_ceil(rows * 2));
  for (const Slot& slot : slots_) {
    if (slot.place == 0) continue;
    std::size_t at = slot.hash & (grown.size() - 1);
    while (grown[at].place != 0)
      at = (at + 1) & (grown.size() - 1);
    grown[at] = slot;
  }
  slots_ = std::move(grown);
}

ColumnIndex::Slot& ColumnIndex::SlotOf(const RowStore& store, std::span<const RowId> rows,
                                       const Cell& value, std::uint32_t hash) {
  std::size_t at = hash & (slots_.size() - 1);
  while (slots_[at].place != 0) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && store.CellAt(rows[slot.place - 1], column_) == value) break;
    at = (at + 1) & (slots_.size() - 1);
  }
  return slots_[at];
}

}  // namespace orvane::data
