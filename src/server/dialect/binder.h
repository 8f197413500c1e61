#pragma once

#include "packet/failure.h"
#include "server/dialect/search.h"
#include "server/dialect/syntax.h"
#include "server/dialect/typed.h"

namespace orvane::dialect {

/// Looks up the names of a statement, types its parts, and works out what does not depend on rows.
/// Failures: BadRequest by line and column, NoRight for a table that the asker may not read.
Answer<TypedSelect> Bind(const SyntaxStatement& statement, const SearchInput& input);

}  // namespace orvane::dialect
