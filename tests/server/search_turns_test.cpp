// Whose search is next.

#include "server/providers/search_turns.h"

#include <gtest/gtest.h>

#include <atomic>
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
