#pragma once

// What a document that is sent for approval must be, whatever its kind: entering judged it, and is
// judged again, because registers change between the two.

#include <map>
#include <optional>
#include <span>
#include <vector>

#include "server/approval/approvers.h"
#include "server/documents/document_pricing.h"
#include "server/documents/entry_terms.h"
#include "server/documents/head_facts.h"

namespace orvane::server {

struct SentDocument {
  const StoredDocument& document;
  const StoredHead& head;
  HeadFacts facts;
  std::vector<DocumentRow> rows;
  std::map<std::int64_t, EntryFacts> entries;
  std::map<std::int64_t, EntryTerms> terms;
};

/// Read it, behind the lock of its head.
std::vector<Statement> SelectSent(const Work& work, const StoredDocument& document,
                                  const StoredHead& head);
inline constexpr std::size_t kSentStatements = kHeadFactStatements + kEntryStatements + 2;
SentDocument ReadSent(const StoredDocument& document, const StoredHead& head,
                      std::span<const DataPacket> packets);

/// Why the document does not go for approval; the sentence names document, row and way out.
std::optional<Failure> WhyNotSent(const SentDocument& sent);

/// Whose document it is, where the configuration lets nobody decide on his own; null pointer
/// otherwise. For PlanApproval.
const DocumentOwners* WhoMayNotDecide(const Work& work, const DocumentOwners& owners);

}  // namespace orvane::server
