#pragma once

#include <vector>

#include "server/dialect/typed.h"

namespace orvane::dialect {

/// The fold of a text term: its stored fold, or the same shape over stored folds. A null pointer
/// when some text in it has no stored fold. A name chosen between material and service by the kind
/// of an entry of the base supply list is the entry's own stored effective name.
TermPtr FoldOf(const TermPtr& text, const std::vector<TypedTable>& tables);

/// What to order a term by: numbers and days by themselves, texts by their fold where there is one;
/// a cut text by the whole, because that is what the index holds.
TermPtr OrderOf(const TermPtr& term, const std::vector<TypedTable>& tables);

}  // namespace orvane::dialect
