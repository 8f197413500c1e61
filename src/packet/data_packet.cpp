#include "packet/data_packet.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "packet/fold.h"

namespace orvane {
namespace {

constexpr std::size_t kBitsPerWord = 64;

std::size_t WordsFor(std::size_t rows) {
  return (rows + kBitsPerWord - 1) / kBitsPerWord;
}

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80;
}

/// The integer under which a value of that kind is kept; asserts that it is of the kind.
std::int64_t StoredInteger(const ValueKindRow& row, const Variant& value) {
  std::optional<std::int64_t> stored;
  if (row.scale > 0) {
    const auto decimal = value.AsDecimal();
    const auto scaled = decimal ? decimal->AtScale(row.scale) : std::nullopt;
    if (scaled) stored = scaled->Mantissa();
  } else if (row.kind == ValueKind::Date) {
    if (const auto date = value.AsDate()) stored = date->days;
  } else if (row.kind == ValueKind::Stamp) {
    if (const auto stamp = value.AsStamp()) stored = stamp->micros;
  } else {
    stored = value.AsInt();
  }
  assert(stored && *stored >= row.lowest && *stored <= row.highest);
  return *stored;
}

/// No bit beyond the rows, and under every bit a zero or an empty text.
bool NullsAreSound(const PacketColumn& column, std::size_t rows) {
  if (column.nulls.size() > WordsFor(rows)) return false;
  for (std::size_t word = 0; word < column.nulls.size(); ++word) {
    if (column.nulls[word] == 0) continue;
    for (std::size_t bit = 0; bit < kBitsPerWord; ++bit) {
      const std::size_t row = word * kBitsPerWord + bit;
      if (!column.IsNull(row)) continue;
      if (row >= rows) return false;
      if (!column.integers.empty() && column.integers[row] != 0) return false;
      if (!column.reals.empty() && column.reals[row] != 0) return false;
      if (!column.ends.empty() && !column.TextAt(row).empty()) return false;
    }
  }
  return true;
}

bool TextsAreSound(const PacketColumn& column) {
  const std::string_view heap = column.heap;
  if ((column.ends.empty() ? 0 : column.ends.back()) != heap.size()) return false;
  std::size_t begin = 0;
  for (const std::uint32_t end : column.ends) {
    if (end < begin || end > heap.size()) return false;
    if (end < heap.size() && IsContinuation(heap[end])) return false;
    const std::string_view text = heap.substr(begin, end - begin);
    if (column.size > 0 && text.size() > column.size && Utf8Length(text) > column.size) {
      return false;
    }
    begin = end;
  }
  return IsUtf8(heap) && heap.find('\0') == std::string_view::npos;
}

bool IsSoundColumn(const PacketColumn& column, std::size_t rows) {
  const ValueKindRow& row = RowOf(column.kind);
  const auto expected = [&](Storage storage) { return row.storage == storage ? rows : 0; };
  if (column.integers.size() != expected(Storage::Integer)) return false;
  if (column.reals.size() != expected(Storage::Real)) return false;
  if (column.ends.size() != expected(Storage::Text)) return false;
  if (column.kind != ValueKind::String && column.size != 0) return false;
  if (!IsUtf8(column.name)) return false;
  if (!TextsAreSound(column) || !NullsAreSound(column, rows)) return false;
  const bool inRange = std::ranges::all_of(column.integers, [&](std::int64_t value) {
    return value >= row.lowest && value <= row.highest;
  });
  return inRange &&
         std::ranges::all_of(column.reals, [](double value) { return std::isfinite(value); });
}

bool SameColumn(const PacketColumn& left, const PacketColumn& right, std::size_t rows) {
  if (left.name != right.name || left.kind != right.kind || left.size != right.size) return false;
  if (left.integers != right.integers || left.reals != right.reals) return false;
  if (left.ends != right.ends || left.heap != right.heap) return false;
  for (std::size_t row = 0; row < rows; ++row) {
    if (left.IsNull(row) != right.IsNull(row)) return false;
  }
  return true;
}

}  // namespace

