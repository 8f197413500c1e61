#pragma once

// Decisions on a document's approval rows: approve, reject, and taking either back. Which row and
// what is written is the same for all documents; the names of the fields are theirs.

#include <cstdint>
#include <string_view>

#include "contract/workflow.h"
#include "data/client_dataset.h"

namespace orvane::kit {

/// Fields of a document's approval rows.
struct ApprovalFields {
  std::string_view level = "ConfirmationLevel";
  std::string_view status = "Status";
  std::string_view by = "ConfirmedFrom";
  std::string_view on = "ConfermedOn";
  std::string_view withdrawnBy = "UnConfirmedFrom";
  std::string_view withdrawnOn = "UnConfirmedOn";
  bool keepsDecider = false;  ///< a withdrawal leaves who had decided, and when
};

/// The asking user's part in the approval, as it came with the load. Levels and statuses are -1
/// where he has none.
struct ApprovalRoles {
  bool canConfirm = false;
  int confirmLevel = -1;
  int confirmStatus = -1;
  bool canUnConfirm = false;
  int unConfirmLevel = -1;
  int unConfirmStatus = -1;
  bool isChief = false;
};

enum class Decision : std::uint8_t { Approve, Reject, Withdraw };

/// Reads the roles from rows of (oKindUser, oConfirmationLevel, oConfirmationStats).
ApprovalRoles ReadRoles(TVosClientDataSet& roles);

/// Edits and posts the row of `level`; false when there is none. Approving or rejecting writes who
/// and when and clears the withdrawal; withdrawing does the reverse.
bool Decide(TVosClientDataSet& rows, const ApprovalFields& fields, Decision decision, int level,
            const Variant& employee, Stamp now);

/// No level above the user's own has approved: walks the rows from the highest level down.
bool CanUnConfDoc(TVosClientDataSet& rows, const ApprovalFields& fields, int ownLevel);

}  // namespace orvane::kit
