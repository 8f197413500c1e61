#include "server/approval/headed.h"

#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

// {1}, {2} and {3} stand where the kind of head may be told.
constexpr std::string_view kByEmployee =
    "select {1}c.CostCenter from CostCenters c where c.Chief = :Employee"
    " union select {2}s.CostCenter from Sections x join Structure s on s.Section = x.Section"
    " where x.Chief = :Employee"
    " union select {1}u.CostCenter from StructDepDates d"
    " join StructureDeputies u on u.IdNumber = d.StructDepId"
    " where d.Deputy = :Employee and d.FromDate <= :Today"
    " and (d.ToDate is null or d.ToDate >= :Today) and u.StructuralUnitType = 1"
    " union select {2}s.CostCenter from StructDepDates d"
    " join StructureDeputies u on u.IdNumber = d.StructDepId"
    " join Structure s on s.Section = u.Section"
    " where d.Deputy = :Employee and d.FromDate <= :Today"
    " and (d.ToDate is null or d.ToDate >= :Today) and u.StructuralUnitType = 2"
    " union select {3}s.CostCenter from StructDepDates d"
    " join StructureDeputies u on u.IdNumber = d.StructDepId"
    " join Structure s on s.Department = u.Department"
    " where d.Deputy = :Employee and d.FromDate <= :Today"
    " and (d.ToDate is null or d.ToDate >= :Today) and u.StructuralUnitType = 3 union ";
constexpr std::string_view kByLogin =
    "select {3}s.CostCenter from Department h join Structure s on s.Department = h.Code"
    " where h.Chief = :Login";

/// The text with the kinds told, or left out.
std::string WithKinds(std::string text, bool told) {
  for (const char kind : {'1', '2', '3'}) {
    text = Replaced(text, std::string{'{', kind, '}'}, told ? std::string{kind, ',', ' '} : "");
  }
  return text;
}

}  // namespace

std::string HeadedCostCenters(bool employed) {
  return WithKinds((employed ? std::string(kByEmployee) : std::string()) + std::string(kByLogin),
                   false);
}

std::string HeadedByKind() {
  return WithKinds(std::string(kByEmployee) + std::string(kByLogin), true);
}

}  // namespace orvane::server
