#pragma once

#include <optional>
#include <vector>

#include "server/dialect/search.h"
#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// Writes a typed statement for an engine: one portion of at most `rowLimit` rows and one more,
/// behind the row whose order values are `after` (empty: from the beginning).
struct Rendering {
  Engine engine = Engine::Sqlite;
  Date today;
  std::int32_t rowLimit = 0;
  VariantArray after;
};

/// Where a parameter of the rendered statement comes from.
struct ParamSource {
  enum class From : unsigned char {
    Fixed,      ///< the statement's own
    Open,       ///< `open` of a given value
    Today,      ///< the company's day
    After,      ///< number `at` of the order's values
    Predicate,  ///< parameter `at` of the predicate of table number `table`
  };
  From from = From::Fixed;
  OpenValue open = {};
  int table = 0;
  std::size_t at = 0;
};

struct Rendered {
  RenderedSearch search;
  std::vector<ParamSource> sources;  ///< one per parameter
};

/// Empty when it would be too long.
std::optional<Rendered> Render(const TypedSelect& select, const std::vector<TypedOrder>& order,
                               const Rendering& rendering);

}  // namespace orvane::server::dialect
