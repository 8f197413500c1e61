#pragma once

// Documents in approval: the rows that a sending makes, decisions level by level, and the status
// that they give. How a document differs is a value, ApprovalSteps.

#include <string>
#include <vector>

#include "server/approval/decision.h"
#include "server/documents/document_head.h"
#include "server/documents/server_writes.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

struct ApprovalSteps {
  const StoredDocument& document;
  /// An approved document ceases to be one: refused when something stands on it. Null pointer when
  /// its status says so.
  Answer<Done, Setback> (*leavesApproved)(WriteContext& context, const StoredHead& head);
  /// A rejected document comes back; null pointer when nothing is asked then.
  Answer<Done, Setback> (*leavesRejected)(WriteContext& context, const StoredHead& head);
  /// The one place where the document's status is written beside its moves.
  Answer<Done, Setback> (*writeStatus)(WriteContext& context, const StoredHead& head,
                                       DocumentStatus status);
};

/// Read who decides for the document :Id, :Version of `params`.
std::vector<Statement> SelectApproversOf(const StoredDocument& document, const NamedValues& params,
                                         Date today);
Statement SelectApprovalRows(const StoredDocument& document, DocumentKey key);

/// The writes of a sending: its number, who sent and when, what else the head is told, the rows of
/// the plan and whose turn it is.
void AddSending(ServerWrites& writes, const Work& work, const StoredDocument& document,
                const StoredHead& head, std::span<const ApprovalRow> plan,
                const ApproversOfCostCenter& approvers, NamedValues more = {});

/// Takes all approval rows away; history keeps them.
Answer<Done, Setback> DropApprovalRows(WriteContext& context, const StoredDocument& document,
                                       DocumentKey key);

/// Writes the status of a head where it is another one, and tells the client. Whether it did.
Answer<bool, Setback> WriteStatus(WriteContext& context, const StoredDocument& document,
                                  const StoredHead& head, DocumentStatus status);

/// A decision on a level, carried out whole in the transaction of `context`. Where it moved the
/// document's status, context.headMoved says so.
Answer<Done, Setback> Decide(const ApprovalSteps& steps, WriteContext& context, DocumentKey key,
                             const DecisionAsked& asked);

/// Decisions that come as changes of approval rows.
Answer<Done, Setback> BeforeDecisions(const ApprovalSteps& steps, WriteContext& context,
                                      std::span<PreparedChange> changes);
Answer<Done, Setback> AfterDecisions(const ApprovalSteps& steps, WriteContext& context);

}  // namespace orvane::server
