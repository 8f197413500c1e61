#pragma once

// How supplier orders are kept and called.

#include "server/documents/document_head.h"

namespace orvane::server {

const StoredDocument& StoredOrder();

}  // namespace orvane::server
