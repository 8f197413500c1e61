#pragma once

// Databases of a test's own, on every engine that is at hand.
//
//   class OnBothEngines : public testing::TestWithParam<TestEngine> {};
//   INSTANTIATE_TEST_SUITE_P(Engines, OnBothEngines, testing::ValuesIn(TestEngines()),
//                            TestEngineName);
//   TEST_P(OnBothEngines, …) { const auto database = FreshDatabase(GetParam()); … }

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "server/engine/database.h"
#include "support/floors.h"

namespace orvane::support {

using TestEngine = Engine;

/// SQLite always; PostgreSQL when the variable ORVANE_TEST_POSTGRES of the environment holds the
/// conninfo of a server on which databases may be created.
std::vector<TestEngine> TestEngines();
/// Those of them that are servers: empty when there is no PostgreSQL at hand.
std::vector<TestEngine> TestEnginesWithServer();
/// "Sqlite", "Postgres".
std::string EngineName(TestEngine engine);
std::string TestEngineName(const testing::TestParamInfo<TestEngine>& info);

/// A migrated, empty database, removed when it is destroyed. Throws when it cannot be made.
std::unique_ptr<Database> FreshDatabase(TestEngine engine);
/// A migrated database that holds what `fill` wrote: it runs once per process for each engine and
/// `contents`, every database after the first is a copy.
std::unique_ptr<Database> FilledDatabase(TestEngine engine, const std::string& contents,
                                         const std::function<void(Database&)>& fill);
/// One without any table, for the tests of migration.
std::unique_ptr<Database> EmptyDatabase(TestEngine engine);
/// Opens the database of one of the two above once more, as a further server would; the first one
/// must outlive it.
std::unique_ptr<Database> OpenAgain(Database& database);
/// Path of the file, or conninfo, of one of the first two.
std::string LocationOf(Database& database);

}  // namespace orvane::support
