#pragma once

// The server that the desktop talks to: one far away, or one inside this very program.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "packet/application_server.h"
#include "packet/clock.h"
#include "packet/failure.h"

namespace orvane::server {
class Database;
}  // namespace orvane::server

namespace orvane::apps {

/// Where the data is. Exactly one of server, database and demo is given.
struct BackendOptions {
  std::string server{};           ///< "host:port"
  std::string rootCertificate{};  ///< PEM file, for a server that is not on this machine
  std::string database{};         ///< SQLite file, served inside this program
  bool demo = false;              ///< a demonstration company that is gone afterwards
  std::string company{};          ///< which one: see DemoCompanyNamed
  bool overWire = false;          ///< the inner server is reached over a real network connection
  /// Paints while a distant server is waited for; see RemoteOptions::pump.
  std::function<bool()> pump{};
  /// What ages of the inner server are counted by (microseconds); unset: the machine's steady
  /// clock.
  std::function<std::int64_t()> steady{};
};

class Backend {
 public:
  virtual ~Backend() = default;
  virtual IApplicationServer& Server() = 0;
  /// For the status bar; empty when the server is inside this program.
  virtual std::string ServerName() const = 0;
  /// The database served inside this program; null when the server is far away.
  virtual Database* InnerDatabase() = 0;
};

/// Refused, in a sentence for the user, when the database or a certificate cannot be read. `clock`
/// is the inner server's and outlives the backend.
Answer<std::unique_ptr<Backend>> OpenBackend(const BackendOptions& options, const Clock& clock);

}  // namespace orvane::apps
