#include "server/dialect/fold_of.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "packet/fold.h"

namespace orvane::server::dialect {
namespace {

/// A stored name that stands for a name of another table, chosen by a column of the row.
struct EffectiveName {
  std::string_view table;
  std::string_view selector;
  std::string_view name;       ///< column of the other tables
  std::string_view effective;  ///< column of `table` that keeps it
};
constexpr EffectiveName kEffectiveNames[] = {
    {"BaseSupplyList", "Kind", "Name", "EffectiveName"},
    {"BaseSupplyList", "Kind", "Name2", "EffectiveName2"},
};

/// Setting that decides between the entry's own name and the other tables'.
constexpr std::string_view kNamingSetting = "IdentityWithNom";

struct EffectiveSource {
  std::int64_t selected;
  std::string_view table;
  std::string_view key;
  std::string_view link;  ///< column of the chooser's row that holds the key
};
constexpr EffectiveSource kEffectiveSources[] = {
    {1, "MaterialStocks", "IdNumber", "InventoryCode"},
    {2, "Services", "Code", "ServiceCode"},
};

const TypedTable* FindTable(const std::vector<TypedTable>& tables, int number) {
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&](const TypedTable& row) { return row.number == number; });
  return found == tables.end() ? nullptr : &*found;
}

bool IsColumn(const Term& term, int table, std::string_view name) {
  return term.kind == TermKind::Column && term.table == table && term.column->name == name;
}

/// Whether `table` is joined by its key, and by nothing else that could keep its row away, to the
/// link column of the row that chooses.
bool IsLinked(const TypedTable& table, const EffectiveSource& source, int chooser) {
  const auto parts = Conjuncts(table.on);
  if (table.join == JoinKind::Left && parts.size() != 1) return false;
  return std::any_of(parts.begin(), parts.end(), [&](const ConditionPtr& part) {
    if (part->kind != ConditionKind::Compare || part->sign != "=") return false;
    const Term& left = *part->parts[0];
    const Term& right = *part->parts[1];
    return (IsColumn(left, table.number, source.key) && IsColumn(right, chooser, source.link)) ||
           (IsColumn(right, table.number, source.key) && IsColumn(left, chooser, source.link));
  });
}

/// The selected value when a branch asks for `selector = value` of a table.
std::optional<std::int64_t> SelectedBy(const Condition& condition, std::string_view selector,
                                       int& chooser) {
  if (condition.kind != ConditionKind::Compare || condition.sign != "=") return std::nullopt;
  const Term& column = *condition.parts[condition.parts[0]->IsConstant() ? 1 : 0];
  const Term& value = *condition.parts[condition.parts[0]->IsConstant() ? 0 : 1];
  if (column.kind != TermKind::Column || column.column->name != selector) return std::nullopt;
  if (chooser != 0 && chooser != column.table) return std::nullopt;
  chooser = column.table;
  return value.value.AsInt();
}

bool ReadsSource(const Term& branch, std::int64_t selected, const EffectiveName& rule, int chooser,
                 const std::vector<TypedTable>& tables) {
  if (branch.kind != TermKind::Column || branch.column->name != rule.name) return false;
  const TypedTable* table = FindTable(tables, branch.table);
  return table != nullptr && std::any_of(std::begin(kEffectiveSources), std::end(kEffectiveSources),
                                         [&](const EffectiveSource& source) {
                                           return source.selected == selected &&
                                                  table->table->name == source.table &&
                                                  IsLinked(*table, source, chooser);
                                         });
}

/// A CASE over the selector with a branch for each source is the stored effective name.
TermPtr EffectiveFold(const Term& term, const EffectiveName& rule,
                      const std::vector<TypedTable>& tables) {
  int chooser = 0;
  std::vector<std::int64_t> seen;
  for (std::size_t i = 0; i < term.conditions.size(); ++i) {
    const auto selected = SelectedBy(*term.conditions[i], rule.selector, chooser);
    if (!selected || !ReadsSource(*term.parts[i], *selected, rule, chooser, tables)) return nullptr;
    seen.push_back(*selected);
  }
  const TypedTable* row = FindTable(tables, chooser);
  if (row == nullptr || row->table->name != rule.table) return nullptr;
  bool whole = term.parts.back()->IsNull();  // a branch for each, and nothing for the rest
  for (const EffectiveSource& source : kEffectiveSources) {
    if (std::find(seen.begin(), seen.end(), source.selected) != seen.end()) continue;
    whole = ReadsSource(*term.parts.back(), source.selected, rule, chooser, tables);
    if (!whole) return nullptr;
  }
  if (!whole) return nullptr;
  Term fold = *MakeColumn(chooser, *row->table->Find(rule.effective), row->join == JoinKind::Left);
  fold.folded = true;
  return Shared(std::move(fold));
}

