#pragma once

// What the decisions on a document amount to: pure rules over its approval rows, the same for all
// kinds of documents. Levels are decided in ascending order; the turn is at the lowest level still
// waiting, unless a lower one is rejected.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "contract/workflow.h"
#include "packet/data_packet.h"

namespace orvane::server {

struct ApprovalRow {
  int level = 0;
  ApproverKind approver = ApproverKind::CostCenterHead;
  int status = ApprovalWaiting;
  std::optional<std::int64_t> decidedBy;
};

/// Of a packet with the columns ConfirmationLevel, Approval, Status and ConfirmedFrom.
std::vector<ApprovalRow> ReadApprovalRows(const DataPacket& packet);

/// Status that the decisions give a document sent for approval. Rows: one per level, at least one.
/// The document's own screen, the queue and decisions in bulk all come here.
DocumentStatus StatusOf(std::span<const ApprovalRow> rows);

/// The row whose turn it is; null pointer when none waits, or a lower one is rejected.
const ApprovalRow* TurnOf(std::span<const ApprovalRow> rows);

/// The employee decided this row, and no higher level has decided since.
bool MayTakeBack(std::span<const ApprovalRow> rows, const ApprovalRow& row, std::int64_t employee);

/// One role of a person in the approval of a document (fields oKindUser, oConfirmationLevel,
/// oConfirmationStats).
struct RoleRow {
  ApprovalRole role = ApprovalRole::HasTurn;
  int level = 0;
  int status = 0;

  bool operator==(const RoleRow&) const = default;
};

/// What decides somebody's roles.
struct RoleFacts {
  int status = Entered;
  bool closed = false;  ///< annulled or an old version: no roles
  std::span<const ApprovalRow> rows;
  std::optional<std::int64_t> employee;
  bool decidesTurn = false;  ///< is among the approvers of the row whose turn it is
  bool isChief = false;      ///< heads the cost centre or stands in
};

/// At most one row per role: the highest own level that can still be taken back, the turn, and the
/// chief's, which a completed document gives too: the chief may open it again.
std::vector<RoleRow> RolesOf(const RoleFacts& facts);

/// Decisions are taken only in these statuses of requests and orders.
inline constexpr StatusSet kDecidableStatuses{Rejected, ForApproval, PartlyApproved, Approved};

}  // namespace orvane::server
