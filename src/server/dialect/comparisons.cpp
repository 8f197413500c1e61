#include "server/dialect/comparisons.h"

#include <algorithm>
#include <utility>

#include "packet/fold.h"

namespace orvane::server::dialect {
namespace {

bool Holds(int order, const std::string& sign) {
  if (sign == "=") return order == 0;
  if (sign == "<>") return order != 0;
  if (sign == "<") return order < 0;
  if (sign == ">") return order > 0;
  if (sign == "<=") return order <= 0;
  return order >= 0;
}

std::string Turned(const std::string& sign) {
  if (sign == "<") return ">";
  if (sign == ">") return "<";
  if (sign == "<=") return ">=";
  if (sign == ">=") return "<=";
  return sign;
}

ConditionPtr Decided(int order, const std::string& sign) {
  return MakeTruth(Holds(order, sign) ? Truth::True : Truth::False);
}

/// The kind in which two constants meet: a text is read as what the other one is.
ValueKind Meeting(const Variant& left, const Variant& right) {
  const ValueKind a = OwnKind(left);
  const ValueKind b = OwnKind(right);
  if (a == ValueKind::Memo) return b;
  const bool real = (a == ValueKind::Double && b == ValueKind::Code) || b == ValueKind::Double;
  return real && Comparable(a, b) ? ValueKind::Double : a;
}

ConditionPtr CompareConstants(const Variant& left, const std::string& sign, const Variant& right,
                              const TimeZone& zone) {
  if (left.AsString() != nullptr && right.AsString() != nullptr) {
    return Decided(Fold(*left.AsString()).compare(Fold(*right.AsString())), sign);
  }
  const std::optional<Decimal> a = left.AsDecimal();
  const std::optional<Decimal> b = right.AsDecimal();
  if (a && b) return Decided(*a < *b ? -1 : (*a > *b ? 1 : 0), sign);
  const ValueKind meeting = Meeting(left, right);
  const std::optional<Variant> x = Conform(left, meeting, zone);
  const std::optional<Variant> y = Conform(right, meeting, zone);
  if (!x || !y) return nullptr;
  return Decided(Variant::Compare(*x, *y), sign);
}

}  // namespace

Sort SortOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
    case ValueKind::Code:
      return Sort::Number;
    case ValueKind::Amount:
      return Sort::Amount;
    case ValueKind::Rate:
      return Sort::Rate;
    case ValueKind::Double:
      return Sort::Real;
    case ValueKind::Date:
      return Sort::Day;
    case ValueKind::Stamp:
      return Sort::Moment;
    case ValueKind::String:
    case ValueKind::Memo:
      return Sort::Text;
  }
  return Sort::Text;
}

bool Comparable(ValueKind left, ValueKind right) {
  const auto isNumber = [](Sort sort) { return sort == Sort::Number || sort == Sort::Real; };
  const Sort a = SortOf(left);
  const Sort b = SortOf(right);
  return a == b || (isNumber(a) && isNumber(b));
}

std::optional<ValueKind> Common(ValueKind left, ValueKind right) {
  if (left == right) return left;
  if (!Comparable(left, right)) return std::nullopt;
  if (SortOf(left) == Sort::Text) return ValueKind::Memo;
  if (left == ValueKind::Double || right == ValueKind::Double) return ValueKind::Double;
  return std::max(left, right);  // whole numbers stand in order of their size
}

ValueKind WideEnough(ValueKind kind, const Variant& value) {
  const std::optional<std::int64_t> whole = value.AsInt();
  if (!whole || SortOf(kind) != Sort::Number) return kind;
  for (const ValueKind wider :
       {ValueKind::Bool, ValueKind::Byte, ValueKind::Int16, ValueKind::Int32}) {
    const ValueKindRow& row = RowOf(wider);
    if (wider >= kind && *whole >= row.lowest && *whole <= row.highest) return wider;
  }
  return ValueKind::Code;
}

ValueKind OwnKind(const Variant& value) {
  if (value.AsString() != nullptr) return ValueKind::Memo;
  if (value.AsDate()) return ValueKind::Date;
  if (value.AsStamp()) return ValueKind::Stamp;
  if (value.AsInt()) return ValueKind::Code;
  return ValueKind::Double;
}

TermPtr Typed(const TermPtr& term) {
  if (term->typed) return term;
  if (term->IsNull()) return MakeTyped({}, ValueKind::Int32, 0);
  const ValueKind kind = OwnKind(term->value);
  if (kind == ValueKind::Double) return MakeTyped(*term->value.AsDouble(), kind, 0);
  if (kind == ValueKind::Code) return MakeTyped(*term->value.AsInt(), kind, 0);
  return MakeTyped(term->value, kind, 0);
}

