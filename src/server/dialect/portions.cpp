#include "server/dialect/portions.h"

#include <algorithm>
#include <set>
#include <utility>

#include "server/dialect/equalities.h"
#include "server/dialect/fold_of.h"
#include "server/dialect/listed_names.h"

namespace orvane::server::dialect {
namespace {

std::set<int> TablesOf(const Condition& condition) {
  std::set<int> tables;
  VisitColumns(condition, [&](const Term& column) { tables.insert(column.table); });
  return tables;
}

/// Tables that what is shown or ordered by reads, and those that an outer join hangs on.
std::set<int> ShownTables(const TypedSelect& select) {
  std::set<int> shown;
  const auto add = [&](const Term& column) { shown.insert(column.table); };
  for (const TypedItem& item : select.items)
    VisitColumns(*item.value, add);
  for (const TypedOrder& order : select.order) {
    VisitColumns(*order.value, add);
    VisitColumns(*OrderOf(order.value, select.tables, false), add);
  }
  for (const TypedTable& table : select.tables) {
    if (table.join != JoinKind::Left) continue;
    shown.insert(table.number);
    VisitColumns(*table.on, add);
  }
  return shown;
}

/// Whether the columns that are read, with the conditions, fix one row of every table in `tables`.
bool ItemsTellRowsApart(const TypedSelect& select, const Equalities& equalities,
                        const std::set<int>& tables) {
  std::set<int> settled;
  const auto known = [&](const Term& column) {
    if (settled.count(column.table) != 0) return true;
    return std::any_of(select.items.begin(), select.items.end(), [&](const TypedItem& item) {
      return item.value->kind == TermKind::Column && equalities.Same(*item.value, column);
    });
  };
  for (std::size_t round = 0; round < select.tables.size(); ++round) {
    for (const TypedTable& table : select.tables) {
      if (tables.count(table.number) == 0 || settled.count(table.number) != 0) continue;
      if (equalities.IsDetermined(table, known)) settled.insert(table.number);
    }
  }
  return settled.size() == tables.size();
}

/// Tables of which at most one row meets a row of those that stay: joining them adds no rows, and
/// the engine may begin with them.
void KeepSingleRows(const TypedSelect& select, const Equalities& equalities,
                    std::set<int>& staying) {
  const auto known = [&](const Term& column) { return staying.count(column.table) != 0; };
  for (const TypedTable& table : select.tables) {
    if (equalities.IsDetermined(table, known)) staying.insert(table.number);
  }
}

/// What witnesses said about equal columns of the tables that stay.
std::vector<ConditionPtr> ImpliedEqualities(const Equalities& equalities,
                                            const std::set<int>& staying) {
  std::vector<ConditionPtr> implied;
  for (const Equalities::Class& one : equalities.Classes()) {
    TermPtr first;
    for (const TermPtr& column : one.columns) {
      if (staying.count(column->table) == 0) continue;
      if (one.constant && !one.constant->IsConstant()) continue;
      if (one.constant) {
        Term value = *one.constant;
        value.type = column->type;
        implied.push_back(MakeCompare(column, "=", Shared(std::move(value))));
      } else if (first) {
        implied.push_back(MakeCompare(first, "=", column));
      } else {
        first = column;
      }
    }
  }
  return implied;
}

/// Divides the tables into those that stay, inner joined ones first, and the witnesses.
void SplitTables(std::vector<TypedTable> tables, const std::set<int>& staying,
                 std::vector<TypedTable>& stay, std::vector<TypedTable>& witnesses) {
  for (TypedTable& table : tables) {
    if (table.join == JoinKind::Left) continue;
    auto& target = staying.count(table.number) != 0 ? stay : witnesses;
    table.join = target.empty() ? JoinKind::First : JoinKind::Inner;
    table.on = target.empty() ? nullptr : MakeTruth(Truth::True);
    target.push_back(std::move(table));
  }
  for (TypedTable& table : tables) {
    if (table.join == JoinKind::Left) stay.push_back(std::move(table));
  }
}

class OrderMaker {
 public:
  OrderMaker(const TypedSelect& select, const Equalities& equalities)
      : select_(select), equalities_(equalities) {}

  std::vector<TypedOrder> Run() {
    for (const TypedOrder& asked : select_.order) {
      const TermPtr by = OrderOf(asked.value, select_.tables, select_.distinct);
      Add(ListedName(by, select_, equalities_), asked.descending);
    }
    descending_ = !order_.empty() && order_.back().descending;
    if (!order_.empty() && order_.front().value->kind == TermKind::Column) {
      leading_ = order_.front().value->table;
    }
    if (select_.distinct) {
      for (const TypedItem& item : select_.items)
        Add(item.value, descending_);
    } else {
      AddKeys();
    }
    return std::move(order_);
  }

 private:
  void Add(const TermPtr& term, bool descending) {
    if (term->IsConstant()) return;
    if (term->kind == TermKind::Column && equalities_.IsFixed(*term)) return;
    const bool there = std::any_of(order_.begin(), order_.end(), [&](const TypedOrder& other) {
      return equalities_.Same(*other.value, *term);
    });
    if (!there) order_.push_back({term, descending});
  }

  /// Keys of the tables whose row does not follow from the tables before.
  void AddKeys() {
    std::set<int> before;
    const auto known = [&](const Term& column) { return before.count(column.table) != 0; };
    for (const TypedTable& table : select_.tables) {
      if (!equalities_.IsDetermined(table, known)) {
        for (const CatalogueColumn& column : table.table->columns) {
          if (!column.Is(kKeyColumn)) continue;
          Add(Leading(MakeColumn(table.number, column, table.join == JoinKind::Left)), descending_);
        }
      }
      before.insert(table.number);
    }
  }

