#pragma once

#include <string>
#include <vector>

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Names that the indexes of trigrams do not find by their parts, as sentences. SQLite compares an
/// index with all rows, under the writers' turn; on PostgreSQL, whose indexes only a fault of the
/// machine harms, five hundred rows of each are looked up.
Answer<std::vector<std::string>> CheckParts(Database& database);

}  // namespace orvane::server
