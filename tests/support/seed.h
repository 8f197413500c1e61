#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

#include "support/floors.h"

namespace orvane::support {

/// What the random tests begin with: ORVANE_TEST_SEED of the environment, or always the same. It is
/// printed, so that a failure can be repeated.
inline unsigned Seed() {
  const char* given = std::getenv("ORVANE_TEST_SEED");
  const unsigned seed = given ? static_cast<unsigned>(std::stoul(given)) : 20260305U;
  std::cout << "seed " << seed << '\n';
  return seed;
}

}  // namespace orvane::support
