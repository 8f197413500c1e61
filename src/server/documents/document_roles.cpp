#include "server/documents/document_roles.h"

namespace orvane::server {

std::vector<RoleRow> RolesInDocument(const Work& work, const DocumentInApproval& document) {
  RoleFacts facts;
  facts.status = document.status;
  facts.closed = document.closed;
  facts.rows = document.rows;
  facts.employee = work.Who().Employee();
  if (!facts.employee) return RolesOf(facts);
  const ApprovalRow* turn = TurnOf(document.rows);
  const bool own = IsForbiddenOwn(work, document.createdFrom, document.notifier);
  const ApproversOfCostCenter& approvers = document.approvers;
  facts.decidesTurn = turn && !own && approvers.Of(turn->approver).Has(*facts.employee);
  facts.isChief = approvers.Of(ApproverKind::CostCenterHead).Has(*facts.employee);
  return RolesOf(facts);
}

bool IsForbiddenOwn(const Work& work, const std::string& createdFrom, std::int64_t notifier) {
  if (work.Options().mayApproveOwn) return false;
  return createdFrom == work.Who().login || work.Who().Employee() == notifier;
}

}  // namespace orvane::server
