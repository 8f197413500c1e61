#pragma once

// Who sees which document. One predicate per document table, used by loads, moves, reports and
// every search that touches the table; and the same taken apart into its reasons, so that a move to
// the next document is a seek in one index per reason and never a walk over what one may not see.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "contract/workflow.h"
#include "packet/date.h"
#include "packet/variant.h"
#include "server/dialect/search.h"
#include "server/providers/work.h"

namespace orvane::server {

/// What of an asker decides which documents he sees.
struct Sight {
  std::int32_t level = 0;
  std::string login;
  std::optional<std::int64_t> employee;
  Date today;
  /// Holds open on deliveries or invoices.
  bool readsReceived = false;
};
Sight SightOf(const Work& work);

/// How a document's table names what the reasons look at; {t} stands for the table's alias.
struct SeenTable {
  DocumentKind kind = DocumentKind::PurchaseRequest;
  std::string_view table;
  std::string_view id;
  std::string_view version;  ///< empty for documents without versions
  /// Which rows a move between documents walks over.
  std::string_view current;
  /// What the indexes of its reasons are ordered by. Where they have them for moves alone it is an
  /// expression that no other index has, so that no planner walks all identifiers instead.
  std::string_view order;
  /// The asker requested it.
  std::string_view requested;
  /// Its cost centre is among those of the asker, a subselect in the place of {headed}.
  std::string_view headed;
  /// The asker is an admissible requester of its cost centre, and others raise documents against it
  /// by its status; {centers} is a subselect of his cost centres.
  std::string_view admissible;
  /// Statuses in which whoever holds open on deliveries or invoices sees the document too.
  std::span<const int> receivedStatuses;
  /// Whoever may open the point sees every row.
  bool everyone = false;
};

/// The reasons why an asker sees rows of a table.
class AskerVisibility {
 public:
  AskerVisibility(const SeenTable& table, const Sight& sight);

  /// Levels 0 to 2 see everything.
  bool Everything() const { return everything_; }
  /// Condition on alias {t} with named parameters; "1 = 1" for those who see everything.
  const std::string& Condition() const { return condition_; }
  /// The condition on an alias.
  std::string On(std::string_view alias) const;
  /// Common table expressions that Among, Next and Previous name, each with a comma behind it;
  /// empty for those who see everything.
  std::string Tables() const;
  /// The condition on an alias, read from the tables.
  std::string Among(std::string_view alias) const;
  /// Scalar subquery: the identifier of the nearest seen document above (below) `position`, an
  /// expression; null when there is none.
  std::string Next(std::string_view position) const;
  std::string Previous(std::string_view position) const;
  /// Values of the parameters that the texts name.
  const NamedValues& Params() const { return params_; }
  /// For search statements.
  RowPredicate AsRowPredicate() const;

 private:
  struct Direction;
  std::string Nearest(const Direction& direction, std::string_view position) const;
  std::string Headed() const;
  std::string Turns() const;

  SeenTable table_;
  bool everything_ = false;
  bool employed_ = false;
  bool requests_ = false;                  ///< sees what is there to be requested against
  std::vector<std::string> plainReasons_;  ///< conditions on {t}, each with an index of its own
  std::string condition_;
  NamedValues params_;
};

inline constexpr int kReceivedStatuses[] = {Approved, Fulfilling};
inline constexpr SeenTable kSeenRequests{DocumentKind::PurchaseRequest,
                                         "PurchaseOrder",
                                         "POIdNumber",
                                         "POVersion",
                                         "{t}.OldVersion = 0",
                                         "{t}.POIdNumber + 0",
                                         "{t}.Notifier = :Employee",
                                         "{t}.CostCenter in ({headed})",
                                         {},
                                         kReceivedStatuses};
inline constexpr SeenTable kSeenOrders{DocumentKind::SupplierOrder,
                                       "SuppManifacOrder",
                                       "IdNumber",
                                       "",
                                       "1 = 1",
                                       "{t}.IdNumber + 0",
                                       "{t}.Notifier = :Employee",
                                       "{t}.CostCenter in ({headed})",
                                       "{t}.Status in (5, 6, 7) and {t}.CostCenter in ({centers})",
                                       {}};
/// A delivery belongs to the requester and the cost centre of its request.
inline constexpr SeenTable kSeenDeliveries{
    DocumentKind::Delivery,
    "Deliveries",
    "IdNumber",
    "",
    "1 = 1",
    "{t}.IdNumber",
    "exists (select 1 from PurchaseOrder o where o.POIdNumber = {t}.PurchaseOrderId"
    " and o.POVersion = {t}.PurchaseOrderVer and o.Notifier = :Employee)",
    "exists (select 1 from PurchaseOrder o where o.POIdNumber = {t}.PurchaseOrderId"
    " and o.POVersion = {t}.PurchaseOrderVer and o.CostCenter in ({headed}))",
    {},
    {}};

/// Contracts have no cost centre and no requester.
inline constexpr SeenTable kSeenContracts{
    {}, "SuppliesContracts", "IdNumber", "", "1 = 1", "{t}.IdNumber", {}, {}, {}, {}, true};

/// The condition on an alias for the select of a provider that is read by itself: its parameters
/// are those of the session.
std::string SeenBySession(const SeenTable& table, std::string_view alias);

/// The asker's predicate for a head table of the search catalogue; a table that is not among the
/// documents here shows nothing.
RowPredicate SearchVisibility(const Work& work, std::string_view table);

}  // namespace orvane::server
