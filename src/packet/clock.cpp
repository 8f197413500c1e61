#include "packet/clock.h"

#include <chrono>

namespace orvane {

Stamp SystemClock::Now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return {std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count()};
}

}  // namespace orvane
