#include "server/dialect/continuation.h"

#include <bit>
#include <charconv>
#include <cmath>

#include "packet/fold.h"

namespace orvane::server::dialect {
namespace {

constexpr std::size_t kLongest = std::size_t{64} * 1024;
constexpr std::int64_t kMicrosOfDay = 86'400'000'000;

/// A value as the number that a packet's column would hold.
std::int64_t StoredNumber(const Variant& value) {
  if (const std::optional<Date> day = value.AsDate()) return day->days;
  if (const std::optional<Stamp> stamp = value.AsStamp()) return stamp->micros;
  if (const std::optional<double> real =
          std::holds_alternative<double>(value.Raw()) ? value.AsDouble() : std::nullopt) {
    return std::bit_cast<std::int64_t>(*real);
  }
  if (const auto* decimal = std::get_if<Decimal>(&value.Raw())) return decimal->Mantissa();
  return value.AsInt().value_or(0);
}

std::optional<Variant> FromStored(std::int64_t number, ValueKind kind) {
  const ValueKindRow& row = RowOf(kind);
  switch (kind) {
    case ValueKind::Date:
      if (number < row.lowest || number > row.highest) return std::nullopt;
      return Variant(Date{static_cast<std::int32_t>(number)});
    case ValueKind::Stamp: {
      const std::int64_t days = number / kMicrosOfDay;
      const ValueKindRow& day = RowOf(ValueKind::Date);
      if (days <= day.lowest || days >= day.highest) return std::nullopt;
      return Variant(Stamp{number});
    }
    case ValueKind::Double: {
      const auto real = std::bit_cast<double>(number);
      return std::isfinite(real) ? std::optional<Variant>(real) : std::nullopt;
    }
    case ValueKind::Amount:
    case ValueKind::Rate:
      return Variant(Decimal(number, row.scale));
    default:
      return Variant(number);
  }
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool AtEnd() const { return text_.empty(); }

  template <class Number>
  std::optional<Number> TakeNumber(char end, int base = 10) {
    Number number{};
    const auto [stop, error] =
        std::from_chars(text_.data(), text_.data() + text_.size(), number, base);
    const auto length = static_cast<std::size_t>(stop - text_.data());
    if (error != std::errc() || length >= text_.size() || text_[length] != end) return std::nullopt;
    text_.remove_prefix(length + 1);
    return number;
  }

  std::optional<char> TakeTag() {
    if (text_.empty()) return std::nullopt;
    const char tag = text_.front();
    text_.remove_prefix(1);
    return tag;
  }

  std::optional<std::string_view> TakeText(std::size_t length) {
    if (length > text_.size()) return std::nullopt;
    const std::string_view text = text_.substr(0, length);
    text_.remove_prefix(length);
    return text;
  }

 private:
  std::string_view text_;
};

std::optional<Variant> TakeValue(Reader& reader, ValueKind kind) {
  const std::optional<char> tag = reader.TakeTag();
  if (tag == 'n') return Variant();
  if (tag == 't' && RowOf(kind).storage == Storage::Text) {
    const auto length = reader.TakeNumber<std::size_t>(':');
    const auto text = length ? reader.TakeText(*length) : std::nullopt;
    if (!text || !IsUtf8(*text) || text->find('\0') != std::string_view::npos) return std::nullopt;
    return Variant(*text);
  }
  if (tag != 'v' || RowOf(kind).storage == Storage::Text) return std::nullopt;
  const auto number = reader.TakeNumber<std::int64_t>(';');
  return number ? FromStored(*number, kind) : std::nullopt;
}

}  // namespace

std::string WriteContinuation(std::uint64_t fingerprint, std::span<const Variant> values) {
  char digits[16];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), fingerprint, 16).ptr;
  std::string text(digits, end);
  text += '.';
  for (const Variant& value : values) {
    if (value.IsNull()) {
      text += 'n';
    } else if (const std::string* written = value.AsString()) {
      text += 't' + std::to_string(written->size()) + ':' + *written;
    } else {
      text += 'v' + std::to_string(StoredNumber(value)) + ';';
    }
  }
  return text;
}

std::optional<VariantArray> ReadContinuation(std::string_view text, std::uint64_t fingerprint,
                                             std::span<const ValueKind> kinds) {
  if (text.size() > kLongest) return std::nullopt;
  Reader reader(text);
  if (reader.TakeNumber<std::uint64_t>('.', 16) != fingerprint) return std::nullopt;
  VariantArray values;
  for (const ValueKind kind : kinds) {
    std::optional<Variant> value = TakeValue(reader, kind);
    if (!value) return std::nullopt;
    values.push_back(*std::move(value));
  }
  if (!reader.AtEnd()) return std::nullopt;
  return values;
}

}  // namespace orvane::server::dialect
