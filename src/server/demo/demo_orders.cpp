#include "server/demo/demo_orders.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "contract/workflow.h"
#include "server/demo/demo_levels.h"
#include "server/demo/demo_random.h"
#include "server/demo/demo_tables.h"
#include "server/demo/demo_units.h"

namespace orvane::server {
namespace {

constexpr std::int64_t kUsedOrders = 24;
/// Statuses of the orders behind those that requests use.
constexpr int kOtherStatuses[] = {
    Approved,    Approved, Approved, Approved, Approved, Approved, ForApproval, ForApproval,
    ForApproval, Entered,  Entered,  Entered,  Rejected, Rejected, Annulled,    Annulled};
constexpr std::int64_t kOrders = kUsedOrders + static_cast<std::int64_t>(std::size(kOtherStatuses));
constexpr std::int64_t kBuyer = 1007;
constexpr std::string_view kBuyersLogin = "todorova";
constexpr std::int64_t kOrderingCenters[] = {3001, 1001, 1101, 3101};

int StatusOf(std::int64_t number, std::int64_t used) {
  if (number > kUsedOrders) return kOtherStatuses[number - kUsedOrders - 1];
  if (number > used) return Approved;
  return number % 4 == 0 ? Completed : Fulfilling;
}

const DemoCostCenter& CenterOf(const DemoOrder& order) {
  const std::int64_t code = kOrderingCenters[order.id % 4];
  return *std::find_if(DemoCostCenters().begin(), DemoCostCenters().end(),
                       [&](const DemoCostCenter& row) { return row.code == code; });
}

DemoOrder MakeOrder(std::int32_t id, const DemoContract& contract, DemoRandom& random) {
  DemoOrder order;
  order.id = id;
  order.contract = &contract;
  const auto offer = DemoOffer(*contract.supplier);
  const int count = std::min(random.Between(3, 8), static_cast<int>(offer.size()));
  auto at = static_cast<std::size_t>(random.Below(static_cast<int>(offer.size())));
  for (int i = 0; i < count; ++i) {
    const DemoEntry& entry = *offer[at++ % offer.size()];
    const std::int64_t units = static_cast<std::int64_t>(entry.usual) * 4 * random.Between(5, 20);
    order.rows.push_back({&entry, units * DemoMeasureOf(entry.measure).numerator});
  }
  return order;
}

/// Moments of an order's life; it is placed before the first request.
struct Moments {
  Date day;
  Stamp created;
  Stamp sent;
  Stamp decided;
};

Moments MomentsOf(const DemoOrder& order) {
  const TimeZone zone;
  const bool used = order.id <= kUsedOrders;
  Moments moments;
  moments.day = used ? *Date::FromYmd(2025, 1, 3)
                     : Date::FromYmd(2026, 1, 12)->PlusDays(static_cast<int>(order.id));
  moments.created = zone.At(moments.day, 9, order.id % 60);
  moments.sent = zone.At(moments.day, 11, order.id % 60);
  moments.decided = zone.At(moments.day, 15, order.id % 60);
  return moments;
}

Decimal RateOf(const DemoWorld& world, const DemoOrder& order) {
  return DemoRateOn(world.rates, order.contract->supplier->currency, MomentsOf(order).day);
}

/// In hundredths of the order's currency.
std::int64_t CostOf(const DemoWorld& world, const DemoOrder& order, const DemoOrderRow& row) {
  return DemoCost(world, {row.entry, order.contract->choice, MomentsOf(order).day, row.quantity,
                          RateOf(world, order)});
}

void AddHead(DemoWriter& writer, const DemoWorld& world, const DemoOrder& row) {
  const Moments moments = MomentsOf(row);
  const DemoContract& contract = *row.contract;
  const std::int16_t currency = contract.supplier->currency;
  const Decimal rate = RateOf(world, row);
  std::int64_t currCents = 0;
  for (const DemoOrderRow& own : row.rows)
    currCents += CostOf(world, row, own);
  const bool annulled = row.status == Annulled;
  const bool sent = row.status != Entered && !annulled;
  const auto when = [](bool is, Stamp moment) { return is ? Variant(moment) : Variant(); };
  const auto who = [](bool is) { return is ? Variant(kBuyersLogin) : Variant(); };
  writer.Add(demo::kOrders, {row.id,
                             moments.day,
                             "Рамкова поръчка към " + contract.supplier->name,
                             "Frame order to " + contract.supplier->name2,
                             moments.day.PlusDays(3),
                             *Date::FromYmd(2026, 12, 31),
                             CenterOf(row).code,
                             static_cast<int>(contract.Kind()),
                             contract.supplier->code,
                             contract.id,
                             contract.transport ? 2 : 1,
                             static_cast<int>(currency),
                             rate,
                             Cents(DemoInNational(currCents, rate)),
                             Cents(currCents),
                             kBuyer,
                             kBuyersLogin,
                             moments.created,
                             who(sent),
                             when(sent, moments.sent),
                             row.status,
                             who(annulled),
                             when(annulled, moments.decided),
                             sent ? 1 : 0,
                             who(sent),
                             when(sent, moments.sent)});
}

void AddDecision(DemoWriter& writer, const DemoOrder& row) {
  if (row.status == Entered || row.status == Annulled) return;
  const DemoLevel& level = DemoLevels(DocumentKind::SupplierOrder, row.contract->Kind()).front();
  const int approver = static_cast<int>(level.approver);
  const std::int64_t head = DemoHead(CenterOf(row), approver);
  const bool decided = row.status != ForApproval;
  const int status = row.status == Rejected ? ApprovalRejected
                     : decided              ? ApprovalGiven
                                            : ApprovalWaiting;
  writer.Add(demo::kOrderApproval,
             {row.id, level.level, 1, approver, status, decided ? Variant(head) : Variant(),
              decided ? Variant(MomentsOf(row).decided) : Variant()});
  writer.Add(demo::kTurns, {head, static_cast<int>(DocumentKind::SupplierOrder), row.id, 0});
}

void AddRows(DemoWriter& writer, const DemoWorld& world, const DemoOrder& order) {
  int number = 0;
  for (const DemoOrderRow& row : order.rows) {
    const std::int32_t numerator = DemoMeasureOf(row.entry->measure).numerator;
    writer.Add(
        demo::kOrderRows,
        {order.id, ++number, row.entry->serialNumber, static_cast<int>(row.entry->measure),
         static_cast<double>(row.quantity), numerator, numerator, OrNull(row.entry->material),
         OrNull(row.entry->service), Cents(CostOf(world, order, row))});
  }
}

}  // namespace

std::int64_t DemoOrdersUsed(std::int64_t documents) {
  return std::min(kUsedOrders, documents / kRequestsPerOrderUse);
}

std::vector<DemoOrder> DemoOrders(const std::vector<DemoContract>& contracts,
                                  std::int64_t documents, std::uint32_t seed) {
  std::vector<const DemoContract*> open;
  for (const DemoContract& contract : contracts) {
    const bool ended = contract.finish && contract.finish->Year() < 2026;
    if (contract.throughOrders && !ended) open.push_back(&contract);
  }
  std::vector<DemoOrder> orders;
  const std::int64_t used = DemoOrdersUsed(documents);
  for (std::int64_t number = 1; number <= kOrders; ++number) {
    DemoRandom random(seed, "order", static_cast<std::uint64_t>(number));
    const DemoContract& contract = *open[static_cast<std::size_t>(number) * 7 % open.size()];
    orders.push_back(MakeOrder(static_cast<std::int32_t>(number), contract, random));
    orders.back().status = StatusOf(number, used);
  }
  return orders;
}

void AddOrders(DemoWriter& writer, const DemoWorld& world, const std::vector<DemoOrder>& orders) {
  for (const DemoOrder& order : orders)
    AddHead(writer, world, order);
  for (const DemoOrder& order : orders) {
    AddRows(writer, world, order);
    AddDecision(writer, order);
  }
}

}  // namespace orvane::server
