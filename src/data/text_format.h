#pragma once

// Values as the user reads and types them: dates dd.mm.yyyy, decimal comma, thousands parted by a
// thin space, and the other way round with a sentence for whatever cannot be read.

#include <string>
#include <string_view>

#include "packet/date.h"
#include "packet/typed_number.h"
#include "packet/value_kind.h"
#include "packet/variant.h"

namespace orvane::data {

struct TextFormat {
  ValueKind kind = ValueKind::Int32;
  int size = 0;              ///< code points of a String
  int decimals = -1;         ///< shown decimals of a decimal; -1: as many as it has, without zeros
  bool trimmed = false;      ///< `decimals` at most: zeros at the end are left out
  bool grouped = false;      ///< thousands parted (amounts; never codes)
  bool withSeconds = false;  ///< stamps with seconds
  bool dayOnly = false;      ///< stamps as the day alone
  TimeZone zone;             ///< for stamps
};

/// Kinds that are typed as numbers (neither dates nor "Да").
bool IsNumber(ValueKind kind);
/// What a field of this format takes as a number.
WantedNumber WantedBy(const TextFormat& format);

/// Null is the empty text; a Bool is "Да" or "Не".
std::string FormatValue(const Variant& value, const TextFormat& format);

/// Reads what the user typed; blanks only are Null. Failure (Refused, without mark) is a Bulgarian
/// sentence without the field's name: "„32.01.2026“ не е дата. Въведете ден.месец.година.".
Answer<Variant> ParseValue(std::string_view text, const TextFormat& format);

}  // namespace orvane::data
