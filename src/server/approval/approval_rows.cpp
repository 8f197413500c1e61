#include "server/approval/approval_rows.h"

#include <algorithm>

namespace orvane::server {
namespace {

bool IsRejected(const ApprovalRow& row) {
  return row.status == ApprovalRejected;
}
bool IsApproved(const ApprovalRow& row) {
  return IsGiven(row.status);
}

}  // namespace

std::vector<ApprovalRow> ReadApprovalRows(const DataPacket& packet) {
  std::vector<ApprovalRow> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto number = [&](std::string_view column) {
      return static_cast<int>(packet.At(row, column).AsInt().value_or(0));
    };
    rows.push_back({number("ConfirmationLevel"), static_cast<ApproverKind>(number("Approval")),
                    number("Status"), packet.At(row, "ConfirmedFrom").AsInt()});
  }
  return rows;
}

DocumentStatus StatusOf(std::span<const ApprovalRow> rows) {
  if (std::any_of(rows.begin(), rows.end(), IsRejected)) return Rejected;
  if (std::all_of(rows.begin(), rows.end(), IsApproved)) return Approved;
  return std::any_of(rows.begin(), rows.end(), IsApproved) ? PartlyApproved : ForApproval;
}

const ApprovalRow* TurnOf(std::span<const ApprovalRow> rows) {
  const ApprovalRow* turn = nullptr;
  for (const ApprovalRow& row : rows) {
    const bool first = turn == nullptr || row.level < turn->level;
    if (!IsApproved(row) && first) turn = &row;
  }
  return turn && !IsRejected(*turn) ? turn : nullptr;
}

bool MayTakeBack(std::span<const ApprovalRow> rows, const ApprovalRow& row, std::int64_t employee) {
  if (row.status == ApprovalWaiting || row.decidedBy != employee) return false;
  return std::none_of(rows.begin(), rows.end(), [&](const ApprovalRow& other) {
    return other.level > row.level && other.status != ApprovalWaiting;
  });
}

std::vector<RoleRow> RolesOf(const RoleFacts& facts) {
  std::vector<RoleRow> roles;
  if (facts.closed || !facts.employee) return roles;
  if (kDecidableStatuses.Has(facts.status)) {
    const ApprovalRow* own = nullptr;
    for (const ApprovalRow& row : facts.rows) {
      const bool higher = own == nullptr || row.level > own->level;
      if (higher && MayTakeBack(facts.rows, row, *facts.employee)) own = &row;
    }
    if (own) roles.push_back({ApprovalRole::HasDecided, own->level, own->status});
    const ApprovalRow* turn = TurnOf(facts.rows);
    if (turn && facts.decidesTurn) {
      roles.push_back({ApprovalRole::HasTurn, turn->level, turn->status});
    }
  }
  if (facts.isChief) roles.push_back({ApprovalRole::IsChief, 0, 0});
  return roles;
}

}  // namespace orvane::server
