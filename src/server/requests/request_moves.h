#pragma once

// What a move of a purchase request does beside writing its status: sending makes the approval
// rows, correction deletes them, and the supplier orders that the request names follow.

#include "contract/workflow.h"
#include "server/documents/document_head.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// The head carries the move's status already.
Answer<Done, Setback> RequestMoved(WriteContext& context, DocumentKey key, const Move& move);

/// The one place where a request's status is written, beside the moves that a head brings itself.
/// Supplier orders that it names follow: to 6 with the first request against them, back to 5 when
/// none is left. Their rows are locked.
Answer<Done, Setback> WriteRequestStatus(WriteContext& context, const StoredHead& head,
                                         DocumentStatus status);

/// Orders that the request's rows name get the status that the requests against them give.
Answer<Done, Setback> SettleOrders(WriteContext& context, DocumentKey key);

}  // namespace orvane::server
