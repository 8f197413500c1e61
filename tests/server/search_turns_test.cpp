// Whose search is next.

#include "server/providers/search_turns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <list>
#include <optional>
#include <thread>

namespace orvane::server {
namespace {

/// One user's search in a thread of its own; notes its name when its turn comes.
class Searcher {
 public:
  Searcher(SearchTurns& turns, const std::string& login)
      : thread_([this, &turns, login] {
          turn_.emplace(turns.Take(login));
          began_ = true;
        }) {}
  ~Searcher() { End(); }

  bool Began() const { return began_; }
  bool WasRefused() const { return began_ && !*turn_; }
  /// Waits for the turn and ends it.
  void End() {
    if (thread_.joinable()) thread_.join();
    turn_.reset();
  }

 private:
  std::optional<Answer<SearchTurns::Turn>> turn_;
  std::atomic<bool> began_{false};
  std::thread thread_;
};

TEST(SearchTurns, EightWaitingOfOneUserHoldUpNobodyElse) {
  SearchTurns turns(4);
  std::optional<Answer<SearchTurns::Turn>> first, second;
  first.emplace(turns.Take("many"));
  second.emplace(turns.Take("many"));
  std::list<Searcher> waiting;
  for (int i = 0; i < 9; ++i)
    waiting.emplace_back(turns, "many");
  const auto refused = [&] { return std::ranges::count_if(waiting, &Searcher::WasRefused); };
  while (refused() == 0)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  for (const char* other : {"one", "two", "one"})
    EXPECT_TRUE(turns.Take(other)) << "served at once";
  EXPECT_EQ(std::ranges::count_if(waiting, &Searcher::Began), 1) << "the one that was refused";
  first.reset();
  second.reset();
  while (!waiting.empty()) {  // in the order in which they were called, not in which they began
    const auto called = std::ranges::find_if(waiting, &Searcher::Began);
    if (called != waiting.end()) {
      waiting.erase(called);
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
}

TEST(SearchTurns, OneOfEachBesideAReserve) {
  SearchTurns turns(4);
  std::optional<Answer<SearchTurns::Turn>> many, further, one, two;
  many.emplace(turns.Take("many"));
  further.emplace(turns.Take("many"));  // two places are still free
  Searcher third(turns, "many");
  one.emplace(turns.Take("one"));
  two.emplace(turns.Take("two"));
  EXPECT_FALSE(third.Began()) << "others do not wait for him";
  {
    Searcher last(turns, "three");
    one.reset();
    last.End();  // the place goes to who has none, not to who waits longest
    EXPECT_FALSE(third.Began());
  }
  many.reset();
  further.reset();
  third.End();
  EXPECT_TRUE(third.Began());
}

}  // namespace
}  // namespace orvane::server
