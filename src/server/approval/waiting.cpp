#include "server/approval/waiting.h"

#include "server/approval/headed.h"
#include "server/documents/named_statement.h"

namespace orvane {
namespace {

/// Few documents are on their way at a time, however many there are: they are found by status. The
/// sum keeps planners from walking all that a cost centre ever had instead.
constexpr std::string_view kWaitingRequests =
    "(select count(*) from PurchaseOrder p join PurchaseOrderAdm a"
    " on a.PurchaseOrderId = p.POIdNumber and a.PurchaseOrderVer = p.POVersion"
    " join headed h on h.Kind = a.Approval and h.CostCenter = p.CostCenter + 0"
    " where p.OldVersion = 0 and p.AnnulOn is null and p.Status in (3, 4) and a.Status = 2"
    " and not exists (select 1 from PurchaseOrderAdm l where l.PurchaseOrderId = p.POIdNumber"
    " and l.PurchaseOrderVer = p.POVersion and l.ConfirmationLevel < a.ConfirmationLevel"
    " and l.Status in (1, 2)))";
constexpr std::string_view kWaitingOrders =
    "(select count(*) from SuppManifacOrder p join SuppManOrderAdmin a"
    " on a.SuppManOrderId = p.IdNumber"
    " join headed h on h.Kind = a.Approval and h.CostCenter = p.CostCenter + 0"
    " where p.AnnulOn is null and p.Status in (3, 4) and a.Status = 2"
    " and not exists (select 1 from SuppManOrderAdmin l where l.SuppManOrderId = p.IdNumber"
    " and l.ConfirmationLevel < a.ConfirmationLevel and l.Status in (1, 2)))";

}  // namespace

Answer<VariantArray> CountWaiting(Work& work, const VariantArray&) {
  const auto employee = work.Who().Employee();
  const Statement count = Named(
      "with headed (Kind, CostCenter) as (" + HeadedByKind() + ") select " +
          std::string(kWaitingRequests) + " + " + std::string(kWaitingOrders),
      {{"Employee", employee.value_or(0)}, {"Login", work.Who().login}, {"Today", work.Today()}},
      {{"Waiting", ValueKind::Code, 0}});
  const auto packets = work.Read({&count, 1});
  if (!packets) return packets.GetFailure();
  return VariantArray{employee ? packets->front().At(0, "Waiting") : Variant(0)};
}

}  // namespace orvane
