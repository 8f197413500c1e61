#pragma once

// Fills a packet column by column from an engine's result, checking that each value is of the
// column's kind: what an engine holds may be older than the program that reads it.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "packet/data_packet.h"
#include "server/engine/database.h"

namespace orvane::server {

/// An empty packet with the columns of a statement.
DataPacket PacketFor(std::span<const ResultColumn> columns);

/// What the fillers below answer: empty when the value was taken, otherwise why not (for logs).
using FillError = std::optional<std::string>;

/// A whole number for a column of integers (Bool to Code), days of a Date, microseconds of a Stamp,
/// or the mantissa of a decimal at the column's own scale.
FillError FillStored(PacketColumn& column, std::int64_t value);
FillError FillReal(PacketColumn& column, double value);
FillError FillText(PacketColumn& column, std::string_view text);

}  // namespace orvane::server
