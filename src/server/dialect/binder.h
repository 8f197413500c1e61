#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "packet/failure.h"
#include "server/dialect/search.h"
#include "server/dialect/syntax.h"
#include "server/dialect/typed.h"

namespace orvane::server::dialect {

struct BoundSearch {
  TypedSelect select;
  /// The named parameters it uses, in the order of their first use: given values number
  /// `statement.literals` and on.
  std::vector<std::string> parameters;
  /// Per given value, whether another one may stand in its place (OpenValue).
  std::vector<bool> open;
  /// The tables it reads, in the order in which the asker's rights are looked at, each with its
  /// number.
  std::vector<std::pair<int, const CatalogueTable*>> tables;
};

/// Whether the asker may read the table at all.
bool MayRead(const SearchInput& input, const CatalogueTable& table);

/// Most bytes a statement may be written in.
inline constexpr std::size_t kMostWritten = std::size_t{256} * 1024;

/// Looks up the names of a statement, types its parts, and works out what does not depend on rows.
/// Failures: BadRequest by line and column, also of what grows too long or is not done until then;
/// NoRight for a table that the asker may not read.
Answer<BoundSearch> Bind(const SyntaxStatement& statement, const SearchInput& input,
                         std::chrono::steady_clock::time_point until);

}  // namespace orvane::server::dialect
