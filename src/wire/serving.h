#pragma once

// Serves an application server to the network: gRPC on one port, with health checks.
//
// Nothing that comes from a stranger is dear. The ticket of a session, and the request of a login,
// travel in the metadata of a call, which are some kilobytes at most: of a caller without a living
// session no message is read at all. Messages are never compressed; what a session sends is limited
// in bytes, and in what it would take decoded, before it is decoded. Logins and tickets that are
// not in memory have threads of their own, where addresses take turns.
//
//   auto running = StartServing(server, {.address = "127.0.0.1", .port = 8011});
//   if (!running) return Report(running.GetFailure());
//   (*running)->Wait();

#include <functional>
#include <memory>
#include <string>

#include "packet/application_server.h"

namespace orvane::wire {

struct ServingOptions {
  std::string address = "127.0.0.1";
  int port = 8011;  ///< 0: any free one, see RunningServer::Port
  /// PEM files of the server's certificate chain and key. Required unless the address is this
  /// machine's own: passwords and tickets do not travel in the clear.
  std::string certificatePath{};
  std::string keyPath{};
  int maxRequestBytes = 16 * 1024 * 1024;  ///< longest request that is read
  int maxMessageBytes = 64 * 1024 * 1024;  ///< longest answer to a fetch or greeting that is sent
  /// Of all answers that are on their way. Beyond it the oldest of the session with most ends.
  std::size_t maxUnreadBytes = std::size_t{96} * 1024 * 1024;
  /// Of one session, but for the last: as long as more are on their way it is turned away.
  std::size_t maxUnreadOfSession = std::size_t{32} * 1024 * 1024;
  /// Requests worked on at once. Further ones wait so many milliseconds, sessions taking turns;
  /// then they are turned away and may be sent again.
  int maxConcurrent = 64;
  int longestWaitMs = 2'000;
  /// Connections of all addresses and of one; fewer when the process may not have so many files.
  int maxConnections = 1'000;
  int maxConnectionsOfOne = 256;
  /// Milliseconds after which end: a connection that said nothing yet, one over which no session
  /// asked for so long, a message that does not arrive, an answer that is not read.
  int handshakeMs = 10'000;
  int silentGuestMs = 60'000;
  int slowMessageMs = 120'000;
  /// How often the other end of a silent link is asked whether it is there, and how long it may
  /// take to answer.
  int pingMs = 60'000;
  int pingAnswerMs = 20'000;
  /// Offers the description of the service to whoever asks.
  bool reflection = false;
  /// Whether a ticket opens a session: from memory alone, and for good. Empty: every ticket does,
  /// and the server is asked.
  std::function<bool(const std::string& ticket)> remembersTicket{};
  std::function<bool(const std::string& ticket)> knowsTicket{};
  /// A login from that address. Empty: IApplicationServer::LogIn.
  std::function<Answer<SessionInfo>(const std::string& address, const LoginRequest& request)>
      logIn{};
  /// Told, from threads of the server, what went wrong inside it (never what a user did wrong).
  std::function<void(const std::string&)> report{};
};

/// A server that listens. Destroying it stops it at once.
class RunningServer {
 public:
  virtual ~RunningServer() = default;

  virtual int Port() const = 0;
  /// That are open now.
  virtual int Connections() = 0;
  /// Takes no new requests, lets the running ones finish for so many milliseconds, then cuts them.
  virtual void Stop(int graceMs) = 0;
  /// Returns when the server was stopped.
  virtual void Wait() = 0;
};

/// `server` is called from several threads and outlives the running server. Fails with a sentence
/// for the administrator when the address needs a certificate, a file cannot be read or the port is
/// taken.
Answer<std::unique_ptr<RunningServer>> StartServing(IApplicationServer& server,
                                                    const ServingOptions& options);

}  // namespace orvane::wire
