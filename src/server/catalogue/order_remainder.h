#pragma once

// What the rows of a supplier order leave is never stored but derived, for searches and for the
// check under lock alike, so that no annulment, new version or reopening can leave it wrong.

#include <string_view>

namespace orvane::server {

/// Asked of an order's row (alias {t}) by current requests that were sent and not annulled, in
/// smallest units.
inline constexpr std::string_view kOrderedQuantity =
    "coalesce((select sum(d.Quantity) from PurchaseOrderDet d"
    " join PurchaseOrder p on p.POIdNumber = d.PurchaseOrderId"
    " and p.POVersion = d.PurchaseOrderVer"
    " where d.SuppManifacOrderId = {t}.SuppManOrderId and d.SerialNumber = {t}.SerialNumber"
    " and p.OldVersion = 0 and p.AnnulOn is null and p.Status between 3 and 7), 0.0)";

/// Received by approved deliveries of those requests.
inline constexpr std::string_view kDeliveredQuantity =
    "coalesce((select sum(r.Quantity) from DeliveryRows r"
    " join Deliveries v on v.IdNumber = r.DeliveryId"
    " where r.SerialNumber = {t}.SerialNumber and v.Status = 5 and v.AnnulOn is null"
    " and exists (select 1 from PurchaseOrderDet d"
    " join PurchaseOrder p on p.POIdNumber = d.PurchaseOrderId"
    " and p.POVersion = d.PurchaseOrderVer"
    " where d.SuppManifacOrderId = {t}.SuppManOrderId and d.SerialNumber = {t}.SerialNumber"
    " and d.PurchaseOrderId = v.PurchaseOrderId and d.PurchaseOrderVer = v.PurchaseOrderVer"
    " and p.OldVersion = 0 and p.AnnulOn is null and p.Status between 3 and 7)), 0.0)";

/// "from … where …": rows (d) that take from the order {order}, of requests (p) that were sent.
inline constexpr std::string_view kTakenFromOrder =
    "from PurchaseOrderDet d join PurchaseOrder p on p.POIdNumber = d.PurchaseOrderId"
    " and p.POVersion = d.PurchaseOrderVer where d.SuppManifacOrderId = {order}"
    " and p.OldVersion = 0 and p.AnnulOn is null and p.Status between 3 and 7";

}  // namespace orvane::server
