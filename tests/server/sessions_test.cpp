#include <ctime>

#include "server/log/log_text.h"
#include "server/server_case.h"

namespace orvane::server {
namespace {

class SessionCase : public ServerCase {};
INSTANTIATE_TEST_SUITE_P(Engines, SessionCase, testing::ValuesIn(TestEngines()), TestEngineName);

constexpr std::int64_t kSecond = 1'000'000;

LoginRequest Login(const std::string& login, const std::string& password) {
  LoginRequest request;
  request.login = login;
  request.password = password;
  return request;
}

void Pass(TestServer& server, std::int64_t seconds) {
  server.Time().Set({server.Time().Now().micros + seconds * kSecond});
}

std::string FetchOutcome(TestServer& server, const TestSession& session) {
  return Outcome(server->Fetch(session.At(Point::Departments), {DepartmentFetch()}));
}

TEST_P(SessionCase, ALoginTellsWhoTheUserIs) {
  TestServer server(GetParam());
  server.UseTwoLanguages();
  server.AddUser("ivanova", 5);
  const TestSession session = server.LogIn("ivanova");
  EXPECT_EQ(session.info.login, "ivanova");
  EXPECT_EQ(session.info.userName, "Потребител ivanova");
  EXPECT_EQ(session.info.userLevel, 3);
  EXPECT_EQ(session.info.companyName, "Проба ООД");
  EXPECT_EQ(session.info.languageNames, (std::vector<std::string>{"Български", "English"}));
  EXPECT_EQ(session.info.points.size(), std::size(kPoints));
  EXPECT_EQ(session.info.points.front().rights, 5);
  EXPECT_EQ(session.info.ticket.size(), 64u);
  EXPECT_TRUE(server
                  .Value("select TicketHash from Session where TicketHash = ?1", ValueKind::String,
                         {session.info.ticket})
                  .IsNull())
      << "the ticket itself must not be stored";
}

TEST_P(SessionCase, LoginsAreRefusedAndSlowedDown) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  server.AddUser("petrov");
  ASSERT_TRUE(server.Admin().SetBlocked("petrov", true));
  struct Row {
    const char* login;
    const char* password;
    std::int64_t secondsLater;
    const char* message;  // nullptr: accepted
  };
  constexpr char kWrong[] = "!!Err_Грешно потребителско име или парола.";
  constexpr char kWait15[] =
      "!!Err_Твърде много неуспешни опити за вход. Опитайте отново след 15 сек.";
  constexpr char kWait30[] =
      "!!Err_Твърде много неуспешни опити за вход. Опитайте отново след 30 сек.";
  const Row rows[] = {
      {"ivanova", "ivanova-парола", 0, nullptr},
      {"IVANOVA", "ivanova-парола", 0, nullptr},
      {"nobody", "ivanova-парола", 0, kWrong},
      {"petrov", "petrov-парола", 0,
       "!!Err_Потребител „petrov“ е блокиран. Обърнете се към администратора."},
      {"petrov", "грешна", 0, kWrong},
      {"ivanova", "грешна", 0, kWrong},
      {"ivanova", "грешна", 0, kWrong},
      {"ivanova", "грешна", 0, kWrong},
      {"ivanova", "грешна", 0, kWrong},
      {"ivanova", "грешна", 0, kWrong},           // the fifth starts the wait
      {"ivanova", "ivanova-парола", 0, kWait15},  // now the right one has to wait too
      {"Ivanova", "грешна", 0, kWait15},          // whatever the case, and it does not add
      {"ivanova", "грешна", 16, kWrong},
      {"ivanova", "ivanova-парола", 0, kWait30},
      {"ivanova", "ivanova-парола", 31, nullptr},
      {"ivanova", "грешна", 0, kWrong},  // a good login starts the count anew
      {"ivanova", "ivanova-парола", 0, nullptr},
  };
  int line = 0;
  for (const Row& row : rows) {
    Pass(server, row.secondsLater);
    const auto answer = server->LogIn(Login(row.login, row.password));
    EXPECT_EQ(answer ? "" : answer.GetFailure().message, row.message ? row.message : "")
        << "row " << line;
    ++line;
  }
}

TEST_P(SessionCase, LoginLimitsHoldOnEveryServer) {
  TestServer server(GetParam());
  TestServer second(server);
  server.AddUser("ivanova");
  for (int i = 0; i < 5; ++i)
    EXPECT_FALSE(server->LogIn(Login("ivanova", "грешна")));
  EXPECT_EQ(Outcome(second->LogIn(Login("ivanova", "ivanova-парола"))), "Refused");
}

TEST_P(SessionCase, GuessesLockOutTheGuesserAndNotTheOwner) {
  TestServer server(GetParam());
  TestServer second(server);
  server.AddUser("ivanova");
  server.AddUser("petrov");
  const auto from = [&](const std::string& address, const std::string& login, bool right) {
    LoginRequest request = Login(login, right ? TestServer::PasswordOf(login) : "грешна");
    request.machineName = "PC-" + login;
    return second.Orvane().LogInFrom(address, request);
  };
  ASSERT_TRUE(from("10.0.0.5", "ivanova", true));  // from now on a known machine
  for (int i = 0; i < 40; ++i)
    EXPECT_FALSE(from("10.6.6." + std::to_string(i), "ivanova", false));
  EXPECT_FALSE(from("10.6.7.1", "ivanova", true)) << "a stranger's machine has to wait";
  EXPECT_TRUE(from("10.0.0.5", "ivanova", true)) << "the owner does not";
  for (int i = 0; i < 5; ++i)
    EXPECT_FALSE(from("10.0.0.5", "ivanova", false));
  EXPECT_FALSE(from("10.0.0.5", "ivanova", true)) << "guesses from the owner's machine count too";

  // Twenty attempts of one address are free whatever the logins; a login of one's own forgives
  // none.
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(from("10.9.9.9", "someone" + std::to_string(i), false).GetFailure().message,
              "!!Err_Грешно потребителско име или парола.");
  EXPECT_TRUE(from("10.9.9.9", "petrov", true));
  EXPECT_FALSE(from("10.9.9.9", "someone20", false));
  EXPECT_NE(from("10.9.9.9", "someone21", false).GetFailure().message.find("15 сек."),
            std::string::npos);
  EXPECT_TRUE(from("10.9.9.9", "petrov", true)) << "known from there by now";
}

TEST_P(SessionCase, AgesAreNotFooledByAJumpOfTheClock) {
  constexpr std::int64_t kDay = 24 * 3600;
  for (const std::int64_t jump : {-365 * kDay, 8 * kDay, 365 * kDay}) {
    TestServer server(GetParam());
    TestServer second(server);
    server.AddUser("ivanova");
    const TestSession session = server.LogIn("ivanova");
    const Change change = InsertOf(Department(1, "Една", "ivanova"));
    const auto apply = [&](TestServer& at) {
      return Outcome(at->Apply(session.At(Point::Departments), DepartmentApply({change})));
    };
    ASSERT_EQ(apply(server), "ok");
    for (int i = 0; i < 5; ++i)
      EXPECT_FALSE(server->LogIn(Login("ivanova", "грешна")));
    server.JumpClock(jump);
    TestServer third(server);
    for (TestServer* at : {&server, &second, &third}) {
      const auto locked = (*at)->LogIn(Login("ivanova", "ivanova-парола"));
      ASSERT_FALSE(locked) << jump;
      EXPECT_NE(locked.GetFailure().message.find("15 сек."), std::string::npos) << jump;
      EXPECT_EQ(FetchOutcome(*at, session), "ok") << jump;
    }
    Pass(server, 16);
    EXPECT_TRUE(third->LogIn(Login("ivanova", "ivanova-парола"))) << jump;  // sweeps
    EXPECT_EQ(apply(second), "ok") << jump;
    EXPECT_EQ(Departments(server), "1 Една ivanova") << jump;
    EXPECT_EQ(server.Value("select count(*) from ClientKey", ValueKind::Code).AsInt(), 1) << jump;
    Pass(server, 12 * 3600 + 1);
    EXPECT_EQ(FetchOutcome(second, session), "SessionEnded") << jump;
  }
}

TEST_P(SessionCase, TheSuccessorOfALoginIsSomebodyElse) {
  TestServer server(GetParam());
  TestServer second(server);
  server.AddUser("admin");
  server.AddUser("ivanova");
  const TestSession old = server.LogIn("ivanova");
  ASSERT_EQ(FetchOutcome(second, old), "ok");
  const Change change = InsertOf(Department(1, "Една", "admin"));
  ASSERT_EQ(Outcome(server->Apply(old.At(Point::Departments), DepartmentApply({change}))), "ok");
  ASSERT_TRUE(server.Admin().RemoveUser("ivanova"));
  server.AddUser("ivanova");
  EXPECT_EQ(FetchOutcome(server, old), "SessionEnded");
  EXPECT_EQ(FetchOutcome(second, old), "SessionEnded");
  const TestSession successor = server.LogIn("ivanova");
  EXPECT_EQ(FetchOutcome(second, successor), "ok");
  EXPECT_EQ(FetchOutcome(second, old), "SessionEnded");
  EXPECT_EQ(server.Value("select count(*) from ClientKey", ValueKind::Code).AsInt(), 0)
      << "answers to the predecessor are not the successor's";
}

TEST_P(SessionCase, AnUnknownNameCostsWhatAKnownOneCosts) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  server.AddUser("petrov");
  const auto asked = [&](const std::string& login) {
    const std::int64_t before = server.Base().Counters().statements;
    EXPECT_FALSE(server->LogIn(Login(login, "грешна")));
    return server.Base().Counters().statements - before;
  };
  ASSERT_TRUE(server->Greet());  // the company is read once
  EXPECT_EQ(asked("ivanova"), asked("nobody"));
  // The unknown name is compared with somebody's hash: without one there is nothing to compare
  // with.
  constexpr char kDear[] = "нещо по-дълго от останалото";
  ASSERT_TRUE(
      UserAdmin(server.Base(), server.Time(), {3, 32 * 1024 * 1024}).SetPassword("petrov", kDear));
  const auto cost = [&](const std::string& login) {
    const std::clock_t before = std::clock();
    EXPECT_FALSE(server->LogIn(Login(login, "грешна")));
    return static_cast<double>(std::clock() - before);
  };
  EXPECT_LT(cost("petrov"), 5 * cost("nobody"));  // "nobody" is followed by "petrov"
}

