#pragma once

// Budgets are ratios: our way and the bare way run in turn, in one process, on the same data, so
// that a slow machine slows both. A budget is missed when the lower quartile of the ratios is above
// it.
//
//   int main(int argc, char** argv) {
//     AddPair("LoadSortFind/100000", 1.0, 15, &Ours, &Bare);
//     return RunPairs(argc, argv);
//   }

#include <functional>
#include <string>

namespace orvane::bench {

/// Runs once and answers how long the part that counts took, in seconds.
using Timed = std::function<double()>;

/// Registers a benchmark of `rounds` pairs.
void AddPair(const std::string& name, double budget, int rounds, Timed ours, Timed bare);

/// Runs what was registered; 1 when a budget was missed.
int RunPairs(int argc, char** argv);

/// Seconds that `work` takes.
double Seconds(const std::function<void()>& work);
/// The same of work that reads, done once before: whoever reads rows first pays for bringing them
/// near, and neither side of a pair shall.
double SecondsOnceNear(const std::function<void()>& work);

}  // namespace orvane::bench
