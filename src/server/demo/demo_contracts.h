#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "packet/date.h"
#include "server/demo/demo_goods.h"
#include "server/demo/demo_partners.h"
#include "server/demo/demo_writer.h"

namespace orvane::server {

struct DemoContract {
  std::int32_t id = 0;
  const DemoPartner* supplier = nullptr;
  Date signedOn;
  std::optional<Date> finish;
  bool renewed = false;        ///< by itself, at the end of its term
  bool throughOrders = false;  ///< purchases go through supplier orders
  bool transport = false;      ///< included in the price
  std::int16_t choice = 3;
  std::int16_t list = 1;
  std::int16_t paymentDays = 0;  ///< 0: the supplier's

  DemoKind Kind() const { return supplier->trade; }
};

/// Ascending by identifier. Suppliers of capital goods, raw materials and goods for resale have one
/// that is in force through 2025 and 2026, some also one that ended; others may have one.
/// `partners` outlive the answer.
std::vector<DemoContract> DemoContracts(const std::vector<DemoPartner>& partners,
                                        std::uint32_t seed);

void AddContracts(DemoWriter& writer, const std::vector<DemoContract>& contracts);

}  // namespace orvane::server
