#include "server/dialect/equalities.h"

#include <algorithm>
#include <utility>

namespace orvane::server::dialect {
namespace {

bool SameColumn(const Term& left, const Term& right) {
  return left.table == right.table && left.column == right.column && left.folded == right.folded;
}

/// Stored columns, not folds: texts with one fold may still differ.
bool IsPlainColumn(const Term& term) {
  return term.kind == TermKind::Column && !term.folded && term.column->expression.empty();
}

/// A constant, or the one value of a subselect that reads nothing of the rows around it.
bool IsOneValue(const Term& term) {
  if (term.kind != TermKind::Scalar) return term.IsConstant();
  bool own = true;
  VisitColumns(*term.select, [&](const Term& column) {
    own = own && std::any_of(term.select->tables.begin(), term.select->tables.end(),
                             [&](const TypedTable& table) { return table.number == column.table; });
  });
  return own;
}

}  // namespace

Equalities::Equalities(const TypedSelect& select) {
  for (const ConditionPtr& condition : RowConditions(select))
    Add(*condition);
}

void Equalities::Add(const Condition& condition) {
  if (condition.kind != ConditionKind::Compare || condition.sign != "=") return;
  const TermPtr& left = condition.parts[0];
  const TermPtr& right = condition.parts[1];
  if (!IsPlainColumn(*left)) return;
  if (IsOneValue(*right)) {
    classes_[ClassOf(left)].constant = right;
    return;
  }
  if (!IsPlainColumn(*right)) return;
  const std::size_t into = ClassOf(left);
  const std::size_t from = ClassOf(right);
  if (into == from) return;
  Class moved = std::move(classes_[from]);
  classes_[into].columns.insert(classes_[into].columns.end(), moved.columns.begin(),
                                moved.columns.end());
  if (!classes_[into].constant) classes_[into].constant = moved.constant;
  classes_.erase(classes_.begin() + static_cast<std::ptrdiff_t>(from));
}

std::size_t Equalities::ClassOf(const TermPtr& column) {
  for (std::size_t i = 0; i < classes_.size(); ++i) {
    const auto& columns = classes_[i].columns;
    const auto same = [&](const TermPtr& other) { return SameColumn(*other, *column); };
    if (std::any_of(columns.begin(), columns.end(), same)) return i;
  }
  classes_.push_back({{column}, nullptr});
  return classes_.size() - 1;
}

const Equalities::Class* Equalities::Find(const Term& column) const {
  for (const Class& one : classes_) {
    const auto same = [&](const TermPtr& other) { return SameColumn(*other, column); };
    if (std::any_of(one.columns.begin(), one.columns.end(), same)) return &one;
  }
  return nullptr;
}

bool Equalities::IsFixed(const Term& column) const {
  const Class* same = Find(column);
  return same != nullptr && same->constant != nullptr;
}

bool Equalities::Same(const Term& left, const Term& right) const {
  if (SameTerm(left, right)) return true;
  if (left.kind != TermKind::Column || right.kind != TermKind::Column) return false;
  if (SameColumn(left, right)) return true;
  const Class* same = Find(left);
  return same != nullptr && same == Find(right);
}

std::vector<ConditionPtr> RowConditions(const TypedSelect& select) {
  std::vector<ConditionPtr> all = Conjuncts(select.where);
  for (const TypedTable& table : select.tables) {
    if (table.join != JoinKind::Inner) continue;
    const std::vector<ConditionPtr> on = Conjuncts(table.on);
    all.insert(all.end(), on.begin(), on.end());
  }
  return all;
}

}  // namespace orvane::server::dialect
