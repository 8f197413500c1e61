#pragma once

// Currencies of the demonstration company and the rates of its central bank, national currency (the
// euro) for one unit.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "packet/date.h"
#include "packet/decimal.h"

namespace orvane {

struct DemoCurrency {
  std::int16_t code;
  std::string_view name;
  std::string_view name2;
  std::string_view letters;  ///< three, of ISO 4217
};
std::span<const DemoCurrency> DemoCurrencies();

struct DemoRate {
  std::int16_t currency;
  Date day;
  Decimal rate;  ///< seven places
};

/// A rate per working day and currency of 2025 and 2026, ascending by currency and day. The lev has
/// the one rate at which it was replaced.
std::vector<DemoRate> DemoRates(std::uint32_t seed);
/// The latest rate not later than `day`; 1 for the euro. `rates` are DemoRates.
Decimal DemoRateOn(const std::vector<DemoRate>& rates, std::int16_t currency, Date day);

}  // namespace orvane
