#pragma once

// What happens around the writing of a purchase request's head and parts.

#include "server/providers/write_rules.h"

namespace orvane::server {

WriteRules RequestHeadRules();
WriteRules RequestRowRules();
WriteRules RequestScheduleRules();
WriteRules RequestPlanRules();
WriteRules RequestApprovalRules();

}  // namespace orvane::server
