#include "document_pairs.h"

#include <spdlog/spdlog.h>

#include <memory>
#include <utility>

namespace orvane::bench {

Pair LoadPair(Stage& stage, std::function<VariantArray(int round)> load,
              std::function<std::vector<BareStatement>(const VariantArray& told)> rowsOf) {
  const auto rows = std::make_shared<std::vector<BareStatement>>();
  const auto round = std::make_shared<int>(0);
  return {[rows, round, load = std::move(load), rowsOf = std::move(rowsOf)] {
            VariantArray told;
            ++*round;
            const double seconds = SecondsOnceNear([&] { told = load(*round); });
            auto found = rowsOf(told);
            if (!found.empty()) *rows = std::move(found);
            return seconds;
          },
          [&stage, rows] {
            return SecondsOnceNear([&] {
              stage.ByHand().Read(*rows);
              stage.Empty()();
            });
          },
          stage.EmptyTransaction()};
}

Pair PagePair(Stage& stage, std::function<void()> ask, BareStatement byHand) {
  const auto statement = std::make_shared<BareStatement>(std::move(byHand));
  return {[ask = std::move(ask)] { return Seconds(ask); },
          [&stage, statement] {
            return Seconds([&] { stage.ByHand().Read({statement.get(), 1}); });
          },
          stage.EmptyTransaction()};
}

Timed WriteByHand(Stage& stage, std::function<std::vector<BareStatement>()> writes) {
  return [&stage, writes = std::move(writes)] {
    const auto statements = writes();
    return Seconds([&] {
      stage.ByHand().Write(statements);
      stage.Empty()();
      stage.Empty()();
    });
  };
}

int RunDocumentBench(const DocumentBench& bench, int argc, char** argv) {
  constexpr double kPageBudget = 1.3;
  constexpr int kPageRounds = 61;
  spdlog::set_level(spdlog::level::warn);
  std::vector<std::unique_ptr<Stage>> stages;
  for (const Engine engine : EnginesAtHand()) {
    for (const std::int64_t size : SizesAsked()) {
      stages.push_back(std::make_unique<Stage>(bench.open(engine, size)));
      Stage& stage = *stages.back();
      const std::string company = "/" + stage.Company().Name();
      for (const BenchRow& row : bench.rows) {
        const Pair pair = row.make(stage);
        AddPair(std::string(row.name) + company, row.budget, row.rounds, pair);
      }
      for (const NamedPair& page : bench.pages(stage))
        AddPair(page.name + company, kPageBudget, kPageRounds, page.pair);
    }
  }
  return RunPairs(argc, argv);
}

}  // namespace orvane::bench
