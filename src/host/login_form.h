#pragma once

#include "packet/floors.h"

// Logging in: user and password; where the company is a demonstration, its users with their
// passwords to pick from.

namespace orvane::host {

class TVosBaseForm;
class VosApplication;

/// Runs the login dialog until the user is logged in; false when he gave up or the server cannot be
/// reached (he was told).
bool RunLogin(VosApplication& app);

/// Asks the same user's password again after his session ended; what is open stays open. False when
/// he gave up.
bool RunLoginAgain(TVosBaseForm& owner);

}  // namespace orvane::host
