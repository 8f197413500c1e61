#pragma once

// What happens around the writing of a supplier order's head and parts.

#include "server/providers/write_rules.h"

namespace orvane::server {

WriteRules OrderHeadRules();
WriteRules OrderRowRules();
WriteRules OrderApprovalRules();

}  // namespace orvane::server
