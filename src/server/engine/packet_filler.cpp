#include "server/engine/packet_filler.h"

#include <cmath>

namespace orvane::server {
namespace {

std::string Unfit(const PacketColumn& column, std::string_view value) {
  return "column " + column.name + " of kind " + std::string(RowOf(column.kind).name) +
         " cannot take " + std::string(value);
}

}  // namespace

DataPacket PacketFor(std::span<const ResultColumn> columns) {
  DataPacket packet;
  packet.columns.reserve(columns.size());
  for (const ResultColumn& column : columns)
    packet.AddColumn(column.name, column.kind, column.size);
  return packet;
}

FillError FillStored(PacketColumn& column, std::int64_t value) {
  const ValueKindRow& kind = RowOf(column.kind);
  if (kind.storage != Storage::Integer || value < kind.lowest || value > kind.highest) {
    return Unfit(column, std::to_string(value));
  }
  column.integers.push_back(value);
  return std::nullopt;
}

FillError FillReal(PacketColumn& column, double value) {
  if (RowOf(column.kind).storage != Storage::Real || !std::isfinite(value)) {
    return Unfit(column, std::to_string(value));
  }
  column.reals.push_back(value + 0.0);  // there is no minus zero
  return std::nullopt;
}

FillError FillText(PacketColumn& column, std::string_view text) {
  if (RowOf(column.kind).storage != Storage::Text) return Unfit(column, "a text");
  column.heap.append(text);
  column.ends.push_back(static_cast<std::uint32_t>(column.heap.size()));
  return std::nullopt;
}

}  // namespace orvane::server
