#include "stage.h"

#include <cstdio>
#include <cstdlib>

#include "request_calls.h"
#include "server/demo/demo_users.h"
#include "server/providers/work.h"

namespace orvane::bench {

Stage::Stage(BenchCompany company)
    : company_(std::move(company)),
      server_(*company_.database, clock_, {}),
      terms_(Must(ReadCompany(*company_.database))),
      sessions_(*company_.database, clock_, {}) {
  running_ = Must(StartServing(server_, {.port = 0}));
  RemoteOptions options;
  options.address = Address();
  remote_ = Must(RemoteServer::Open(options));
  bare_ = OpenBare(company_.engine, company_.location);
}

Timed Stage::EmptyTransaction() {
  const Caller caller = As("admin");
  return [this, caller, session = Must(sessions_.Find(caller.ticket))] {
    return Seconds([&] {
      Work work(*company_.database, sessions_, session, terms_, caller, clock_.Now());
      Must(work.Write({}, [](Transaction&, const Packets&) { return Done{}; }));
    });
  };
}

Caller Stage::As(const std::string& login, Point point) {
  std::string& ticket = tickets_[login];
  if (ticket.empty()) ticket = LogIn(login).ticket;
  return {ticket, kOrvaneModuleNo, static_cast<std::int32_t>(point)};
}

Caller Stage::LogIn(const std::string& login) {
  LoginRequest request;
  request.login = login;
  request.machineName = "bench";
  for (const DemonstrationUser& user : DemonstrationUsers()) {
    if (user.login == login) request.password = user.password;
  }
  return {Must(server_.LogIn(request)).ticket, kOrvaneModuleNo,
          static_cast<std::int32_t>(Point::PurchaseRequests)};
}

std::string Stage::Address() const {
  return "127.0.0.1:" + std::to_string(running_->Port());
}

VariantArray Stage::Load(const std::string& login, Nav nav, std::int64_t id) {
  return LoadRequest({Remote(), As(login), login}, nav, id);
}

}  // namespace orvane::bench
