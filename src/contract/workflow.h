#pragma once

// Statuses and moves of documents, said once: the screen shows a move while it is allowed, the
// server judges a change by the same row.

#include <cstdint>
#include <span>
#include <string_view>

#include "contract/points.h"

namespace orvane {

/// Kinds of document register (nomenclature 244).
enum class DocumentKind : std::uint8_t {
  SupplierOrder = 1,
  PurchaseRequest = 2,
  Delivery = 3,
  SupplierInvoice = 4,
};

/// Statuses of requests and orders (nomenclature 249).
enum DocumentStatus : std::uint8_t {
  Annulled = 0,  ///< orders only: an annulled request keeps its status and has a stamp
  Rejected = 1,
  Entered = 2,
  ForApproval = 3,
  PartlyApproved = 4,
  Approved = 5,
  Fulfilling = 6,
  Completed = 7,
};

/// Statuses of one approval row (nomenclature 251).
enum ApprovalStatus : std::uint8_t {
  ApprovalRejected = 1,
  ApprovalWaiting = 2,
  ApprovalGiven = 3,
  ApprovalByService = 4,  ///< written by the service employee; counts as given
};

constexpr bool IsGiven(int approvalStatus) {
  return approvalStatus == ApprovalGiven || approvalStatus == ApprovalByService;
}

/// Who decides at a level (nomenclature 245).
enum class ApproverKind : std::uint8_t { CostCenterHead = 1, SectionHead = 2, DepartmentHead = 3 };

/// A set of statuses, as bits.
class StatusSet {
 public:
  constexpr StatusSet() = default;
  template <class... Statuses>
  constexpr explicit StatusSet(Statuses... statuses)
      : bits_(static_cast<std::uint16_t>(((1u << statuses) | ... | 0u))) {}
  constexpr bool Has(int status) const { return status >= 0 && (bits_ >> status & 1u) != 0; }

 private:
  std::uint16_t bits_ = 0;
};

/// Who may make a move beside holding its right.
enum class Who : std::uint8_t {
  Anyone,
  ChiefOrRequester,  ///< head of the document's cost centre, or its requester
  Owner,             ///< its creator, or a user of level below 3
  Requester,         ///< its requester, or full access
  Approver,          ///< whose turn it is
  Decider,           ///< who decided and may still take it back
};

/// In the place of the status of a move that writes something else.
inline constexpr std::uint8_t kKeepsStatus = 255;

/// One move of a document. An annulled or superseded document allows none.
struct Move {
  std::string_view name;
  Right right = Right::Edit;
  StatusSet from;
  Who who = Who::Anyone;
  std::uint8_t to = kKeepsStatus;  ///< status written
  std::string_view alsoWrites = {};
};

/// What a person is in the approval of one document (field oKindUser of the roles).
enum class ApprovalRole : std::uint8_t { HasDecided = 1, HasTurn = 2, IsChief = 3 };

/// Results of loading a document.
enum class LoadCode : std::uint8_t { Between = 0, First = 1, Last = 2, None = 3 };

/// Moves of a load: by key, to the ends, to the neighbours, by a signed step.
enum class Nav : std::uint8_t { ByKey = 0, First = 1, Previous = 2, Next = 3, Last = 4, Step = 5 };

}  // namespace orvane
