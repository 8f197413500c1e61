#include "server/engine/postgres_codec.h"

#include <bit>
#include <cmath>
#include <type_traits>
#include <variant>

namespace orvane::server {
namespace {

// Object identifiers of the built-in types, which PostgreSQL never changes.
constexpr PostgresType kBool = 16;
constexpr PostgresType kName = 19;
constexpr PostgresType kInt8 = 20;
constexpr PostgresType kInt2 = 21;
constexpr PostgresType kInt4 = 23;
constexpr PostgresType kText = 25;
constexpr PostgresType kFloat8 = 701;
constexpr PostgresType kChars = 1042;
constexpr PostgresType kVarchar = 1043;
constexpr PostgresType kDate = 1082;
constexpr PostgresType kTimestamp = 1114;
constexpr PostgresType kTimestamptz = 1184;
constexpr PostgresType kNumeric = 1700;

// PostgreSQL counts from 1 January 2000.
constexpr std::int64_t kDaysTo2000 = 10957;
constexpr std::int64_t kMicrosTo2000 = kDaysTo2000 * 86'400'000'000;

template <class Unsigned>
std::string BigEndian(Unsigned value) {
  std::string bytes(sizeof(Unsigned), '\0');
  for (std::size_t i = sizeof(Unsigned); i-- > 0; value = static_cast<Unsigned>(value >> 8)) {
    bytes[i] = static_cast<char>(value & 0xFFu);
  }
  return bytes;
}

std::uint64_t ReadBigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes)
    value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

/// Two's complement of as many bytes as there are.
std::int64_t ReadSigned(std::string_view bytes) {
  const std::uint64_t value = ReadBigEndian(bytes);
  if (bytes.size() == 2) return static_cast<std::int16_t>(value);
  if (bytes.size() == 4) return static_cast<std::int32_t>(value);
  return static_cast<std::int64_t>(value);
}

PostgresValue Typed(PostgresType type, std::string bytes, bool binary = true) {
  return {type, false, binary, std::move(bytes)};
}

/// Empty when the value cannot travel.
std::optional<PostgresValue> Encode(const Variant& value) {
  return std::visit(
      [](const auto& held) -> std::optional<PostgresValue> {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>) {
          return PostgresValue{};
        } else if constexpr (std::is_same_v<Held, bool>) {
          return Typed(kInt2, BigEndian(static_cast<std::uint16_t>(held ? 1 : 0)));
        } else if constexpr (std::is_same_v<Held, std::int64_t>) {
          return Typed(kInt8, BigEndian(static_cast<std::uint64_t>(held)));
        } else if constexpr (std::is_same_v<Held, double>) {
          if (!std::isfinite(held)) return std::nullopt;
          return Typed(kFloat8, BigEndian(std::bit_cast<std::uint64_t>(held)));
        } else if constexpr (std::is_same_v<Held, Decimal>) {
          return Typed(kNumeric, held.ToText(), false);
        } else if constexpr (std::is_same_v<Held, Date>) {
          return Typed(kDate, BigEndian(static_cast<std::uint32_t>(held.days - kDaysTo2000)));
        } else if constexpr (std::is_same_v<Held, Stamp>) {
          if (held.micros < kLowest64 + kMicrosTo2000) return std::nullopt;
          return Typed(kTimestamptz,
                       BigEndian(static_cast<std::uint64_t>(held.micros - kMicrosTo2000)));
        } else if constexpr (std::is_same_v<Held, std::string>) {
          return Typed(kText, held);
        } else {
          return std::nullopt;
        }
      },
      value.Raw());
}

/// value × 10^power; empty when digits would be lost or it does not fit.
std::optional<std::int64_t> Shifted(std::int64_t value, int power) {
  for (; power > 0; --power) {
    if (__builtin_mul_overflow(value, 10, &value)) return std::nullopt;
  }
  for (; power < 0; ++power) {
    if (value % 10 != 0) return std::nullopt;
    value /= 10;
  }
  return value;
}

/// A numeric in binary form: groups of four decimal digits, the first weighing 10000^weight.
struct Numeric {
  std::vector<std::int64_t> groups;
  int weight = 0;
  bool negative = false;
  bool finite = false;
};

Numeric ReadNumeric(std::string_view bytes) {
  constexpr std::uint64_t kNegative = 0x4000;
  constexpr std::uint64_t kSpecial = 0xC000;
  Numeric numeric;
  if (bytes.size() < 8) return numeric;
  const auto count = static_cast<std::size_t>(ReadBigEndian(bytes.substr(0, 2)));
  const std::uint64_t sign = ReadBigEndian(bytes.substr(4, 2));
  if (bytes.size() != 8 + 2 * count) return numeric;
  numeric.weight = static_cast<int>(ReadSigned(bytes.substr(2, 2)));
  numeric.negative = sign == kNegative;
  numeric.finite = (sign & kSpecial) != kSpecial;
  for (std::size_t i = 0; i < count; ++i)
    numeric.groups.push_back(ReadSigned(bytes.substr(8 + 2 * i, 2)));
  return numeric;
}

