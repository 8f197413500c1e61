#pragma once

#include <functional>

#include "server/dialect/search.h"

namespace orvane::server::dialect {

/// The predicate of a table with RowsSeen::Visible: its own, or for a part of a document that its
/// head is seen.
RowPredicate PredicateOf(const CatalogueTable& table,
                         const std::function<RowPredicate(const CatalogueTable&)>& visibility);

}  // namespace orvane::server::dialect
