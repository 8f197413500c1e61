#pragma once

// What is promised of a server, tried one by one on a company of its own. Each ends within its
// time.

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "server/engine/database.h"
#include "torture/server_process.h"

namespace orvane::torture {

using namespace apps;  // troubles every floor

/// Where a company lives and what may be done to it.
struct Place {
  std::string engine;    ///< "SQLite", "PostgreSQL"
  std::string program;   ///< orvane-server
  std::string source;    ///< of the tree: docs/first-day
  std::string folder;    ///< for logs and SQLite files
  std::string database;  ///< as --database takes it
  std::string small;     ///< folder on a small disk that holds the database; empty: there is none
  std::string clock;     ///< library that moves a process's clock; empty: there is none
  /// A database server's processes to be stopped for a while; empty for SQLite.
  std::function<std::vector<pid_t>()> backends;
  std::chrono::seconds time{10};
  unsigned seed = 0;  ///< of the moments at which something is done
};

struct Outcome {
  enum class Kind { Held, Broken, Left };
  Kind kind = Kind::Held;
  std::string note;
};
using Promise = Outcome (*)(const Place&);

struct PromiseRow {
  std::string_view name;
  Promise keep;
  bool onSmallDisk = false;
};
/// All of them, in order.
std::vector<PromiseRow> Promises();

/// Makes the company of docs/first-day with one user; what went wrong, empty when nothing did.
std::string MakeCompany(const Place& place);
/// Opens the place's database for looking at it.
std::unique_ptr<Database> Look(const Place& place);

}  // namespace orvane::torture
