#pragma once

// The calculator that every screen has at hand: sums with exact decimals, typed as they are
// written.

#include <string_view>

#include "packet/decimal.h"
#include "packet/failure.h"

namespace orvane::host {

class TVosBaseForm;

/// Works out numbers with + - * / and parentheses ("x", "×", "÷" and ":" are taken too); comma or
/// point, blanks anywhere. Products and quotients are kept at six decimals, half away from zero.
/// Refused, in a sentence, for what cannot be read, a division by zero and numbers out of range.
Answer<Decimal> Calculate(std::string_view text);

/// Shows the calculator over `owner`; returns when it is closed.
void RunCalculator(TVosBaseForm& owner);

}  // namespace orvane::host
