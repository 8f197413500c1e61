// New versions and copies of requests: what they take, what they leave behind, and who may.

#include <thread>

#include "packet/faulty_door.h"
#include "server/request_world.h"

namespace orvane::server {
namespace {

class RequestCopies : public RequestCase {
 protected:
  std::string Make(const std::string& login, int kind, std::int64_t id, int version = 1) {
    const auto told =
        world.Call(login, "TsmPurchaseOrderReport", {"NewRec", kind, id, version, login});
    if (!told) return told.GetFailure().message;
    return (*told)[0].ToText() + ":" + (*told)[1].ToText() + "/" + (*told)[2].ToText();
  }
  std::string Version(std::int64_t id, int version = 1) { return Make("author", 2, id, version); }
  std::string Copy(const std::string& login, std::int64_t id) { return Make(login, 3, id); }

  /// Head, rows, schedule and plan of a request as one text.
  std::string Whole(std::int64_t id, int version) {
    const std::string key = " where PurchaseOrderId = " + std::to_string(id) +
                            " and PurchaseOrderVer = " + std::to_string(version);
    const auto part = [&](const std::string& columns, const std::string& table) {
      return world.Column("select " + columns + " from " + table + key + " order by 1",
                          ValueKind::String);
    };
    return part(
               "cast(RowNumber as text) || '=' || cast(SerialNumber as text) || 'x' || "
               "cast(cast(Quantity as integer) as text) || '@' || "
               "coalesce(cast(SuppManifacOrderId as text), '-')",
               "PurchaseOrderDet") +
           " | " + part("cast(Delivered as text)", "PurchaseOrderDel") + " | " +
           part("cast(RowNumber as text) || ':' || coalesce(cast(SupplyInvoiceId as text), '-')",
                "PurchaseOrderPayPl");
  }

