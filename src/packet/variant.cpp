#include "packet/variant.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "packet/data_packet.h"
#include "packet/fold.h"

namespace orvane {
namespace {

constexpr char kWrongKind[] = "Стойността не е от очаквания вид.";
constexpr char kOutOfRange[] = "Стойността е извън допустимите граници.";
constexpr char kFractionLost[] = "Стойността има повече десетични знаци от допустимите.";
constexpr char kNotText[] = "Текстът съдържа недопустими знаци.";

Failure Unfit(std::string sentence) {
  return {FailureKind::BadRequest, std::move(sentence)};
}

/// Doubles from here on are no 64-bit integers (2^63).
constexpr double kIntegerLimit = 9223372036854775808.0;

Answer<std::int64_t> WholeNumber(const Variant& value) {
  if (const auto whole = value.AsInt()) return *whole;
  if (const auto* decimal = std::get_if<Decimal>(&value.Raw())) {
    return Unfit(decimal->IsZero() ? kWrongKind : kFractionLost);
  }
  const auto* real = std::get_if<double>(&value.Raw());
  if (!real) return Unfit(kWrongKind);
  if (!(*real >= -kIntegerLimit && *real < kIntegerLimit)) return Unfit(kOutOfRange);
  if (std::trunc(*real) != *real) return Unfit(kFractionLost);
  return static_cast<std::int64_t>(*real);
}

Answer<Variant> AsWhole(const Variant& value, const ValueKindRow& row) {
  const Answer<std::int64_t> whole = WholeNumber(value);
  if (!whole) return whole.GetFailure();
  if (*whole < row.lowest || *whole > row.highest) return Unfit(kOutOfRange);
  if (row.kind == ValueKind::Bool) return Variant(*whole != 0);
  return Variant(*whole);
}

Answer<Variant> AsScaled(const Variant& value, int scale) {
  std::optional<Decimal> decimal = value.AsDecimal();
  if (const auto* real = std::get_if<double>(&value.Raw())) {
    decimal = Decimal::FromDouble(*real, scale);
    if (!decimal) return Unfit(kOutOfRange);
    if (decimal->ToDouble() != *real) return Unfit(kFractionLost);
  }
  if (!decimal) return Unfit(kWrongKind);
  const auto scaled = decimal->AtScale(scale);
  if (scaled) return Variant(*scaled);
  return Unfit(decimal->Scale() > scale ? kFractionLost : kOutOfRange);
}

Answer<Variant> AsReal(const Variant& value) {
  const auto real = value.AsDouble();
  if (!real) return Unfit(kWrongKind);
  if (!std::isfinite(*real)) return Unfit(kOutOfRange);
  return Variant(*real);
}

Answer<Variant> AsText(const Variant& value, ValueKind kind, int size) {
  const std::string* text = value.AsString();
  if (!text) return Unfit(kWrongKind);
  if (!IsUtf8(*text) || text->find('\0') != std::string::npos) return Unfit(kNotText);
  const auto limit = static_cast<std::size_t>(size);
  if (kind == ValueKind::String && size > 0 && Utf8Length(*text) > limit) {
    return Unfit("Текстът е по-дълъг от " + std::to_string(size) + " знака.");
  }
  return value;
}

std::string RealText(double value) {
  std::array<char, 400> buffer;  // the largest double has 309 digits
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  return {buffer.data(), written.ptr};
}

/// "2026-03-05T09:00:00.250000Z"; a whole second has no fraction.
std::string IsoText(Stamp moment) {
  constexpr TimeZone kUtc{0, false};
  const std::string text = kUtc.ToTextWithSeconds(moment);  // dd.mm.yyyy hh:mm:ss
  std::string iso =
      text.substr(6, 4) + '-' + text.substr(3, 2) + '-' + text.substr(0, 2) + 'T' + text.substr(11);
  const std::int64_t micros = (moment.micros % 1'000'000 + 1'000'000) % 1'000'000;
  if (micros != 0) iso += '.' + std::to_string(1'000'000 + micros).substr(1);
  return iso + 'Z';
}

bool IsNumber(const Variant& value) {
  return value.AsInt() || value.AsDecimal() || value.AsDouble();
}

template <class T>
int Sign(const T& left, const T& right) {
  return left < right ? -1 : right < left ? 1 : 0;
}

/// A double beside an exact number is compared in extended precision, which holds every 64-bit
/// integer.
int CompareNumbers(const Variant& left, const Variant& right) {
  const auto exact = [](const Variant& value) {
    const auto whole = value.AsInt();
    return whole ? std::optional<Decimal>(Decimal(*whole, 0)) : value.AsDecimal();
  };
  const auto leftExact = exact(left);
  const auto rightExact = exact(right);
  if (leftExact && rightExact) return Sign(*leftExact, *rightExact);
  const auto wide = [](const Variant& value, const std::optional<Decimal>& decimal) {
    if (!decimal) return static_cast<long double>(*value.AsDouble());
    return static_cast<long double>(decimal->Mantissa()) /
           std::pow(10.0L, static_cast<long double>(decimal->Scale()));
  };
  return Sign(wide(left, leftExact), wide(right, rightExact));
}

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

Variant::Variant(DataPacket packet)
    : value_(std::make_shared<const DataPacket>(std::move(packet))) {}

Variant::Variant(VariantArray array)
    : value_(std::make_shared<const VariantArray>(std::move(array))) {}

bool Variant::IsEmpty() const {
  const std::string* text = AsString();
  return IsNull() || (text && IsBlank(*text));
}

std::optional<bool> Variant::AsBool() const {
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag;
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole != 0;
  return std::nullopt;
}

std::optional<std::int64_t> Variant::AsInt() const {
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole;
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag ? 1 : 0;
  if (const auto* decimal = std::get_if<Decimal>(&value_)) {
    const auto whole = decimal->AtScale(0);
    if (whole) return whole->Mantissa();
  }
  return std::nullopt;
}

std::optional<double> Variant::AsDouble() const {
  if (const auto* real = std::get_if<double>(&value_)) return *real;
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*whole);
  if (const auto* decimal = std::get_if<Decimal>(&value_)) return decimal->ToDouble();
  return std::nullopt;
}

std::optional<Decimal> Variant::AsDecimal() const {
  if (const auto* decimal = std::get_if<Decimal>(&value_)) return *decimal;
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return Decimal(*whole, 0);
  return std::nullopt;
}

std::optional<Date> Variant::AsDate() const {
  const auto* date = std::get_if<Date>(&value_);
  return date ? std::optional<Date>(*date) : std::nullopt;
}

std::optional<Stamp> Variant::AsStamp() const {
  const auto* stamp = std::get_if<Stamp>(&value_);
  return stamp ? std::optional<Stamp>(*stamp) : std::nullopt;
}

const DataPacket* Variant::AsPacket() const {
  const auto* packet = std::get_if<std::shared_ptr<const DataPacket>>(&value_);
  return packet ? packet->get() : nullptr;
}

const VariantArray* Variant::AsArray() const {
  const auto* array = std::get_if<std::shared_ptr<const VariantArray>>(&value_);
  return array ? array->get() : nullptr;
}

std::string Variant::ToText() const {
  if (const std::string* text = AsString()) return *text;
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag ? "1" : "0";
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value_)) return RealText(*real);
  if (const auto* decimal = std::get_if<Decimal>(&value_)) return decimal->ToText();
  if (const auto* date = std::get_if<Date>(&value_)) return date->ToText();
  if (const auto* stamp = std::get_if<Stamp>(&value_)) return IsoText(*stamp);
  return {};
}

