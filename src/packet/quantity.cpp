#include "packet/quantity.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "packet/decimal.h"
#include "packet/fold.h"

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

/// At most `decimals` places, trailing zeros left out.
std::string DecimalText(double value, int decimals) {
  const std::optional<Decimal> exact = Decimal::FromDouble(value, decimals);
  if (!exact) return {};
  std::string text = exact->ToText(',');
  if (decimals == 0) return Grouped(std::move(text));
  while (text.back() == '0')
    text.pop_back();
  if (text.back() == ',') text.pop_back();
  return Grouped(std::move(text));
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
  const bool fraction = unit.ordinaryFraction && unit.rowNumerator > 1;
  if (!fraction) {
    const int decimals = unit.ordinaryFraction ? 0 : unit.decimals;
    return DecimalText(quantity / unit.rowNumerator, decimals);
  }
  const double whole = std::floor(std::abs(quantity) / unit.rowNumerator);
  const double rest = RoundedQuantity(std::abs(quantity) - whole * unit.rowNumerator);
  const std::string sign = quantity < 0 ? "-" : "";
  const std::string restText = DecimalText(rest, kQuantityDecimals);
  if (restText == "0") return sign + DecimalText(whole, 0);
  const std::string part = restText + "/" + std::to_string(unit.rowNumerator);
  return whole == 0 ? sign + part : sign + DecimalText(whole, 0) + " " + part;
}

Answer<double> StrToQuantity1(std::string_view text, const QuantityUnit& unit) {
  const std::string_view typed = Trim(text);
  if (unit.ordinaryFraction) return ReadOrdinary(typed, unit.rowNumerator);
  const std::optional<Decimal> value = Decimal::Parse(typed);
  if (!value || value->IsNegative()) return NotAQuantity(typed);
  if (!value->AtScale(unit.decimals)) {
    return Failure{FailureKind::Refused, unit.decimals == 0
                                             ? "Количеството на тази стока е цяло число."
                                             : "Количеството на тази стока е с най-много " +
                                                   std::to_string(unit.decimals) +
                                                   " знака след запетаята."};
  }
  const double quantity = value->ToDouble() * unit.rowNumerator;
  if (quantity > kHighestQuantity) return NotAQuantity(typed);
  return RoundedQuantity(quantity);
}

}  // namespace orvane
