#include "server/documents/document_roles.h"

#include "contract/approval_rows.h"

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

void TellWaitsFor(const Work& work, const DocumentInApproval& document, Language language,
                  DataPacket& approvals) {
  const ApprovalRow* turn = TurnOf(document.rows);
  if (document.closed || !kDecidableStatuses.Has(document.status) || !turn) return;
  const DocumentOwners owners{document.createdFrom, document.notifier};
  const FieldDef& field = approval_rows::WaitsFor;
  std::string names = document.approvers.Of(turn->approver)
                          .Names(work.Options().mayApproveOwn ? nullptr : &owners, field.size);
  if (names.empty()) names = language == Language::Second ? "nobody" : "никой";
  PacketColumn told;
  told.name = field.name;
  told.kind = field.kind;
  told.size = field.size;
  for (std::size_t row = 0; row < approvals.rowCount; ++row) {
    if (approvals.At(row, "ConfirmationLevel").AsInt() == turn->level)
      AppendValue(told, row, Variant(names));
    else
      AppendNull(told, row);
  }
  approvals.columns.at(*approvals.FindColumn(field.name)) = std::move(told);
}

bool IsForbiddenOwn(const Work& work, const std::string& createdFrom, std::int64_t notifier) {
  if (work.Options().mayApproveOwn) return false;
  return createdFrom == work.Who().login || work.Who().Employee() == notifier;
}

}  // namespace orvane::server
