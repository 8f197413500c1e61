#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "server/catalogue/search_fence.h"
#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

class EngineSearch : public testing::TestWithParam<TestEngine> {
 protected:
  EngineSearch() : database_(FreshDatabase(GetParam())) {}

  std::string Search(std::vector<std::string> texts, SearchLimits limits = {}) {
    std::vector<Statement> statements;
    for (std::string& text : texts)
      statements.push_back(Sql(std::move(text), {}, {{"V", ValueKind::Memo, 0}}));
    return Outcome(database_->Search(guard_, statements, limits));
  }

  std::unique_ptr<Database> database_;
  // Trusted: reads what searches may not.
  Statement guard_ = Sql("select count(*) from Session", {}, {{"Sessions", ValueKind::Code, 0}});
};
INSTANTIATE_TEST_SUITE_P(Engines, EngineSearch, testing::ValuesIn(TestEngines()), TestEngineName);

/// What only an engine behind a connection can do.
class ServerSearch : public EngineSearch {};
INSTANTIATE_TEST_SUITE_P(Engines, ServerSearch, testing::ValuesIn(TestEnginesWithServer()),
                         TestEngineName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ServerSearch);

TEST_P(EngineSearch, TheGuardAnswersFirst) {
  const Statement search = Sql("select Name from NomIn where Nomenclature = ?1 order by Element",
                               {250}, {{"Name", ValueKind::String, 30}});
  const auto packets = database_->Search(guard_, {&search, 1}, {});
  ASSERT_TRUE(packets) << packets.GetFailure().text;
  ASSERT_EQ(packets->size(), 2u);
  EXPECT_EQ((*packets)[0].At(0, "Sessions"), Variant(0));
  EXPECT_EQ((*packets)[1].At(1, "Name"), Variant("Да"));
}

TEST_P(EngineSearch, OnlyReadingOfOpenTablesIsLetThrough) {
  const std::string open[] = {
      "select UserName from WSysUsers",
      "select max(coalesce(n.Name2, n.Name)) from NomIn n join NomIn m on m.Element = n.Element",
      "select Name from NomIn where Element in (select max(Element) from NomIn)",
      "select substr(trim(lower(Name)), 1, 3) from NomIn where FoldName like '%а%'",
  };
  for (const std::string& text : open)
    EXPECT_EQ(Search({text}), "-") << text;

  const std::string fenced[] = {
      "select PasswordHash from WSysUsers",
      "select UserName from WSysUsers where PasswordHash > 'a'",
      "select TicketHash from Session",
      "select Name from NomIn where exists (select 1 from Session where Login = 'x')",
      "select NewValue from History",
      "select Answer from ClientKey",
      "select Name from SchemaMigration",
      "insert into Params (ParamGroup, Number, Value) values (1, 1, 'x') returning Value",
      "update NomIn set Name = 'x' returning Name",
      "delete from NomIn returning Name",
      "with gone as (delete from NomIn returning Name) select Name from gone",
      "select Name from NomIn for update",
  };
  for (const std::string& text : fenced)
    EXPECT_EQ(Search({text}), "Other") << text;

  const std::string ofEngine[] = {
      GetParam() == Engine::Sqlite ? "select sql from sqlite_master"
                                   : "select rolpassword from pg_authid",
      GetParam() == Engine::Sqlite ? "pragma user_version" : "copy NomIn to stdout",
      GetParam() == Engine::Sqlite ? "attach ':memory:' as other" : "set role orvane",
      GetParam() == Engine::Sqlite ? "select load_extension('x')"
                                   : "select pg_read_file('/etc/passwd')",
      GetParam() == Engine::Sqlite ? "select name from pragma_table_info('Session')"
                                   : "create temporary table T (A integer)",
  };
  for (const std::string& text : ofEngine)
    EXPECT_NE(Search({text}), "-") << text;
  EXPECT_EQ(AskNumber(*database_, "select count(*) from NomIn where Nomenclature = 250"), 2);
  EXPECT_EQ(AskNumber(*database_, "select count(*) from Params"), 0);
}

