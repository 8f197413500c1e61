#pragma once

// Exact decimal numbers for money, rates and prices. A value is an integer mantissa times a power
// of ten; nothing is ever rounded silently: the rounding stands at the call.
//
//   Decimal amount = *Decimal::Parse("3878,28");
//   auto national = amount.Times(rate).RoundedHalfUp(2);   // empty when it does not fit

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class Decimal;

/// An exact product or quotient that still has to be brought to a number of decimals.
class WideDecimal {
 public:
  /// Rounds half away from zero to `decimals` places; empty when the result does not fit a Decimal.
  std::optional<Decimal> RoundedHalfUp(int decimals) const;
  /// Divides further, still exact; `other` must not be zero. A result that outgrows the exact range
  /// rounds to empty.
  WideDecimal DividedBy(Decimal other) const;

 private:
  friend class Decimal;
  __extension__ typedef __int128 Wide;
  WideDecimal(Wide numerator, Wide denominator, int scale)
      : numerator_(numerator), denominator_(denominator), scale_(scale) {}

  Wide numerator_;
  Wide denominator_;  // positive; 0 when the exact range was outgrown
  int scale_;
};

/// An exact decimal: mantissa × 10^-scale, scale 0 to 9. Equal values of different scales compare
/// equal. The range is that of a 64-bit mantissa.
class Decimal {
 public:
  static constexpr int kMaxScale = 9;

  constexpr Decimal() = default;
  /// `mantissa` units of 10^-`scale`: Decimal(12345, 2) is 123.45.
  constexpr Decimal(std::int64_t mantissa, int scale)
      : mantissa_(mantissa), scale_(static_cast<std::int8_t>(scale)) {}

  /// Reads an optional sign, digits, and a fraction after comma or point; blanks (also thin and
  /// no-break ones) may part thousands. Empty for anything else, for more than nine decimals that
  /// are not zero, and for overflow.
  static std::optional<Decimal> Parse(std::string_view text);
  /// `value`, read as the shortest decimal that stands for it, at `scale` places, half away from
  /// zero; empty when out of range or not a number. For quantities and rates kept as doubles: what
  /// was typed as 2,675 becomes 2.68 although the double lies below it.
  static std::optional<Decimal> FromDouble(double value, int scale);

  std::int64_t Mantissa() const { return mantissa_; }
  int Scale() const { return scale_; }
  bool IsZero() const { return mantissa_ == 0; }
  bool IsNegative() const { return mantissa_ < 0; }

  /// The same value at `scale` places when that loses nothing; empty otherwise.
  std::optional<Decimal> AtScale(int scale) const;
  std::optional<Decimal> Plus(Decimal other) const;
  std::optional<Decimal> Minus(Decimal other) const;
  WideDecimal Times(Decimal other) const;
  /// `other` must not be zero.
  WideDecimal DividedBy(Decimal other) const;
  double ToDouble() const;

  /// Digits with exactly Scale() decimals and `point` between: "-1234.50".
  std::string ToText(char point = '.') const;

  std::strong_ordering operator<=>(const Decimal& other) const;
  bool operator==(const Decimal& other) const { return (*this <=> other) == 0; }

 private:
  std::int64_t mantissa_ = 0;
  std::int8_t scale_ = 0;
};

}  // namespace orvane
