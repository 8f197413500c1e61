#pragma once

// Purchase requests in approval: sending, and decisions level by level.

#include "server/approval/decision.h"
#include "server/documents/document_head.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// Sends a request whose head has status 3: checks that it is whole, makes its approval rows, or
/// approves it by service, and takes its quantities from the supplier orders.
Answer<Done, Setback> SendRequest(WriteContext& context, DocumentKey key);

/// A decision on a level, carried out whole in the transaction of `context`. Where it moved the
/// request's status, context.headMoved says so.
Answer<Done, Setback> DecideOnRequest(WriteContext& context, DocumentKey key,
                                      const DecisionAsked& asked);

}  // namespace orvane::server
