#include "apps/orvane_server/commands.h"

#include <pthread.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <memory>

#include "apps/orvane_server/ask_password.h"
#include "apps/orvane_server/tls_files.h"
#include "contract/points.h"
#include "packet/clock.h"
#include "server/check/check.h"
#include "server/demo/demo_company.h"
#include "server/engine/database.h"
#include "server/load/load_registers.h"
#include "server/log/log_text.h"
#include "server/orvane_server.h"
#include "server/schema/migrate.h"
#include "server/sessions/user_admin.h"
#include "wire/loopback.h"
#include "wire/serving.h"

namespace orvane::apps {
namespace {

constexpr int kGraceMs = 10'000;
/// A command alone with the database waits for whatever it asks; a server's calls do not.
constexpr std::chrono::hours kCommandWait{1};
/// So many requests take long enough to say how it goes.
constexpr std::int64_t kManyDocuments = 20'000;

void Say(const std::string& sentence) {
  std::cout << sentence << '\n';
}

/// An engine may quote parts of a connection that it cannot read.
std::string WithoutSecret(const std::string& text, const std::string& database) {
  if (WithoutPasswords(database) == database) return text;
  for (const std::string_view known : {"connection to server", "could not translate host name"}) {
    if (text.find(known) != std::string::npos) return WithoutPasswords(text);
  }
  return "връзката в настройка „database“ е записана неправилно.";
}

Answer<std::unique_ptr<Database>> Open(const Settings& settings,
                                       std::chrono::milliseconds longestWait = kCommandWait) {
  auto database = IsPostgres(settings.database)
                      ? OpenPostgres({.connectionInfo = settings.database,
                                      .poolSize = settings.poolSize,
                                      .longestWait = longestWait})
                      : OpenSqlite(settings.database, std::min(longestWait, kLongestWait));
  if (database) return *std::move(database);
  return Failure{FailureKind::LinkDown,
                 "Базата от данни не може да се отвори: " +
                     WithoutSecret(database.GetFailure().text, settings.database)};
}

/// The database, when its schema is this program's.
Answer<std::unique_ptr<Database>> OpenCurrent(
    const Settings& settings, std::chrono::milliseconds longestWait = kCommandWait) {
  if (!IsPostgres(settings.database) && !std::filesystem::exists(settings.database)) {
    return Refused("Няма файл „" + settings.database +
                   "“. Създайте базата с „orvane-server init“ или „orvane-server demo“.");
  }
  auto database = Open(settings, longestWait);
  if (!database) return database;
  const auto schema = CurrentSchema(**database);
  if (!schema) return schema.GetFailure();
  if (schema->IsNewer()) {
    return Refused("Базата е от по-нова версия на програмата (" + std::to_string(schema->applied) +
                   ", а тук " + std::to_string(schema->newest) + "). Обновете програмата.");
  }
  if (!schema->IsCurrent()) {
    return Refused("Базата е от по-стара версия. Изпълнете „orvane-server migrate“.");
  }
  return database;
}

/// Fresh statistics: without them PostgreSQL scans what it could look up.
Answer<Done> RefreshStatistics(Database& database) {
  const auto analyzed = database.RunScript("analyze");
  if (analyzed) return Done{};
  return Failure{FailureKind::Internal,
                 "Статистиките на базата не са обновени: " + analyzed.GetFailure().text};
}

/// What an administrator may mend, beside which everything works.
Answer<Done> WarnOfSlowness(Database& database) {
  const auto slow = WhatSlowsDown(database);
  if (!slow) return slow.GetFailure();
  if (!slow->empty()) spdlog::warn("{}", *slow);
  return Done{};
}

void BlockStopSignals(sigset_t& signals) {
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})  // a terminal that closes ends nothing midway
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

Answer<Done> Init(const Settings& settings, const std::string& company) {
  auto database = Open(settings);
  if (!database) return database.GetFailure();
  const auto schema = CurrentSchema(**database);
  if (!schema) return schema.GetFailure();
  if (schema->applied > 0) {
    return Refused("Базата вече е създадена. За обновяване изпълнете „orvane-server migrate“.");
  }
  const auto migrated = Migrate(**database);
  if (!migrated) return migrated.GetFailure();
  const auto named = UserAdmin(**database, SystemClock{}, {}).NameCompany(company);
  if (!named) return named;
  Say("Базата е създадена (версия " + std::to_string(*migrated) +
      "). Добавете потребител с „orvane-server user add“.");
  return WarnOfSlowness(**database);
}

Answer<Done> MigrateDatabase(const Settings& settings) {
  auto database = Open(settings);
  if (!database) return database.GetFailure();
  const auto migrated = Migrate(**database);
  if (!migrated) return migrated.GetFailure();
  if (const auto warned = WarnOfSlowness(**database); !warned) return warned;
  if (*migrated == 0) {
    Say("Базата е от последната версия.");
    return Done{};
  }
  Say("Базата е обновена с " + std::to_string(*migrated) + " стъпки.");
  return RefreshStatistics(**database);
}

Answer<Done> Demo(const Settings& settings, std::uint32_t seed, std::int64_t documents) {
  auto database = Open(settings);
  if (!database) return database.GetFailure();
  const auto migrated = Migrate(**database);
  if (!migrated) return migrated.GetFailure();
  DemoOptions options;
  options.seed = seed;
  options.documents = documents;
  const auto begin = std::chrono::steady_clock::now();
  options.progress = [&](std::int64_t made) {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    if (made < documents || documents >= kManyDocuments) {
      Say(std::to_string(made) + " от " + std::to_string(documents) + " искания, " +
          std::to_string(static_cast<std::int64_t>(static_cast<double>(made) / passed.count())) +
          " в секунда.");
    }
  };
  const auto made = MakeDemoCompany(**database, SystemClock{}, options);
  if (!made) return made;
  const auto analyzed = RefreshStatistics(**database);
  if (!analyzed) return analyzed;
  Say("Демонстрационната фирма е готова в „" + WithoutPasswords(settings.database) + "“.");
  return Done{};
}

Answer<Done> ServeUntilSignal(const Settings& settings, bool unsafeDurability) {
  sigset_t signals;
  BlockStopSignals(signals);  // before the first thread, so that all of them inherit it
  if (!settings.tlsKey.empty()) {
    const auto files = CheckTlsFiles(settings.tlsCert, settings.tlsKey);
    if (!files) return files.GetFailure();
    if (!files->empty()) spdlog::warn("{}", *files);
  }
  auto database = OpenCurrent(settings, kLongestWait);
  if (!database) return database.GetFailure();
  if (!unsafeDurability) {
    const auto durable = CheckDurability(**database);
    if (!durable) return durable;
  }
  if (const auto warned = WarnOfSlowness(**database); !warned) return warned;
  const SystemClock clock;
  ServerOptions options;
  options.sessions.idleMinutes = settings.idleMinutes;
  options.documents.mayApproveOwn = settings.mayApproveOwn;
  OrvaneServer server(**database, clock, options);

  const ListenAddress listen = *ParseListen(settings.listen);
  ServingOptions serving;
  serving.address = listen.host;
  serving.port = listen.port;
  serving.certificatePath = settings.tlsCert;
  serving.keyPath = settings.tlsKey;
  serving.reflection = settings.reflection;
  serving.report = [](const std::string& text) { spdlog::error("{}", LogText(text)); };
  serving.remembersTicket = [&](const std::string& ticket) {
    return server.RemembersTicket(ticket);
  };
  serving.knowsTicket = [&](const std::string& ticket) { return server.KnowsTicket(ticket); };
  serving.logIn = [&](const std::string& address, const LoginRequest& request) {
    return server.LogInFrom(address, request);
  };
  auto running = StartServing(server, serving);
  if (!running) return running.GetFailure();
  Say("Сървърът слуша на " + AddressOf(listen.host, (*running)->Port()) + ".");
  std::cout << std::flush;
  int signal = 0;
  sigwait(&signals, &signal);
  spdlog::info("signal {}, finishing the running requests", signal);
  (*running)->Stop(kGraceMs);
  (*running)->Wait();
  Say("Сървърът спря.");
  return Done{};
}

Answer<Done> AddUser(const Settings& settings, const UserArguments& user) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  auto password = AskPassword(user.login);
  if (!password) return password.GetFailure();
  const SystemClock clock;
  UserAdmin admin(**database, clock, {});
  if (user.employee != 0) {
    const auto free = admin.CheckEmployeeFree(user.employee);
    if (!free) return free;
  }
  const auto added = admin.AddUser(
      {user.login, user.name, user.name2, user.level, user.language, *std::move(password)});
  if (!added) return added;
  const auto granted = admin.GrantEverywhere(user.login, user.rights);
  if (!granted) return granted;
  if (user.employee != 0) {
    const auto employed = admin.AddEmployee({user.employee, user.name, user.name2, user.login});
    if (!employed) return employed;
  }
  Say("Потребител „" + user.login + "“ е добавен.");
  return Done{};
}

