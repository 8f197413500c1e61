#pragma once

// The rate of exchange of a document's currency on its day.

#include "data/client_dataset.h"

namespace orvane::kit {

/// Where a document keeps its currency, and who publishes the rates.
struct RateRule {
  TVosClientDataSet& head;
  TVosClientDataSet& cdsRatesOfExchange;
  std::string_view currencyField = "KindCurrency";
  std::string_view rateField = "RateOfExchange";
  std::string_view dateField = "DocumentDate";
  Variant centralBank;
  std::int64_t nationalCurrency = 0;
};

/// The rate of a supplier order is shown and typed with six decimals at most.
void ShowOrderRate(TField& rate);

/// Only while the head is in edit or insert: 1 for the national currency; otherwise the central
/// bank's rate, asked for with one call, or 1 when there is none or currency or day is missing yet.
void SetRateOfExchange(const RateRule& rule);

}  // namespace orvane::kit
