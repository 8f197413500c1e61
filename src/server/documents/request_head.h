#pragma once

// The head of a purchase request as the server's rules look at it, locked for the transaction.

#include <optional>
#include <string>

#include "contract/purchase_request.h"
#include "packet/decimal.h"
#include "server/documents/visibility.h"
#include "server/providers/work.h"

namespace orvane {

struct RequestKey {
  std::int64_t id = 0;
  std::int64_t version = 0;

  auto operator<=>(const RequestKey&) const = default;
};

struct RequestHead {
  RequestKey key;
  NamedValues row;  ///< every stored column, for old values
  Date documentDate;
  std::int64_t costCenter = 0;
  std::int64_t notifier = 0;
  std::optional<std::int64_t> supplier;
  std::int64_t kindSupply = 0;
  std::int64_t kindCurrency = 0;
  Decimal rate{1, 0};
  Decimal currSum;
  Decimal sum;
  int status = Entered;
  bool annulled = false;
  bool old = false;
  bool seen = true;  ///< the asker may see it
  std::int64_t sending = 0;
  std::string createdFrom;
  std::string sentFrom;
  std::optional<Stamp> sentOn;
};

/// The head's columns with those that only the server writes; for its own writes and their history.
inline constexpr auto kRequestSendingNumber = Int32("SendingNumber");
inline constexpr auto kRequestSentFrom = String("SentFrom", 10);
inline constexpr auto kRequestSentOn = Moment("SentOn");
/// Under whose name a request without approval levels was approved.
inline constexpr auto kRequestServiceEmployee = Code19("ServiceEmployee");
ProviderDef RequestTable();

/// Reads the head and holds its row until the transaction ends.
Statement LockRequest(const Work& work, RequestKey key);
/// Empty when there is no such request.
std::optional<RequestHead> ReadRequestHead(const DataPacket& packet);

/// The stored columns of a part's rows, in the order of their keys.
Statement SelectPart(const ProviderDef& part, RequestKey key);

/// The asker created or requested it, and the configuration forbids deciding on one's own.
bool IsForbiddenOwn(const Work& work, const std::string& createdFrom, std::int64_t notifier);

/// "Искане за покупка 17, версия 2".
std::string NameOf(RequestKey key);
/// Name of a request's status, as nomenclature 249 has it.
std::string_view StatusName(int status);

/// Why the head and the rows of the request cannot be changed; nothing when they can. Nobody may
/// change what he does not see, an old version, an annulled request, or one that is not at
/// status 2.
std::optional<Failure> WhyNotEditable(const std::optional<RequestHead>& head, RequestKey key);
/// The first three of these: nothing at all may happen to such a request.
std::optional<Failure> WhyClosed(const std::optional<RequestHead>& head, RequestKey key);

/// What a change of the status, or an annulment, would be.
struct MoveAsked {
  int to = 0;  ///< 0: annulment
  bool chiefOrRequester = false;
};
/// The move, or why it is not allowed. The request is not closed.
Answer<const Move*> JudgeMove(const RequestHead& head, const MoveAsked& asked);

}  // namespace orvane
