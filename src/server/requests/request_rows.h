#pragma once

// Rows of a purchase request against the supplier orders they are raised against: pure rules over
// plain rows, and the statements that read what the orders leave.

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/documents/document_pricing.h"

namespace orvane::server {

/// A supplier order and what it still leaves of its entries to requests of status 3 to 7.
struct OrderFacts {
  std::int64_t id = 0;
  int status = Entered;
  bool annulled = false;
  std::int64_t supplier = 0;
  std::map<std::int64_t, double> left;  ///< by serial number
};

/// Locks the orders, ascending, and reads what they leave. `wanted` is an SQL condition on
/// {order} that names `params`. Rows of the request `own` are not counted against it.
std::vector<Statement> SelectOrders(const Work& work, const std::string& wanted, DocumentKey own,
                                    NamedValues params);
inline constexpr std::size_t kOrderStatements = 2;
std::map<std::int64_t, OrderFacts> ReadOrders(const DataPacket& orders, const DataPacket& entries);

/// Why the rows may not be raised against the orders they name; nothing when they may. Only rows of
/// the orders in `orders` are looked at: what the rows together ask may not exceed what is left.
std::optional<Failure> WhyOrdersRefuse(const StoredHead& head, std::span<const DocumentRow> rows,
                                       const std::map<std::int64_t, OrderFacts>& orders,
                                       const std::map<std::int64_t, EntryFacts>& entries);

}  // namespace orvane::server
