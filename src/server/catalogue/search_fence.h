#pragma once

// What a search statement may touch, on either engine: the columns of the dialect's catalogue with
// their folds, and what the predicates read that say which rows an asker sees. This is the fence
// behind the dialect's reader, kept by the engines themselves: SQLite by an authorizer, PostgreSQL
// by what the search role is granted.

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::server {

/// The PostgreSQL role under which search statements run.
inline constexpr std::string_view kSearchRole = "orvane_search";

/// Per table the columns that a search may read; names in small letters.
using ReadableColumns = std::map<std::string, std::set<std::string>, std::less<>>;
const ReadableColumns& ReadableBySearch();

/// Whether the fence lets a search read that column; an empty column asks for the table's rows.
/// Case does not matter.
bool MayBeSearched(std::string_view table, std::string_view column);

/// The indexes of trigrams that the catalogue names.
const std::vector<std::string_view>& TrigramIndexes();
/// Whether it is one of them, or one of the tables in which SQLite keeps it; only SQLite has them
/// as tables. Case does not matter.
bool IsTrigramIndex(std::string_view table);

/// Whether a search may call that SQL function of SQLite. Case does not matter.
bool MayBeCalledBySearch(std::string_view function);

}  // namespace orvane::server
