#pragma once

#include <vector>

#include "server/dialect/search.h"
#include "server/dialect/typed.h"

namespace orvane::dialect {

/// Writes a typed statement for an engine: one portion of at most `rowLimit` rows and one more,
/// behind the row whose order values are `after` (empty: from the beginning).
struct Rendering {
  Engine engine = Engine::Sqlite;
  Date today;
  std::int32_t rowLimit = 0;
  VariantArray after;
};
RenderedSearch Render(const TypedSelect& select, const std::vector<TypedOrder>& order,
                      const Rendering& rendering);

}  // namespace orvane::dialect
