#pragma once

// Numbers as people write them. Fields, quantities, filters and the calculator all read by this one
// function; what can be meant in two ways is refused with both readings and never guessed.
//
//   ReadNumber("1.250,50", {.decimals = 2})   1250,50: the last mark parts the decimals
//   ReadNumber("7,", {.decimals = 2})         7
//   ReadNumber("1.250", {.decimals = 2})      refused: 1250 or 1,25
//
// The rule: digits may be parted into threes by blanks, points or commas. Of point and comma the
// one that stands last parts the decimals; a mark that stands several times parts thousands. One
// mark alone parts decimals, except before exactly three digits and behind one to three that do not
// begin with 0: then a point is never guessed, and a comma parts decimals only where the field has
// three decimals or more, because so the program itself shows them.

#include <cstddef>
#include <string_view>

#include "packet/decimal.h"
#include "packet/failure.h"

namespace orvane {

struct WantedNumber {
  int decimals = 0;    ///< that the place holds, 0 to Decimal::kMaxScale
  bool money = false;  ///< a sign of a currency may stand behind ("лв.", "€", "BGN")
};

/// The number meant by `text`, with no more decimals than wanted. Refused with a whole Bulgarian
/// sentence when it is none, has more decimals, is too large, or may be read in two ways.
Answer<Decimal> ReadNumber(std::string_view text, const WantedNumber& wanted);

/// The length of the blank that `text` begins with: a space, a no-break or a thin one; else 0.
std::size_t BlankLength(std::string_view text);

}  // namespace orvane
