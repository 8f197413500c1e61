#include "apps/orvane/backend.h"

#include <filesystem>
#include <random>

#include "server/demo/demo_companies.h"
#include "server/engine/database.h"
#include "server/orvane_server.h"
#include "server/schema/migrate.h"
#include "server/sessions/passwords.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::apps {
namespace {

namespace fs = std::filesystem;

/// A folder of its own below the system's temporary one, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    path_ = fs::temp_directory_path() /
            ("orvane-" + std::to_string(random()) + std::to_string(random()));
    fs::create_directories(path_);
    fs::permissions(path_, fs::perms::owner_all);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::string File(std::string_view name) const { return (path_ / name).string(); }

 private:
  fs::path path_;
};

class FarBackend final : public Backend {
 public:
  FarBackend(std::unique_ptr<RemoteServer> server, std::string name)
      : server_(std::move(server)), name_(std::move(name)) {}
  IApplicationServer& Server() override { return *server_; }
  std::string ServerName() const override { return name_; }
  Database* InnerDatabase() override { return nullptr; }

 private:
  std::unique_ptr<RemoteServer> server_;
  std::string name_;
};

/// Members are destroyed from the last to the first: the link before the server, the server before
/// its database, the database before its folder.
class InnerBackend final : public Backend {
 public:
  IApplicationServer& Server() override {
    return remote != nullptr ? static_cast<IApplicationServer&>(*remote) : *server;
  }
  std::string ServerName() const override {
    return running == nullptr ? std::string() : "127.0.0.1:" + std::to_string(running->Port());
  }
  Database* InnerDatabase() override { return database.get(); }

  std::unique_ptr<TemporaryFolder> folder;
  std::unique_ptr<Database> database;
  std::unique_ptr<OrvaneServer> server;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<RemoteServer> remote;
};

Answer<std::unique_ptr<Backend>> OpenFar(const BackendOptions& options) {
  RemoteOptions remote;
  remote.address = options.server;
  remote.rootCertificatePath = options.rootCertificate;
  remote.pump = options.pump;
  auto server = RemoteServer::Open(remote);
  if (!server) return server.GetFailure();
  return std::unique_ptr<Backend>(std::make_unique<FarBackend>(*std::move(server), options.server));
}

Answer<std::unique_ptr<Database>> OpenFile(const std::string& path) {
  auto database = OpenSqlite(path);
  if (!database) {
    return Failure{FailureKind::LinkDown,
                   "Базата „" + path + "“ не може да се отвори: " + database.GetFailure().text};
  }
  const auto schema = CurrentSchema(**database);
  if (!schema) return schema.GetFailure();
  if (schema->IsNewer()) {
    return Failure{FailureKind::Refused, "Базата „" + path +
                                             "“ е от по-нова версия на програмата. Обновете "
                                             "програмата."};
  }
  const auto migrated = Migrate(**database);
  if (!migrated) return migrated.GetFailure();
  return *std::move(database);
}

/// Lets the desktop reach the inner server as it would a distant one.
Answer<Done> GoOverWire(InnerBackend& backend) {
  auto running = StartServing(*backend.server, {.address = "127.0.0.1", .port = 0});
  if (!running) return running.GetFailure();
  backend.running = *std::move(running);
  auto remote = RemoteServer::Open({.address = backend.ServerName()});
  if (!remote) return remote.GetFailure();
  backend.remote = *std::move(remote);
  return Done();
}

Answer<std::unique_ptr<Backend>> OpenInner(const BackendOptions& options, const Clock& clock) {
  auto backend = std::make_unique<InnerBackend>();
  std::string path = options.database;
  if (options.demo) {
    backend->folder = std::make_unique<TemporaryFolder>();
    path = backend->folder->File("demo.db");
  } else if (!fs::exists(path)) {
    return Failure{FailureKind::Refused, "Няма файл „" + path +
                                             "“. Създайте базата с „orvane-server init“ или "
                                             "„orvane-server demo“."};
  }
  auto database = OpenFile(path);
  if (!database) return database.GetFailure();
  backend->database = *std::move(database);
  ServerOptions serving;
  if (options.steady) serving.sessions.steady = options.steady;
  if (options.demo) {
    // Everybody may read the passwords of a demonstration: their hashes need not cost anything.
    serving.sessions.passwordCost = PasswordCost::Lowest();
    auto demo = DemoCompanyNamed(options.company);
    if (!demo) return demo.GetFailure();
    demo->passwordCost = PasswordCost::Lowest();
    const auto made = MakeDemoCompany(*backend->database, clock, *demo);
    if (!made) return made.GetFailure();
  }
  backend->server = std::make_unique<OrvaneServer>(*backend->database, clock, serving);
  if (options.overWire) {
    const auto wired = GoOverWire(*backend);
    if (!wired) return wired.GetFailure();
  }
  return std::unique_ptr<Backend>(std::move(backend));
}

}  // namespace

Answer<std::unique_ptr<Backend>> OpenBackend(const BackendOptions& options, const Clock& clock) {
  return options.server.empty() ? OpenInner(options, clock) : OpenFar(options);
}

}  // namespace orvane::apps
