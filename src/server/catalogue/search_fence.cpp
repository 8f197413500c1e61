#include "server/catalogue/search_fence.h"

#include <algorithm>

#include "packet/fold.h"
#include "packet/variant.h"
#include "server/catalogue/catalogue.h"

namespace orvane::server {
namespace {

struct ReadColumn {
  std::string_view table;
  std::string_view column;
};

/// Read by the predicates of documents, beside the catalogue.
constexpr ReadColumn kReadByPredicates[] = {
    {"ApprovalTurn", "Employee"},
    {"ApprovalTurn", "KindRegister"},
    {"ApprovalTurn", "DocumentId"},
    {"ApprovalTurn", "DocumentVersion"},
    {"CostCenters", "Chief"},
    {"Sections", "Chief"},
    {"StructDepDates", "StructDepId"},
    {"StructDepDates", "Deputy"},
    {"StructDepDates", "FromDate"},
    {"StructDepDates", "ToDate"},
    {"StructureDeputies", "IdNumber"},
    {"StructureDeputies", "StructuralUnitType"},
    {"StructureDeputies", "CostCenter"},
    {"StructureDeputies", "Section"},
    {"StructureDeputies", "Department"},
};

ReadableColumns CollectReadable() {
  ReadableColumns readable;
  for (const CatalogueTable& table : SearchCatalogue()) {
    std::set<std::string>& columns = readable[Fold(table.stored)];
    for (const CatalogueColumn& column : table.columns) {
      if (!column.expression.empty()) continue;
      columns.insert(Fold(column.name));
      if (column.Is(kFolded)) columns.insert("fold" + Fold(column.name));
    }
    for (const CatalogueColumn& column : table.keptNames)
      columns.insert("fold" + Fold(column.name));
  }
  for (const ReadColumn& row : kReadByPredicates)
    readable[Fold(row.table)].insert(Fold(row.column));
  return readable;
}

constexpr std::string_view kFunctions[] = {
    "abs",       "avg",         "coalesce",        "count",        "iif",   "ifnull", "instr",
    "length",    "like",        "match",           "lower",        "ltrim", "max",    "min",
    "nullif",    "orvane_fold", "orvane_quantity", "orvane_whole", "round", "rtrim",  "substr",
    "substring", "sum",         "total",           "trim",         "upper",
};

}  // namespace

const ReadableColumns& ReadableBySearch() {
  static const ReadableColumns readable = CollectReadable();
  return readable;
}

bool MayBeSearched(std::string_view table, std::string_view column) {
  const auto found = ReadableBySearch().find(Fold(table));
  if (found == ReadableBySearch().end()) return false;
  return column.empty() || found->second.count(Fold(column)) != 0;
}

const std::vector<std::string_view>& TrigramIndexes() {
  static const std::vector<std::string_view> indexes = [] {
    std::vector<std::string_view> found;
    for (const CatalogueTable& table : SearchCatalogue()) {
      for (const CatalogueColumn& column : table.columns) {
        const bool known = std::ranges::find(found, column.trigrams) != found.end();
        if (!column.trigrams.empty() && !known) found.push_back(column.trigrams);
      }
    }
    return found;
  }();
  return indexes;
}

bool IsTrigramIndex(std::string_view table) {
  const std::string_view index = table.substr(0, table.find('_'));
  return std::ranges::any_of(TrigramIndexes(),
                             [&](std::string_view name) { return SameName(name, index); });
}

bool MayBeCalledBySearch(std::string_view function) {
  return std::ranges::any_of(kFunctions,
                             [&](std::string_view name) { return SameName(name, function); });
}

}  // namespace orvane::server
