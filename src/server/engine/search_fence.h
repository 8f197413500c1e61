#pragma once

// What a search statement may not touch, on either engine. The dialect's catalogue lists what may
// be read; this is the fence behind it, kept by the engines themselves: SQLite by an authorizer,
// PostgreSQL by what the search role is granted.

#include <span>
#include <string_view>

namespace orvane {

/// The PostgreSQL role under which search statements run.
inline constexpr std::string_view kSearchRole = "orvane_search";

struct HiddenRow {
  std::string_view table;
  std::string_view column;  ///< empty: the whole table
};

/// Secrets and the server's own books.
inline constexpr HiddenRow kHiddenFromSearch[] = {
    {"WSysUsers", "PasswordHash"}, {"UserRights", ""}, {"Session", ""},
    {"LoginAttempt", ""},          {"ClientKey", ""},  {"History", ""},
    {"SchemaMigration", ""},
};

/// Whether the fence lets a search read that column; an empty column asks for the table's rows.
/// Tables of the engines themselves are never readable. Case does not matter.
bool MayBeSearched(std::string_view table, std::string_view column);

/// Whether a search may call that SQL function of SQLite. Case does not matter.
bool MayBeCalledBySearch(std::string_view function);

}  // namespace orvane
