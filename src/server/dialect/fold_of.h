#pragma once

#include <vector>

#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// The fold of a text term: its stored fold, or the same shape over stored folds. A null pointer
/// for what is no text. The name that an entry of the base supply list goes by, chosen by the
/// setting between its own and that of its material or service, is kept with the entry.
TermPtr FoldOf(const TermPtr& text, const std::vector<TypedTable>& tables);

/// What to order a term by: numbers and days by themselves, texts by their fold; a cut text by the
/// whole, because that is what the index holds, but not among `distinct` rows, of which each may
/// stand for several wholes.
TermPtr OrderOf(const TermPtr& term, const std::vector<TypedTable>& tables, bool distinct);

}  // namespace orvane::server::dialect
