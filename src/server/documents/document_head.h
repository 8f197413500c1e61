#pragma once

// The head of a document as the server's rules look at it, locked for the transaction, and what
// heads of all kinds share: why nothing may happen to one, and which move a change is. How a
// document differs is a value, StoredDocument.

#include <optional>
#include <span>
#include <string>

#include "contract/field.h"
#include "contract/workflow.h"
#include "packet/decimal.h"
#include "server/documents/visibility.h"
#include "server/providers/work.h"

namespace orvane::server {

/// Documents without versions have version 0.
struct DocumentKey {
  std::int64_t id = 0;
  std::int64_t version = 0;

  auto operator<=>(const DocumentKey&) const = default;
};

/// Columns that heads of all kinds have under the same name.
namespace stored {
inline constexpr std::string_view kDocumentDate = "DocumentDate";
inline constexpr std::string_view kCostCenter = "CostCenter";
inline constexpr std::string_view kNotifier = "Notifier";
inline constexpr std::string_view kSupplier = "Supplier";
inline constexpr std::string_view kContractId = "ContractId";
inline constexpr std::string_view kKindSupply = "KindSupply";
inline constexpr std::string_view kKindCurrency = "KindCurrency";
inline constexpr std::string_view kRateOfExchange = "RateOfExchange";
inline constexpr std::string_view kCreatedFrom = "CreatedFrom";
inline constexpr std::string_view kStatus = "Status";
inline constexpr std::string_view kAmendFrom = "AmendFrom";
inline constexpr std::string_view kAmendOn = "AmendOn";
inline constexpr std::string_view kAnnulFrom = "AnnulFrom";
inline constexpr std::string_view kAnnulOn = "AnnulOn";
inline constexpr std::string_view kOldVersion = "OldVersion";
/// Of rows.
inline constexpr std::string_view kRowNumber = "RowNumber";
inline constexpr std::string_view kSerialNumber = "SerialNumber";
inline constexpr std::string_view kMeasure = "Measure";
inline constexpr std::string_view kQuantity = "Quantity";
inline constexpr std::string_view kRowAmount = "CurrSumWithoutVAT";
inline constexpr std::string_view kRowOrder = "SuppManifacOrderId";

// Which only the server writes.
inline constexpr auto kSendingNumber = Int32("SendingNumber");
inline constexpr auto kSentFrom = String("SentFrom", 10);
inline constexpr auto kSentOn = Moment("SentOn");
inline constexpr auto kOnBehalfOf = Code19("OnBehalfOf");
}  // namespace stored

/// What somebody who wants to change the document is told to do first.
struct WayOut {
  int status;
  std::string_view sentence;
};

/// How a document is kept and called where shared steps read, write and name it.
struct StoredDocument {
  DocumentKind kind = DocumentKind::PurchaseRequest;
  std::string_view name;      ///< "Искане за покупка", its number follows
  std::string_view within;    ///< the same amid a sentence, "искане за покупка"
  std::string_view itself;    ///< "искането"
  std::string_view one;       ///< "едно искане"
  std::string_view annulled;  ///< "анулирано"
  std::string_view sent;      ///< "изпратено"
  std::string_view it;        ///< "го"
  std::span<const WayOut> waysOut;
  const SeenTable& seen;
  ProviderDef head;  ///< stored columns, with those that only the server writes
  ProviderDef rows;
  ProviderDef approvals;
  std::string_view currencySum;
  std::string_view nationalSum;
  std::string_view ofDocument;  ///< of a part: condition on :Id and :Version
  std::string_view partId;
  std::string_view partVersion = {};  ///< empty for documents without versions
  std::span<const Move> moves;
  bool ownersOnly = false;    ///< its creator alone changes it, and users of level below 3
  bool keepsDecider = false;  ///< a withdrawn decision keeps who had decided, and when
};

struct StoredHead {
  DocumentKey key;
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

/// :Id and :Version of the statements about a document.
NamedValues KeyParams(DocumentKey key);
/// Values of the key columns of a part's row.
NamedValues PartKey(const StoredDocument& document, DocumentKey key);

/// Condition that a part's row, by its alias, is of the head with alias p.
std::string OfHead(const StoredDocument& document, std::string_view part);

/// Reads the head and holds its row until the transaction ends.
Statement LockHead(const Work& work, const StoredDocument& document, DocumentKey key);
/// Empty when there is no such document.
std::optional<StoredHead> ReadHead(const StoredDocument& document, const DataPacket& packet);
/// A column of the head of the document :Id, :Version, as a scalar subselect.
std::string HeadColumn(const StoredDocument& document, std::string_view column);

/// The stored columns of a part's rows, in the order of their keys.
Statement SelectPart(const StoredDocument& document, const ProviderDef& part, DocumentKey key);

/// "Искане за покупка 17, версия 2", "Поръчка за производство 17".
std::string NameOf(const StoredDocument& document, DocumentKey key);
/// Name of a status, as nomenclature 249 has it.
std::string_view StatusName(int status);

/// Why nothing at all may happen to the document; nothing when something may: it is not there for
/// the asker, an old version, or annulled.
std::optional<Failure> WhyClosed(const StoredDocument& document,
                                 const std::optional<StoredHead>& head, DocumentKey key);
/// Why its head and rows cannot be changed: closed, not at status 2, or its creator's alone.
std::optional<Failure> WhyNotEditable(const Work& work, const StoredDocument& document,
                                      const std::optional<StoredHead>& head, DocumentKey key);

/// What a change of the status, or an annulment, would be, and what the asker is to the document.
struct MoveAsked {
  bool annuls = false;
  int to = 0;  ///< when it does not annul
  bool chiefOrRequester = false;
  bool owner = false;
  bool requester = false;
};
/// The move, or why it is not allowed. The document is not closed.
Answer<const Move*> JudgeMove(const StoredDocument& document, const StoredHead& head,
                              const MoveAsked& asked);

/// The asker created the document, or is of a level that may change everybody's.
bool IsOwner(const Work& work, const StoredHead& head);
/// The asker requested it, or may complete whatever order.
bool IsRequester(const Work& work, const StoredHead& head);

}  // namespace orvane::server