TEST_P(EngineSearch, AsManyTextsAsEverAreAnswered) {
  const auto text = [](int i) {
    return "select Name from NomIn where Element = 0 and " + std::to_string(i) + " = 1";
  };
  // More than a connection keeps: at some text what it keeps is dropped.
  for (int i = 0; i < 520; ++i)
    ASSERT_EQ(Search({text(i)}), "-") << i;
  for (int i = 0; i < 520; ++i) {
    const Statement two[] = {Sql(text(i), {}, {{"Name", ValueKind::Memo, 0}}),
                             Sql("select 1", {}, {{"One", ValueKind::Int32, 0}})};
    ASSERT_EQ(Outcome(database_->ReadSnapshot(two)), "-") << i;
    // Behind a script every kept text is stale.
    if (i == 0) {
      ASSERT_TRUE(database_->RunScript("select 1"));
    }
  }
}

TEST_P(ServerSearch, ARolePutOffIsTakenAgain) {
  EXPECT_EQ(Search({"select set_config('role', 'none', false)", "select TicketHash from Session"}),
            "Other");
  EXPECT_EQ(Search({"select set_config('role', 'none', true)"}), "-");
  EXPECT_EQ(Search({"select TicketHash from Session"}), "Other");
}

TEST_P(EngineSearch, TimeIsLimitedAndTheDatabaseGoesOn) {
  const std::string endless =
      "select max(a.Name || b.Name || c.Name || d.Name || e.Name || f.Name) from NomIn a, NomIn b, "
      "NomIn c, NomIn d, NomIn e, NomIn f";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Search({endless}, {200}), "Limit");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(Search({"select Name from NomIn"}), "-");
}

