#pragma once

// Budgets are ratios: our way and the bare way run in turn, in one process, on the same data, so
// that a slow machine slows both. What reads next to nothing by hand still has to ask who is
// there, so beside the ratio a row may take as long as one transaction that does nothing else,
// measured in the same round. A budget is missed when even the lower quartile takes more.
//
//   int main(int argc, char** argv) {
//     AddPair("LoadSortFind/100000", 1.0, 15, &Ours, &Bare);
//     return RunPairs(argc, argv);
//   }
//
// Columns of the table: bare_ms, ratio_q1 and ratio_median, budget (a ratio), surplus_us (what we
// took beyond the budget times the bare run; below zero within it) and empty_us (what it may be).

#include <functional>
#include <string>

namespace orvane::bench {

/// Runs once and answers how long the part that counts took, in seconds.
using Timed = std::function<double()>;

/// Both sides of a comparison; what they share lives as long as they do. `empty` is a transaction
/// that only asks who is there; without one nothing is allowed beside the ratio.
struct Pair {
  Timed ours;
  Timed bare;
  Timed empty = {};
};

/// Registers a benchmark of `rounds` rounds.
void AddPair(const std::string& name, double budget, int rounds, Pair pair);

/// Runs what was registered; 1 when a budget was missed.
int RunPairs(int argc, char** argv);

/// Seconds that `work` takes.
double Seconds(const std::function<void()>& work);
/// The same of work that reads, done once before: whoever reads rows first pays for bringing them
/// near, and neither side of a pair shall.
double SecondsOnceNear(const std::function<void()>& work);

}  // namespace orvane::bench
