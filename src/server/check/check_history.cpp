#include "server/check/check_history.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <set>

#include "server/classes/server_classes.h"
#include "server/orders/order_head.h"
#include "server/providers/change_check.h"
#include "server/requests/request_head.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

using Findings = std::vector<std::string>;

/// Entries of history that are read together, and rows that are.
constexpr int kEntriesTogether = 1000;
constexpr std::size_t kRowsTogether = 64;
constexpr std::size_t kMostFindings = 10;

/// What commands of the administrator write beside the providers. Of users and employees history
/// tells that they are there.
constexpr FieldDef kUserFields[] = {String("ShortName", 10, Key), Bit("Blocked")};
constexpr FieldDef kRightFields[] = {String("Login", 10, Key), Int32("Point", Key),
                                     Int32("Rights")};
constexpr FieldDef kEmployeeFields[] = {Code19("Employee", Key)};
constexpr FieldDef kParameterFields[] = {Int32("ParamGroup", Key), Int32("Number", Key),
                                         Memo("Value")};
constexpr ProviderDef kOfCommands[] = {{"", "WSysUsers", kUserFields},
                                       {"", "UserRights", kRightFields},
                                       {"", "Employees", kEmployeeFields},
                                       {"", "Params", kParameterFields}};

/// A table that history tells of.
struct ToldTable {
  std::vector<FieldDef> fields;
  std::set<std::string> defaulted;  ///< small letters: columns that the engine fills by itself
  std::string_view only = {};       ///< condition of the entries that count

  std::vector<FieldDef> Keys() const {
    std::vector<FieldDef> keys;
    std::copy_if(fields.begin(), fields.end(), std::back_inserter(keys),
                 [](const FieldDef& field) { return field.Is(Key); });
    return keys;
  }
  const FieldDef* Find(std::string_view name) const { return FindField({"", "", fields}, name); }
};
using ToldTables = std::map<std::string, ToldTable>;

struct Entry {
  std::int64_t id = 0;
  std::string key;
  std::string column;
  Variant value;
  std::string kind;
  Stamp on;
};

/// What the entries of a row come to.
struct Story {
  bool fromBirth = false;  ///< its insertion is told
  bool deleted = false;
  NamedValues values;  ///< the texts that history keeps
};
using Stories = std::map<std::string, Story>;

void AddFields(ToldTables& tables, const ProviderDef& def) {
  ToldTable& table = tables[std::string(def.table)];
  for (const FieldDef& field : def.fields) {
    if (!field.Is(Joined) && !table.Find(field.name)) table.fields.push_back(field);
  }
}

ToldTables AllToldTables() {
  ToldTables tables;
  for (const ServerClass& serverClass : MakeServerClasses()) {
    for (const ProviderRow& provider : serverClass.Providers()) {
      if (provider.def.Writable()) AddFields(tables, provider.def);
    }
  }
  for (const StoredDocument* document : {&StoredRequest(), &StoredOrder()}) {
    for (const ProviderDef& part : {document->head, document->rows, document->approvals})
      AddFields(tables, part);
  }
  for (const ProviderDef& def : kOfCommands)
    AddFields(tables, def);
  // A user's rights go with the user.
  tables["UserRights"].only =
      " and exists (select 1 from WSysUsers u where"
      " substr(RowKey, 1, length(u.ShortName) + 1) = u.ShortName || '/')";
  return tables;
}

