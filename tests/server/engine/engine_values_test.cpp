#include <gtest/gtest.h>

#include <limits>

#include "packet/fold.h"
#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

class EngineValues : public testing::TestWithParam<TestEngine> {};
INSTANTIATE_TEST_SUITE_P(Engines, EngineValues, testing::ValuesIn(TestEngines()), TestEngineName);

struct KindColumn {
  ValueKind kind;
  std::string_view sqlite;
  std::string_view postgres;
  VariantArray values;
};

const std::vector<KindColumn>& KindColumns() {
  constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
  static const std::vector<KindColumn> columns = {
      {ValueKind::Bool, "integer", "smallint", {false, true}},
      {ValueKind::Byte, "integer", "smallint", {0, 255}},
      {ValueKind::Int16, "integer", "smallint", {-32768, 32767}},
      {ValueKind::Int32, "integer", "integer", {-2147483647 - 1, 2147483647}},
      {ValueKind::Code, "integer", "bigint", {kLowest64, kHighest64, 0}},
      {ValueKind::Amount,
       "integer",
       "numeric(19,4)",
       {Decimal(kLowest64, 4), Decimal(kHighest64, 4), Decimal(1, 4), Decimal(-1, 4),
        Decimal(100000000, 4), Decimal(0, 4), Decimal(250, 2), Decimal(99999999, 4)}},
      {ValueKind::Rate,
       "integer",
       "numeric(19,7)",
       {Decimal(kLowest64, 7), Decimal(kHighest64, 7), Decimal(19558300, 7), Decimal(1, 7),
        Decimal(-10000001, 7), Decimal(195583, 5)}},
      {ValueKind::Double, "real", "double precision", {0.1, -1e308, kSmallest, 3.0, 1.0 / 3.0}},
      {ValueKind::Date,
       "integer",
       "date",
       {Date{-719162}, Date{2932896}, Date{0}, *Date::FromYmd(2000, 1, 1)}},
      {ValueKind::Stamp,
       "integer",
       "timestamptz",
       {Stamp{0}, Stamp{-1}, Stamp{-62135596800000000}, Stamp{253402300799999999},
        Stamp{1772694000123456}}},
      {ValueKind::String, "text", "text", {"", " ", "Щъркел ЕООД", "a'b\"c\\d?1$2"}},
      {ValueKind::Memo, "text", "text", {std::string(100000, 'x'), "ред 1\r\nред 2"}},
  };
  return columns;
}

TEST_P(EngineValues, EveryKindComesBackAsItWasWritten) {
  const auto database = EmptyDatabase(GetParam());
  for (const KindColumn& column : KindColumns()) {
    SCOPED_TRACE(RowOf(column.kind).name);
    const std::string type(GetParam() == Engine::Sqlite ? column.sqlite : column.postgres);
    const std::string table = "Trial" + std::string(RowOf(column.kind).name);
    ASSERT_TRUE(database->RunScript("create table " + table + " (Id integer, Value " + type + ")"));
    VariantArray values = column.values;
    values.emplace_back();
    for (std::size_t i = 0; i < values.size(); ++i) {
      const Variant key(static_cast<std::int64_t>(i));
      Do(*database, Sql("insert into " + table + " (Id, Value) values (?1, ?2)", {key, values[i]}));
      EXPECT_EQ(Ask(*database, "select Value from " + table + " where Id = ?1", column.kind, {key}),
                values[i])
          << values[i].ToText();
      if (values[i].IsNull()) continue;
      EXPECT_EQ(
          AskNumber(*database, "select count(*) from " + table + " where Value = ?1 and Id = ?2",
                    {values[i], key}),
          1)
          << values[i].ToText();
    }
  }
}

TEST_P(EngineValues, SumsOfAmountsAreExact) {
  const auto database = EmptyDatabase(GetParam());
  const bool sqlite = GetParam() == Engine::Sqlite;
  ASSERT_TRUE(database->RunScript(std::string("create table T (V ") +
                                  (sqlite ? "integer" : "numeric(19,4)") + ")"));
  for (int i = 0; i < 3; ++i)
    Do(*database, Sql("insert into T (V) values (?1)", {Decimal(1000, 4)}));
  EXPECT_EQ(Ask(*database, "select sum(V) from T", ValueKind::Amount), Variant(Decimal(3000, 4)));
}

