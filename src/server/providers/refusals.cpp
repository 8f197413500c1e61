#include "server/providers/refusals.h"

#include <spdlog/spdlog.h>

#include "packet/fold.h"
#include "server/providers/change_check.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

constexpr std::uint16_t kLongestShown = 120;

/// The value a column has in the change: the new one, else the old one.
Variant ValueIn(const Change& change, std::string_view column) {
  if (const Variant* value = FindValue(change.after, column)) return *value;
  if (const Variant* value = FindValue(change.before, column)) return *value;
  constexpr std::string_view kFoldPrefix = "Fold";
  if (!column.starts_with(kFoldPrefix)) return {};
  const Variant text = ValueIn(change, column.substr(kFoldPrefix.size()));
  return text.IsNull() ? text : Variant(Fold(text.ToText()));
}

/// Puts the change's values in the place of {Column}.
std::string Sentence(std::string_view sentence, const Change& change) {
  std::string whole;
  while (!sentence.empty()) {
    const std::size_t open = sentence.find('{');
    const std::size_t close = sentence.find('}', open);
    whole += sentence.substr(0, open);
    if (open == std::string_view::npos || close == std::string_view::npos) break;
    whole += ValueIn(change, sentence.substr(open + 1, close - open - 1)).ToText();
    sentence.remove_prefix(close + 1);
  }
  return whole;
}

/// Whether a row of the table has these values in these columns.
bool Exists(Transaction& transaction, std::string_view table,
            std::span<const std::string_view> columns, const VariantArray& values) {
  Statement statement{"select count(*) from (select 1 from " + std::string(table), {}, {}};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    statement.text += i == 0 ? " where " : " and ";
    statement.text += std::string(columns[i]) + " = ?" + std::to_string(i + 1);
  }
  statement.text += " limit 1) found";
  statement.params = values;
  statement.columns = {{"Found", ValueKind::Code, 0}};
  const auto found = transaction.Query(statement);
  if (!found) {
    spdlog::error("looking for a broken rule: {}", found.GetFailure().text);
    return false;
  }
  return found->At(0, "Found").AsInt().value_or(0) > 0;
}

std::optional<Failure> BrokenUnique(Transaction& transaction, const ProviderDef& provider,
                                    const WriteRules& rules, const Change& change) {
  for (const UniqueRule& rule : rules.unique) {
    VariantArray values;
    for (const std::string_view column : rule.columns)
      values.push_back(ValueIn(change, column));
    if (Exists(transaction, provider.table, rule.columns, values)) {
      return Refused(Sentence(rule.sentence, change));
    }
  }
  return std::nullopt;
}

std::optional<Failure> BrokenReference(Transaction& transaction, const WriteRules& rules,
                                       const Change& change) {
  for (const ReferenceRule& rule : rules.references) {
    const Variant* value = FindValue(change.after, rule.column);
    if (!value || value->IsNull()) continue;
    if (!Exists(transaction, rule.table, {&rule.tableColumn, 1}, {*value})) {
      return Refused(Sentence(rule.sentence, change));
    }
  }
  return std::nullopt;
}

/// What the first row that uses `value` shows of itself; empty when there is none.
std::optional<std::string> FirstUse(Transaction& transaction, const UsedByRule& rule,
                                    const Variant& value) {
  const std::string shown(rule.shows.empty() ? rule.tableColumn : rule.shows);
  const std::string text = "select min(" + shown + ") from " + std::string(rule.table) + " where " +
                           std::string(rule.tableColumn) + " = ?1";
  const auto found =
      transaction.Query(Select(text, {value}, {{"Shown", rule.shownKind, kLongestShown}}));
  if (!found) {
    spdlog::error("looking for a broken rule: {}", found.GetFailure().text);
    return std::nullopt;
  }
  const Variant first = found->At(0, "Shown");
  return first.IsNull() ? std::nullopt : std::optional(first.ToText());
}

std::optional<Failure> BrokenUse(Transaction& transaction, const WriteRules& rules,
                                 const Change& change) {
  Change asItWas = change;
  asItWas.after.clear();
  for (const UsedByRule& rule : rules.usedBy) {
    const Variant* value = FindValue(change.before, rule.column);
    const auto used = value ? FirstUse(transaction, rule, *value) : std::nullopt;
    if (!used) continue;
    asItWas.before.push_back({"used", *used});
    return Refused(Sentence(rule.sentence, asItWas));
  }
  return std::nullopt;
}

}  // namespace

Failure ExplainRefusal(Transaction& transaction, const ProviderDef& provider,
                       const WriteRules& rules, const Change& change, EngineErrorKind kind) {
  std::optional<Failure> broken;
  if (kind == EngineErrorKind::Unique) {
    broken = BrokenUnique(transaction, provider, rules, change);
    if (!broken) broken = Refused("Вече има такъв запис. Отворете го или въведете друг.");
  } else if (kind == EngineErrorKind::ForeignKey) {
    if (change.kind != ChangeKind::Delete) broken = BrokenReference(transaction, rules, change);
    if (!broken && change.kind != ChangeKind::Insert) {
      broken = BrokenUse(transaction, rules, change);
    }
    if (!broken && change.kind == ChangeKind::Delete) {
      broken = Refused("Записът се ползва от други данни и не може да бъде изтрит.");
    }
    if (!broken) broken = Refused("Избраната стойност вече не съществува. Изберете друга.");
  }
  if (broken) return *broken;
  return Refused("Данните противоречат на правилата на базата и не са записани.");
}

Failure ExplainConflict(const ProviderDef& provider, const WriteRules& rules, const Change& change,
                        const ChangeOutcome& outcome) {
  const NamedValues& present = outcome.present;
  const std::string who =
      outcome.changedBy.empty() ? "друг потребител" : "„" + outcome.changedBy + "“";
  if (present.empty())
    return {FailureKind::Conflict, "Редът междувременно е изтрит от " + who + "."};
  std::string fields;
  for (const NamedValue& old : change.before) {
    const Variant* now = FindValue(present, old.name);
    const FieldDef* field = FindField(provider, old.name);
    if (!now || !field || *now == old.value) continue;
    const std::string word = rules.word ? rules.word(old.name, *now) : std::string();
    fields += (fields.empty() ? " Поле „" : ", поле „") +
              std::string(field->label.empty() ? field->name : field->label) + "“ вече е " +
              (now->IsNull() ? "празно" : "„" + (word.empty() ? now->ToText() : word) + "“");
  }
  if (!fields.empty()) fields += '.';
  return {FailureKind::Conflict, "Редът междувременно е променен от " + who + "." + fields};
}

}  // namespace orvane::server
