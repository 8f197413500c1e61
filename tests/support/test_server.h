#pragma once

// An application server on a fresh database, in-process: what screens, walks and the server's own
// tests talk to.
//
//   TestServer server(Engine::Sqlite);
//   server.AddUser("ivanova");                             // every right at every point
//   const TestSession ivanova = server.LogIn("ivanova");
//   auto answer = server->Fetch(ivanova.At(Point::Departments), {…});

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "contract/points.h"
#include "packet/application_server.h"
#include "packet/clock.h"
#include "server/orvane_server.h"
#include "server/sessions/user_admin.h"
#include "support/floors.h"
#include "support/test_databases.h"

namespace orvane::support {

/// Somebody who is logged in.
struct TestSession {
  SessionInfo info;

  Caller At(Point point) const {
    return {info.ticket, kOrvaneModuleNo, static_cast<std::int32_t>(point)};
  }
};

class TestServer {
 public:
  explicit TestServer(Engine engine);
  /// A further server over the database of another, which outlives it: what the first knows, this
  /// one has to find out.
  explicit TestServer(TestServer& first);

  IApplicationServer* operator->() { return server_.get(); }
  IApplicationServer& Server() { return *server_; }
  OrvaneServer& Orvane() { return *server_; }
  Database& Base() { return *database_; }
  SetClock& Time() { return *clock_; }
  /// Puts the wall clock so many seconds on or back without any time going by.
  void JumpClock(std::int64_t seconds);
  UserAdmin& Admin() { return admin_; }

  /// A user "<login>" with password PasswordOf(login), rights at every point, and an employee
  /// record (code 100, 101 …) when the level needs one.
  void AddUser(const std::string& login, std::int32_t rights = kAllRights, std::int32_t level = 3);
  void AddEmployee(std::int64_t code, const std::string& login);
  static std::string PasswordOf(const std::string& login) { return login + "-парола"; }
  /// Fails the test when the login is refused.
  TestSession LogIn(const std::string& login);
  /// Names of two languages, company name "Проба ООД".
  void UseTwoLanguages();
  void SetParam(std::int32_t group, std::int32_t number, const std::string& value);

  /// Runs a statement in a transaction of its own and fails the test when the engine refuses it.
  void Execute(const Statement& statement);
  /// First value of the first row; Null when there is no row.
  Variant Value(const std::string& sql, ValueKind kind, VariantArray params = {});

 private:
  ServerOptions QuickOptions() const;

  std::unique_ptr<Database> owned_;
  Database* database_;
  std::unique_ptr<SetClock> ownClock_;
  SetClock* clock_;
  std::shared_ptr<std::int64_t> jumped_;  ///< microseconds, of all servers over the database
  UserAdmin admin_;
  std::unique_ptr<OrvaneServer> server_;
  std::int64_t nextEmployee_ = 100;
};

/// A key of a change or of a writing method that nobody used yet.
std::string NewClientKey();

/// A change as a client's dataset makes it, with a client key of its own.
Change InsertOf(NamedValues after);
Change UpdateOf(NamedValues before, NamedValues after);
Change DeleteOf(NamedValues before);

}  // namespace orvane::support
