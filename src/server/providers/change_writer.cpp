#include "server/providers/change_writer.h"

#include <algorithm>

#include "packet/fold.h"
#include "server/providers/change_check.h"

namespace orvane::server {
namespace {

enum class StampValue { Login, Now };

/// Stamps that every document and register keeps alike; the others belong to moves of documents.
struct StampRule {
  std::string_view field;
  ChangeKind kind;
  StampValue value;
};
constexpr StampRule kStampRules[] = {
    {"CreatedFrom", ChangeKind::Insert, StampValue::Login},
    {"CreatedOn", ChangeKind::Insert, StampValue::Now},
    {"AmendFrom", ChangeKind::Update, StampValue::Login},
    {"AmendOn", ChangeKind::Update, StampValue::Now},
};

/// A statement that grows: texts and the parameters they name.
class Draft {
 public:
  Draft& Add(std::string_view text) {
    statement_.text += text;
    return *this;
  }
  /// A parameter's place, as "?3".
  Draft& Param(const Variant& value) {
    statement_.params.push_back(value);
    statement_.text += '?';
    statement_.text += std::to_string(statement_.params.size());
    return *this;
  }
  Statement Finish() { return std::move(statement_); }

 private:
  Statement statement_;
};

Variant FoldOf(const Variant& value) {
  const std::string* text = value.AsString();
  return text ? Variant(Fold(*text)) : Variant();
}

/// The columns a change writes: its new values and the folds beside them.
NamedValues WrittenColumns(const ProviderDef& provider, const NamedValues& after) {
  NamedValues columns;
  for (const NamedValue& value : after) {
    columns.push_back(value);
    const FieldDef* field = FindField(provider, value.name);
    if (field && field->Is(Folded)) columns.push_back({"Fold" + value.name, FoldOf(value.value)});
  }
  return columns;
}

bool IsKey(const ProviderDef& provider, std::string_view name) {
  const FieldDef* field = FindField(provider, name);
  return field && field->Is(Key);
}

/// Keys compare plainly, so that their index serves; the other old values may be null.
void AddWhere(Draft& draft, const ProviderDef& provider, const NamedValues& before, bool keysOnly) {
  std::string_view link = " where ";
  for (const NamedValue& value : before) {
    const bool key = IsKey(provider, value.name);
    if (keysOnly && !key) continue;
    draft.Add(link).Add(value.name).Add(key ? " = " : " is not distinct from ").Param(value.value);
    link = " and ";
  }
}

Statement InsertStatement(const ProviderDef& provider, const NamedValues& after) {
  const NamedValues columns = WrittenColumns(provider, after);
  Draft draft;
  draft.Add("insert into ").Add(provider.table).Add(" (");
  std::string_view link;
  for (const NamedValue& column : columns) {
    draft.Add(link).Add(column.name);
    link = ", ";
  }
  draft.Add(") values (");
  link = {};
  for (const NamedValue& column : columns) {
    draft.Add(link).Param(column.value);
    link = ", ";
  }
  draft.Add(")");
  return draft.Finish();
}

Statement UpdateStatement(const ProviderDef& provider, const Change& change) {
  NamedValues columns = WrittenColumns(provider, change.after);
  if (columns.empty()) {  // nothing to write, yet the row must be there as it was
    const auto key = std::find_if(change.before.begin(), change.before.end(),
                                  [&](const NamedValue& v) { return IsKey(provider, v.name); });
    columns.push_back(*key);
  }
  Draft draft;
  draft.Add("update ").Add(provider.table).Add(" set ");
  std::string_view link;
  for (const NamedValue& column : columns) {
    draft.Add(link).Add(column.name).Add(" = ").Param(column.value);
    link = ", ";
  }
  AddWhere(draft, provider, change.before, false);
  return draft.Finish();
}

std::string RowKey(const ProviderDef& provider, const Change& change) {
  const NamedValues& values = change.kind == ChangeKind::Insert ? change.after : change.before;
  std::string key;
  for (const FieldDef& field : provider.fields) {
    if (!field.Is(Key)) continue;
    if (!key.empty()) key += '/';
    if (const Variant* value = FindValue(values, field.name)) key += value->ToText();
  }
  return key;
}

std::string_view KindLetter(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::Insert:
      return "I";
    case ChangeKind::Update:
      return "U";
    case ChangeKind::Delete:
      break;
  }
  return "D";
}

Variant AsHistory(const Variant* value) {
  return value && !value->IsNull() ? Variant(value->ToText()) : Variant();
}

}  // namespace

