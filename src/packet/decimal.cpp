#include "packet/decimal.h"

#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>

namespace orvane {
namespace {

__extension__ typedef __int128 Wide;

constexpr Wide kLowest = std::numeric_limits<std::int64_t>::min();
constexpr Wide kHighest = std::numeric_limits<std::int64_t>::max();
constexpr int kMaxDigits = 19;  // of the integer part; more never fit 64 bits

constexpr bool Fits(Wide value) {
  return value >= kLowest && value <= kHighest;
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// 10^exponent for exponents 0 to 18.
constexpr std::int64_t PowerOfTen(int exponent) {
  std::int64_t power = 1;
  for (int i = 0; i < exponent; ++i)
    power *= 10;
  return power;
}

constexpr auto kPowers = [] {
  std::array<std::int64_t, 19> powers{};
  for (int i = 0; i < 19; ++i)
    powers[static_cast<std::size_t>(i)] = PowerOfTen(i);
  return powers;
}();

Wide Power(int exponent) {
  assert(exponent >= 0 && exponent <= 18);
  return kPowers[static_cast<std::size_t>(exponent)];
}

/// Gives up trailing zeros of the fraction only when the mantissa would not fit with them.
std::optional<Decimal> Narrow(Wide mantissa, int scale) {
  while (!Fits(mantissa) && scale > 0 && mantissa % 10 == 0) {
    mantissa /= 10;
    --scale;
  }
  if (!Fits(mantissa)) return std::nullopt;
  return Decimal(static_cast<std::int64_t>(mantissa), scale);
}

/// Half away from zero; `divisor` is positive.
Wide DivideHalfUp(Wide value, Wide divisor) {
  const Wide size = value < 0 ? -value : value;
  const Wide rest = size % divisor;
  const Wide quotient = size / divisor + (rest >= divisor - rest ? 1 : 0);
  return value < 0 ? -quotient : quotient;
}

/// Length of the blank at the beginning: a space, a no-break space or a thin one; 0 when none.
std::size_t BlankLength(std::string_view text) {
  for (const std::string_view blank : {" ", "\u00A0", "\u2009", "\u202F"}) {
    if (text.starts_with(blank)) return blank.size();
  }
  return 0;
}

std::size_t DigitRun(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && IsDigit(text[length]))
    ++length;
  return length;
}

/// Takes the integer part off `text`: plain digits, or groups of three parted by blanks behind a
/// first group of at most three. Empty when there is none or a group is of another length.
std::optional<std::string> TakeWhole(std::string_view& text) {
  std::size_t run = DigitRun(text);
  if (run == 0) return std::nullopt;
  std::string digits(text.substr(0, run));
  text.remove_prefix(run);
  bool mayGroup = run <= 3;
  while (const std::size_t blank = BlankLength(text)) {
    if (!mayGroup || DigitRun(text.substr(blank)) != 3) return std::nullopt;
    digits += text.substr(blank, 3);
    text.remove_prefix(blank + 3);
  }
  digits.erase(0, digits.find_first_not_of('0'));
  return digits;
}

}  // namespace

std::optional<Decimal> WideDecimal::RoundedHalfUp(int decimals) const {
  assert(decimals >= 0 && decimals <= Decimal::kMaxScale);
  if (denominator_ == 0) return std::nullopt;  // outgrew the exact range before
  Wide numerator = numerator_;
  Wide denominator = denominator_;
  const int shift = decimals - scale_;
  if (shift < 0) {
    if (__builtin_mul_overflow(denominator, Power(-shift), &denominator)) return std::nullopt;
  } else if (__builtin_mul_overflow(numerator, Power(shift), &numerator)) {
    return std::nullopt;
  }
  const Wide rounded = DivideHalfUp(numerator, denominator);
  if (!Fits(rounded)) return std::nullopt;
  return Decimal(static_cast<std::int64_t>(rounded), decimals);
}

WideDecimal WideDecimal::DividedBy(Decimal other) const {
  assert(!other.IsZero());
  const Wide sign = other.IsNegative() ? -1 : 1;
  Wide denominator = 0;
  if (__builtin_mul_overflow(denominator_, sign * other.Mantissa(), &denominator)) return {0, 0, 0};
  return {sign * numerator_, denominator, scale_ - other.Scale()};
}

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  while (const std::size_t blank = BlankLength(text))
    text.remove_prefix(blank);
  while (text.ends_with(' '))
    text.remove_suffix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);

  const std::optional<std::string> whole = TakeWhole(text);
  if (!whole || whole->size() > kMaxDigits) return std::nullopt;
  std::string_view fraction;
  if (!text.empty()) {
    fraction = text.substr(1);
    if ((text[0] != ',' && text[0] != '.') || fraction.empty()) return std::nullopt;
    if (DigitRun(fraction) != fraction.size()) return std::nullopt;
  }
  if (fraction.size() > kMaxScale) {
    if (fraction.find_first_not_of('0', kMaxScale) != std::string_view::npos) return std::nullopt;
    fraction = fraction.substr(0, kMaxScale);
  }

  Wide mantissa = 0;
  for (const char c : *whole)
    mantissa = mantissa * 10 + (c - '0');
  for (const char c : fraction)
    mantissa = mantissa * 10 + (c - '0');
  return Narrow(negative ? -mantissa : mantissa, static_cast<int>(fraction.size()));
}