/// The numeric in units of 10^-scale; empty when digits would be lost or it does not fit.
std::optional<std::int64_t> MantissaOf(const Numeric& numeric, int scale) {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < numeric.groups.size(); ++i) {
    const int power = 4 * (numeric.weight - static_cast<int>(i)) + scale;
    const std::int64_t group = numeric.negative ? -numeric.groups[i] : numeric.groups[i];
    const auto part = Shifted(group, group == 0 ? 0 : power);
    if (!part || __builtin_add_overflow(sum, *part, &sum)) return std::nullopt;
  }
  return sum;
}

double RealOf(const Numeric& numeric) {
  double sum = 0;
  for (std::size_t i = 0; i < numeric.groups.size(); ++i) {
    sum += static_cast<double>(numeric.groups[i]) *
           std::pow(10000.0, numeric.weight - static_cast<int>(i));
  }
  return numeric.negative ? -sum : sum;
}

FillError FillNumeric(PacketColumn& column, const Numeric& numeric) {
  const ValueKindRow& kind = RowOf(column.kind);
  if (!numeric.finite) return "column " + column.name + " holds no finite number";
  if (kind.storage == Storage::Real) return FillReal(column, RealOf(numeric));
  const auto mantissa = MantissaOf(numeric, kind.scale);
  if (!mantissa) return "column " + column.name + " holds more digits than its kind keeps";
  return FillStored(column, *mantissa);
}

FillError FillInteger(PacketColumn& column, std::int64_t value) {
  const ValueKindRow& kind = RowOf(column.kind);
  if (kind.storage == Storage::Real) return FillReal(column, static_cast<double>(value));
  const auto scaled = Shifted(value, kind.scale);
  if (!scaled) return "column " + column.name + " holds too great a number";
  return FillStored(column, *scaled);
}

bool IsDay(const PacketColumn& column) {
  return column.kind == ValueKind::Date;
}
bool IsMoment(const PacketColumn& column) {
  return column.kind == ValueKind::Stamp;
}

/// Where a quoted text or a comment that begins at `at` ends; `at` when none begins there.
std::size_t AfterQuoted(std::string_view text, std::size_t at) {
  const auto behind = [&](std::string_view mark, std::size_t from) {
    const std::size_t end = text.find(mark, from);
    return end == std::string_view::npos ? text.size() : end + mark.size();
  };
  if (text[at] == '\'') return behind("'", at + 1);
  if (text[at] == '"') return behind("\"", at + 1);
  if (text.substr(at, 2) == "--") return behind("\n", at + 2);
  if (text.substr(at, 2) == "/*") return behind("*/", at + 2);
  return at;
}

}  // namespace

EngineAnswer<std::vector<PostgresValue>> EncodeParams(const VariantArray& params) {
  std::vector<PostgresValue> values;
  values.reserve(params.size());
  for (const Variant& param : params) {
    auto value = Encode(param);
    if (!value) {
      return EngineError{EngineErrorKind::Other, "",
                         "parameter " + std::to_string(values.size() + 1) + " cannot be bound"};
    }
    values.push_back(*std::move(value));
  }
  return values;
}

FillError FillFromPostgres(PacketColumn& column, PostgresType type, std::string_view bytes) {
  const bool moment = type == kTimestamptz || type == kTimestamp;
  if ((type == kDate) == IsDay(column) && moment == IsMoment(column)) {
    switch (type) {
      case kBool:
      case kInt2:
      case kInt4:
      case kInt8:
        return FillInteger(column, ReadSigned(bytes));
      case kFloat8:
        return FillReal(column, std::bit_cast<double>(ReadBigEndian(bytes)));
      case kNumeric:
        return FillNumeric(column, ReadNumeric(bytes));
      case kDate:
        return FillStored(column, ReadSigned(bytes) + kDaysTo2000);
      case kTimestamp:
      case kTimestamptz: {
        std::int64_t micros = 0;
        if (__builtin_add_overflow(ReadSigned(bytes), kMicrosTo2000, &micros)) break;
        return FillStored(column, micros);
      }
      case kText:
      case kVarchar:
      case kChars:
      case kName:
        return FillText(column, bytes);
      default:
        break;
    }
  }
  return "column " + column.name + " of kind " + std::string(RowOf(column.kind).name) +
         " cannot take the type " + std::to_string(type);
}

NumberedText WithNumberedParams(std::string_view text) {
  NumberedText numbered;
  numbered.text.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t behind = AfterQuoted(text, at);
    if (behind > at) {
      numbered.text += text.substr(at, behind - at);
      at = behind;
      continue;
    }
    if (text[at] != '?') {
      numbered.text += text[at++];
      continue;
    }
    numbered.text += '$';
    std::size_t number = 0;
    for (++at; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
      number = number * 10 + static_cast<std::size_t>(text[at] - '0');
      numbered.text += text[at];
    }
    numbered.highest = std::max(numbered.highest, number);
  }
  return numbered;
}

}  // namespace orvane::server
