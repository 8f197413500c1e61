#include "server/dialect/typed.h"

#include <algorithm>
#include <utility>

namespace orvane::server::dialect {
namespace {

ConditionPtr Join(ConditionKind kind, std::vector<ConditionPtr> parts) {
  const Truth neutral = kind == ConditionKind::And ? Truth::True : Truth::False;
  const Truth decisive = kind == ConditionKind::And ? Truth::False : Truth::True;
  Condition joined;
  joined.kind = kind;
  bool unknown = false;
  for (ConditionPtr& part : parts) {
    if (Is(part, decisive)) return part;
    if (Is(part, neutral)) continue;
    if (Is(part, Truth::Unknown)) {
      unknown = true;
    } else if (part->kind == kind) {
      joined.conditions.insert(joined.conditions.end(), part->conditions.begin(),
                               part->conditions.end());
    } else {
      joined.conditions.push_back(std::move(part));
    }
  }
  if (joined.conditions.empty()) return MakeTruth(unknown ? Truth::Unknown : neutral);
  if (unknown) joined.conditions.push_back(MakeTruth(Truth::Unknown));
  if (joined.conditions.size() == 1) return joined.conditions.front();
  return Shared(std::move(joined));
}

bool SameList(const std::vector<TermPtr>& left, const std::vector<TermPtr>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const TermPtr& a, const TermPtr& b) { return SameTerm(*a, *b); });
}

bool SameCondition(const Condition& left, const Condition& right) {
  if (left.kind != right.kind || left.truth != right.truth || left.sign != right.sign ||
      left.select != right.select || !SameList(left.parts, right.parts)) {
    return false;
  }
  return std::equal(left.conditions.begin(), left.conditions.end(), right.conditions.begin(),
                    right.conditions.end(), [](const ConditionPtr& a, const ConditionPtr& b) {
                      return SameCondition(*a, *b);
                    });
}

std::optional<Variant> ConformDecimal(const Variant& value, int scale) {
  std::optional<Decimal> decimal = value.AsDecimal();
  if (!decimal) {
    const std::optional<double> real = value.AsDouble();
    if (real) decimal = Decimal::FromDouble(*real, scale);
  }
  if (!decimal) return std::nullopt;
  const std::optional<Decimal> scaled = decimal->AtScale(scale);
  return scaled ? std::optional<Variant>(*scaled) : std::nullopt;
}

std::optional<Date> ReadDay(const Variant& value, const TimeZone& zone) {
  if (const std::optional<Date> day = value.AsDate()) return day;
  if (const std::optional<Stamp> stamp = value.AsStamp()) return zone.DayOf(*stamp);
  const std::string* text = value.AsString();
  return text != nullptr ? Date::Parse(*text) : std::nullopt;
}

/// Of a Term or a Condition.
template <class Node>
std::size_t WeightOfParts(const Node& node) {
  std::size_t weight = node.select ? WeightOf(*node.select) : 0;
  for (const TermPtr& part : node.parts)
    weight += part->weight;
  for (const ConditionPtr& part : node.conditions)
    weight += part->weight;
  return weight;
}

template <class T>
std::optional<Variant> Wrapped(const std::optional<T>& value) {
  return value ? std::optional<Variant>(Variant(*value)) : std::nullopt;
}

}  // namespace

TermPtr Shared(Term term) {
  constexpr std::size_t kOfAny = 24;
  constexpr std::size_t kOfSum = 180;
  const bool sum = term.kind == TermKind::Add || term.kind == TermKind::Subtract;
  term.weight = (sum ? kOfSum : kOfAny) + WeightOfParts(term);
  if (term.kind == TermKind::Column) {
    term.weight += std::max(term.column->name.size(), term.column->expression.size());
  }
  return std::make_shared<const Term>(std::move(term));
}

ConditionPtr Shared(Condition condition) {
  constexpr std::size_t kOfAny = 8;
  condition.weight = kOfAny + WeightOfParts(condition);
  return std::make_shared<const Condition>(std::move(condition));
}

std::size_t WeightOf(const TypedSelect& select) {
  constexpr std::size_t kOfTable = 40;
  std::size_t weight = select.where->weight;
  for (const TypedTable& table : select.tables) {
    weight += kOfTable + table.table->stored.size() + table.predicate.text.size();
    if (table.on) weight += table.on->weight;
  }
  for (const TypedItem& item : select.items)
    weight += item.value->weight;
  for (const TypedOrder& order : select.order)
    weight += order.value->weight;
  return weight;
}

TermPtr MakeConstant(Variant value, Place place) {
  Term term;
  term.mayBeNull = value.IsNull();
  term.value = std::move(value);
  term.place = place;
  return Shared(std::move(term));
}

