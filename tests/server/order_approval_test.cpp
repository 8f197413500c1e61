// Supplier orders in approval, and what requests against them do to their statuses.

#include <functional>
#include <thread>

#include "server/check/check.h"
#include "server/order_world.h"

namespace orvane::server {
namespace {

constexpr int kWaiting = ApprovalWaiting;
constexpr int kGiven = ApprovalGiven;

class OrderApproval : public OrderCase {
 protected:
  void Levels(std::initializer_list<ApproverKind> approvers) {
    int level = 0;
    for (const ApproverKind approver : approvers)
      world.AddLevel(3, ++level, 0, 0, approver, DocumentKind::SupplierOrder);
  }
  std::int64_t ApprovedOrder() {
    const std::int64_t id = world.SentOrder();
    EXPECT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven), "ok");
    EXPECT_EQ(world.OrderStatus(id), Approved);
    return id;
  }
  /// A request of so many grams of entry 20 against the order, entered.
  std::int64_t Against(std::int64_t order, double quantity) {
    const std::int64_t id = world.NewRequest(3);
    EXPECT_EQ(world.AddRow(id, 1, 20, quantity, "0", order), "ok");
    EXPECT_EQ(world.AddDate(id), "ok");
    return id;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, OrderApproval, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(OrderApproval, SendingNeedsARowAndLevels) {
  const std::int64_t id = world.NewOrder();
  EXPECT_EQ(world.MoveOrder("author", id, Entered, ForApproval),
            "!!Err_Поръчка за производство 1 няма редове. Въведете поне един ред с материал или "
            "услуга.");
  ASSERT_EQ(world.AddOrderRow(id, 1, 23, 8000), "ok");
  EXPECT_EQ(world.MoveOrder("author", id, Entered, ForApproval),
            "!!Err_Поръчка за производство 1, ред 1: пореден номер 23 няма цена към датата на "
            "документа. Въведете цена в списъка за доставка и запишете реда отново.");
  world.RunSql("update BaseSupplyList set Price = (select max(Price) from BaseSupplyList)");
  world.RunSql("update SuppliesContracts set ManifacOrder = 0 where IdNumber = 30");
  EXPECT_NE(world.MoveOrder("author", id, Entered, ForApproval).find("вече не се прави поръчка"),
            std::string::npos);
  world.RunSql("update SuppliesContracts set ManifacOrder = 1, FreezeDate = ContractDate");
  EXPECT_NE(world.MoveOrder("author", id, Entered, ForApproval).find("не е действащ днес"),
            std::string::npos);
  world.RunSql("update SuppliesContracts set FreezeDate = null");
  world.RunSql("update Partners set PartnerTypeSupplier = 0");
  EXPECT_NE(world.MoveOrder("author", id, Entered, ForApproval).find("вече не е доставчик"),
            std::string::npos);
  world.RunSql("update Partners set PartnerTypeSupplier = 1");
  EXPECT_NE(world.MoveOrder("author", id, Entered, ForApproval).find("не може да бъде изпратена"),
            std::string::npos)
      << "nothing is approved because nobody may decide";
  world.AddLevel(3, 1, 0, 1000, ApproverKind::CostCenterHead);
  EXPECT_NE(world.MoveOrder("author", id, Entered, ForApproval), "ok") << "levels of requests";
  EXPECT_EQ(world.OrderStatus(id), Entered);
  Levels({ApproverKind::CostCenterHead, ApproverKind::DepartmentHead});
  EXPECT_EQ(world.MoveOrder("author", id, Entered, ForApproval), "ok");
  EXPECT_EQ(world.OrderLevels(id), "1:2 2:2");
  EXPECT_EQ(world.Count("ApprovalTurn where KindRegister = 1 and DocumentVersion = 0"), 2)
      << "the head and his deputy";
}

TEST_P(OrderApproval, LevelsAreDecidedInOrderAndTheLoadTellsEachHisPart) {
  Levels({ApproverKind::CostCenterHead, ApproverKind::SectionHead, ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  const struct {
    const char* login;
    int level;
    int from;
    int to;
    const char* answer;  ///< a part of a refusal
    DocumentStatus status;
    const char* kolev;
    const char* petrova;
  } steps[] = {
      {"petrova", 2, kWaiting, kGiven, "още не е на ред", ForApproval, "A- 20@1", "-- 00@0"},
      {"author", 1, kWaiting, kGiven, "не сте одобряващ", ForApproval, "A- 20@1", "-- 00@0"},
      {"kolev", 1, kWaiting, kGiven, "ok", PartlyApproved, "-W 03@1", "A- 20@2"},
      {"kolev", 1, kGiven, kWaiting, "ok", ForApproval, "A- 20@1", "-- 00@0"},
      {"deputy", 1, kWaiting, kGiven, "ok", PartlyApproved, "-- 00@0", "A- 20@2"},
      {"kolev", 1, kGiven, kWaiting, "от друг служител", PartlyApproved, "-- 00@0", "A- 20@2"},
      {"petrova", 2, kWaiting, ApprovalRejected, "ok", Rejected, "-- 00@0", "-W 01@2"},
      {"petrova", 2, ApprovalRejected, kGiven, "ok", PartlyApproved, "A- 20@3", "-W 03@2"},
      {"kolev", 3, kWaiting, kGiven, "ok", Approved, "-W 03@3", "-- 00@0"},
      {"petrova", 2, kGiven, kWaiting, "по-високо ниво вече е решило", Approved, "-W 03@3",
       "-- 00@0"},
      {"kolev", 3, kGiven, kWaiting, "ok", PartlyApproved, "A- 20@3", "-W 03@2"},
  };
  for (const auto& step : steps) {
    const std::string answer = world.DecideOrder(step.login, id, step.level, step.from, step.to);
    EXPECT_NE(answer.find(step.answer), std::string::npos) << step.answer << "\n" << answer;
    EXPECT_EQ(world.OrderStatus(id), step.status) << answer;
    EXPECT_EQ(world.PartIn("kolev", id), step.kolev) << answer;
    EXPECT_EQ(world.PartIn("petrova", id), step.petrova) << answer;
  }
  EXPECT_EQ(world.Column("select ConfirmedFrom + UnConfirmedFrom from SuppManOrderAdmin"
                         " where ConfirmationLevel = 3 and ConfermedOn is not null"),
            "202")
      << "a withdrawn decision keeps who had decided";
  const VariantArray told = world.LoadOrder("author", Nav::ByKey, id);
  const DataPacket& levels = *told[supplier_order::get_record::kApprovals].AsPacket();
  EXPECT_TRUE(levels.At(1, "WaitsFor").IsNull());
  EXPECT_EQ(levels.At(2, "WaitsFor").ToText(), "Служител 101, Служител 104");
}

TEST_P(OrderApproval, AWithdrawnDecisionKeepsItsReason) {
  Levels({ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  const int rejected = ApprovalRejected;
  const struct {
    int from;
    int to;
    std::optional<Variant> note;
    const char* kept;
  } steps[] = {
      {kWaiting, rejected, "Скъпо", "Скъпо"},      {rejected, kWaiting, std::nullopt, "Скъпо"},
      {kWaiting, rejected, std::nullopt, "Скъпо"},  // told again it is no change
      {rejected, kGiven, std::nullopt, ""},        {kGiven, rejected, "Старо", "Старо"},
      {rejected, kWaiting, std::nullopt, "Старо"}, {kWaiting, kGiven, Variant(), ""},
  };
  std::string before;
  for (const auto& step : steps) {
    Change change = UpdateOf({{"SuppManOrderId", id},
                              {"ConfirmationLevel", 1},
                              {"SendingNumber", 1},
                              {"Status", step.from}},
                             {{"Status", step.to}});
    if (step.note) {
      change.before.push_back({"ApprovalNote", before.empty() ? Variant() : Variant(before)});
      change.after.push_back({"ApprovalNote", *step.note});
    }
    EXPECT_EQ(world.ApplyOrder("kolev", "dspSuppManOrderAdmin", change), "ok");
    before =
        world.Column("select coalesce(ApprovalNote, '') from SuppManOrderAdmin", ValueKind::String);
    EXPECT_EQ(before, step.kept) << step.from << " to " << step.to;
  }
}

TEST_P(OrderApproval, WhoeverHasATurnMayNotWithdrawMeanwhile) {
  Levels({ApproverKind::CostCenterHead, ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  ASSERT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven), "ok");
  EXPECT_EQ(world.PartIn("kolev", id), "A- 20@2") << "one field carries the level";
}

TEST_P(OrderApproval, ADecisionOnAFormerSendingIsAConflict) {
  Levels({ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  ASSERT_EQ(world.MoveOrder("author", id, ForApproval, Entered), "ok");
  EXPECT_EQ(world.OrderLevels(id), "") << "correction takes the levels away";
  EXPECT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven),
            "Поръчка за производство 1 не приема решения: статусът вече е „Въведен“.");
  ASSERT_EQ(world.MoveOrder("author", id, Entered, ForApproval), "ok");
  const std::string outdated = world.DecideOrder("kolev", id, 1, kWaiting, kGiven, 1);
  EXPECT_NE(outdated.find("е изпратена отново за одобрение"), std::string::npos) << outdated;
  EXPECT_TRUE(outdated.ends_with("Прегледайте я отново.")) << outdated;
  EXPECT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven, 2), "ok");
  EXPECT_EQ(world.WhereOrder("deputy", Nav::ByKey, id), "2:1") << "he had a turn";
}

TEST_P(OrderApproval, EditOnTheQueuesPointIsEnoughToDecide) {
  Levels({ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  const auto grant = [&](Point point, int rights) {
    ASSERT_TRUE(world.Server().Admin().Grant("kolev", static_cast<int>(point), rights));
  };
  grant(Point::ApprovalQueue, 1);
  EXPECT_NE(world.DecideOrder("kolev", id, 1, kWaiting, kGiven, 1, Point::ApprovalQueue), "ok");
  grant(Point::ApprovalQueue, 3);
  EXPECT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven, 1, Point::ApprovalQueue), "ok");
}

TEST_P(OrderApproval, OnADecidersOwnScreenOpenIsEnough) {
  Levels({ApproverKind::CostCenterHead});
  const std::int64_t id = world.SentOrder();
  const auto grant = [&](int rights) {
    ASSERT_TRUE(
        world.Server().Admin().Grant("kolev", static_cast<int>(Point::SupplierOrders), rights));
  };
  grant(0);
  EXPECT_NE(world.DecideOrder("kolev", id, 1, kWaiting, kGiven), "ok");
  grant(1);
  EXPECT_EQ(world.DecideOrder("kolev", id, 1, kWaiting, kGiven), "ok");
}

TEST_P(OrderApproval, AnOrderOnWhichARequestStandsIsNotTakenBack) {
  Levels({ApproverKind::CostCenterHead});
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  const std::int64_t order = ApprovedOrder();
  const std::int64_t request = Against(order, 3000);
  EXPECT_EQ(world.OrderStatus(order), Approved) << "an entered request takes nothing";
  ASSERT_EQ(world.Move("author", request, Entered, ForApproval), "ok");
  EXPECT_EQ(world.OrderStatus(order), Fulfilling);
  for (const int to : {kWaiting, static_cast<int>(ApprovalRejected)})
    EXPECT_EQ(world.DecideOrder("kolev", order, 1, kGiven, to),
              "Поръчка за производство 1 не приема решения: статусът вече е „В изпълнение“.");
  EXPECT_NE(world.MoveOrder("author", order, Fulfilling, Entered), "ok");
  EXPECT_NE(world.AnnulOrder("author", order), "ok");
  EXPECT_EQ(world.PartIn("kolev", order), "-- 00@0");
  ASSERT_EQ(world.Move("author", request, ForApproval, Entered), "ok");
  EXPECT_EQ(world.OrderStatus(order), Approved);
  ASSERT_EQ(world.DecideOrder("kolev", order, 1, kGiven, kWaiting), "ok");
  EXPECT_NE(world.Move("author", request, Entered, ForApproval).find("не е одобрена"),
            std::string::npos)
      << "what it was raised against is approved no more";
}

TEST_P(OrderApproval, ACompletedOrderThatIsReopenedFollowsItsRequests) {
  Levels({ApproverKind::CostCenterHead});
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  const std::int64_t order = ApprovedOrder();
  EXPECT_NE(world.MoveOrder("author", order, Approved, Completed), "ok") << "from 6 only";
  const std::int64_t request = Against(order, 3000);
  ASSERT_EQ(world.Move("author", request, Entered, ForApproval), "ok");
  ASSERT_EQ(world.MoveOrder("author", order, Fulfilling, Completed), "ok");
  EXPECT_NE(world.AddRow(world.NewRequest(3), 1, 20, 1, "0", order).find("е приключена"),
            std::string::npos);
  ASSERT_EQ(world.MoveOrder("author", order, Completed, Fulfilling), "ok");
  EXPECT_EQ(world.OrderStatus(order), Fulfilling);
  ASSERT_EQ(world.MoveOrder("author", order, Fulfilling, Completed), "ok");
  ASSERT_EQ(world.Move("author", request, ForApproval, Entered), "ok");
  EXPECT_EQ(world.OrderStatus(order), Completed) << "nothing else moves it";
  ASSERT_EQ(world.MoveOrder("author", order, Completed, Fulfilling), "ok");
  EXPECT_EQ(world.OrderStatus(order), Approved) << "no request is left against it";
}

TEST_P(OrderApproval, OnesOwnOrderIsNotDecidedWhereTheConfigurationForbidsIt) {
  Levels({ApproverKind::CostCenterHead});
  world.RunSql("update CostCenters set Chief = 100 where CostCenter = 1001");
  const std::int64_t id = world.SentOrder();
  EXPECT_EQ(world.PartIn("author", id), "A- 20@1");
  ServerOptions strict;
  strict.sessions.passwordCost = PasswordCost::Lowest();
  strict.documents.mayApproveOwn = false;
  OrvaneServer other(world.Server().Base(), world.Server().Time(), strict);
  const ApplyRequest decide{
      "TsmSuppManifacOrder",
      "dspSuppManOrderAdmin",
      0,
      {},
      {UpdateOf(
          {{"SuppManOrderId", id}, {"ConfirmationLevel", 1}, {"SendingNumber", 1}, {"Status", 2}},
          {{"Status", 3}})}};
  const auto refused = other.Apply(world.As("author").At(Point::SupplierOrders), decide);
  ASSERT_TRUE(refused);
  EXPECT_NE(refused->outcomes[0].failure->message.find("е ваш документ"), std::string::npos);
  EXPECT_EQ(world.DecideOrder("author", id, 1, kWaiting, kGiven), "ok");
}

// --- two people at once --------------------------------------------------------------------------

TEST_P(OrderApproval, AWithdrawalAgainstARequestThatIsSentEqualsOneBeforeTheOther) {
  Levels({ApproverKind::CostCenterHead});
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  world.As("author");
  world.As("kolev");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t order = ApprovedOrder();
    const std::int64_t request = Against(order, 3000);
    std::string withdrawn;
    std::thread other([&] { withdrawn = world.DecideOrder("kolev", order, 1, kGiven, kWaiting); });
    const std::string sent = world.Move("author", request, Entered, ForApproval);
    other.join();
    EXPECT_NE(withdrawn == "ok", sent == "ok") << withdrawn << "\n" << sent;
    EXPECT_EQ(world.OrderStatus(order), sent == "ok" ? Fulfilling : ForApproval);
    EXPECT_EQ(world.StatusOf(request), sent == "ok" ? ForApproval : Entered);
  }
}

TEST_P(OrderApproval, SendingAgainstAChangeOfARowEqualsOneBeforeTheOther) {
  Levels({ApproverKind::CostCenterHead});
  world.As("author");
  world.As("boss");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.NewOrder();
    ASSERT_EQ(world.AddOrderRow(id, 1, 20, 8000), "ok");
    std::string deleted;
    std::thread other([&] {
      deleted = world.ApplyOrder("boss", "dspSuppManOrderDet",
                                 DeleteOf({{"SuppManOrderId", id}, {"RowNumber", 1}}));
    });
    const std::string sent = world.MoveOrder("author", id, Entered, ForApproval);
    other.join();
    EXPECT_NE(deleted == "ok", sent == "ok") << deleted << "\n" << sent;
    EXPECT_EQ(world.OrderStatus(id), sent == "ok" ? ForApproval : Entered);
  }
}

// --- what is stored ------------------------------------------------------------------------------

TEST_P(OrderApproval, TheCheckFindsStatusesAndSumsThatAreNotTheirRows) {
  Levels({ApproverKind::CostCenterHead});
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  const std::int64_t order = ApprovedOrder();
  const std::int64_t request = Against(order, 3000);
  ASSERT_EQ(world.Move("author", request, Entered, ForApproval), "ok");
  const auto findings = [&] {
    const auto found = CheckDatabase(world.Server().Base(), world.Server().Time().Now());
    std::string text;
    if (!found) return found.GetFailure().message;
    for (const std::string& finding : *found)
      text += finding + "\n";
    return text;
  };
  ASSERT_EQ(findings(), "");
  const struct {
    const char* breaks;
    const char* mends;
    const char* names;
  } cases[] = {
      {"update WSysUsers set Blocked = 1 where ShortName in ('kolev', 'deputy')",
       "update WSysUsers set Blocked = 0",
       "Искане за покупка 1 чака решение, което никой не може да вземе. Началникът на център за "
       "разход 1001"},
      {"update SuppManifacOrder set Status = 5", "update SuppManifacOrder set Status = 6",
       "Статусът на поръчка за производство 1 "},
      {"update SuppManOrderAdmin set Status = 2", "update SuppManOrderAdmin set Status = 3",
       "Статусът на поръчка за производство 1 "},
      {"update PurchaseOrder set Status = 5", "update PurchaseOrder set Status = 3",
       "Статусът на искане за покупка 1 "},
      {"update SuppManOrderDet set CurrSumWithoutVAT = 0",
       "update SuppManOrderDet set CurrSumWithoutVAT = 0 + (select CurrSumManifacOrder from "
       "SuppManifacOrder)",
       "Сумата на поръчка за производство 1 "},
      {"update PurchaseOrder set SumPurchaseOrder = SumPurchaseOrder + 1",
       "update PurchaseOrder set SumPurchaseOrder = SumPurchaseOrder - 1",
       "Сумата на искане за покупка 1 "},
  };
  for (const auto& row : cases) {
    world.RunSql(row.breaks);
    EXPECT_EQ(findings().find(row.names), 0u) << row.breaks << "\n" << findings();
    world.RunSql(row.mends);
    ASSERT_EQ(findings(), "") << row.mends;
  }
}

}  // namespace
}  // namespace orvane::server
