// Rows of purchase requests: amounts and prices at their edges, sums, what supplier orders leave,
// the schedule, the payment plan and the check of sums.

#include <thread>

#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/request_world.h"

namespace orvane::server {
namespace {

Decimal Number(const char* text) {
  return *Decimal::Parse(text);
}

TEST(RequestValues, PriceTimesQuantityIsRoundedOnceHalfUp) {
  const struct {
    const char* price;
    double quantity;
    int numerator;
    const char* rate;
    int decimals;
    const char* value;
  } cases[] = {
      // 12.50 for a kilogram of 1000 grams
      {"12,5", 8000, 1000, "1", 2, "100.00"},
      {"12,5", 1, 1000, "1", 2, "0.01"},
      {"12,5", 0.4, 1000, "1", 2, "0.01"},
      {"12,5", 0.399999, 1000, "1", 2, "0.00"},
      {"1", 5, 12, "1", 2, "0.42"},
      {"1", 6, 12, "1", 0, "1"},
      {"1", 5, 12, "1", 0, "0"},
      {"100", 1, 1, "1,95583", 2, "51.13"},
      {"0,005", 1, 1, "1", 2, "0.01"},
      {"0,0049", 1, 1, "1", 2, "0.00"},
      {"2,675", 1, 1, "1", 2, "2.68"},
      {"1,005", 1, 1, "1", 2, "1.01"},
      {"99999999999,9999", 1000, 1, "1", 2, "99999999999999.90"},
      {"0,0001", 0.000001, 1, "1", 4, "0.0000"},
      {"12,3456", 1234.567891, 7, "1,2345678", 4, "1763.6573"},
  };
  for (const auto& row : cases) {
    const auto value =
        ValueOf(Number(row.price), row.quantity, row.numerator, Number(row.rate), row.decimals);
    ASSERT_TRUE(value) << row.price;
    EXPECT_EQ(value->ToText(), row.value) << row.price << " x " << row.quantity;
  }
  EXPECT_FALSE(ValueOf(Number("900000000000000"), 1e9, 1, Number("1"), 2)) << "does not fit";
}

TEST(RequestValues, NationalAmountsAreRoundedHalfUp) {
  EXPECT_EQ(InNational(Number("51,13"), Number("1,95583"), 2)->ToText(), "100.00");
  EXPECT_EQ(InNational(Number("0,01"), Number("0,5"), 2)->ToText(), "0.01");
  EXPECT_EQ(InNational(Number("-0,01"), Number("0,5"), 2)->ToText(), "-0.01");
  EXPECT_EQ(InNational(Number("0,01"), Number("0,4999999"), 2)->ToText(), "0.00");
}

class RequestRows : public RequestCase {
 protected:
  std::string Amounts(std::int64_t id) {
    return world.Column("select CurrSumWithoutVAT from PurchaseOrderDet where PurchaseOrderId = " +
                            std::to_string(id) + " order by RowNumber",
                        ValueKind::Amount);
  }
  /// Currency and national sum of the head.
  std::string Sums(std::int64_t id) {
    const std::string where = " from PurchaseOrder where POIdNumber = " + std::to_string(id);
    return world.Column("select CurrSumPurchaseOrder" + where, ValueKind::Amount) + " " +
           world.Column("select SumPurchaseOrder" + where, ValueKind::Amount);
  }
  std::string ChangeRow(std::int64_t id, int number, NamedValues old, NamedValues values) {
    NamedValues before = {{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", number}};
    before.insert(before.end(), old.begin(), old.end());
    return world.Apply("author", "dspPurchaseOrderDet", UpdateOf(before, std::move(values)));
  }
  static Variant Money(const char* text) { return *Decimal::Parse(text)->AtScale(4); }
  static Variant Rate(const char* text) { return *Decimal::Parse(text)->AtScale(7); }
};
INSTANTIATE_TEST_SUITE_P(Engines, RequestRows, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestRows, KindsWithPricesArePricedAndOthersCarryWhatWasTyped) {
  const struct {
    int kind;
    std::int64_t serial;
    double quantity;
    const char* amount;
  } cases[] = {
      {2, 20, 8000, "100.0000"}, {3, 21, 5, "0.4200"},     {5, 22, 3, "600.0000"},
      {4, 20, 8000, "77.4600"},  {1, 20, 8000, "77.4600"}, {3, 23, 8000, "0.0000"},
  };
  for (const auto& row : cases) {
    const std::int64_t id = world.NewRequest(row.kind);
    ASSERT_EQ(world.AddRow(id, 1, row.serial, row.quantity, "77,455"), "ok");
    EXPECT_EQ(Amounts(id), row.amount) << row.kind;
    EXPECT_EQ(Sums(id), std::string(row.amount) + " " + row.amount);
  }
}

TEST_P(RequestRows, TheHeadIsTheSumOfItsRoundedRowsAndTheAnswerSaysSo) {
  const std::int64_t id =
      world.NewRequest(4, {{"KindCurrency", 2}, {"RateOfExchange", Rate("1,95583")}});
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "10,005"), "ok");
  ASSERT_EQ(world.AddRow(id, 2, 20, 1, "0,004"), "ok");
  const ApplyAnswer answer = world.ApplyFully("author", "dspPurchaseOrderDet",
                                              InsertOf(RequestWorld::RowValues(id, 3, 20, 1, "1")));
  EXPECT_EQ(Amounts(id), "10.0100 0.0000 1.0000");
  EXPECT_EQ(Sums(id), "11.0100 21.5300");
  EXPECT_EQ(FindValue(answer.headMoved, "CurrSumPurchaseOrder")->ToText(), "11.0100");
  EXPECT_EQ(FindValue(answer.headMoved, "SumPurchaseOrder")->ToText(), "21.5300");
  EXPECT_EQ(FindValue(answer.outcomes[0].filled, "CurrSumWithoutVAT")->ToText(), "1.0000");
  EXPECT_EQ(FindValue(answer.outcomes[0].filled, "InventoryId")->ToText(), "500");
  ASSERT_EQ(
      ChangeRow(id, 3, {{"CurrSumWithoutVAT", Money("1")}}, {{"CurrSumWithoutVAT", Money("2")}}),
      "ok");
  EXPECT_EQ(Sums(id), "12.0100 23.4900");
  ASSERT_EQ(
      world.Apply("author", "dspPurchaseOrderDet",
                  DeleteOf({{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", 1}})),
      "ok");
  EXPECT_EQ(Sums(id), "2.0000 3.9100");
  world.Server().SetParam(1, 3, "0");
  ASSERT_EQ(world.AddRow(id, 4, 20, 1, "1,5"), "ok");
  EXPECT_EQ(Sums(id), "4.0000 8.0000") << "decimals by the host's parameter";
}

TEST_P(RequestRows, ARateOrDateOfTheHeadMovesPricesAndSums) {
  const std::int64_t id = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000), "ok");
  const NamedValues before = {
      {"POIdNumber", id}, {"POVersion", 1}, {"KindCurrency", 1}, {"RateOfExchange", Rate("1")}};
  const ApplyAnswer answer = world.ApplyFully(
      "author", "dspPurchaseOrder",
      UpdateOf(before, {{"KindCurrency", 2}, {"RateOfExchange", Rate("1,95583")}}));
  ASSERT_TRUE(answer.outcomes[0].applied);
  EXPECT_EQ(Amounts(id), "51.1300");
  EXPECT_EQ(Sums(id), "51.1300 100.0000");
  EXPECT_EQ(FindValue(answer.outcomes[0].filled, "SumPurchaseOrder")->ToText(), "100.0000");
  // Back to the national currency: its rate is 1 whatever is sent.
  ASSERT_EQ(world.Apply("author", "dspPurchaseOrder",
                        UpdateOf({{"POIdNumber", id}, {"POVersion", 1}, {"KindCurrency", 2}},
                                 {{"KindCurrency", 1}})),
            "ok");
  EXPECT_EQ(Sums(id), "100.0000 100.0000");
}

TEST_P(RequestRows, PricesAreThoseInForceByTheSuppliersList) {
  const auto price = [&](const char* what) {
    const std::int64_t id = world.NewRequest(3);
    EXPECT_EQ(world.AddRow(id, 1, 20, 1000), "ok") << what;
    return Amounts(id);
  };
  const auto day = [](int month, int number) { return *Date::FromYmd(2026, month, number); };
  EXPECT_EQ(price("base list"), "12.5000");
  world.RunSql(
      "insert into BaseSupplyListDates (SerialNumber, AvailableFromDate, Price)"
      " values (20, ?1, ?2), (20, ?3, ?4), (20, ?5, ?6)",
      {day(1, 1), Money("13"), day(3, 5), Money("14"), day(3, 6), Money("15")});
  EXPECT_EQ(price("by list, undated"), "12.5000");
  world.Server().SetParam(11, 3, "3");
  EXPECT_EQ(price("by list up to the date"), "14.0000");
  world.RunSql("insert into KindSupplyLists (Code, Name, FoldName) values (4, 'Списък', 'списък')");
  world.RunSql(
      "insert into SupplyLists (KindList, SerialNumber, Measure, Price)"
      " values (4, 20, 200, ?1)",
      {Money("16")});
  world.RunSql("update Partners set KindSupplyChoice = 1, KindSupplyList = 4 where Partner = 7");
  EXPECT_EQ(price("the supplier's list"), "16.0000");
  world.RunSql(
      "insert into SupplyListsDates (KindList, SerialNumber, AvailableFromDate, Price)"
      " values (4, 20, ?1, ?2), (4, 20, ?3, ?4)",
      {day(2, 1), Money("17"), day(3, 6), Money("18")});
  EXPECT_EQ(price("undated choice"), "16.0000");
  world.RunSql("update Partners set KindSupplyChoice = 2 where Partner = 7");
  EXPECT_EQ(price("the list's newest version"), "17.0000");
}

TEST_P(RequestRows, TheLastDeliverysPriceFallsBackToTheList) {
  world.Server().SetParam(11, 15, "2");
  const std::int64_t first = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(first, 1, 20, 8000), "ok");
  EXPECT_EQ(Amounts(first), "100.0000") << "nothing was delivered yet";
  // 8 kg for 100.00 were delivered when the entry cost 10.00.
  const auto deliver = [&](int id, int day, int status, const char* amount) {
    const std::int64_t request = world.NewRequest(4);
    EXPECT_EQ(world.AddRow(request, 1, 20, 8000, amount), "ok");
    world.RunSql(
        "insert into Deliveries (IdNumber, DeliveryDate, PODeliveryDate, PurchaseOrderId,"
        " PurchaseOrderVer, KindSupply, Supplier, Status, CreatedFrom, CreatedOn)"
        " values (?1, ?2, ?2, ?3, 1, 4, 7, ?4, 'author', ?5)",
        {id, *Date::FromYmd(2026, 2, day), request, status, Stamp{1}});
    world.RunSql(
        "insert into DeliveryRows (DeliveryId, RowNumber, SerialNumber, Measure, Quantity,"
        " Numerator, RowNumerator) values (?1, 1, 20, 200, 1, 1000, 1000)",
        {id});
  };
  deliver(1, 10, 5, "80");
  deliver(2, 9, 5, "88");
  deliver(3, 11, 4, "96");
  const std::int64_t second = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(second, 1, 20, 1000), "ok");
  EXPECT_EQ(Amounts(second), "10.0000");
}

TEST_P(RequestRows, TheTextsOfAllRowsStayWithinAMessage) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "10"), "ok");
  std::string text;
  for (int i = 0; i < 20'000; ++i)
    text += "я";
  // With those of 418 rows there is room for one more in 16 MB.
  world.RunSql(
      "insert into PurchaseOrderDet (PurchaseOrderId, PurchaseOrderVer, RowNumber, SerialNumber, "
      "InventoryId, Measure, Quantity, Numerator, RowNumerator, CurrSumWithoutVAT, Remarks) "
      "with recursive n(i) as (select 2 union all select i + 1 from n where i < 419) "
      "select d.PurchaseOrderId, d.PurchaseOrderVer, n.i, d.SerialNumber, d.InventoryId, "
      "d.Measure, "
      "d.Quantity, d.Numerator, d.RowNumerator, d.CurrSumWithoutVAT, cast(?1 as text) "
      "from PurchaseOrderDet d cross join n where d.RowNumber = 1",
      {text});
  const auto add = [&](int number) {
    NamedValues row = RequestWorld::RowValues(id, number, 20, 1, "10");
    SetValue(row, "Remarks", text);
    return world.Apply("author", "dspPurchaseOrderDet", InsertOf(row));
  };
  EXPECT_EQ(add(500), "ok");
  EXPECT_EQ(add(501),
            "!!Err_Искане за покупка 1, версия 1: текстовете на редовете са общо твърде дълги. "
            "Съкратете бележките.");
  const VariantArray told = world.Load("author", Nav::ByKey, id);
  EXPECT_EQ(told[3].AsPacket()->rowCount, 420u) << "what is saved is loaded";
  EXPECT_EQ(told[3].AsPacket()->At(419, "Remarks"), Variant(text));
}

