#include "support/test_databases.h"

#include <libpq-fe.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

#include "server/schema/migrate.h"

namespace orvane::support {
namespace {

std::string ServerInfo() {
  const char* info = std::getenv("ORVANE_TEST_POSTGRES");
  return info == nullptr ? "" : info;
}

constexpr std::string_view kPrefix = "orvane_test_";

/// Files of test processes that ended without removing theirs.
void SweepUp(const std::filesystem::path& folder) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kPrefix)) continue;
    pid_t process = 0;
    std::from_chars(name.data() + kPrefix.size(), name.data() + name.size(), process);
    if (process > 0 && kill(process, 0) != 0 && errno == ESRCH) {
      std::filesystem::remove(entry.path(), ignored);
    }
  }
}

/// Where SQLite's files of the tests are: in memory where there is room, as nobody needs them after
/// a power cut and every commit waits for its disk.
const std::filesystem::path& Folder() {
  static const std::filesystem::path folder = [] {
    constexpr std::uintmax_t kRoom = std::uintmax_t{1} << 30;
    const std::filesystem::path memory = "/dev/shm";
    std::error_code error;
    const auto space = std::filesystem::space(memory, error);
    const bool roomy = !error && space.available >= kRoom && access(memory.c_str(), W_OK) == 0;
    const auto chosen = roomy ? memory : std::filesystem::temp_directory_path();
    SweepUp(chosen);
    return chosen;
  }();
  return folder;
}

/// Of this process and never used before.
std::string NewName() {
  static std::atomic<int> count{0};
  return std::string(kPrefix) + std::to_string(getpid()) + "_" + std::to_string(++count);
}

template <class T, class F>
T Must(Answer<T, F> answer, const std::string& what) {
  if (answer) return *std::move(answer);
  if constexpr (std::is_same_v<F, Failure>) {
    throw std::runtime_error(what + ": " + answer.GetFailure().message);
  } else {
    throw std::runtime_error(what + ": " + answer.GetFailure().text);
  }
}

/// Creating and dropping databases cannot be done inside a transaction, hence not by a Database.
void Administer(const std::string& sql) {
  PGconn* connection = PQconnectdb(ServerInfo().c_str());
  PGresult* result = PQexec(connection, sql.c_str());
  const bool done = PQresultStatus(result) == PGRES_COMMAND_OK;
  const std::string error = PQerrorMessage(connection);
  PQclear(result);
  PQfinish(connection);
  if (!done) throw std::runtime_error(sql + ": " + error);
}

std::unique_ptr<Database> OpenAt(TestEngine engine, const std::string& location) {
  if (engine == Engine::Sqlite) return Must(OpenSqlite(location), location);
  // Filling a large company takes as long as it takes, and plans shall not depend on how busy the
  // machine is.
  constexpr std::chrono::minutes kAnyTime{10};
  constexpr std::chrono::milliseconds kSlowOnABusyMachine{300};
  return Must(OpenPostgres({location, 8, kAnyTime, kSlowOnABusyMachine}), location);
}

void Remove(TestEngine engine, const std::string& name) {
  if (engine == Engine::Postgres) {
    Administer("drop database if exists " + name + " with (force)");
    return;
  }
  const std::filesystem::path path = Folder() / name;
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::filesystem::remove(path.string() + suffix);
  }
}

/// A database that nobody has yet: a path, or a conninfo of the server with another database in it.
std::string LocationOfName(TestEngine engine, const std::string& name) {
  if (engine == Engine::Postgres) return ServerInfo() + " dbname=" + name;
  return (Folder() / name).string();
}

/// Forwards everything, and removes the database behind it in the end.
class OwnedDatabase final : public Database {
 public:
  OwnedDatabase(TestEngine engine, std::string name)
      : name_(std::move(name)),
        location_(LocationOfName(engine, name_)),
        database_(OpenAt(engine, location_)) {}
  ~OwnedDatabase() override {
    const TestEngine engine = database_->Kind();
    database_.reset();
    Remove(engine, name_);
  }

