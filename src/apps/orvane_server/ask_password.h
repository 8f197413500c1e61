#pragma once

#include <string>

#include "packet/failure.h"

namespace orvane::apps {

/// Reads a password: twice and unseen from a terminal, one line from anything else.
Answer<std::string> AskPassword(const std::string& login);

}  // namespace orvane::apps
