#pragma once

// What the server program does, one function per command. Each prints what it did, in Bulgarian, or
// answers the failure that the program prints and exits with.

#include <cstdint>
#include <string>

#include "apps/orvane_server/settings.h"
#include "packet/failure.h"

namespace orvane::apps {

struct UserArguments {
  std::string login;
  std::string name;
  std::string name2;
  std::int32_t level = 3;
  std::int32_t language = 1;
  std::int32_t rights = 15;
  std::int64_t employee = 0;
  std::string point;
  bool undo = false;
};

Answer<Done> Init(const Settings& settings, const std::string& company);
Answer<Done> MigrateDatabase(const Settings& settings);
/// `documents` purchase requests; says how fast they were made.
Answer<Done> Demo(const Settings& settings, std::uint32_t seed, std::int64_t documents);
/// Returns after SIGTERM, SIGINT or SIGHUP, when the running requests are finished.
Answer<Done> ServeUntilSignal(const Settings& settings, bool unsafeDurability);
Answer<Done> AddUser(const Settings& settings, const UserArguments& user);
Answer<Done> ChangePassword(const Settings& settings, const UserArguments& user);
Answer<Done> BlockUser(const Settings& settings, const UserArguments& user);
Answer<Done> RemoveUser(const Settings& settings, const UserArguments& user);
/// Rights at one point, named as in contract/points.h.
Answer<Done> SetRights(const Settings& settings, const UserArguments& user);
/// Loads registers from CSV files; see server/load/load_registers.h.
Answer<Done> Import(const Settings& settings, const std::string& folder);
/// Refused when something was found; what it is was printed.
Answer<Done> Check(const Settings& settings);

}  // namespace orvane::apps