TEST_P(RequestRows, RefusalsNameTheRowAndTheWayOut) {
  const std::int64_t order = world.AddOrder(20, 10000);
  const std::int64_t id = world.NewRequest(3);
  const std::string row = "!!Err_Искане за покупка 1, версия 1, ред 1: ";
  const auto add = [&](std::int64_t serial, double quantity, Variant of = {}) {
    return world.AddRow(id, 1, serial, quantity, "0", std::move(of));
  };
  EXPECT_EQ(add(99, 1), row + "в списъка за доставка няма пореден номер 99. Изберете друг.");
  EXPECT_EQ(add(20, -1), row + "количеството не може да бъде отрицателно. Въведете друго.");
  NamedValues pieces = RequestWorld::RowValues(id, 1, 20, 1);
  SetValue(pieces, "Measure", 100);
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrderDet", InsertOf(pieces)),
            row + "„20 Ламарина 2 мм“ не се поръчва в мярка 100. Изберете друга мярка.");
  for (const int number : {0, -1}) {
    EXPECT_EQ(world.AddRow(id, number, 20, 1),
              "!!Err_Искане за покупка 1, версия 1, ред " + std::to_string(number) +
                  ": номерът на ред трябва да бъде поне 1. Въведете друг.");
  }
  for (const double quantity : {1e308, 1.1e12, 1e-300}) {
    EXPECT_NE(add(20, quantity).find("Поле „Количество“: Количеството е извън допустимите граници"),
              std::string::npos);
  }
  NamedValues values = RequestWorld::RowValues(id, 1, 20, 1);
  SetValue(values, "Remarks", std::string(20'001, 'x'));
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrderDet", InsertOf(values)),
            "!!Err_Поле „Бележки“: Текстът е по-дълъг от 20000 знака. Съкратете го.");
  EXPECT_EQ(add(20, 1, 77), row +
                                "поръчка за производство 77 не съществува. Изберете друга "
                                "поръчка.");
  EXPECT_EQ(add(21, 1, order), row +
                                   "поръчка за производство 1 не съдържа „21 Винтове М4“. "
                                   "Изберете друга поръчка.");
  EXPECT_EQ(add(20, 10000.000001, order),
            row +
                "количеството на „20 Ламарина 2 мм“ надвишава „Остатък за искане“ на поръчка за "
                "производство 1. Намалете количеството или изберете друга поръчка.");
  world.RunSql("update SuppManifacOrder set Supplier = 8");
  EXPECT_NE(add(20, 1, order).find("към друг доставчик"), std::string::npos);
  world.RunSql("update SuppManifacOrder set Supplier = 7, Status = 7");
  EXPECT_NE(add(20, 1, order).find("не е одобрена или е приключена"), std::string::npos);
  world.RunSql("update SuppManifacOrder set Status = 5, AnnulOn = ?1", {Stamp{1}});
  EXPECT_NE(add(20, 1, order).find("е анулирана"), std::string::npos);
  world.RunSql("update SuppManifacOrder set AnnulOn = null");
  EXPECT_EQ(add(20, 10000, order), "ok") << "all that is left";
  EXPECT_EQ(add(20, 1),
            "!!Err_Искане за покупка 1, версия 1 вече има ред 1. Изберете друг номер на ред.");
}

