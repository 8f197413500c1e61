#pragma once

// Judging one decision on a document: whose turn it is, who may take what back, and what the row of
// the level says afterwards. The document's own screen and the queue both come here.

#include <optional>
#include <string>

#include "packet/date.h"
#include "packet/failure.h"
#include "server/approval/approval_rows.h"
#include "server/approval/approvers.h"

namespace orvane::server {

/// The document a decision is about, as it is on disk, locked.
struct DecisionFacts {
  std::string document;  ///< its name in sentences
  std::string_view statusName;
  int status = ForApproval;
  StatusSet decidable = kDecidableStatuses;
  std::int64_t sending = 0;
  std::string sentFrom;
  std::string sentOn;  ///< as the user reads it
  std::span<const ApprovalRow> rows;
  const ApproversOfCostCenter& approvers;
  std::optional<std::int64_t> employee;
  /// It is the asker's own document, and the configuration forbids deciding on such.
  bool forbiddenOwn = false;
  // Of the document's gender.
  std::string_view sent = "изпратено";
  std::string_view it = "го";
};

struct DecisionAsked {
  int level = 0;
  std::int64_t sending = 0;
  /// ApprovalGiven, ApprovalRejected, or ApprovalWaiting to take the decision back.
  int status = ApprovalWaiting;
  /// Why, as far as the change speaks of it.
  std::optional<std::string> note = {};
};

/// What the level's row says after the decision.
struct DecidedRow {
  int level = 0;
  int status = ApprovalWaiting;
  std::optional<std::int64_t> decidedBy;
  std::optional<std::int64_t> withdrawnBy;
  /// The head in whose place a deputy decided.
  std::optional<std::int64_t> onBehalfOf;
  bool exchanges = false;  ///< in the place of another decision of his own
};

/// Conflict when the document went on since the asker saw it; Refused when a rule says no.
Answer<DecidedRow> JudgeDecision(const DecisionFacts& facts, const DecisionAsked& asked);

}  // namespace orvane::server
