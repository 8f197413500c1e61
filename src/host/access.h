#pragma once

#include <cstdint>
#include <initializer_list>

#include "packet/floors.h"

namespace orvane::host {

/// The four rights that a module point gives to the screens opened from it.
enum PointAccessRight : std::uint8_t { paOpen = 1, paEdit = 2, paInsert = 4, paDelete = 8 };

/// A set of rights.
class TPointAccess {
 public:
  constexpr TPointAccess() = default;
  constexpr TPointAccess(PointAccessRight right) : bits_(right) {}
  constexpr TPointAccess(std::initializer_list<PointAccessRight> rights) {
    for (PointAccessRight right : rights)
      bits_ = static_cast<std::uint8_t>(bits_ | right);
  }
  static constexpr TPointAccess FromBits(int bits) {
    TPointAccess access;
    access.bits_ = static_cast<std::uint8_t>(bits & 15);
    return access;
  }

  constexpr bool Has(TPointAccess needed) const { return (bits_ & needed.bits_) == needed.bits_; }
  constexpr TPointAccess With(PointAccessRight right) const { return FromBits(bits_ | right); }
  constexpr int Bits() const { return bits_; }
  constexpr bool operator==(const TPointAccess&) const = default;

 private:
  std::uint8_t bits_ = 0;
};

}  // namespace orvane::host
