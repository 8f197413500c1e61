#pragma once

// The rate of a currency on a day: the central bank's latest that is not later.

#include <string_view>

#include "packet/date.h"
#include "server/documents/settings.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

inline constexpr std::string_view kRateOnDay =
    "select CurrencyRate1 from RatesOfExchange where Partner = :Bank and KindCurrency = :Currency"
    " and RateDate <= :Day order by RateDate desc limit 1";

/// Answers CurrencyRate1, no row when the bank has none yet.
inline Statement SelectRate(const DocumentSettings& settings, std::int64_t currency, Date day) {
  return Named(kRateOnDay,
               {{"Bank", settings.centralBank.value_or(0)}, {"Currency", currency}, {"Day", day}},
               {{"CurrencyRate1", ValueKind::Rate, 0}});
}

}  // namespace orvane::server
