#pragma once

// The database as one request may use it: every read and every transaction begins with the guard of
// the asker's session, in the same round trip. What a server class does, it does through its Work.
//
//   auto packets = work.Read({&select, 1});
//   if (!packets) return packets.GetFailure();
//
//   return work.Write({&lock, 1}, [&](Transaction& transaction, const Packets& locked) { … });

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "packet/application_server.h"
#include "server/engine/database.h"
#include "server/sessions/sessions.h"

namespace orvane::server {

using Packets = std::vector<DataPacket>;

/// Why the body of a transaction did not come to its end.
struct Setback {
  Failure failure;
  /// Another transaction stood in the way: the same body may be run again from its beginning.
  bool retry = false;
};
/// The setback of an engine's failure; `doing` goes to the log.
Setback ToSetback(const EngineError& error, std::string_view doing);

/// Everything of a transaction between the guard and the commit.
using WriteBody = std::function<Answer<Done, Setback>(Transaction&, const Packets&)>;

/// What the server's configuration says of documents.
struct DocumentOptions {
  /// Whoever created or requested a document may decide on it too.
  bool mayApproveOwn = true;
};

class Work {
 public:
  Work(Database& database, Sessions& sessions, std::shared_ptr<const Session> session,
       const Company& company, const Caller& caller, Stamp now, DocumentOptions options = {});

  const Session& Who() const { return *session_; }
  std::int32_t PointNo() const { return caller_.pointNo; }
  /// The method that is carried out, with its client key.
  const MethodCall& Called() const { return called_; }
  void Carry(const MethodCall& call) { called_ = call; }
  /// The moment of the request, the same for all it writes.
  Stamp Now() const { return now_; }
  /// What ages are counted by, see Sessions::RunningMicros.
  std::int64_t RunningMicros() const { return sessions_.RunningMicros(); }
  /// The company's day.
  Date Today() const { return company_.zone.DayOf(now_); }
  const TimeZone& Zone() const { return company_.zone; }
  Engine EngineKind() const { return database_.Kind(); }
  const DocumentOptions& Options() const { return options_; }

  /// One snapshot, one round trip; one packet per statement.
  Answer<Packets> Read(std::span<const Statement> statements);
  /// The same behind the fences for statements in which a client had a say.
  Answer<Packets> Search(std::span<const Statement> statements, SearchLimits limits);
  /// Runs `body` in a transaction and commits it. `first` is read in the round trip of the guard.
  /// Retried three times when another transaction stood in the way.
  Answer<Done> Write(std::span<const Statement> first, const WriteBody& body);

  /// Whether the session was compared with the database at all.
  bool Guarded() const { return guarded_; }
  /// Whether the session turned out to have changed: reload it and run the request once more.
  bool Stale() const { return stale_; }

 private:
  /// Compares the guard's row and takes it off the packets.
  Answer<Done> TakeGuard(Packets& packets);
  Answer<Done, Setback> TryWrite(std::span<const Statement> guarded, const WriteBody& body);

  Database& database_;
  Sessions& sessions_;
  std::shared_ptr<const Session> session_;
  const Company& company_;
  const Caller& caller_;
  MethodCall called_;
  const Stamp now_;
  const DocumentOptions options_;
  bool guarded_ = false;
  bool stale_ = false;
};

}  // namespace orvane::server
