#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

class EngineTransactions : public testing::TestWithParam<TestEngine> {
 protected:
  EngineTransactions() : database_(FreshDatabase(GetParam())) {
    Do(*database_,
       Sql("insert into Params (ParamGroup, Number, Value) values (1, 1, '0'), (1, 2, '0')"));
  }
  std::string Value(int number) {
    return Ask(*database_, "select Value from Params where Number = ?1", ValueKind::Memo, {number})
        .ToText();
  }
  std::unique_ptr<Transaction> Begun() { return std::move(*database_->Begin()); }

  std::unique_ptr<Database> database_;
};
INSTANTIATE_TEST_SUITE_P(Engines, EngineTransactions, testing::ValuesIn(TestEngines()),
                         TestEngineName);

/// What only an engine behind a connection can do.
class ServerTransactions : public EngineTransactions {};
INSTANTIATE_TEST_SUITE_P(Engines, ServerTransactions, testing::ValuesIn(TestEnginesWithServer()),
                         TestEngineName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ServerTransactions);

Statement Put(int number, std::string value) {
  return Sql("update Params set Value = ?1 where ParamGroup = 1 and Number = ?2",
             {std::move(value), number});
}
const std::string kUser =
    "insert into WSysUsers (ShortName, UserName, FoldShortName, FoldUserName, Category) values ";

TEST_P(EngineTransactions, ErrorsHaveTheSameKindAndNameOnEveryEngine) {
  Do(*database_, Sql(kUser + "('ivanova', 'И', 'ivanova', 'и', 3)"));
  Do(*database_, Sql("insert into UserRights (Login, Point, Rights) values ('ivanova', 1, 15)"));
  Do(*database_, Sql("insert into Department (Code, Name, FoldName, Chief) values (7, 'С', 'с', "
                     "'ivanova')"));
  Do(*database_, Sql("insert into History (TableName, RowKey, ColumnName, ChangedBy, ChangedOn, "
                     "MachineName, Kind) values ('T', '1', 'C', 'x', ?1, 'm', 'I')",
                     {Stamp{0}}));
  struct Row {
    std::string text;
    std::string outcome;
    std::string sqlite;  // where it differs
  };
  const Row rows[] = {
      {"insert into Department (Code, Name, FoldName, Chief) values (7, 'A', 'a', 'ivanova')",
       "Unique department.code", ""},
      {"insert into UserRights (Login, Point, Rights) values ('ivanova', 1, 1)",
       "Unique userrights.login, userrights.point", ""},
      {kUser + "('Ivanova', 'И', 'ivanova', 'и', 3)", "Unique wsysusers.foldshortname", ""},
      {"insert into Department (Code, Name, FoldName, Chief) values (8, 'A', 'a', 'nobody')",
       "ForeignKey department_chief_fkey", "ForeignKey"},
      {"delete from WSysUsers where ShortName = 'ivanova'", "ForeignKey department_chief_fkey",
       "ForeignKey"},
      {"update Department set Name = null", "NotNull department.name", ""},
      {"update WSysUsers set Blocked = 2", "Check wsysusers_blocked_check",
       "Check blocked in (0, 1)"},
      {"update History set NewValue = '2'", "Check history cannot be changed", ""},
      {"delete from History", "Check history cannot be changed", ""},
      {"select nonsense", "Other", ""},
  };
  for (const Row& row : rows) {
    const std::string outcome = Outcome(Begun()->Execute(Sql(row.text)));
    const bool differs = GetParam() == Engine::Sqlite && !row.sqlite.empty();
    EXPECT_EQ(outcome, differs ? row.sqlite : row.outcome) << row.text;
  }
}

TEST_P(EngineTransactions, WithoutACommitNothingStays) {
  Begun()->Execute(Put(1, "1")).Ok();
  EXPECT_EQ(Value(1), "0");
  auto transaction = Begun();
  EXPECT_EQ(Outcome(transaction->Execute(Put(1, "1"))), "-");
  EXPECT_EQ(Value(1), "0") << "seen before its commit";
  EXPECT_EQ(Outcome(transaction->Commit()), "-");
  EXPECT_EQ(Value(1), "1");
}

TEST_P(EngineTransactions, AFailureUndoesTheWholeTransaction) {
  auto transaction = Begun();
  EXPECT_EQ(Outcome(transaction->Execute(Put(1, "1"))), "-");
  EXPECT_NE(Outcome(transaction->Execute(Sql("insert into Params values (1, 1, 'x')"))), "-");
  EXPECT_EQ(Outcome(transaction->Execute(Put(2, "2"))), "Other") << "it goes on after a failure";
  EXPECT_EQ(Outcome(transaction->Commit()), "Other") << "a failed transaction was committed";
  transaction.reset();
  EXPECT_EQ(Value(1) + Value(2), "00");
}

