#include "server/engine/sqlite_connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <type_traits>
#include <variant>

#include "packet/fold.h"
#include "server/catalogue/search_fence.h"
#include "server/engine/packet_filler.h"

namespace orvane::server {
namespace {

/// Filters make many texts; beyond so many the kept statements are dropped and prepared anew.
constexpr std::size_t kMostKept = 512;
/// Another process (a command beside the server) may hold the file for a moment.
constexpr int kBusyMilliseconds = 10000;
/// Machine steps between two looks at the clock.
constexpr int kStepsBetweenChecks = 2000;

EngineError TooLarge() {
  return {EngineErrorKind::TooLarge, "", "the answers take too much memory"};
}

EngineError Wrong(std::string text) {
  return {EngineErrorKind::Other, "", std::move(text)};
}

EngineErrorKind KindOf(int code) {
  switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return EngineErrorKind::Unique;
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return EngineErrorKind::ForeignKey;
    case SQLITE_CONSTRAINT_NOTNULL:
      return EngineErrorKind::NotNull;
    case SQLITE_CONSTRAINT_CHECK:
    case SQLITE_CONSTRAINT_TRIGGER:
      return EngineErrorKind::Check;
    default:
      break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:  // another process; it was waited for
      return EngineErrorKind::Locked;
    case SQLITE_LOCKED:
      return EngineErrorKind::Retry;
    case SQLITE_FULL:
      return EngineErrorKind::Full;
    case SQLITE_INTERRUPT:
      return EngineErrorKind::Limit;
    case SQLITE_CANTOPEN:
    case SQLITE_NOTADB:
      return EngineErrorKind::LinkDown;
    default:
      return EngineErrorKind::Other;
  }
}

/// "UNIQUE constraint failed: Department.Code" → "department.code"; a trigger's text as it is.
std::string ConstraintIn(EngineErrorKind kind, const std::string& text) {
  constexpr std::string_view kMark = "constraint failed: ";
  const std::size_t mark = text.find(kMark);
  if (mark == std::string::npos) return kind == EngineErrorKind::Check ? text : "";
  return Fold(text.substr(mark + kMark.size()));
}

/// An amount is kept in ten-thousandths, everything finer is a rate. Empty when digits would be
/// lost.
std::optional<std::int64_t> StoredDecimal(Decimal value) {
  const ValueKind kind =
      value.Scale() <= RowOf(ValueKind::Amount).scale ? ValueKind::Amount : ValueKind::Rate;
  const auto scaled = value.AtScale(RowOf(kind).scale);
  return scaled ? std::optional(scaled->Mantissa()) : std::nullopt;
}

/// Result code of SQLite; SQLITE_MISMATCH for a value that no column can hold.
int Bind(sqlite3_stmt* prepared, int position, const Variant& value) {
  return std::visit(
      [&](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>) {
          return sqlite3_bind_null(prepared, position);
        } else if constexpr (std::is_same_v<Held, bool> || std::is_same_v<Held, std::int64_t>) {
          return sqlite3_bind_int64(prepared, position, held);
        } else if constexpr (std::is_same_v<Held, double>) {
          if (!std::isfinite(held)) return SQLITE_MISMATCH;
          return sqlite3_bind_double(prepared, position, held);
        } else if constexpr (std::is_same_v<Held, Decimal>) {
          const auto stored = StoredDecimal(held);
          if (!stored) return SQLITE_MISMATCH;
          return sqlite3_bind_int64(prepared, position, *stored);
        } else if constexpr (std::is_same_v<Held, Date>) {
          return sqlite3_bind_int64(prepared, position, held.days);
        } else if constexpr (std::is_same_v<Held, Stamp>) {
          return sqlite3_bind_int64(prepared, position, held.micros);
        } else if constexpr (std::is_same_v<Held, std::string>) {
          return sqlite3_bind_text64(prepared, position, held.data(), held.size(), SQLITE_STATIC,
                                     SQLITE_UTF8);
        } else {
          return SQLITE_MISMATCH;
        }
      },
      value.Raw());
}

EngineAnswer<Done> BindAll(sqlite3_stmt* prepared, const VariantArray& params) {
  const int count = sqlite3_bind_parameter_count(prepared);
  if (static_cast<std::size_t>(count) != params.size()) {
    return Wrong("the statement takes " + std::to_string(count) + " parameters, not " +
                 std::to_string(params.size()));
  }
  for (int i = 0; i < count; ++i) {
    const int result = Bind(prepared, i + 1, params[static_cast<std::size_t>(i)]);
    if (result != SQLITE_OK) {
      return Wrong("parameter " + std::to_string(i + 1) +
                   " cannot be bound: " + sqlite3_errstr(result));
    }
  }
  return Done{};
}

