#pragma once

// What the screen of purchase requests asks of the server, through any door. Failures end the
// program.

#include <cstdint>
#include <string>

#include "company.h"
#include "contract/workflow.h"
#include "packet/application_server.h"

namespace orvane::bench {

/// A user's door to the server.
struct Visitor {
  IApplicationServer& door;
  Caller caller;
  std::string login;
};

VariantArray LoadRequest(const Visitor& visitor, Nav nav, std::int64_t id);

/// A request that may be changed; `place` tells them apart. 0 when there are not so many.
std::int64_t EnteredRequest(const BenchCompany& company, int place);

/// Loads the request and posts its first row's other quantity under a client key of its own.
void PostRow(const Visitor& visitor, std::int64_t id, const std::string& clientKey);

/// A level of a request that waits for somebody's decision.
struct Turn {
  std::int64_t request = 0;
  int version = 1;
  int level = 1;
  int sending = 1;
};
/// Whether the decision was taken: from one status of the level to another.
bool Decide(const Visitor& visitor, const Turn& turn, int from, int to,
            const std::string& clientKey);

}  // namespace orvane::bench
