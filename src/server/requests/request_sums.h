#pragma once

#include "packet/failure.h"
#include "packet/variant.h"
#include "server/providers/work.h"

namespace orvane::server {

/// "GetSumCheck": whether the payment plan agrees with the request. Positions in
/// contract/purchase_request.h; the two totals come back equal when the plan is empty or the
/// difference is within the admissible one.
Answer<VariantArray> CheckRequestSums(Work& work, const VariantArray& ask);

/// Amounts that the check compares, both with VAT and in the request's currency.
struct SumCheck {
  Decimal compared;
  Decimal plan;
  bool planIsEmpty = true;

  /// As they are answered.
  SumCheck WithinTolerance(Decimal tolerance) const;
};

}  // namespace orvane::server
