#pragma once

// The company of the request tests with what supplier orders need beside it: contracts 30 (goods
// through orders), 31 (goods, not through orders), 32 (ended) and 33 (of supplier 8); partner 9 is
// no supplier.

#include <string>

#include "contract/supplier_order.h"
#include "server/request_world.h"

namespace orvane::server {

class OrderWorld : public RequestWorld {
 public:
  explicit OrderWorld(Engine engine);

  // Applies; each answers "ok" or the message of what went wrong.
  ApplyAnswer ApplyToOrder(const std::string& login, std::string_view provider,
                           const Change& change, Point point = Point::SupplierOrders);
  std::string ApplyOrder(const std::string& login, std::string_view provider, const Change& change,
                         Point point = Point::SupplierOrders);

  /// An order of goods by `author` from supplier 7, as the screen sends it.
  static NamedValues OrderValues(const NamedValues& changed = {});
  /// Its identifier.
  std::int64_t NewOrder(const NamedValues& changed = {});
  static NamedValues OrderRow(std::int64_t id, int number, std::int64_t serial, double quantity);
  std::string AddOrderRow(std::int64_t id, int number, std::int64_t serial, double quantity);
  std::string MoveOrder(const std::string& login, std::int64_t id, int from, int to);
  std::string AnnulOrder(const std::string& login, std::int64_t id);
  /// An order of one row (8 kilograms of entry 20), sent by its author.
  std::int64_t SentOrder(const NamedValues& changed = {});
  std::string DecideOrder(const std::string& login, std::int64_t id, int level, int from, int to,
                          int sending = 1, Point point = Point::SupplierOrders);

  /// "GetRecord" as the screen sends it; the session's own claims.
  VariantArray LoadOrder(const std::string& login, Nav nav, std::int64_t id, int step = 0,
                         bool firstLanguage = true);
  /// "<position>:<id>", "3" when nothing was found.
  std::string WhereOrder(const std::string& login, Nav nav, std::int64_t id, int step = 0);
  /// "may approve, may withdraw, pending, own, level" as "T- 2 0 1".
  std::string PartIn(const std::string& login, std::int64_t id);
  int OrderStatus(std::int64_t id);
  /// "1:2 2:3", level and status of the approval rows.
  std::string OrderLevels(std::int64_t id);
  /// "<in its currency> <national>".
  std::string OrderSums(std::int64_t id);
};

/// A case on every engine with a world of its own.
class OrderCase : public testing::TestWithParam<Engine> {
 protected:
  OrderCase() : world(GetParam()) {}
  OrderWorld world;
};

}  // namespace orvane::server
