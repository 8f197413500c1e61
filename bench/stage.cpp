#include "stage.h"

#include <cstdio>
#include <cstdlib>

#include "contract/purchase_request.h"
#include "server/demo/demo_users.h"

namespace orvane::bench {

Stage::Stage(BenchCompany company)
    : company_(std::move(company)), server_(*company_.database, clock_, {}) {
  running_ = Must(StartServing(server_, {.port = 0}));
  RemoteOptions options;
  options.address = "127.0.0.1:" + std::to_string(running_->Port());
  remote_ = Must(RemoteServer::Open(options));
  bare_ = OpenBare(company_.engine, company_.location);
}

Caller Stage::As(const std::string& login, Point point) {
  std::string& ticket = tickets_[login];
  if (ticket.empty()) {
    LoginRequest request;
    request.login = login;
    request.machineName = "bench";
    for (const DemonstrationUser& user : DemonstrationUsers()) {
      if (user.login == login) request.password = user.password;
    }
    ticket = Must(server_.LogIn(request)).ticket;
  }
  return {ticket, kOrvaneModuleNo, static_cast<std::int32_t>(point)};
}

VariantArray Stage::Load(const std::string& login, Nav nav, std::int64_t id) {
  return Must(Remote().Call(As(login), {std::string(purchase_request::kServerClass), "Operations",
                                        VariantArray{"GetRec", 1, static_cast<int>(nav), 0, id,
                                                     Variant(), login, Variant(), true, false}}));
}

}  // namespace orvane::bench
