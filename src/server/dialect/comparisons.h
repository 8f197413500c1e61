#pragma once

// How values of the search dialect meet: which kinds compare, and the conditions that come of it.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "packet/date.h"
#include "server/dialect/like_pattern.h"
#include "server/dialect/syntax.h"
#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// Kinds that compare with each other.
enum class Sort : unsigned char { Number, Amount, Rate, Real, Day, Moment, Text };

Sort SortOf(ValueKind kind);
bool Comparable(ValueKind left, ValueKind right);
/// The kind in which two kinds meet; empty when they do not.
std::optional<ValueKind> Common(ValueKind left, ValueKind right);
/// The kind itself, or the narrowest wider one of whole numbers that takes the value too.
ValueKind WideEnough(ValueKind kind, const Variant& value);
/// The kind a literal or parameter has when nothing else decides.
ValueKind OwnKind(const Variant& value);

/// Gives a constant that met nothing typed a kind of its own.
TermPtr Typed(const TermPtr& term);
/// What a variable declared so holds of the value; empty when it is of another kind.
std::optional<Variant> DeclaredValue(DeclaredType type, int size, const Variant& value,
                                     const TimeZone& zone);
/// The sum, or the difference, of two numbers; empty when there is none.
std::optional<Variant> SumOf(const Variant& left, const Variant& right, bool adds);

/// Finds the fold of a text term; a null pointer when it has none.
using FoldSource = std::function<TermPtr(const TermPtr&)>;

/// The condition `left sign right`: texts by their folds where both have them, constants as values
/// of the other side's kind, two constants worked out. A null pointer when the two do not compare.
ConditionPtr CompareTerms(TermPtr left, std::string sign, TermPtr right, const FoldSource& fold,
                          const TimeZone& zone);

/// A text (or its fold, as the pattern was read) against a pattern: a beginning is a range.
ConditionPtr LikeCondition(const TermPtr& text, const LikePattern& like);
ConditionPtr NullTest(const TermPtr& term);
/// Equalities of one term with constants, as a list.
ConditionPtr ListOf(const std::vector<ConditionPtr>& equal);

}  // namespace orvane::server::dialect
