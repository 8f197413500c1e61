#pragma once

// How values travel to and from PostgreSQL: binary, except decimals on their way there.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "packet/data_packet.h"
#include "server/engine/database.h"
#include "server/engine/packet_filler.h"

namespace orvane::server {

using PostgresType = std::uint32_t;

/// A parameter as libpq takes it. A Null has no type of its own: the server finds it from the text.
struct PostgresValue {
  PostgresType type = 0;
  bool null = true;
  bool binary = true;
  std::string bytes;
};

/// Fails for packets, arrays and numbers that are not finite.
EngineAnswer<std::vector<PostgresValue>> EncodeParams(const VariantArray& params);

/// Reads a value that is not null, in binary form, into the column.
FillError FillFromPostgres(PacketColumn& column, PostgresType type, std::string_view bytes);

/// A text with ?1, ?2 … as PostgreSQL wants it, with $1, $2 …
struct NumberedText {
  std::string text;
  std::size_t highest = 0;  ///< number of the highest parameter
};
/// Texts in quotes and comments are left alone.
NumberedText WithNumberedParams(std::string_view text);

}  // namespace orvane::server
