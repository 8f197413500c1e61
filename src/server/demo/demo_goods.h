#pragma once

// What the demonstration company buys: units of measure, materials in families ("Ламарина 0,5 мм"
// to "Ламарина 10 мм") and services, each an entry of the supply list with a price.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packet/date.h"

namespace orvane::server {

/// Kinds of supply, by their codes.
enum DemoKind : std::int16_t {
  kCapital = 1,
  kRawMaterials = 2,  ///< ОСМ
  kWares = 3,
  kPricedServices = 4,
  kOtherMaterials = 5,
  kMixed = 6,
  kServices = 7,
  kEntertainment = 8,  ///< has no levels of approval
  kSubscriptions = 9,
  kRepairs = 10,
};

/// A unit of measure. Units of one hundred of codes convert into each other.
struct DemoMeasure {
  std::int16_t code;
  std::string_view name;
  std::string_view name2;
  std::int32_t numerator;  ///< size in the smallest unit of its block
  bool ordinaryFraction;
};
std::span<const DemoMeasure> DemoMeasures();
/// Of a code that is in the table.
const DemoMeasure& DemoMeasureOf(std::int16_t code);

/// An entry of the supply list: a material or a service.
struct DemoEntry {
  std::int64_t serialNumber = 0;
  std::int32_t material = 0;  ///< its code; 0 for a service
  std::int32_t service = 0;   ///< its code; 0 for a material
  DemoKind kind = kOtherMaterials;
  std::string name;
  std::string name2;
  std::int16_t measure = 0;         ///< the unit to which its price belongs
  std::int16_t incomeMeasure = 0;   ///< in which it is received
  std::int16_t barCodeMeasure = 0;  ///< 0: none
  std::int16_t decimals = 0;        ///< of quantities
  std::int64_t priceCents = 0;      ///< at first, in euro
  int usual = 1;                    ///< a usual quantity, in its unit
};
/// Ascending by serial number; materials first.
const std::vector<DemoEntry>& DemoEntries();

/// Whole per cent; 20 is the usual, with which tables leave it empty.
std::int64_t DemoVatPercent(const DemoEntry& entry);
inline constexpr std::int64_t kUsualVat = 20;

/// Days on which new prices came into force, ascending.
std::span<const Date> DemoPriceDays();
/// Price in force on a day, in hundredths of a euro; the first one before all of them.
std::int64_t DemoPriceOn(const DemoEntry& entry, Date day);

}  // namespace orvane::server