TEST_P(EngineValues, AValueThatDoesNotFitItsColumnIsAnErrorAndNothingElse) {
  const auto database = EmptyDatabase(GetParam());
  struct Row {
    std::string_view expression;
    ValueKind kind;
  };
  constexpr Row kRows[] = {
      {"70000", ValueKind::Int16},       {"2", ValueKind::Bool},
      {"-1", ValueKind::Byte},           {"'text'", ValueKind::Int32},
      {"1", ValueKind::String},          {"3000000000", ValueKind::Int32},
      {"'12.03.2026'", ValueKind::Date}, {"cast(1.5 as double precision)", ValueKind::Amount},
  };
  for (const Row& row : kRows) {
    const Statement statement =
        Sql("select " + std::string(row.expression), {}, {{"Value", row.kind, 0}});
    EXPECT_EQ(Outcome(database->ReadSnapshot({&statement, 1})), "Other") << row.expression;
  }
  EXPECT_EQ(AskNumber(*database, "select 7"), 7);
}

TEST_P(EngineValues, WhatNoColumnCanHoldIsRefusedBeforeTheEngine) {
  const auto database = EmptyDatabase(GetParam());
  const Variant refused[] = {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), VariantArray{1}};
  for (const Variant& value : refused) {
    const Statement statement = Sql("select 1 where ?1 is null", {value}, {{"V"}});
    EXPECT_EQ(Outcome(database->ReadSnapshot({&statement, 1})), "Other");
  }
}

TEST_P(EngineValues, AStatementTakesItsOwnNumberOfParamsAndStandsAlone) {
  const auto database = EmptyDatabase(GetParam());
  const Statement wrong[] = {
      Sql("select 1 where 1 = ?1", {}, {{"V"}}),
      Sql("select 1 where 1 = ?1", {1, 2}, {{"V"}}),
      Sql("select 1; select 2", {}, {{"V"}}),
      Sql("select 1, 2", {}, {{"V"}}),
      Sql("", {}, {}),
  };
  for (const Statement& statement : wrong) {
    EXPECT_EQ(Outcome(database->ReadSnapshot({&statement, 1})), "Other") << statement.text;
  }
  const Statement quoted = Sql("select '?1', ?1 /* ?7 */ -- ?8", {"a"},
                               {{"A", ValueKind::Memo}, {"B", ValueKind::Memo}});
  const auto answer = database->ReadSnapshot({&quoted, 1});
  ASSERT_TRUE(answer) << answer.GetFailure().text;
  EXPECT_EQ(answer->front().At(0, 0), Variant("?1"));
  EXPECT_EQ(answer->front().At(0, 1), Variant("a"));
}

TEST_P(EngineValues, ATextServesRowsWithAndWithoutValues) {
  const auto database = EmptyDatabase(GetParam());
  ASSERT_TRUE(database->RunScript("create table T (A integer, B text, C integer)"));
  const VariantArray rows[] = {{Variant(), Variant(), Variant()},
                               {1, Variant(), Variant()},
                               {Variant(), "b", Variant()},
                               {1, "b", 3},
                               {Variant(), "b", 3},
                               {Variant(), Variant(), 3}};
  for (const VariantArray& row : rows)
    Do(*database, Sql("insert into T (A, B, C) values (?1, ?2, ?3)", row));
  EXPECT_EQ(AskNumber(*database, "select count(*) from T where A is null and B = ?1", {"b"}), 2);
  EXPECT_EQ(AskNumber(*database, "select count(*) from T where C = 3 and B is null"), 1);
}

TEST_P(EngineValues, TheEnginesFoldEveryLetterAsThePacketDoes) {
  const auto database = FreshDatabase(GetParam());
  std::string letters;
  for (unsigned point = 0x20; point < 0x2000; ++point) {
    if (point < 0x80) {
      letters += static_cast<char>(point);
    } else if (point < 0x800) {
      letters += static_cast<char>(0xC0u | point >> 6);
      letters += static_cast<char>(0x80u | (point & 0x3Fu));
    } else {
      letters += static_cast<char>(0xE0u | point >> 12);
      letters += static_cast<char>(0x80u | (point >> 6 & 0x3Fu));
      letters += static_cast<char>(0x80u | (point & 0x3Fu));
    }
  }
  for (const std::string& text : {letters, std::string("Щъркел  \t"), std::string(" \u00A0"),
                                  std::string("Ёж "), std::string()}) {
    EXPECT_EQ(Ask(*database, "select orvane_fold(?1)", ValueKind::Memo, {text}),
              Variant(Fold(text)));
  }
  EXPECT_TRUE(
      Ask(*database, "select orvane_fold(LanguageName2) from Company", ValueKind::Memo).IsNull());
}

}  // namespace
}  // namespace orvane::server
