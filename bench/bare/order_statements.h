#pragma once

// What a careful person would write by hand for supplier orders.

#include <string>
#include <vector>

#include "bare/bare.h"

namespace orvane::bench {

/// All rows of an order with the names that its screen shows.
std::vector<BareStatement> RowsOfOrder(std::int64_t id);
/// A page of the report of orders.
BareStatement PageOfOrders(const std::string& condition);
/// A row's new quantity, `history` lines of history and a key, as one writes them who stores what a
/// post stores.
struct OrderRowPost {
  std::int64_t id = 0;
  std::int64_t row = 1;
  std::int64_t quantity = 1;
  std::int64_t history = 1;
  std::string key;
};
std::vector<BareStatement> WritesOf(const OrderRowPost& post);

}  // namespace orvane::bench
