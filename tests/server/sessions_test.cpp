#include "server/server_case.h"

namespace orvane {
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

TEST_P(SessionCase, AnOldClientIsToldToUpdate) {
  TestServer server(GetParam());
  server.AddUser("ivanova");
  LoginRequest request = Login("ivanova", "ivanova-парола");
  request.protocolVersion = kProtocolVersion + 1;
  const auto answer = server->LogIn(request);
  ASSERT_FALSE(answer);
  EXPECT_NE(answer.GetFailure().message.find("Обновете програмата"), std::string::npos);
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

}  // namespace
}  // namespace orvane
