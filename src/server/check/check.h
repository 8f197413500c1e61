#pragma once

// What can be recomputed from a database is recomputed and compared; and whether the engine keeps
// what it acknowledges.

#include <string>
#include <vector>

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane {

/// One Bulgarian sentence per thing that is not as it should be.
Answer<std::vector<std::string>> CheckDatabase(Database& database);

/// Refused when the engine's settings let something be lost that was acknowledged.
Answer<Done> CheckDurability(Database& database);

}  // namespace orvane
