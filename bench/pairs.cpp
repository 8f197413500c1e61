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

/// What the rounds of a row measured, in seconds.
struct Rounds {
  std::vector<double> ratios;
  std::vector<double> bare;
  std::vector<double> empty;
  std::vector<double> surplus;  ///< beyond the budget times the bare run
  std::vector<double> used;     ///< of what the budget and an empty transaction allow, a ratio
};

void Tell(benchmark::State& state, const std::string& name, double budget, const Rounds& rounds) {
  constexpr double kMicros = 1e6;
  const double ratio = Quartile(rounds.ratios, 1);
  const double surplus = Quartile(rounds.surplus, 1) * kMicros;
  const double empty = Quartile(rounds.empty, 2) * kMicros;
  state.counters["bare_ms"] = Quartile(rounds.bare, 2) * 1000;
  state.counters["ratio_q1"] = ratio;
  state.counters["ratio_median"] = Quartile(rounds.ratios, 2);
  state.counters["budget"] = budget;
  state.counters["surplus_us"] = surplus;
  state.counters["empty_us"] = empty;
  if (Quartile(rounds.used, 1) <= 1) return;
  Missed() = true;
  std::fprintf(stderr, "%s: budget %.2f missed, lower quartile %.2f, %.0f us beyond it for %.0f\n",
               name.c_str(), budget, ratio, surplus, empty);
}

void RunPair(benchmark::State& state, const std::string& name, double budget, const Pair& pair) {
  Rounds rounds;
  for ([[maybe_unused]] auto round : state) {
    const double mine = pair.ours();
    const double theirs = pair.bare();
    const double empty = pair.empty ? pair.empty() : 0;
    rounds.ratios.push_back(mine / theirs);
    rounds.bare.push_back(theirs);
    rounds.empty.push_back(empty);
    rounds.surplus.push_back(mine - budget * theirs);
    rounds.used.push_back(mine / (budget * theirs + empty));
    state.SetIterationTime(mine);
  }
  if (!rounds.ratios.empty()) Tell(state, name, budget, rounds);
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

void AddPair(const std::string& name, double budget, int rounds, Pair pair) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [name, budget, pair = std::move(pair)](benchmark::State& state) {
                                 RunPair(state, name, budget, pair);
                               })
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
