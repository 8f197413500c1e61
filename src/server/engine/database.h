#pragma once

// One small interface over the two engines. Statements are texts with ?1, ?2 … for parameters (the
// PostgreSQL engine renders them as $1, $2 …); results are packets of typed columns, because the
// same amount is an integer of ten-thousandths in SQLite and a numeric in PostgreSQL.
//
//   auto packets = database.ReadSnapshot({guard, head, rows});      // one snapshot, one round trip
//
//   auto transaction = database.Begin();
//   (*transaction)->Execute(update);
//   (*transaction)->Commit();                                       // otherwise rolled back

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packet/data_packet.h"
#include "packet/failure.h"
#include "packet/variant.h"

namespace orvane::server {

enum class Engine : std::uint8_t { Sqlite, Postgres };

enum class EngineErrorKind : std::uint8_t {
  Unique,      ///< a unique or primary key would hold twice
  ForeignKey,  ///< a row that others refer to, or a reference to nothing
  NotNull,
  Check,     ///< a check constraint or a trigger refused
  Retry,     ///< serialisation failure or deadlock: the same transaction may be tried again
  Locked,    ///< others held what is needed for longer than anybody waits
  Full,      ///< no room is left on the database's disk: nothing was written
  Late,      ///< the database did not answer in time, its connection was given up
  Limit,     ///< a time limit of a fenced search was reached
  TooLarge,  ///< the answers of a call's searches take more memory than they may
  LinkDown,  ///< the database is not reachable
  Other,
};

/// An engine's failure; `text` is the engine's own (English) message, for logs only.
struct EngineError {
  EngineErrorKind kind = EngineErrorKind::Other;
  /// Small letters, alike on both engines. Unique: its columns, "department.code" or
  /// "userrights.login, userrights.point". NotNull: its column. Check: the constraint's name, or
  /// the words a trigger refused with as they are. ForeignKey: SQLite does not tell. Empty when
  /// unknown.
  std::string constraint;
  std::string text;
};

template <class T>
using EngineAnswer = Answer<T, EngineError>;

/// A column of a result: how to read the engine's value.
struct ResultColumn {
  std::string name;
  ValueKind kind = ValueKind::Int32;
  std::uint16_t size = 0;
};

/// A statement ready to run. `text` is prepared once per connection and kept by its content; it is
/// one statement without a semicolon. Amounts and rates are passed as Decimals, never as integers:
/// SQLite keeps a Decimal of scale 0 to 4 as an amount and of scale 5 to 7 as a rate (Variant::As
/// gives the scale), and compares what it is given. There are as many params as the text uses.
struct Statement {
  std::string text;
  VariantArray params;
  std::vector<ResultColumn> columns;  ///< empty for statements without a result
  /// Of a fenced search on PostgreSQL: planned for its values at every use, because what is rare
  /// goes another way than what is common. Otherwise one plan serves all values.
  bool plannedForValues = false;
  /// Of a fenced search: it answers no more rows than these. 0: it is not told.
  std::int32_t mostRows = 0;
};

/// A write transaction. Destroyed without Commit it is rolled back. PostgreSQL: read committed with
/// row locks taken by the statements; SQLite: BEGIN IMMEDIATE on the one writing connection, so
/// that a thread never begins a second transaction while it holds one. After a statement that
/// failed only RollbackToSavepoint goes on.
class Transaction {
 public:
  virtual ~Transaction() = default;

  virtual EngineAnswer<DataPacket> Query(const Statement& statement) = 0;
  /// One packet per statement, in order, in one round trip.
  virtual EngineAnswer<std::vector<DataPacket>> QueryAll(std::span<const Statement> statements) = 0;
  /// Number of rows touched.
  virtual EngineAnswer<std::int64_t> Execute(const Statement& statement) = 0;
  /// Numbers of rows touched, one per statement, in one round trip; stops at the first failure.
  virtual EngineAnswer<std::vector<std::int64_t>> ExecuteAll(
      std::span<const Statement> statements) = 0;
  /// Savepoints nest; each is ended by one RollbackToSavepoint or one ReleaseSavepoint.
  virtual EngineAnswer<Done> Savepoint() = 0;
  /// Undoes what was done since the last open savepoint, which ends.
  virtual EngineAnswer<Done> RollbackToSavepoint() = 0;
  virtual EngineAnswer<Done> ReleaseSavepoint() = 0;
  /// Acknowledged means on disk. After LinkDown and Late nobody knows whether it was carried out.
  virtual EngineAnswer<Done> Commit() = 0;
};

/// What the fenced searches of one call may cost together.
struct SearchLimits {
  std::int32_t milliseconds = 3000;
  /// Of the answer in memory. A packet of this size still fits a message.
  std::int64_t bytes = std::int64_t{32} * 1024 * 1024;
};

/// So many fenced searches run at once, on either engine.
inline constexpr int kSearchPlaces = 4;

/// Counted since the database was opened; tests look at differences. Statements are the caller's
/// own, without begin, commit and the like; round trips are what PostgreSQL waits for, and the
/// calls that would wait on SQLite: Begin and Savepoint travel with what follows them. The last two
/// are SQLite's: steps of its machine, and those that went from row to row of a table with no index
/// to guide them.
struct EngineCounters {
  std::atomic<std::int64_t> statements{0};
  std::atomic<std::int64_t> roundTrips{0};
  std::atomic<std::int64_t> machineSteps{0};
  std::atomic<std::int64_t> scanSteps{0};
};

/// Implementations are thread-safe.
class Database {
 public:
  virtual ~Database() = default;

  virtual Engine Kind() const = 0;
  /// All statements see one snapshot; one round trip. One packet per statement.
  virtual EngineAnswer<std::vector<DataPacket>> ReadSnapshot(
      std::span<const Statement> statements) = 0;
  virtual EngineAnswer<std::unique_ptr<Transaction>> Begin() = 0;
  /// Runs statements whose text a client had a say in, behind the engine's own fences: read-only,
  /// only readable tables, a time limit. `guard` is trusted and runs in the same round trip first;
  /// its packet comes first.
  virtual EngineAnswer<std::vector<DataPacket>> Search(const Statement& guard,
                                                       std::span<const Statement> statements,
                                                       SearchLimits limits) = 0;
  /// Runs a migration script (several statements) in one transaction.
  virtual EngineAnswer<Done> RunScript(std::string_view script) = 0;
  virtual const EngineCounters& Counters() const { return counters_; }

 protected:
  EngineCounters counters_;
};

/// How long a call waits for each of: its turn, a lock, the database's answer. Clients give a login
/// twenty seconds.
inline constexpr std::chrono::milliseconds kLongestWait{15'000};

/// Opens or creates an SQLite file (WAL, synchronous FULL, foreign keys on, one writing connection
/// behind a queue and readers beside it). A new file is its owner's only, with what goes beside it.
EngineAnswer<std::unique_ptr<Database>> OpenSqlite(
    const std::string& path, std::chrono::milliseconds longestWait = kLongestWait);

struct PostgresOptions {
  std::string connectionInfo;  ///< libpq conninfo
  int poolSize = 8;
  std::chrono::milliseconds longestWait = kLongestWait;
  /// Searches that took longer twice are planned for their values: many times what planning takes.
  std::chrono::milliseconds slowSearch{20};
};
/// Connects to PostgreSQL through a pool; prepared statements, pipeline mode.
EngineAnswer<std::unique_ptr<Database>> OpenPostgres(const PostgresOptions& options);

}  // namespace orvane::server
