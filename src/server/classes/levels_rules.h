#pragma once

#include "server/providers/write_rules.h"

namespace orvane::server {

/// What the register of approval levels accepts: ranges that are no ranges and sums of orders are
/// refused; sums left without a level are written and told.
WriteRules LevelsApprovalRules();

}  // namespace orvane::server
