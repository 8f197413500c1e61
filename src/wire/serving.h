#pragma once

// Serves an application server to the network: gRPC on one port, with health checks and reflection.
//
//   auto running = StartServing(server, {.address = "127.0.0.1", .port = 8011});
//   if (!running) return Report(running.GetFailure());
//   (*running)->Wait();

#include <functional>
#include <memory>
#include <string>

#include "packet/application_server.h"

namespace orvane {

struct ServingOptions {
  std::string address = "127.0.0.1";
  int port = 8011;  ///< 0: any free one, see RunningServer::Port
  /// PEM files of the server's certificate chain and key. Required unless the address is this
  /// machine's own: passwords and tickets do not travel in the clear.
  std::string certificatePath{};
  std::string keyPath{};
  /// Longest request that is read, and longest answer to a fetch or greeting that is sent.
  int maxMessageBytes = 64 * 1024 * 1024;
  /// Requests worked on at once; one more is turned away and may be sent again.
  int maxConcurrent = 64;
  /// Told, from threads of the server, what went wrong inside it (never what a user did wrong).
  std::function<void(const std::string&)> report{};
};

/// A server that listens. Destroying it stops it at once.
class RunningServer {
 public:
  virtual ~RunningServer() = default;

  virtual int Port() const = 0;
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

}  // namespace orvane
