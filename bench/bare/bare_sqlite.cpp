#include <sqlite3.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

#include "bare/bare.h"
#include "packet/fold.h"

namespace orvane::bench {
namespace {

void FoldText(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  if (text == nullptr) return sqlite3_result_null(context);
  const std::string fold = Fold(text);
  sqlite3_result_text(context, fold.data(), static_cast<int>(fold.size()), SQLITE_TRANSIENT);
}

class BareSqlite final : public Bare {
 public:
  explicit BareSqlite(const std::string& path) {
    Must(sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                         nullptr));
    sqlite3_busy_timeout(handle_, 10'000);
    // The schema derives folds by it.
    Must(sqlite3_create_function(handle_, "orvane_fold", 1,
                                 SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                                 &FoldText, nullptr, nullptr));
    Run("pragma synchronous = full");
    Run("pragma foreign_keys = on");
  }
  BareSqlite(const BareSqlite&) = delete;
  BareSqlite& operator=(const BareSqlite&) = delete;
  ~BareSqlite() override {
    for (const auto& [text, prepared] : kept_)
      sqlite3_finalize(prepared);
    sqlite3_close(handle_);
  }

  std::int64_t Read(std::span<const BareStatement> statements) override {
    std::int64_t rows = 0;
    Run("begin");
    for (const BareStatement& statement : statements)
      rows += Rows(Bound(statement));
    Run("commit");
    return rows;
  }

  std::int64_t Write(std::span<const BareStatement> statements) override {
    std::int64_t written = 0;
    Run("begin immediate");
    for (const BareStatement& statement : statements) {
      Rows(Bound(statement));
      written += sqlite3_changes(handle_);
    }
    Run("commit");
    return written;
  }

  std::string Value(const BareStatement& statement) override {
    sqlite3_stmt* prepared = Bound(statement);
    std::string value;
    if (sqlite3_step(prepared) == SQLITE_ROW) value = Text(prepared, 0);
    sqlite3_reset(prepared);
    return value;
  }

 private:
  void Must(int result) const {
    if (result == SQLITE_OK || result == SQLITE_DONE) return;
    std::fprintf(stderr, "bare: %s\n", sqlite3_errmsg(handle_));
    std::abort();
  }

  static std::string Text(sqlite3_stmt* prepared, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, column));
    return text == nullptr ? "" : text;
  }

  void Run(const std::string& text) { Rows(Bound({text, {}})); }

  sqlite3_stmt* Bound(const BareStatement& statement) {
    sqlite3_stmt*& prepared = kept_[statement.text];
    if (prepared == nullptr) {
      Must(sqlite3_prepare_v3(handle_, statement.text.c_str(), -1, SQLITE_PREPARE_PERSISTENT,
                              &prepared, nullptr));
    }
    int position = 0;
    for (const std::string& param : statement.params) {
      std::int64_t number = 0;
      const char* end = param.data() + param.size();
      const bool whole = std::from_chars(param.data(), end, number).ptr == end && !param.empty();
      Must(whole ? sqlite3_bind_int64(prepared, ++position, number)
                 : sqlite3_bind_text(prepared, ++position, param.data(),
                                     static_cast<int>(param.size()), SQLITE_TRANSIENT));
    }
    return prepared;
  }

  std::int64_t Rows(sqlite3_stmt* prepared) {
    std::int64_t rows = 0;
    int result = sqlite3_step(prepared);
    for (; result == SQLITE_ROW; result = sqlite3_step(prepared)) {
      ++rows;
      for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
        seen_ += static_cast<std::uint64_t>(sqlite3_column_type(prepared, column) == SQLITE_TEXT
                                                ? sqlite3_column_bytes(prepared, column)
                                                : sqlite3_column_int64(prepared, column));
      }
    }
    Must(result);
    sqlite3_reset(prepared);
    return rows;
  }

  sqlite3* handle_ = nullptr;
  std::unordered_map<std::string, sqlite3_stmt*> kept_;
  std::uint64_t seen_ = 0;  ///< of all values, so that each is read
};

}  // namespace

std::unique_ptr<Bare> OpenBareSqlite(const std::string& path) {
  return std::make_unique<BareSqlite>(path);
}

std::unique_ptr<Bare> OpenBare(Engine engine, const std::string& location) {
  return engine == Engine::Sqlite ? OpenBareSqlite(location) : OpenBarePostgres(location);
}

}  // namespace orvane::bench
