#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "server/engine/connection_pool.h"
#include "server/engine/database.h"
#include "server/engine/sqlite_connection.h"

namespace orvane::server {
namespace {

constexpr int kReaders = 8;

using Moment = std::chrono::steady_clock::time_point;

/// Lets one writer through at a time, in the order of arrival. Unlike a mutex it may be left by
/// another thread than the one that entered.
class WriterQueue {
 public:
  /// False when the turn did not come by then.
  bool Enter(Moment deadline) {
    std::unique_lock lock(mutex_);
    const std::uint64_t ticket = nextTicket_++;
    waiting_.push_back(ticket);
    const bool served =
        moved_.wait_until(lock, deadline, [&] { return !inside_ && waiting_.front() == ticket; });
    std::erase(waiting_, ticket);
    inside_ = inside_ || served;
    if (!served) moved_.notify_all();  // the next in the row may have waited behind this one
    return served;
  }
  void Leave() {
    {
      const std::lock_guard lock(mutex_);
      inside_ = false;
    }
    moved_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable moved_;
  std::uint64_t nextTicket_ = 0;
  std::deque<std::uint64_t> waiting_;
  bool inside_ = false;
};

/// A place at the head of the queue, left when destroyed; none when it did not come in time.
class WriterTurn {
 public:
  WriterTurn(WriterQueue& queue, Moment deadline) : queue_(queue), come_(queue.Enter(deadline)) {}
  WriterTurn(const WriterTurn&) = delete;
  WriterTurn& operator=(const WriterTurn&) = delete;
  ~WriterTurn() {
    if (come_) queue_.Leave();
  }
  bool HasCome() const { return come_; }

 private:
  WriterQueue& queue_;
  const bool come_;
};

/// A statement that failed closes the transaction for everything but a return to a savepoint, as
/// PostgreSQL does, so that rules proved on one engine hold on the other.
class SqliteTransaction final : public Transaction {
 public:
  SqliteTransaction(WriterQueue& queue, SqliteConnection& writer, EngineCounters& counters,
                    Moment deadline)
      : deadline_(deadline), turn_(queue, deadline), writer_(writer), counters_(counters) {}
  ~SqliteTransaction() override {
    if (turn_.HasCome()) writer_.RollBack();
  }

  /// To be called once, before anything else.
  EngineAnswer<Done> Start() {
    if (!turn_.HasCome()) {
      return EngineError{EngineErrorKind::Locked, "", "the writer's turn did not come in time"};
    }
    writer_.WaitNoLongerThan(std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline_ - std::chrono::steady_clock::now()));
    return writer_.Run("begin immediate");
  }

  EngineAnswer<DataPacket> Query(const Statement& statement) override {
    ++counters_.roundTrips;
    return QueryOne(statement);
  }

  EngineAnswer<std::vector<DataPacket>> QueryAll(std::span<const Statement> statements) override {
    ++counters_.roundTrips;
    std::vector<DataPacket> packets;
    packets.reserve(statements.size());
    for (const Statement& statement : statements) {
      auto packet = QueryOne(statement);
      if (!packet) return packet.GetFailure();
      packets.push_back(*std::move(packet));
    }
    return packets;
  }

  EngineAnswer<std::int64_t> Execute(const Statement& statement) override {
    ++counters_.roundTrips;
    return ExecuteOne(statement);
  }

  EngineAnswer<std::vector<std::int64_t>> ExecuteAll(
      std::span<const Statement> statements) override {
    ++counters_.roundTrips;
    std::vector<std::int64_t> touched;
    touched.reserve(statements.size());
    for (const Statement& statement : statements) {
      const auto count = ExecuteOne(statement);
      if (!count) return count.GetFailure();
      touched.push_back(*count);
    }
    return touched;
  }

  EngineAnswer<Done> Savepoint() override {
    if (failed_) return Failed();
    return Noticed(writer_.Run("savepoint step"));
  }

  EngineAnswer<Done> RollbackToSavepoint() override {
    ++counters_.roundTrips;
    // A full disk may have ended the whole transaction.
    if (!writer_.InTransaction()) return why_.value_or(Failed());
    auto answer = writer_.Run("rollback to step; release step");
    failed_ = !answer;
    return answer;
  }

  EngineAnswer<Done> ReleaseSavepoint() override {
    if (failed_) return Failed();
    return Noticed(writer_.Run("release step"));
  }

  EngineAnswer<Done> Commit() override {
    ++counters_.roundTrips;
    if (failed_ || !writer_.InTransaction()) return Failed();
    return Noticed(writer_.Run("commit"));
  }

 private:
  EngineAnswer<DataPacket> QueryOne(const Statement& statement) {
    if (failed_) return Failed();
    ++counters_.statements;
    return Noticed(writer_.Query(statement));
  }

  EngineAnswer<std::int64_t> ExecuteOne(const Statement& statement) {
    if (failed_) return Failed();
    ++counters_.statements;
    return Noticed(writer_.Execute(statement));
  }