TermPtr MakeTyped(Variant value, ValueKind type, std::uint16_t size) {
  Term term;
  term.typed = true;
  term.type = type;
  term.size = size;
  term.mayBeNull = value.IsNull();
  term.value = std::move(value);
  return Shared(std::move(term));
}

TermPtr MakeColumn(int table, const CatalogueColumn& column, bool optional) {
  Term term;
  term.kind = TermKind::Column;
  term.typed = true;
  term.type = column.kind;
  term.size = column.size;
  term.mayBeNull = optional || column.MayBeNull();
  term.optional = optional;
  term.table = table;
  term.column = &column;
  return Shared(std::move(term));
}

bool IsText(const Term& term) {
  if (!term.typed) return term.value.AsString() != nullptr;
  return term.type == ValueKind::String || term.type == ValueKind::Memo;
}

bool SameTerm(const Term& left, const Term& right) {
  if (&left == &right) return true;
  return left.kind == right.kind && left.type == right.type && left.size == right.size &&
         left.value == right.value && left.table == right.table && left.column == right.column &&
         left.folded == right.folded && left.select == right.select &&
         SameList(left.parts, right.parts) &&
         std::equal(left.conditions.begin(), left.conditions.end(), right.conditions.begin(),
                    right.conditions.end(), [](const ConditionPtr& a, const ConditionPtr& b) {
                      return SameCondition(*a, *b);
                    });
}

std::optional<Variant> Conform(const Variant& value, ValueKind type, const TimeZone& zone) {
  if (value.IsNull()) return value;
  switch (type) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
    case ValueKind::Code:
      return Wrapped(value.AsInt());
    case ValueKind::Amount:
    case ValueKind::Rate:
      return ConformDecimal(value, RowOf(type).scale);
    case ValueKind::Double:
      return Wrapped(value.AsDouble());
    case ValueKind::Date:
      return Wrapped(ReadDay(value, zone));
    case ValueKind::Stamp: {
      if (value.AsStamp()) return value;
      const std::optional<Date> day = ReadDay(value, zone);
      return day ? std::optional<Variant>(zone.At(*day, 0, 0)) : std::nullopt;
    }
    case ValueKind::String:
    case ValueKind::Memo:
      return value.AsString() != nullptr ? std::optional<Variant>(value) : std::nullopt;
  }
  return std::nullopt;
}

ConditionPtr MakeTruth(Truth truth) {
  Condition condition;
  condition.truth = truth;
  return Shared(std::move(condition));
}

ConditionPtr MakeCompare(TermPtr left, std::string sign, TermPtr right) {
  Condition condition;
  condition.kind = ConditionKind::Compare;
  condition.sign = std::move(sign);
  condition.parts = {std::move(left), std::move(right)};
  return Shared(std::move(condition));
}

ConditionPtr MakeAnd(std::vector<ConditionPtr> parts) {
  return Join(ConditionKind::And, std::move(parts));
}

ConditionPtr MakeOr(std::vector<ConditionPtr> parts) {
  return Join(ConditionKind::Or, std::move(parts));
}

ConditionPtr MakeNot(ConditionPtr condition) {
  if (condition->kind == ConditionKind::Constant) {
    switch (condition->truth) {
      case Truth::False:
        return MakeTruth(Truth::True);
      case Truth::True:
        return MakeTruth(Truth::False);
      case Truth::Unknown:
        return condition;
    }
  }
  if (condition->kind == ConditionKind::Not) return condition->conditions.front();
  Condition negated;
  negated.kind = ConditionKind::Not;
  negated.conditions.push_back(std::move(condition));
  return Shared(std::move(negated));
}

ConditionPtr AsFilter(const ConditionPtr& condition) {
  if (Is(condition, Truth::Unknown)) return MakeTruth(Truth::False);
  if (condition->kind != ConditionKind::And && condition->kind != ConditionKind::Or) {
    return condition;
  }
  std::vector<ConditionPtr> parts;
  for (const ConditionPtr& part : condition->conditions)
    parts.push_back(AsFilter(part));
  return Join(condition->kind, std::move(parts));
}

bool Is(const ConditionPtr& condition, Truth truth) {
  return condition->kind == ConditionKind::Constant && condition->truth == truth;
}

std::vector<ConditionPtr> Conjuncts(const ConditionPtr& condition) {
  if (!condition || Is(condition, Truth::True)) return {};
  if (condition->kind == ConditionKind::And) return condition->conditions;
  return {condition};
}

}  // namespace orvane::server::dialect
