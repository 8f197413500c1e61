#pragma once

// What can be recomputed from a database is recomputed and compared; and whether the engine keeps
// what it acknowledges.

#include <string>
#include <vector>

#include "packet/date.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/providers/work.h"

namespace orvane::server {

/// One Bulgarian sentence per thing that is not as it should be now, under these options.
Answer<std::vector<std::string>> CheckDatabase(Database& database, Stamp now,
                                               DocumentOptions options = {});

/// Refused when the engine's settings let something be lost that was acknowledged.
Answer<Done> CheckDurability(Database& database);

}  // namespace orvane::server