TEST_P(EngineTransactions, ASavepointKeepsWhatStoodBeforeIt) {
  auto transaction = Begun();
  EXPECT_EQ(Outcome(transaction->Execute(Put(1, "kept"))), "-");
  EXPECT_EQ(Outcome(transaction->Savepoint()), "-");
  EXPECT_EQ(Outcome(transaction->Execute(Put(2, "lost"))), "-");
  EXPECT_NE(Outcome(transaction->Execute(Sql("insert into Params values (1, 1, 'x')"))), "-");
  EXPECT_EQ(Outcome(transaction->RollbackToSavepoint()), "-");
  EXPECT_EQ(Outcome(transaction->Savepoint()), "-");
  EXPECT_EQ(Outcome(transaction->Savepoint()), "-");
  EXPECT_EQ(Outcome(transaction->RollbackToSavepoint()), "-") << "nothing was done in it";
  EXPECT_EQ(Outcome(transaction->Execute(Put(2, "second try"))), "-");
  EXPECT_EQ(Outcome(transaction->ReleaseSavepoint()), "-");
  EXPECT_NE(Outcome(transaction->RollbackToSavepoint()), "-") << "there is no savepoint left";
  transaction.reset();
  EXPECT_EQ(Value(1), "0");

  transaction = Begun();
  transaction->Savepoint().Ok();
  transaction->Execute(Put(1, "a")).Ok();
  transaction->ReleaseSavepoint().Ok();
  transaction->Savepoint().Ok();
  transaction->Execute(Put(1, "b")).Ok();
  transaction->RollbackToSavepoint().Ok();
  EXPECT_EQ(Outcome(transaction->Commit()), "-");
  EXPECT_EQ(Value(1), "a");
}

TEST_P(EngineTransactions, StatementsOfOneSnapshotNeverSeeHalfOfACommit) {
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    for (int i = 1; !stop; ++i) {
      auto transaction = Begun();
      const Statement both[] = {Put(1, std::to_string(i)), Put(2, std::to_string(i))};
      if (!transaction->ExecuteAll(both) || !transaction->Commit()) break;
    }
  });
  const ResultColumn value{"Value", ValueKind::Memo, 0};
  const Statement halves[] = {Sql("select Value from Params where Number = 1", {}, {value}),
                              Sql("select Value from Params where Number = 2", {}, {value})};
  std::string last;
  int moves = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (moves < 20 && std::chrono::steady_clock::now() < end) {
    const auto packets = database_->ReadSnapshot(halves);
    if (!packets) break;
    const std::string first = (*packets)[0].At(0, 0).ToText();
    EXPECT_EQ(first, (*packets)[1].At(0, 0).ToText());
    if (first != last) ++moves;
    last = first;
  }
  stop = true;
  writer.join();
  EXPECT_EQ(moves, 20) << "the writer did not come between";
}

TEST_P(EngineTransactions, WritersSideBySideLoseNothing) {
  constexpr int kWriters = 6;
  constexpr int kEach = 20;
  std::vector<std::thread> writers;
  std::atomic<int> failures{0};
  for (int i = 0; i < kWriters; ++i) {
    writers.emplace_back([&] {
      for (int step = 0; step < kEach; ++step) {
        auto transaction = Begun();
        const auto touched =
            transaction->Execute(Sql("update Company set RightsVersion = RightsVersion + ?1", {1}));
        if (!touched || *touched != 1 || !transaction->Commit()) ++failures;
      }
    });
  }
  for (std::thread& writer : writers)
    writer.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(AskNumber(*database_, "select RightsVersion from Company"), 1 + kWriters * kEach);
}

TEST_P(EngineTransactions, RoundTripsAndStatementsAreCounted) {
  const EngineCounters& counters = database_->Counters();
  const auto cost = [&](const auto& work) {
    const std::int64_t trips = counters.roundTrips;
    const std::int64_t statements = counters.statements;
    work();
    return std::to_string(counters.roundTrips - trips) + "/" +
           std::to_string(counters.statements - statements);
  };
  const Statement reads[] = {Sql("select 1", {}, {{"V"}}), Sql("select 2", {}, {{"V"}})};
  const Statement writes[] = {Put(1, "1"), Put(2, "2"), Put(1, "3")};
  EXPECT_EQ(cost([&] { database_->ReadSnapshot(reads).Ok(); }), "1/2");
  EXPECT_EQ(cost([&] { database_->Search(reads[0], reads, {}).Ok(); }), "1/3");
  EXPECT_EQ(cost([&] {
              auto transaction = Begun();
              transaction->QueryAll(reads).Ok();
              transaction->Savepoint().Ok();
              transaction->ExecuteAll(writes).Ok();
              transaction->ReleaseSavepoint().Ok();
              transaction->Commit().Ok();
            }),
            "3/5");
}

/// Opens the database once more, by one connection that waits no longer than a moment.
std::unique_ptr<Database> Impatient(Database& database) {
  constexpr std::chrono::milliseconds kMoment{300};
  const std::string location = LocationOf(database);
  return std::move(*(database.Kind() == Engine::Sqlite ? OpenSqlite(location, kMoment)
                                                       : OpenPostgres({location, 1, kMoment})));
}

