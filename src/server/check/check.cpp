#include "server/check/check.h"

#include <set>
#include <tuple>

#include "packet/fold.h"
#include "server/check/check_documents.h"
#include "server/check/check_waiting.h"
#include "server/classes/server_classes.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/sessions.h"
#include "server/sessions/statements.h"

namespace orvane {
namespace {

using Findings = std::vector<std::string>;

Answer<DataPacket> Read(Database& database, const Statement& statement) {
  auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "checking");
  return std::move(packets->front());
}

/// A text column and its fold: the table must keep what Fold says.
struct FoldedColumn {
  std::string table;
  std::string column;
  bool operator<(const FoldedColumn& other) const {
    return std::tie(table, column) < std::tie(other.table, other.column);
  }
};

std::set<FoldedColumn> FoldedColumns() {
  std::set<FoldedColumn> columns = {{"WSysUsers", "ShortName"},
                                    {"WSysUsers", "UserName"},
                                    {"WSysUsers", "UserName2"},
                                    {"Employees", "Name"},
                                    {"Employees", "Name2"}};
  for (const ServerClass& serverClass : MakeServerClasses()) {
    for (const ProviderRow& provider : serverClass.Providers()) {
      for (const FieldDef& field : provider.def.fields) {
        if (!provider.def.Writable() || !field.Is(Folded)) continue;
        columns.insert({std::string(provider.def.table), std::string(field.name)});
      }
    }
  }
  return columns;
}

Answer<Done> CheckFolds(Database& database, Findings& findings) {
  for (const FoldedColumn& folded : FoldedColumns()) {
    const std::string sql =
        "select " + folded.column + ", Fold" + folded.column + " from " + folded.table;
    const auto rows = Read(
        database, Select(sql, {}, {{"Text", ValueKind::Memo, 0}, {"Folded", ValueKind::Memo, 0}}));
    if (!rows) return rows.GetFailure();
    for (std::size_t row = 0; row < rows->rowCount; ++row) {
      const Variant text = rows->At(row, "Text");
      const Variant expected = text.IsNull() ? text : Variant(Fold(text.ToText()));
      if (rows->At(row, "Folded") == expected) continue;
      findings.push_back(folded.table + "." + folded.column + ": „" + text.ToText() +
                         "“ се търси под друг текст.");
    }
  }
  return Done{};
}

/// Every row that the query answers is a finding; {} in the sentence is its first column.
struct RowCheck {
  std::string_view sql;
  std::string_view before;
  std::string_view after;
};
constexpr RowCheck kRowChecks[] = {
    {"select Login from Employees where Login is not null group by Login having count(*) > 1",
     "Потребител „", "“ има повече от един запис в таблица „Служители“."},
    {"select distinct Login from UserRights where Rights < 0 or Rights > 15", "Правата на „",
     "“ съдържат непознати битове."},
    {"select d.Chief from Department d join WSysUsers u on u.ShortName = d.Chief where u.Blocked "
     "<> 0",
     "Началникът „", "“ на дирекция е блокиран потребител."},
    {"select distinct cast(a.StructDepId as varchar(10)) from StructDepDates a join StructDepDates"
     " b on b.StructDepId = a.StructDepId and b.FromDate > a.FromDate"
     " and (a.ToDate is null or b.FromDate <= a.ToDate)",
     "Периодите на заместниците в структурна единица ", " се застъпват."},
    {"select cast(IdNumber as varchar(10)) from StructureDeputies"
     " where (CostCenter is not null) <> (StructuralUnitType = 1)"
     " or (Section is not null) <> (StructuralUnitType = 2)"
     " or (Department is not null) <> (StructuralUnitType = 3)",
     "Структурна единица ", " няма точно кода на своя тип."},
};

Answer<Done> CheckRows(Database& database, Findings& findings) {
  for (const RowCheck& check : kRowChecks) {
    const auto rows = Read(database, Select(check.sql, {}, {{"Login", ValueKind::String, 10}}));
    if (!rows) return rows.GetFailure();
    for (std::size_t row = 0; row < rows->rowCount; ++row) {
      findings.push_back(std::string(check.before) + rows->At(row, "Login").ToText() +
                         std::string(check.after));
    }
  }
  return Done{};
}

/// A setting of PostgreSQL and the value with which acknowledged is not on disk.
struct UnsafeSetting {
  std::string_view name;
  std::string_view unsafe;
};
constexpr UnsafeSetting kUnsafe[] = {
    {"fsync", "off"}, {"synchronous_commit", "off"}, {"full_page_writes", "off"}};

}  // namespace

Answer<std::vector<std::string>> CheckDatabase(Database& database, Stamp now,
                                               DocumentOptions options) {
  Findings findings;
  if (const auto checked = CheckFolds(database, findings); !checked) return checked.GetFailure();
  if (const auto checked = CheckRows(database, findings); !checked) return checked.GetFailure();
  auto documents = CheckDocuments(database);
  if (!documents) return documents.GetFailure();
  findings.insert(findings.end(), documents->begin(), documents->end());
  const auto company = ReadCompany(database);
  if (!company) return company.GetFailure();
  const auto stuck = CheckWaiting(database, company->zone.DayOf(now), options);
  if (!stuck) return stuck.GetFailure();
  findings.insert(findings.end(), stuck->begin(), stuck->end());
  return findings;
}

Answer<Done> CheckDurability(Database& database) {
  if (database.Kind() != Engine::Postgres) return Done{};  // the engine opens it so itself
  for (const UnsafeSetting& setting : kUnsafe) {
    const auto value = Read(database, Select("select current_setting(?1)", {setting.name},
                                             {{"Value", ValueKind::Memo, 0}}));
    if (!value) return value.GetFailure();
    if (value->At(0, "Value").ToText() != setting.unsafe) continue;
    return Refused("Настройката „" + std::string(setting.name) + " = " +
                   std::string(setting.unsafe) +
                   "“ на PostgreSQL допуска загуба на потвърдени данни. Включете я, или пуснете "
                   "сървъра с --unsafe-durability само за проби.");
  }
  return Done{};
}

}  // namespace orvane
