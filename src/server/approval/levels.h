#pragma once

// Which levels a document must pass: pure matching of the approval levels register with its kind
// and sum, and the plan of approval rows that a sending makes.

#include <span>
#include <string>
#include <vector>

#include "packet/decimal.h"
#include "packet/failure.h"
#include "server/approval/approval_rows.h"
#include "server/approval/approvers.h"

namespace orvane::server {

/// A row of the register for one kind of document and kind of supply. Both bounds are included.
struct LevelRow {
  int level = 0;
  Decimal from;
  Decimal to;
  ApproverKind approver = ApproverKind::CostCenterHead;
};

Statement SelectLevels(DocumentKind kind, std::int64_t kindSupply);
std::vector<LevelRow> ReadLevels(const DataPacket& packet);

/// Rows whose range holds the sum, one per level, ascending; of several at a level the one with the
/// highest lower bound.
std::vector<LevelRow> MatchLevels(std::span<const LevelRow> rows, Decimal sum);

/// Sums between two ranges that no range holds, both bounds included.
struct Gap {
  Decimal from;
  Decimal to;
};

/// The gaps between the lowest and the highest bound of the rows, ascending. Sums have `decimals`
/// places: ranges that meet without a sum between them leave no gap.
std::vector<Gap> GapsBetween(std::span<const LevelRow> rows, int decimals);

/// What a document is sent with.
struct SendingFacts {
  std::string document;  ///< its name in sentences
  DocumentKind kind = DocumentKind::PurchaseRequest;
  std::int64_t kindSupply = 0;
  Decimal sum;
  std::span<const LevelRow> levels;
  const ApproversOfCostCenter& approvers;
  /// Told where the configuration forbids deciding on one's own.
  const DocumentOwners* mayNotDecide = nullptr;
};

/// The approval rows of a sending; none when the document is approved by service because its kind
/// has no levels at all. Refused, naming what is missing, when no range holds the sum, a level has
/// nobody to decide, or an order's kind has no levels.
Answer<std::vector<ApprovalRow>> PlanApproval(const SendingFacts& facts);

}  // namespace orvane::server