FillError FillFrom(PacketColumn& column, std::size_t row, sqlite3_stmt* prepared, int position) {
  switch (sqlite3_column_type(prepared, position)) {
    case SQLITE_NULL:
      AppendNull(column, row);
      return std::nullopt;
    case SQLITE_INTEGER: {
      const sqlite3_int64 value = sqlite3_column_int64(prepared, position);
      if (RowOf(column.kind).storage == Storage::Real) {
        return FillReal(column, static_cast<double>(value));
      }
      return FillStored(column, value);
    }
    case SQLITE_FLOAT:
      return FillReal(column, sqlite3_column_double(prepared, position));
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, position));
      const int bytes = sqlite3_column_bytes(prepared, position);
      return FillText(column, std::string_view(text, static_cast<std::size_t>(bytes)));
    }
    default:
      return "column " + column.name + " holds bytes";
  }
}

/// Counts a statement's steps and leaves it ready for its next use.
class Using {
 public:
  Using(sqlite3_stmt* prepared, EngineCounters* counters)
      : prepared_(prepared), counters_(counters) {}
  Using(const Using&) = delete;
  Using& operator=(const Using&) = delete;
  ~Using() {
    if (counters_ != nullptr) {
      counters_->machineSteps += sqlite3_stmt_status(prepared_, SQLITE_STMTSTATUS_VM_STEP, 1);
      counters_->scanSteps += sqlite3_stmt_status(prepared_, SQLITE_STMTSTATUS_FULLSCAN_STEP, 1);
    }
    sqlite3_reset(prepared_);
    sqlite3_clear_bindings(prepared_);
  }

 private:
  sqlite3_stmt* prepared_;
  EngineCounters* counters_;
};

void FoldFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return sqlite3_result_null(context);
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  const auto bytes = static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]));
  const std::string folded = Fold(std::string_view(text, bytes));
  sqlite3_result_text64(context, folded.data(), folded.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// orvane_quantity(value): the quantity at six decimals, as searches on PostgreSQL round it too.
void QuantityFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return sqlite3_result_null(context);
  constexpr double kScale = 1e6;
  sqlite3_result_double(context,
                        std::nearbyint(sqlite3_value_double(arguments[0]) * kScale) / kScale);
}

/// orvane_whole(sum): a whole number; null for a sum that did not fit 64 bits, as on PostgreSQL.
void WholeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) != SQLITE_INTEGER) return sqlite3_result_null(context);
  sqlite3_result_int64(context, sqlite3_value_int64(arguments[0]));
}

std::string_view TextArgument(sqlite3_value* argument) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argument));
  return {text == nullptr ? "" : text, static_cast<std::size_t>(sqlite3_value_bytes(argument))};
}

void AnswerNumber(sqlite3_context* context, std::optional<std::int64_t> number) {
  if (!number) return sqlite3_result_null(context);
  sqlite3_result_int64(context, *number);
}

/// orvane_keep(name, number): keeps a number for the statements that follow on the connection.
void KeepFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  auto& kept = *static_cast<KeptNumbers*>(sqlite3_user_data(context));
  std::optional<std::int64_t> number;
  if (sqlite3_value_type(arguments[1]) != SQLITE_NULL) number = sqlite3_value_int64(arguments[1]);
  kept.insert_or_assign(std::string(TextArgument(arguments[0])), number);
  AnswerNumber(context, number);
}

/// orvane_kept(name): the number, null when none is kept.
void KeptFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto& kept = *static_cast<const KeptNumbers*>(sqlite3_user_data(context));
  const auto found = kept.find(TextArgument(arguments[0]));
  AnswerNumber(context, found == kept.end() ? std::nullopt : found->second);
}

/// Makes a file that is not there yet, for its owner only; what SQLite lays beside it follows it.
void MakeOwnFile(const std::string& path) {
  if (path.empty() || path.front() == ':') return;  // in memory
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file >= 0) close(file);
}

bool IsRestOfStatement(std::string_view tail) {
  return tail.find_first_not_of(" \t\r\n;") != std::string_view::npos;
}

}  // namespace

void CloseSqlite::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

void FinalizeSqlite::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

