#pragma once

#include <string_view>

#include "packet/failure.h"
#include "server/dialect/syntax.h"

namespace orvane::dialect {

/// Nothing nests deeper, and no statement has more parts than this.
inline constexpr int kDeepestNesting = 32;
inline constexpr int kMostNodes = 3000;
inline constexpr std::size_t kMostTables = 12;

/// Reads DECLARE and SET lines and the one SELECT behind them. Whatever else is there is refused by
/// line and column.
Answer<SyntaxStatement> Parse(std::string_view sql);

}  // namespace orvane::dialect
