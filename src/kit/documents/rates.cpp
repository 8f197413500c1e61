#include "kit/documents/rates.h"

namespace orvane::kit {
namespace {

constexpr int kRateDecimals = 7;
const Variant kRateOne = Variant(Decimal(10'000'000, kRateDecimals));

}  // namespace

void ShowOrderRate(TField& rate) {
  constexpr int kShown = 6;
  rate.Format.decimals = kShown;
  rate.Format.trimmed = true;
}

void SetRateOfExchange(const RateRule& rule) {
  if (!rule.head.Editing()) return;
  TField& rate = rule.head.FieldByName(rule.rateField);
  const Variant currency = rule.head.FieldByName(rule.currencyField).Value();
  if (currency.AsInt() == rule.nationalCurrency) {
    rate.Set(kRateOne);
    return;
  }
  const Variant day = rule.head.FieldByName(rule.dateField).Value();
  if (currency.IsNull() || day.IsNull()) {
    rate.Set(kRateOne);
    return;
  }
  rule.cdsRatesOfExchange.DataRequest(Variant(VariantArray{rule.centralBank, currency, day}));
  rule.cdsRatesOfExchange.Connection()->Close();
  const Variant found = rule.cdsRatesOfExchange.IsEmpty()
                            ? Variant()
                            : rule.cdsRatesOfExchange.FieldByName("CurrencyRate1").Value();
  rate.Set(found.IsNull() ? kRateOne : found);
}

}  // namespace orvane::kit