std::string Small(std::string text) {
  for (char& c : text)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

/// A part of a row's key as the table keeps it; null when the text is none.
Variant KeyValue(ValueKind kind, const std::string& text) {
  if (kind == ValueKind::String || kind == ValueKind::Memo) return text;
  if (kind == ValueKind::Date) {
    const auto date = Date::Parse(text);
    return date ? Variant(*date) : Variant();
  }
  const auto number = Decimal::Parse(text);
  const auto kept = number ? Variant(*number).As(kind) : Answer<Variant>(Variant());
  return kept ? *kept : Variant();
}

class Replay {
 public:
  Replay(Database& database, std::string name, const ToldTable& table, Findings& findings)
      : database_(database),
        name_(std::move(name)),
        table_(table),
        keys_(table.Keys()),
        findings_(findings) {}

  Answer<Done> Run();

 private:
  Answer<DataPacket> Read(const Statement& statement);
  Answer<std::vector<Entry>> Entries(const std::string& where, VariantArray params);
  Answer<std::set<std::string>> MovedKeys();
  void Take(std::span<const Entry> entries, Stories& stories) const;
  std::vector<std::string> PartsOf(const std::string& key) const;
  std::string KeyAfter(const std::string& key, std::span<const Entry> change) const;
  Statement PresentOf(const std::string& key) const;
  Answer<Done> Compare(const Stories& stories);
  void CompareRow(const std::string& key, const Story& story, const DataPacket& present);
  bool IsTold(const FieldDef& field, const Variant& told, const Variant& present) const;
  void Tell(const std::string& sentence);

  Database& database_;
  const std::string name_;
  const ToldTable& table_;
  const std::vector<FieldDef> keys_;
  Findings& findings_;
  std::size_t told_ = 0;
};

Answer<DataPacket> Replay::Read(const Statement& statement) {
  auto packets = database_.ReadSnapshot({&statement, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "replaying history");
  return std::move(packets->front());
}

Answer<std::vector<Entry>> Replay::Entries(const std::string& where, VariantArray params) {
  params.insert(params.begin(), name_);
  const auto found =
      Read(Select("select Id, RowKey, ColumnName, NewValue, Kind, ChangedOn from History where "
                  "TableName = ?1" +
                      std::string(table_.only) + " and " + where,
                  std::move(params),
                  {{"Id", ValueKind::Code, 0},
                   {"RowKey", ValueKind::Memo, 0},
                   {"ColumnName", ValueKind::Memo, 0},
                   {"NewValue", ValueKind::Memo, 0},
                   {"Kind", ValueKind::Memo, 0},
                   {"ChangedOn", ValueKind::Stamp, 0}}));
  if (!found) return found.GetFailure();
  std::vector<Entry> entries;
  for (std::size_t row = 0; row < found->rowCount; ++row) {
    entries.push_back({found->At(row, "Id").AsInt().value_or(0), found->At(row, "RowKey").ToText(),
                       found->At(row, "ColumnName").ToText(), found->At(row, "NewValue"),
                       found->At(row, "Kind").ToText(),
                       found->At(row, "ChangedOn").AsStamp().value_or(Stamp{})});
  }
  return entries;
}

/// Keys under which a row stood or came to stand when its key was changed.
Answer<std::set<std::string>> Replay::MovedKeys() {
  std::string columns;
  for (const FieldDef& key : keys_)
    columns += (columns.empty() ? "'" : ", '") + std::string(key.name) + "'";
  const auto moves = Entries("Kind = 'U' and ColumnName in (" + columns + ") order by Id", {});
  if (!moves) return moves.GetFailure();
  std::set<std::string> moved;
  for (std::size_t i = 0; i < moves->size();) {
    std::size_t end = i + 1;
    while (end < moves->size() && (*moves)[end].key == (*moves)[i].key &&
           (*moves)[end].on == (*moves)[i].on)
      ++end;
    moved.insert((*moves)[i].key);
    moved.insert(KeyAfter((*moves)[i].key, {&(*moves)[i], end - i}));
    i = end;
  }
  return moved;
}

/// Entries of one change stand together: those of one row, kind and moment.
void Replay::Take(std::span<const Entry> entries, Stories& stories) const {
  for (std::size_t i = 0; i < entries.size();) {
    const Entry& first = entries[i];
    std::size_t end = i;
    while (end < entries.size() && entries[end].key == first.key &&
           entries[end].kind == first.kind && entries[end].on == first.on)
      ++end;
    Story story = std::move(stories[first.key]);
    stories.erase(first.key);
    // An insertion may go on from the portion before.
    const bool begins = first.kind == "I" && !story.fromBirth;
    if (begins || first.kind == "D") story = {begins, false, {}};
    story.deleted = first.kind == "D";
    for (std::size_t j = i; j < end && !story.deleted; ++j) {
      const auto known =
          std::find_if(story.values.begin(), story.values.end(),
                       [&](const NamedValue& value) { return value.name == entries[j].column; });
      if (known != story.values.end()) {
        known->value = entries[j].value;
      } else {
        story.values.push_back({entries[j].column, entries[j].value});
      }
    }
    const std::span<const Entry> change = entries.subspan(i, end - i);
    stories[first.kind == "U" ? KeyAfter(first.key, change) : first.key] = std::move(story);
    i = end;
  }
}

/// Only the first part may hold a slash: of several, it alone can be a text.
std::vector<std::string> Replay::PartsOf(const std::string& key) const {
  std::vector<std::string> parts;
  std::string rest = key;
  while (parts.size() + 1 < keys_.size()) {
    const std::size_t slash = rest.rfind('/');
    if (slash == std::string::npos) break;
    parts.insert(parts.begin(), rest.substr(slash + 1));
    rest.erase(slash);
  }
  parts.insert(parts.begin(), rest);
  return parts;
}

std::string Replay::KeyAfter(const std::string& key, std::span<const Entry> change) const {
  std::vector<std::string> parts = PartsOf(key);
  for (const Entry& entry : change) {
    for (std::size_t i = 0; i < keys_.size() && i < parts.size(); ++i) {
      if (SameName(keys_[i].name, entry.column)) parts[i] = entry.value.ToText();
    }
  }
  std::string after;
  for (const std::string& part : parts)
    after += (after.empty() ? "" : "/") + part;
  return after;
}

Statement Replay::PresentOf(const std::string& key) const {
  Statement statement;
  for (const FieldDef& field : table_.fields) {
    statement.text += (statement.text.empty() ? "select " : ", ") + std::string(field.name);
    statement.columns.push_back({std::string(field.name), field.kind, field.size});
  }
  statement.text += " from " + name_ + " where ";
  const std::vector<std::string> parts = PartsOf(key);
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    statement.text +=
        (i == 0 ? "" : " and ") + std::string(keys_[i].name) + " = ?" + std::to_string(i + 1);
    statement.params.push_back(i < parts.size() ? KeyValue(keys_[i].kind, parts[i]) : Variant());
  }
  return statement;
}

Answer<Done> Replay::Compare(const Stories& stories) {
  for (auto story = stories.begin(); story != stories.end();) {
    std::vector<Statement> statements;
    auto end = story;
    for (; end != stories.end() && statements.size() < kRowsTogether; ++end)
      statements.push_back(PresentOf(end->first));
    const auto packets = database_.ReadSnapshot(statements);
    if (!packets) return ToFailure(packets.GetFailure(), "replaying history");
    for (const DataPacket& packet : *packets) {
      CompareRow(story->first, story->second, packet);
      ++story;
    }
  }
  return Done{};
}

void Replay::CompareRow(const std::string& key, const Story& story, const DataPacket& present) {
  const std::string row = "ред „" + key + "“";
  if (present.rowCount == 0) {
    const bool empty = std::all_of(story.values.begin(), story.values.end(),
                                   [](const NamedValue& value) { return value.value.IsNull(); });
    if (!story.deleted && !empty) Tell(row + " го няма, а според историята е там.");
    return;
  }
  if (story.deleted) return Tell(row + " е там, а според историята е изтрит.");
  for (const FieldDef& field : table_.fields) {
    const Variant now = present.At(0, field.name);
    const Variant* told = FindValue(story.values, field.name);
    const std::string place = row + ", " + std::string(field.name) + ": „" + now.ToText() + "“";
    if (told && !IsTold(field, *told, now)) {
      Tell(place + ", а според историята „" + told->ToText() + "“.");
    }
    if (told || !story.fromBirth || now.IsEmpty() || field.Is(Key)) continue;
    if (table_.defaulted.count(Small(std::string(field.name))) > 0) continue;
    Tell(place + ", за което историята не разказва.");
  }
}

/// Numbers are told with the digits they were written with.
bool Replay::IsTold(const FieldDef& field, const Variant& told, const Variant& present) const {
  if (told.IsNull() || present.IsNull()) return told.IsNull() && present.IsNull();
  const std::string text = told.ToText();
  if (text == present.ToText()) return true;
  if (field.kind == ValueKind::Amount || field.kind == ValueKind::Rate) {
    const auto amount = Decimal::Parse(text);
    return amount && Variant(*amount) == present;
  }
  if (field.kind == ValueKind::Double) {
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && present.AsDouble() == number;
  }
  return false;
}

void Replay::Tell(const std::string& sentence) {
  if (++told_ <= kMostFindings) findings_.push_back("Таблица " + name_ + ", " + sentence);
}

Answer<Done> Replay::Run() {
  const auto moved = MovedKeys();
  if (!moved) return moved.GetFailure();
  std::vector<Entry> ofMoved;
  for (const std::string& key : *moved) {
    auto entries = Entries("RowKey = ?2 order by Id", {key});
    if (!entries) return entries.GetFailure();
    ofMoved.insert(ofMoved.end(), entries->begin(), entries->end());
  }
  std::sort(ofMoved.begin(), ofMoved.end(),
            [](const Entry& left, const Entry& right) { return left.id < right.id; });
  Stories stories;
  Take(ofMoved, stories);
  if (const auto compared = Compare(stories); !compared) return compared.GetFailure();
  stories.clear();
  std::string last;  // the row whose entries may go on with the next portion
  std::int64_t lastId = 0;
  for (bool more = true; more;) {
    auto entries = Entries(
        "(RowKey, Id) > (?2, ?3) order by RowKey, Id limit " + std::to_string(kEntriesTogether),
        {last, lastId});
    if (!entries) return entries.GetFailure();
    more = !entries->empty();
    if (more) {
      last = entries->back().key;
      lastId = entries->back().id;
    }
    std::erase_if(*entries, [&](const Entry& entry) { return moved->count(entry.key) > 0; });
    Take(*entries, stories);
    auto open = more ? stories.extract(last) : Stories::node_type();
    if (const auto compared = Compare(stories); !compared) return compared.GetFailure();
    stories.clear();
    if (open) stories.insert(std::move(open));
  }
  if (told_ > kMostFindings) {
    findings_.push_back("Таблица " + name_ + ": още " + std::to_string(told_ - kMostFindings) +
                        " разлики с историята.");
  }
  return Done{};
}

/// Columns that the engine fills where an insert does not name them.
Answer<Done> ReadDefaults(Database& database, ToldTables& tables) {
  const bool sqlite = database.Kind() == Engine::Sqlite;
  const Statement select = Select(
      sqlite ? "select lower(m.name), lower(p.name) from sqlite_master m, pragma_table_info(m.name)"
               " p where m.type = 'table' and p.dflt_value is not null"
             : "select table_name::text, column_name::text from information_schema.columns where"
               " table_schema = current_schema() and column_default is not null",
      {}, {{"TableName", ValueKind::Memo, 0}, {"ColumnName", ValueKind::Memo, 0}});
  const auto found = database.ReadSnapshot({&select, 1});
  if (!found) return ToFailure(found.GetFailure(), "reading defaults");
  for (std::size_t row = 0; row < found->front().rowCount; ++row) {
    const std::string table = found->front().At(row, "TableName").ToText();
    for (auto& [name, told] : tables) {
      if (Small(name) == table)
        told.defaulted.insert(found->front().At(row, "ColumnName").ToText());
    }
  }
  return Done{};
}

}  // namespace

Answer<std::vector<std::string>> CheckHistory(Database& database) {
  ToldTables tables = AllToldTables();
  if (const auto read = ReadDefaults(database, tables); !read) return read.GetFailure();
  Findings findings;
  for (const auto& [name, table] : tables) {
    const auto replayed = Replay(database, name, table, findings).Run();
    if (!replayed) return replayed.GetFailure();
  }
  return findings;
}

}  // namespace orvane::server
