#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "server/catalogue/search_fence.h"
#include "server/engine/connection_pool.h"
#include "server/engine/database.h"
#include "server/engine/postgres_connection.h"

namespace orvane::server {
namespace {

using Pool = ConnectionPool<PostgresConnection>;
using Replies = EngineAnswer<std::vector<PostgresReply>>;

/// How much longer than the server's own limit the outside timer waits.
constexpr std::chrono::milliseconds kOutsideMargin{500};

Statement Control(std::string text) {
  return {std::move(text), {}, {}};
}

PostgresConnection::Deadline In(std::chrono::milliseconds time) {
  return std::chrono::steady_clock::now() + time;
}

EngineAnswer<std::vector<DataPacket>> PacketsOf(Replies replies, std::size_t first,
                                                std::size_t count) {
  if (!replies) return replies.GetFailure();
  std::vector<DataPacket> packets;
  packets.reserve(count);
  for (std::size_t i = first; i < first + count; ++i)
    packets.push_back(std::move((*replies)[i].packet));
  return packets;
}

/// Begin, savepoints and their release wait for the statement behind them and travel with it.
class PostgresTransaction final : public Transaction {
 public:
  PostgresTransaction(Pool::Loan connection, EngineCounters& counters,
                      std::chrono::milliseconds longestWait)
      : connection_(std::move(connection)), counters_(counters), longestWait_(longestWait) {
    waiting_.push_back(Control("begin"));
  }
  ~PostgresTransaction() override {
    if (connection_->RollBack()) ++counters_.roundTrips;
  }

  EngineAnswer<DataPacket> Query(const Statement& statement) override {
    auto packets = QueryAll({&statement, 1});
    if (!packets) return packets.GetFailure();
    return std::move(packets->front());
  }

  EngineAnswer<std::vector<DataPacket>> QueryAll(std::span<const Statement> statements) override {
    return PacketsOf(Send(statements), 0, statements.size());
  }

  EngineAnswer<std::int64_t> Execute(const Statement& statement) override {
    const auto touched = ExecuteAll({&statement, 1});
    if (!touched) return touched.GetFailure();
    return touched->front();
  }

  EngineAnswer<std::vector<std::int64_t>> ExecuteAll(
      std::span<const Statement> statements) override {
    const auto replies = Send(statements);
    if (!replies) return replies.GetFailure();
    std::vector<std::int64_t> touched;
    for (const PostgresReply& reply : *replies)
      touched.push_back(reply.touched);
    return touched;
  }

  EngineAnswer<Done> Savepoint() override {
    if (failed_) return Failed();
    ++savepoints_;
    waiting_.push_back(Control("savepoint step"));
    return Done{};
  }

  EngineAnswer<Done> RollbackToSavepoint() override {
    if (savepoints_ == 0) return Failed();
    --savepoints_;
    const bool wasFailed = failed_;
    failed_ = false;
    // What failed to be sent was not carried out; what waits is still to come, in order.
    if (wasFailed) waiting_.clear();
    waiting_.push_back(Control("rollback to step"));
    waiting_.push_back(Control("release step"));
    const auto replies = Send({});
    if (!replies) return replies.GetFailure();
    return Done{};
  }

  EngineAnswer<Done> ReleaseSavepoint() override {
    if (failed_ || savepoints_ == 0) return Failed();
    --savepoints_;
    waiting_.push_back(Control("release step"));
    return Done{};
  }

  EngineAnswer<Done> Commit() override {
    if (failed_ || over_) return Failed();
    if (!begun_ && waiting_.size() == 1) waiting_.clear();  // nothing was done
    if (begun_ || !waiting_.empty()) {
      waiting_.push_back(Control("commit"));
      const auto replies = Send({});
      if (!replies) return replies.GetFailure();
    }
    over_ = true;
    return Done{};
  }