TEST_P(EngineTransactions, WhatOthersHoldIsWaitedForAMomentOnly) {
  const auto impatient = Impatient(*database_);
  auto holder = Begun();
  EXPECT_EQ(Outcome(holder->Execute(Put(1, "held"))), "-");
  std::vector<std::string> outcomes(12);
  std::vector<std::thread> callers;
  for (std::string& outcome : outcomes) {
    callers.emplace_back([&] {
      auto transaction = impatient->Begin();
      outcome =
          transaction ? Outcome((*transaction)->Execute(Put(1, "late"))) : Outcome(transaction);
    });
  }
  for (std::thread& caller : callers)
    caller.join();
  for (const std::string& outcome : outcomes)
    EXPECT_EQ(outcome, GetParam() == Engine::Sqlite ? "Locked" : "Late");
  EXPECT_EQ(Outcome(holder->Commit()), "-");
  holder.reset();
  auto next = impatient->Begin();
  EXPECT_EQ(Outcome((*next)->Execute(Put(2, "next"))), "-");
  EXPECT_EQ(Outcome((*next)->Commit()), "-");
  EXPECT_EQ(Value(1) + Value(2), "heldnext");
}

TEST_P(ServerTransactions, ADatabaseThatHangsIsGivenUp) {
  const auto impatient = Impatient(*database_);
  auto transaction = std::move(*impatient->Begin());
  const auto backend =
      transaction->Query(Sql("select pg_backend_pid()", {}, {{"V", ValueKind::Code, 0}}));
  ASSERT_TRUE(backend) << backend.GetFailure().text;
  const auto process = static_cast<pid_t>(backend->At(0, "V").AsInt().value_or(0));
  ASSERT_GT(process, 1);
  ASSERT_EQ(kill(process, SIGSTOP), 0);
  // Longer than what a socket takes at once.
  EXPECT_EQ(Outcome(transaction->Execute(Put(1, std::string(16 << 20, 'x')))), "Late");
  transaction.reset();
  kill(process, SIGCONT);
  EXPECT_EQ(AskNumber(*impatient, "select count(*) from Params"), 2);
  EXPECT_EQ(Value(1), "0");
}

TEST_P(EngineTransactions, WhatWasAcknowledgedOutlivesAKilledProcess) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const std::string location = LocationOf(*database_);
  const pid_t child = fork();
  if (child == 0) {
    auto own = GetParam() == Engine::Sqlite ? OpenSqlite(location) : OpenPostgres({location, 1});
    for (int i = 100; own && i < 100000; ++i) {
      auto transaction = (*own)->Begin();
      const auto done =
          (*transaction)
              ->Execute(
                  Sql("insert into Params (ParamGroup, Number, Value) values (9, ?1, '')", {i}));
      if (!done || !(*transaction)->Commit()) break;
      if (write(ends[1], "x", 1) != 1) break;
    }
    _exit(0);
  }
  close(ends[1]);
  char acknowledged[30];
  std::int64_t count = 0;
  for (ssize_t got = 1; count < 30 && got > 0; count += got)
    got = read(ends[0], acknowledged, sizeof acknowledged);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  for (ssize_t got = 1; got > 0; count += got)
    got = read(ends[0], acknowledged, sizeof acknowledged);
  close(ends[0]);
  ASSERT_GE(count, 30);
  const auto reopened = OpenAgain(*database_);
  EXPECT_GE(AskNumber(*reopened, "select count(*) from Params where ParamGroup = 9"), count);
}

TEST_P(ServerTransactions, ADeadlockIsToBeTriedAgain) {
  auto first = Begun();
  auto second = Begun();
  first->Execute(Put(1, "a")).Ok();
  second->Execute(Put(2, "b")).Ok();
  std::string outcome;
  std::thread waiting([&] { outcome = Outcome(first->Execute(Put(2, "a"))); });
  const std::string other = Outcome(second->Execute(Put(1, "b")));
  second.reset();
  waiting.join();
  EXPECT_TRUE((outcome == "Retry" && other == "-") || (outcome == "-" && other == "Retry"))
      << outcome << " " << other;
}

TEST_P(ServerTransactions, ALostConnectionIsReplacedAndLosesOnlyItsTransaction) {
  const auto cutAll = [&] {
    const auto other = OpenAgain(*database_);
    AskNumber(*other,
              "select count(pg_terminate_backend(pid)) from pg_stat_activity "
              "where datname = current_database() and pid <> pg_backend_pid()");
  };
  auto open = Begun();
  EXPECT_EQ(Outcome(open->Execute(Put(1, "lost"))), "-");
  cutAll();
  EXPECT_EQ(Outcome(open->Execute(Put(1, "lost"))), "LinkDown");
  EXPECT_EQ(Outcome(open->Commit()), "Other");
  open.reset();
  EXPECT_EQ(Value(1), "0");

  cutAll();
  auto next = Begun();
  EXPECT_EQ(Outcome(next->Execute(Put(1, "1"))), "-");
  EXPECT_EQ(Outcome(next->Commit()), "-");
  cutAll();
  EXPECT_EQ(Value(1), "1");
}

}  // namespace
}  // namespace orvane::server
