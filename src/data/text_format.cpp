#include "data/text_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <span>

#include "packet/decimal.h"
#include "packet/fold.h"

namespace orvane::data {
namespace {

constexpr std::string_view kThinSpace = "\u2009";
constexpr int kQuantityDecimals = 6;  // doubles are counted and compared at six decimals

// --- to text
// --------------------------------------------------------------------------------------

/// Parts the whole digits of "-1234,50" into thousands.
std::string Grouped(const std::string& number) {
  const std::size_t begin = number.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(number.find(','), number.size());
  std::string grouped;
  for (std::size_t i = 0; i < number.size(); ++i) {
    if (i > begin && i < end && (end - i) % 3 == 0) grouped += kThinSpace;
    grouped += number[i];
  }
  return grouped;
}

std::string WithoutTrailingZeros(std::string number) {
  if (number.find(',') == std::string::npos) return number;
  while (number.ends_with('0'))
    number.pop_back();
  if (number.ends_with(',')) number.pop_back();
  return number == "-0" ? "0" : number;
}

std::string DecimalText(Decimal value, int decimals) {
  if (decimals < 0) return WithoutTrailingZeros(value.ToText(','));
  std::optional<Decimal> shown = value.AtScale(decimals);
  if (!shown) shown = value.Times(Decimal(1, 0)).RoundedHalfUp(decimals);
  return shown ? shown->ToText(',') : value.ToText(',');
}

std::string RealText(double value, int decimals) {
  const auto exact = Decimal::FromDouble(value, decimals < 0 ? kQuantityDecimals : decimals);
  if (exact) return DecimalText(*exact, decimals);
  std::array<char, 400> buffer;  // the largest double has 309 digits
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  std::string text(buffer.data(), written.ptr);
  std::ranges::replace(text, '.', ',');
  return text;
}

// --- from text
// ------------------------------------------------------------------------------------

Failure Unreadable(std::string_view text, std::string_view sentence) {
  return {FailureKind::Refused, "„" + std::string(text) + "“ " + std::string(sentence)};
}

Answer<Variant> ParseWhole(std::string_view text, const ValueKindRow& kind) {
  const Answer<Decimal> number = ReadNumber(text, {.decimals = 0});
  if (!number) return number.GetFailure();
  if (number->Mantissa() < kind.lowest || number->Mantissa() > kind.highest) {
    return Unreadable(text, "е извън допустимите граници: от " + std::to_string(kind.lowest) +
                                " до " + std::to_string(kind.highest) + ".");
  }
  return Variant(number->Mantissa());
}

Answer<Variant> ParseScaled(std::string_view text, const TextFormat& format) {
  const int scale = RowOf(format.kind).scale;
  const Answer<Decimal> number = ReadNumber(text, WantedBy(format));
  if (!number) return number.GetFailure();
  const auto scaled = number->AtScale(scale);
  if (!scaled) return Unreadable(text, "е твърде голямо число.");
  return Variant(*scaled);
}

Answer<Variant> ParseReal(std::string_view text, const TextFormat& format) {
  const Answer<Decimal> number = ReadNumber(text, WantedBy(format));
  if (!number) return number.GetFailure();
  return Variant(number->ToDouble());
}

Answer<Variant> ParseBool(std::string_view text) {
  const std::string folded = Fold(text);
  if (folded == Fold("Да") || folded == "1") return Variant(true);
  if (folded == Fold("Не") || folded == "0") return Variant(false);
  return Unreadable(text, "не е отговор. Въведете Да или Не.");
}

/// Days are typed with points, commas, slashes or hyphens between; all mean the same.
std::optional<Date> ReadDate(std::string_view text) {
  std::string pointed(text);
  std::ranges::replace_if(
      pointed, [](char c) { return c == ',' || c == '/' || c == '-'; }, '.');
  return Date::Parse(pointed);
}

/// A slip of a key makes 05.03.0226 of 2026; no document is so old or so far ahead.
bool IsOfOurTimes(Date date) {
  return date.Year() >= 1900 && date.Year() < 3000;
}
constexpr std::string_view kOtherTimes = "е с невъзможна година. Въведете година от 1900 до 2999.";

Answer<Variant> ParseDate(std::string_view text) {
  const auto date = ReadDate(text);
  if (!date) return Unreadable(text, "не е дата. Въведете ден.месец.година.");
  if (!IsOfOurTimes(*date)) return Unreadable(text, kOtherTimes);
  return Variant(*date);
}

/// The number at the beginning of `text`, at most two digits, which are taken off.
std::optional<int> TakeTwoDigits(std::string_view& text, int highest) {
  int number = 0;
  const std::size_t length = std::min<std::size_t>(text.size(), 2);
  const auto read = std::from_chars(text.data(), text.data() + length, number);
  if (read.ec != std::errc() || number < 0 || number > highest) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return number;
}

/// "hh:mm" or "hh:mm:ss" as hours, minutes and seconds.
std::optional<std::array<int, 3>> ReadTime(std::string_view text) {
  constexpr std::array<int, 3> kHighest{23, 59, 59};
  std::array<int, 3> time{};
  std::size_t parts = 0;
  while (parts < time.size()) {
    const auto number = TakeTwoDigits(text, kHighest[parts]);
    if (!number) return std::nullopt;
    time[parts++] = *number;
    if (text.empty()) break;
    if (text.front() != ':') return std::nullopt;
    text.remove_prefix(1);
  }
  if (!text.empty() || parts < 2) return std::nullopt;
  return time;
}

Answer<Variant> ParseStamp(std::string_view text, const TextFormat& format) {
  const std::size_t blank = text.find(' ');
  const auto date = ReadDate(text.substr(0, blank));
  auto time = std::optional(std::array<int, 3>{});
  if (blank != std::string_view::npos) time = ReadTime(Trim(text.substr(blank)));
  if (!date || !time) {
    return Unreadable(text, "не е дата и час. Въведете ден.месец.година час:минути.");
  }
  if (!IsOfOurTimes(*date)) return Unreadable(text, kOtherTimes);
  return Variant(format.zone.At(*date, (*time)[0], (*time)[1], (*time)[2]));
}

Answer<Variant> ParseText(std::string_view text, const TextFormat& format) {
  const auto limit = static_cast<std::size_t>(format.size);
  if (format.kind == ValueKind::String && limit > 0 && Utf8Length(text) > limit) {
    return Failure{FailureKind::Refused,
                   "Текстът е по-дълъг от " + std::to_string(limit) + " знака."};
  }
  return Variant(text);
}

}  // namespace

bool IsNumber(ValueKind kind) {
  return kind >= ValueKind::Byte && kind <= ValueKind::Double;
}

WantedNumber WantedBy(const TextFormat& format) {
  const bool money = format.kind == ValueKind::Amount;
  if (format.kind == ValueKind::Double) return {.decimals = Decimal::kMaxScale};
  const int scale = RowOf(format.kind).scale;
  return {.decimals = format.decimals < 0 ? scale : std::min(format.decimals, scale),
          .money = money};
}

std::string FormatValue(const Variant& value, const TextFormat& format) {
  if (value.IsNull()) return {};
  if (const std::string* text = value.AsString()) return *text;
  if (format.kind == ValueKind::Bool) {
    const auto flag = value.AsBool();
    return !flag ? std::string() : *flag ? "Да" : "Не";
  }
  if (const auto date = value.AsDate()) return date->ToText();
  if (const auto stamp = value.AsStamp()) {
    if (format.dayOnly) return format.zone.DayOf(*stamp).ToText();
    return format.withSeconds ? format.zone.ToTextWithSeconds(*stamp) : format.zone.ToText(*stamp);
  }
  std::string number;
  if (const auto* real = std::get_if<double>(&value.Raw())) {
    number = RealText(*real, format.decimals);
  } else if (const auto decimal = value.AsDecimal()) {
    number = DecimalText(*decimal, format.decimals);
    if (format.trimmed) number = WithoutTrailingZeros(std::move(number));
  } else {
    number = value.ToText();
  }
  return format.grouped ? Grouped(number) : number;
}

Answer<Variant> ParseValue(std::string_view text, const TextFormat& format) {
  if (IsBlank(text)) return Variant();
  switch (format.kind) {
    case ValueKind::Bool:
      return ParseBool(Trim(text));
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
    case ValueKind::Code:
      return ParseWhole(Trim(text), RowOf(format.kind));
    case ValueKind::Amount:
    case ValueKind::Rate:
      return ParseScaled(Trim(text), format);
    case ValueKind::Double:
      return ParseReal(Trim(text), format);
    case ValueKind::Date:
      return ParseDate(Trim(text));
    case ValueKind::Stamp:
      return ParseStamp(Trim(text), format);
    case ValueKind::String:
    case ValueKind::Memo:
      return ParseText(text, format);
  }
  return Variant();
}

}  // namespace orvane::data
