#pragma once

// A data module's way to its server class. A connection is open only while a request runs; opening
// it costs nothing, the link beneath is the session's.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packet/application_server.h"

namespace orvane::data {

/// The session as the client's floors see it: the door, the ticket, and what the login told. One
/// per logged-in user; outlives every screen.
struct ClientSession {
  IApplicationServer* server = nullptr;
  SessionInfo info;
  std::int64_t calls = 0;          ///< calls made to the server so far
  std::int64_t nextClientKey = 1;  ///< part of the next key
  /// A writing call whose answer was lost: asked again, it goes under the same key.
  std::optional<MethodCall> unsettledCall = {};

  /// A key that nobody had before: the session's name and a number.
  std::string NextClientKey() { return info.sessionName + "-" + std::to_string(nextClientKey++); }
};

/// Whether a write that failed so may still be carried out, or was never looked at: it goes again
/// as it was, under its keys.
bool KeepsItsBytes(FailureKind kind);

/// Where a screen stands: every request of its data module claims this point.
struct ScreenPoint {
  std::int32_t moduleNo = 0;
  std::int32_t pointNo = 0;
};

/// A connection to one server class. Throws ServerError when a call fails as a whole.
class TVosSQLConnection {
 public:
  TVosSQLConnection(ClientSession& session, ScreenPoint point, std::string_view serverClassName)
      : session_(&session), point_(point), serverClassName_(serverClassName) {}

  const std::string& ServerClassName() const { return serverClassName_; }
  ClientSession& Session() const { return *session_; }
  bool Connected() const { return connected_; }
  void Open() { connected_ = true; }
  void Close() { connected_ = false; }

  /// Each opens the connection when it is closed; closing it is the caller's.
  std::vector<DataPacket> Fetch(const std::vector<FetchRequest>& requests);
  /// A failure of the whole apply is returned, because the dataset must keep what it sent.
  Answer<ApplyAnswer> Apply(const ApplyRequest& request);
  /// Calls a method that writes. After a lost answer the same call, from whatever screen, repeats
  /// the same bytes, and the server answers what it answered before.
  VariantArray Call(std::string_view method, VariantArray arguments);
  /// Calls a method that only reads: one whose answer was lost may simply be asked again, so that
  /// nothing of it is uncertain.
  VariantArray Ask(std::string_view method, VariantArray arguments);

 private:
  Caller MakeCaller() const;
  Answer<VariantArray> Send(const MethodCall& call);

  ClientSession* session_;
  ScreenPoint point_;
  std::string serverClassName_;
  bool connected_ = false;
};

}  // namespace orvane::data
