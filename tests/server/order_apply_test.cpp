// Heads and rows of supplier orders: what the server puts in the client's place, what it refuses,
// amounts and sums, and every move from every status by everyone.

#include <set>
#include <thread>

#include "server/order_world.h"
#include "server/sessions/user_admin.h"

namespace orvane::server {
namespace {

class Orders : public OrderCase {
 protected:
  static Variant Rate(const char* text) { return *Decimal::Parse(text)->AtScale(7); }
  static NamedValues Row(std::int64_t id, int number) {
    return {{"SuppManOrderId", id}, {"RowNumber", number}};
  }
  std::string ChangeRow(std::int64_t id, int number, const NamedValues& old, NamedValues values) {
    NamedValues before = Row(id, number);
    before.insert(before.end(), old.begin(), old.end());
    return world.ApplyOrder("author", "dspSuppManOrderDet", UpdateOf(before, std::move(values)));
  }
  std::string ChangeHead(const std::string& login, std::int64_t id, const NamedValues& old,
                         NamedValues values) {
    NamedValues before = {{"IdNumber", id}};
    before.insert(before.end(), old.begin(), old.end());
    return world.ApplyOrder(login, "dspSuppManifacOrder", UpdateOf(before, std::move(values)));
  }
  std::string Amounts(std::int64_t id) {
    return world.Column("select CurrSumWithoutVAT from SuppManOrderDet where SuppManOrderId = " +
                            std::to_string(id) + " order by RowNumber",
                        ValueKind::Amount);
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, Orders, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Orders, WhatTheServerKnowsItPutsInTheClientsPlace) {
  NamedValues values = OrderWorld::OrderValues(
      {{"Status", 5}, {"SumManifacOrder", Decimal(770'000, 4)}, {"RateOfExchange", Rate("3")}});
  values.push_back({"IdNumber", 4711});
  values.push_back({"PrevYearId", 17});
  const ApplyAnswer answer =
      world.ApplyToOrder("author", "dspSuppManifacOrder", InsertOf(std::move(values)));
  ASSERT_FALSE(answer.outcomes[0].failure) << answer.outcomes[0].failure->message;
  EXPECT_TRUE(answer.ownerData.IsNull()) << "the number comes with the row";
  const auto filled = [&](const char* column) {
    const Variant* value = FindValue(answer.outcomes[0].filled, column);
    return value ? value->ToText() : "-";
  };
  EXPECT_EQ(filled("IdNumber"), "1");
  EXPECT_EQ(filled("Status"), "2");
  EXPECT_EQ(filled("PrevYearId"), "");
  EXPECT_EQ(filled("SumManifacOrder"), "0.0000");
  EXPECT_EQ(filled("RateOfExchange"), "1.0000000") << "the national currency's is 1";
  EXPECT_EQ(filled("CreatedFrom"), "author");

  const ApplyAnswer row = world.ApplyToOrder("author", "dspSuppManOrderDet",
                                             InsertOf(OrderWorld::OrderRow(1, 1, 20, 8000)));
  ASSERT_FALSE(row.outcomes[0].failure) << row.outcomes[0].failure->message;
  const NamedValues& own = row.outcomes[0].filled;
  EXPECT_EQ(FindValue(own, "Numerator")->ToText(), "1000");
  EXPECT_EQ(FindValue(own, "RowNumerator")->ToText(), "1000");
  EXPECT_EQ(FindValue(own, "InventoryId")->ToText(), "500");
  EXPECT_EQ(FindValue(own, "CurrSumWithoutVAT"), nullptr) << "a column that no screen has";
  EXPECT_EQ(FindValue(row.headMoved, "SumManifacOrder")->ToText(), "100.0000");
}

TEST_P(Orders, WhatAHeadSaysMustBeThereAndFitTogether) {
  const struct {
    NamedValues changed;
    const char* refusal;
  } cases[] = {
      {{{"CostCenter", 1009}}, "не е допустим за център за разход 1009"},
      {{{"Notifier", 101}}, "Заявител с код 101 не е допустим"},
      {{{"KindSupply", 4}, {"ContractId", Variant()}}, "само за вид покупка „ОСМ“ или „Стоки“"},
      {{{"Supplier", 9}, {"ContractId", Variant()}}, "Контрагент 9 не е доставчик"},
      {{{"Supplier", 99}, {"ContractId", Variant()}}, "Контрагент 99 не е доставчик"},
      {{{"ContractId", 33}}, "Договор 33 не е за доставчика и вида покупка на поръчката"},
      {{{"KindSupply", 2}}, "Договор 30 не е за доставчика и вида покупка на поръчката"},
      {{{"ContractId", 32}}, "Договор 32 не е действащ днес"},
      {{{"ContractId", 31}}, "По договор 31 не се прави поръчка за производство"},
      {{{"ContractId", 99}}, "Няма договор 99"},
      {{{"KindCurrency", 2}, {"RateOfExchange", Rate("0")}}, "по-голям от нула"},
      {{{"KindCurrency", 9}}, "Няма вид валута 9"},
      {{{"ToDate", *Date::FromYmd(2026, 3, 4)}}, "Периодът на поръчката свършва, преди да започне"},
      {{{"IncTranspInPrice", 3}}, "Транспортът е включен в цената или не е"},
      {{{"DocumentDate", Variant()}}, "Попълнете стойност в поле „Дата на документа“"},
  };
  for (const auto& row : cases) {
    const std::string answer = world.ApplyOrder("author", "dspSuppManifacOrder",
                                                InsertOf(OrderWorld::OrderValues(row.changed)));
    EXPECT_NE(answer.find(row.refusal), std::string::npos) << row.refusal << "\n" << answer;
  }
  EXPECT_EQ(world.Count("SuppManifacOrder"), 0);
  const NamedValues oneDay = {{"ToDate", *Date::FromYmd(2026, 3, 5)}, {"ContractId", Variant()}};
  EXPECT_EQ(world.NewOrder(oneDay), world.Count("SuppManifacOrder where IdNumber > 1") + 1);
}

TEST_P(Orders, RefusalsNameTheRowAndTheWayOut) {
  const std::int64_t id = world.NewOrder();
  ASSERT_EQ(world.AddOrderRow(id, 1, 20, 8000), "ok");
  const auto add = [&](int number, std::int64_t serial, double quantity, int measure) {
    NamedValues values = OrderWorld::OrderRow(id, number, serial, quantity);
    for (NamedValue& value : values) {
      if (value.name == "Measure") value.value = measure;
    }
    return world.ApplyOrder("author", "dspSuppManOrderDet", InsertOf(std::move(values)));
  };
  world.RunSql("update MaterialStocks set IncomeMeasure = 100 where IdNumber = 501");
  const struct {
    int number;
    std::int64_t serial;
    double quantity;
    int measure;
    const char* answer;
  } cases[] = {
      {2, 99, 1, 200,
       "!!Err_Поръчка за производство 1, ред 2: в списъка за доставка няма пореден "
       "номер 99. Изберете друг."},
      {2, 21, 1, 999,
       "!!Err_Поръчка за производство 1, ред 2: няма мярка с код 999. Изберете друга."},
      {2, 21, 1, 200,
       "!!Err_Поръчка за производство 1, ред 2: „21 Винтове М4“ не се поръчва в мярка "
       "200. Изберете друга мярка."},
      {2, 22, 1, 200,
       "!!Err_Поръчка за производство 1, ред 2: „22 Транспорт“ не се поръчва в мярка "
       "200. Изберете друга мярка."},
      {2, 21, -1, 101,
       "!!Err_Поръчка за производство 1, ред 2: количеството не може да бъде "
       "отрицателно. Въведете друго."},
      {2, 20, 1, 200,
       "!!Err_Поръчка за производство 1, ред 2: „20 Ламарина 2 мм“ е вече на ред 1. "
       "Променете количеството на онзи ред."},
      {1, 21, 1, 101,
       "!!Err_Поръчка за производство 1 вече има ред 1. Изберете друг номер на ред."},
      {2, 21, 0, 100, "ok"},
      {3, 22, 1, 101, "ok"},
  };
  for (const auto& row : cases)
    EXPECT_EQ(add(row.number, row.serial, row.quantity, row.measure), row.answer);
  EXPECT_NE(ChangeRow(id, 2, {{"SerialNumber", 21}, {"Measure", 100}},
                      {{"SerialNumber", 20}, {"Measure", 200}})
                .find("е вече на ред 1"),
            std::string::npos);
  EXPECT_EQ(ChangeRow(id, 1, {{"Quantity", 8000.0}}, {{"Quantity", 1.0}}), "ok") << "of itself";

  world.Server().SetParam(1, 283, "1");
  const std::int64_t own = world.NewOrder();
  EXPECT_EQ(world.AddOrderRow(own, 1, 21, 12), "ok") << "the material's own unit";
  world.RunSql("insert into Measures (Code, Name, FoldName, Numerator) values (102, 'К', 'к', 6)");
  EXPECT_NE(ChangeRow(own, 1, {{"Measure", 101}}, {{"Measure", 102}}).find("не се поръчва в мярка"),
            std::string::npos)
      << "of the block, but not the material's";
  EXPECT_EQ(ChangeRow(own, 1, {{"Measure", 101}}, {{"Measure", 100}}), "ok") << "it is received so";
}

TEST_P(Orders, TheHeadIsTheSumOfItsRowsPricedWhenTheyWereSaved) {
  const std::int64_t id = world.NewOrder();
  ASSERT_EQ(world.AddOrderRow(id, 1, 20, 8000), "ok");
  ASSERT_EQ(world.AddOrderRow(id, 2, 21, 5), "ok");
  ASSERT_EQ(world.AddOrderRow(id, 3, 23, 5), "ok") << "an entry without a price";
  EXPECT_EQ(Amounts(id), "100.0000 0.4200 0.0000");
  EXPECT_EQ(world.OrderSums(id), "100.4200 100.4200");
  ASSERT_EQ(ChangeHead("author", id, {{"KindCurrency", 1}, {"RateOfExchange", Rate("1")}},
                       {{"KindCurrency", 2}, {"RateOfExchange", Rate("1,95583")}}),
            "ok");
  EXPECT_EQ(Amounts(id), "51.1300 0.2100 0.0000");
  EXPECT_EQ(world.OrderSums(id), "51.3400 100.4100");
  world.RunSql("update BaseSupplyList set Price = ?1", {Decimal(1'0000, 4)});
  EXPECT_EQ(world.OrderSums(id), "51.3400 100.4100") << "what was priced stays";
  ASSERT_EQ(ChangeRow(id, 2, {{"Quantity", 5.0}}, {{"Quantity", 12.0}}), "ok");
  EXPECT_EQ(Amounts(id), "51.1300 0.5100 0.0000") << "the row that was saved is priced anew";
  EXPECT_EQ(world.OrderSums(id), "51.6400 101.0000");
  ASSERT_EQ(world.ApplyOrder("author", "dspSuppManOrderDet", DeleteOf(Row(id, 1))), "ok");
  EXPECT_EQ(world.OrderSums(id), "0.5100 1.0000");
}

TEST_P(Orders, HeadsAndRowsChangeAtStatusTwoByTheirCreatorOnly) {
  const std::int64_t id = world.NewOrder();
  ASSERT_EQ(world.AddOrderRow(id, 1, 20, 8000), "ok");
  const auto changes = [&](const std::string& login) {
    return std::vector<std::string>{
        ChangeHead(login, id, {{"Description", Variant()}}, {{"Description", Variant()}}),
        world.ApplyOrder(login, "dspSuppManOrderDet", InsertOf(OrderWorld::OrderRow(id, 2, 21, 1))),
        world.ApplyOrder(login, "dspSuppManOrderDet", DeleteOf(Row(id, 1)))};
  };
  for (int status = 1; status <= 7; ++status) {
    if (status == Entered) continue;
    world.RunSql("update SuppManifacOrder set Status = ?1", {status});
    for (const std::string& answer : changes("author"))
      EXPECT_NE(answer.find("и не се променя."), std::string::npos) << status << ": " << answer;
  }
  world.RunSql("update SuppManifacOrder set Status = 2");
  for (const std::string& answer : changes("kolev"))
    EXPECT_EQ(answer,
              "!!Err_Поръчка за производство 1: само създателят „author“ може да го променя.");
  for (const std::string& answer : changes("stranger"))
    EXPECT_EQ(answer, "!!Err_Поръчка за производство 1 не съществува.");
  for (const std::string& answer : changes("boss"))
    EXPECT_EQ(answer, "ok");
}

TEST_P(Orders, AnOrderIsAnnulledOnceForAll) {
  const std::int64_t id = world.NewOrder();
  ASSERT_EQ(world.AnnulOrder("author", id), "ok");
  EXPECT_EQ(world.OrderStatus(id), Annulled);
  EXPECT_EQ(world.Column("select AnnulFrom from SuppManifacOrder", ValueKind::String), "author");
  EXPECT_EQ(world.Count("SuppManifacOrder where AnnulOn > ?1", {Stamp{77}}), 1)
      << "the server's moment";
  EXPECT_EQ(world.Count("SuppManifacOrder where AmendOn is null"), 1) << "it is no amendment";
  for (const std::string& answer :
       {world.MoveOrder("author", id, Annulled, Entered), world.AddOrderRow(id, 1, 20, 1),
        world.AnnulOrder("author", id)}) {
    EXPECT_NE(answer, "ok");
  }
  EXPECT_NE(world.AddRow(world.NewRequest(3), 1, 20, 1, "0", id).find("е анулирана"),
            std::string::npos);
}

TEST_P(Orders, AnEmptyOrderIsDeleted) {
  const std::int64_t id = world.NewOrder();
  const Change deletion = DeleteOf({{"IdNumber", id}});
  ASSERT_EQ(world.AddOrderRow(id, 1, 20, 1), "ok");
  EXPECT_EQ(world.ApplyOrder("author", "dspSuppManifacOrder", deletion),
            "!!Err_Поръчка за производство 1 има редове. Първо ги изтрийте.");
  ASSERT_EQ(world.ApplyOrder("author", "dspSuppManOrderDet", DeleteOf(Row(id, 1))), "ok");
  EXPECT_EQ(world.ApplyOrder("author", "dspSuppManifacOrder", deletion), "ok");
}

/// What the rules say of a move, written anew: author created the order, kolev requested it.
bool MayMove(int to, int status, int rights, const std::string& who) {
  const bool edit = (rights & static_cast<int>(Right::Edit)) != 0;
  const bool remove = (rights & static_cast<int>(Right::Delete)) != 0;
  const bool owner = who == "author" || who == "boss" || who == "second";
  const bool requester = who == "kolev" || who == "boss";
  switch (to) {
    case 0:
      return remove && owner && (status == 1 || status == 2);
    case 2:
      return edit && owner && status == 3;
    case 3:
      return edit && owner && status == 2;
    case 6:
      return edit && requester && status == 7;
    case 7:
      return edit && requester && status == 6;
    default:
      return false;
  }
}

TEST_P(Orders, EveryMoveFromEveryStatusByEveryone) {
  world.Server().AddUser("second", kAllRights, 2);
  world.AddLevel(3, 1, 0, 0, ApproverKind::CostCenterHead, DocumentKind::SupplierOrder);
  const std::int64_t id = world.NewOrder();
  ASSERT_EQ(world.AddOrderRow(id, 1, 20, 1000), "ok");
  world.RunSql("insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 101)");
  world.RunSql("update SuppManifacOrder set Notifier = 101");
  int allowed = 0;
  for (const char* who : {"author", "kolev", "petrova", "boss", "second"}) {
    for (const int rights : {1, 3, 9, 11}) {
      ASSERT_TRUE(
          world.Server().Admin().Grant(who, static_cast<int>(Point::SupplierOrders), rights));
      for (int status = 1; status <= 7; ++status) {
        for (int to = 0; to <= 7; ++to) {
          if (to == status) continue;
          world.RunSql("delete from SuppManOrderAdmin");
          world.RunSql(
              "update SuppManifacOrder set Status = ?1, AnnulOn = null, AnnulFrom = null,"
              " AmendFrom = 'before'",
              {status});
          const std::string answer =
              to == 0 ? world.AnnulOrder(who, id) : world.MoveOrder(who, id, status, to);
          EXPECT_EQ(answer == "ok", MayMove(to, status, rights, who))
              << who << " with " << rights << " from " << status << " to " << to << ": " << answer;
          allowed += answer == "ok" ? 1 : 0;
          const bool amends = answer == "ok" && (to == Entered || to == ForApproval);
          EXPECT_EQ(world.Count("SuppManifacOrder where AmendFrom = 'before'"), amends ? 0 : 1)
              << who << " from " << status << " to " << to;
        }
      }
    }
  }
  EXPECT_EQ(allowed, 3 * (2 * 2 + 2 * 2) + 2 * 2 * 2) << "annul, send, correct; complete, reopen";
}

TEST_P(Orders, ALoginThatDocumentsNameIsNotGivenAgain) {
  UserAdmin& admin = world.Server().Admin();
  const auto add = [&](const std::string& login) -> std::string {
    const auto added =
        admin.AddUser({login, "Друг човек", "", 3, 1, TestServer::PasswordOf(login)});
    return added ? "ok" : added.GetFailure().message;
  };
  ASSERT_GT(world.NewOrder(), 0);
  for (const char* login : {"author", "stranger"})
    ASSERT_TRUE(admin.RemoveUser(login));
  for (const char* login : {"author", "AUTHOR"}) {
    EXPECT_EQ(add(login), "!!Err_Потребителското име „" + std::string(login) +
                              "“ е било на друг потребител и документи го помнят: те щяха да "
                              "станат на новия. Изберете друго име.");
  }
  EXPECT_EQ(add("author2"), "ok");
  EXPECT_EQ(add("stranger"), "ok") << "nothing is his";
  // One who only stamped a document is remembered as well, in whatever column.
  for (const LoginColumn& one : LoginColumns()) {
    const std::string set = "update " + std::string(one.table) + " set " + std::string(one.column);
    if (one.table != "SuppManifacOrder") continue;
    world.RunSql(set + " = 'stranger'");
    ASSERT_TRUE(admin.RemoveUser("stranger"));
    EXPECT_NE(add("stranger"), "ok") << one.column;
    world.RunSql(set + " = 'kolev'");
    EXPECT_EQ(add("stranger"), "ok") << one.column;
  }
  if (GetParam() != Engine::Sqlite) return;
  std::set<std::string> sorted;
  for (const LoginColumn& one : LoginColumns())
    sorted.insert(std::string(one.table) + "." + std::string(one.column));
  std::string listed;
  for (const std::string& one : sorted)
    listed += (listed.empty() ? "" : " ") + one;
  EXPECT_EQ(world.Column("select m.name || '.' || c.name from sqlite_schema m, "
                         "pragma_table_info(m.name) c where m.type = 'table' and lower(c.type) = "
                         "'text' and c.name glob '[A-Z]*From' order by 1",
                         ValueKind::Memo),
            listed)
      << "every column that keeps a login is asked";
}

TEST_P(Orders, ARowIsPostedInAsManyStatementsAsARequests) {
  const std::int64_t order = world.NewOrder();
  const std::int64_t request = world.NewRequest(3);
  const EngineCounters& counters = world.Server().Base().Counters();
  const auto cost = [&](const std::function<std::string()>& post) {
    const std::int64_t statements = counters.statements;
    const std::int64_t roundTrips = counters.roundTrips;
    EXPECT_EQ(post(), "ok");
    return std::pair(counters.statements - statements, counters.roundTrips - roundTrips);
  };
  world.As("author");
  const auto requests = cost([&] { return world.AddRow(request, 1, 20, 1000); });
  const auto orders = cost([&] { return world.AddOrderRow(order, 1, 20, 1000); });
  EXPECT_LE(orders.first, requests.first);
  EXPECT_LE(orders.second, requests.second);
}

TEST_P(Orders, OfTwoWhoEnterTheSameEntryOneDoes) {
  world.As("author");
  world.As("boss");
  for (int round = 0; round < 6; ++round) {
    const std::int64_t id = world.NewOrder();
    std::string one;
    std::thread other([&] {
      one = world.ApplyOrder("boss", "dspSuppManOrderDet",
                             InsertOf(OrderWorld::OrderRow(id, 1, 20, 1000)));
    });
    const std::string two = world.AddOrderRow(id, 2, 20, 8000);
    other.join();
    EXPECT_NE(one == "ok", two == "ok") << one << "\n" << two;
    EXPECT_EQ(world.OrderSums(id), one == "ok" ? "12.5000 12.5000" : "100.0000 100.0000");
  }
}

}  // namespace
}  // namespace orvane::server
