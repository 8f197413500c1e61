#pragma once

#include <string>

#include "server/documents/document.h"

namespace orvane::server {

/// Positions of the parts behind the head.
enum OrderLoadPart : std::uint8_t {
  kOrderRows,
  kOrderApprovals,
  kOrderCostCenterRow,
  kOrderPartnerRow,
  kOrderContractRow,
};

/// Supplier orders.
const Document& SupplierOrder();

/// The current requests, not annulled, whose rows name the order with the identifier `id`, an SQL
/// expression; only those that meet `seen`, a condition on alias p. Names of the language are in
/// braces, as those of a part are.
std::string SelectRequestsOfOrder(std::string_view id, const std::string& seen);

/// Texts of the providers that read an order's head and parts by themselves, with their parameters
/// and for those who may see the order.
namespace order_select {
const std::string& Head();
const std::string& Rows();
const std::string& Approvals();
const std::string& Requests();
}  // namespace order_select

}  // namespace orvane::server
