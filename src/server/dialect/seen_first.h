#pragma once

// Rows are seen before the asker's conditions are tried on them. The planners of both engines try
// conditions in an order of their own, so a condition that may fail, or that takes its time, would
// tell of rows that the asker may not see:
//
//   WHERE CostCenter = 77 AND Supplier + 9000000000 > 0      an error tells that 77 has a document
//   WHERE CostCenter = 77 AND Supplier IN (SELECT … slow …)  time does
//
// The renderer lets such conditions speak only where the row is seen. Those that neither fail nor
// take long stand beside the predicate, because the indexes serve them.

#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// Whether a condition, a value, may be worked out for rows that the asker does not see: it cannot
/// fail, and how long it takes tells nothing.
bool TellsNothing(const Condition& condition);
bool TellsNothing(const Term& term);

}  // namespace orvane::server::dialect
