#include "server/dialect/given_values.h"

#include <algorithm>
#include <utility>

namespace orvane::server::dialect {
namespace {

/// The condition with a constant, its part `at`, open.
ConditionPtr Opened(const ConditionPtr& condition, const OpenValue& open, std::size_t at = 1) {
  Condition made = *condition;
  Term constant = *made.parts[at];
  constant.open = open;
  made.parts[at] = Shared(std::move(constant));
  return Shared(std::move(made));
}

}  // namespace

GivenValues::GivenValues(int literals)
    : literals_(literals), uses_(static_cast<std::size_t>(literals)) {}

TermPtr GivenValues::MakeLiteral(Variant value, Place place, int number) {
  return Make(std::move(value), place, number);
}

TermPtr GivenValues::MakeParameter(Variant value, Place place, const std::string& name) {
  const auto found = std::ranges::find_if(
      parameters_, [&](const std::string& known) { return SameName(known, name); });
  const auto number = literals_ + static_cast<int>(found - parameters_.begin());
  if (found == parameters_.end()) {
    parameters_.push_back(name);
    uses_.emplace_back();
  }
  return Make(std::move(value), place, number);
}

TermPtr GivenValues::Make(Variant value, Place place, int number) {
  ++uses_[static_cast<std::size_t>(number)].made;
  Term term = *MakeConstant(std::move(value), place);
  term.open.given = number;
  return Shared(std::move(term));
}

ConditionPtr GivenValues::OpenCompare(const ConditionPtr& condition, const TermPtr& column,
                                      const Term& given) {
  if (!MayOpen(given) || condition->kind != ConditionKind::Compare) return condition;
  ++uses_[static_cast<std::size_t>(given.open.given)].open;
  const bool folded = condition->parts[0] != column;
  return Opened(condition,
                {given.open.given, OpenReading::Whole, column->type, folded, LikeKind::Exact});
}

ConditionPtr GivenValues::OpenLike(const ConditionPtr& condition, const Term& given, bool folded,
                                   const LikePattern& like) {
  // Beginnings that make no range are left as they are: they decide.
  const bool range = condition->kind == ConditionKind::And;
  if (!MayOpen(given) || range != (like.kind == LikeKind::Beginning)) return condition;
  ++uses_[static_cast<std::size_t>(given.open.given)].open;
  OpenValue open = {given.open.given, OpenReading::PatternText, ValueKind::Memo, folded,
                    like.kind,        !like.trigrams.empty()};
  const auto reading = [&open](OpenReading as) {
    open.reading = as;
    return open;
  };
  if (range) {
    Condition made = *condition;
    made.conditions[0] = Opened(made.conditions[0], open);
    made.conditions[1] = Opened(made.conditions[1], reading(OpenReading::PatternBound));
    return Shared(std::move(made));
  }
  ConditionPtr made = Opened(condition, open);
  if (!made->indexed) return made;
  made = Opened(made, reading(OpenReading::PatternLike), 2);
  return Opened(made, reading(OpenReading::PatternTrigrams), 3);
}

std::vector<bool> GivenValues::Open() const {
  std::vector<bool> open;
  for (const Use& use : uses_)
    open.push_back(use.made > 0 && use.made == use.open);
  return open;
}

}  // namespace orvane::server::dialect
