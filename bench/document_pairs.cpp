#include "document_pairs.h"

#include <memory>
#include <utility>

namespace orvane::bench {

Pair LoadPair(Stage& stage, std::function<VariantArray(int round)> load,
              std::function<std::vector<BareStatement>(const VariantArray& told)> rowsOf) {
  const auto rows = std::make_shared<std::vector<BareStatement>>();
  const auto round = std::make_shared<int>(0);
  return {[rows, round, load = std::move(load), rowsOf = std::move(rowsOf)] {
            VariantArray told;
            load(++*round);
            const double seconds = Seconds([&] { told = load(*round); });
            auto found = rowsOf(told);
            if (!found.empty()) *rows = std::move(found);
            return seconds;
          },
          [&stage, rows] {
            stage.ByHand().Read(*rows);
            return Seconds([&] {
              stage.ByHand().Read(*rows);
              stage.Empty()();
            });
          }};
}

Pair PagePair(Stage& stage, std::function<void()> ask, BareStatement byHand) {
  const auto statement = std::make_shared<BareStatement>(std::move(byHand));
  return {[ask = std::move(ask)] { return Seconds(ask); },
          [&stage, statement] {
            return Seconds([&] { stage.ByHand().Read({statement.get(), 1}); });
          }};
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

}  // namespace orvane::bench
