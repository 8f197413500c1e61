#pragma once

// A search statement whose names are looked up and whose parts have types. What does not depend on
// rows (parameters, settings) is already worked out: such conditions and branches are gone.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "packet/variant.h"
#include "server/catalogue/catalogue.h"
#include "server/dialect/open_values.h"
#include "server/dialect/search.h"
#include "server/dialect/syntax.h"

namespace orvane::server::dialect {

struct Term;
struct Condition;
struct TypedSelect;
using TermPtr = std::shared_ptr<const Term>;
using ConditionPtr = std::shared_ptr<const Condition>;

enum class TermKind : unsigned char {
  Constant,  ///< `value`
  Column,    ///< `column` of table number `table`, or its fold
  Case,      ///< parts[i] where conditions[i] holds, else the last part
  FirstNotNull,
  Cut,         ///< the first `size` code points of parts[0]
  NumberText,  ///< parts[0], a whole number, as text cut to `size`
  Add,
  Subtract,
  Max,     ///< only as the one value of a subselect
  Scalar,  ///< the one value of `select`
};

struct Term {
  TermKind kind = TermKind::Constant;
  /// False for a literal or parameter that has not met a typed value yet.
  bool typed = false;
  ValueKind type = ValueKind::Int32;
  std::uint16_t size = 0;  ///< of a String
  bool mayBeNull = true;
  bool optional = false;  ///< Column: of an outer joined table, so that its row may be missing
  /// About how many bytes it is written in. A term that stands in several places counts in each:
  /// statements are written as trees, whatever their terms share.
  std::size_t weight = 0;
  Variant value;
  OpenValue open;  ///< Constant: whether another value may stand in its place
  Place place;
  int table = 0;
  const CatalogueColumn* column = nullptr;
  bool folded = false;  ///< Column: the stored fold instead of the text
  std::vector<ConditionPtr> conditions;
  std::vector<TermPtr> parts;
  std::shared_ptr<const TypedSelect> select;

  bool IsConstant() const { return kind == TermKind::Constant; }
  bool IsNull() const { return IsConstant() && value.IsNull(); }
};

enum class Truth : unsigned char { False, True, Unknown };

enum class ConditionKind : unsigned char {
  Constant,  ///< `truth`
  Compare,   ///< parts[0] `sign` parts[1]; texts are folds already where there are any
  Contains,  ///< text parts[0] has the constant parts[1] in it
  Matches,   ///< text parts[0] matches LIKE pattern parts[1], with \ before what is meant literally
  Among,     ///< the row of key parts[0] is one that its index of trigrams finds by parts[1]
  InList,    ///< parts[0] among the other parts, constants all
  InSelect,
  Exists,  ///< `select` has a row; it has no items
  IsNull,
  And,
  Or,
  Not,
};

struct Condition {
  ConditionKind kind = ConditionKind::Constant;
  Truth truth = Truth::True;
  std::string sign;
  std::size_t weight = 0;  ///< as of a Term
  std::vector<TermPtr> parts;
  std::vector<ConditionPtr> conditions;
  std::shared_ptr<const TypedSelect> select;
  /// Contains and Matches: the column whose index of trigrams finds the rows, where it has one and
  /// the pattern has trigrams. parts[2] is then the pattern as the engines write it, parts[3] what
  /// the index is asked. Among: the column whose index is asked.
  TermPtr indexed;
};

struct TypedTable {
  const CatalogueTable* table = nullptr;
  int number = 0;  ///< unique in the statement
  std::string alias;
  JoinKind join = JoinKind::First;
  ConditionPtr on;         ///< null pointer for the first table
  RowPredicate predicate;  ///< lets the asker's rows through
};

struct TypedItem {
  TermPtr value;
  std::string name;
};

struct TypedOrder {
  TermPtr value;
  bool descending = false;
};

struct TypedSelect {
  bool distinct = false;
  std::vector<TypedTable> tables;
  std::vector<TypedItem> items;
  ConditionPtr where;  ///< always there; True when nothing is asked
  std::vector<TypedOrder> order;
};

// --- Terms

/// Both weigh what they are given.
TermPtr Shared(Term term);
ConditionPtr Shared(Condition condition);
std::size_t WeightOf(const TypedSelect& select);

TermPtr MakeConstant(Variant value, Place place);
TermPtr MakeTyped(Variant value, ValueKind type, std::uint16_t size);
/// Column of a table; `optional` when the table is outer joined.
TermPtr MakeColumn(int table, const CatalogueColumn& column, bool optional);
bool IsText(const Term& term);
bool SameTerm(const Term& left, const Term& right);

/// The value as one of `type`, for comparing with it: days from texts, folds no text, whole numbers
/// for bits. Empty when the two cannot be compared.
std::optional<Variant> Conform(const Variant& value, ValueKind type, const TimeZone& zone);

// --- Conditions

ConditionPtr MakeTruth(Truth truth);
ConditionPtr MakeCompare(TermPtr left, std::string sign, TermPtr right);
/// Joins conditions, working out what is constant.
ConditionPtr MakeAnd(std::vector<ConditionPtr> parts);
ConditionPtr MakeOr(std::vector<ConditionPtr> parts);
ConditionPtr MakeNot(ConditionPtr condition);
/// The condition as a filter, for which Unknown is as good as False.
ConditionPtr AsFilter(const ConditionPtr& condition);
bool Is(const ConditionPtr& condition, Truth truth);
/// The parts of a conjunction; one part for anything else, none for True.
std::vector<ConditionPtr> Conjuncts(const ConditionPtr& condition);

/// Calls `visit` for every column that the tree reads, subselects included.
template <class Visit>
void VisitColumns(const Term& term, const Visit& visit);
template <class Visit>
void VisitColumns(const Condition& condition, const Visit& visit);
template <class Visit>
void VisitColumns(const TypedSelect& select, const Visit& visit) {
  for (const TypedTable& table : select.tables) {
    if (table.on) VisitColumns(*table.on, visit);
  }
  for (const TypedItem& item : select.items)
    VisitColumns(*item.value, visit);
  for (const TypedOrder& order : select.order)
    VisitColumns(*order.value, visit);
  VisitColumns(*select.where, visit);
}
template <class Visit>
void VisitColumns(const Term& term, const Visit& visit) {
  if (term.kind == TermKind::Column) visit(term);
  for (const ConditionPtr& condition : term.conditions)
    VisitColumns(*condition, visit);
  for (const TermPtr& part : term.parts)
    VisitColumns(*part, visit);
  if (term.select) VisitColumns(*term.select, visit);
}
template <class Visit>
void VisitColumns(const Condition& condition, const Visit& visit) {
  for (const TermPtr& part : condition.parts)
    VisitColumns(*part, visit);
  if (condition.indexed) VisitColumns(*condition.indexed, visit);
  for (const ConditionPtr& part : condition.conditions)
    VisitColumns(*part, visit);
  if (condition.select) VisitColumns(*condition.select, visit);
}

}  // namespace orvane::server::dialect