std::optional<Variant> DeclaredValue(DeclaredType type, int size, const Variant& value,
                                     const TimeZone& zone) {
  if (value.IsNull()) return value;
  switch (type) {
    case DeclaredType::Bit: {
      const std::optional<std::int64_t> bit = value.AsInt();
      return bit ? std::optional<Variant>(std::int64_t{*bit != 0}) : std::nullopt;
    }
    case DeclaredType::Integer:
      return Conform(value, ValueKind::Code, zone);
    case DeclaredType::Date:
      return Conform(value, ValueKind::Date, zone);
    case DeclaredType::Text:
      break;
  }
  const std::string* text = value.AsString();
  if (text == nullptr) return std::nullopt;
  return Variant(Utf8Cut(*text, static_cast<std::size_t>(size)));
}

std::optional<Variant> SumOf(const Variant& left, const Variant& right, bool adds) {
  const std::optional<Decimal> a = left.AsDecimal();
  const std::optional<Decimal> b = right.AsDecimal();
  if (!a || !b) {
    const std::optional<double> x = left.AsDouble();
    const std::optional<double> y = right.AsDouble();
    return x && y ? std::optional<Variant>(adds ? *x + *y : *x - *y) : std::nullopt;
  }
  const std::optional<Decimal> sum = adds ? a->Plus(*b) : a->Minus(*b);
  if (!sum) return std::nullopt;
  const std::optional<std::int64_t> whole = Variant(*sum).AsInt();
  return whole ? Variant(*whole) : Variant(*sum);
}

ConditionPtr CompareTerms(TermPtr left, std::string sign, TermPtr right, const FoldSource& fold,
                          const TimeZone& zone) {
  if (left->IsNull() || right->IsNull()) return MakeTruth(Truth::Unknown);
  if (left->IsConstant() && right->IsConstant()) {
    return CompareConstants(left->value, sign, right->value, zone);
  }
  if (left->IsConstant()) {
    std::swap(left, right);
    sign = Turned(sign);
  }
  if (right->IsConstant()) {
    const std::optional<Variant> value = Conform(right->value, left->type, zone);
    if (!value) return nullptr;
    right = MakeTyped(*value, left->type, 0);
  } else if (!Comparable(left->type, right->type)) {
    return nullptr;
  }
  if (IsText(*left)) {
    TermPtr leftFold = fold(left);
    TermPtr rightFold = fold(right);
    if (leftFold && rightFold) {
      left = std::move(leftFold);
      right = std::move(rightFold);
    }
  }
  return MakeCompare(std::move(left), std::move(sign), std::move(right));
}

ConditionPtr LikeCondition(const TermPtr& text, const LikePattern& like) {
  const auto constant = [](const std::string& value) {
    return MakeTyped(value, ValueKind::Memo, 0);
  };
  if (like.kind == LikeKind::Exact) return MakeCompare(text, "=", constant(like.text));
  if (like.kind == LikeKind::Beginning) {
    // Any text begins so; whether a missing one does is unknown, also behind a NOT.
    if (like.text.empty() && !text->mayBeNull) return MakeTruth(Truth::True);
    if (like.text.empty()) return MakeCompare(text, ">=", constant(like.text));
    std::vector<ConditionPtr> range = {MakeCompare(text, ">=", constant(like.text))};
    const std::string bound = PrefixUpperBound(like.text);
    if (!bound.empty()) range.push_back(MakeCompare(text, "<", constant(bound)));
    return MakeAnd(std::move(range));
  }
  Condition condition;
  condition.kind =
      like.kind == LikeKind::Anywhere ? ConditionKind::Contains : ConditionKind::Matches;
  condition.parts = {text, constant(like.text)};
  const bool indexed = text->kind == TermKind::Column && text->folded &&
                       !text->column->trigrams.empty() && !like.trigrams.empty();
  if (indexed) {
    condition.indexed = text;
    condition.parts.push_back(constant(like.AsLike()));
    condition.parts.push_back(constant(like.trigrams));
  }
  return Shared(std::move(condition));
}

ConditionPtr NullTest(const TermPtr& term) {
  Condition condition;
  condition.kind = ConditionKind::IsNull;
  condition.parts = {term};
  return Shared(std::move(condition));
}

ConditionPtr ListOf(const std::vector<ConditionPtr>& equal) {
  Condition list;
  list.kind = ConditionKind::InList;
  list.parts.push_back(equal.front()->parts[0]);
  for (const ConditionPtr& one : equal)
    list.parts.push_back(one->parts[1]);
  return Shared(std::move(list));
}

}  // namespace orvane::server::dialect
