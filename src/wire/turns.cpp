#include "wire/turns.h"

#include <algorithm>
#include <utility>

namespace orvane::wire {

Turns::~Turns() {
  std::map<std::string, std::deque<Waiting>> left;
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    left.swap(queues_);
    turns_.clear();
    waiting_ = 0;
  }
  given_.notify_all();
  for (auto& [asker, queue] : left) {
    for (Waiting& one : queue)
      one.task(false);
  }
  for (std::thread& thread : threads_)
    thread.join();
}

void Turns::Give(const std::string& asker, Task task) {
  if (Place(asker, task)) {
    given_.notify_one();
  } else {
    task(false);
  }
}

bool Turns::Place(const std::string& asker, Task& task) {
  const std::lock_guard lock(mutex_);
  if (stopped_ || waiting_ >= limits_.waiting) return false;
  std::deque<Waiting>& queue = queues_[asker];
  if (queue.size() >= limits_.waitingOfOne) return false;
  if (queue.empty()) turns_.push_back(asker);
  queue.push_back({std::move(task), std::chrono::steady_clock::now()});
  ++waiting_;
  const bool more = static_cast<std::size_t>(idle_) < waiting_;
  if (more && threads_.size() < static_cast<std::size_t>(limits_.threads)) {
    threads_.emplace_back([this] { Run(); });
  }
  return true;
}

void Turns::Run() {
  while (Task task = Next())
    task(true);
}

Turns::Task Turns::Next() {
  std::unique_lock lock(mutex_);
  ++idle_;
  given_.wait(lock, [&] { return stopped_ || !turns_.empty(); });
  --idle_;
  if (turns_.empty()) return {};
  const std::string asker = std::move(turns_.front());
  turns_.pop_front();
  std::deque<Waiting>& queue = queues_[asker];
  Task task = std::move(queue.front().task);
  queue.pop_front();
  --waiting_;
  if (queue.empty()) {
    queues_.erase(asker);
  } else {
    turns_.push_back(asker);
  }
  return task;
}

void Turns::TurnAwayLate() {
  std::vector<Task> late;
  {
    const std::lock_guard lock(mutex_);
    const Time oldest =
        std::chrono::steady_clock::now() - std::chrono::milliseconds(limits_.longestWaitMs);
    for (auto at = queues_.begin(); at != queues_.end();) {
      std::deque<Waiting>& queue = at->second;
      while (!queue.empty() && queue.front().since < oldest) {
        late.push_back(std::move(queue.front().task));
        queue.pop_front();
        --waiting_;
      }
      if (queue.empty()) {
        std::erase(turns_, at->first);
        at = queues_.erase(at);
      } else {
        ++at;
      }
    }
  }
  for (const Task& task : late)
    task(false);
}

}  // namespace orvane::wire
