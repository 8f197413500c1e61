#pragma once

// One connection to PostgreSQL, used by one thread at a time. It is always in pipeline mode:
// however many commands are given, the answers are waited for once.

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "server/engine/database.h"
#include "server/engine/postgres_codec.h"

struct pg_conn;
struct pg_result;

namespace orvane::server {

struct ClosePostgres {
  void operator()(pg_conn* handle) const;
};
struct ClearPostgres {
  void operator()(pg_result* result) const;
};
using PostgresHandle = std::unique_ptr<pg_conn, ClosePostgres>;
using PostgresResult = std::unique_ptr<pg_result, ClearPostgres>;

/// A statement on its way. Unkept ones are not prepared: their texts do not come again.
struct PostgresCommand {
  const Statement* statement = nullptr;
  bool kept = true;
};

struct PostgresReply {
  DataPacket packet;
  std::int64_t touched = 0;
};

class PostgresConnection {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  /// `settings` of the session stand before what the conninfo says: "-c name=value …".
  static EngineAnswer<std::unique_ptr<PostgresConnection>> Open(const std::string& info,
                                                                const std::string& settings = {});
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;
  ~PostgresConnection() = default;

  /// One reply per command, or the first failure; what stands behind it was not carried out. At the
  /// deadline the server is told to stop, and a server that does not listen is left; the failure is
  /// then of the kind `late`. The same, of the kind TooLarge, when the answers grow beyond `bytes`.
  EngineAnswer<std::vector<PostgresReply>> Run(std::span<const PostgresCommand> commands,
                                               Deadline deadline,
                                               EngineErrorKind late = EngineErrorKind::Late,
                                               std::int64_t bytes = kHighest64);
  /// Runs several statements in one transaction, however long they take.
  EngineAnswer<Done> RunScript(const std::string& script);
  /// Rolls back what is open; costs a round trip only then. True when it was needed.
  bool RollBack();
  bool IsBroken() const;

 private:
  struct Prepared {
    std::string name;
    std::vector<PostgresType> types;
  };
  /// A text that was prepared, once per combination of parameter types.
  struct KeptText {
    NumberedText numbered;
    std::vector<Prepared> prepared;
  };
  /// What was sent and is still to be answered.
  struct Sent {
    const Statement* statement = nullptr;  ///< null for a preparation
    KeptText* text = nullptr;              ///< of a preparation
    std::string name;                      ///< of a preparation
  };

  explicit PostgresConnection(PostgresHandle handle) : handle_(std::move(handle)) {}
  bool DropKept(std::vector<Sent>& sent);
  EngineAnswer<Done> Send(const PostgresCommand& command, std::vector<Sent>& sent);
  const std::string* NameFor(KeptText& text, std::span<const PostgresValue> values,
                             std::vector<Sent>& sent);
  std::optional<EngineError> Receive(const Sent& sent, Deadline deadline,
                                     std::vector<PostgresReply>& replies);
  /// The rows of a result that may be too large to be held whole, one after the other.
  std::optional<EngineError> ReceiveRows(const Statement& statement, Deadline deadline,
                                         PostgresReply& reply);
  /// Takes the packet's bytes off what is left; stops the server when there are none.
  std::optional<EngineError> Spend(const DataPacket& packet);
  PostgresResult Next(Deadline deadline);
  bool WaitUntil(Deadline deadline);
  void Cancel();
  EngineError ErrorOf(const pg_result* result);
  EngineError Broken();

  PostgresHandle handle_;
  bool left_ = false;  ///< the server did not answer in time: the connection is of no more use
  bool cancelled_ = false;
  std::int64_t bytesLeft_ = kHighest64;  ///< of the answers to what is being run
  EngineErrorKind late_ = EngineErrorKind::Late;
  bool stale_ = false;  ///< the schema moved: a kept plan may no longer fit its tables
  std::int64_t names_ = 0;
  std::unordered_map<std::string, KeptText> kept_;
};

}  // namespace orvane::server
