#pragma once

// Comparisons that every kind of document makes alike: a load, a move, a page.

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bare/bare.h"
#include "pairs.h"
#include "stage.h"

namespace orvane::bench {

struct BenchRow {
  std::string_view name;
  double budget;
  int rounds;
  Pair (*make)(Stage&);
};

/// Our load over loopback, and by hand the rows of what it found with an empty call. `rowsOf` reads
/// the answer; it answers nothing when nothing was found, and the former rows are read again.
Pair LoadPair(Stage& stage, std::function<VariantArray(int round)> load,
              std::function<std::vector<BareStatement>(const VariantArray& told)> rowsOf);

/// A list's page in-process, and its statement by hand.
Pair PagePair(Stage& stage, std::function<void()> ask, BareStatement byHand);

/// The two empty calls of a screen's post, and the writes by hand.
Timed WriteByHand(Stage& stage, std::function<std::vector<BareStatement>()> writes);

struct NamedPair {
  std::string name;
  Pair pair;
};

/// A benchmark of documents: on every engine at hand and a company of every size asked for, the
/// rows of the table, and the pages of the documents' report.
struct DocumentBench {
  BenchCompany (*open)(Engine engine, std::int64_t documents);
  std::span<const BenchRow> rows;
  std::vector<NamedPair> (*pages)(Stage& stage);
};

/// Its exit code: 1 when a budget was missed.
int RunDocumentBench(const DocumentBench& bench, int argc, char** argv);

}  // namespace orvane::bench
