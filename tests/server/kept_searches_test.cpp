// What is found again instead of being read: the same statement with other values. What decides the
// rendering makes it another statement.

#include "server/dialect/kept_searches.h"

#include "server/dialect_world.h"

namespace orvane::server {
namespace {

constexpr char kEntries[] =
    "SELECT B.SerialNumber, CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN "
    "M.Name WHEN 2 THEN S.Name END WHEN 0 THEN B.Name END cbName FROM BaseSupplyList B "
    "LEFT OUTER JOIN MaterialStocks M ON B.InventoryCode = M.IdNumber "
    "LEFT OUTER JOIN Services S ON S.Code = B.ServiceCode "
    "LEFT OUTER JOIN DescrBaseSupplyList D ON 1=1 "
    "WHERE (M.SuppActiveFrom IS NULL OR M.SuppActiveFrom <= '05.03.2026')";
constexpr char kRequests[] = "SELECT POIdNumber FROM PurchaseOrder WHERE Status = ";

/// One question to the server's reader.
struct Question {
  std::string sql;
  NamedValues params = {};
  RowPredicate predicate = {};
  int rowLimit = 80;
  int day = 20'000;
  bool mayRead = true;
  Engine engine = Engine::Sqlite;
  std::string continuation = {};

  SearchInput Input() const {
    return {sql,
            params,
            rowLimit,
            continuation,
            engine,
            [this](const CatalogueTable&) { return mayRead; },
            [this](const CatalogueTable&) { return predicate; },
            Date{day},
            TimeZone{}};
  }
};

Question With(Question question, void (*change)(Question&)) {
  change(question);
  return question;
}

TEST(KeptSearches, OtherValuesAreTheSameStatement) {
  const std::string entries = kEntries;
  const Question seen{kRequests + std::string("5"), {}, {"{t}.CreatedFrom = ?1", {"ivanova"}}};
  const std::pair<Question, Question> rows[] = {
      {{entries + " AND cbName LIKE 'Лам%'"}, {entries + "  AND cbName\nLIKE 'ОТ''пад%'"}},
      {{entries + " AND cbName LIKE '%лист%'"}, {entries + " AND cbName LIKE '%шайба%'"}},
      {{entries + " AND B.SerialNumber = 20045"}, {entries + " AND B.SerialNumber = 7"}},
      {{entries + " AND B.SerialNumber IN (1, 2)"}, {entries + " AND B.SerialNumber IN (3, 4)"}},
      {{entries + " AND cbName LIKE :A", {{"A", "Лам%"}}},
       {entries + " AND cbName LIKE :A", {{"a", "Шай%"}}}},
      {seen, With(seen, [](Question& q) { q.predicate.params = {"petrov"}; })},
      {seen, With(seen, [](Question& q) { q.sql = kRequests + std::string("6"); })},
      {{"SELECT Employee FROM Employees WHERE Name = 'Иван'"},
       {"SELECT Employee FROM Employees WHERE Name = 'ПЕТЪР '"}},
  };
  for (const auto& [first, second] : rows) {
    KeptSearches kept;
    for (const Question* question : {&first, &second, &first}) {
      EXPECT_EQ(AsText(kept.Render(question->Input())), AsText(RenderSearch(question->Input())));
    }
    EXPECT_EQ(kept.Read(), 1) << second.sql;
  }
}

TEST(KeptSearches, WhatDecidesTheRenderingMakesAnotherStatement) {
  const std::string entries = kEntries;
  const Question names{entries + " AND cbName LIKE 'Лам%'"};
  const Question requests{kRequests + std::string("5"), {}, {"{t}.CreatedFrom = ?1", {"ivanova"}}};
  const Question language{"SELECT CASE :L WHEN 1 THEN Name ELSE Name2 END N FROM KindSupplies",
                          {{"L", 1}}};
  const std::pair<Question, Question> rows[] = {
      {names, {entries + " AND cbName LIKE '%Лам%'"}},
      {names, {entries + " AND cbName LIKE 'Лам'"}},
      {names, {entries + " AND cbName LIKE '%'"}},
      {names, {entries + " AND cbName = 'Лам%'"}},
      {names, With(names, [](Question& q) { q.rowLimit = 20; })},
      {names, With(names, [](Question& q) { q.engine = Engine::Postgres; })},
      {requests, With(requests, [](Question& q) { q.predicate = {}; })},
      {requests, With(requests,
                      [](Question& q) {
                        q.predicate = {"{t}.Notifier = ?1", {"ivanova"}};
                      })},
      {requests, {kRequests + std::string("NULL"), {}, requests.predicate}},
      {requests, {kRequests + std::string("5 AND 1 = 0"), {}, requests.predicate}},
      {language, With(language,
                      [](Question& q) {
                        q.params = {{"L", 2}};
                      })},
      {language, With(language,
                      [](Question& q) {
                        q.params = {{"L", Variant()}};
                      })},
      {{"SELECT Code, 1 A FROM KindSupplies WHERE 1 = 1"},
       {"SELECT Code, 1 A FROM KindSupplies WHERE 1 = 2"}},
      {{"SELECT Code, 1 A FROM KindSupplies"}, {"SELECT Code, 2 A FROM KindSupplies"}},
      {{"SELECT Code, 'а' A FROM KindSupplies"}, {"SELECT Code, 'аб' A FROM KindSupplies"}},
      {{"SELECT CAST(Name AS VARCHAR(5)) N FROM KindSupplies"},
       {"SELECT CAST(Name AS VARCHAR(6)) N FROM KindSupplies"}},
      {{"SELECT Code FROM KindSupplies WHERE Code = ISNULL(:A, 4)", {{"A", Variant()}}},
       {"SELECT Code FROM KindSupplies WHERE Code = ISNULL(:A, 4)", {{"A", 3}}}},
      {{"SELECT Code FROM KindSupplies WHERE Code = 2 + 3"},
       {"SELECT Code FROM KindSupplies WHERE Code = 2 + 4"}},
      {{"SELECT Code FROM KindSupplies WHERE :A = 3 OR Code = :A", {{"A", 3}}},
       {"SELECT Code FROM KindSupplies WHERE :A = 3 OR Code = :A", {{"A", 4}}}},
  };
  for (const auto& [first, second] : rows) {
    KeptSearches kept;
    for (const Question* question : {&first, &second, &first, &second}) {
      EXPECT_EQ(AsText(kept.Render(question->Input())), AsText(RenderSearch(question->Input())));
    }
    EXPECT_EQ(kept.Read(), 2) << second.sql;
  }
}

TEST(KeptSearches, WhoMayNotAskIsRefusedAlsoWhenOthersMay) {
  KeptSearches kept;
  const Question asked{"SELECT Employee FROM Employees WHERE Employee = 5"};
  ASSERT_TRUE(kept.Render(asked.Input()));
  const Question barred = With(asked, [](Question& q) { q.mayRead = false; });
  const auto refused = kept.Render(barred.Input());
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.GetFailure().kind, FailureKind::NoRight);
  for (const char* value : {"'пет'", "99999999999999999999", "CURRENT", "5 5"}) {
    const Question wrong{"SELECT Employee FROM Employees WHERE Employee = " + std::string(value)};
    EXPECT_EQ(AsText(kept.Render(wrong.Input())), AsText(RenderSearch(wrong.Input())));
    EXPECT_FALSE(kept.Render(wrong.Input())) << value;
  }
}

TEST(KeptSearches, TheOnesAskedForLastAreKept) {
  KeptSearches kept(2);
  const auto ask = [&](const std::string& column) {
    ASSERT_TRUE(kept.Render(Question{"SELECT " + column + " FROM KindSupplies"}.Input()));
  };
  ask("Code");
  ask("Name");
  ask("Code");
  ask("Name2");
  EXPECT_EQ(kept.Read(), 3);
  ask("Code");
  EXPECT_EQ(kept.Read(), 3);
  ask("Name");
  EXPECT_EQ(kept.Read(), 4) << "of three, the one that was not asked for longest went";
}

TEST(KeptSearches, TakeUpNoMoreThanTheyMay) {
  constexpr std::size_t kMost = 60'000;
  KeptSearches kept(1000, kMost);
  std::string columns = "Code a0";
  for (int i = 1; i < 200; ++i) {
    columns += ", Code a" + std::to_string(i);
    ASSERT_TRUE(kept.Render(Question{"SELECT " + columns + " FROM KindSupplies"}.Input()));
    EXPECT_LE(kept.Bytes(), kMost);
  }
  EXPECT_GT(kept.Bytes(), 0u);
}

}  // namespace
}  // namespace orvane::server
