#pragma once

// What the registers say of what a document's head says: judged when it is entered, and again when
// the document is sent.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "packet/delta.h"
#include "server/documents/document_head.h"
#include "server/documents/settings.h"

namespace orvane::server {

/// What the registers say of what a head says.
struct HeadFacts {
  DocumentSettings settings;
  bool admissible = false;  ///< the requester, for the cost centre
  bool isSupplier = false;  ///< the partner is one
  bool hasContract = false;
  std::int64_t contractSupplier = 0;
  std::int64_t contractKind = 0;
  bool contractActive = false;
  bool contractThroughOrders = false;
};

/// Reads the settings and the facts for the head as the change leaves it.
std::vector<Statement> SelectHeadFacts(const Work& work, const Change& change,
                                       const NamedValues& present);
inline constexpr std::size_t kHeadFactStatements = 3;
HeadFacts ReadHeadFacts(std::span<const DataPacket> packets);

/// Why a document of this supplier and kind may not name the contract, behind "Договор "; nothing
/// when it may, or names none.
std::optional<std::string> WhyContractRefused(const StoredDocument& document,
                                              const HeadFacts& facts, const Variant& contract,
                                              std::optional<std::int64_t> supplier,
                                              std::optional<std::int64_t> kind);

}  // namespace orvane::server
