#pragma once

// The one door between client and server. The server implements it, the wire carries it, and the
// client's connections call it: in-process or remote is one choice made when a program starts.

#include <cstdint>
#include <string>
#include <vector>

#include "packet/data_packet.h"
#include "packet/date.h"
#include "packet/delta.h"
#include "packet/failure.h"
#include "packet/variant.h"

namespace orvane {

/// Client and server must speak the same version of this door.
inline constexpr std::int32_t kProtocolVersion = 2;

/// A user whose password the login screen may show, because the company is a demonstration.
struct DemonstrationUser {
  std::string login;
  std::string password;
  std::string description;
};

/// What anybody may know before logging in.
struct Greeting {
  std::int32_t protocolVersion = 0;
  std::string companyName;
  std::vector<DemonstrationUser> demonstrationUsers;
};

struct LoginRequest {
  std::int32_t protocolVersion = kProtocolVersion;
  std::string login;
  std::string password;
  std::string machineName;
  std::string programVersion;
};

/// Rights of the user at one module point: open 1, edit 2, insert 4, delete 8.
struct PointRights {
  std::int32_t point = 0;
  std::int32_t rights = 0;
};

/// What a session knows of its user and of the company.
struct SessionInfo {
  std::string ticket;       ///< secret of the session, sent with every request
  std::string sessionName;  ///< name of the session for history and logs, no secret
  std::string login;
  std::string userName;
  std::string userName2;
  std::int32_t userLevel = 0;     ///< 0 sees everything; 3 and more must have an employee record
  std::int32_t userLanguage = 1;  ///< 1 first, 2 second language
  std::vector<PointRights> points;
  std::string companyName;
  std::vector<std::string> languageNames;  ///< of the installation, in order; one: single language
  TimeZone zone;
  bool demonstration = false;
};

/// Who asks, and from which module point. The server believes the ticket alone and checks the rest
/// against it.
struct Caller {
  std::string ticket;
  std::int32_t moduleNo = 0;
  std::int32_t pointNo = 0;
};

/// One thing to fetch: the rows of a provider with parameters, or of a search statement (provider
/// "dspSQL" of class "TsmSQL", with its text in `sql`).
struct FetchRequest {
  std::string serverClass;
  std::string provider;
  NamedValues params;
  std::string sql;
  /// At most so many rows; 0 is everything the provider allows.
  std::int32_t rowLimit = 0;
  /// Of the previous portion's packet; empty for the first.
  std::string continuation;
};

struct ApplyRequest {
  std::string serverClass;
  std::string provider;
  /// 0: all or nothing. -1: every change is tried by itself, the good ones are kept.
  std::int32_t maxErrors = 0;
  Variant ownerData;
  Delta delta;
};

struct ApplyAnswer {
  std::vector<ChangeOutcome> outcomes;  ///< one per change, in order
  Variant ownerData;
  NamedValues headMoved;  ///< columns of the document's head that the apply moved
};

struct MethodCall {
  std::string serverClass;
  std::string method;
  VariantArray arguments;
  /// Of a method that writes: it is carried out once under the key. Empty when it only reads.
  std::string clientKey = {};
};

/// Few verbs. Every answer is a value or a Failure; no call throws.
class IApplicationServer {
 public:
  virtual ~IApplicationServer() = default;

  virtual Answer<Greeting> Greet() = 0;
  virtual Answer<SessionInfo> LogIn(const LoginRequest& request) = 0;
  virtual Answer<Done> LogOut(const Caller& caller) = 0;
  /// One packet per request, in order, all of one snapshot; the first failure answers for all.
  virtual Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                                const std::vector<FetchRequest>& requests) = 0;
  virtual Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) = 0;
  /// The answer array's shape belongs to the method.
  virtual Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) = 0;
  /// Whether the way to the server stands, as far as is known without asking anything over it.
  virtual bool IsReachable() const { return true; }
};

}  // namespace orvane
