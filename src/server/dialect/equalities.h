#pragma once

// What a SELECT's conditions say about equal columns: which columns hold one value in every row of
// the result, which stand for each other, and which tables add no rows of their own.

#include <vector>

#include "server/dialect/typed.h"

namespace orvane::server::dialect {

class Equalities {
 public:
  explicit Equalities(const TypedSelect& select);

  /// Columns that are equal in every row of the result, with the constant they are equal to.
  struct Class {
    std::vector<TermPtr> columns;
    TermPtr constant;  ///< or the value of a subselect; null pointer when there is none
  };

  const std::vector<Class>& Classes() const { return classes_; }
  /// The class of a column; null pointer when it equals nothing.
  const Class* Find(const Term& column) const;
  bool IsFixed(const Term& column) const;
  /// The same column, or two that are equal in every row.
  bool Same(const Term& left, const Term& right) const;

  /// Whether the key of `table` follows from constants and from columns that `known` accepts.
  template <class Known>
  bool IsDetermined(const TypedTable& table, const Known& known) const;

 private:
  void Add(const Condition& condition);
  std::size_t ClassOf(const TermPtr& column);

  std::vector<Class> classes_;
};

/// The conditions that every row of the result meets, as a list: WHERE and the ON of inner joins.
std::vector<ConditionPtr> RowConditions(const TypedSelect& select);

template <class Known>
bool Equalities::IsDetermined(const TypedTable& table, const Known& known) const {
  if (table.table->singleRow) return true;
  const bool outer = table.join == JoinKind::Left;
  for (const CatalogueColumn& column : table.table->columns) {
    if (!column.Is(kKeyColumn)) continue;
    const TermPtr key = MakeColumn(table.number, column, outer);
    const auto accepted = [&](const Term& other) {
      return other.IsConstant() ||
             (other.kind == TermKind::Column && other.table != table.number && known(other));
    };
    bool found = known(*key);
    if (outer) {  // only its own ON speaks of its rows
      for (const ConditionPtr& part : Conjuncts(table.on)) {
        if (part->kind != ConditionKind::Compare || part->sign != "=") continue;
        for (std::size_t side = 0; side < 2; ++side) {
          found = found || (SameTerm(*part->parts[side], *key) && accepted(*part->parts[1 - side]));
        }
      }
    } else if (const Class* same = Find(*key)) {
      found = found || same->constant != nullptr;
      for (const TermPtr& other : same->columns)
        found = found || accepted(*other);
    }
    if (!found) return false;
  }
  return true;
}

}  // namespace orvane::server::dialect