TEST_P(SessionCase, AServerRefusesADatabaseThatAnotherProgramMigrated) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  const TestSession session = server.LogIn("ivanova");
  ASSERT_EQ(FetchOutcome(server, session), "ok");
  const std::string now = GetParam() == Engine::Sqlite ? "0" : "now()";
  server.Execute(
      {"insert into SchemaMigration (Number, Name, AppliedOn) values (9999, 'later', " + now + ")",
       {},
       {}});
  EXPECT_EQ(FetchOutcome(server, session), "LinkDown");
  const Change change = InsertOf(Department(1, "Една", "ivanova"));
  EXPECT_EQ(Outcome(server->Apply(session.At(Point::Departments), DepartmentApply({change}))),
            "LinkDown");
  EXPECT_EQ(Departments(server), "");
  const auto login = server->LogIn(Login("ivanova", "ivanova-парола"));
  EXPECT_EQ(Outcome(login), "LinkDown");
  EXPECT_NE(login.GetFailure().message.find("обновена от друга програма"), std::string::npos);
}

TEST_P(SessionCase, AnOldClientIsToldToUpdate) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  LoginRequest request = Login("ivanova", "ivanova-парола");
  for (const int version : {0, 1, kProtocolVersion + 1}) {  // 1 kept its ticket in the messages
    request.protocolVersion = version;
    const auto answer = server->LogIn(request);
    ASSERT_FALSE(answer) << version;
    EXPECT_EQ(answer.GetFailure().message,
              "!!Err_Програмата и сървърът са от различни версии (протокол " +
                  std::to_string(version) + ", а на сървъра " + std::to_string(kProtocolVersion) +
                  "). Обновете програмата.");
  }
}

