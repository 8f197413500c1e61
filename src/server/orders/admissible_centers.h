#pragma once

// Cost centres for which an employee is an admissible requester, as they travel with what a screen
// opens with: all of them, or none when they are too many to be sent unasked.

#include <cstdint>

#include "packet/data_packet.h"
#include "packet/variant.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Rows of own_rows::kCostCenter, by code; of too many one too many.
Statement SelectAdmissibleCenters(std::int64_t employee);

/// The packet to be sent; Null when there are too many.
Variant AdmissibleCenters(DataPacket rows);

}  // namespace orvane::server
