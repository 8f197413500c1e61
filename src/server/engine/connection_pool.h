#pragma once

// Connections that are opened when they are first needed and lent to one thread at a time.
//
//   ConnectionPool<SqliteConnection> readers(4, [&] { return SqliteConnection::Open(path); });
//   auto lent = readers.Lend(deadline);
//   if (!lent) return lent.GetFailure();
//   (*lent)->Query(statement);          // given back when `lent` goes

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "server/engine/database.h"

namespace orvane::server {

template <class Connection>
class ConnectionPool {
 public:
  using Open = std::function<EngineAnswer<std::unique_ptr<Connection>>()>;

  ConnectionPool(int size, Open open) : free_(size), open_(std::move(open)) {}

  /// A connection on loan. Movable; gives the connection back when destroyed.
  class Loan {
   public:
    Loan(ConnectionPool& pool, std::unique_ptr<Connection> connection)
        : pool_(&pool), connection_(std::move(connection)) {}
    Loan(Loan&& other) noexcept = default;
    Loan& operator=(Loan&&) = delete;
    ~Loan() {
      if (connection_) pool_->TakeBack(std::move(connection_));
    }
    /// Puts a newly opened connection in place of one that broke.
    EngineAnswer<Done> Renew() {
      auto opened = pool_->open_();
      if (!opened) return opened.GetFailure();
      connection_ = *std::move(opened);
      return Done{};
    }
    Connection* operator->() const { return connection_.get(); }
    Connection& operator*() const { return *connection_; }

   private:
    ConnectionPool* pool_;
    std::unique_ptr<Connection> connection_;
  };

  /// Waits until a connection is free. The failure is that of opening one, or that none came free.
  EngineAnswer<Loan> Lend(std::chrono::steady_clock::time_point deadline) {
    std::unique_ptr<Connection> connection;
    {
      std::unique_lock lock(mutex_);
      if (!freed_.wait_until(lock, deadline, [&] { return free_ > 0; })) {
        return EngineError{EngineErrorKind::Late, "", "no connection came free in time"};
      }
      --free_;
      if (!idle_.empty()) {
        connection = std::move(idle_.back());
        idle_.pop_back();
      }
    }
    if (connection) return Loan(*this, std::move(connection));
    auto opened = open_();
    if (opened) return Loan(*this, *std::move(opened));
    Free(nullptr);
    return opened.GetFailure();
  }

 private:
  void TakeBack(std::unique_ptr<Connection> connection) {
    if (connection->IsBroken()) connection.reset();
    Free(std::move(connection));
  }

  void Free(std::unique_ptr<Connection> connection) {
    {
      const std::lock_guard lock(mutex_);
      ++free_;
      if (connection) idle_.push_back(std::move(connection));
    }
    freed_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable freed_;
  int free_;
  std::vector<std::unique_ptr<Connection>> idle_;
  Open open_;
};

}  // namespace orvane::server
