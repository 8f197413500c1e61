#pragma once

#include "server/providers/write_rules.h"

namespace orvane::server {

/// What happens around the writing of a supplies contract: a new one gets its identifier, codes
/// must be known, kinds bought by supply list name one, and a contract that documents use stays.
WriteRules ContractRules();

}  // namespace orvane::server
