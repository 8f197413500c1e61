#pragma once

// Search statements: one SELECT in the dialect that the clients' search templates are written in,
// read by our own reader over the catalogue, typed, and rendered for the engine from the tree.
// Nothing of the client's text reaches the engine; its literals become parameters.
//
//   Answer<RenderedSearch> search = RenderSearch(input);
//   if (!search) return search.GetFailure();
//   auto packets = database.Search(guard, {&search->statement, 1}, limits);
//   DataPacket portion = FinishPortion(*search, std::move((*packets)[1]));
//
// Portions are ordered by what was asked for and then by key, nulls first, and continue after the
// last row's order values, never by counting rows.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "packet/data_packet.h"
#include "packet/date.h"
#include "packet/failure.h"
#include "packet/variant.h"
#include "server/catalogue/catalogue.h"
#include "server/engine/database.h"

namespace orvane::server {

/// A portion never has more rows than this, also when no limit was asked for.
inline constexpr std::int32_t kMostSearchRows = 5000;

/// SQL of the engine that lets a table's rows through: {t} stands for the table's alias, ?1 to ?n
/// for `params`. An empty text lets every row through.
struct RowPredicate {
  std::string text;
  VariantArray params;
};

struct SearchInput {
  std::string_view sql;
  /// Values of the statement's parameters; names without colon, case does not matter.
  const NamedValues& params;
  /// 0: as many as a portion may have.
  std::int32_t rowLimit = 0;
  /// Of the previous portion; empty for the first.
  std::string_view continuation = {};
  Engine engine = Engine::Sqlite;
  /// Whether the asker may read a table; asked once per table of the statement. Empty: every table
  /// whose readers are everyone.
  std::function<bool(const CatalogueTable&)> mayRead = {};
  /// The asker's predicate for a table with RowsSeen::Visible; parts of a document are seen with
  /// their head, so only heads are asked for. Empty: such tables are refused.
  std::function<RowPredicate(const CatalogueTable&)> visibility = {};
  /// The company's day and zone.
  Date today = {};
  TimeZone zone = {};
  /// How long reading the statement may take.
  std::int32_t readMilliseconds = 2000;
};

/// One value by which rows are ordered, and where the answer carries it.
struct SearchOrder {
  ValueKind kind = ValueKind::Int32;
  std::size_t column = 0;  ///< position in the answer
};

struct RenderedSearch {
  Statement statement;
  std::size_t shownColumns = 0;  ///< columns behind these only serve the continuation
  std::int32_t rowLimit = 0;     ///< the statement asks for one more
  std::vector<SearchOrder> order;
  std::uint64_t fingerprint = 0;  ///< of text and parameters; a continuation belongs to one search
};

/// Reads and renders a search statement. Failures: BadRequest names line and column of what is not
/// understood, NoRight the table that the asker may not read.
Answer<RenderedSearch> RenderSearch(const SearchInput& input);

/// Keeps the first rows of a packet that has more.
void CutRows(DataPacket& packet, std::size_t rows);

/// Cuts what the statement read for the continuation, and sets the packet's continuation when more
/// rows follow. `packet` is the statement's answer.
DataPacket FinishPortion(const RenderedSearch& search, DataPacket packet);

}  // namespace orvane::server
