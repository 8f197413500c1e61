#include "kit/documents/units.h"

#include <optional>

namespace orvane::kit {
namespace {

constexpr std::int64_t kBlock = 100;
constexpr std::size_t kClauseLine = 2;

std::optional<std::int64_t> Read(TVosClientDataSet& rows, std::string_view field) {
  return rows.FieldByName(field).AsInt();
}

std::string BlockOf(std::int64_t measure) {
  const std::int64_t first = measure / kBlock * kBlock;
  return "WHERE Code >= " + std::to_string(first) +
         " AND Code <= " + std::to_string(first + kBlock - 1);
}

}  // namespace

std::string UnitsClause(TVosClientDataSet& rows, const UnitFields& fields, bool ownUnitsOnly) {
  const bool material = Read(rows, fields.inventory).has_value();
  if (!material) {
    if (!Read(rows, fields.service)) return {};
    const std::optional<std::int64_t> unit = Read(rows, fields.serviceMeasure);
    return unit ? BlockOf(*unit) : std::string();
  }
  const std::optional<std::int64_t> measure = Read(rows, fields.measure);
  if (!ownUnitsOnly) return measure ? BlockOf(*measure) : std::string();
  std::string codes = measure ? std::to_string(*measure) : std::string();
  for (std::string_view own : fields.ownMeasures) {
    const std::optional<std::int64_t> code = Read(rows, own);
    if (code) codes += (codes.empty() ? "" : ",") + std::to_string(*code);
  }
  return codes.empty() ? std::string() : "WHERE Code IN (" + codes + ")";
}

void NarrowUnits(TLookupTable& units, const std::string& clause) {
  if (clause.empty()) return;
  if (units.dlgSQL.size() <= kClauseLine) return;
  std::vector<std::string> lines = units.dlgSQL;
  lines[kClauseLine] = clause;
  units.SetTemplate(std::move(lines));
}

}  // namespace orvane::kit
