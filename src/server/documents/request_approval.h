#pragma once

// Purchase requests in approval: sending, correcting, and decisions level by level.

#include "server/approval/approval_rows.h"
#include "server/approval/decision.h"
#include "server/documents/request_head.h"
#include "server/documents/server_writes.h"
#include "server/providers/write_rules.h"

namespace orvane {

/// The stored approval rows of requests, with what only the server writes.
ProviderDef RequestApprovalTable();

Statement SelectApprovalRows(RequestKey key);
/// Of a packet with the columns ConfirmationLevel, Approval, Status and ConfirmedFrom.
std::vector<ApprovalRow> ReadApprovalRows(const DataPacket& packet);

/// Sends a request whose head has status 3: checks that it is whole, makes its approval rows, or
/// approves it by service, and takes its quantities from the supplier orders.
Answer<Done, Setback> SendRequest(WriteContext& context, RequestKey key);

/// Takes all approval rows away; history keeps them.
Answer<Done, Setback> DropApprovalRows(WriteContext& context, RequestKey key);

/// A decision on a level, carried out whole in the transaction of `context`. Where it moved the
/// request's status, context.headMoved says so.
Answer<Done, Setback> DecideOnRequest(WriteContext& context, RequestKey key,
                                      const DecisionAsked& asked);

}  // namespace orvane
