#pragma once

// One connection to an SQLite file, used by one thread at a time. Statements are prepared once and
// kept by their text.

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "server/engine/database.h"

struct sqlite3;
struct sqlite3_stmt;

namespace orvane::server {

enum class SqliteUse : std::uint8_t {
  Write,   ///< the one connection that writes
  Read,    ///< reads of trusted statements
  Search,  ///< read-only file handle with authorizer and time limit
};

struct CloseSqlite {
  void operator()(sqlite3* handle) const;
};
struct FinalizeSqlite {
  void operator()(sqlite3_stmt* statement) const;
};
using SqliteHandle = std::unique_ptr<sqlite3, CloseSqlite>;
using SqlitePrepared = std::unique_ptr<sqlite3_stmt, FinalizeSqlite>;

/// Numbers that a statement keeps for those behind it (orvane_keep, orvane_kept); PostgreSQL has
/// settings of the transaction for the same.
using KeptNumbers = std::map<std::string, std::optional<std::int64_t>, std::less<>>;

class SqliteConnection {
 public:
  static EngineAnswer<std::unique_ptr<SqliteConnection>> Open(const std::string& path,
                                                              SqliteUse use);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() = default;

  /// Adds the steps of every statement to these, which must outlive the connection.
  void CountInto(EngineCounters& counters) { counters_ = &counters; }
  EngineAnswer<DataPacket> Query(const Statement& statement);
  /// Runs a statement that a client had a say in. It is prepared under the authorizer, kept apart
  /// from the trusted ones and stopped at the deadline, or when its answer grows beyond the bytes.
  EngineAnswer<DataPacket> QueryFenced(const Statement& statement,
                                       std::chrono::steady_clock::time_point deadline,
                                       std::int64_t bytesLeft);
  /// Number of rows touched.
  EngineAnswer<std::int64_t> Execute(const Statement& statement);
  /// Runs several statements without parameters.
  EngineAnswer<Done> Run(const std::string& script);
  /// For a lock that another process holds.
  void WaitNoLongerThan(std::chrono::milliseconds time);
  bool InTransaction() const;
  /// Rolls back whatever is open; nothing happens when nothing is.
  void RollBack();
  /// SQLite connections do not break.
  bool IsBroken() const { return false; }

 private:
  /// What the callbacks of a search connection look at.
  struct Fence {
    bool up = false;
    std::chrono::steady_clock::time_point deadline;
  };

  explicit SqliteConnection(SqliteHandle handle) : handle_(std::move(handle)) {}
  static int Authorize(void* fence, int action, const char* first, const char* second,
                       const char* database, const char* trigger);
  static int Progress(void* fence);

  EngineAnswer<Done> Configure(SqliteUse use);
  using KeptStatements = std::unordered_map<std::string, SqlitePrepared>;

  EngineAnswer<SqlitePrepared> Prepare(const std::string& text) const;
  EngineAnswer<sqlite3_stmt*> Kept(const std::string& text, KeptStatements& kept);
  EngineAnswer<DataPacket> Rows(sqlite3_stmt* prepared, const Statement& statement,
                                std::int64_t bytesLeft = kHighest64) const;
  EngineError LastError() const;
  /// Opens the indexes of trigrams that a text asks: it takes reading the schema, behind which no
  /// search may look.
  void OpenIndexesOf(const std::string& text);

  KeptNumbers keptNumbers_;
  SqliteHandle handle_;
  EngineCounters* counters_ = nullptr;
  Fence fence_;
  KeptStatements kept_;
  KeptStatements keptSearches_;
};

}  // namespace orvane::server
