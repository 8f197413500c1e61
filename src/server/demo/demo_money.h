#pragma once

// Currencies of the demonstration company and the rates of its central bank, national currency for
// one unit.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "packet/date.h"
#include "packet/decimal.h"

namespace orvane::server {

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

/// A rate in euro per working day and currency of 2025 and 2026, ascending by currency and day. The
/// lev has the one rate at which it was replaced.
std::vector<DemoRate> DemoRates(std::uint32_t seed);
/// The same in levs; the euro has the one rate to which the lev was fixed.
std::vector<DemoRate> DemoRatesInLevs(std::uint32_t seed);
/// So many euro, or parts of one, in levs.
std::int64_t EuroInLevs(std::int64_t euro);
/// The latest rate not later than `day`; 1 for the national currency. `rates` are ascending.
Decimal DemoRateOn(const std::vector<DemoRate>& rates, std::int16_t currency, Date day);

}  // namespace orvane::server
