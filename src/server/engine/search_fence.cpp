#include "server/engine/search_fence.h"

#include <algorithm>

#include "packet/variant.h"

namespace orvane {
namespace {

constexpr std::string_view kFunctions[] = {
    "abs",   "avg",    "coalesce",  "count", "iif",   "ifnull", "instr",       "length",
    "like",  "lower",  "ltrim",     "max",   "min",   "nullif", "orvane_fold", "round",
    "rtrim", "substr", "substring", "sum",   "total", "trim",   "upper",
};

}  // namespace

bool MayBeSearched(std::string_view table, std::string_view column) {
  if (table.starts_with("sqlite_") || table.starts_with("pragma_")) return false;
  return std::ranges::none_of(kHiddenFromSearch, [&](const HiddenRow& row) {
    return SameName(row.table, table) && (row.column.empty() || SameName(row.column, column));
  });
}

bool MayBeCalledBySearch(std::string_view function) {
  return std::ranges::any_of(kFunctions,
                             [&](std::string_view name) { return SameName(name, function); });
}

}  // namespace orvane