  template <class T>
  EngineAnswer<T> Noticed(EngineAnswer<T> answer) {
    if (!answer) {
      failed_ = true;
      why_ = answer.GetFailure();
    }
    return answer;
  }

  static EngineError Failed() {
    return {EngineErrorKind::Other, "", "the transaction has failed or is over"};
  }

  const Moment deadline_;
  WriterTurn turn_;
  SqliteConnection& writer_;
  EngineCounters& counters_;
  bool failed_ = false;
  std::optional<EngineError> why_;
};

class SqliteDatabase final : public Database {
 public:
  SqliteDatabase(const std::string& path, std::unique_ptr<SqliteConnection> writer,
                 std::chrono::milliseconds longestWait)
      : longestWait_(longestWait),
        writer_(std::move(writer)),
        readers_(kReaders, [this, path] { return Counted(path, SqliteUse::Read); }),
        searchers_(kSearchPlaces, [this, path] { return Counted(path, SqliteUse::Search); }) {
    writer_->CountInto(counters_);
  }

  Engine Kind() const override { return Engine::Sqlite; }

  EngineAnswer<std::vector<DataPacket>> ReadSnapshot(
      std::span<const Statement> statements) override {
    auto reader = readers_.Lend(LatestMoment());
    if (!reader) return reader.GetFailure();
    ++counters_.roundTrips;
    return InSnapshot(**reader, [&]() -> EngineAnswer<std::vector<DataPacket>> {
      std::vector<DataPacket> packets;
      packets.reserve(statements.size());
      for (const Statement& statement : statements) {
        ++counters_.statements;
        auto packet = (*reader)->Query(statement);
        if (!packet) return packet.GetFailure();
        packets.push_back(*std::move(packet));
      }
      return packets;
    });
  }

  EngineAnswer<std::unique_ptr<Transaction>> Begin() override {
    auto transaction =
        std::make_unique<SqliteTransaction>(queue_, *writer_, counters_, LatestMoment());
    const auto started = transaction->Start();
    if (!started) return started.GetFailure();
    return std::unique_ptr<Transaction>(std::move(transaction));
  }

  EngineAnswer<std::vector<DataPacket>> Search(const Statement& guard,
                                               std::span<const Statement> statements,
                                               SearchLimits limits) override {
    auto searcher = searchers_.Lend(LatestMoment());
    if (!searcher) return searcher.GetFailure();
    ++counters_.roundTrips;
    return InSnapshot(**searcher, [&]() -> EngineAnswer<std::vector<DataPacket>> {
      std::vector<DataPacket> packets;
      ++counters_.statements;
      auto answer = (*searcher)->Query(guard);
      if (!answer) return answer.GetFailure();
      packets.push_back(*std::move(answer));
      const auto deadline =
          std::chrono::steady_clock::now() + std::chrono::milliseconds(limits.milliseconds);
      std::int64_t bytesLeft = limits.bytes;
      for (const Statement& statement : statements) {
        ++counters_.statements;
        auto packet = (*searcher)->QueryFenced(statement, deadline, bytesLeft);
        if (!packet) return packet.GetFailure();
        bytesLeft -= packet->Bytes();
        packets.push_back(*std::move(packet));
      }
      return packets;
    });
  }

  EngineAnswer<Done> RunScript(std::string_view script) override {
    const WriterTurn turn(queue_, LatestMoment());
    if (!turn.HasCome()) return EngineError{EngineErrorKind::Locked, "", "others are writing"};
    ++counters_.roundTrips;
    writer_->WaitNoLongerThan(longestWait_);
    auto answer = writer_->Run("begin immediate");
    if (answer) answer = writer_->Run(std::string(script));
    if (answer) answer = writer_->Run("commit");
    writer_->RollBack();
    return answer;
  }

 private:
  Moment LatestMoment() const { return std::chrono::steady_clock::now() + longestWait_; }

  EngineAnswer<std::unique_ptr<SqliteConnection>> Counted(const std::string& path, SqliteUse use) {
    auto connection = SqliteConnection::Open(path, use);
    if (connection) (*connection)->CountInto(counters_);
    return connection;
  }

  template <class Work>
  static std::invoke_result_t<Work> InSnapshot(SqliteConnection& connection, const Work& work) {
    const auto begun = connection.Execute({"begin", {}, {}});
    if (!begun) return begun.GetFailure();
    auto answer = work();
    if (!connection.Execute({"rollback", {}, {}})) connection.RollBack();
    return answer;
  }

  const std::chrono::milliseconds longestWait_;
  WriterQueue queue_;
  std::unique_ptr<SqliteConnection> writer_;
  ConnectionPool<SqliteConnection> readers_;
  ConnectionPool<SqliteConnection> searchers_;
};

}  // namespace

EngineAnswer<std::unique_ptr<Database>> OpenSqlite(const std::string& path,
                                                   std::chrono::milliseconds longestWait) {
  auto writer = SqliteConnection::Open(path, SqliteUse::Write);
  if (!writer) return writer.GetFailure();
  return std::unique_ptr<Database>(new SqliteDatabase(path, *std::move(writer), longestWait));
}

}  // namespace orvane::server
