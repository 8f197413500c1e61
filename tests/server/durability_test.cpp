#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "server/check/check.h"
#include "server/server_case.h"

namespace orvane::server {
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

/// Lets the disk be full for whoever writes departments, or no more.
void FillDisk(Database& database, bool full) {
  if (database.Kind() == Engine::Postgres) {
    const auto scripted = database.RunScript(
        full ? "create function no_room() returns trigger language plpgsql as $$ begin"
               " raise exception using errcode = '53100', message = 'no room'; end $$;"
               "create trigger no_room before insert on Department execute function no_room()"
             : "drop function no_room() cascade");
    ASSERT_TRUE(scripted) << scripted.GetFailure().text;
    return;
  }
  const auto scripted =
      database.RunScript(full ? "pragma max_page_count = 1" : "pragma max_page_count = 1000000");
  ASSERT_TRUE(scripted) << scripted.GetFailure().text;
}

TEST_P(Durability, AFullDiskIsToldAndLosesNothing) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  const Caller caller = server.LogIn("ivanova").At(Point::Departments);
  std::vector<Change> changes;
  for (std::int16_t code = 1; code <= 40; ++code)
    changes.push_back(InsertOf(Department(code, std::string(40, 'x'), "ivanova")));
  const ApplyRequest apply = DepartmentApply(changes);
  FillDisk(server.Base(), true);
  const auto refused = server->Apply(caller, apply);
  ASSERT_FALSE(refused);
  EXPECT_EQ(
      refused.GetFailure().message,
      "Дискът на базата от данни е пълен и нищо не е записано. Обадете се на администратора.");
  FillDisk(server.Base(), false);
  EXPECT_EQ(server.Value("select count(*) from Department", ValueKind::Code), Variant(0));
  const auto again = server->Apply(caller, apply);
  ASSERT_TRUE(again) << again.GetFailure().message;
  EXPECT_EQ(server.Value("select count(*) from Department", ValueKind::Code), Variant(40));
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

TEST_P(Durability, CheckFindsWhatHistoryDoesNotTell) {
  TestServer server(GetParam());
  for (const char* login : {"ivanova", "petrov", "vasilev"})
    server.AddUser(login);
  const Caller caller = server.LogIn("ivanova").At(Point::Departments);
  std::vector<Change> changes;
  // More than is read at once, and a portion that ends within a row.
  for (std::int16_t code = 1; code <= 300; ++code)
    changes.push_back(InsertOf(Department(code, "Име", "ivanova")));
  changes[1].after = {{"Code", 2}, {"Name", "Име"}, {"Chief", "ivanova"}};
  changes.push_back(UpdateOf(Department(1, "Име", "ivanova"), {{"Name", "Име 1"}}));
  // One moves to another key, one goes, and a user does.
  changes.push_back(UpdateOf(Department(5, "Име", "ivanova"), {{"Code", 500}, {"Name", "Друго"}}));
  changes.push_back(DeleteOf(Department(6, "Име", "ivanova")));
  const auto applied = server->Apply(caller, DepartmentApply(changes));
  ASSERT_TRUE(applied) << applied.GetFailure().message;
  for (const ChangeOutcome& outcome : applied->outcomes)
    ASSERT_TRUE(outcome.applied) << outcome.failure->message;
  ASSERT_TRUE(server.Admin().RemoveUser("petrov"));
  const auto findings = [&] {
    const auto found = CheckDatabase(server.Base(), server.Time().Now());
    return found ? *found : std::vector<std::string>{found.GetFailure().message};
  };
  EXPECT_EQ(findings(), std::vector<std::string>{});
  for (const char* byHand :
       {"update Department set Name = 'Х', FoldName = 'х' where Code = 1",
        "update Department set Name2 = 'Y', FoldName2 = 'y' where Code = 2",
        "delete from Department where Code = 3",
        "insert into Department (Code, Name, FoldName, Chief) values (6, 'Име', 'име', 'ivanova')",
        "update Department set Chief = 'vasilev' where Code = 500",
        "update UserRights set Rights = 1 where Login = 'vasilev' and Point = 1",
        "insert into Department (Code, Name, FoldName, Chief) values (700, 'Б', 'б', 'ivanova')"}) {
    server.Execute({byHand, {}, {}});
  }
  EXPECT_EQ(findings(),
            (std::vector<std::string>{
                "Таблица Department, ред „500“, Chief: „vasilev“, а според историята „ivanova“.",
                "Таблица Department, ред „1“, Name: „Х“, а според историята „Име 1“.",
                "Таблица Department, ред „2“, Name2: „Y“, за което историята не разказва.",
                "Таблица Department, ред „3“ го няма, а според историята е там.",
                "Таблица Department, ред „6“ е там, а според историята е изтрит.",
                "Таблица UserRights, ред „vasilev/1“, Rights: „1“, а според историята „15“."}));
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
}  // namespace orvane::server
