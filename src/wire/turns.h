#pragma once

// Threads that work on tasks, and those that wait for one. Whoever gave much waits behind himself
// and not in front of others: the askers take turns.
//
//   Turns turns({.threads = 64, .waiting = 256, .waitingOfOne = 64, .longestWaitMs = 2'000});
//   turns.Give(ticket, [](bool inTime) { … });      // false: turned away, nothing may be done
//   turns.TurnAwayLate();                           // now and then, from some other thread

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvane::wire {

struct TurnLimits {
  int threads = 1;
  std::size_t waiting = 64;       ///< tasks that wait, of all askers
  std::size_t waitingOfOne = 16;  ///< of one asker
  int longestWaitMs = 2'000;
};

/// Thread-safe. Its destructor turns away who waits and lets the running tasks end.
class Turns {
 public:
  using Task = std::function<void(bool inTime)>;

  explicit Turns(TurnLimits limits) : limits_(limits) {}
  ~Turns();
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

  /// Calls the task once, on a thread of this object; on the caller's when it is turned away.
  void Give(const std::string& asker, Task task);
  /// Turns away who waited too long.
  void TurnAwayLate();

 private:
  using Time = std::chrono::steady_clock::time_point;
  struct Waiting {
    Task task;
    Time since;
  };

  bool Place(const std::string& asker, Task& task);
  void Run();
  Task Next();

  const TurnLimits limits_;
  std::mutex mutex_;
  std::condition_variable given_;
  std::map<std::string, std::deque<Waiting>> queues_;  ///< none of them empty
  std::deque<std::string> turns_;                      ///< every asker of queues_ once
  std::size_t waiting_ = 0;
  int idle_ = 0;
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace orvane::wire
