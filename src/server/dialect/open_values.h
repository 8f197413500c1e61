#pragma once

// Values of a search that do not decide what statement it becomes. A literal or parameter that a
// row's column is compared with may be another one next time: the statement stays, its parameter is
// read anew. Everything else (what is worked out before rendering, nulls, the kind of a LIKE
// pattern) decides.

#include <optional>
#include <string_view>

#include "packet/date.h"
#include "packet/variant.h"
#include "server/dialect/like_pattern.h"

namespace orvane::server::dialect {

enum class OpenReading : unsigned char {
  Whole,            ///< as a value of `kind`, or its fold
  PatternText,      ///< the text of a LIKE pattern
  PatternBound,     ///< what lies behind every text that begins with the pattern's
  PatternLike,      ///< the pattern as the engines write it
  PatternTrigrams,  ///< what an index of trigrams is asked
};

/// Which of the given values a parameter of the rendered statement is, and how it is read.
struct OpenValue {
  int given = -1;  ///< among literals and then named parameters; -1: the value decides
  OpenReading reading = OpenReading::Whole;
  ValueKind kind = ValueKind::Int32;
  bool folded = false;
  LikeKind like = LikeKind::Exact;
  bool trigrams = false;  ///< of a pattern: whether it has any

  bool IsOpen() const { return given >= 0; }
};

/// The parameter for another given value; empty when with it the statement would be another.
std::optional<Variant> ReadOpen(const OpenValue& open, const Variant& given, const TimeZone& zone);

/// A named parameter as a constant of the statement; empty when it is no plain value.
std::optional<Variant> PlainParameter(const Variant& value);
/// Digits, with or without a point, as a constant; empty beyond what a number may be.
std::optional<Variant> NumberConstant(std::string_view text, bool whole);

}  // namespace orvane::server::dialect
