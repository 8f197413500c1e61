#include "host/walk/walk_script.h"

#include <optional>

#include "packet/fold.h"

namespace orvane::host {
namespace {

/// The word in quotes that begins at `at`, which moves behind it; a quote in it stands behind a
/// backslash. Empty when the quote is not closed.
std::optional<std::string> CutQuoted(std::string_view line, std::size_t& at) {
  std::string word;
  for (std::size_t i = at + 1; i < line.size(); ++i) {
    if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '"') {
      word += line[++i];
      continue;
    }
    if (line[i] == '"') {
      at = i + 1;
      return word;
    }
    word += line[i];
  }
  return std::nullopt;
}

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
      std::optional<std::string> word = CutQuoted(line, at);
      if (!word) return std::nullopt;
      words.push_back(*std::move(word));
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

std::string CompanyOfWalk(const std::vector<WalkStep>& steps) {
  std::string name;
  if (steps.empty() || steps.front().words.front() != "company") return name;
  for (std::size_t i = 1; i < steps.front().words.size(); ++i)
    name += (i == 1 ? "" : " ") + steps.front().words[i];
  return name;
}

}  // namespace orvane::host
