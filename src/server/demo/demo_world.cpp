#include "server/demo/demo_world.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "server/demo/demo_people.h"
#include "server/demo/demo_random.h"
#include "server/demo/demo_text.h"
#include "server/demo/demo_units.h"

namespace orvane::server {
namespace {

__extension__ typedef __int128 Wide;

constexpr std::int64_t kRateOne = 10'000'000;

std::int64_t RoundedQuotient(Wide numerator, Wide denominator) {
  return static_cast<std::int64_t>((2 * numerator + denominator) / (2 * denominator));
}

constexpr std::string_view kMen[] = {"Иван",  "Димитър", "Красимир", "Пламен", "Борис",
                                     "Тодор", "Явор",    "Любомир",  "Асен",   "Калоян"};
constexpr std::string_view kWomen[] = {"Анна",    "Виолета", "Гергана", "Радост",  "Силвия",
                                       "Теодора", "Цветана", "Росица",  "Надежда", "Лилия"};
constexpr std::string_view kFamilies[] = {"Александров", "Борисов", "Велков", "Генчев",   "Динев",
                                          "Желев",       "Златев",  "Илиев",  "Йорданов", "Кирилов",
                                          "Лазаров",     "Манолов", "Начев",  "Пенев",    "Радев",
                                          "Савов",       "Танев",   "Узунов", "Филипов",  "Цонев"};
constexpr std::int64_t kFirstColleague = 1101;
constexpr int kColleagues = 56;

/// Who of the users asks for which cost centres, beside the heads for their own.
struct Asks {
  std::int64_t employee;
  std::int64_t costCenter;
};
constexpr Asks kAsks[] = {
    {1001, 1001}, {1001, 1002}, {1001, 1003}, {1001, 1101}, {1001, 1102},  {1001, 3001},
    {1006, 1201}, {1008, 3102}, {1009, 4001}, {1009, 4101}, {1012, 12001},
};
constexpr std::int64_t kBuyer = 1007;  // asks for everybody

DemoEmployee Colleague(int number, DemoRandom& random) {
  const bool woman = random.Percent(50);
  std::string name(woman ? random.Of(kWomen) : random.Of(kMen));
  name += " " + std::string(random.Of(kFamilies)) + (woman ? "а" : "");
  return {kFirstColleague + number, name, InLatin(name), ""};
}

/// Two colleagues of each cost centre, the heads and those of the table.
std::vector<DemoNotifier> Notifiers() {
  std::vector<DemoNotifier> notifiers;
  std::int64_t colleague = kFirstColleague;
  for (const DemoCostCenter& center : DemoCostCenters()) {
    notifiers.push_back({center.code, colleague++});
    notifiers.push_back({center.code, colleague++});
    notifiers.push_back({center.code, center.chief});
    if (center.chief != kBuyer) notifiers.push_back({center.code, kBuyer});
  }
  for (const Asks& row : kAsks) {
    const bool known =
        std::any_of(notifiers.begin(), notifiers.end(), [&](const DemoNotifier& own) {
          return own.costCenter == row.costCenter && own.employee == row.employee;
        });
    if (!known) notifiers.push_back({row.costCenter, row.employee});
  }
  std::sort(notifiers.begin(), notifiers.end(), [](const auto& left, const auto& right) {
    return std::tie(left.costCenter, left.employee) < std::tie(right.costCenter, right.employee);
  });
  return notifiers;
}

}  // namespace

DemoWorld MakeDemoWorld(std::uint32_t seed, std::int16_t national, bool settings) {
  DemoWorld world;
  world.seed = seed;
  world.national = national;
  world.settings = settings;
  for (const DemoPerson& person : DemoPeople()) {
    if (person.employee == 0) continue;
    world.employees.push_back({person.employee, std::string(person.name), std::string(person.name2),
                               std::string(person.login)});
  }
  for (int number = 0; number < kColleagues; ++number) {
    DemoRandom random(seed, "colleague", static_cast<std::uint64_t>(number));
    world.employees.push_back(Colleague(number, random));
  }
  world.employees.push_back({kServiceEmployee, "Служебно одобряване", "Approval by Service", ""});
  world.notifiers = Notifiers();
  world.partners = DemoPartners(seed);
  for (DemoPartner& partner : world.partners) {
    if (partner.town != 0) partner.currency = national;
  }
  world.rates = national == kLev ? DemoRatesInLevs(seed) : DemoRates(seed);
  return world;
}

std::int64_t PriceIn(const DemoWorld& world, const DemoEntry& entry, Date day) {
  const std::int64_t euroCents = DemoPriceOn(entry, day);
  return world.national == kLev ? EuroInLevs(euroCents) : euroCents;
}

std::int64_t DemoCost(const DemoWorld& world, const DemoPurchase& purchase) {
  // By list counts the undated price, otherwise the one in force on the day.
  const Date day = purchase.choice == 1 ? DemoPriceDays().back() : purchase.day;
  return RoundedQuotient(
      Wide(PriceIn(world, *purchase.entry, day)) * purchase.quantity * purchase.percent * kRateOne,
      Wide(DemoMeasureOf(purchase.entry->measure).numerator) * purchase.rate.Mantissa() * 100);
}

std::int64_t DemoInNational(std::int64_t currCents, Decimal rate) {
  return RoundedQuotient(Wide(currCents) * rate.Mantissa(), kRateOne);
}

}  // namespace orvane::server
