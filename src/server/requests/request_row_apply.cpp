#include <set>

#include "server/documents/document_row_apply.h"
#include "server/requests/request_apply.h"
#include "server/requests/request_head.h"
#include "server/requests/request_rows.h"

namespace orvane::server {
namespace {

namespace det = purchase_request::det;

std::vector<Statement> SelectNamedOrders(const Work& work, DocumentKey key, WantedValues& wanted) {
  const std::string orders = wanted.Of(det::SuppManifacOrderId.name, "{order}");
  return SelectOrders(work, orders, key, wanted.Params());
}

/// Rows that name an order which one of the changes names.
std::vector<DocumentRow> OrderedTogether(const std::vector<DocumentRow>& rows,
                                         std::span<const PreparedChange> changes) {
  std::set<std::int64_t> orders;
  for (const DocumentRow* row : ChangedRows(rows, changes)) {
    if (row->order) orders.insert(*row->order);
  }
  std::vector<DocumentRow> together;
  for (const DocumentRow& row : rows) {
    if (row.order && orders.contains(*row.order)) together.push_back(row);
  }
  return together;
}

std::optional<Failure> WhyRowsRefused(const RowFacts& facts, const std::vector<DocumentRow>& rows,
                                      std::span<const PreparedChange> changes) {
  return WhyOrdersRefuse(facts.head, OrderedTogether(rows, changes),
                         ReadOrders(facts.more[0], facts.more[1]), facts.entries);
}

RowSteps Steps() {
  return {StoredRequest(), &SelectNamedOrders, &WhyRowsRefused};
}

Answer<Done, Setback> BeforeRows(WriteContext& context, std::span<PreparedChange> changes) {
  return BeforeDocumentRows(Steps(), context, changes);
}

Answer<Done, Setback> AfterRows(WriteContext& context, std::span<PreparedChange>) {
  return AfterDocumentRows(Steps(), context);
}

}  // namespace

WriteRules RequestRowRules() {
  return {.beforeWrite = &BeforeRows, .afterWrite = &AfterRows};
}

}  // namespace orvane::server