DataPacket& DataPacket::AddColumn(std::string_view name, ValueKind kind, std::uint16_t size) {
  assert(rowCount == 0);
  PacketColumn& column = columns.emplace_back();
  column.name = name;
  column.kind = kind;
  column.size = kind == ValueKind::String ? size : std::uint16_t{0};
  return *this;
}

std::optional<std::size_t> DataPacket::FindColumn(std::string_view name) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (SameName(columns[i].name, name)) return i;
  }
  return std::nullopt;
}

Variant DataPacket::At(std::size_t row, std::size_t column) const {
  assert(row < rowCount && column < columns.size());
  const PacketColumn& source = columns[column];
  if (source.IsNull(row)) return {};
  const ValueKindRow& kind = RowOf(source.kind);
  switch (kind.storage) {
    case Storage::Real:
      return source.reals[row];
    case Storage::Text:
      return source.TextAt(row);
    case Storage::Integer:
      break;
  }
  const std::int64_t value = source.integers[row];
  if (kind.scale > 0) return Decimal(value, kind.scale);
  if (kind.kind == ValueKind::Bool) return value != 0;
  if (kind.kind == ValueKind::Date) return Date{static_cast<std::int32_t>(value)};
  if (kind.kind == ValueKind::Stamp) return Stamp{value};
  return value;
}

Variant DataPacket::At(std::size_t row, std::string_view column) const {
  const auto position = FindColumn(column);
  return position ? At(row, *position) : Variant();
}

void DataPacket::AppendRow(std::span<const Variant> values) {
  assert(values.size() == columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i)
    AppendValue(columns[i], rowCount, values[i]);
  ++rowCount;
}

std::int64_t DataPacket::Bytes() const {
  std::size_t bytes = 0;
  for (const PacketColumn& column : columns) {
    bytes += sizeof(PacketColumn) + column.nulls.size() * sizeof(std::uint64_t) +
             column.integers.size() * sizeof(std::int64_t) + column.reals.size() * sizeof(double) +
             column.heap.size() + column.ends.size() * sizeof(std::uint32_t);
  }
  return static_cast<std::int64_t>(bytes);
}

bool DataPacket::IsSound() const {
  if (columns.empty() && rowCount != 0) return false;
  return std::ranges::all_of(
      columns, [&](const PacketColumn& column) { return IsSoundColumn(column, rowCount); });
}

bool operator==(const DataPacket& left, const DataPacket& right) {
  return left.rowCount == right.rowCount && left.continuation == right.continuation &&
         std::ranges::equal(left.columns, right.columns,
                            [&](const PacketColumn& a, const PacketColumn& b) {
                              return SameColumn(a, b, left.rowCount);
                            });
}

void AppendValue(PacketColumn& column, std::size_t row, const Variant& value) {
  if (value.IsNull()) return AppendNull(column, row);
  const ValueKindRow& kind = RowOf(column.kind);
  switch (kind.storage) {
    case Storage::Integer:
      column.integers.push_back(StoredInteger(kind, value));
      break;
    case Storage::Real:
      assert(value.AsDouble());
      column.reals.push_back(*value.AsDouble());
      break;
    case Storage::Text:
      assert(value.AsString());
      column.heap += *value.AsString();
      assert(column.heap.size() <= std::numeric_limits<std::uint32_t>::max());
      column.ends.push_back(static_cast<std::uint32_t>(column.heap.size()));
      break;
  }
}

void AppendNull(PacketColumn& column, std::size_t row) {
  column.nulls.resize(row / kBitsPerWord + 1);
  column.nulls[row / kBitsPerWord] |= std::uint64_t{1} << row % kBitsPerWord;
  switch (RowOf(column.kind).storage) {
    case Storage::Integer:
      column.integers.push_back(0);
      break;
    case Storage::Real:
      column.reals.push_back(0);
      break;
    case Storage::Text:
      column.ends.push_back(static_cast<std::uint32_t>(column.heap.size()));
      break;
  }
}

}  // namespace orvane