 private:
  /// Replies to `statements` only.
  Replies Send(std::span<const Statement> statements) {
    if (failed_ || over_) return Failed();
    std::vector<PostgresCommand> commands;
    for (const Statement& control : waiting_)
      commands.push_back({&control, true});
    for (const Statement& statement : statements)
      commands.push_back({&statement, true});
    counters_.statements += static_cast<std::int64_t>(statements.size());
    ++counters_.roundTrips;
    Replies replies = connection_->Run(commands, In(longestWait_));
    const bool lost = !replies && replies.GetFailure().kind == EngineErrorKind::LinkDown;
    if (lost && !begun_ && connection_->IsBroken() && connection_.Renew()) {
      // Nothing of this transaction can have been committed: an idle connection had broken.
      ++counters_.roundTrips;
      replies = connection_->Run(commands, In(longestWait_));
    }
    begun_ = true;
    failed_ = !replies;
    if (!replies) return replies;
    replies->erase(replies->begin(),
                   replies->begin() + static_cast<std::ptrdiff_t>(waiting_.size()));
    waiting_.clear();
    return replies;
  }

  static EngineError Failed() {
    return {EngineErrorKind::Other, "", "the transaction has failed or is over"};
  }

  Pool::Loan connection_;
  EngineCounters& counters_;
  const std::chrono::milliseconds longestWait_;
  std::vector<Statement> waiting_;
  int savepoints_ = 0;
  bool begun_ = false;
  bool failed_ = false;
  bool over_ = false;
};

/// Texts that took long with one plan for all values, more than once: the first time may have been
/// that of a new connection. From then on they are planned for the values they have: what that
/// costs is nothing beside what it may save. Thread-safe.
class SlowSearches {
 public:
  bool Has(const std::string& text) {
    const std::lock_guard lock(mutex_);
    const auto found = times_.find(text);
    return found != times_.end() && found->second > 1;
  }
  void Add(std::span<const Statement> statements) {
    const std::lock_guard lock(mutex_);
    if (times_.size() > kMostSlow) times_.clear();
    for (const Statement& statement : statements)
      ++times_[statement.text];
  }

 private:
  static constexpr std::size_t kMostSlow = 256;

  std::mutex mutex_;
  std::unordered_map<std::string, int> times_;
};

class PostgresDatabase final : public Database {
 public:
  explicit PostgresDatabase(const PostgresOptions& options)
      : longestWait_(options.longestWait),
        slowSearch_(options.slowSearch),
        pool_(options.poolSize,
              [info = options.connectionInfo] { return PostgresConnection::Open(info); }),
        // Trusted statements never run on these, but for the guard.
        searchers_(kSearchPlaces, [info = options.connectionInfo] {
          return PostgresConnection::Open(info, FenceSettings());
        }) {}

  Engine Kind() const override { return Engine::Postgres; }

  EngineAnswer<std::vector<DataPacket>> ReadSnapshot(
      std::span<const Statement> statements) override {
    static const Statement begin = Control("begin isolation level repeatable read read only");
    static const Statement commit = Control("commit");
    // One statement is a snapshot by itself.
    const bool alone = statements.size() <= 1;
    std::vector<PostgresCommand> commands;
    if (!alone) commands.push_back({&begin, true});
    for (const Statement& statement : statements)
      commands.push_back({&statement, true});
    if (!alone) commands.push_back({&commit, true});
    counters_.statements += static_cast<std::int64_t>(statements.size());
    auto connection = pool_.Lend(In(longestWait_));
    if (!connection) return connection.GetFailure();
    return PacketsOf(RunReading(*connection, commands, longestWait_, EngineErrorKind::Late),
                     alone ? 0 : 1, statements.size());
  }

  EngineAnswer<std::unique_ptr<Transaction>> Begin() override {
    auto connection = pool_.Lend(In(longestWait_));
    if (!connection) return connection.GetFailure();
    return std::unique_ptr<Transaction>(
        new PostgresTransaction(*std::move(connection), counters_, longestWait_));
  }

