#include "server/check/check.h"

#include <algorithm>
#include <map>

#include "packet/fold.h"
#include "server/catalogue/catalogue.h"
#include "server/check/check_documents.h"
#include "server/check/check_history.h"
#include "server/check/check_parts.h"
#include "server/check/check_waiting.h"
#include "server/classes/server_classes.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/sessions.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

using Findings = std::vector<std::string>;

Answer<DataPacket> Read(Database& database, const Statement& statement) {
  auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "checking");
  return std::move(packets->front());
}

constexpr std::size_t kMostFindings = 10;

/// A text column beside which the table keeps its fold.
struct FoldedColumn {
  std::string table;
  std::string column;
};

/// What the database calls them in small letters, as it is written elsewhere.
std::string Written(const std::map<std::string, std::string>& names, const std::string& small) {
  const auto found = names.find(small);
  return found == names.end() ? small : found->second;
}

std::map<std::string, std::string> WrittenNames() {
  std::map<std::string, std::string> names;
  const auto add = [&](std::string_view name) { names.emplace(Fold(name), name); };
  for (const CatalogueTable& table : SearchCatalogue()) {
    add(table.stored);
    for (const CatalogueColumn& column : table.columns)
      add(column.name);
  }
  for (const ServerClass& serverClass : MakeServerClasses()) {
    for (const ProviderRow& provider : serverClass.Providers()) {
      add(provider.def.table);
      for (const FieldDef& field : provider.def.fields)
        add(field.name);
    }
  }
  return names;
}

/// Every column of the schema that has another by the name Fold<column> beside it.
Answer<std::vector<FoldedColumn>> FoldedColumns(Database& database) {
  const bool sqlite = database.Kind() == Engine::Sqlite;
  const std::string columns =
      sqlite ? "select lower(m.name) as TableName, lower(p.name) as ColumnName from sqlite_master"
               " m, pragma_table_info(m.name) p where m.type = 'table'"
             : "select table_name::text as TableName, column_name::text as ColumnName from"
               " information_schema.columns where table_schema = current_schema()";
  const auto found =
      Read(database,
           Select("with c as (" + columns +
                      ") select t.TableName, t.ColumnName from c t join c f on"
                      " f.TableName = t.TableName and f.ColumnName = 'fold' || t.ColumnName"
                      " order by 1, 2",
                  {}, {{"TableName", ValueKind::Memo, 0}, {"ColumnName", ValueKind::Memo, 0}}));
  if (!found) return found.GetFailure();
  const std::map<std::string, std::string> names = WrittenNames();
  std::vector<FoldedColumn> folded;
  for (std::size_t row = 0; row < found->rowCount; ++row) {
    folded.push_back({Written(names, found->At(row, "TableName").ToText()),
                      Written(names, found->At(row, "ColumnName").ToText())});
  }
  return folded;
}

void AddSome(Findings& findings, const DataPacket& rows, const FoldedColumn& folded) {
  const std::string place = folded.table + "." + folded.column;
  for (std::size_t row = 0; row < std::min(rows.rowCount, kMostFindings); ++row) {
    findings.push_back(place + ": „" + rows.At(row, "Text").ToText() +
                       "“ се търси под друг текст.");
  }
  if (rows.rowCount > kMostFindings) {
    findings.push_back(place + ": още " + std::to_string(rows.rowCount - kMostFindings) +
                       " текста се търсят под друг.");
  }
}

/// Condition of the rows whose fold is not that of the text. Both engines know the fold;
/// PostgreSQL's is slow, and what it does to plain Latin and Cyrillic letters other functions do as
/// well.
std::string HasWrongFold(Engine engine, const FoldedColumn& folded) {
  const std::string wrong =
      "Fold" + folded.column + " is distinct from orvane_fold(" + folded.column + ")";
  if (engine == Engine::Sqlite) return wrong;
  return "case when " + folded.column + " collate \"C\" ~ '^[ -~А-я]*$' and Fold" + folded.column +
         " = rtrim(lower(" + folded.column + ")) collate \"C\" then false else " + wrong + " end";
}

Answer<Done> CheckFolds(Database& database, Findings& findings) {
  const auto columns = FoldedColumns(database);
  if (!columns) return columns.GetFailure();
  for (const FoldedColumn& folded : *columns) {
    const auto rows =
        Read(database, Select("select " + folded.column + " from " + folded.table + " where " +
                                  HasWrongFold(database.Kind(), folded) + " order by 1",
                              {}, {{"Text", ValueKind::Memo, 0}}));
    if (!rows) return rows.GetFailure();
    AddSome(findings, *rows, folded);
  }
  return Done{};
}

/// Lists keep the folds of their entries' names.
Answer<Done> CheckListedNames(Database& database, Findings& findings) {
  for (const CatalogueTable& table : SearchCatalogue()) {
    for (const CatalogueColumn& kept : table.keptNames) {
      const FoldedColumn folded{std::string(table.stored), std::string(kept.name)};
      const auto rows = Read(
          database,
          Select("select b." + folded.column + " from " + folded.table +
                     " l join BaseSupplyList b on b.SerialNumber = l.SerialNumber where l.Fold" +
                     folded.column + " is distinct from b.Fold" + folded.column + " order by 1",
                 {}, {{"Text", ValueKind::Memo, 0}}));
      if (!rows) return rows.GetFailure();
      AddSome(findings, *rows, folded);
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
  if (const auto checked = CheckListedNames(database, findings); !checked) {
    return checked.GetFailure();
  }
  if (const auto checked = CheckRows(database, findings); !checked) return checked.GetFailure();
  for (const auto further : {&CheckParts, &CheckDocuments, &CheckHistory}) {
    auto found = further(database);
    if (!found) return found.GetFailure();
    findings.insert(findings.end(), found->begin(), found->end());
  }
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

}  // namespace orvane::server
