#pragma once

// The demonstration companies that the benchmarks run on. One has so many purchase requests, half a
// million entries in the supply list, lists of all and of ten of them, and 200,000 suppliers; the
// other so many supplier orders. Made by the demonstration's own writer at the first run and kept:
// SQLite as a file of the folder ORVANE_BENCH_CACHE (build/bench without it), PostgreSQL as a
// database of the server in ORVANE_TEST_POSTGRES.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "server/engine/database.h"

namespace orvane::bench {

using namespace apps;  // measures every floor

/// Entries that a company has beside the demonstration's own, named "проба 000000 …" and on, in
/// another order than that of their serial numbers, from 50000001 on.
inline constexpr std::int64_t kManyEntries = 500'000;
/// Kinds of list with all of these entries, and with ten.
inline constexpr std::int64_t kFullList = 901;
inline constexpr std::int64_t kFewList = 902;
/// Days since 1970 from which all these entries are available, and ten of them once more; both
/// kinds of list have the first.
inline constexpr std::int32_t kManyDay = 20'500;
inline constexpr std::int32_t kFewDay = 20'510;
/// Suppliers beside the demonstration's own, named "снабдител 000000 …", from 70000001 on.
inline constexpr std::int64_t kManyPartners = 200'000;

/// Orders beside the demonstration's own have the identifiers behind this one.
inline constexpr std::int64_t kManyOrdersFrom = 100;

struct BenchCompany {
  Engine engine = Engine::Sqlite;
  std::int64_t documents = 0;  ///< requests, or orders
  std::string location;        ///< path, or conninfo
  std::unique_ptr<Database> database;

  /// "sqlite/1000"
  std::string Name() const;
  /// The first value of the first row as a number; 0 when there is none.
  std::int64_t Number(const std::string& sql) const;
};

/// SQLite always, PostgreSQL where there is a server.
std::vector<Engine> EnginesAtHand();
/// From ORVANE_BENCH_DOCUMENTS ("1000,100000" without it).
std::vector<std::int64_t> SizesAsked();
/// Ends the program when it cannot be made.
BenchCompany OpenCompany(Engine engine, std::int64_t requests);
/// A company of a thousand requests with so many orders.
BenchCompany OpenCompanyOfOrders(Engine engine, std::int64_t orders);

}  // namespace orvane::bench
