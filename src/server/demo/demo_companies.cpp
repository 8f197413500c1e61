#include "server/demo/demo_companies.h"

#include <string>

namespace orvane::server {
namespace {

struct Kind {
  std::string_view name;
  void (*differ)(DemoOptions& options);  ///< from the demonstration
};
constexpr Kind kKinds[] = {
    {"", [](DemoOptions&) {}},
    {"one language", [](DemoOptions& options) { options.twoLanguages = false; }},
    {"lev", [](DemoOptions& options) { options.nationalCurrency = kLev; }},
    {"empty", [](DemoOptions& options) { options.documents = 0; }},
    {"two records", [](DemoOptions& options) { options.secondRecord = true; }},
    {"without parameters", [](DemoOptions& options) { options.settings = false; }},
};

}  // namespace

Answer<DemoOptions> DemoCompanyNamed(std::string_view name) {
  std::string names;
  for (const Kind& kind : kKinds) {
    if (kind.name == name) {
      DemoOptions options;
      kind.differ(options);
      return options;
    }
    if (!kind.name.empty()) names += (names.empty() ? "„" : ", „") + std::string(kind.name) + "“";
  }
  return Failure{FailureKind::Refused, "Няма дружество „" + std::string(name) +
                                           "“ за разходки. Има демонстрационно (без име), " +
                                           names + "."};
}

}  // namespace orvane::server
