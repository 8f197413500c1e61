#include "server/documents/values.h"

namespace orvane::server {
namespace {

constexpr int kQuantityDecimals = 6;
constexpr int kAmountDecimals = 4;

/// The value without zeros behind its last digit, so that products keep room.
Decimal Shortened(Decimal value) {
  for (int scale = 0; scale < value.Scale(); ++scale) {
    if (const auto shorter = value.AtScale(scale)) return *shorter;
  }
  return value;
}

}  // namespace

std::optional<Decimal> ValueOf(Decimal price, double quantity, std::int64_t numerator, Decimal rate,
                               int decimals) {
  const auto exact = Decimal::FromDouble(quantity, kQuantityDecimals);
  if (!exact || numerator <= 0 || rate.IsZero()) return std::nullopt;
  return Shortened(price)
      .Times(Shortened(*exact))
      .DividedBy(Decimal(numerator, 0))
      .DividedBy(Shortened(rate))
      .RoundedHalfUp(decimals);
}

std::optional<Decimal> InNational(Decimal amount, Decimal rate, int decimals) {
  return amount.Times(rate).RoundedHalfUp(decimals);
}

std::optional<Decimal> SumOf(std::span<const Decimal> amounts) {
  std::optional<Decimal> sum = Decimal(0, kAmountDecimals);
  for (const Decimal amount : amounts) {
    if (sum) sum = sum->Plus(amount);
  }
  return sum ? sum->AtScale(kAmountDecimals) : std::nullopt;
}

Decimal AsAmount(Decimal value) {
  return value.AtScale(kAmountDecimals).value_or(value);
}

Failure TooGreat(const std::string& what) {
  return Refused(what + " е твърде голяма стойност. Проверете количеството, цената и курса.");
}

}  // namespace orvane::server
