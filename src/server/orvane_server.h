#pragma once

// The application server: sessions before, server classes behind. In-process or behind the wire, it
// is the same object.
//
//   OrvaneServer server(*database, clock, ServerOptions{});
//   auto info = server.LogIn({.login = "ivanova", .password = "…"});

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "packet/application_server.h"
#include "packet/clock.h"
#include "server/dialect/kept_searches.h"
#include "server/engine/database.h"
#include "server/providers/search_turns.h"
#include "server/providers/server_class.h"
#include "server/providers/work.h"
#include "server/sessions/sessions.h"

namespace orvane::server {

struct ServerOptions {
  SessionOptions sessions;
  SearchLimits searchLimits;
  DocumentOptions documents;
};

/// Thread-safe. The database and the clock outlive it; the database is migrated.
class OrvaneServer final : public IApplicationServer {
 public:
  OrvaneServer(Database& database, const Clock& clock, ServerOptions options);
  /// With other server classes than the installation's.
  OrvaneServer(Database& database, const Clock& clock, ServerOptions options,
               std::vector<ServerClass> classes);

  Answer<Greeting> Greet() override;
  Answer<SessionInfo> LogIn(const LoginRequest& request) override { return LogInFrom("", request); }
  /// The same for somebody at that address of the network: guesses from one address are counted.
  Answer<SessionInfo> LogInFrom(std::string_view address, const LoginRequest& request);
  Answer<Done> LogOut(const Caller& caller) override;
  Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                        const std::vector<FetchRequest>& requests) override;
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override;
  Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) override;

  /// Whether the ticket opens a session that is in memory; asks no database.
  bool RemembersTicket(const std::string& ticket) { return sessions_.Remembers(ticket); }
  /// Whether the ticket opens a session; true also when that cannot be told now.
  bool KnowsTicket(const std::string& ticket);

  /// Sessions that were refused because they claimed more than they hold, since the start.
  std::int64_t ClaimsRefused() const { return claimsRefused_; }
  /// Search statements that were read and rendered; the others were known.
  std::int64_t SearchesRead() const { return searches_.Read(); }

 private:
  const ServerClass* FindClass(std::string_view name) const;
  Answer<std::shared_ptr<const Company>> KnownCompany();
  Answer<std::vector<DataPacket>> FetchOnce(Work& work, const std::vector<FetchRequest>& requests);
  Answer<std::vector<DataPacket>> RunFetches(Work& work, const std::vector<FetchRequest>& requests);
  /// Runs `task` for the caller's session; once more when the session turned out to have changed.
  template <class T>
  Answer<T> Serve(const Caller& caller, const std::function<Answer<T>(Work&)>& task);

  Database& database_;
  const Clock& clock_;
  const ServerOptions options_;
  const std::vector<ServerClass> classes_;
  Sessions sessions_;
  KeptSearches searches_;
  SearchTurns turns_{kSearchPlaces};
  std::mutex companyMutex_;
  std::shared_ptr<const Company> company_;
  std::atomic<std::int64_t> claimsRefused_{0};
};

}  // namespace orvane::server