EngineAnswer<std::unique_ptr<SqliteConnection>> SqliteConnection::Open(const std::string& path,
                                                                       SqliteUse use) {
  const int access = use == SqliteUse::Search ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  const int create = use == SqliteUse::Write ? SQLITE_OPEN_CREATE : 0;
  if (use == SqliteUse::Write) MakeOwnFile(path);
  sqlite3* raw = nullptr;
  const int result = sqlite3_open_v2(
      path.c_str(), &raw, access | create | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  std::unique_ptr<SqliteConnection> connection(new SqliteConnection(SqliteHandle(raw)));
  if (result != SQLITE_OK) {
    return EngineError{EngineErrorKind::LinkDown, "", path + ": " + sqlite3_errstr(result)};
  }
  const auto configured = connection->Configure(use);
  if (!configured) return configured.GetFailure();
  return connection;
}

EngineAnswer<Done> SqliteConnection::Configure(SqliteUse use) {
  sqlite3_busy_timeout(handle_.get(), kBusyMilliseconds);
  const int functionFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  sqlite3_create_function_v2(handle_.get(), "orvane_fold", 1, functionFlags, nullptr, &FoldFunction,
                             nullptr, nullptr, nullptr);
  sqlite3_create_function_v2(handle_.get(), "orvane_quantity", 1, functionFlags, nullptr,
                             &QuantityFunction, nullptr, nullptr, nullptr);
  sqlite3_create_function_v2(handle_.get(), "orvane_whole", 1, functionFlags, nullptr,
                             &WholeFunction, nullptr, nullptr, nullptr);
  if (use != SqliteUse::Search) {
    sqlite3_create_function_v2(handle_.get(), "orvane_keep", 2, SQLITE_UTF8 | SQLITE_DIRECTONLY,
                               &keptNumbers_, &KeepFunction, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(handle_.get(), "orvane_kept", 1, SQLITE_UTF8 | SQLITE_DIRECTONLY,
                               &keptNumbers_, &KeptFunction, nullptr, nullptr, nullptr);
  }
  switch (use) {
    case SqliteUse::Write:
      return Run(
          // Triggers keep the indexes of trigrams, which the engine lets a trusted schema do only.
          "pragma journal_mode = wal; pragma synchronous = full; pragma foreign_keys = on;"
          "pragma trusted_schema = on");
    case SqliteUse::Read:
      return Run("pragma query_only = on; pragma trusted_schema = off");
    case SqliteUse::Search:
      break;
  }
  const auto configured = Run("pragma query_only = on; pragma trusted_schema = off");
  sqlite3_limit(handle_.get(), SQLITE_LIMIT_LENGTH, 16 * 1024 * 1024);
  sqlite3_limit(handle_.get(), SQLITE_LIMIT_ATTACHED, 0);
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  // A plan for all values: otherwise a kept statement is prepared anew whenever a value is bound
  // that a partial index speaks of.
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
  sqlite3_set_authorizer(handle_.get(), &SqliteConnection::Authorize, &fence_);
  sqlite3_progress_handler(handle_.get(), kStepsBetweenChecks, &SqliteConnection::Progress,
                           &fence_);
  return configured;
}

int SqliteConnection::Authorize(void* fence, int action, const char* first, const char* second,
                                const char*, const char*) {
  if (!static_cast<const Fence*>(fence)->up) return SQLITE_OK;
  const std::string_view one = first == nullptr ? "" : first;
  const std::string_view two = second == nullptr ? "" : second;
  const bool allowed =
      action == SQLITE_SELECT ||
      (action == SQLITE_READ && (MayBeSearched(one, two) || IsTrigramIndex(one))) ||
      // An index of trigrams asks whether it was written since.
      (action == SQLITE_PRAGMA && one == "data_version" && two.empty()) ||
      (action == SQLITE_FUNCTION && MayBeCalledBySearch(two));
  return allowed ? SQLITE_OK : SQLITE_DENY;
}

int SqliteConnection::Progress(void* fence) {
  const auto* state = static_cast<const Fence*>(fence);
  return state->up && std::chrono::steady_clock::now() >= state->deadline ? 1 : 0;
}

EngineAnswer<DataPacket> SqliteConnection::Query(const Statement& statement) {
  const auto prepared = Kept(statement.text, kept_);
  if (!prepared) return prepared.GetFailure();
  return Rows(*prepared, statement);
}

EngineAnswer<DataPacket> SqliteConnection::QueryFenced(
    const Statement& statement, std::chrono::steady_clock::time_point deadline,
    std::int64_t bytesLeft) {
  OpenIndexesOf(statement.text);
  fence_ = {true, deadline};
  auto answer = [&]() -> EngineAnswer<DataPacket> {
    const auto prepared = Kept(statement.text, keptSearches_);
    if (!prepared) return prepared.GetFailure();
    if (sqlite3_stmt_readonly(*prepared) == 0) return Wrong("a search only reads");
    return Rows(*prepared, statement, bytesLeft);
  }();
  fence_.up = false;
  return answer;
}

void SqliteConnection::OpenIndexesOf(const std::string& text) {
  for (const std::string_view index : TrigramIndexes()) {
    if (text.find(index) == std::string::npos) continue;
    const auto opening = Kept("select 1 from " + std::string(index) + " where 0", kept_);
    if (!opening) continue;  // the search itself says why
    sqlite3_step(*opening);
    sqlite3_reset(*opening);
  }
}

EngineAnswer<std::int64_t> SqliteConnection::Execute(const Statement& statement) {
  const auto prepared = Kept(statement.text, kept_);
  if (!prepared) return prepared.GetFailure();
  const Using use(*prepared, counters_);
  const auto bound = BindAll(*prepared, statement.params);
  if (!bound) return bound.GetFailure();
  int result = sqlite3_step(*prepared);
  while (result == SQLITE_ROW)
    result = sqlite3_step(*prepared);
  if (result != SQLITE_DONE) return LastError();
  return sqlite3_changes64(handle_.get());
}

void SqliteConnection::WaitNoLongerThan(std::chrono::milliseconds time) {
  sqlite3_busy_timeout(handle_.get(), std::max(1, static_cast<int>(time.count())));
}

EngineAnswer<Done> SqliteConnection::Run(const std::string& script) {
  if (sqlite3_exec(handle_.get(), script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    return LastError();
  }
  return Done{};
}

bool SqliteConnection::InTransaction() const {
  return sqlite3_get_autocommit(handle_.get()) == 0;
}

void SqliteConnection::RollBack() {
  if (InTransaction()) sqlite3_exec(handle_.get(), "rollback", nullptr, nullptr, nullptr);
}

EngineAnswer<SqlitePrepared> SqliteConnection::Prepare(const std::string& text) const {
  sqlite3_stmt* raw = nullptr;
  const char* tail = nullptr;
  const int result = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &raw, &tail);
  SqlitePrepared prepared(raw);
  if (result != SQLITE_OK) {
    EngineError error = LastError();
    error.text += " in: " + text;
    return error;
  }
  const auto read = static_cast<std::size_t>(tail - text.data());
  if (!prepared || IsRestOfStatement(std::string_view(text).substr(read))) {
    return Wrong("not one statement: " + text);
  }
  return prepared;
}

EngineAnswer<sqlite3_stmt*> SqliteConnection::Kept(const std::string& text, KeptStatements& kept) {
  const auto found = kept.find(text);
  if (found != kept.end()) return found->second.get();
  auto prepared = Prepare(text);
  if (!prepared) return prepared.GetFailure();
  if (kept.size() >= kMostKept) kept.clear();
  sqlite3_stmt* raw = prepared->get();
  kept.emplace(text, *std::move(prepared));
  return raw;
}

EngineAnswer<DataPacket> SqliteConnection::Rows(sqlite3_stmt* prepared, const Statement& statement,
                                                std::int64_t bytesLeft) const {
  const Using use(prepared, counters_);
  const auto bound = BindAll(prepared, statement.params);
  if (!bound) return bound.GetFailure();
  const int columns = sqlite3_column_count(prepared);
  if (static_cast<std::size_t>(columns) != statement.columns.size()) {
    return Wrong("the statement answers " + std::to_string(columns) +
                 " columns: " + statement.text);
  }
  DataPacket packet = PacketFor(statement.columns);
  int result = sqlite3_step(prepared);
  for (; result == SQLITE_ROW; result = sqlite3_step(prepared)) {
    for (int i = 0; i < columns; ++i) {
      PacketColumn& column = packet.columns[static_cast<std::size_t>(i)];
      if (const auto error = FillFrom(column, packet.rowCount, prepared, i)) return Wrong(*error);
    }
    ++packet.rowCount;
    // The engine bounds a row itself, so a look every few rows is enough.
    if (packet.rowCount % 16 == 0 && packet.Bytes() > bytesLeft) return TooLarge();
  }
  if (result != SQLITE_DONE) return LastError();
  if (packet.Bytes() > bytesLeft) return TooLarge();
  return packet;
}

EngineError SqliteConnection::LastError() const {
  EngineError error;
  const int code = sqlite3_extended_errcode(handle_.get());
  error.kind = KindOf(code);
  const int system = (code & 0xFF) == SQLITE_IOERR ? sqlite3_system_errno(handle_.get()) : 0;
  if (code == SQLITE_IOERR_SHMSIZE || system == ENOSPC || system == EDQUOT) {
    error.kind = EngineErrorKind::Full;
  }
  error.text = sqlite3_errmsg(handle_.get());
  error.constraint = ConstraintIn(error.kind, error.text);
  return error;
}

}  // namespace orvane::server
