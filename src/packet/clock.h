#pragma once

#include "packet/date.h"

namespace orvane {

/// The one source of "now". Rules take a Date or a Stamp as a parameter; only those who start work
/// (sessions, forms, walks) ask a clock.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Stamp Now() const = 0;
};

/// The machine's clock.
class SystemClock final : public Clock {
 public:
  Stamp Now() const override;
};

/// A clock that stands where it was put; each reading advances it by a microsecond, so that stamps
/// of one walk stay in order.
class SetClock final : public Clock {
 public:
  explicit SetClock(Stamp start) : now_(start) {}
  void Set(Stamp moment) { now_ = moment; }
  Stamp Now() const override { return {now_.micros++}; }

 private:
  mutable Stamp now_;
};

}  // namespace orvane
