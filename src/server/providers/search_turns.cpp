#include "server/providers/search_turns.h"

namespace orvane::server {
namespace {

/// Places that stay free when a user's second search begins.
constexpr int kReserve = 2;
/// Of one user; a screen asks for all that it needs in one call.
constexpr int kMostWaiting = 8;

}  // namespace

Answer<SearchTurns::Turn> SearchTurns::Take(const std::string& login) {
  std::unique_lock lock(mutex_);
  Asker& asker = askers_[login];
  if (asker.waiting == kMostWaiting) {
    return Refused("Предишните ви търсения още се изпълняват. Изчакайте ги и опитайте отново.");
  }
  ++asker.waiting;
  Waiting waiting{login};
  queue_.push_back(&waiting);
  Call();
  called_.wait(lock, [&] { return waiting.called; });
  return Turn(*this, login);
}

void SearchTurns::Leave(const std::string& login) {
  {
    const std::lock_guard lock(mutex_);
    ++free_;
    const auto asker = askers_.find(login);
    --asker->second.running;
    Call();
    if (asker->second.running == 0 && asker->second.waiting == 0) askers_.erase(asker);
  }
  called_.notify_all();
}

std::list<SearchTurns::Waiting*>::iterator SearchTurns::Next() {
  auto next = queue_.end();
  for (auto waiting = queue_.begin(); waiting != queue_.end(); ++waiting) {
    const Asker& asker = askers_[(*waiting)->login];
    if (asker.running > 0 && free_ <= kReserve) continue;
    if (next != queue_.end()) {
      const Asker& best = askers_[(*next)->login];
      if (std::pair(best.running, best.served) <= std::pair(asker.running, asker.served)) continue;
    }
    next = waiting;
  }
  return next;
}

void SearchTurns::Call() {
  while (free_ > 0) {
    const auto next = Next();
    if (next == queue_.end()) return;
    Asker& asker = askers_[(*next)->login];
    ++asker.running;
    --asker.waiting;
    asker.served = ++served_;
    --free_;
    (*next)->called = true;
    queue_.erase(next);
  }
}

}  // namespace orvane::server
