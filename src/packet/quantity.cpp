#include "packet/quantity.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "packet/decimal.h"
#include "packet/fold.h"
#include "packet/typed_number.h"

namespace orvane {
namespace {

constexpr int kQuantityDecimals = 6;
constexpr double kHighestQuantity = 1e12;

Failure NotAQuantity(std::string_view text) {
  return {FailureKind::Refused, "„" + std::string(text) + "“ не е количество. Въведете число."};
}

/// A whole number up to nine digits, thousands parted or not.
std::optional<std::int64_t> ReadWhole(std::string_view text) {
  constexpr std::int64_t kHighest = 999'999'999;
  const std::optional<Decimal> value = Decimal::Parse(text);
  if (!value || value->IsNegative() || text.find_first_of(",.+-") != std::string_view::npos)
    return std::nullopt;
  return value->Mantissa() > kHighest ? std::nullopt : std::optional(value->Mantissa());
}

/// Parts the thousands of a number's whole digits by thin blanks.
std::string Grouped(std::string text) {
  constexpr std::string_view kThinBlank = "\u2009";
  constexpr std::size_t kGroup = 3;
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  std::size_t at = std::min(text.find(','), text.size());
  while (at > first + kGroup) {
    at -= kGroup;
    text.insert(at, kThinBlank);
  }
  return text;
}

/// At most six places, trailing zeros left out.
std::string ExactText(double value) {
  const std::optional<Decimal> exact = Decimal::FromDouble(value, kQuantityDecimals);
  if (!exact) return {};
  std::string text = exact->ToText(',');
  while (text.back() == '0')
    text.pop_back();
  if (text.back() == ',') text.pop_back();
  return text;
}

/// Every kind of blank as a plain one, those around left out.
std::string WithPlainBlanks(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t blank = BlankLength(text);
    plain += blank == 0 ? text.front() : ' ';
    text.remove_prefix(blank == 0 ? 1 : blank);
  }
  return std::string(Trim(plain));
}

Failure TooManyDecimals(int decimals) {
  if (decimals == 0) return {FailureKind::Refused, "Количеството на тази стока е цяло число."};
  return {FailureKind::Refused, "Количеството на тази стока е с най-много " +
                                    std::to_string(decimals) + " знака след запетаята."};
}

bool IsInOwnUnit(const QuantityUnit& unit) {
  return unit.ownNumerator < 1 || unit.ownNumerator == unit.rowNumerator;
}

/// The quantity in smallest units for a number of row units. A unit that is not the entry's own
/// takes the decimals that show its whole quantities: 1,5 hundreds are 150 pieces.
std::optional<double> InSmallest(Decimal number, const QuantityUnit& unit) {
  const double typed = RoundedQuantity(number.ToDouble() * unit.rowNumerator);
  if (number.AtScale(unit.decimals)) return typed;
  if (IsInOwnUnit(unit)) return std::nullopt;
  const auto counted = Decimal::FromDouble(typed / unit.ownNumerator, unit.decimals);
  if (!counted) return std::nullopt;
  const double nearest = RoundedQuantity(counted->ToDouble() * unit.ownNumerator);
  const auto shown = Decimal::FromDouble(nearest / unit.rowNumerator, kQuantityDecimals);
  return shown && *shown == number ? std::optional(nearest) : std::nullopt;
}

/// "3 5/12", "5/12" or "3" in units of `denominator` smallest units.
Answer<double> ReadOrdinary(std::string_view text, std::int32_t denominator) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) {
    const std::optional<std::int64_t> whole = ReadWhole(text);
    if (!whole) return NotAQuantity(text);
    return static_cast<double>(*whole * denominator);
  }
  const std::size_t blank = text.find_last_of(" ", slash);
  const bool hasWhole = blank != std::string_view::npos;
  const std::optional<std::int64_t> whole =
      hasWhole ? ReadWhole(Trim(text.substr(0, blank))) : std::optional<std::int64_t>(0);
  const std::size_t begin = hasWhole ? blank + 1 : 0;
  const std::optional<std::int64_t> rest = ReadWhole(text.substr(begin, slash - begin));
  const std::optional<std::int64_t> parts = ReadWhole(text.substr(slash + 1));
  if (!whole || !rest || !parts) return NotAQuantity(text);
  if (*parts != denominator || *rest >= denominator) {
    return Failure{FailureKind::Refused, "Остатъкът се въвежда като число под " +
                                             std::to_string(denominator) + ", например „3 1/" +
                                             std::to_string(denominator) + "“."};
  }
  return static_cast<double>(*whole * denominator + *rest);
}

}  // namespace

double RoundedQuantity(double quantity) {
  const double scale = 1e6;
  return std::round(quantity * scale) / scale;
}

int CompareQuantities(double left, double right) {
  const double difference = std::round((left - right) * 1e6);
  return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

std::string QuantityToStr(double quantity, const QuantityUnit& unit) {
  if (!unit.ordinaryFraction || unit.rowNumerator <= 1)
    return Grouped(ExactText(quantity / unit.rowNumerator));
  const double whole = std::floor(std::abs(quantity) / unit.rowNumerator);
  const double rest = RoundedQuantity(std::abs(quantity) - whole * unit.rowNumerator);
  const std::string sign = quantity < 0 ? "-" : "";
  const std::string wholeText = Grouped(ExactText(whole));
  const std::string restText = ExactText(rest);
  if (restText == "0") return sign + wholeText;
  const std::string part = restText + "/" + std::to_string(unit.rowNumerator);
  return whole == 0 ? sign + part : sign + wholeText + " " + part;
}

Answer<double> StrToQuantity1(std::string_view text, const QuantityUnit& unit) {
  const std::string typed = WithPlainBlanks(text);
  if (unit.ordinaryFraction) return ReadOrdinary(typed, unit.rowNumerator);
  const Answer<Decimal> number = ReadNumber(typed, {.decimals = kQuantityDecimals});
  if (!number) return number.GetFailure();
  if (number->IsNegative()) {
    return Failure{FailureKind::Refused,
                   "„" + typed + "“ е отрицателно, а количеството се въвежда положително."};
  }
  if (number->ToDouble() * unit.rowNumerator > kHighestQuantity)
    return Failure{FailureKind::Refused, "„" + typed + "“ е твърде голямо количество."};
  if (IsInOwnUnit(unit) && number->AtScale(unit.decimals)) {
    // "1,000" of goods without decimals may be a thousand.
    const Answer<Decimal> read = ReadNumber(typed, {.decimals = unit.decimals});
    if (!read) return read.GetFailure();
  }
  const auto quantity = InSmallest(*number, unit);
  if (!quantity) return TooManyDecimals(unit.decimals);
  return *quantity;
}

}  // namespace orvane