  std::string AddPayment(std::int64_t id, const char* sum) {
    return world.Apply("author", "dspPurchaseOrderPayPl",
                       InsertOf({{"PurchaseOrderId", id},
                                 {"PurchaseOrderVer", 1},
                                 {"RowNumber", Variant()},
                                 {"InvoiceDate", *Date::FromYmd(2026, 3, 10)},
                                 {"SumWithVAT", *Decimal::Parse(sum)->AtScale(4)},
                                 {"AdvancePayment", false},
                                 {"AdvanceStatement", false},
                                 {"PaymentDate", *Date::FromYmd(2026, 3, 20)}}));
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, RequestCopies, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestCopies, ANewVersionTakesEverythingAndMakesTheFormerOld) {
  const std::int64_t order = world.AddOrder(20, 50000);
  const std::int64_t id = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "0", order), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  ASSERT_EQ(AddPayment(id, "120"), "ok");
  ASSERT_EQ(world.Move("author", id, Entered, ForApproval), "ok");
  ASSERT_EQ(world.StatusOf(id), Approved);
  EXPECT_EQ(world.Column("select Status from SuppManifacOrder"), "6");
  EXPECT_EQ(Version(id), "1:1/2");
  EXPECT_EQ(Whole(id, 2), Whole(id, 1));
  EXPECT_EQ(Whole(id, 2), "1=20x8000@1 | 0 | 1:-");
  EXPECT_EQ(world.StatusOf(id, 2), Entered);
  EXPECT_EQ(world.StatusOf(id, 1), Approved);
  EXPECT_EQ(
      world.Column("select cast(OldVersion as integer) from PurchaseOrder order by POVersion"),
      "1 0");
  EXPECT_EQ(world.Column("select Status from SuppManifacOrder"), "5")
      << "what the former version took is free again";
  EXPECT_EQ(world.Where("author", Nav::ByKey, id), "2:1/2");
  EXPECT_EQ(world.Where("author", Nav::ByKey, id, 1), "1:1/1");
  // The old one accepts nothing more.
  EXPECT_EQ(Version(id),
            "!!Err_Искане за покупка 1, версия 1 е стара версия и не се променя. Отворете текущата "
            "версия.");
  EXPECT_NE(world.Move("author", id, Approved, Completed).find("стара версия"), std::string::npos);
  EXPECT_EQ(Version(id, 2), "1:1/3");
}

TEST_P(RequestCopies, AskedAgainAfterALostAnswerNothingIsMadeTwice) {
  const std::int64_t id = world.SentRequest();
  FaultyDoor door(world.Server().Server());
  const Caller caller = world.As("author").At(Point::PurchaseRequests);
  for (const int kind : {3, 2}) {  // a copy first: a version makes its source old
    MethodCall call{
        "TsmPurchaseOrderReport", "Operations", {"NewRec", kind, id, 1, "author"}, NewClientKey()};
    const std::int64_t before = world.Count("PurchaseOrder");
    door.ResetCounts();
    door.CutAfterNextCommit(CutAt::Call);
    EXPECT_EQ(Outcome(door.Call(caller, call)), "OutcomeUnknown");
    const auto told = door.Call(caller, call);
    ASSERT_TRUE(told) << told.GetFailure().message;
    EXPECT_EQ((*told)[1].AsInt(), kind == 3 ? id + 1 : id);
    const auto again = door.Call(caller, call);
    ASSERT_TRUE(again) << again.GetFailure().message;
    EXPECT_EQ(*again, *told);
    EXPECT_EQ(door.Counts().Total(), 3);
    EXPECT_EQ(world.Count("PurchaseOrder"), before + 1);
    call.arguments[3] = 2;  // the key belongs to the first
    EXPECT_EQ(Outcome(door.Call(caller, call)), "BadRequest");
    call.clientKey.clear();
    EXPECT_EQ(Outcome(door.Call(caller, call)), "BadRequest");
    EXPECT_EQ(world.Count("PurchaseOrder"), before + 1);
  }
}

TEST_P(RequestCopies, WhatANewVersionMayStartFrom) {
  const std::int64_t id = world.SentRequest();
  const std::string key = " where POIdNumber = 1 and POVersion = 1";
  for (int status = 1; status <= 7; ++status) {
    world.RunSql("update PurchaseOrder set Status = ?1" + key, {status});
    if (status < 6) continue;
    EXPECT_NE(Version(id).find("не се прави нова версия. Направете копие."), std::string::npos);
  }
  world.RunSql("update PurchaseOrder set Status = 5" + key);
  world.RunSql(
      "insert into Deliveries (IdNumber, DeliveryDate, PODeliveryDate, PurchaseOrderId,"
      " PurchaseOrderVer, KindSupply, Supplier, Status, CreatedFrom, CreatedOn)"
      " values (9, ?1, ?1, 1, 1, 4, 7, 2, 'author', ?2)",
      {*Date::FromYmd(2026, 3, 5), Stamp{1}});
  EXPECT_NE(Version(id).find("има доставка 9"), std::string::npos);
  world.RunSql("update Deliveries set AnnulOn = ?1", {Stamp{1}});
  EXPECT_EQ(Make("kolev", 2, id),
            "!!Err_Заявител с код 101 няма право да създава „Искане за покупка“ (виж „Допустими "
            "заявители“).");
  EXPECT_EQ(Make("stranger", 2, id), "!!Err_Искане за покупка 1, версия 1 не съществува.");
  world.RunSql("update PurchaseOrder set AnnulOn = ?1" + key, {Stamp{1}});
  EXPECT_NE(Version(id).find("анулирано"), std::string::npos);
  world.RunSql("update PurchaseOrder set AnnulOn = null" + key);
  for (int status = 1; status <= 5; ++status) {
    world.RunSql("update PurchaseOrder set Status = ?1 where OldVersion = 0", {status});
    EXPECT_EQ(Version(id, status), "1:1/" + std::to_string(status + 1));
  }
}

TEST_P(RequestCopies, ACopyIsTheAskersTodaysRequest) {
  const std::int64_t order = world.AddOrder(20, 50000);
  const NamedValues euro = {{"KindCurrency", 2},
                            {"RateOfExchange", *Decimal::Parse("3")->AtScale(7)},
                            {"DocumentDate", *Date::FromYmd(2026, 2, 1)}};
  const std::int64_t id = world.NewRequest(3, euro);
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "0", order), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  ASSERT_EQ(AddPayment(id, "120"), "ok");
  world.RunSql("update PurchaseOrderPayPl set SupplyInvoiceId = 5");
  world.RunSql("update PurchaseOrderDel set Delivered = 1");
  world.RunSql("update PurchaseOrder set Status = 7, AmendFrom = 'kolev'");
  world.RunSql("insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 101)");
  EXPECT_EQ(Copy("kolev", id), "1:2/1");
  EXPECT_EQ(Whole(2, 1), "1=20x8000@- | 0 | 1:-");
  const VariantArray told = world.Load("kolev", Nav::ByKey, 2);
  const DataPacket& head = *told[2].AsPacket();
  const auto at = [&](const char* column) { return head.At(0, column).ToText(); };
  EXPECT_EQ(at("DocumentDate"), "05.03.2026");
  EXPECT_EQ(at("Notifier"), "101");
  EXPECT_EQ(at("CreatedFrom"), "kolev");
  EXPECT_EQ(at("AmendFrom"), "");
  EXPECT_EQ(at("Status"), "2");
  EXPECT_EQ(at("RateOfExchange"), "1.9558300");
  // 8 kg at 12.50 are 100.00 leva: 51.13 euro at today's rate, 33.33 at the old one.
  EXPECT_EQ(at("CurrSumPurchaseOrder"), "51.1300");
  EXPECT_EQ(at("SumPurchaseOrder"), "100.0000");
  EXPECT_EQ(world.Column("select CurrSumPurchaseOrder from PurchaseOrder where POIdNumber = 1",
                         ValueKind::Amount),
            "33.3300");
}

TEST_P(RequestCopies, WhoMayCopy) {
  const std::int64_t id = world.NewRequest();
  EXPECT_NE(Copy("kolev", id).find("Заявител с код 101 не е допустим за център за разход 1001"),
            std::string::npos);
  EXPECT_NE(Copy("boss", id).find("без запис в „Служители“"), std::string::npos);
  EXPECT_NE(Copy("stranger", id).find("не съществува"), std::string::npos);
  ASSERT_TRUE(world.Server().Admin().Grant("author", static_cast<int>(Point::PurchaseRequests), 3));
  EXPECT_NE(Copy("author", id).find("Нямате право да въвеждате"), std::string::npos);
  ASSERT_TRUE(world.Server().Admin().Grant("author", static_cast<int>(Point::PurchaseRequests), 5));
  EXPECT_EQ(Copy("author", id), "1:2/1");
  const auto foreign =
      world.Call("author", "TsmPurchaseOrderReport", {"NewRec", 3, id, 1, "kolev"});
  EXPECT_EQ(Outcome(foreign), "NoRight");
  for (const VariantArray& bad : {VariantArray{"NewRec", 4, id, 1, "author"},
                                  VariantArray{"NewRec", 2, id, 1}, VariantArray{"Other"}}) {
    EXPECT_EQ(Outcome(world.Call("author", "TsmPurchaseOrderReport", bad)), "BadRequest");
  }
}

TEST_P(RequestCopies, ANewVersionAgainstCompletionEqualsOneBeforeTheOther) {
  world.As("author");
  world.As("kolev");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.SentRequest();
    std::string version;
    std::thread other([&] { version = Version(id); });
    const std::string complete = world.Move("kolev", id, Approved, Completed);
    other.join();
    EXPECT_NE(complete == "ok", version.starts_with("1:")) << complete << "\n" << version;
    if (complete == "ok") {
      EXPECT_NE(version.find("„Приключен“"), std::string::npos) << version;
      EXPECT_EQ(world.Count("PurchaseOrder where POIdNumber = ?1", {id}), 1);
    } else {
      EXPECT_NE(complete.find("стара версия"), std::string::npos) << complete;
      EXPECT_EQ(world.StatusOf(id, 2), Entered);
    }
  }
}

TEST_P(RequestCopies, TwoNewVersionsAtOnceMakeOne) {
  world.As("author");
  for (int round = 0; round < 5; ++round) {
    const std::int64_t id = world.NewRequest();
    std::string one;
    std::thread other([&] { one = Version(id); });
    const std::string two = Version(id);
    other.join();
    EXPECT_NE(one.starts_with("1:"), two.starts_with("1:")) << one << "\n" << two;
    EXPECT_EQ(world.Count("PurchaseOrder where POIdNumber = ?1", {id}), 2);
    EXPECT_EQ(world.Count("PurchaseOrder where POIdNumber = ?1 and OldVersion = 0", {id}), 1);
  }
}

}  // namespace
}  // namespace orvane::server