void StampChange(const ProviderDef& provider, const Writer& writer, PreparedChange& prepared) {
  for (const StampRule& rule : kStampRules) {
    const FieldDef* field = FindField(provider, rule.field);
    if (rule.kind != prepared.change.kind || !field || !field->Is(Stamped)) continue;
    const Variant value =
        rule.value == StampValue::Login ? Variant(writer.login) : Variant(writer.now);
    prepared.change.after.push_back({std::string(field->name), value});
    prepared.filled.push_back({std::string(field->name), value});
  }
}

Statement WriteStatement(const ProviderDef& provider, const Change& change) {
  if (change.kind == ChangeKind::Insert) return InsertStatement(provider, change.after);
  if (change.kind == ChangeKind::Update) return UpdateStatement(provider, change);
  Draft draft;
  draft.Add("delete from ").Add(provider.table);
  AddWhere(draft, provider, change.before, false);
  return draft.Finish();
}

Statement HistoryStatement(const ProviderDef& provider, const Writer& writer,
                           const Change& change) {
  Draft draft;
  draft.Add(
      "insert into History (ColumnName, OldValue, NewValue, TableName, RowKey, ChangedBy, "
      "ChangedOn, MachineName, Kind) values ");
  const VariantArray common = {
      Variant(provider.table), RowKey(provider, change), writer.login, writer.now,
      writer.machineName,      KindLetter(change.kind)};
  const NamedValues& columns = change.kind == ChangeKind::Delete ? change.before : change.after;
  std::string_view link;
  for (const NamedValue& column : columns) {
    draft.Add(link).Add("(").Param(column.name);
    draft.Add(", ").Param(AsHistory(FindValue(change.before, column.name)));
    draft.Add(", ").Param(AsHistory(FindValue(change.after, column.name)));
    for (const Variant& value : common)
      draft.Add(", ").Param(value);
    draft.Add(")");
    link = ", ";
  }
  return draft.Finish();
}

Statement PresentRow(const ProviderDef& provider, const Change& change) {
  Draft draft;
  draft.Add("select ");
  std::vector<ResultColumn> columns;
  std::string_view link;
  for (const FieldDef& field : provider.fields) {
    if (field.Is(Joined)) continue;
    draft.Add(link).Add(field.name);
    link = ", ";
    columns.push_back({std::string(field.name), field.kind, field.size});
  }
  draft.Add(" from ").Add(provider.table);
  AddWhere(draft, provider, change.before, true);
  Statement statement = draft.Finish();
  statement.columns = std::move(columns);
  return statement;
}

Statement LastChange(const ProviderDef& provider, const Change& change) {
  return {
      "select coalesce(u.UserName, h.ChangedBy), h.ChangedOn from History h left join WSysUsers u "
      "on u.ShortName = h.ChangedBy where h.TableName = ?1 and h.RowKey = ?2 order by h.Id desc "
      "limit 1",
      {Variant(provider.table), RowKey(provider, change)},
      {{"UserName", ValueKind::String, 60}, {"ChangedOn", ValueKind::Stamp, 0}}};
}

NamedValues RowValues(const DataPacket& packet, std::size_t row) {
  NamedValues values;
  for (std::size_t i = 0; i < packet.columns.size(); ++i) {
    values.push_back({packet.columns[i].name, packet.At(row, i)});
  }
  return values;
}

}  // namespace orvane::server
