#pragma once

#include <string_view>

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

/// What the user may know of an engine's failure; the engine's own text goes to the log, with
/// `doing` (English) before it.
Failure ToFailure(const EngineError& error, std::string_view doing);

}  // namespace orvane::server
