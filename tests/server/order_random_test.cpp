// Random things done to orders and to requests against them: whatever is refused, what is stored
// stays what its parts say, and no order gives more than it holds.

#include <random>

#include "server/check/check.h"
#include "server/check/check_documents.h"
#include "server/order_world.h"
#include "support/seed.h"

namespace orvane::server {
namespace {

constexpr int kOperations = 500;
constexpr int kOrders = 4;
constexpr int kRequests = 8;

class RandomOrders : public OrderCase {
 protected:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
  std::int64_t Any(int count) { return 1 + Below(count); }
  std::string AnyOf(std::initializer_list<const char*> logins) {
    return logins.begin()[Below(static_cast<int>(logins.size()))];
  }
  int AnyDecision() { return ApprovalRejected + Below(3); }
  /// The present number of a document's sendings, now and then a former one.
  int Sending(const std::string& table, const std::string& key, std::int64_t id) {
    const auto last = world.Server().Value(
        "select SendingNumber from " + table + " where " + key + " = ?1", ValueKind::Int32, {id});
    return static_cast<int>(last.AsInt().value_or(0)) - (Below(10) == 0 ? 1 : 0);
  }
  int LevelStatus(const std::string& table, const std::string& key, std::int64_t id, int level) {
    return static_cast<int>(world.Server()
                                .Value("select Status from " + table + " where " + key +
                                           " = ?1 and ConfirmationLevel = ?2",
                                       ValueKind::Byte, {id, level})
                                .AsInt()
                                .value_or(ApprovalWaiting));
  }

  std::string OnAnOrder() {
    const std::int64_t id = Any(kOrders);
    const int status = world.OrderStatus(id);
    switch (Below(7)) {
      case 0:
        return world.MoveOrder(AnyOf({"author", "kolev"}), id, status, Entered);
      case 1:
        return world.MoveOrder("author", id, status, ForApproval);
      case 2:
        return world.MoveOrder("author", id, status, status == Completed ? Fulfilling : Completed);
      case 3:
        return Below(20) == 0 ? world.AnnulOrder("author", id) : "ok";
      case 4:
        return world.ApplyOrder(
            "author", "dspSuppManOrderDet",
            InsertOf(OrderWorld::OrderRow(id, 1 + Below(3), 20 + Below(3), 1000.0 * Below(9))));
      default: {
        const int level = 1 + Below(2);
        const int from = LevelStatus("SuppManOrderAdmin", "SuppManOrderId", id, level);
        return world.DecideOrder(
            AnyOf({"kolev", "petrova", "deputy"}), id, level, from,
            from == ApprovalWaiting && Below(3) != 0 ? int{ApprovalGiven} : AnyDecision(),
            Sending("SuppManifacOrder", "IdNumber", id));
      }
    }
  }

  std::string OnARequest() {
    const std::int64_t id = Any(kRequests);
    const int status = world.StatusOf(id);
    switch (Below(6)) {
      case 0:
        return world.Move("author", id, status, Entered);
      case 1:
      case 2:
        return world.Move("author", id, status, ForApproval);
      case 3:
        return world.AddRow(id, 1 + Below(3), 20 + Below(3), 1000.0 * Below(5), "0",
                            Below(4) == 0 ? Variant() : Variant(Any(kOrders)));
      case 4:
        return Below(20) == 0 ? world.Annul("author", id) : "ok";
      default: {
        const int from = LevelStatus("PurchaseOrderAdm", "PurchaseOrderId", id, 1);
        return world.Decide("kolev", id, 1, from, AnyDecision(),
                            Sending("PurchaseOrder", "POIdNumber", id));
      }
    }
  }

  /// What is stored and is not what its parts say.
  std::string Findings() {
    const auto found = CheckDocuments(world.Server().Base());
    if (!found) return found.GetFailure().message;
    std::string text;
    for (const std::string& finding : *found)
      text += finding + "\n";
    const std::int64_t tooMuch = world.Count(
        "SuppManOrderDet e where e.Quantity < coalesce((select sum(d.Quantity) from"
        " PurchaseOrderDet d join PurchaseOrder p on p.POIdNumber = d.PurchaseOrderId"
        " where d.SuppManifacOrderId = e.SuppManOrderId and d.SerialNumber = e.SerialNumber"
        " and p.AnnulOn is null and p.Status between 3 and 7), 0)");
    return text + (tooMuch == 0 ? "" : "an order gives more than it holds\n");
  }

  std::mt19937 engine;
};
INSTANTIATE_TEST_SUITE_P(Engines, RandomOrders, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RandomOrders, WhateverIsDoneWhatIsStoredStaysTrue) {
  const unsigned seed = Seed();
  engine.seed(seed);
  world.AddLevel(3, 1, 0, 0, ApproverKind::CostCenterHead, DocumentKind::SupplierOrder);
  world.AddLevel(3, 2, 0, 0, ApproverKind::SectionHead, DocumentKind::SupplierOrder);
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  for (std::int64_t id = 1; id <= kOrders; ++id) {
    ASSERT_EQ(world.SentOrder(), id);
    ASSERT_EQ(world.DecideOrder("kolev", id, 1, ApprovalWaiting, ApprovalGiven), "ok");
    ASSERT_EQ(world.DecideOrder("petrova", id, 2, ApprovalWaiting, ApprovalGiven), "ok");
  }
  for (std::int64_t id = 1; id <= kRequests; ++id) {
    ASSERT_EQ(world.AddDate(world.NewRequest(3)), "ok");
    ASSERT_EQ(world.AddRow(id, 1, 20, 3000, "0", 1 + id % kOrders), "ok");
  }
  int done = 0;
  for (int operation = 1; operation <= kOperations; ++operation) {
    const std::string answer = Below(2) == 0 ? OnAnOrder() : OnARequest();
    done += answer == "ok" ? 1 : 0;
    ASSERT_EQ(Findings(), "") << "operation " << operation << ", seed " << seed << ": " << answer;
  }
  const auto whole = CheckDatabase(world.Server().Base(), world.Server().Time().Now());
  ASSERT_TRUE(whole) << whole.GetFailure().message;
  EXPECT_EQ(*whole, std::vector<std::string>{}) << "history tells another story, seed " << seed;
  EXPECT_GT(done, kOperations / 10) << "most is refused, but not all";
  EXPECT_GT(world.Count("History where TableName = 'SuppManifacOrder' and ColumnName = 'Status'"
                        " and NewValue = '6'"),
            0)
      << "an order was taken from";
}

}  // namespace
}  // namespace orvane::server
