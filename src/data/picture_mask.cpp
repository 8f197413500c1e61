#include "data/picture_mask.h"

#include <cassert>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace orvane::data {
namespace {

// --- characters
// -----------------------------------------------------------------------------------

/// Code points of UTF-8; a byte that begins none stands for itself.
std::u32string CodePoints(std::string_view text) {
  std::u32string points;
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i++]);
    const int following = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    char32_t point = following == 0 ? byte : byte & (0x3Fu >> following);
    for (int n = 0; n < following && i < text.size(); ++n)
      point = point << 6 | (static_cast<unsigned char>(text[i++]) & 0x3Fu);
    points += point;
  }
  return points;
}

bool IsDigit(char32_t c) {
  return c >= U'0' && c <= U'9';
}

/// Latin with its accents, Greek and Cyrillic.
bool IsLetter(char32_t c) {
  if ((c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z')) return true;
  if (c == U'×' || c == U'÷') return false;
  return (c >= 0xC0 && c <= 0x24F) || (c >= 0x386 && c <= 0x52F);
}

// --- the mask as a tree
// ---------------------------------------------------------------------------

enum class NodeKind {
  Exactly,
  DecimalMark,
  Digit,
  Letter,
  Any,
  Sequence,
  Choice,
  Optional,
  Repeat
};

struct Node {
  NodeKind kind = NodeKind::Sequence;
  char32_t character = 0;
  int times = 0;  // of Repeat; 0 is without end
  std::vector<Node> parts = {};
};

class MaskReader {
 public:
  explicit MaskReader(std::string_view mask) : mask_(CodePoints(mask)) {}

  Node Read() {
    Node all = ReadSequence(U"");
    assert(at_ == mask_.size() && "a bracket of the mask is closed that was not opened");
    return all;
  }

 private:
  bool AtOneOf(std::u32string_view characters) const {
    return at_ < mask_.size() && characters.find(mask_[at_]) != std::u32string_view::npos;
  }

  char32_t Take() {
    assert(at_ < mask_.size() && "the mask ends too early");
    return mask_[at_++];
  }

  void Expect(char32_t character) {
    [[maybe_unused]] const char32_t taken = Take();
    assert(taken == character && "a bracket of the mask is not closed");
  }

  Node ReadSequence(std::u32string_view ends) {
    Node sequence;
    while (at_ < mask_.size() && !AtOneOf(ends) && !AtOneOf(U"]}"))
      sequence.parts.push_back(ReadElement());
    return sequence;
  }

  Node ReadElement() {
    const char32_t character = Take();
    switch (character) {
      case U'{':
        return ReadChoice();
      case U'[': {
        Node optional{NodeKind::Optional, 0, 0, {ReadSequence(U"]")}};
        Expect(U']');
        return optional;
      }
      case U'*':
        return ReadRepeat();
      case U';': {
        const char32_t escaped = Take();
        return {escaped == U'.' ? NodeKind::DecimalMark : NodeKind::Exactly, escaped};
      }
      case U'#':
        return {NodeKind::Digit};
      case U'?':
        return {NodeKind::Letter};
      case U'@':
        return {NodeKind::Any};
      default:
        return {NodeKind::Exactly, character};
    }
  }

  Node ReadChoice() {
    Node choice{NodeKind::Choice};
    choice.parts.push_back(ReadSequence(U",}"));
    while (AtOneOf(U",")) {
      Take();
      choice.parts.push_back(ReadSequence(U",}"));
    }
    Expect(U'}');
    return choice;
  }

  Node ReadRepeat() {
    Node repeat{NodeKind::Repeat};
    while (at_ < mask_.size() && IsDigit(mask_[at_]))
      repeat.times = repeat.times * 10 + static_cast<int>(Take() - U'0');
    repeat.parts.push_back(ReadElement());
    return repeat;
  }

  std::u32string mask_;
  std::size_t at_ = 0;
};

// --- the mask as steps
// ----------------------------------------------------------------------------

enum class StepKind { Exactly, DecimalMark, Digit, Letter, Any, Jump, Fork, End };

struct Step {
  StepKind kind = StepKind::End;
  char32_t character = 0;
  std::size_t next = 0;   // of Jump and Fork
  std::size_t other = 0;  // of Fork
};

bool Takes(const Step& step, char32_t character) {
  switch (step.kind) {
    case StepKind::Exactly:
      return character == step.character;
    case StepKind::DecimalMark:
      return character == U'.' || character == U',';
    case StepKind::Digit:
      return IsDigit(character);
    case StepKind::Letter:
      return IsLetter(character);
    case StepKind::Any:
      return true;
    case StepKind::Jump:
    case StepKind::Fork:
    case StepKind::End:
      return false;
  }
  return false;
}

class StepWriter {
 public:
  std::vector<Step> Write(const Node& mask) {
    Add(mask);
    steps_.push_back({StepKind::End});
    return std::move(steps_);
  }

 private:
  void Add(const Node& node) {
    switch (node.kind) {
      case NodeKind::Exactly:
        return steps_.push_back({StepKind::Exactly, node.character});
      case NodeKind::DecimalMark:
        return steps_.push_back({StepKind::DecimalMark});
      case NodeKind::Digit:
        return steps_.push_back({StepKind::Digit});
      case NodeKind::Letter:
        return steps_.push_back({StepKind::Letter});
      case NodeKind::Any:
        return steps_.push_back({StepKind::Any});
      case NodeKind::Sequence:
        for (const Node& part : node.parts)
          Add(part);
        return;
      case NodeKind::Choice:
        return AddChoice(node);
      case NodeKind::Optional: {
        const std::size_t fork = AddFork();
        Add(node.parts.front());
        steps_[fork].other = steps_.size();
        return;
      }
      case NodeKind::Repeat:
        return AddRepeat(node);
    }
  }

  /// A fork whose first way is the step behind it; the other is set later.
  std::size_t AddFork() {
    const std::size_t fork = steps_.size();
    steps_.push_back({StepKind::Fork, 0, fork + 1, 0});
    return fork;
  }

  void AddChoice(const Node& choice) {
    std::vector<std::size_t> jumps;
    for (std::size_t i = 0; i + 1 < choice.parts.size(); ++i) {
      const std::size_t fork = AddFork();
      Add(choice.parts[i]);
      jumps.push_back(steps_.size());
      steps_.push_back({StepKind::Jump});
      steps_[fork].other = steps_.size();
    }
    Add(choice.parts.back());
    for (const std::size_t jump : jumps)
      steps_[jump].next = steps_.size();
  }

  void AddRepeat(const Node& repeat) {
    if (repeat.times > 0) {
      for (int i = 0; i < repeat.times; ++i)
        Add(repeat.parts.front());
      return;
    }
    const std::size_t fork = AddFork();
    Add(repeat.parts.front());
    steps_.push_back({StepKind::Jump, 0, fork, 0});
    steps_[fork].other = steps_.size();
  }

  std::vector<Step> steps_;
};

/// The steps that can be reached without taking a character, each once.
class Reached {
 public:
  explicit Reached(const std::vector<Step>& steps) : steps_(steps), seen_(steps.size()) {}

  void Add(std::size_t step) {
    if (seen_[step]) return;
    seen_[step] = true;
    const Step& what = steps_[step];
    if (what.kind == StepKind::Jump || what.kind == StepKind::Fork) Add(what.next);
    if (what.kind == StepKind::Fork) Add(what.other);
    if (what.kind != StepKind::Jump && what.kind != StepKind::Fork) waiting_.push_back(step);
  }

  const std::vector<std::size_t>& Waiting() const { return waiting_; }

 private:
  const std::vector<Step>& steps_;
  std::vector<bool> seen_;
  std::vector<std::size_t> waiting_;
};

}  // namespace

struct PictureMask::Program {
  std::vector<Step> steps;
};

PictureMask::PictureMask(std::string_view mask) {
  if (mask.empty()) return;
  program_ = std::make_shared<const Program>(Program{StepWriter().Write(MaskReader(mask).Read())});
}

PictureMask::~PictureMask() = default;
PictureMask::PictureMask(const PictureMask&) = default;
PictureMask& PictureMask::operator=(const PictureMask&) = default;

MaskMatch PictureMask::Match(std::string_view text) const {
  if (program_ == nullptr) return MaskMatch::Complete;
  const std::vector<Step>& steps = program_->steps;
  Reached now(steps);
  now.Add(0);
  std::vector<std::size_t> waiting = now.Waiting();
  for (const char32_t character : CodePoints(text)) {
    Reached next(steps);
    for (const std::size_t step : waiting) {
      if (Takes(steps[step], character)) next.Add(step + 1);
    }
    waiting = next.Waiting();
  }
  if (waiting.empty()) return MaskMatch::Impossible;
  for (const std::size_t step : waiting) {
    if (steps[step].kind == StepKind::End) return MaskMatch::Complete;
  }
  return MaskMatch::Beginning;
}

}  // namespace orvane::data
