#pragma once

// What prices, quantities and rates come to: exact, rounded once, half up.

#include <optional>
#include <span>

#include "packet/decimal.h"
#include "packet/failure.h"

namespace orvane::server {

/// price × quantity ÷ numerator ÷ rate. The price is in national currency for `numerator` smallest
/// units; the quantity is in smallest units at six decimals. Empty when it does not fit.
std::optional<Decimal> ValueOf(Decimal price, double quantity, std::int64_t numerator, Decimal rate,
                               int decimals);

/// amount × rate in national currency; empty when it does not fit.
std::optional<Decimal> InNational(Decimal amount, Decimal rate, int decimals);

/// The sum at four decimals; empty when it does not fit.
std::optional<Decimal> SumOf(std::span<const Decimal> amounts);

/// An amount as tables keep it.
Decimal AsAmount(Decimal value);

/// The refusal in the place of an amount that does not fit.
Failure TooGreat(const std::string& what);

}  // namespace orvane::server