TEST_P(RequestRows, WhatAnOrderLeavesIsDerivedFromRequestsOnTheirWay) {
  const std::int64_t order = world.AddOrder(20, 10000);
  const auto left = [&] {
    FetchRequest request;
    request.serverClass = "TsmSQL";
    request.provider = "dspSQL";
    request.sql =
        "SELECT OD.CalcQuantity - OD.CalcOrderedQunatity RestOrdQNT FROM SuppManOrderDet OD"
        " WHERE OD.SerialNumber = 20";
    const auto packets =
        world.Server()->Fetch(world.As("boss").At(Point::PurchaseRequests), {request});
    return packets ? packets->front().At(0, std::size_t{0}).ToText() : packets.GetFailure().message;
  };
  const auto request = [&](double quantity) {
    const std::int64_t id = world.NewRequest(3);
    EXPECT_EQ(world.AddRow(id, 1, 20, quantity, "0", order), "ok");
    EXPECT_EQ(world.AddDate(id), "ok");
    return id;
  };
  const auto orderStatus = [&] { return world.Column("select Status from SuppManifacOrder"); };
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  const std::int64_t one = request(6000);
  const std::int64_t two = request(6000);
  EXPECT_EQ(left(), "10000") << "entered requests take nothing";
  ASSERT_EQ(world.Move("author", one, Entered, ForApproval), "ok");
  EXPECT_EQ(left(), "4000");
  EXPECT_EQ(orderStatus(), "6");
  EXPECT_NE(world.Move("author", two, Entered, ForApproval).find("Остатък за искане"),
            std::string::npos);
  EXPECT_EQ(world.StatusOf(two), Entered);
  ASSERT_EQ(world.Decide("kolev", one, 1, ApprovalWaiting, ApprovalRejected), "ok");
  EXPECT_EQ(left(), "10000") << "a rejected request takes nothing";
  EXPECT_EQ(orderStatus(), "5");
  ASSERT_EQ(world.Move("author", two, Entered, ForApproval), "ok");
  EXPECT_NE(
      world.Decide("kolev", one, 1, ApprovalRejected, ApprovalGiven).find("Остатък за искане"),
      std::string::npos)
      << "what it took is somebody else's now";
  ASSERT_EQ(world.Move("author", two, ForApproval, Entered), "ok");
  ASSERT_EQ(world.Decide("kolev", one, 1, ApprovalRejected, ApprovalGiven), "ok");
  EXPECT_EQ(orderStatus(), "6");
  ASSERT_EQ(world.Move("kolev", one, Approved, Completed), "ok");
  EXPECT_EQ(left(), "4000") << "completed ones keep what they took";
  EXPECT_EQ(world.Column("select NewValue from History where TableName = 'SuppManifacOrder' and "
                         "ColumnName = 'Status' order by Id",
                         ValueKind::String),
            "6 5 6 5 6");
}

