#pragma once

// Decisions on a document's approval rows: approve, reject, and taking either back. Which row and
// what is written is the same for all documents; the names of the fields are theirs.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

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
  std::string_view note = "ApprovalNote";
  bool keepsDecider = false;  ///< a withdrawal leaves who had decided, when and why
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

/// Why somebody decided so, as far as it was typed and is not written yet: it is offered again with
/// the next such decision on that level.
class TypedNotes {
 public:
  /// `document` is its identifier, with its version.
  std::string& Of(const std::string& document, int level, Decision decision) {
    return notes_[{document, level, decision}];
  }

 private:
  std::map<std::tuple<std::string, int, Decision>, std::string> notes_;
};

/// A decision on a level, and who makes it when.
struct LevelDecision {
  Decision decision = Decision::Approve;
  int level = 0;
  Variant employee;
  Stamp now;
};

/// Reads the roles from rows of (oKindUser, oConfirmationLevel, oConfirmationStats).
ApprovalRoles ReadRoles(TVosClientDataSet& roles);

/// Edits and posts the row of the level; false when there is none. Approving or rejecting writes
/// who, when and why and clears the withdrawal; withdrawing does the reverse. A written `note` is
/// emptied.
bool Decide(TVosClientDataSet& rows, const ApprovalFields& fields, const LevelDecision& made,
            std::string& note);

/// No level above the user's own has approved: walks the rows from the highest level down.
bool CanUnConfDoc(TVosClientDataSet& rows, const ApprovalFields& fields, int ownLevel);

}  // namespace orvane::kit
