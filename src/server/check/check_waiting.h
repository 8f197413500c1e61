#pragma once

#include <string>
#include <vector>

#include "packet/date.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/providers/work.h"

namespace orvane::server {

/// Documents that wait for a decision which nobody can make today. A sentence per kind of document,
/// cost centre and kind of approver, with the first such document and the register to be mended.
Answer<std::vector<std::string>> CheckWaiting(Database& database, Date today,
                                              DocumentOptions options);

}  // namespace orvane::server
