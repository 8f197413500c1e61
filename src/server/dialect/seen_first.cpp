#include "server/dialect/seen_first.h"

#include <algorithm>
#include <set>

#include "server/dialect/equalities.h"

namespace orvane::server::dialect {
namespace {

bool AllTellNothing(const std::vector<TermPtr>& parts,
                    const std::vector<ConditionPtr>& conditions) {
  return std::all_of(parts.begin(), parts.end(),
                     [](const TermPtr& part) { return TellsNothing(*part); }) &&
         std::all_of(conditions.begin(), conditions.end(),
                     [](const ConditionPtr& part) { return TellsNothing(*part); });
}

/// Whether few rows of the table go with one row of the tables that are not `open`: all of its key
/// follows from theirs, or all but one column, as with the rows of a document.
bool HasFewRows(const TypedTable& table, const Equalities& equalities, const std::set<int>& open) {
  int keys = 0;
  int free = 0;
  for (const CatalogueColumn& column : table.table->columns) {
    if (!column.Is(kKeyColumn)) continue;
    ++keys;
    const Equalities::Class* same = equalities.Find(*MakeColumn(table.number, column, false));
    const bool follows = same != nullptr &&
                         (same->constant || std::any_of(same->columns.begin(), same->columns.end(),
                                                        [&](const TermPtr& other) {
                                                          return open.count(other->table) == 0;
                                                        }));
    if (!follows) ++free;
  }
  return table.table->singleRow || free == 0 || (free == 1 && keys > 1);
}

/// A subselect that reads a few rows by their keys.
bool IsLean(const TypedSelect& select) {
  const Equalities equalities(select);
  std::set<int> open;
  for (const TypedTable& table : select.tables)
    open.insert(table.number);
  for (std::size_t round = 0; round < select.tables.size(); ++round) {
    for (const TypedTable& table : select.tables) {
      if (HasFewRows(table, equalities, open)) open.erase(table.number);
    }
  }
  return open.empty() && AllTellNothing({}, RowConditions(select));
}

}  // namespace

bool TellsNothing(const Term& term) {
  switch (term.kind) {
    case TermKind::Constant:
      return true;
    case TermKind::Column:
      return term.column->expression.find("select") == std::string_view::npos;
    case TermKind::Case:
    case TermKind::FirstNotNull:
    case TermKind::Cut:
    case TermKind::NumberText:
      return AllTellNothing(term.parts, term.conditions);
    case TermKind::Add:
    case TermKind::Subtract:
    case TermKind::Max:
    case TermKind::Scalar:
      return false;
  }
  return false;
}

bool TellsNothing(const Condition& condition) {
  switch (condition.kind) {
    case ConditionKind::Constant:
    case ConditionKind::Compare:
    case ConditionKind::InList:
    case ConditionKind::IsNull:
    case ConditionKind::And:
    case ConditionKind::Or:
    case ConditionKind::Not:
      return AllTellNothing(condition.parts, condition.conditions);
    case ConditionKind::Contains: {
      const Term& text = *condition.parts[0];
      return text.kind == TermKind::Column && text.type == ValueKind::String;
    }
    case ConditionKind::Exists:
      return IsLean(*condition.select);
    case ConditionKind::Matches:
    case ConditionKind::Among:
    case ConditionKind::InSelect:
      return false;
  }
  return false;
}

}  // namespace orvane::server::dialect