  /// The equal column of the table that leads the order, because one index may serve both.
  TermPtr Leading(const TermPtr& key) const {
    const Equalities::Class* same = equalities_.Find(*key);
    if (same == nullptr || leading_ == 0) return key;
    for (const TermPtr& column : same->columns) {
      if (column->table == leading_) return column;
    }
    return key;
  }

  const TypedSelect& select_;
  const Equalities& equalities_;
  std::vector<TypedOrder> order_;
  bool descending_ = false;
  int leading_ = 0;
};

}  // namespace

void DropUnusedSettings(TypedSelect& select) {
  std::set<int> read;
  VisitColumns(select, [&](const Term& column) { read.insert(column.table); });
  std::erase_if(select.tables, [&](const TypedTable& table) {
    return table.join == JoinKind::Left && table.table->singleRow && read.count(table.number) == 0;
  });
}

void ReplaceDistinct(TypedSelect& select) {
  if (!select.distinct) return;
  const Equalities equalities(select);
  std::set<int> staying = ShownTables(select);
  if (staying.empty() || !ItemsTellRowsApart(select, equalities, staying)) return;
  KeepSingleRows(select, equalities, staying);
  // An outer join needs a table to hang on.
  const bool rooted =
      std::any_of(select.tables.begin(), select.tables.end(), [&](const TypedTable& table) {
        return table.join != JoinKind::Left && staying.count(table.number) != 0;
      });
  if (!rooted) return;
  const std::vector<ConditionPtr> conditions = RowConditions(select);
  std::vector<TypedTable> stay;
  auto witness = std::make_shared<TypedSelect>();
  SplitTables(std::move(select.tables), staying, stay, witness->tables);
  std::vector<ConditionPtr> where = ImpliedEqualities(equalities, staying);
  std::vector<ConditionPtr> within;
  for (const ConditionPtr& condition : conditions) {
    const std::set<int> tables = TablesOf(*condition);
    const bool ofWitness =
        std::any_of(witness->tables.begin(), witness->tables.end(),
                    [&](const TypedTable& table) { return tables.count(table.number) != 0; });
    (ofWitness ? within : where).push_back(condition);
  }
  if (!witness->tables.empty()) {
    witness->where = MakeAnd(std::move(within));
    Condition exists;
    exists.kind = ConditionKind::Exists;
    exists.select = std::move(witness);
    where.push_back(Shared(std::move(exists)));
  }
  select.distinct = false;
  select.tables = std::move(stay);
  select.where = MakeAnd(std::move(where));
}

std::vector<TypedOrder> PortionOrder(const TypedSelect& select) {
  const Equalities equalities(select);
  return OrderMaker(select, equalities).Run();
}

const Condition* ByTrigrams(const TypedSelect& select, const std::vector<TypedOrder>& order) {
  if (order.empty() || order.front().value->kind != TermKind::Column) return nullptr;
  const int leading = order.front().value->table;
  bool listed = false;
  for (const TypedTable& table : select.tables) {
    if (!table.predicate.text.empty()) return nullptr;
    listed = listed || (table.number == leading && !table.table->keptNames.empty());
  }
  for (const ConditionPtr& condition : Conjuncts(select.where)) {
    if (condition->indexed && (listed || condition->indexed->table == leading))
      return condition.get();
  }
  return nullptr;
}

TypedSelect AmongTrigrams(const TypedSelect& select, const Condition& part) {
  TypedSelect among = select;
  Condition found;
  found.kind = ConditionKind::Among;
  found.indexed = part.indexed;
  for (const TypedTable& table : select.tables) {
    if (table.number != part.indexed->table) continue;
    const auto key = std::ranges::find_if(
        table.table->columns, [](const CatalogueColumn& one) { return one.Is(kKeyColumn); });
    found.parts = {MakeColumn(table.number, *key, false), part.parts[3]};
  }
  among.where = MakeAnd({Shared(std::move(found)), select.where});
  return among;
}

bool ValuesDecideThePlan(const TypedSelect& select, const std::vector<TypedOrder>& order) {
  const auto compares = [](const ConditionPtr& condition) {
    return condition->kind == ConditionKind::Compare && condition->parts[1]->IsConstant();
  };
  // An order that begins with a key has an index whatever else is asked: it serves a common value,
  // and is walked to its end for a rare one. Of a bit's two values neither is rare.
  const Term* first = order.empty() ? nullptr : order.front().value.get();
  const bool byKey =
      first != nullptr && first->kind == TermKind::Column && first->column->Is(kKeyColumn);
  const std::vector<ConditionPtr> conditions = RowConditions(select);
  return std::any_of(conditions.begin(), conditions.end(), [&](const ConditionPtr& condition) {
    if (condition->select) {
      const std::vector<ConditionPtr> within = RowConditions(*condition->select);
      return std::any_of(within.begin(), within.end(), compares);
    }
    if (condition->indexed) return true;
    if (!compares(condition) || condition->sign == "<>") return false;
    const bool beside = first == nullptr || !SameTerm(*condition->parts[0], *first);
    if (condition->sign != "=") return beside;
    return beside && byKey && condition->parts[0]->type != ValueKind::Bool;
  });
}

}  // namespace orvane::server::dialect
