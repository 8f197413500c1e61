#include "server/schema/migrate.h"

#include <algorithm>
#include <vector>

#include "packet/clock.h"
#include "server/schema/embedded_migrations.h"
#include "server/schema/postgres_extras.h"

namespace orvane::server {
namespace {

constexpr std::string_view kHasTableSqlite =
    "select count(*) from sqlite_master where type = 'table' and name = 'SchemaMigration'";
constexpr std::string_view kHasTablePostgres =
    "select count(*) from pg_catalog.pg_class where relname = 'schemamigration' "
    "and relnamespace = current_schema()::regnamespace";
constexpr std::string_view kNumbers = "select Number from SchemaMigration order by Number";

constexpr std::string_view kTableSqlite =
    "create table if not exists SchemaMigration (\n"
    "  Number integer not null primary key, Name text not null, AppliedOn integer not null) "
    "strict;\n";
// Holds back a second server until the first has committed its script.
constexpr std::string_view kLockPostgres = "select pg_advisory_xact_lock(7262617366);\n";
constexpr std::string_view kTablePostgres =
    "create table if not exists SchemaMigration (\n"
    "  Number integer not null primary key, Name text not null, AppliedOn timestamptz not null);\n";

std::span<const EmbeddedMigration> MigrationsOf(Engine engine) {
  return engine == Engine::Sqlite ? SqliteMigrations() : PostgresMigrations();
}

Failure Unreadable(const EngineError& error) {
  return {error.kind == EngineErrorKind::LinkDown ? FailureKind::LinkDown : FailureKind::Internal,
          "Базата данни не може да бъде прочетена: " + error.text};
}

EngineAnswer<std::vector<int>> ReadNumbers(Database& database, std::string_view sql) {
  const Statement statement{std::string(sql), {}, {{"Number", ValueKind::Code, 0}}};
  const auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) return packets.GetFailure();
  std::vector<int> numbers;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row)
    numbers.push_back(static_cast<int>(packets->front().At(row, 0).AsInt().value_or(0)));
  return numbers;
}

/// Numbers of the migrations that the database has, ascending.
Answer<std::vector<int>> AppliedNumbers(Database& database) {
  const bool sqlite = database.Kind() == Engine::Sqlite;
  const auto tables = ReadNumbers(database, sqlite ? kHasTableSqlite : kHasTablePostgres);
  if (!tables) return Unreadable(tables.GetFailure());
  if (tables->front() == 0) return std::vector<int>();
  auto numbers = ReadNumbers(database, kNumbers);
  if (!numbers) return Unreadable(numbers.GetFailure());
  return *std::move(numbers);
}

bool Has(const std::vector<int>& applied, int number) {
  return std::ranges::binary_search(applied, number);
}

SchemaState StateOf(const std::vector<int>& applied, Engine engine) {
  SchemaState state;
  if (!applied.empty()) state.applied = applied.back();
  std::size_t known = 0;
  for (const EmbeddedMigration& migration : MigrationsOf(engine)) {
    state.newest = migration.number;
    if (Has(applied, migration.number)) {
      ++known;
    } else {
      ++state.missing;
    }
  }
  state.newer = known < applied.size();
  return state;
}

/// The migration with its line in the book first, so that a second server that comes to it stops at
/// a key that holds twice.
std::string ScriptOf(const EmbeddedMigration& migration, Engine engine) {
  const bool sqlite = engine == Engine::Sqlite;
  std::string script(sqlite ? "" : kLockPostgres);
  if (!sqlite) script += PostgresFoldFunction();
  script += sqlite ? kTableSqlite : kTablePostgres;
  script += "insert into SchemaMigration (Number, Name, AppliedOn) values (" +
            std::to_string(migration.number) + ", '" + std::string(migration.name) + "', " +
            (sqlite ? std::to_string(SystemClock().Now().micros) : "now()") + ");\n";
  return script.append(migration.text);
}

Answer<Done> Finish(Database& database, const SchemaState& before) {
  if (database.Kind() == Engine::Postgres) {
    const auto parts = database.RunScript(std::string(kLockPostgres) + "select MakeNameParts()");
    if (!parts) return Unreadable(parts.GetFailure());
    const auto role = database.RunScript(std::string(kLockPostgres) + PostgresSearchRole());
    if (!role) {
      return Failure{FailureKind::Internal,
                     "Ролята за търсене не може да бъде подготвена: " + role.GetFailure().text};
    }
  }
  // Statistics of empty tables would only mislead the planner.
  if (before.applied == 0 || before.IsCurrent()) return Done{};
  const auto analyzed = database.RunScript("analyze");
  if (!analyzed) return Unreadable(analyzed.GetFailure());
  return Done{};
}

}  // namespace

Answer<SchemaState> CurrentSchema(Database& database) {
  const auto applied = AppliedNumbers(database);
  if (!applied) return applied.GetFailure();
  return StateOf(*applied, database.Kind());
}

Answer<int> Migrate(Database& database) {
  const auto applied = AppliedNumbers(database);
  if (!applied) return applied.GetFailure();
  const SchemaState before = StateOf(*applied, database.Kind());
  if (before.IsNewer()) {
    return Refused("Базата данни е с версия на схемата " + std::to_string(before.applied) +
                   ", а тази програма познава версия " + std::to_string(before.newest) +
                   ". Обновете програмата.");
  }
  int count = 0;
  for (const EmbeddedMigration& migration : MigrationsOf(database.Kind())) {
    if (Has(*applied, migration.number)) continue;
    const auto run = database.RunScript(ScriptOf(migration, database.Kind()));
    if (run) {
      ++count;
      continue;
    }
    const auto now = AppliedNumbers(database);
    if (now && Has(*now, migration.number)) continue;  // another server was first
    return Failure{FailureKind::Internal, "Промяна " + std::to_string(migration.number) +
                                              " на схемата (" + std::string(migration.name) +
                                              ") не е извършена: " + run.GetFailure().text};
  }
  const auto finished = Finish(database, before);
  if (!finished) return finished.GetFailure();
  return count;
}

Answer<std::string> WhatSlowsDown(Database& database) {
  constexpr std::string_view kIndexes =
      "select count(*) from pg_index i join pg_class c on c.oid = i.indexrelid where i.indisvalid"
      " and c.relname in ('basesupplylistparts', 'partnersparts')"
      " and c.relnamespace = current_schema()::regnamespace";
  if (database.Kind() != Engine::Postgres) return std::string();
  const auto indexes = ReadNumbers(database, kIndexes);
  if (!indexes) return Unreadable(indexes.GetFailure());
  if (indexes->front() == 2) return std::string();
  return std::string(
      "Част от име се търси бавно: PostgreSQL няма разширението pg_trgm, потребителят на базата не "
      "може да го създаде, или базата не познава кирилица (LC_CTYPE = C). Когато е отстранено, "
      "изпълнете „orvane-server migrate“.");
}

}  // namespace orvane::server
