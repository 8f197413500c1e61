#include "server/demo/demo_money.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "server/demo/demo_partners.h"
#include "server/demo/demo_random.h"

namespace orvane::server {
namespace {

constexpr int kRatePlaces = 7;
constexpr std::int64_t kOne = 10'000'000;

constexpr DemoCurrency kCurrencies[] = {
    {kEuro, "Евро", "Euro", "EUR"},
    {kLev, "Български лев", "Bulgarian Lev", "BGN"},
    {kDollar, "Щатски долар", "US Dollar", "USD"},
    {kPound, "Британска лира", "Pound Sterling", "GBP"},
    {kTurkishLira, "Турска лира", "Turkish Lira", "TRY"},
    {kYuan, "Китайски юан", "Yuan Renminbi", "CNY"},
};

/// Where a currency stood at the turns of the years, in ten-millionths of a euro. Between them it
/// moves in a straight line with a little noise.
struct Course {
  std::int16_t currency;
  std::int64_t begin2025;
  std::int64_t begin2026;
  std::int64_t end2026;
  int noise;  ///< at most so many millionths of itself a day either way
};
constexpr Course kCourses[] = {
    {kDollar, 9625000, 8515000, 8620000, 5200},
    {kPound, 12060000, 11460000, 11390000, 3600},
    {kTurkishLira, 272000, 198500, 171000, 6400},
    {kYuan, 1318000, 1217000, 1239000, 4300},
};
/// 1 / 1.95583 at seven places.
constexpr std::int64_t kLevInEuro = 5112919;
constexpr std::int64_t kEuroInLevs = 19558300;

bool IsWorkingDay(Date day) {
  const int weekday = (day.days + 3) % 7;  // 0 Monday; 1 January 1970 was a Thursday
  return weekday < 5;
}

std::int64_t Between(std::int64_t from, std::int64_t to, int day, int days) {
  return from + (to - from) * day / days;
}

}  // namespace

std::span<const DemoCurrency> DemoCurrencies() {
  return kCurrencies;
}

std::vector<DemoRate> DemoRates(std::uint32_t seed) {
  const Date first = *Date::FromYmd(2025, 1, 2);
  const Date turn = *Date::FromYmd(2026, 1, 1);
  const Date last = *Date::FromYmd(2026, 12, 31);
  std::vector<DemoRate> rates = {{kLev, first, Decimal(kLevInEuro, kRatePlaces)}};
  for (const Course& course : kCourses) {
    DemoRandom random(seed, "rate", static_cast<std::uint64_t>(course.currency));
    for (Date day = first; day <= last; day = day.PlusDays(1)) {
      if (!IsWorkingDay(day)) continue;
      const std::int64_t base = day < turn ? Between(course.begin2025, course.begin2026,
                                                     day.days - first.days, turn.days - first.days)
                                           : Between(course.begin2026, course.end2026,
                                                     day.days - turn.days, last.days - turn.days);
      const std::int64_t noise = base * random.Between(-course.noise, course.noise) / 1'000'000;
      rates.push_back({course.currency, day, Decimal(base + noise, kRatePlaces)});
    }
  }
  return rates;
}

std::int64_t EuroInLevs(std::int64_t euro) {
  return (euro * kEuroInLevs + kOne / 2) / kOne;
}

std::vector<DemoRate> DemoRatesInLevs(std::uint32_t seed) {
  std::vector<DemoRate> rates;
  for (const DemoRate& row : DemoRates(seed)) {
    DemoRate rate = row;
    // The euro takes the lev's place.
    if (row.currency == kLev) rate.currency = kEuro;
    rate.rate =
        Decimal(row.currency == kLev ? kEuroInLevs : EuroInLevs(row.rate.Mantissa()), kRatePlaces);
    rates.push_back(rate);
  }
  return rates;
}

Decimal DemoRateOn(const std::vector<DemoRate>& rates, std::int16_t currency, Date day) {
  const auto after = std::upper_bound(
      rates.begin(), rates.end(), std::pair(currency, day),
      [](const auto& key, const DemoRate& row) { return key < std::pair(row.currency, row.day); });
  if (after == rates.begin() || std::prev(after)->currency != currency) {
    return Decimal(kOne, kRatePlaces);
  }
  return std::prev(after)->rate;
}

}  // namespace orvane::server
