#pragma once

#include "packet/failure.h"

namespace orvane::data {

/// Ends the event that is being handled, silently: the user was already told why. Thrown by rules,
/// passes through datasets (which stay as they were, a row in edit stays in edit) and is caught
/// only by the gate of a form.
struct Abort {};

/// A call to the server failed as a whole (link, session, right). Caught by the gate of a form,
/// which tells the user; what he typed stays.
struct ServerError {
  Failure failure;
};

}  // namespace orvane::data
