#pragma once

#include "server/documents/document.h"

namespace orvane::server {

/// Positions of the parts behind the head.
enum RequestPart : std::uint8_t {
  kRequestRows,
  kRequestSchedule,
  kRequestPlan,
  kRequestApprovals,
  kRequestDeliveries,
  kRequestCostCenterRow,
  kRequestPartnerRow,
  kRequestContractRow,
};

/// Purchase requests.
const Document& PurchaseRequest();

}  // namespace orvane::server
