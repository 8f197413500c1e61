#pragma once

#include "packet/failure.h"
#include "packet/variant.h"
#include "server/providers/work.h"

namespace orvane::server {

/// "GetRec": loads a request by key or by a move, with its parts, the asker's roles and the rows
/// behind the codes of its head, in one snapshot. Positions in contract/purchase_request.h.
Answer<VariantArray> GetPurchaseRequest(Work& work, const VariantArray& ask);

}  // namespace orvane::server
