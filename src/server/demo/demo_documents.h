#pragma once

// Writes the documents of the demonstration company: contracts, orders, requests and the deliveries
// of those that are being fulfilled.

#include <cstdint>
#include <functional>

#include "server/demo/demo_world.h"
#include "server/engine/database.h"

namespace orvane::server {

struct DemoDocuments {
  std::int64_t requests = 0;
  /// Called now and then with the number of requests made so far; may be empty.
  std::function<void(std::int64_t)> progress = nullptr;
};

/// In transactions of some twenty thousand requests each. The registers are there.
EngineAnswer<Done> WriteDocuments(Database& database, const DemoWorld& world,
                                  const DemoDocuments& documents);

}  // namespace orvane::server