Answer<Variant> Variant::As(ValueKind kind, int size) const {
  if (IsNull()) return *this;
  const ValueKindRow& row = RowOf(kind);
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
    case ValueKind::Code:
      return AsWhole(*this, row);
    case ValueKind::Amount:
    case ValueKind::Rate:
      return AsScaled(*this, row.scale);
    case ValueKind::Double:
      return AsReal(*this);
    case ValueKind::Date: {
      const auto date = AsDate();
      if (!date) return Unfit(kWrongKind);
      if (date->days < row.lowest || date->days > row.highest) return Unfit(kOutOfRange);
      return *this;
    }
    case ValueKind::Stamp:
      if (!AsStamp()) return Unfit(kWrongKind);
      return *this;
    case ValueKind::String:
    case ValueKind::Memo:
      return AsText(*this, kind, size);
  }
  return Unfit(kWrongKind);
}

bool Variant::operator==(const Variant& other) const {
  if (value_.index() != other.value_.index()) return false;
  if (const DataPacket* packet = AsPacket()) return *packet == *other.AsPacket();
  if (const VariantArray* array = AsArray()) return *array == *other.AsArray();
  return value_ == other.value_;
}

int Variant::Compare(const Variant& left, const Variant& right) {
  if (left.IsNull() || right.IsNull()) return Sign(!left.IsNull(), !right.IsNull());
  if (IsNumber(left) && IsNumber(right)) return CompareNumbers(left, right);
  if (left.value_.index() != right.value_.index()) return 0;
  if (const std::string* text = left.AsString()) return Sign(*text, *right.AsString());
  if (const auto date = left.AsDate()) return Sign(*date, *right.AsDate());
  if (const auto stamp = left.AsStamp()) return Sign(*stamp, *right.AsStamp());
  return 0;
}

bool SameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

const Variant* FindValue(const NamedValues& values, std::string_view name) {
  for (const NamedValue& value : values) {
    if (SameName(value.name, name)) return &value.value;
  }
  return nullptr;
}

}  // namespace orvane
