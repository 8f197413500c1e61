#include "server/check/check_parts.h"

#include <algorithm>

#include "server/catalogue/catalogue.h"
#include "server/schema/migrate.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

/// A text column with an index of trigrams.
struct Indexed {
  std::string index;
  std::string table;
  std::string key;
  std::string fold;
};

std::vector<Indexed> IndexedColumns() {
  std::vector<Indexed> indexed;
  for (const CatalogueTable& table : SearchCatalogue()) {
    for (const CatalogueColumn& column : table.columns) {
      if (column.trigrams.empty()) continue;
      indexed.push_back({std::string(column.trigrams), std::string(table.stored),
                         std::string(table.columns.front().name),
                         "Fold" + std::string(column.name)});
    }
  }
  return indexed;
}

std::string NotOfTheRows(const Indexed& one, const std::string& remedy) {
  return one.table + ": част от име не намира всички редове. Изпълнете върху базата „" + remedy +
         "“.";
}

/// The engine compares a whole index with its table; nothing is written.
Answer<Done> CheckWhole(Database& database, const Indexed& one,
                        std::vector<std::string>& findings) {
  auto transaction = database.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "checking parts of names");
  const auto compared = (*transaction)
                            ->Execute(Command("insert into " + one.index + " (" + one.index +
                                                  ", rank) values ('integrity-check', 1)",
                                              {}));
  if (compared) return Done{};
  if (compared.GetFailure().kind != EngineErrorKind::Other) {
    return ToFailure(compared.GetFailure(), "checking parts of names");
  }
  findings.push_back(
      NotOfTheRows(one, "insert into " + one.index + " (" + one.index + ") values ('rebuild')"));
  return Done{};
}

/// Names that are not found by themselves. Any plan would find them, so all others are forbidden;
/// an index does not know names without a word of three letters.
Answer<Done> CheckSome(Database& database, const Indexed& one, std::vector<std::string>& findings) {
  const std::string lost =
      "with chosen as materialized (select " + one.key + " as Id, " + one.fold + " as Name from " +
      one.table + " where " + one.fold +
      " collate \"default\" ~ '[[:alnum:]]{3}' order by hashint8(" + one.key +
      ") limit 500) select count(*) from chosen s where not exists (select 1 from " + one.table +
      " t where t." + one.fold +
      " like '%' || replace(replace(replace(s.Name, '\\', '\\\\'), '%', '\\%'), '_', '\\_') || '%'"
      " and t." +
      one.key + " + 0 = s.Id)";
  auto transaction = database.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "checking parts of names");
  const Statement steps[] = {Command("set local enable_seqscan = off", {}),
                             Command("set local enable_indexscan = off", {}),
                             Command("set local enable_indexonlyscan = off", {}),
                             Select(lost, {}, {{"Lost", ValueKind::Code, 0}})};
  const auto packets = (*transaction)->QueryAll(steps);
  if (!packets) return ToFailure(packets.GetFailure(), "checking parts of names");
  if (packets->back().At(0, "Lost") == Variant(0)) return Done{};
  findings.push_back(NotOfTheRows(one, "reindex index " + one.index));
  return Done{};
}

}  // namespace

Answer<std::vector<std::string>> CheckParts(Database& database) {
  std::vector<std::string> findings;
  const auto slow = WhatSlowsDown(database);
  if (!slow) return slow.GetFailure();
  if (!slow->empty()) return findings;  // there are no indexes
  std::string before;
  for (const Indexed& one : IndexedColumns()) {
    const bool whole = database.Kind() == Engine::Sqlite;
    if (whole && one.index == before) continue;  // one index of both names
    before = one.index;
    const auto checked =
        whole ? CheckWhole(database, one, findings) : CheckSome(database, one, findings);
    if (!checked) return checked.GetFailure();
  }
  return findings;
}

}  // namespace orvane::server
