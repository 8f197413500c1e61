#pragma once

// Logging in and out, and who is behind a ticket. Sessions, login limits and rights live in the
// database; the memory of this class only saves reading them. Every request's first statement is
// the session's guard, read in the same round trip as the work:
//
//   auto session = sessions.Find(caller.ticket);
//   auto packets = database.ReadSnapshot({sessions.Guard(**session), work…});
//   switch (sessions.Judge(**session, (*packets)[0])) …   // Changed: Reload and try once more
//
// So what was taken from a user is gone at the next request, on every server over the database.

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "packet/application_server.h"
#include "packet/clock.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/sessions/passwords.h"
#include "server/sessions/running_time.h"
#include "server/sessions/session.h"

namespace orvane::server {

struct SessionOptions {
  PasswordCost passwordCost;
  /// A session that asked for nothing so long has ended.
  std::int32_t idleMinutes = 12 * 60;
  /// Microseconds of a clock that only goes on; what ages are counted by.
  SteadyMicros steady = &MachineSteadyMicros;
};

/// What the guard's row says of a session.
enum class GuardVerdict {
  Current,      ///< as remembered
  Changed,      ///< rights or user were changed: Reload
  Ended,        ///< unknown, ended, idle too long, or its user is blocked
  OtherSchema,  ///< another program has migrated the database
};

/// Thread-safe.
class Sessions {
 public:
  Sessions(Database& database, const Clock& clock, SessionOptions options)
      : database_(database),
        clock_(clock),
        options_(std::move(options)),
        running_(options_.steady) {}

  /// `address` is where the request came from; empty for one of this process.
  Answer<SessionInfo> LogIn(const LoginRequest& request, const Company& company,
                            std::string_view address);
  Answer<Done> LogOut(const std::string& ticket);

  /// SessionEnded when the ticket opens nothing.
  Answer<std::shared_ptr<const Session>> Find(const std::string& ticket);
  /// Whether the ticket's session is in memory; asks no database.
  bool Remembers(const std::string& ticket);
  /// The session as the database has it now.
  Answer<std::shared_ptr<const Session>> Reload(const std::string& ticketHash);

  /// Reads one row: the present state of session and user. Its answer goes to Judge.
  Statement Guard(const Session& session) const;
  GuardVerdict Judge(const Session& session, const DataPacket& guard) const;

  /// Drops what is remembered of a session.
  void Forget(const std::string& ticketHash);
  /// Notes that the session asked for something; reaches the database at most once a minute.
  void NoteSeen(const Session& session);
  /// The present moment as ages are counted, see RunningTime.
  std::int64_t RunningMicros() { return running_.Now(); }

 private:
  struct Remembered {
    std::shared_ptr<const Session> session;
    std::int64_t seenAt = 0;
  };
  struct Attempt;

  /// Refused while one of the subjects is locked after too many failures.
  Answer<Done> CountAttempt(const Attempt& attempt);
  Answer<SessionInfo> Start(const LoginRequest& request, const Company& company,
                            const Attempt& attempt, const std::string& identity);
  void Sweep();

  Database& database_;
  const Clock& clock_;
  const SessionOptions options_;
  mutable RunningTime running_;
  std::mutex mutex_;
  std::unordered_map<std::string, Remembered> remembered_;
  std::optional<std::int64_t> sweptAt_;
};

/// The failure of a request without a living session.
Failure SessionEndedFailure();
/// The failure of every request once the database is not of this program's schema any more.
Failure OtherSchemaFailure();

/// The installation's company; Internal when the database has none.
Answer<Company> ReadCompany(Database& database);

}  // namespace orvane::server