  Engine Kind() const override { return database_->Kind(); }
  EngineAnswer<std::vector<DataPacket>> ReadSnapshot(
      std::span<const Statement> statements) override {
    return database_->ReadSnapshot(statements);
  }
  EngineAnswer<std::unique_ptr<Transaction>> Begin() override { return database_->Begin(); }
  EngineAnswer<std::vector<DataPacket>> Search(const Statement& guard,
                                               std::span<const Statement> statements,
                                               SearchLimits limits) override {
    return database_->Search(guard, statements, limits);
  }
  EngineAnswer<Done> RunScript(std::string_view script) override {
    return database_->RunScript(script);
  }
  const EngineCounters& Counters() const override { return database_->Counters(); }
  const std::string& Location() const { return location_; }

 private:
  std::string name_;
  std::string location_;
  std::unique_ptr<Database> database_;
};

/// A migrated database that others are copied from, made once per process and removed at its end.
class Template {
 public:
  Template(TestEngine engine, const std::function<void(Database&)>& fill)
      : engine_(engine), name_(NewName()) {
    if (engine == Engine::Postgres) Administer("create database " + name_ + " template template0");
    const auto database = OpenAt(engine, LocationOfName(engine, name_));
    Must(Migrate(*database), "migration");
    fill(*database);
  }
  Template(const Template&) = delete;
  Template& operator=(const Template&) = delete;
  ~Template() {
    try {
      Remove(engine_, name_);
    } catch (const std::exception&) {
      // The server may have been stopped meanwhile; the database goes with it.
    }
  }

  void CopyTo(const std::string& name) const {
    if (engine_ == Engine::Postgres) {
      Administer("create database " + name + " template " + name_);
    } else {
      std::filesystem::copy_file(LocationOfName(engine_, name_), LocationOfName(engine_, name));
    }
  }

 private:
  TestEngine engine_;
  std::string name_;
};

const Template& TemplateOf(TestEngine engine, const std::string& contents,
                           const std::function<void(Database&)>& fill) {
  Folder();  // before them, so that it is there when they go
  static std::map<std::pair<TestEngine, std::string>, Template> templates;
  return templates.try_emplace({engine, contents}, engine, fill).first->second;
}

}  // namespace

std::vector<TestEngine> TestEngines() {
  std::vector<TestEngine> engines = {Engine::Sqlite};
  if (!ServerInfo().empty()) engines.push_back(Engine::Postgres);
  return engines;
}

std::vector<TestEngine> TestEnginesWithServer() {
  std::vector<TestEngine> engines = TestEngines();
  std::erase(engines, Engine::Sqlite);
  return engines;
}

std::string EngineName(TestEngine engine) {
  return engine == Engine::Sqlite ? "Sqlite" : "Postgres";
}

std::string TestEngineName(const testing::TestParamInfo<TestEngine>& info) {
  return EngineName(info.param);
}

std::unique_ptr<Database> FreshDatabase(TestEngine engine) {
  return FilledDatabase(engine, "", [](Database&) {});
}

std::unique_ptr<Database> FilledDatabase(TestEngine engine, const std::string& contents,
                                         const std::function<void(Database&)>& fill) {
  const std::string name = NewName();
  TemplateOf(engine, contents, fill).CopyTo(name);
  return std::make_unique<OwnedDatabase>(engine, name);
}

std::unique_ptr<Database> EmptyDatabase(TestEngine engine) {
  const std::string name = NewName();
  if (engine == Engine::Postgres) Administer("create database " + name + " template template0");
  return std::make_unique<OwnedDatabase>(engine, name);
}

std::unique_ptr<Database> OpenAgain(Database& database) {
  return OpenAt(database.Kind(), LocationOf(database));
}

std::string LocationOf(Database& database) {
  return dynamic_cast<OwnedDatabase&>(database).Location();
}

}  // namespace orvane::support
