#include "server/requests/request_moves.h"

#include "contract/supplier_order.h"
#include "server/catalogue/order_remainder.h"
#include "server/documents/document_approval.h"
#include "server/documents/server_writes.h"
#include "server/requests/request_approval.h"
#include "server/requests/request_head.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

constexpr std::string_view kOrdersOf =
    "select o.IdNumber, o.Status, case when exists (select 1 {taken}) then 1 else 0 end"
    " from SuppManifacOrder o where o.Status in (5, 6) and o.AnnulOn is null and o.IdNumber in"
    " (select d.SuppManifacOrderId from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version and d.SuppManifacOrderId is not null) order by o.IdNumber";
constexpr std::string_view kLockOrdersOf =
    "select o.IdNumber from SuppManifacOrder o where o.IdNumber in"
    " (select d.SuppManifacOrderId from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version and d.SuppManifacOrderId is not null) order by o.IdNumber";

constexpr auto kOrderStatus = Writes("", supplier_order::head::dspSuppManifacOrder.table,
                                     supplier_order::head::IdNumber, supplier_order::head::Status);

}  // namespace

Answer<Done, Setback> SettleOrders(WriteContext& context, DocumentKey key) {
  const NamedValues params = KeyParams(key);
  std::string lock(kLockOrdersOf);
  if (context.work.EngineKind() == Engine::Postgres) lock += " for update of o";
  const Statement statements[] = {
      Named(lock, params, {{"IdNumber", ValueKind::Int32, 0}}),
      Named(Replaced(kOrdersOf, "{taken}", Replaced(kTakenFromOrder, "{order}", "o.IdNumber")),
            params,
            {{"IdNumber", ValueKind::Int32, 0},
             {"Status", ValueKind::Byte, 0},
             {"Requested", ValueKind::Bool, 0}})};
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "locking supplier orders");
  ServerWrites writes(context.work);
  const DataPacket& orders = (*packets)[1];
  for (std::size_t row = 0; row < orders.rowCount; ++row) {
    const bool requested = orders.At(row, "Requested").AsBool().value_or(false);
    writes.Update(kOrderStatus,
                  {{"IdNumber", orders.At(row, "IdNumber")}, {"Status", orders.At(row, "Status")}},
                  {{"Status", static_cast<int>(requested ? Fulfilling : Approved)}});
  }
  return writes.CarryOut(context.transaction, "moving supplier orders");
}

Answer<Done, Setback> WriteRequestStatus(WriteContext& context, const StoredHead& head,
                                         DocumentStatus status) {
  const auto moved = WriteStatus(context, StoredRequest(), head, status);
  if (!moved) return moved.GetFailure();
  if (!*moved) return Done{};
  return SettleOrders(context, head.key);
}

Answer<Done, Setback> RequestMoved(WriteContext& context, DocumentKey key, const Move& move) {
  if (move.name == request::kSend.name) return SendRequest(context, key);
  if (move.name == request::kCorrect.name) {
    const auto dropped = DropApprovalRows(context, StoredRequest(), key);
    if (!dropped) return dropped;
    return SettleOrders(context, key);
  }
  return Done{};
}

}  // namespace orvane::server
