#include "server/orders/admissible_centers.h"

#include <utility>

#include "contract/document_rows.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr std::size_t kMostCostCenters = 1000;

constexpr std::string_view kSelect =
    "select c.CostCenter, c.Name, c.Name2 from AdmissibleNotifiers a"
    " join CostCenters c on c.CostCenter = a.CostCenter where a.Notifier = :Notifier"
    " order by c.CostCenter limit :Limit";

}  // namespace

Statement SelectAdmissibleCenters(std::int64_t employee) {
  return Named(kSelect,
               {{"Notifier", employee}, {"Limit", static_cast<std::int64_t>(kMostCostCenters) + 1}},
               ColumnsOf(own_rows::kCostCenter));
}

Variant AdmissibleCenters(DataPacket rows) {
  return rows.rowCount > kMostCostCenters ? Variant() : Variant(std::move(rows));
}

}  // namespace orvane::server