/// The value of the setting that a branch asks for: `Setting = value`, or ISNULL(Setting, 0) in its
/// place, of which `orZero` tells.
std::optional<std::int64_t> SettingAsked(const Condition& condition, bool& orZero,
                                         const std::vector<TypedTable>& tables) {
  if (condition.kind != ConditionKind::Compare || condition.sign != "=") return std::nullopt;
  const Term* asked = condition.parts[0].get();
  orZero = asked->kind == TermKind::FirstNotNull && asked->parts[1]->value.AsInt() == 0;
  if (orZero) asked = asked->parts[0].get();
  if (asked->kind != TermKind::Column || asked->column->name != kNamingSetting) return std::nullopt;
  const TypedTable* table = FindTable(tables, asked->table);
  const bool always =
      table != nullptr && (table->join != JoinKind::Left || Is(table->on, Truth::True));
  if (!always) return std::nullopt;
  return condition.parts[1]->value.AsInt();
}

/// A CASE over the setting between the entry's own name and that of the nomenclature is the name
/// that the entry goes by, which is stored.
TermPtr NamingFold(const Term& term, const EffectiveName& rule,
                   const std::vector<TypedTable>& tables) {
  TermPtr fold;
  const Term* own = nullptr;
  bool orZero = false;
  for (std::size_t i = 0; i < term.conditions.size(); ++i) {
    const std::optional<std::int64_t> asked = SettingAsked(*term.conditions[i], orZero, tables);
    if (asked == 1 && !fold && term.parts[i]->kind == TermKind::Case) {
      fold = EffectiveFold(*term.parts[i], rule, tables);
    } else if (asked == 0 && own == nullptr && orZero) {
      own = term.parts[i].get();
    } else {
      return nullptr;
    }
  }
  if (own == nullptr) own = term.parts.back().get();
  return fold && IsColumn(*own, fold->table, rule.name) ? fold : nullptr;
}

TermPtr FoldParts(const Term& text, const std::vector<TypedTable>& tables) {
  Term fold = text;
  fold.type = ValueKind::Memo;
  fold.size = 0;
  fold.folded = text.kind == TermKind::Cut;
  if (fold.folded) fold.size = text.size;
  for (TermPtr& part : fold.parts) {
    part = FoldOf(part, tables);
    if (!part) return nullptr;
  }
  return Shared(std::move(fold));
}

}  // namespace

TermPtr FoldOf(const TermPtr& text, const std::vector<TypedTable>& tables) {
  switch (text->kind) {
    case TermKind::Constant: {
      if (text->value.IsNull()) return text;
      const std::string* value = text->value.AsString();
      return value == nullptr ? nullptr : MakeTyped(Fold(*value), ValueKind::Memo, 0);
    }
    case TermKind::Column: {
      if (!text->column->Is(kFolded)) return nullptr;
      Term fold = *text;
      fold.folded = true;
      return Shared(std::move(fold));
    }
    case TermKind::Case:
      for (const EffectiveName& rule : kEffectiveNames) {
        if (TermPtr fold = NamingFold(*text, rule, tables)) return fold;
      }
      return FoldParts(*text, tables);
    case TermKind::FirstNotNull:
    case TermKind::Cut:
      return FoldParts(*text, tables);
    case TermKind::NumberText:  // digits
      return text;
    default:
      return nullptr;
  }
}

TermPtr OrderOf(const TermPtr& term, const std::vector<TypedTable>& tables, bool distinct) {
  if (!IsText(*term)) return term;
  const bool cut = term->kind == TermKind::Cut && !distinct;
  const TermPtr& whole = cut ? term->parts.front() : term;
  const TermPtr fold = FoldOf(whole, tables);
  return fold ? fold : term;
}

}  // namespace orvane::server::dialect
