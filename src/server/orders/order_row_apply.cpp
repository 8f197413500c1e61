#include <algorithm>

#include "server/documents/document_row_apply.h"
#include "server/documents/document_steps.h"
#include "server/orders/order_apply.h"
#include "server/orders/order_head.h"

namespace orvane::server {
namespace {

/// An order holds an entry once: what it leaves is counted by entry.
std::optional<Failure> WhyTwice(const RowFacts& facts, const DocumentRow& row,
                                const std::vector<DocumentRow>& rows) {
  const auto other = std::find_if(rows.begin(), rows.end(), [&](const DocumentRow& another) {
    return another.serial == row.serial && another.number != row.number;
  });
  if (other == rows.end()) return std::nullopt;
  return Refused(RowName(StoredOrder(), facts.head.key, row) +
                 EntryName(row.serial, facts.entries) + " е вече на ред " +
                 std::to_string(other->number) + ". Променете количеството на онзи ред.");
}

std::optional<Failure> WhyRowsRefused(const RowFacts& facts, const std::vector<DocumentRow>& rows,
                                      std::span<const PreparedChange> changes) {
  for (const DocumentRow* row : ChangedRows(rows, changes)) {
    if (auto refusal = WhyTwice(facts, *row, rows)) return refusal;
  }
  return std::nullopt;
}

RowSteps Steps() {
  return {StoredOrder(), nullptr, &WhyRowsRefused};
}

Answer<Done, Setback> BeforeRows(WriteContext& context, std::span<PreparedChange> changes) {
  const auto ready = BeforeDocumentRows(Steps(), context, changes);
  for (PreparedChange& prepared : changes)
    Drop(prepared.filled, stored::kRowAmount);  // no client knows the column
  return ready;
}

Answer<Done, Setback> AfterRows(WriteContext& context, std::span<PreparedChange>) {
  return AfterDocumentRows(Steps(), context);
}

}  // namespace

WriteRules OrderRowRules() {
  return {.beforeWrite = &BeforeRows, .afterWrite = &AfterRows};
}

}  // namespace orvane::server
