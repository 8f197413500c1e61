#pragma once

// Time as ages are counted: of locked logins, idle sessions and client keys. It is the time during
// which a server over the database ran, kept in one row of it. Each server goes on from what it
// read there by its own steady clock, and writes it back; the furthest counts. So no jump of a wall
// clock, back or forward, on any of the servers, makes anything older or younger. While no server
// runs nothing ages.

#include <cstdint>
#include <functional>
#include <mutex>

#include "server/engine/database.h"

namespace orvane::server {

using SteadyMicros = std::function<std::int64_t()>;

/// The machine's steady clock, in microseconds since some moment.
std::int64_t MachineSteadyMicros();

/// Thread-safe.
class RunningTime {
 public:
  explicit RunningTime(SteadyMicros steady) : steady_(std::move(steady)) {}

  /// The present moment, in microseconds; never earlier than what was seen.
  std::int64_t Now();
  /// Reads the database's row; its answer goes to See.
  static Statement Read();
  void See(const DataPacket& packet);
  /// Moves the database's row on, never back.
  Statement Note();

 private:
  std::int64_t Present() const { return elapsed_ + (steady_() - readAt_); }

  const SteadyMicros steady_;
  std::mutex mutex_;
  std::int64_t elapsed_ = 0;
  std::int64_t readAt_ = steady_();
};

}  // namespace orvane::server
