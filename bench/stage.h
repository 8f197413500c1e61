#pragma once

// A company with the real server over it, reached in-process and over loopback, and what there is
// to compare it with.

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "bare/bare.h"
#include "company.h"
#include "contract/points.h"
#include "contract/workflow.h"
#include "empty_call.h"
#include "packet/clock.h"
#include "pairs.h"
#include "server/orvane_server.h"
#include "server/sessions/sessions.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::bench {

class Stage {
 public:
  explicit Stage(BenchCompany company);

  const BenchCompany& Company() const { return company_; }
  Bare& ByHand() { return *bare_; }
  const EmptyCall& Empty() const { return empty_; }
  IApplicationServer& InProcess() { return server_; }
  IApplicationServer& Remote() { return *remote_; }
  /// How long a transaction takes in which nothing but the asker's session is looked at.
  Timed EmptyTransaction();
  /// Somebody of the demonstration, logged in once.
  Caller As(const std::string& login, Point point = Point::PurchaseRequests);

  /// The same in a session of its own.
  Caller LogIn(const std::string& login);
  /// Of the server that Remote() asks.
  std::string Address() const;

  /// A load over loopback, as the request's screen asks for it. Ends the program when it fails.
  VariantArray Load(const std::string& login, Nav nav, std::int64_t id);

 private:
  BenchCompany company_;
  SystemClock clock_;
  OrvaneServer server_;
  server::Company terms_;
  Sessions sessions_;
  std::unique_ptr<RunningServer> running_;
  std::unique_ptr<RemoteServer> remote_;
  std::unique_ptr<Bare> bare_;
  EmptyCall empty_;
  std::map<std::string, std::string> tickets_;
};

/// The value; ends the program with the failure's sentence when there is none.
template <class T>
T Must(Answer<T> answer) {
  if (answer) return *std::move(answer);
  std::fprintf(stderr, "bench: %s\n", answer.GetFailure().message.c_str());
  std::exit(1);
}

}  // namespace orvane::bench
