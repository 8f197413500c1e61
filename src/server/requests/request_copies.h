#pragma once

#include "packet/failure.h"
#include "packet/variant.h"
#include "server/providers/work.h"

namespace orvane::server {

/// "NewRec": makes a new version of a request, or a copy. Positions in contract/purchase_request.h.
///
/// A new version takes head, rows, schedule and plan of the current one, which becomes old in the
/// same transaction. A copy is a request of the asker, dated today with a fresh rate; it names no
/// orders, and nothing of it is delivered, settled or decided.
Answer<VariantArray> MakeRequestFrom(Work& work, const VariantArray& ask);

}  // namespace orvane::server
