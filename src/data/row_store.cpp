#include "data/row_store.h"

#include <bit>
#include <cassert>
#include <string>

namespace orvane::data {
namespace {

/// Orders doubles as integers; both zeros are one.
std::int64_t OrderedBits(double value) {
  const auto bits = std::bit_cast<std::int64_t>(value == 0 ? 0.0 : value);
  return bits >= 0 ? bits
                   : static_cast<std::int64_t>(~static_cast<std::uint64_t>(bits) | std::uint64_t{1}
                                                                                       << 63);
}

/// True when the arrays of one kind can be read as those of the other.
bool SharesArrays(ValueKind from, ValueKind to) {
  const auto isTime = [](ValueKind kind) {
    return kind == ValueKind::Date || kind == ValueKind::Stamp;
  };
  if (from == to) return true;
  if (isTime(from) || isTime(to)) return false;
  return RowOf(from).storage == RowOf(to).storage && RowOf(from).scale == RowOf(to).scale;
}

PacketColumn NullColumn(const FieldDef& field, std::size_t rows) {
  PacketColumn column;
  column.nulls.assign((rows + 63) / 64, ~std::uint64_t{0});
  if (rows % 64 != 0) column.nulls.back() = (std::uint64_t{1} << rows % 64) - 1;
  switch (RowOf(field.kind).storage) {
    case Storage::Integer:
      column.integers.resize(rows);
      break;
    case Storage::Real:
      column.reals.resize(rows);
      break;
    case Storage::Text:
      column.ends.resize(rows);
      break;
  }
  return column;
}

Answer<PacketColumn> ConvertedColumn(const DataPacket& packet, std::size_t from,
                                     const FieldDef& field) {
  PacketColumn column;
  column.kind = field.kind;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const Answer<Variant> value = packet.At(row, from).As(field.kind);
    if (!value) {
      return Failure{FailureKind::Internal, "Сървърът върна стойности от друг вид за поле „" +
                                                std::string(field.name) + "“."};
    }
    AppendValue(column, row, *value);
  }
  return column;
}

void AppendColumn(PacketColumn& to, std::size_t rows, const PacketColumn& from, std::size_t added) {
  to.integers.insert(to.integers.end(), from.integers.begin(), from.integers.end());
  to.reals.insert(to.reals.end(), from.reals.begin(), from.reals.end());
  const auto offset = static_cast<std::uint32_t>(to.heap.size());
  to.heap += from.heap;
  to.ends.reserve(to.ends.size() + from.ends.size());
  for (const std::uint32_t end : from.ends)
    to.ends.push_back(end + offset);
  for (std::size_t row = 0; row < added; ++row) {
    if (!from.IsNull(row)) continue;
    const std::size_t target = rows + row;
    if (to.nulls.size() <= target / 64) to.nulls.resize(target / 64 + 1);
    to.nulls[target / 64] |= std::uint64_t{1} << target % 64;
  }
}

}  // namespace

Cell CellOf(const Variant& value, ValueKind kind) {
  if (const std::string* text = value.AsString()) return {false, 0, *text};
  const ValueKindRow& row = RowOf(kind);
  if (row.scale > 0) {
    const auto decimal = value.AsDecimal();
    const auto scaled = decimal ? decimal->AtScale(row.scale) : std::nullopt;
    return scaled ? Cell{false, scaled->Mantissa(), {}} : Cell{};
  }
  if (kind == ValueKind::Double) {
    const auto real = value.AsDouble();
    return real ? Cell{false, OrderedBits(*real), {}} : Cell{};
  }
  if (const auto date = value.AsDate()) return {false, date->days, {}};
  if (const auto stamp = value.AsStamp()) return {false, stamp->micros, {}};
  if (const auto whole = value.AsInt()) return {false, *whole, {}};
  return {};
}

Answer<DataPacket> ShapePacket(DataPacket packet, std::span<const FieldDef> fields) {
  DataPacket shaped;
  shaped.rowCount = packet.rowCount;
  shaped.continuation = packet.continuation;
  shaped.columns.reserve(fields.size());
  for (const FieldDef& field : fields) {
    const auto from = packet.FindColumn(field.name);
    if (!from) {
      shaped.columns.push_back(NullColumn(field, packet.rowCount));
    } else if (SharesArrays(packet.columns[*from].kind, field.kind)) {
      shaped.columns.push_back(std::move(packet.columns[*from]));
      packet.columns[*from] = {};
    } else {
      Answer<PacketColumn> converted = ConvertedColumn(packet, *from, field);
      if (!converted) return converted.GetFailure();
      shaped.columns.push_back(*std::move(converted));
    }
    PacketColumn& column = shaped.columns.back();
    column.name = field.name;
    column.kind = field.kind;
    column.size = field.size;
  }
  return shaped;
}

void RowStore::Replace(DataPacket shaped) {
  assert(shaped.rowCount < kInsertedRow);
  loaded_ = std::move(shaped);
  changed_.clear();
  nextInserted_ = 0;
}

RowId RowStore::Append(const DataPacket& shaped) {
  assert(shaped.columns.size() == loaded_.columns.size());
  const std::size_t first = loaded_.rowCount;
  for (std::size_t i = 0; i < loaded_.columns.size(); ++i)
    AppendColumn(loaded_.columns[i], first, shaped.columns[i], shaped.rowCount);
  loaded_.rowCount += shaped.rowCount;
  return static_cast<RowId>(first);
}

const std::vector<Variant>* RowStore::FindChanged(RowId row) const {
  if (changed_.empty()) return nullptr;
  const auto found = changed_.find(row);
  return found == changed_.end() ? nullptr : &found->second;
}

Variant RowStore::Value(RowId row, std::size_t column) const {
  if (const auto* values = FindChanged(row)) return (*values)[column];
  if (row >= kInsertedRow) return {};
  return loaded_.At(row, column);
}

std::vector<Variant> RowStore::Values(RowId row) const {
  if (const auto* values = FindChanged(row)) return *values;
  std::vector<Variant> values(loaded_.columns.size());
  for (std::size_t column = 0; column < values.size() && row < kInsertedRow; ++column)
    values[column] = loaded_.At(row, column);
  return values;
}

Cell RowStore::CellAt(RowId row, std::size_t column) const {
  const PacketColumn& source = loaded_.columns[column];
  if (const auto* values = FindChanged(row)) return CellOf((*values)[column], source.kind);
  if (row >= kInsertedRow || source.IsNull(row)) return {};
  switch (RowOf(source.kind).storage) {
    case Storage::Integer:
      return {false, source.integers[row], {}};
    case Storage::Real:
      return {false, OrderedBits(source.reals[row]), {}};
    case Storage::Text:
      return {false, 0, source.TextAt(row)};
  }
  return {};
}

}  // namespace orvane::data