Answer<Done> ChangePassword(const Settings& settings, const UserArguments& user) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  auto password = AskPassword(user.login);
  if (!password) return password.GetFailure();
  const SystemClock clock;
  const auto set = UserAdmin(**database, clock, {}).SetPassword(user.login, *password);
  if (!set) return set;
  Say("Паролата на „" + user.login + "“ е сменена, сесиите му приключиха.");
  return Done{};
}

Answer<Done> BlockUser(const Settings& settings, const UserArguments& user) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  const SystemClock clock;
  const auto blocked = UserAdmin(**database, clock, {}).SetBlocked(user.login, !user.undo);
  if (!blocked) return blocked;
  Say("Потребител „" + user.login + (user.undo ? "“ е отблокиран." : "“ е блокиран."));
  return Done{};
}

Answer<Done> RemoveUser(const Settings& settings, const UserArguments& user) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  const SystemClock clock;
  const auto removed = UserAdmin(**database, clock, {}).RemoveUser(user.login);
  if (!removed) return removed;
  Say("Потребител „" + user.login + "“ е изтрит.");
  return Done{};
}

Answer<Done> SetRights(const Settings& settings, const UserArguments& user) {
  const auto point = std::find_if(std::begin(kPoints), std::end(kPoints),
                                  [&](const PointRow& row) { return row.name == user.point; });
  if (point == std::end(kPoints)) return Refused("Няма точка „" + user.point + "“.");
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  const SystemClock clock;
  const auto granted = UserAdmin(**database, clock, {})
                           .Grant(user.login, static_cast<std::int32_t>(point->point), user.rights);
  if (!granted) return granted;
  Say("Правата на „" + user.login + "“ в „" + std::string(point->caption) + "“ вече са " +
      std::to_string(user.rights) + ".");
  return Done{};
}

Answer<Done> Import(const Settings& settings, const std::string& folder) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  const auto loaded = LoadRegisters(**database, SystemClock(), folder);
  if (!loaded) return loaded.GetFailure();
  Say("Заредени са " + std::to_string(*loaded) + " реда.");
  return RefreshStatistics(**database);
}

Answer<Done> Check(const Settings& settings) {
  auto database = OpenCurrent(settings);
  if (!database) return database.GetFailure();
  const auto findings =
      CheckDatabase(**database, SystemClock().Now(), {.mayApproveOwn = settings.mayApproveOwn});
  if (!findings) return findings.GetFailure();
  for (const std::string& finding : *findings)
    Say(finding);
  if (!findings->empty()) {
    return Refused("Намерени са " + std::to_string(findings->size()) + " несъответствия.");
  }
  Say("Базата е наред.");
  return Done{};
}

}  // namespace orvane::apps
