#pragma once

// Quantities. They are kept as doubles counted in the smallest unit of their block of measures, and
// compared and added at six decimals by the functions here, on client and server alike. Their text
// is in the row's own unit: 500 pieces in dozens read "41 8/12", 1250,5 kilograms read "1 250,5".

#include <cstdint>
#include <string>
#include <string_view>

#include "packet/failure.h"

namespace orvane {

/// How the quantity of one row is read and typed.
struct QuantityUnit {
  std::int32_t rowNumerator = 1;  ///< size of the row's unit, in smallest units; at least 1
  std::int32_t decimals = 0;      ///< decimals of the entry, 0 to 6
  bool ordinaryFraction =
      false;  ///< the unit is counted in whole ones and a rest over rowNumerator
  std::int32_t ownNumerator = 0;  ///< size of the entry's own unit; 0: the row's is its own
};

/// The quantity at six decimals, which is how quantities are compared.
double RoundedQuantity(double quantity);
/// Negative, 0 or positive as left is below, equal to or above right at six decimals.
int CompareQuantities(double left, double right);

/// In the row's unit: "3 5/12" for ordinary fractions, otherwise with a comma and as many decimals
/// as make it exact, six at most. Thousands are parted by thin blanks, which may be typed back or
/// left out.
std::string QuantityToStr(double quantity, const QuantityUnit& unit);

/// What was typed, in smallest units, read as all numbers are; for ordinary fractions with a rest
/// ("3 5/12", "5/12"). Refused, in a Bulgarian sentence, when it is none of these, negative, too
/// large, or counted in the entry's own unit would have more decimals than the entry.
Answer<double> StrToQuantity1(std::string_view text, const QuantityUnit& unit);

}  // namespace orvane
