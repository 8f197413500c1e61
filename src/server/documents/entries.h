#pragma once

// What the registers say of supply-list entries at the moment a document's row is saved: what
// stands behind them, the size of their own unit, and their price in force.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "packet/decimal.h"
#include "packet/variant.h"
#include "server/documents/settings.h"
#include "server/engine/database.h"

namespace orvane::server {

struct EntryFacts {
  std::int64_t serial = 0;
  std::string name;
  std::optional<std::int64_t> inventoryId;
  std::optional<std::int64_t> serviceCode;
  std::int64_t numerator = 1;  ///< of the entry's own unit
  /// In national currency, for `numerator` smallest units; empty when there is none.
  std::optional<Decimal> listPrice;
  std::optional<Decimal> lastDeliveryPrice;

  /// By the parameter's algorithm: 2 is the last delivery's, or the list's when there was none.
  std::optional<Decimal> Price(const DocumentSettings& settings) const {
    return settings.priceAlgorithm == 2 && lastDeliveryPrice ? lastDeliveryPrice : listPrice;
  }
};

/// SQL expressions for what the document says: its day, contract and supplier, and a condition on
/// {serial} for the entries wanted; `params` are the values that they name.
struct EntriesAsked {
  std::string day;
  std::string contract;
  std::string supplier;
  std::string wanted;
  NamedValues params;
};

inline constexpr std::size_t kEntryStatements = 2;
std::vector<Statement> SelectEntries(const EntriesAsked& asked);
std::map<std::int64_t, EntryFacts> ReadEntries(const DataPacket& entries,
                                               const DataPacket& lastDeliveries);

}  // namespace orvane::server