TEST_P(SessionCase, WhatEndsASessionEndsItAtTheNextRequestOnEveryServer) {
  using Ending = void (*)(TestServer&, const TestSession&);
  struct Row {
    const char* what;
    Ending end;
  };
  const Row rows[] = {
      {"logged out",
       [](TestServer& server, const TestSession& session) {
         EXPECT_TRUE(server->LogOut(session.At(Point::Departments)));
       }},
      {"blocked",
       [](TestServer& server, const TestSession&) {
         EXPECT_TRUE(server.Admin().SetBlocked("ivanova", true));
       }},
      {"password changed",
       [](TestServer& server, const TestSession&) {
         EXPECT_TRUE(server.Admin().SetPassword("ivanova", "нова парола"));
       }},
      {"idle for longer than twelve hours",
       [](TestServer& server, const TestSession&) { Pass(server, 12 * 3600 + 1); }},
  };
  for (const Row& row : rows) {
    TestServer server(GetParam());
    TestServer second(server);
    server.AddUser("ivanova");
    const TestSession session = server.LogIn("ivanova");
    ASSERT_EQ(FetchOutcome(server, session), "ok") << row.what;
    ASSERT_EQ(FetchOutcome(second, session), "ok") << row.what;
    row.end(server, session);
    EXPECT_EQ(FetchOutcome(server, session), "SessionEnded") << row.what;
    EXPECT_EQ(FetchOutcome(second, session), "SessionEnded") << row.what;
    const Change change = InsertOf(Department(1, "Една", "ivanova"));
    EXPECT_EQ(Outcome(second->Apply(session.At(Point::Departments), DepartmentApply({change}))),
              "SessionEnded")
        << row.what;
    EXPECT_EQ(Departments(server), "") << row.what;
  }
}