std::optional<Decimal> Decimal::FromDouble(double value, int scale) {
  assert(scale >= 0 && scale <= kMaxScale);
  if (!std::isfinite(value)) return std::nullopt;
  std::array<char, 32> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                     std::chars_format::scientific);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
  const std::size_t e = text.find('e');

  Wide digits = 0;
  int exponent = 0;
  std::from_chars(text.data() + e + (text[e + 1] == '+' ? 2 : 1), text.data() + text.size(),
                  exponent);
  for (const char c : text.substr(0, e)) {
    if (c != '.') digits = digits * 10 + (c - '0');
  }
  if (e > 1) exponent -= static_cast<int>(e) - 2;  // digits behind the point
  const int shift = exponent + scale;
  if (digits == 0 || shift < -18) return Decimal(0, scale);
  if (shift > 18) return std::nullopt;
  const Wide size = shift < 0 ? DivideHalfUp(digits, Power(-shift)) : digits * Power(shift);
  const Wide mantissa = std::signbit(value) ? -size : size;
  if (!Fits(mantissa)) return std::nullopt;
  return Decimal(static_cast<std::int64_t>(mantissa), scale);
}

std::optional<Decimal> Decimal::AtScale(int scale) const {
  assert(scale >= 0 && scale <= kMaxScale);
  if (scale >= scale_) {
    const Wide mantissa = Wide{mantissa_} * Power(scale - scale_);
    if (!Fits(mantissa)) return std::nullopt;
    return Decimal(static_cast<std::int64_t>(mantissa), scale);
  }
  const Wide power = Power(scale_ - scale);
  if (mantissa_ % power != 0) return std::nullopt;
  return Decimal(static_cast<std::int64_t>(mantissa_ / power), scale);
}

std::optional<Decimal> Decimal::Plus(Decimal other) const {
  const int scale = scale_ > other.scale_ ? scale_ : other.scale_;
  return Narrow(mantissa_ * Power(scale - scale_) + other.mantissa_ * Power(scale - other.scale_),
                scale);
}

std::optional<Decimal> Decimal::Minus(Decimal other) const {
  const int scale = scale_ > other.scale_ ? scale_ : other.scale_;
  return Narrow(mantissa_ * Power(scale - scale_) - other.mantissa_ * Power(scale - other.scale_),
                scale);
}

WideDecimal Decimal::Times(Decimal other) const {
  return {Wide{mantissa_} * other.mantissa_, 1, scale_ + other.scale_};
}

WideDecimal Decimal::DividedBy(Decimal other) const {
  return WideDecimal(mantissa_, 1, scale_).DividedBy(other);
}

double Decimal::ToDouble() const {
  constexpr std::int64_t kExact = std::int64_t{1} << 53;
  if (mantissa_ >= -kExact && mantissa_ <= kExact) {
    return static_cast<double>(mantissa_) / static_cast<double>(PowerOfTen(scale_));
  }
  const std::string text = ToText();  // a division of two inexact doubles would round twice
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string Decimal::ToText(char point) const {
  std::array<char, 24> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), mantissa_);
  std::string text(buffer.data(), written.ptr);
  if (scale_ == 0) return text;
  const std::size_t sign = IsNegative() ? 1 : 0;
  const auto decimals = static_cast<std::size_t>(scale_);
  if (text.size() - sign <= decimals) text.insert(sign, decimals + 1 + sign - text.size(), '0');
  text.insert(text.size() - decimals, 1, point);
  return text;
}

std::strong_ordering Decimal::operator<=>(const Decimal& other) const {
  const int scale = scale_ > other.scale_ ? scale_ : other.scale_;
  const Wide left = mantissa_ * Power(scale - scale_);
  const Wide right = other.mantissa_ * Power(scale - other.scale_);
  if (left == right) return std::strong_ordering::equal;
  return left < right ? std::strong_ordering::less : std::strong_ordering::greater;
}

}  // namespace orvane
