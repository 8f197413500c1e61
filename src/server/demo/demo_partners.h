#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/demo/demo_goods.h"

namespace orvane::server {

/// Kinds of currency, by their codes.
enum DemoCurrencyCode : std::int16_t {
  kEuro = 1,
  kLev = 2,
  kDollar = 3,
  kPound = 4,
  kTurkishLira = 5,
  kYuan = 6,
};

struct DemoTown {
  std::int32_t code;  ///< the postal code
  std::string_view name;
  std::string_view name2;
};
std::span<const DemoTown> DemoTowns();

/// A company with which the demonstration company deals.
struct DemoPartner {
  std::int64_t code = 0;
  std::string name;
  std::string name2;
  std::string eik;  ///< empty for foreign ones
  bool supplier = true;
  DemoKind trade = kOtherMaterials;  ///< what it mainly sells
  std::int16_t currency = kEuro;
  std::int16_t choice = 0;       ///< way of choosing from the supply list; 0: the company's
  std::int16_t list = 0;         ///< kind of supply list; 0: none of its own
  std::int16_t paymentDays = 0;  ///< 0: the company's
  std::int32_t town = 0;         ///< 0 for foreign ones
  std::string address;
  std::string address2;
  std::string telephone;
  std::string email;
};

/// Partner whose rates of exchange are used; sells nothing.
inline constexpr std::int64_t kCentralBank = 1;
inline constexpr std::int64_t kFirstSupplier = 5001;

/// The central bank, some two hundred suppliers and a few customers, ascending by code.
std::vector<DemoPartner> DemoPartners(std::uint32_t seed);

/// Description of the invoices for what is bought of a kind.
std::int32_t DemoInvoiceDescr(DemoKind kind);

/// Entries of his trade that a supplier sells: some thirty, or all when there are fewer.
std::vector<const DemoEntry*> DemoOffer(const DemoPartner& supplier);

}  // namespace orvane::server
