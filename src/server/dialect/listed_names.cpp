#include "server/dialect/listed_names.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane::server::dialect {
namespace {

constexpr std::string_view kEntries = "BaseSupplyList";
constexpr std::string_view kEntryKey = "SerialNumber";

/// How many columns of the list's key say which list it is, all by one value; -1 when the list is
/// not joined to the entry, or more than one list is meant.
int ColumnsThatFix(const TypedTable& list, const Term& entry, const Equalities& equalities) {
  int fixed = 0;
  for (const CatalogueColumn& column : list.table->columns) {
    if (!column.Is(kKeyColumn)) continue;
    const TermPtr key = MakeColumn(list.number, column, false);
    if (column.name == kEntryKey) {
      if (!equalities.Same(*key, entry)) return -1;
    } else if (equalities.IsFixed(*key)) {
      ++fixed;
    } else {
      return -1;
    }
  }
  return fixed;
}

const CatalogueColumn* KeptName(const TypedTable& list, std::string_view name) {
  for (const CatalogueColumn& column : list.table->keptNames) {
    if (column.name == name) return &column;
  }
  return nullptr;
}

ConditionPtr Rewritten(const ConditionPtr& condition, const TypedSelect& select,
                       const Equalities& equalities) {
  Condition made = *condition;
  for (TermPtr& part : made.parts)
    part = ListedName(part, select, equalities);
  for (ConditionPtr& part : made.conditions)
    part = Rewritten(part, select, equalities);
  return Shared(std::move(made));
}

}  // namespace

TermPtr ListedName(const TermPtr& term, const TypedSelect& select, const Equalities& equalities) {
  if (term->kind != TermKind::Column || !term->folded) return term;
  const auto entries =
      std::find_if(select.tables.begin(), select.tables.end(),
                   [&](const TypedTable& table) { return table.number == term->table; });
  if (entries == select.tables.end() || entries->table->name != kEntries) return term;
  const TermPtr entry = MakeColumn(entries->number, *entries->table->Find(kEntryKey), false);
  TermPtr listed = term;
  int most = 0;
  for (const TypedTable& list : select.tables) {
    const CatalogueColumn* kept = KeptName(list, term->column->name);
    if (kept == nullptr || list.join == JoinKind::Left) continue;
    const int fixed = ColumnsThatFix(list, *entry, equalities);
    if (fixed <= most) continue;
    most = fixed;
    Term fold = *MakeColumn(list.number, *kept, false);
    fold.folded = true;
    listed = Shared(std::move(fold));
  }
  return listed;
}

void UseListedNames(TypedSelect& select) {
  const bool any =
      std::any_of(select.tables.begin(), select.tables.end(),
                  [](const TypedTable& table) { return !table.table->keptNames.empty(); });
  if (!any) return;
  const Equalities equalities(select);
  select.where = Rewritten(select.where, select, equalities);
}

}  // namespace orvane::server::dialect
