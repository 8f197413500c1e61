#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "server/check/check.h"
#include "server/server_case.h"

namespace orvane {
namespace {

class Durability : public ServerCase {};
INSTANTIATE_TEST_SUITE_P(Engines, Durability, testing::ValuesIn(TestEngines()), TestEngineName);

/// A server process of its own: enters departments as fast as it can and tells each one that was
/// acknowledged through the pipe. It is killed before it is done.
[[noreturn]] void EnterDepartments(Database& original, const Caller& caller, int pipe) {
  const auto database = OpenAgain(original);
  const SystemClock clock;
  OrvaneServer server(*database, clock, {});
  for (std::int16_t code = 1; code < 10'000; ++code) {
    const Change change = InsertOf(Department(code, "Име", "ivanova"));
    const auto answer = server.Apply(caller, DepartmentApply({change}));
    if (!answer || !answer->outcomes.front().applied) _exit(1);
    if (write(pipe, &code, sizeof code) != sizeof code) _exit(2);
  }
  _exit(3);
}

TEST_P(Durability, AKilledServerKeepsWhatItAcknowledgedAndNothingHalf) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  server.Time().Set(SystemClock().Now());
  const Caller caller = server.LogIn("ivanova").At(Point::Departments);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) EnterDepartments(server.Base(), caller, ends[1]);
  close(ends[1]);
  std::int16_t acknowledged = 0;
  for (int i = 0; i < 25; ++i) {
    ASSERT_EQ(read(ends[0], &acknowledged, sizeof acknowledged),
              static_cast<ssize_t>(sizeof acknowledged));
  }
  ASSERT_EQ(kill(child, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << "the process ended by itself";
  while (read(ends[0], &acknowledged, sizeof acknowledged) == sizeof acknowledged) {
  }
  close(ends[0]);

  const auto count = [&](const std::string& sql) {
    return server.Value(sql, ValueKind::Code).AsInt().value_or(-1);
  };
  const std::int64_t rows = count("select count(*) from Department");
  EXPECT_GE(rows, acknowledged);
  EXPECT_LE(rows, acknowledged + 1) << "at most the one that was on its way";
  EXPECT_EQ(count("select max(Code) from Department"), rows);
  EXPECT_EQ(count("select count(*) from ClientKey"), rows);
  EXPECT_EQ(count("select count(*) from History where TableName = 'Department'"), rows * 4);
}

TEST_P(Durability, SettingsThatLoseAcknowledgedDataAreRefused) {
  const auto database = FreshDatabase(GetParam());
  const auto durable = CheckDurability(*database);
  if (GetParam() == Engine::Sqlite) {
    EXPECT_TRUE(durable);
    return;
  }
  // The test's server runs with fsync off.
  ASSERT_FALSE(durable);
  EXPECT_NE(durable.GetFailure().message.find("fsync = off"), std::string::npos);
}

TEST_P(Durability, CheckFindsWhatTheRegistersWouldRefuse) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  const auto findings = [&] {
    const auto found = CheckDatabase(server.Base(), server.Time().Now());
    return found ? *found : std::vector<std::string>{found.GetFailure().message};
  };
  EXPECT_EQ(findings(), std::vector<std::string>{});
  server.Execute(
      {"insert into Department (Code, Name, FoldName, Chief) values (1, 'Една', 'друго', "
       "'ivanova')",
       {},
       {}});
  server.Execute(
      {"insert into StructureDeputies (IdNumber, StructuralUnitType, Department) values"
       " (4, 3, 1), (5, 1, 1)",
       {},
       {}});
  server.Execute(
      {"insert into StructDepDates (StructDepId, FromDate, ToDate, Deputy) values"
       " (4, ?1, ?2, 100), (4, ?2, null, 100)",
       {*Date::FromYmd(2026, 3, 1), *Date::FromYmd(2026, 3, 2)},
       {}});
  ASSERT_TRUE(server.Admin().SetBlocked("ivanova", true));
  EXPECT_EQ(findings(), (std::vector<std::string>{
                            "Department.Name: „Една“ се търси под друг текст.",
                            "Началникът „ivanova“ на дирекция е блокиран потребител.",
                            "Периодите на заместниците в структурна единица 4 се застъпват.",
                            "Структурна единица 5 няма точно кода на своя тип."}));
}

TEST_P(Durability, AUserWhoHeadsADepartmentIsNotRemoved) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  server.AddUser("petrov");
  server.Execute(
      {"insert into Department (Code, Name, FoldName, Chief) values (1, 'Една', 'една', "
       "'ivanova')",
       {},
       {}});
  const auto refused = server.Admin().RemoveUser("ivanova");
  ASSERT_FALSE(refused);
  EXPECT_EQ(
      refused.GetFailure().message,
      "!!Err_Потребител „ivanova“ е началник на дирекция „Една“. Изберете първо друг началник "
      "на дирекцията.");
  const TestSession petrov = server.LogIn("petrov");
  ASSERT_TRUE(server.Admin().RemoveUser("petrov"));
  EXPECT_EQ(Outcome(server->Fetch(petrov.At(Point::Departments), {DepartmentFetch()})),
            "SessionEnded");
}

}  // namespace
}  // namespace orvane
