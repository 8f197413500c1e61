#pragma once

// What the parts of the demonstration company know of each other.

#include <cstdint>
#include <string>
#include <vector>

#include "packet/date.h"
#include "packet/decimal.h"
#include "server/demo/demo_goods.h"
#include "server/demo/demo_money.h"
#include "server/demo/demo_partners.h"
#include "server/demo/demo_units.h"
#include "server/demo/demo_writer.h"

namespace orvane::server {

struct DemoEmployee {
  std::int64_t code = 0;
  std::string name;
  std::string name2;
  std::string login;  ///< empty: does not work with the system
};

struct DemoNotifier {
  std::int64_t costCenter = 0;
  std::int64_t employee = 0;
};

struct DemoWorld {
  std::uint32_t seed = 1;
  std::int16_t national = kEuro;        ///< the national currency
  bool settings = true;                 ///< those of the purchases module are filled in
  std::vector<DemoEmployee> employees;  ///< ascending by code
  std::vector<DemoNotifier> notifiers;  ///< ascending
  std::vector<DemoPartner> partners;
  std::vector<DemoRate> rates;
};

DemoWorld MakeDemoWorld(std::uint32_t seed, std::int16_t national, bool settings);

/// Price of an entry in force on a day, in hundredths of the company's national currency.
std::int64_t PriceIn(const DemoWorld& world, const DemoEntry& entry, Date day);

/// So much of an entry, bought by a supply-list choice on a day, in a currency with that rate.
struct DemoPurchase {
  const DemoEntry* entry = nullptr;
  std::int16_t choice = 3;
  Date day;
  std::int64_t quantity = 0;  ///< in smallest units
  Decimal rate;
  int percent = 100;  ///< of the price in force
};
/// What it costs, in hundredths of that currency.
std::int64_t DemoCost(const DemoWorld& world, const DemoPurchase& purchase);
/// So many hundredths of a currency with that rate, in hundredths of the national one.
std::int64_t DemoInNational(std::int64_t currCents, Decimal rate);

/// Employee under whom what nobody decided is recorded.
inline constexpr std::int64_t kServiceEmployee = 1999;

/// An amount of `cents` hundredths.
inline Decimal Cents(std::int64_t cents) {
  return Decimal(cents * 100, 4);
}

/// Departments, sections, cost centres, who heads and who stands in; people who are not users;
/// levels of approval and settings.
void AddOrganisation(DemoWriter& writer, const DemoWorld& world);
/// Employee who stands in for that head (see DemoHead) on a day; 0 when nobody does.
std::int64_t DemoDeputy(const DemoCostCenter& center, int kind, Date day);
/// Partners, currencies and rates, descriptions of documents.
void AddPartners(DemoWriter& writer, const DemoWorld& world);
/// Units, materials, services, stores, the supply lists and who supplies what.
void AddGoods(DemoWriter& writer, const DemoWorld& world);

}  // namespace orvane::server
