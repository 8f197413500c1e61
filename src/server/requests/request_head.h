#pragma once

// How purchase requests are kept and called.

#include "contract/purchase_request.h"
#include "server/documents/document_head.h"

namespace orvane::server {

/// Under whose name a request without approval levels was approved.
inline constexpr auto kRequestServiceEmployee = Code19("ServiceEmployee");

const StoredDocument& StoredRequest();
/// "Искане за покупка 17, версия 2".
std::string NameOf(DocumentKey request);

}  // namespace orvane::server
