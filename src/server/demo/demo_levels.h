#pragma once

// The levels of approval of the demonstration company.

#include <cstdint>
#include <span>

#include "contract/workflow.h"

namespace orvane::server {

/// Heads of `approver` decide at `level` from `fromSum` (whole national currency) upwards.
struct DemoLevel {
  int level;
  std::int64_t fromSum;
  ApproverKind approver;
};

/// Highest sum that the levels cover, in whole national currency.
inline constexpr std::int64_t kMostApproved = 99'999'999;

/// Levels of a document of this kind and this kind of supply, ascending; none: approved at once.
std::span<const DemoLevel> DemoLevels(DocumentKind document, int kindSupply);

}  // namespace orvane::server