TEST_P(SessionCase, ARightTakenAwayOrGivenCountsAtTheNextRequestOnEveryServer) {
  TestServer server(GetParam());
  TestServer second(server);
  server.AddUser("ivanova");
  const TestSession session = server.LogIn("ivanova");
  ASSERT_EQ(FetchOutcome(second, session), "ok");
  const auto point = static_cast<std::int32_t>(Point::Departments);
  ASSERT_TRUE(server.Admin().Grant("ivanova", point, 0));
  EXPECT_EQ(FetchOutcome(server, session), "NoRight");
  EXPECT_EQ(FetchOutcome(second, session), "NoRight");
  ASSERT_TRUE(server.Admin().Grant("ivanova", point, 1));
  EXPECT_EQ(FetchOutcome(server, session), "ok");
  EXPECT_EQ(FetchOutcome(second, session), "ok");
}

TEST_P(SessionCase, AnUnknownTicketOpensNothing) {
  TestServer server(GetParam());
  for (const std::string& ticket : {std::string(), std::string("x"), std::string(64, 'a')}) {
    const Caller caller{ticket, kOrvaneModuleNo, 1};
    EXPECT_EQ(Outcome(server->Fetch(caller, {DepartmentFetch()})), "SessionEnded");
    EXPECT_EQ(Outcome(server->Fetch(caller, {})), "SessionEnded");
    EXPECT_EQ(Outcome(server->Apply(caller, DepartmentApply({}))), "SessionEnded");
    EXPECT_EQ(Outcome(server->Call(caller, {"TsmNone", "None", {}})), "SessionEnded");
    EXPECT_EQ(Outcome(server->LogOut(caller)), "SessionEnded");
  }
}

TEST_P(SessionCase, LastSeenIsWrittenAtMostOnceAMinute) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  const TestSession session = server.LogIn("ivanova");
  const auto lastSeen = [&] {
    return server.Value("select LastSeen from Session", ValueKind::Stamp).AsStamp()->micros;
  };
  const std::int64_t start = lastSeen();
  Pass(server, 50);
  ASSERT_EQ(FetchOutcome(server, session), "ok");
  EXPECT_EQ(lastSeen(), start);
  Pass(server, 15);
  ASSERT_EQ(FetchOutcome(server, session), "ok");
  const std::int64_t written = lastSeen();
  EXPECT_GE(written - start, 60 * kSecond);
  Pass(server, 30);
  ASSERT_EQ(FetchOutcome(server, session), "ok");
  EXPECT_EQ(lastSeen(), written);
}

TEST_P(SessionCase, TheCurrentEmployeeIsTheSessionsOwn) {
  TestServer server(GetParam());
  server.AddUser("admin", kAllRights, 0);  // no employee record
  server.AddUser("ivanova", 0);            // one, and no right anywhere
  server.AddUser("petrov");
  server.AddEmployee(9223372036854775807, "petrov");
  const auto ask = [&](const std::string& who, const std::string& whom) {
    const TestSession session = server.LogIn(who);
    const auto answer = server->Call({session.info.ticket, kOrvaneModuleNo, 0},
                                     {"TsmLevelsApproval", "GetCurremtEmployee", {whom}});
    return answer ? (*answer)[0].ToText() : Outcome(answer);
  };
  EXPECT_EQ(ask("admin", "admin"), "0");
  EXPECT_EQ(ask("ivanova", "ivanova"), "100");
  EXPECT_EQ(ask("petrov", "petrov"), "-1");
  EXPECT_EQ(ask("petrov", "ivanova"), "NoRight");
  server.AddEmployee(9223372036854775806, "admin");
  EXPECT_EQ(ask("admin", "admin"), "9223372036854775806");
}

TEST(Log, AnothersTextsAreOneShortLineAndNoPassword) {
  EXPECT_EQ(LogText("PC\n2026 [error] forged \"x\" \xFF\u2028"),
            "\"PC\\x0a2026 [error] forged \\x22x\\x22 \\xff\\xe2\\x80\\xa8\"");
  EXPECT_EQ(LogText("Машина"), "\"Машина\"");
  EXPECT_LT(LogText(std::string(5'000'000, 'a')).size(), 110u);
  for (const char* secret :
       {"host=db user=o password=s3cret dbname=x", "host=db password = 's3 \\'cret' dbname=x",
        "postgresql://o:s3cret@db/x", "postgres://o:s3@cret@db:5432/x?a=b",
        "postgresql://db/x?user=o&password=s3cret"}) {
    const std::string shown = WithoutPasswords(secret);
    EXPECT_EQ(shown.find("s3"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("cret"), std::string::npos) << shown;
    EXPECT_NE(shown.find("db"), std::string::npos) << shown;
  }
}

}  // namespace
}  // namespace orvane::server
