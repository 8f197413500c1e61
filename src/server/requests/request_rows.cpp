#include "server/requests/request_rows.h"

#include "packet/quantity.h"
#include "server/catalogue/order_remainder.h"
#include "server/requests/request_head.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr ValueKind kQuantity = ValueKind::Double;

/// What other requests took of an order's entry.
constexpr std::string_view kOrderEntries =
    "select e.SuppManOrderId, e.SerialNumber, e.Quantity - {ordered} from SuppManOrderDet e"
    " where {wanted}";

/// What requests other than :OwnId ask of an order's row `e`: a request that is being sent counts
/// its rows itself.
std::string OrderedByOthers() {
  std::string text = Replaced(kOrderedQuantity, "{t}", "e");
  return text.insert(text.rfind("), 0.0)"),
                     " and (p.POIdNumber <> :OwnId or p.POVersion <> :OwnVersion)");
}

std::string RowName(const StoredHead& head, const DocumentRow& row) {
  return NameOf(StoredRequest(), head.key) + ", ред " + std::to_string(row.number);
}

std::optional<Failure> WhyOrderRefuses(const StoredHead& head, const DocumentRow& row,
                                       const OrderFacts* order,
                                       const std::map<std::int64_t, EntryFacts>& entries) {
  const std::string name = "поръчка за производство " + std::to_string(*row.order);
  const std::string where = RowName(head, row) + ": ";
  const std::string wayOut = " Изберете друга поръчка.";
  if (!order) return Refused(where + name + " не съществува." + wayOut);
  if (order->annulled) return Refused(where + name + " е анулирана." + wayOut);
  if (order->status != Approved && order->status != Fulfilling) {
    return Refused(where + name + " не е одобрена или е приключена." + wayOut);
  }
  if (order->supplier != head.supplier) {
    return Refused(where + name + " е към друг доставчик, а не към доставчика на искането." +
                   wayOut);
  }
  if (!order->left.contains(row.serial)) {
    return Refused(where + name + " не съдържа " + EntryName(row.serial, entries) + "." + wayOut);
  }
  return std::nullopt;
}

}  // namespace

std::vector<Statement> SelectOrders(const Work& work, const std::string& wanted, DocumentKey own,
                                    NamedValues params) {
  params.push_back({"OwnId", own.id});
  params.push_back({"OwnVersion", own.version});
  const std::string entries = Replaced(kOrderEntries, "{ordered}", OrderedByOthers());
  std::string lock =
      "select o.IdNumber, o.Status, case when o.AnnulOn is null then 0 else 1 end,"
      " o.Supplier from SuppManifacOrder o where " +
      Replaced(wanted, "{order}", "o.IdNumber") + " order by o.IdNumber";
  if (work.EngineKind() == Engine::Postgres) lock += " for update of o";
  return {
      Named(lock, params,
            {{"IdNumber", ValueKind::Int32, 0},
             {"Status", ValueKind::Byte, 0},
             {"Annulled", ValueKind::Bool, 0},
             {"Supplier", ValueKind::Code, 0}}),
      Named(Replaced(entries, "{wanted}", Replaced(wanted, "{order}", "e.SuppManOrderId")), params,
            {{"IdNumber", ValueKind::Int32, 0},
             {"SerialNumber", ValueKind::Code, 0},
             {"QuantityLeft", kQuantity, 0}})};
}

std::map<std::int64_t, OrderFacts> ReadOrders(const DataPacket& orders, const DataPacket& entries) {
  std::map<std::int64_t, OrderFacts> facts;
  for (std::size_t row = 0; row < orders.rowCount; ++row) {
    OrderFacts order;
    order.id = orders.At(row, "IdNumber").AsInt().value_or(0);
    order.status = static_cast<int>(orders.At(row, "Status").AsInt().value_or(0));
    order.annulled = orders.At(row, "Annulled").AsBool().value_or(false);
    order.supplier = orders.At(row, "Supplier").AsInt().value_or(0);
    facts.emplace(order.id, std::move(order));
  }
  for (std::size_t row = 0; row < entries.rowCount; ++row) {
    const auto found = facts.find(entries.At(row, "IdNumber").AsInt().value_or(0));
    if (found == facts.end()) continue;
    found->second.left[entries.At(row, "SerialNumber").AsInt().value_or(0)] =
        entries.At(row, "QuantityLeft").AsDouble().value_or(0);
  }
  return facts;
}

std::optional<Failure> WhyOrdersRefuse(const StoredHead& head, std::span<const DocumentRow> rows,
                                       const std::map<std::int64_t, OrderFacts>& orders,
                                       const std::map<std::int64_t, EntryFacts>& entries) {
  std::map<std::pair<std::int64_t, std::int64_t>, double> asked;
  for (const DocumentRow& row : rows) {
    if (!row.order) continue;
    const auto order = orders.find(*row.order);
    const OrderFacts* facts = order == orders.end() ? nullptr : &order->second;
    if (auto refusal = WhyOrderRefuses(head, row, facts, entries)) return refusal;
    double& sum = asked[{*row.order, row.serial}];
    sum = RoundedQuantity(sum + row.quantity);
    const double left = facts->left.at(row.serial);
    if (CompareQuantities(sum, left) <= 0) continue;
    return Refused(RowName(head, row) + ": количеството на " + EntryName(row.serial, entries) +
                   " надвишава „Остатък за искане“ на поръчка за производство " +
                   std::to_string(*row.order) +
                   ". Намалете количеството или изберете друга "
                   "поръчка.");
  }
  return std::nullopt;
}

}  // namespace orvane::server
