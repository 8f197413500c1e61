#include "server/dialect/search.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "server/dialect/binder.h"
#include "server/dialect/continuation.h"
#include "server/dialect/listed_names.h"
#include "server/dialect/parser.h"
#include "server/dialect/portions.h"
#include "server/dialect/renderer.h"

namespace orvane {
namespace {

/// FNV-1a of everything that decides which rows the search has, and in which order.
std::uint64_t Fingerprint(const SearchInput& input) {
  std::uint64_t hash = 14695981039346656037ull;
  const auto add = [&](std::string_view text) {
    for (const char c : text) {
      hash ^= static_cast<unsigned char>(c);
      hash *= 1099511628211ull;
    }
    hash *= 1099511628211ull;
  };
  add(input.sql);
  for (const NamedValues* values : {&input.params, &input.settings}) {
    for (const NamedValue& value : *values) {
      add(value.name);
      add(value.value.ToText());
    }
  }
  return hash;
}

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
  Answer<dialect::SyntaxStatement> statement = dialect::Parse(input.sql);
  if (!statement) return statement.GetFailure();
  Answer<dialect::TypedSelect> select = dialect::Bind(*statement, input);
  if (!select) return select.GetFailure();
  dialect::DropUnusedSettings(*select);
  dialect::ReplaceDistinct(*select);
  dialect::UseListedNames(*select);
  const std::vector<dialect::TypedOrder> order = dialect::PortionOrder(*select);

  dialect::Rendering rendering;
  rendering.engine = input.engine;
  rendering.today = input.today;
  rendering.rowLimit =
      input.rowLimit <= 0 ? kMostSearchRows : std::min(input.rowLimit, kMostSearchRows);
  const std::uint64_t fingerprint = Fingerprint(input);
  if (!input.continuation.empty()) {
    std::vector<ValueKind> kinds;
    for (const dialect::TypedOrder& one : order)
      kinds.push_back(one.value->type);
    std::optional<VariantArray> after =
        dialect::ReadContinuation(input.continuation, fingerprint, kinds);
    if (!after) {
      return Failure{FailureKind::BadRequest,
                     "Продължението не е от това търсене. Започнете търсенето отначало."};
    }
    rendering.after = *std::move(after);
  }
  RenderedSearch search = dialect::Render(*select, order, rendering);
  search.fingerprint = fingerprint;
  return search;
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

}  // namespace orvane
