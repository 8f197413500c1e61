#pragma once

#include <cstdint>
#include <vector>

#include "server/demo/demo_contracts.h"
#include "server/demo/demo_goods.h"
#include "server/demo/demo_world.h"
#include "server/demo/demo_writer.h"

namespace orvane::server {

struct DemoOrderRow {
  const DemoEntry* entry = nullptr;
  std::int64_t quantity = 0;  ///< in smallest units
};

/// An order to a supplier against which purchases are requested.
struct DemoOrder {
  std::int32_t id = 0;
  const DemoContract* contract = nullptr;
  int status = 0;
  std::vector<DemoOrderRow> rows;
};

/// Every so many requests one is made against an order.
inline constexpr std::int64_t kRequestsPerOrderUse = 40;
/// Each use takes a fourth of the order, so that something is left.
inline constexpr std::int64_t kUsesOfOrder = 3;
inline constexpr std::int64_t kPartOfOrder = 4;

/// Ascending by identifier. The first ones are being fulfilled or completed, as many as `documents`
/// requests will use; the others are in every other status. `contracts` outlive the answer.
std::vector<DemoOrder> DemoOrders(const std::vector<DemoContract>& contracts,
                                  std::int64_t documents, std::uint32_t seed);
/// How many of them requests use.
std::int64_t DemoOrdersUsed(std::int64_t documents);

void AddOrders(DemoWriter& writer, const DemoWorld& world, const std::vector<DemoOrder>& orders);

}  // namespace orvane::server
