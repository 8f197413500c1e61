#include "pairs.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>
#include <vector>

namespace orvane::bench {
namespace {

bool& Missed() {
  static bool missed = false;
  return missed;
}

double Quartile(std::vector<double> values, std::size_t quarter) {
  std::ranges::sort(values);
  return values[(values.size() - 1) * quarter / 4];
}

void RunPair(benchmark::State& state, const std::string& name, double budget, const Timed& ours,
             const Timed& bare) {
  std::vector<double> ratios;
  double bareSeconds = 0;
  for ([[maybe_unused]] auto round : state) {
    const double mine = ours();
    const double theirs = bare();
    ratios.push_back(mine / theirs);
    bareSeconds += theirs;
    state.SetIterationTime(mine);
  }
  if (ratios.empty()) return;
  const double lower = Quartile(ratios, 1);
  state.counters["bare_ms"] = bareSeconds * 1000 / static_cast<double>(ratios.size());
  state.counters["ratio_q1"] = lower;
  state.counters["ratio_median"] = Quartile(ratios, 2);
  state.counters["budget"] = budget;
  if (lower <= budget) return;
  Missed() = true;
  std::fprintf(stderr, "%s: budget %.2f missed, lower quartile %.2f\n", name.c_str(), budget,
               lower);
}

}  // namespace

double Seconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double SecondsOnceNear(const std::function<void()>& work) {
  work();
  return Seconds(work);
}

void AddPair(const std::string& name, double budget, int rounds, Timed ours, Timed bare) {
  benchmark::RegisterBenchmark(
      name.c_str(), [name, budget, ours = std::move(ours), bare = std::move(bare)](
                        benchmark::State& state) { RunPair(state, name, budget, ours, bare); })
      ->UseManualTime()
      ->Iterations(rounds)
      ->Unit(benchmark::kMillisecond);
}

int RunPairs(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return Missed() ? 1 : 0;
}

}  // namespace orvane::bench
