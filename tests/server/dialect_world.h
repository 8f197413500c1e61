#pragma once

// A database with every table of the search catalogue, filled from tables of text, and a way to run
// search statements on it.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/dialect/kept_searches.h"
#include "server/dialect/search.h"
#include "support/test_databases.h"

namespace orvane::server {

/// How a test asks. Without more it is somebody who may read and see everything on 05.03.2026.
struct Asking {
  NamedValues params = {};
  std::int32_t rowLimit = 0;
  std::string continuation = {};
  RowPredicate predicate = {};  ///< of every document
};

class DialectWorld {
 public:
  explicit DialectWorld(Engine engine);

  /// First line: column names parted by |; the others: values. "-" is Null; columns that are not
  /// named are Null, or zero where they may not be. Folds are written beside the texts.
  void Fill(const std::string& table, const std::string& rows);
  void FillRows(const std::string& table, const std::vector<std::string>& columns,
                const std::vector<VariantArray>& rows);

  /// Through the kept searches, which must answer as if the statement had been read.
  Answer<RenderedSearch> Render(const std::string& sql, const Asking& asking = {}) const;
  /// Renders, runs and finishes one portion; failures of the engine fail the test.
  DataPacket Portion(const std::string& sql, const Asking& asking = {});
  /// "1 Стоки; 2 Услуги": all rows of one portion; Null is "-". Or "line:column message".
  std::string Rows(const std::string& sql, const Asking& asking = {});
  /// What SQLite says about how it runs the statement.
  std::string Plan(const std::string& sql, const Asking& asking = {});

  Database& Data() { return *database_; }

 private:
  void Run(std::vector<Statement> statements);

  Engine engine_;
  mutable KeptSearches kept_;
  std::unique_ptr<Database> database_;
};

/// A rendered search with all its parts, or why it was refused.
std::string AsText(const Answer<RenderedSearch>& search);

/// The rows of a packet in the manner of DialectWorld::Rows.
std::string RowsOf(const DataPacket& packet);

class DialectOnEngine : public testing::TestWithParam<Engine> {};

}  // namespace orvane::server
