#pragma once

// What the asking user is in the approval of a document that was loaded.

#include <string>
#include <vector>

#include "server/approval/approval_rows.h"
#include "server/approval/approvers.h"
#include "server/documents/document.h"
#include "server/providers/work.h"

namespace orvane::server {

struct DocumentInApproval {
  int status = Entered;
  bool closed = false;  ///< annulled or an old version
  std::string createdFrom;
  std::int64_t notifier = 0;
  std::vector<ApprovalRow> rows;
  ApproversOfCostCenter approvers;
};
std::vector<RoleRow> RolesInDocument(const Work& work, const DocumentInApproval& document);

/// Tells in the approval rows of a load (WaitsFor) who can decide the level whose turn it is;
/// nothing where nobody's turn it is.
void TellWaitsFor(const Work& work, const DocumentInApproval& document, Language language,
                  DataPacket& approvals);

/// The asker created or requested it, and the configuration forbids deciding on one's own.
bool IsForbiddenOwn(const Work& work, const std::string& createdFrom, std::int64_t notifier);

}  // namespace orvane::server
