#include "support/test_server.h"

#include <gtest/gtest.h>

#include <atomic>

namespace orvane::support {
namespace {

/// Thursday, 5 March 2026, 09:00 in Sofia.
Stamp Morning() {
  return TimeZone{}.At(*Date::FromYmd(2026, 3, 5), 9, 0);
}

}  // namespace

std::string NewClientKey() {
  static std::atomic<int> count{0};
  return "test-" + std::to_string(++count);
}

/// The clock of the test is the steady one too, but for its jumps.
ServerOptions TestServer::QuickOptions() const {
  ServerOptions options;
  options.sessions.passwordCost = PasswordCost::Lowest();
  options.sessions.steady = [clock = clock_, jumped = jumped_] {
    return clock->Now().micros - *jumped;
  };
  return options;
}

void TestServer::JumpClock(std::int64_t seconds) {
  constexpr std::int64_t kSecond = 1'000'000;
  *jumped_ += seconds * kSecond;
  clock_->Set({clock_->Now().micros + seconds * kSecond});
}

TestServer::TestServer(Engine engine)
    : owned_(FreshDatabase(engine)),
      database_(owned_.get()),
      ownClock_(std::make_unique<SetClock>(Morning())),
      clock_(ownClock_.get()),
      jumped_(std::make_shared<std::int64_t>(0)),
      admin_(*database_, *clock_, PasswordCost::Lowest()) {
  Execute({"update Company set Name = 'Проба ООД'", {}, {}});
  server_ = std::make_unique<OrvaneServer>(*database_, *clock_, QuickOptions());
}

TestServer::TestServer(TestServer& first)
    : owned_(OpenAgain(*first.database_)),
      database_(owned_.get()),
      clock_(first.clock_),
      jumped_(first.jumped_),
      admin_(*database_, *clock_, PasswordCost::Lowest()),
      server_(std::make_unique<OrvaneServer>(*database_, *clock_, QuickOptions())) {}

void TestServer::AddUser(const std::string& login, std::int32_t rights, std::int32_t level) {
  const auto added =
      admin_.AddUser({login, "Потребител " + login, "User " + login, level, 1, PasswordOf(login)});
  ASSERT_TRUE(added) << added.GetFailure().message;
  const auto granted = admin_.GrantEverywhere(login, rights);
  ASSERT_TRUE(granted) << granted.GetFailure().message;
  if (level >= 3) AddEmployee(nextEmployee_++, login);
}

void TestServer::AddEmployee(std::int64_t code, const std::string& login) {
  const auto added = admin_.AddEmployee(
      {code, "Служител " + std::to_string(code), "Employee " + std::to_string(code), login});
  ASSERT_TRUE(added) << added.GetFailure().message;
}

TestSession TestServer::LogIn(const std::string& login) {
  LoginRequest request;
  request.login = login;
  request.password = PasswordOf(login);
  request.machineName = "TEST-PC";
  request.programVersion = "0.1.0";
  auto info = server_->LogIn(request);
  if (!info) {
    ADD_FAILURE() << info.GetFailure().message;
    return {};
  }
  return {*info};
}

void TestServer::UseTwoLanguages() {
  Execute({"update Company set MultiLanguage = 1, LanguageName2 = 'English'", {}, {}});
  server_ = std::make_unique<OrvaneServer>(*database_, *clock_, QuickOptions());
}

void TestServer::SetParam(std::int32_t group, std::int32_t number, const std::string& value) {
  Execute(
      {"insert into Params (ParamGroup, Number, Value) values (?1, ?2, ?3) on conflict "
       "(ParamGroup, Number) do update set Value = excluded.Value",
       {group, number, value},
       {}});
}

void TestServer::Execute(const Statement& statement) {
  auto transaction = database_->Begin();
  ASSERT_TRUE(transaction) << transaction.GetFailure().text;
  const auto touched = (*transaction)->Execute(statement);
  ASSERT_TRUE(touched) << touched.GetFailure().text;
  const auto committed = (*transaction)->Commit();
  ASSERT_TRUE(committed) << committed.GetFailure().text;
}

Variant TestServer::Value(const std::string& sql, ValueKind kind, VariantArray params) {
  const Statement select{sql, std::move(params), {{"Value", kind, 0}}};
  const auto packets = database_->ReadSnapshot({&select, 1});
  if (!packets) {
    ADD_FAILURE() << packets.GetFailure().text;
    return {};
  }
  return packets->front().rowCount == 0 ? Variant() : packets->front().At(0, std::size_t{0});
}

Change InsertOf(NamedValues after) {
  return {ChangeKind::Insert, NewClientKey(), {}, std::move(after)};
}

Change UpdateOf(NamedValues before, NamedValues after) {
  return {ChangeKind::Update, NewClientKey(), std::move(before), std::move(after)};
}

Change DeleteOf(NamedValues before) {
  return {ChangeKind::Delete, NewClientKey(), std::move(before), {}};
}

}  // namespace orvane::support