TEST_P(RequestRows, RowsOfOneRequestTogetherMayNotExceedWhatIsLeft) {
  const std::int64_t order = world.AddOrder(20, 10000);
  const std::int64_t id = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(id, 1, 20, 6000, "0", order), "ok");
  EXPECT_NE(world.AddRow(id, 2, 20, 4001, "0", order).find("ред 2"), std::string::npos);
  ASSERT_EQ(world.AddRow(id, 2, 20, 4000, "0", order), "ok");
  EXPECT_NE(ChangeRow(id, 1, {{"Quantity", 6000.0}}, {{"Quantity", 6001.0}}).find("надвишава"),
            std::string::npos);
  EXPECT_EQ(ChangeRow(id, 1, {{"Quantity", 6000.0}}, {{"Quantity", 5999.0}}), "ok");
}

TEST_P(RequestRows, OfTwoWhoTakeTheLastPieceOneGetsIt) {
  world.As("author");
  world.As("kolev");
  for (int round = 0; round < 6; ++round) {
    const std::int64_t order = world.AddOrder(20, 5000);
    std::vector<std::int64_t> ids;
    for (int i = 0; i < 2; ++i) {
      ids.push_back(world.NewRequest(3));
      ASSERT_EQ(world.AddRow(ids.back(), 1, 20, 3000, "0", order), "ok");
      ASSERT_EQ(world.AddDate(ids.back()), "ok");
    }
    std::string one;
    std::thread other([&] { one = world.Move("kolev", ids[0], Entered, ForApproval); });
    const std::string two = world.Move("author", ids[1], Entered, ForApproval);
    other.join();
    EXPECT_NE(one == "ok", two == "ok") << one << "\n" << two;
    const std::string& loser = one == "ok" ? two : one;
    EXPECT_NE(loser.find("Остатък за искане"), std::string::npos) << loser;
  }
}

