#pragma once

// A list of supply entries keeps the folds of their names beside its rows. Where a search joins a
// list to its entries, names are compared and ordered by the list's own fold: one index of the list
// then gives a portion, however many entries the list or the whole supply list has. Without it a
// planner chooses between walking all names and sorting the whole list, and it cannot know which.

#include "server/dialect/equalities.h"
#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// The kept fold of the joined list that leaves fewest rows, or `term` itself when it is no entry's
/// name or no list of the rows keeps it.
TermPtr ListedName(const TermPtr& term, const TypedSelect& select, const Equalities& equalities);

/// The same in the conditions that rows meet.
void UseListedNames(TypedSelect& select);

}  // namespace orvane::server::dialect
