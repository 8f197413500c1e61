#pragma once

// Numbers that look like chance and are the same on every machine and with every compiler: the
// standard's distributions are not.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvane::server {

/// A stream of numbers of its own for every (seed, subject, number), so that what one part of the
/// company draws does not move what another part draws.
class DemoRandom {
 public:
  DemoRandom(std::uint32_t seed, std::string_view subject, std::uint64_t number = 0) {
    state_ = seed;
    for (const char c : subject)
      state_ = state_ * 1099511628211u + static_cast<unsigned char>(c);
    state_ = Mixed(state_) + number * 0xD1342543DE82EF95u;
  }

  /// 0 to count - 1.
  int Below(int count) {
    assert(count > 0);
    return static_cast<int>(Next() % static_cast<std::uint64_t>(count));
  }
  /// Both ends included.
  int Between(int low, int high) { return low + Below(high - low + 1); }
  bool Percent(int share) { return Below(100) < share; }
  template <class T>
  const T& Of(std::span<const T> choices) {
    return choices[static_cast<std::size_t>(Below(static_cast<int>(choices.size())))];
  }
  template <class T, std::size_t N>
  const T& Of(const T (&choices)[N]) {
    return Of(std::span<const T>(choices));
  }

 private:
  static std::uint64_t Mixed(std::uint64_t value) {
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9u;
    value = (value ^ value >> 27) * 0x94D049BB133111EBu;
    return value ^ value >> 31;
  }
  std::uint64_t Next() { return Mixed(state_ += 0x9E3779B97F4A7C15u); }

  std::uint64_t state_ = 0;
};

}  // namespace orvane::server
