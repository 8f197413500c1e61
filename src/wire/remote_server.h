#pragma once

// The application server at the other end of a network. It connects by itself, at the first call
// and again whenever the link was lost, and tells the failures of a link apart: a request that
// surely did not arrive is LinkDown, a write whose answer was lost is OutcomeUnknown.

#include <functional>
#include <memory>
#include <string>

#include "packet/application_server.h"
#include "packet/faulty_door.h"

namespace orvane::wire {

struct RemoteOptions {
  std::string address{};  ///< "host:port"
  /// PEM file of the certificate that signs the server's. Empty: a link to this machine itself goes
  /// without TLS, and any other takes the certificates the system trusts.
  std::string rootCertificatePath{};

  /// Milliseconds: to connect, and for each verb to answer.
  int connectMs = 3'000;
  int greetMs = 5'000;
  int logInMs = 20'000;
  int logOutMs = 5'000;
  int fetchMs = 120'000;
  int applyMs = 120'000;
  int callMs = 120'000;

  int maxMessageBytes = 256 * 1024 * 1024;  ///< longest answer that is read
  int maxRequestBytes = 16 * 1024 * 1024;   ///< a longer request is refused and not sent

  /// Called every ten milliseconds once a call took a tenth of a second, so that the window can
  /// paint itself. False cancels the call: the user pressed Escape. May be empty.
  std::function<bool()> pump{};
};

/// May be called from several threads. The pump is called on the thread that waits.
class RemoteServer final : public IApplicationServer {
 public:
  /// Connects nothing yet; fails only when the certificate cannot be read.
  static Answer<std::unique_ptr<RemoteServer>> Open(RemoteOptions options);
  ~RemoteServer() override;

  /// Replaces the pump; only while no call is on its way.
  void SetPump(std::function<bool()> pump);

  Answer<Greeting> Greet() override;
  Answer<SessionInfo> LogIn(const LoginRequest& request) override;
  Answer<Done> LogOut(const Caller& caller) override;
  Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                        const std::vector<FetchRequest>& requests) override;
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override;
  Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) override;
  /// What the channel knows; it goes on trying to connect by itself.
  bool IsReachable() const override;

 private:
  class Link;
  explicit RemoteServer(std::unique_ptr<Link> link);

  std::unique_ptr<Link> link_;
};

}  // namespace orvane::wire
