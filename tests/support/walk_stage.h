#pragma once

// What a walk runs in: a company of its own, the real server behind a door whose link
// can be cut, in-process or over a real network connection.

#include <memory>
#include <string>

#include "host/walk/walk_runner.h"
#include "packet/clock.h"
#include "packet/faulty_door.h"
#include "server/orvane_server.h"
#include "support/floors.h"
#include "support/test_databases.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::support {

/// How the screens reach the server.
enum class WalkWay { InProcess, OverWire };

class WalkStage {
 public:
  /// `company` is a name of DemoCompanyNamed.
  WalkStage(TestEngine engine, WalkWay way, const std::string& company = "");

  WalkWorld World();
  Database& TheDatabase() { return *database_; }
  FaultyDoor& Door() { return *door_; }

 private:
  SetClock clock_;
  std::unique_ptr<Database> database_;
  std::unique_ptr<OrvaneServer> server_;
  std::unique_ptr<RunningServer> running_;
  std::unique_ptr<RemoteServer> remote_;
  std::unique_ptr<FaultyDoor> door_;
};

/// Password of a demonstration user; empty when there is no such user.
std::string DemonstrationPassword(std::string_view login);

/// The walk's text; fails the test when the file cannot be read.
std::string ReadWalkFile(const std::string& path);

/// Runs a walk with the scripted toolkit; the problem's text, empty when all went well.
std::string RunScriptedWalk(const std::string& name, std::string_view text, WalkStage& stage);

}  // namespace orvane::support
