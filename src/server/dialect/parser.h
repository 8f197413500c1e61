#pragma once

#include <vector>

#include "packet/failure.h"
#include "server/dialect/lexer.h"
#include "server/dialect/syntax.h"

namespace orvane::server::dialect {

/// Nothing nests deeper, and no statement has more parts than this.
inline constexpr int kDeepestNesting = 32;
inline constexpr int kMostNodes = 3000;
inline constexpr std::size_t kMostTables = 12;
/// Columns read, and values ordered by; the engines have limits of their own further up.
inline constexpr std::size_t kMostColumns = 256;

/// Reads DECLARE and SET lines and the one SELECT behind them. Whatever else is there is refused by
/// line and column.
Answer<SyntaxStatement> Parse(std::vector<Token> tokens);

}  // namespace orvane::server::dialect
