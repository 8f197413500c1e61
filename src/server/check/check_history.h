#pragma once

#include <string>
#include <vector>

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Replays history and compares the rows with what it tells. What was loaded in bulk (the
/// demonstration, rows of before a migration) has no history of its own: such a row is taken as it
/// stands, and answers for the columns that were changed since. A sentence per difference, and no
/// more than a handful of them per table.
Answer<std::vector<std::string>> CheckHistory(Database& database);

}  // namespace orvane::server
