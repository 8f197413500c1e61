#pragma once

#include <string>
#include <vector>

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Recomputes what documents keep of their parts: statuses from decisions and requests, sums from
/// rows. A sentence per kind of document and kind of difference, with the first such document.
Answer<std::vector<std::string>> CheckDocuments(Database& database);

}  // namespace orvane::server
