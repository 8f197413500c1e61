#include "host/walk/walk_script.h"

#include <optional>

#include "packet/fold.h"

namespace orvane {
namespace {

/// Words of one line; empty when a quote is not closed.
std::optional<std::vector<std::string>> CutWords(std::string_view line) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while (at < line.size()) {
    const char next = line[at];
    if (next == ' ' || next == '\t' || next == '\r') {
      ++at;
      continue;
    }
    if (next == '#') break;
    if (next == '"') {
      const std::size_t end = line.find('"', at + 1);
      if (end == std::string_view::npos) return std::nullopt;
      words.emplace_back(line.substr(at + 1, end - at - 1));
      at = end + 1;
      continue;
    }
    const std::size_t end = line.find_first_of(" \t\r#", at);
    words.emplace_back(line.substr(at, end - at));
    at = end == std::string_view::npos ? line.size() : end;
  }
  return words;
}

}  // namespace

Answer<std::vector<WalkStep>> ParseWalk(std::string_view text) {
  std::vector<WalkStep> steps;
  int number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    ++number;
    std::optional<std::vector<std::string>> words = CutWords(line);
    if (!words) {
      return Failure{FailureKind::Refused,
                     "Ред " + std::to_string(number) + ": кавичките не са затворени."};
    }
    if (!words->empty()) {
      steps.push_back({number, std::move(*words), std::string(Trim(line))});
    }
  }
  return steps;
}

}  // namespace orvane
