#pragma once

#include "packet/failure.h"
#include "packet/variant.h"
#include "server/providers/work.h"

namespace orvane::server {

/// "GetParams": what the screen of orders asks once. Positions in contract/supplier_order.h.
Answer<VariantArray> GetOrderParams(Work& work, const VariantArray& ask);

/// "GetRecord": loads an order by key or by a move, with its parts, the asker's part in its
/// approval and the rows behind the codes of its head, in one snapshot. Positions in
/// contract/supplier_order.h.
Answer<VariantArray> GetOrder(Work& work, const VariantArray& ask);

}  // namespace orvane::server