TEST_P(RequestRows, PlanRowsAreNumberedByTheServer) {
  const std::int64_t id = world.NewRequest();
  const auto add = [&](const char* sum, Variant number = {}) {
    return world.ApplyFully("author", "dspPurchaseOrderPayPl",
                            InsertOf({{"PurchaseOrderId", id},
                                      {"PurchaseOrderVer", 1},
                                      {"RowNumber", std::move(number)},
                                      {"InvoiceDate", *Date::FromYmd(2026, 3, 10)},
                                      {"SumWithVAT", Money(sum)},
                                      {"AdvancePayment", Variant()},
                                      {"AdvanceStatement", true},
                                      {"PaymentDate", *Date::FromYmd(2026, 3, 20)},
                                      {"SupplyInvoiceId", 5}}));
  };
  const ApplyAnswer first = add("10,005");
  const auto filled = [](const ApplyAnswer& answer, const char* name) {
    const Variant* value = FindValue(answer.outcomes[0].filled, name);
    return value ? value->ToText() : "-";
  };
  EXPECT_EQ(filled(first, "RowNumber"), "1");
  EXPECT_EQ(filled(first, "RNLocate"), "1");
  EXPECT_EQ(filled(first, "SumWithVAT"), "10.0100");
  EXPECT_EQ(filled(add("1", 77), "RowNumber"), "2") << "whatever number was sent";
  ASSERT_EQ(
      world.Apply("author", "dspPurchaseOrderPayPl",
                  DeleteOf({{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", 1}})),
      "ok");
  EXPECT_EQ(filled(add("1"), "RowNumber"), "3");
  EXPECT_EQ(world.Column("select RowNumber from PurchaseOrderPayPl order by RowNumber"), "2 3");
  EXPECT_EQ(world.Count("PurchaseOrderPayPl where SupplyInvoiceId is null"), 2)
      << "settlements are the server's";
  world.RunSql("update PurchaseOrderPayPl set RowNumber = 255 where RowNumber = 3");
  EXPECT_NE(add("1").outcomes[0].failure->message.find("има вече 255 реда"), std::string::npos);
}

TEST_P(RequestRows, TheScheduleKeepsItsDatesApartAndDeliveredIsNotTyped) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddDate(id, 20), "ok");
  EXPECT_EQ(world.AddDate(id, 20),
            "!!Err_Искане за покупка " + std::to_string(id) +
                ", версия 1, вече има доставка на 20.03.2026. Изберете друга дата.");
  const NamedValues before = {{"PurchaseOrderId", id},
                              {"PurchaseOrderVer", 1},
                              {"DeliveryDate", *Date::FromYmd(2026, 3, 20)},
                              {"Delivered", false}};
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrderDel", UpdateOf(before, {{"Delivered", true}})),
            "ok");
  EXPECT_EQ(world.Column("select Delivered from PurchaseOrderDel"), "0");
}

TEST_P(RequestRows, TheSumCheckComparesWithVatInsideTolerance) {
  const auto check = [&](std::int64_t id) {
    const auto told =
        world.Call("author", "TsmPurchaseOrder",
                   {"GetSumCheck", id, 1, Variant(), Variant(), Variant(), Variant()});
    if (!told) return told.GetFailure().message;
    return (*told)[4].ToText() + " " + (*told)[5].ToText() + " " + (*told)[6].ToText();
  };
  const auto pay = [&](std::int64_t id, const char* sum) {
    ASSERT_EQ(world.Apply("author", "dspPurchaseOrderPayPl",
                          InsertOf({{"PurchaseOrderId", id},
                                    {"PurchaseOrderVer", 1},
                                    {"RowNumber", Variant()},
                                    {"InvoiceDate", *Date::FromYmd(2026, 3, 10)},
                                    {"SumWithVAT", Money(sum)},
                                    {"PaymentDate", *Date::FromYmd(2026, 3, 20)}})),
              "ok");
  };
  const std::int64_t id = world.NewRequest(4);
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "100"), "ok");  // 20 %
  ASSERT_EQ(world.AddRow(id, 2, 21, 1, "100"), "ok");  // 9 %
  ASSERT_EQ(world.AddRow(id, 3, 22, 1, "100"), "ok");  // no percentage of its own: 20 %
  EXPECT_EQ(check(id), "349.0000 349.0000 0") << "an empty plan agrees";
  pay(id, "300");
  EXPECT_EQ(check(id), "349.0000 300.0000 0");
  pay(id, "48,95");
  EXPECT_EQ(check(id), "349.0000 349.0000 0") << "the tolerance is included";
  pay(id, "0,11");
  EXPECT_EQ(check(id), "349.0000 349.0600 0");
  const std::int64_t goods = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(goods, 1, 20, 8000), "ok");
  pay(goods, "1");
  EXPECT_EQ(check(goods), "120.0000 1.0000 1");
  EXPECT_NE(check(99).find("не съществува"), std::string::npos);
}

TEST_P(RequestRows, AFailedRowOfManyLeavesTheSumRight) {
  const std::int64_t id = world.NewRequest(4);
  ApplyRequest apply{"TsmPurchaseOrder", "dspPurchaseOrderDet", -1, {}, {}};
  for (const std::int64_t serial : {20, 99, 21})
    apply.delta.push_back(InsertOf(
        RequestWorld::RowValues(id, static_cast<int>(apply.delta.size()) + 1, serial, 1, "10")));
  const auto answer = world.Server()->Apply(world.As("author").At(Point::PurchaseRequests), apply);
  ASSERT_TRUE(answer);
  EXPECT_EQ(
      Outcome(answer->outcomes[0]) + Outcome(answer->outcomes[1]) + Outcome(answer->outcomes[2]),
      "okRefusedok");
  EXPECT_EQ(Sums(id), "20.0000 20.0000");
}

}  // namespace
}  // namespace orvane::server
