#pragma once

// What happens around the writing of a document's head: numbering, the rules of what it may say,
// amounts that follow from it, and its moves, judged by the contract's row and by what is on disk
// under the head's lock.

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "server/documents/document_head.h"
#include "server/documents/head_facts.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// Registers that every head names.
inline constexpr ReferenceRule kHeadReferences[] = {
    {"CostCenter", "CostCenters", "CostCenter",
     "Няма център за разход {CostCenter}. Изберете друг център за разход."},
    {"Notifier", "Employees", "Employee", "Няма служител {Notifier}. Изберете друг заявител."},
    {"Supplier", "Partners", "Partner", "Няма доставчик {Supplier}. Изберете друг доставчик."},
    {"ContractId", "SuppliesContracts", "IdNumber",
     "Няма договор {ContractId}. Изберете друг договор."},
    {"KindSupply", "KindSupplies", "Code",
     "Няма вид покупка {KindSupply}. Изберете друг вид покупка."},
    {"KindCurrency", "Currencies", "Code",
     "Няма вид валута {KindCurrency}. Изберете друга валута."},
};

/// How the heads of a document differ from those of another.
struct HeadSteps {
  const StoredDocument& document;
  /// Columns that a head may be told by its screen.
  std::span<const std::string_view> ownColumns;
  /// Columns that only the server writes, beside the stamps and the status.
  std::span<const std::string_view> serverColumns;
  /// What a new head says of the columns that are not its screen's, beside its identifier.
  std::span<const NamedValue> entered;
  /// A new head's identifier goes back as owner data.
  bool identifierIsOwnerData = true;
  /// The status of an annulled one; otherwise it keeps its status.
  std::optional<int> annulledStatus;
  /// Why it may not say what it says, beside what all documents are asked.
  std::optional<Failure> (*refuses)(const HeadFacts& facts, const Change& change,
                                    const NamedValues& present);
  std::optional<Failure> (*keeps)(DocumentKey key);  ///< why it is not deleted
  /// Behind a move, whose status is written.
  Answer<Done, Setback> (*moved)(WriteContext& context, DocumentKey key, const Move& move);
};

Answer<Done, Setback> BeforeDocumentHead(const HeadSteps& steps, WriteContext& context,
                                         std::span<PreparedChange> changes);
Answer<Done, Setback> AfterDocumentHead(const HeadSteps& steps, WriteContext& context);

/// The annulment has the right to delete, everything else that of its kind of change.
Right DocumentHeadRight(const Work& work, const Change& change);
/// The name of a status.
std::string DocumentHeadWord(std::string_view column, const Variant& value);

}  // namespace orvane::server
