#pragma once

// How supplier orders are kept and called.

#include "server/documents/document_head.h"

namespace orvane {

const StoredDocument& StoredOrder();

}  // namespace orvane
