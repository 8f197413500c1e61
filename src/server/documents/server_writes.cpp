#include "server/documents/server_writes.h"

#include <algorithm>

#include "server/providers/change_check.h"

namespace orvane::server {

void ServerWrites::Add(const ProviderDef& table, const Change& change) {
  statements_.push_back(WriteStatement(table, change));
  touchesOneRow_.push_back(true);
  statements_.push_back(HistoryStatement(table, writer_, change));
  touchesOneRow_.push_back(false);
}

void ServerWrites::Insert(const ProviderDef& table, const NamedValues& values) {
  Add(table, {ChangeKind::Insert, {}, {}, values});
}

void ServerWrites::Update(const ProviderDef& table, const NamedValues& row,
                          const NamedValues& values) {
  Change change{ChangeKind::Update, {}, KeyOf(table, row), {}};
  for (const NamedValue& value : values) {
    const Variant* present = FindValue(row, value.name);
    if (present && *present == value.value) continue;
    change.before.push_back({value.name, present ? *present : Variant()});
    change.after.push_back(value);
  }
  if (!change.after.empty()) Add(table, change);
}

void ServerWrites::Delete(const ProviderDef& table, const NamedValues& row) {
  Add(table, {ChangeKind::Delete, {}, row, {}});
}

void ServerWrites::Run(Statement statement) {
  statements_.push_back(std::move(statement));
  touchesOneRow_.push_back(false);
}

Answer<Done, Setback> ServerWrites::CarryOut(Transaction& transaction, std::string_view doing) {
  if (statements_.empty()) return Done{};
  const auto touched = transaction.ExecuteAll(statements_);
  if (!touched) return ToSetback(touched.GetFailure(), doing);
  for (std::size_t i = 0; i < touched->size(); ++i) {
    if (!touchesOneRow_[i] || (*touched)[i] == 1) continue;
    return Setback{{FailureKind::Conflict, "Документът междувременно е променен. Опитайте отново."},
                   false};
  }
  statements_.clear();
  touchesOneRow_.clear();
  return Done{};
}

NamedValues KeyOf(const ProviderDef& table, const NamedValues& row) {
  NamedValues key;
  for (const FieldDef& field : table.fields) {
    const Variant* value = field.Is(Key) ? FindValue(row, field.name) : nullptr;
    if (value) key.push_back({std::string(field.name), *value});
  }
  return key;
}

void SetValue(NamedValues& values, std::string_view name, const Variant& value) {
  for (NamedValue& own : values) {
    if (!SameName(own.name, name)) continue;
    own.value = value;
    return;
  }
  values.push_back({std::string(name), value});
}

NamedValues After(NamedValues row, const Change& change) {
  for (const NamedValue& value : change.after)
    SetValue(row, value.name, value.value);
  return row;
}

void Impose(PreparedChange& change, const NamedValues& present, std::string_view name,
            const Variant& value) {
  SetValue(change.filled, name, value);
  const Variant* own = FindValue(present, name);
  if (own && *own == value) {
    std::erase_if(change.change.after,
                  [&](const NamedValue& sent) { return SameName(sent.name, name); });
    return;
  }
  SetValue(change.change.after, name, value);
  if (own && !FindValue(change.change.before, name)) {
    change.change.before.push_back({std::string(name), *own});
  }
}

}  // namespace orvane::server
