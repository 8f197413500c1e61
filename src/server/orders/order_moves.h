#pragma once

// What a move of a supplier order does beside writing its status.

#include "contract/workflow.h"
#include "server/documents/document_head.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// The head carries the move's status already.
Answer<Done, Setback> OrderMoved(WriteContext& context, DocumentKey key, const Move& move);

}  // namespace orvane::server
