#include "server/schema/migrate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "packet/fold.h"
#include "server/schema/embedded_migrations.h"
#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

int CountOf(TestEngine engine) {
  const auto all = engine == Engine::Sqlite ? SqliteMigrations() : PostgresMigrations();
  return static_cast<int>(all.size());
}

class Migration : public testing::TestWithParam<TestEngine> {};
INSTANTIATE_TEST_SUITE_P(Engines, Migration, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Migration, AnEmptyDatabaseBecomesCurrentOnce) {
  const auto database = EmptyDatabase(GetParam());
  auto state = CurrentSchema(*database);
  ASSERT_TRUE(state) << state.GetFailure().message;
  EXPECT_EQ(state->applied, 0);
  const auto first = Migrate(*database);
  ASSERT_TRUE(first) << first.GetFailure().message;
  EXPECT_EQ(*first, CountOf(GetParam()));
  const auto second = Migrate(*database);
  ASSERT_TRUE(second) << second.GetFailure().message;
  EXPECT_EQ(*second, 0);
  state = CurrentSchema(*database);
  ASSERT_TRUE(state);
  EXPECT_TRUE(state->IsCurrent());
}

TEST_P(Migration, TwoServersApplyEachScriptOnce) {
  const auto first = EmptyDatabase(GetParam());
  const auto second = OpenAgain(*first);
  int applied[2] = {};
  std::string failures[2];
  const auto work = [&](Database& database, int at) {
    const auto answer = Migrate(database);
    if (answer) {
      applied[at] = *answer;
    } else {
      failures[at] = answer.GetFailure().message;
    }
  };
  std::thread other([&] { work(*second, 1); });
  work(*first, 0);
  other.join();
  EXPECT_EQ(failures[0] + failures[1], "");
  EXPECT_EQ(applied[0] + applied[1], CountOf(GetParam()));
}

TEST_P(Migration, ANewerDatabaseIsLeftAlone) {
  const auto database = FreshDatabase(GetParam());
  Do(*database, Sql("insert into SchemaMigration (Number, Name, AppliedOn) values (9999, 'x', ?1)",
                    {Stamp{0}}));
  const auto answer = Migrate(*database);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.GetFailure().kind, FailureKind::Refused);
  EXPECT_NE(answer.GetFailure().message.find("Обновете програмата"), std::string::npos);
}

TEST_P(Migration, AScriptThatFailsLeavesNothing) {
  const auto database = EmptyDatabase(GetParam());
  EXPECT_FALSE(
      database->RunScript("create table T (A integer); insert into T values (1); nonsense"));
  ASSERT_TRUE(database->RunScript("create table T (A integer)"));
  EXPECT_EQ(AskNumber(*database, "select count(*) from T"), 0);
}

TEST_P(Migration, RightsVersionsRiseWithEveryChangeOfAUserOrOfRights) {
  const auto database = FreshDatabase(GetParam());
  struct Row {
    std::string text;
    bool ofUser;
  };
  Do(*database, Sql("insert into WSysUsers (ShortName, UserName, FoldShortName, FoldUserName, "
                    "Category) values ('petrov', 'П', 'petrov', 'п', 3)"));
  const Row rows[] = {
      {"insert into UserRights (Login, Point, Rights) values ('petrov', 1, 1)", true},
      {"update UserRights set Rights = 3 where Login = 'petrov'", true},
      {"delete from UserRights where Login = 'petrov'", true},
      {"update WSysUsers set Blocked = 1", true},
      {"update WSysUsers set Category = 0", true},
      {"update WSysUsers set PasswordHash = 'x'", true},
      {"delete from WSysUsers where ShortName = 'petrov'", false},
  };
  const auto versions = [&] {
    return std::pair(
        AskNumber(*database, "select RightsVersion from Company"),
        AskNumber(*database, "select RightsVersion from WSysUsers where ShortName = 'petrov'"));
  };
  for (const Row& row : rows) {
    const auto before = versions();
    Do(*database, Sql(row.text));
    const auto after = versions();
    EXPECT_GT(after.first, before.first) << row.text;
    if (row.ofUser) {
      EXPECT_GT(after.second, before.second) << row.text;
    }
  }
}

/// "department.code 1": table, column, whether a value is required.
std::vector<std::string> Columns(Database& database) {
  constexpr std::string_view kSqlite =
      "select m.name || '.' || c.name || ' ' || cast(c.\"notnull\" as text) from sqlite_master m, "
      "pragma_table_xinfo(m.name) c where m.type = 'table' and m.name not like 'sqlite%' and "
      "m.name "
      "not in (select name from pragma_table_list where type in ('virtual', 'shadow'))";
  constexpr std::string_view kPostgres =
      "select c.relname || '.' || a.attname || ' ' || a.attnotnull::integer from pg_class c "
      "join pg_attribute a on a.attrelid = c.oid and a.attnum > 0 and not a.attisdropped "
      "where c.relkind = 'r' and c.relnamespace = 'public'::regnamespace";
  const Statement statement =
      Sql(std::string(database.Kind() == Engine::Sqlite ? kSqlite : kPostgres), {},
          {{"Column", ValueKind::Memo, 0}});
  const auto packets = database.ReadSnapshot({&statement, 1});
  std::vector<std::string> columns;
  if (!packets) return {packets.GetFailure().text};
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    columns.push_back(Fold(packets->front().At(row, 0).ToText()));
  }
  std::sort(columns.begin(), columns.end());
  return columns;
}

TEST(MigrationOfBothEngines, MakesTheSameTablesAndColumns) {
  if (TestEngines().size() < 2) GTEST_SKIP() << "there is no PostgreSQL at hand";
  const auto sqlite = FreshDatabase(Engine::Sqlite);
  const auto postgres = FreshDatabase(Engine::Postgres);
  const auto left = Columns(*sqlite);
  const auto right = Columns(*postgres);
  std::vector<std::string> differences;
  std::set_symmetric_difference(left.begin(), left.end(), right.begin(), right.end(),
                                std::back_inserter(differences));
  // History counts by itself, which SQLite calls nullable.
  std::erase_if(differences, [](const std::string& it) { return it.starts_with("history.id "); });
  EXPECT_EQ(differences, std::vector<std::string>{});
  EXPECT_GT(left.size(), 50u);

  const auto one = SqliteMigrations();
  const auto two = PostgresMigrations();
  ASSERT_EQ(one.size(), two.size());
  for (std::size_t i = 0; i < one.size(); ++i)
    EXPECT_EQ(one[i].name, two[i].name);
}

}  // namespace
}  // namespace orvane::server
