#include "server/dialect/document_rows.h"

#include <string>
#include <string_view>

namespace orvane::server::dialect {
namespace {

constexpr std::string_view kHead = "documentHead";

std::string Replaced(std::string_view text, std::string_view mark, std::string_view by) {
  std::string replaced;
  for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark)) {
    replaced.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + mark.size());
  }
  return replaced.append(text);
}

}  // namespace

RowPredicate PredicateOf(const CatalogueTable& table,
                         const std::function<RowPredicate(const CatalogueTable&)>& visibility) {
  if (table.head.empty()) return visibility(table);
  const CatalogueTable& head = *FindCatalogueTable(table.head);
  RowPredicate predicate = visibility(head);
  if (predicate.text.empty()) return predicate;
  // No planner makes a join of what stands in an OR: a part's row is seen before it is joined
  // further.
  predicate.text = "(exists (select 1 from " + std::string(head.stored) + " " + std::string(kHead) +
                   " where " + Replaced(table.headLink, "{h}", kHead) + " and (" +
                   Replaced(predicate.text, "{t}", kHead) + ")) or 1 = 0)";
  return predicate;
}

}  // namespace orvane::server::dialect
