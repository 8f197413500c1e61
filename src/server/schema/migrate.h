#pragma once

// Brings a database to the schema of this program: the numbered scripts that are missing are
// applied in order, each in a transaction of its own. Several servers may try at once; each script
// is applied by one of them.

#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

struct SchemaState {
  int applied = 0;  ///< number of the last migration the database has; 0 is an empty database
  int newest = 0;   ///< number of the last migration this program has
  int missing = 0;  ///< how many of this program's migrations the database lacks
  /// The database has a migration that this program does not know.
  bool newer = false;

  bool IsNewer() const { return newer; }
  bool IsCurrent() const { return !newer && missing == 0; }
};

Answer<SchemaState> CurrentSchema(Database& database);

/// Number of migrations applied, 0 when nothing was missing. A database newer than this program is
/// refused. On PostgreSQL it also sees to the role under which search statements run.
Answer<int> Migrate(Database& database);

/// A sentence about what this database's server lacks to be fast; empty when it lacks nothing.
Answer<std::string> WhatSlowsDown(Database& database);

}  // namespace orvane::server
