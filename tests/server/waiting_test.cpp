// What waits for somebody's decision: his turn now, as head or as deputy, and nothing else.

#include "contract/system.h"
#include "server/order_world.h"

namespace orvane::server {
namespace {

class Waiting : public OrderCase {
 protected:
  Answer<VariantArray> Ask(const std::string& login) {
    return world.Server()->Call(
        world.As(login).At(Point::LevelsApproval),
        {std::string(system::kLevelsApprovalClass), std::string(system::kCountWaiting), {}});
  }
  /// "2:17 1:4": kinds of register of which some wait for him, each with the first one.
  std::string First(const std::string& login) {
    std::string text;
    const auto answer = Ask(login);
    for (const Variant& kind : *(*answer)[1].AsArray()) {
      const VariantArray& pair = *kind.AsArray();
      text += (text.empty() ? "" : " ") + pair[0].ToText() + ":" + pair[1].ToText();
    }
    return text;
  }
  /// "kolev 1 petrova 0 …" for everybody who may decide.
  std::string Counts() {
    std::string text;
    for (const std::string login : {"kolev", "deputy", "petrova", "dimitrov", "author", "boss"}) {
      const auto answer = Ask(login);
      text += (text.empty() ? "" : " ") + login + " " +
              (answer ? answer->front().ToText() : answer.GetFailure().message);
    }
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, Waiting, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Waiting, IsTheTurnOfEachKindOfHeadAndOfHisDeputy) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.AddLevel(4, 2, 0, 1000, ApproverKind::SectionHead);
  world.AddLevel(4, 3, 0, 1000, ApproverKind::DepartmentHead);
  EXPECT_EQ(Counts(), "kolev 0 deputy 0 petrova 0 dimitrov 0 author 0 boss 0");
  const std::int64_t one = world.SentRequest();
  const std::int64_t two = world.SentRequest();
  EXPECT_EQ(Counts(), "kolev 2 deputy 2 petrova 0 dimitrov 0 author 0 boss 0");
  ASSERT_EQ(world.Decide("kolev", one, 1, ApprovalWaiting, ApprovalGiven), "ok");
  EXPECT_EQ(Counts(), "kolev 1 deputy 1 petrova 1 dimitrov 0 author 0 boss 0");
  ASSERT_EQ(world.Decide("petrova", one, 2, ApprovalWaiting, ApprovalGiven), "ok");
  EXPECT_EQ(Counts(), "kolev 1 deputy 1 petrova 0 dimitrov 1 author 0 boss 0");
  ASSERT_EQ(world.Decide("kolev", two, 1, ApprovalWaiting, ApprovalRejected), "ok");
  EXPECT_EQ(Counts(), "kolev 0 deputy 0 petrova 0 dimitrov 1 author 0 boss 0");
  ASSERT_EQ(world.Decide("dimitrov", one, 3, ApprovalWaiting, ApprovalGiven), "ok");
  EXPECT_EQ(Counts(), "kolev 0 deputy 0 petrova 0 dimitrov 0 author 0 boss 0");
}

TEST_P(Waiting, CountsOrdersBesideRequests) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.AddLevel(3, 1, 0, 0, ApproverKind::CostCenterHead, DocumentKind::SupplierOrder);
  world.AddLevel(3, 2, 0, 0, ApproverKind::SectionHead, DocumentKind::SupplierOrder);
  const std::int64_t request = world.SentRequest();
  world.SentRequest();
  const std::int64_t order = world.SentOrder();
  EXPECT_EQ(First("kolev"), "2:" + std::to_string(request) + " 1:" + std::to_string(order));
  EXPECT_EQ(First("petrova"), "");
  EXPECT_EQ(Counts(), "kolev 3 deputy 3 petrova 0 dimitrov 0 author 0 boss 0");
  ASSERT_EQ(world.DecideOrder("kolev", order, 1, ApprovalWaiting, ApprovalGiven), "ok");
  EXPECT_EQ(Counts(), "kolev 2 deputy 2 petrova 1 dimitrov 0 author 0 boss 0");
  EXPECT_EQ(First("petrova"), "1:" + std::to_string(order));
}

TEST_P(Waiting, EndsWhenTheDocumentIsTakenBack) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(Counts(), "kolev 1 deputy 1 petrova 0 dimitrov 0 author 0 boss 0");
  ASSERT_EQ(world.Move("author", id, ForApproval, Entered), "ok");
  EXPECT_EQ(Counts(), "kolev 0 deputy 0 petrova 0 dimitrov 0 author 0 boss 0");
}

}  // namespace
}  // namespace orvane::server