  EngineAnswer<std::vector<DataPacket>> Search(const Statement& guard,
                                               std::span<const Statement> statements,
                                               SearchLimits limits) override {
    static const Statement begin = Control("begin isolation level repeatable read read only");
    static const Statement role = Control("set local role " + std::string(kSearchRole));
    static const Statement planAnew = Control("set local plan_cache_mode = force_custom_plan");
    // Whatever a search set for itself goes with its transaction.
    static const Statement rollback = Control("rollback");
    const Statement limit =
        Control("set local statement_timeout = " + std::to_string(limits.milliseconds));
    std::vector<PostgresCommand> commands = {{&begin, true}, {&guard, true}};
    if (limits.milliseconds != SearchLimits().milliseconds) commands.push_back({&limit, true});
    std::vector<std::size_t> places = {1};
    for (const Statement& statement : statements) {
      if (statement.plannedForValues || slow_.Has(statement.text))
        commands.push_back({&planAnew, true});
      // The role is taken anew before each statement, in case one could put it off.
      commands.push_back({&role, true});
      places.push_back(commands.size());
      commands.push_back({&statement, true});
    }
    commands.push_back({&rollback, true});
    counters_.statements += static_cast<std::int64_t>(statements.size()) + 1;

    auto connection = searchers_.Lend(In(longestWait_));
    if (!connection) return connection.GetFailure();
    // That it waited for a connection says nothing of the search.
    const auto start = std::chrono::steady_clock::now();
    const auto allowed = std::chrono::milliseconds(limits.milliseconds) + kOutsideMargin;
    auto replies = RunReading(*connection, commands, allowed, EngineErrorKind::Limit, limits.bytes);
    if (std::chrono::steady_clock::now() - start > slowSearch_) slow_.Add(statements);
    if (!replies) return replies.GetFailure();
    std::vector<DataPacket> packets;
    packets.reserve(places.size());
    for (const std::size_t place : places)
      packets.push_back(std::move((*replies)[place].packet));
    return packets;
  }

  EngineAnswer<Done> RunScript(std::string_view script) override {
    auto connection = pool_.Lend(In(longestWait_));
    if (!connection) return connection.GetFailure();
    counters_.roundTrips += 3;
    return (*connection)->RunScript(std::string(script));
  }

 private:
  /// Sessions that only read, and none of whose statements runs longer than a search may. A portion
  /// is some eighty rows along an index with the rows they name; a plan that reads whole tables to
  /// join them is for those who read everything.
  static std::string FenceSettings() {
    return "-c default_transaction_read_only=on -c enable_hashjoin=off -c enable_mergejoin=off"
           " -c statement_timeout=" +
           std::to_string(SearchLimits().milliseconds);
  }

  Replies RunReading(Pool::Loan& connection, std::span<const PostgresCommand> commands,
                     std::chrono::milliseconds allowed, EngineErrorKind late,
                     std::int64_t bytes = kHighest64) {
    ++counters_.roundTrips;
    const auto deadline = In(allowed);
    Replies replies = connection->Run(commands, deadline, late, bytes);
    const bool lost = !replies && replies.GetFailure().kind == EngineErrorKind::LinkDown;
    if (lost && connection->IsBroken() && connection.Renew()) {
      ++counters_.roundTrips;
      replies = connection->Run(commands, deadline, late, bytes);
    }
    if (!replies && connection->RollBack()) ++counters_.roundTrips;
    return replies;
  }

  const std::chrono::milliseconds longestWait_;
  const std::chrono::milliseconds slowSearch_;
  Pool pool_;
  Pool searchers_;
  SlowSearches slow_;
};

}  // namespace

EngineAnswer<std::unique_ptr<Database>> OpenPostgres(const PostgresOptions& options) {
  auto database = std::make_unique<PostgresDatabase>(options);
  const Statement hello{"select 1", {}, {{"One", ValueKind::Int32, 0}}};
  const auto answered = database->ReadSnapshot({&hello, 1});
  if (!answered) return answered.GetFailure();
  return std::unique_ptr<Database>(std::move(database));
}

}  // namespace orvane::server