TEST_P(EngineSearch, TheAnswersOfACallTakeSoMuchMemoryTogether) {
  for (const std::int32_t told : {0, 1'000'000}) {  // by the latter PostgreSQL sends row after row
    Statement search =
        Sql("select a.Name from NomIn a, NomIn b limit 2000", {}, {{"V", ValueKind::Memo, 0}});
    search.mostRows = told;
    const auto times = [&](std::size_t number) {
      return Outcome(database_->Search(guard_, std::vector<Statement>(number, search),
                                       {.milliseconds = 3000, .bytes = 300'000}));
    };
    EXPECT_EQ(times(1), "-");
    EXPECT_EQ(times(30), "TooLarge");
    EXPECT_EQ(times(1), "-");
    search.text = "select a.Name from NomIn a, NomIn b, NomIn c limit 30000";
    EXPECT_EQ(times(1), "TooLarge");
  }
}

TEST_P(ServerSearch, TheSearchesOfACallShareItsTime) {
  EXPECT_EQ(Search(std::vector<std::string>(6, "select pg_sleep(0.4)::text"), {1000}), "Limit");
}

TEST_P(ServerSearch, AServerThatDoesNotKeepTheLimitIsStoppedFromOutside) {
  // The guard runs before the server's own limit is set, so only the outside timer can end it.
  guard_ = Sql("select pg_sleep(30)::text", {}, {{"V", ValueKind::Memo, 0}});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Search({"select Name from NomIn"}, {200}), "Limit");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  guard_ = Sql("select 1", {}, {{"V", ValueKind::Code, 0}});
  EXPECT_EQ(Search({"select Name from NomIn"}), "-");
}

TEST_P(ServerSearch, WhatTookLongIsPlannedForItsValues) {
  const auto planOf = [&](const char* text, bool forValues) {
    Statement search = Sql(text, {}, {{"V", ValueKind::Memo, 0}});
    search.plannedForValues = forValues;
    const auto packets = database_->Search(guard_, {&search, 1}, {});
    return packets ? (*packets)[1].At(0, "V").ToText() : packets.GetFailure().text;
  };
  const char* quick = "select current_setting('plan_cache_mode')";
  const char* slow = "select current_setting('plan_cache_mode') || pg_sleep(0.4)::text";
  EXPECT_EQ(planOf(slow, false), "force_generic_plan");
  EXPECT_EQ(planOf(slow, false), "force_generic_plan") << "once may be a coincidence";
  EXPECT_EQ(planOf(slow, false), "force_custom_plan");
  EXPECT_EQ(planOf(quick, true), "force_custom_plan");
  EXPECT_EQ(planOf(quick, false), "force_generic_plan") << "a mode ends with its search";
}

TEST_P(ServerSearch, WaitingForAConnectionMakesNoSearchSlow) {
  const Statement plan =
      Sql("select current_setting('plan_cache_mode') || ' '", {}, {{"V", ValueKind::Memo, 0}});
  for (int round = 0; round < 3; ++round) {
    std::vector<std::future<std::string>> others;
    for (int i = 0; i < kSearchPlaces; ++i) {
      others.push_back(
          std::async(std::launch::async, [&] { return Search({"select pg_sleep(0.8)::text"}); }));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const auto packets = database_->Search(guard_, {&plan, 1}, {});
    ASSERT_TRUE(packets) << packets.GetFailure().text;
    EXPECT_EQ((*packets)[1].At(0, "V").ToText(), "force_generic_plan ");
    for (auto& other : others)
      EXPECT_EQ(other.get(), "-");
  }
}

TEST_P(ServerSearch, ALimitOrAModeThatASearchSetsEndsWithIt) {
  for (const char* set : {"select set_config('statement_timeout', '0', false)",
                          "select set_config('default_transaction_read_only', 'off', false)",
                          "select set_config('enable_hashjoin', 'on', false)"}) {
    EXPECT_EQ(Search({set}), "-") << set;
  }
  const auto setting = [&](const std::string& name) {
    const Statement search =
        Sql("select current_setting('" + name + "')", {}, {{"V", ValueKind::Memo, 0}});
    const auto packets = database_->Search(guard_, {&search, 1}, {});
    return packets ? (*packets)[1].At(0, "V").ToText() : packets.GetFailure().text;
  };
  EXPECT_EQ(setting("statement_timeout"), "3s");
  EXPECT_EQ(setting("default_transaction_read_only"), "on");
  EXPECT_EQ(setting("transaction_read_only"), "on");
  EXPECT_EQ(setting("role"), "orvane_search");
}

TEST_P(ServerSearch, TheSearchRoleReadsExactlyWhatTheFenceLeavesOpen) {
  const Statement columns =
      Sql("select c.relname, a.attname, has_column_privilege('orvane_search', c.oid, a.attnum, "
          "'select')::integer, has_any_column_privilege('orvane_search', c.oid, 'insert, update')"
          "::integer + has_table_privilege('orvane_search', c.oid, 'delete, truncate')::integer "
          "from pg_class c join pg_attribute a on a.attrelid = c.oid and a.attnum > 0 "
          "where c.relkind = 'r' and c.relnamespace = 'public'::regnamespace",
          {},
          {{"TableName", ValueKind::Memo},
           {"ColumnName", ValueKind::Memo},
           {"MayRead", ValueKind::Bool},
           {"MayWrite", ValueKind::Int32}});
  const auto packets = database_->ReadSnapshot({&columns, 1});
  ASSERT_TRUE(packets) << packets.GetFailure().text;
  const DataPacket& rows = packets->front();
  ASSERT_GT(rows.rowCount, 50u);
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    const std::string table = rows.At(row, 0).ToText();
    const std::string column = rows.At(row, 1).ToText();
    EXPECT_EQ(rows.At(row, 2), Variant(MayBeSearched(table, column))) << table << "." << column;
    EXPECT_EQ(rows.At(row, 3), Variant(0)) << table << "." << column;
  }
}

}  // namespace
}  // namespace orvane::server
