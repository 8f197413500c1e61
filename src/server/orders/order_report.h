#pragma once

// The search report of supplier orders.

#include "server/providers/work.h"

namespace orvane::server {

/// "GetParams": what the report opens with.
Answer<VariantArray> GetOrderReportParams(Work& work, const VariantArray& ask);

/// "GetReport": one portion of the orders that pass the filter and that the asker may see, by
/// identifier.
Answer<VariantArray> GetOrderReport(Work& work, const VariantArray& ask);

}  // namespace orvane::server
