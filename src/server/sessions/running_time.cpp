#include "server/sessions/running_time.h"

#include <algorithm>
#include <chrono>

#include "server/sessions/statements.h"

namespace orvane::server {

std::int64_t MachineSteadyMicros() {
  using std::chrono::duration_cast;
  using std::chrono::microseconds;
  return duration_cast<microseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::int64_t RunningTime::Now() {
  const std::lock_guard lock(mutex_);
  return Present();
}

Statement RunningTime::Read() {
  return Select("select Elapsed from RunningTime", {}, {{"Elapsed", ValueKind::Code, 0}});
}

void RunningTime::See(const DataPacket& packet) {
  if (packet.rowCount != 1) return;
  const std::lock_guard lock(mutex_);
  elapsed_ = std::max(Present(), packet.At(0, "Elapsed").AsInt().value_or(0));
  readAt_ = steady_();
}

Statement RunningTime::Note() {
  return Command("update RunningTime set Elapsed = ?1 where Elapsed < ?1", {Now()});
}

}  // namespace orvane::server
