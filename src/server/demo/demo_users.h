#pragma once

#include <vector>

#include "packet/application_server.h"

namespace orvane::server {

/// Users of the demonstration company with their passwords, as its login screen shows them.
std::vector<DemonstrationUser> DemonstrationUsers();

}  // namespace orvane::server
