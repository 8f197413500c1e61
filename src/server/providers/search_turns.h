#pragma once

// Who searches next. An engine runs few searches at once; whoever asks for many, or for dear ones,
// waits for his own and not the others for him: each user has one running search, and a further one
// only while others still find free places beside it. Among those who wait the user whose last
// search began longest ago goes first.
//
//   auto turn = turns.Take(login);
//   if (!turn) return turn.GetFailure();
//   … search; the turn ends with `turn`

#include <condition_variable>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "packet/failure.h"

namespace orvane::server {

/// Thread-safe.
class SearchTurns {
 public:
  explicit SearchTurns(int places) : free_(places) {}

  class Turn {
   public:
    Turn(SearchTurns& turns, std::string login) : turns_(&turns), login_(std::move(login)) {}
    Turn(Turn&& other) noexcept
        : turns_(std::exchange(other.turns_, nullptr)), login_(std::move(other.login_)) {}
    Turn& operator=(Turn&&) = delete;
    ~Turn() {
      if (turns_) turns_->Leave(login_);
    }

   private:
    SearchTurns* turns_;
    std::string login_;
  };

  /// Waits for the user's turn. Refused when too many of his searches wait already: each of them
  /// holds a thread of the server.
  Answer<Turn> Take(const std::string& login);

 private:
  struct Asker {
    int running = 0;
    int waiting = 0;
    std::int64_t served = 0;  ///< when the last of his searches began, in searches
  };
  struct Waiting {
    const std::string& login;
    bool called = false;
  };

  void Leave(const std::string& login);
  /// Calls those who may go; the mutex is held.
  void Call();
  std::list<Waiting*>::iterator Next();

  std::mutex mutex_;
  std::condition_variable called_;
  int free_;
  std::int64_t served_ = 0;
  std::list<Waiting*> queue_;
  std::map<std::string, Asker> askers_;
};

}  // namespace orvane::server
