#include "server/providers/value_text.h"

#include <bit>
#include <charconv>

namespace orvane::server {
namespace {

// A value is a letter, a number, a colon, and for texts and arrays that many bytes or values:
// "n0:", "b1:", "i42:", "r<bits of the double>:", "m12345.2:" (decimal), "d20000:", "t…:",
// "s5:bytes", "a2:i1:i2:".

constexpr int kDeepest = 32;

void Append(std::string& text, char tag, std::int64_t number) {
  text += tag;
  text += std::to_string(number);
  text += ':';
}

void Append(std::string& text, const Variant& value);

void AppendArray(std::string& text, const VariantArray& array) {
  Append(text, 'a', static_cast<std::int64_t>(array.size()));
  for (const Variant& element : array)
    Append(text, element);
}

void Append(std::string& text, const Variant& value) {
  const Variant::Storage& raw = value.Raw();
  if (const auto* flag = std::get_if<bool>(&raw)) {
    Append(text, 'b', *flag ? 1 : 0);
  } else if (const auto* whole = std::get_if<std::int64_t>(&raw)) {
    Append(text, 'i', *whole);
  } else if (const auto* real = std::get_if<double>(&raw)) {
    Append(text, 'r', std::bit_cast<std::int64_t>(*real));
  } else if (const auto* decimal = std::get_if<Decimal>(&raw)) {
    text +=
        'm' + std::to_string(decimal->Mantissa()) + '.' + std::to_string(decimal->Scale()) + ':';
  } else if (const auto* date = std::get_if<Date>(&raw)) {
    Append(text, 'd', date->days);
  } else if (const auto* stamp = std::get_if<Stamp>(&raw)) {
    Append(text, 't', stamp->micros);
  } else if (const std::string* own = value.AsString()) {
    Append(text, 's', static_cast<std::int64_t>(own->size()));
    text += *own;
  } else if (const VariantArray* array = value.AsArray()) {
    AppendArray(text, *array);
  } else {
    Append(text, 'n', 0);
  }
}

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }

  std::optional<Variant> Next(int depth = 0) {
    if (rest_.empty() || depth > kDeepest) return std::nullopt;
    const char tag = rest_.front();
    rest_.remove_prefix(1);
    const auto number = Number();
    if (!number) return std::nullopt;
    if (tag == 'm') return NextDecimal(*number);
    if (!Take(':')) return std::nullopt;
    switch (tag) {
      case 'n':
        return Variant();
      case 'b':
        return Variant(*number != 0);
      case 'i':
        return Variant(*number);
      case 'r':
        return Variant(std::bit_cast<double>(*number));
      case 'd':
        return Variant(Date{static_cast<std::int32_t>(*number)});
      case 't':
        return Variant(Stamp{*number});
      case 's':
        return NextText(*number);
      case 'a':
        return NextArray(*number, depth);
      default:
        return std::nullopt;
    }
  }

 private:
  std::optional<std::int64_t> Number() {
    std::int64_t number = 0;
    const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (read.ec != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
    return number;
  }
  bool Take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }
  std::optional<Variant> NextDecimal(std::int64_t mantissa) {
    if (!Take('.')) return std::nullopt;
    const auto scale = Number();
    if (!scale || *scale < 0 || *scale > Decimal::kMaxScale || !Take(':')) return std::nullopt;
    return Variant(Decimal(mantissa, static_cast<int>(*scale)));
  }
  std::optional<Variant> NextText(std::int64_t size) {
    if (size < 0 || static_cast<std::uint64_t>(size) > rest_.size()) return std::nullopt;
    Variant text(rest_.substr(0, static_cast<std::size_t>(size)));
    rest_.remove_prefix(static_cast<std::size_t>(size));
    return text;
  }
  std::optional<Variant> NextArray(std::int64_t size, int depth) {
    if (size < 0) return std::nullopt;
    VariantArray array;
    for (std::int64_t i = 0; i < size; ++i) {
      auto element = Next(depth + 1);
      if (!element) return std::nullopt;
      array.push_back(std::move(*element));
    }
    return Variant(std::move(array));
  }

  std::string_view rest_;
};

}  // namespace

std::string EncodeValue(const Variant& value) {
  std::string text;
  Append(text, value);
  return text;
}

std::optional<Variant> DecodeValue(std::string_view text) {
  Reader reader(text);
  auto value = reader.Next();
  if (!value || !reader.AtEnd()) return std::nullopt;
  return value;
}

}  // namespace orvane::server
