#include "server/schema/migrate.h"

#include "packet/clock.h"
#include "server/schema/embedded_migrations.h"
#include "server/schema/postgres_extras.h"

namespace orvane {
namespace {

constexpr std::string_view kHasTableSqlite =
    "select count(*) from sqlite_master where type = 'table' and name = 'SchemaMigration'";
constexpr std::string_view kHasTablePostgres =
    "select count(*) from pg_catalog.pg_class where relname = 'schemamigration' "
    "and relnamespace = current_schema()::regnamespace";
constexpr std::string_view kLastNumber = "select coalesce(max(Number), 0) from SchemaMigration";

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

EngineAnswer<std::int64_t> ReadNumber(Database& database, std::string_view sql) {
  const Statement statement{std::string(sql), {}, {{"Number", ValueKind::Code, 0}}};
  const auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) return packets.GetFailure();
  return packets->front().At(0, 0).AsInt().value_or(0);
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
  SchemaState state;
  const auto migrations = MigrationsOf(database.Kind());
  if (!migrations.empty()) state.newest = migrations.back().number;

  const bool sqlite = database.Kind() == Engine::Sqlite;
  const auto tables = ReadNumber(database, sqlite ? kHasTableSqlite : kHasTablePostgres);
  if (!tables) return Unreadable(tables.GetFailure());
  if (*tables == 0) return state;
  const auto last = ReadNumber(database, kLastNumber);
  if (!last) return Unreadable(last.GetFailure());
  state.applied = static_cast<int>(*last);
  return state;
}

Answer<int> Migrate(Database& database) {
  const auto before = CurrentSchema(database);
  if (!before) return before.GetFailure();
  if (before->IsNewer()) {
    return Refused("Базата данни е с версия на схемата " + std::to_string(before->applied) +
                   ", а тази програма познава версия " + std::to_string(before->newest) +
                   ". Обновете програмата.");
  }
  int applied = 0;
  for (const EmbeddedMigration& migration : MigrationsOf(database.Kind())) {
    if (migration.number <= before->applied) continue;
    const auto run = database.RunScript(ScriptOf(migration, database.Kind()));
    if (run) {
      ++applied;
      continue;
    }
    const auto now = CurrentSchema(database);
    if (now && now->applied >= migration.number) continue;  // another server was first
    return Failure{FailureKind::Internal, "Промяна " + std::to_string(migration.number) +
                                              " на схемата (" + std::string(migration.name) +
                                              ") не е извършена: " + run.GetFailure().text};
  }
  const auto finished = Finish(database, *before);
  if (!finished) return finished.GetFailure();
  return applied;
}

}  // namespace orvane
