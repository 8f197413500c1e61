#include "server/dialect/open_values.h"

#include <cmath>
#include <string>

#include "packet/fold.h"
#include "server/dialect/typed.h"

namespace orvane::server::dialect {
namespace {

std::optional<Variant> ReadWhole(const OpenValue& open, const Variant& given,
                                 const TimeZone& zone) {
  std::optional<Variant> value = Conform(given, open.kind, zone);
  if (!value || !open.folded) return value;
  return Variant(Fold(*value->AsString()));
}

std::optional<Variant> ReadPattern(const OpenValue& open, const Variant& given) {
  const std::string* written = given.AsString();
  if (written == nullptr) return std::nullopt;
  std::optional<LikePattern> pattern = ReadLikePattern(*written, open.folded);
  if (!pattern || pattern->kind != open.like || pattern->trigrams.empty() == open.trigrams) {
    return std::nullopt;
  }
  if (open.reading == OpenReading::PatternLike) return Variant(pattern->AsLike());
  if (open.reading == OpenReading::PatternTrigrams) return Variant(std::move(pattern->trigrams));
  if (open.like != LikeKind::Beginning) return Variant(std::move(pattern->text));
  // Without a text or a bound a beginning is no range.
  std::string bound = PrefixUpperBound(pattern->text);
  if (pattern->text.empty() || bound.empty()) return std::nullopt;
  const bool isBound = open.reading == OpenReading::PatternBound;
  return Variant(isBound ? std::move(bound) : std::move(pattern->text));
}

}  // namespace

std::optional<Variant> ReadOpen(const OpenValue& open, const Variant& given, const TimeZone& zone) {
  if (given.IsNull()) return std::nullopt;
  if (open.reading == OpenReading::Whole) return ReadWhole(open, given, zone);
  return ReadPattern(open, given);
}

std::optional<Variant> PlainParameter(const Variant& value) {
  if (value.AsPacket() != nullptr || value.AsArray() != nullptr) return std::nullopt;
  if (std::holds_alternative<bool>(value.Raw())) return Variant(*value.AsInt());
  if (const auto* real = std::get_if<double>(&value.Raw())) {
    // There is no minus zero.
    return std::isfinite(*real) ? std::optional<Variant>(*real + 0.0) : std::nullopt;
  }
  const std::string* text = value.AsString();
  const bool plain = text == nullptr || (IsUtf8(*text) && text->find('\0') == std::string::npos);
  return plain ? std::optional(value) : std::nullopt;
}

std::optional<Variant> NumberConstant(std::string_view text, bool whole) {
  const std::optional<Decimal> number = Decimal::Parse(text);
  if (!number) return std::nullopt;
  return whole ? Variant(number->Mantissa()) : Variant(*number);
}

}  // namespace orvane::server::dialect
