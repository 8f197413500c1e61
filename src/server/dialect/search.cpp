#include "server/dialect/search.h"

#include <cstddef>
#include <utility>

#include "server/dialect/continuation.h"
#include "server/dialect/lexer.h"
#include "server/dialect/shape.h"

namespace orvane::server {
namespace {

void CutColumn(PacketColumn& column, std::size_t rows) {
  if (!column.integers.empty()) column.integers.resize(rows);
  if (!column.reals.empty()) column.reals.resize(rows);
  if (column.ends.size() > rows) {
    column.ends.resize(rows);
    column.heap.resize(rows == 0 ? 0 : column.ends.back());
  }
  const std::size_t words = (rows + 63) / 64;
  if (column.nulls.size() >= words && words > 0) {
    column.nulls.resize(words);
    if (rows % 64 != 0) column.nulls.back() &= (std::uint64_t{1} << rows % 64) - 1;
  }
}

}  // namespace

void CutRows(DataPacket& packet, std::size_t rows) {
  for (PacketColumn& column : packet.columns)
    CutColumn(column, rows);
  packet.rowCount = rows;
}

Answer<RenderedSearch> RenderSearch(const SearchInput& input) {
  const auto tokens = dialect::Tokenise(input.sql);
  if (!tokens) return tokens.GetFailure();
  auto shape = dialect::MakeShape(*tokens, input);
  if (!shape) return shape.GetFailure();
  return std::move(shape->search);
}

DataPacket FinishPortion(const RenderedSearch& search, DataPacket packet) {
  const auto limit = static_cast<std::size_t>(search.rowLimit);
  packet.continuation.clear();
  if (packet.rowCount > limit) {
    VariantArray last;
    for (const SearchOrder& order : search.order)
      last.push_back(packet.At(limit - 1, order.column));
    packet.continuation = dialect::WriteContinuation(search.fingerprint, last);
    CutRows(packet, limit);
  }
  if (packet.columns.size() > search.shownColumns) {
    packet.columns.erase(packet.columns.begin() + static_cast<std::ptrdiff_t>(search.shownColumns),
                         packet.columns.end());
  }
  return packet;
}

}  // namespace orvane::server
