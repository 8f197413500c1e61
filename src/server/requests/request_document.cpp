#include "server/requests/request_document.h"

#include "contract/purchase_request.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

constexpr std::string_view kSelectHead =
    "select o.POIdNumber, o.POVersion, o.DocumentDate, o.Description, o.Description2, o.Rationale,"
    " o.Rationale2, o.CostCenter, o.Notifier, o.Supplier, o.ContractId, o.KindSupply,"
    " o.IncTranspInPrice, o.KindCurrency, o.RateOfExchange, o.CurrSumPurchaseOrder,"
    " o.SumPurchaseOrder, o.CreatedFrom, o.CreatedOn, o.AmendFrom, o.AmendOn, o.Status,"
    " o.AnnulFrom, o.AnnulOn, o.OldVersion, {n.Name}, {c.UserName}, {a.UserName}, {x.UserName}"
    " from PurchaseOrder o left join Employees n on n.Employee = o.Notifier"
    " left join WSysUsers c on c.ShortName = o.CreatedFrom"
    " left join WSysUsers a on a.ShortName = o.AmendFrom"
    " left join WSysUsers x on x.ShortName = o.AnnulFrom"
    " where o.POIdNumber = {id} and o.POVersion = {version}";

constexpr std::string_view kSelectRows =
    "select d.PurchaseOrderId, d.PurchaseOrderVer, d.RowNumber, d.SerialNumber, {b.EffectiveName},"
    " d.InventoryId, d.ServiceCode, d.Measure, {m.Name}, d.SuppManifacOrderId, d.Quantity,"
    " d.Numerator, d.RowNumerator, d.CurrSumWithoutVAT, d.Remarks, d.Remarks2,"
    " substr({o.Description}, 1, 50), i.Measure, i.IncomeMeasure, i.BarCodeMeasure, s.Measure,"
    " coalesce(i.RoundQuantity, s.RoundQuantity), m.OrdinaryFraction"
    " from PurchaseOrderDet d left join BaseSupplyList b on b.SerialNumber = d.SerialNumber"
    " left join Measures m on m.Code = d.Measure"
    " left join SuppManifacOrder o on o.IdNumber = d.SuppManifacOrderId"
    " left join MaterialStocks i on i.IdNumber = d.InventoryId"
    " left join Services s on s.Code = d.ServiceCode"
    " where d.PurchaseOrderId = {id} and d.PurchaseOrderVer = {version} order by d.RowNumber";

constexpr std::string_view kSelectSchedule =
    "select PurchaseOrderId, PurchaseOrderVer, DeliveryDate, DateOfLoading, Delivered"
    " from PurchaseOrderDel where PurchaseOrderId = {id} and PurchaseOrderVer = {version}"
    " order by DeliveryDate";

constexpr std::string_view kSelectPlan =
    "select PurchaseOrderId, PurchaseOrderVer, RowNumber, InvoiceDate, SumWithVAT, AdvancePayment,"
    " AdvanceStatement, PaymentDate, SupplyInvoiceId, RowNumber"
    " from PurchaseOrderPayPl where PurchaseOrderId = {id} and PurchaseOrderVer = {version}"
    " order by RowNumber";

/// A deputy's decision names the head in whose place it was made.
constexpr std::string_view kSelectApprovals =
    "select a.PurchaseOrderId, a.PurchaseOrderVer, a.ConfirmationLevel, a.ConfirmedFrom,"
    " case when a.OnBehalfOf is null then {e.Name}"
    " else {e.Name} || ' (за ' || {h.Name} || ')' end,"
    " a.ConfermedOn, a.UnConfirmedFrom, a.UnConfirmedOn, a.Status, a.SendingNumber,"
    " a.ConfirmationLevel, a.Approval, a.ApprovalNote, cast(null as text)"
    " from PurchaseOrderAdm a left join Employees e on e.Employee = a.ConfirmedFrom"
    " left join Employees h on h.Employee = a.OnBehalfOf"
    " where a.PurchaseOrderId = {id} and a.PurchaseOrderVer = {version}"
    " order by a.ConfirmationLevel";

constexpr std::string_view kSelectDeliveries =
    "select DeliveryDate, IdNumber from Deliveries where PurchaseOrderId = {id}"
    " and PurchaseOrderVer = {version} and AnnulOn is null order by DeliveryDate, IdNumber";

constexpr std::string_view kSelectCostCenter =
    "select c.CostCenter, c.Name, c.Name2 from PurchaseOrder o"
    " join CostCenters c on c.CostCenter = o.CostCenter"
    " where o.POIdNumber = {id} and o.POVersion = {version}";

constexpr std::string_view kSelectPartner =
    "select p.Partner, p.Name, p.Name2, p.SuppKindCurrency, p.KindSupplyChoice, p.KindSupplyList,"
    " p.SuppMaxTermOfPayment from PurchaseOrder o join Partners p on p.Partner = o.Supplier"
    " where o.POIdNumber = {id} and o.POVersion = {version}";

constexpr std::string_view kSelectContract =
    "select c.IdNumber, c.ShortDescription, c.ContractDate, c.ShortDescription2,"
    " c.KindSupplyChoice, c.KindSupplyList, c.MaxTermOfPayment, c.InclTransportInPrice"
    " from PurchaseOrder o join SuppliesContracts c on c.IdNumber = o.ContractId"
    " where o.POIdNumber = {id} and o.POVersion = {version}";

constexpr DocumentPart kParts[] = {
    {request::det::dspPurchaseOrderDet, kSelectRows},
    {request::del::dspPurchaseOrderDel, kSelectSchedule},
    {request::pay::dspPurchaseOrderPayPl, kSelectPlan},
    {request::adm::dspPurchaseOrderAdm, kSelectApprovals},
    {request::deliveries::dspDeliveries, kSelectDeliveries},
    {own_rows::kCostCenter, kSelectCostCenter},
    {own_rows::kPartner, kSelectPartner},
    {own_rows::kContract, kSelectContract},
};

constexpr Document kDocument{
    {request::head::dspPurchaseOrder, kSelectHead}, kParts, kSeenRequests, request::kMoves};

}  // namespace

const Document& PurchaseRequest() {
  return kDocument;
}

}  // namespace orvane::server
