#pragma once

// Hand-written statements on the engines' own C interfaces, prepared once: what there is to compare
// ours with. Parameters are ?1, ?2 …, as in the server's statements.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "server/engine/database.h"

namespace orvane::bench {

using namespace apps;  // measures every floor

struct BareStatement {
  std::string text;
  std::vector<std::string> params;  ///< whole numbers and texts
  /// On PostgreSQL: planned for its values, where one plan cannot serve all of them.
  bool planned = false;
};

/// A connection of its own to a company's database. Failures end the program.
class Bare {
 public:
  virtual ~Bare() = default;
  /// All statements in one snapshot (on PostgreSQL one round trip); every value is read. The number
  /// of rows.
  virtual std::int64_t Read(std::span<const BareStatement> statements) = 0;
  /// All statements in one durable transaction; the number of rows written.
  virtual std::int64_t Write(std::span<const BareStatement> statements) = 0;
  /// The first value of the first row; empty when there is none.
  virtual std::string Value(const BareStatement& statement) = 0;
};

std::unique_ptr<Bare> OpenBareSqlite(const std::string& path);
std::unique_ptr<Bare> OpenBarePostgres(const std::string& connectionInfo);
std::unique_ptr<Bare> OpenBare(Engine engine, const std::string& location);

}  // namespace orvane::bench
