#pragma once

// Search templates: the statement of a lookup or search, with named parameters and four macros that
// are replaced before sending: {$WN} the table hint, {$W} a WHERE clause of the user's conditions,
// {$WA} the same conditions joined with AND, {$O} the order on the field searched by.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "packet/value_kind.h"
#include "packet/variant.h"

namespace orvane::data {

/// When a search field is offered.
enum class Visibility : std::uint8_t { fvAlways, fvFirstLang, fvSecondLang, fvHidden };
/// Where the searched text must stand.
enum class SearchPos : std::uint8_t { spBegin, spAnywhere };

struct SearchField {
  std::string name = {};  ///< column of the template, with its table's alias where it needs one
  std::string displayName = {};  ///< title
  Visibility visibility = Visibility::fvAlways;
  bool allowPartSearch = false;
  bool defaultPartSearch = false;
  SearchPos defaultSearchPos = SearchPos::spBegin;
  bool defaultDescSearch = false;
};

enum class SearchMatch : std::uint8_t { Equals, Begins, Contains };

/// One condition of the user. Its value becomes a parameter, never a part of the text. Equals takes
/// Null and an array (any of its values) too. Of a whole number, Begins means its first digits and
/// Contains the number itself; an empty text to begin with or to contain is no condition.
struct SearchCondition {
  std::string field;
  SearchMatch match = SearchMatch::Equals;
  Variant value;
  std::int64_t highest = kHighest64;  ///< number that the column can hold
};

struct ComposedSearch {
  std::string sql;
  NamedValues params;  ///< the template's own and those of the conditions ("Cond1" …)
};

/// True when the template has a place for conditions.
bool TakesConditions(const std::vector<std::string>& lines);

/// Replaces the macros. `orderField` may be empty: no ORDER BY of its own then.
ComposedSearch ComposeSearch(const std::vector<std::string>& lines, const NamedValues& params,
                             const std::vector<SearchCondition>& conditions,
                             std::string_view orderField, bool descending = false);

/// True when the field is offered on a screen working in the given language.
bool IsOffered(const SearchField& field, bool multiLanguage, bool firstLanguage);

}  // namespace orvane::data
