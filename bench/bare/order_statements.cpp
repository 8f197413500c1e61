#include "bare/order_statements.h"

namespace orvane::bench {
namespace {

constexpr const char* kOfOrder[] = {
    "select o.IdNumber, o.DocumentDate, o.Description, o.Description2, o.Rationale, o.Rationale2,"
    " o.FromDate, o.ToDate, o.CostCenter, o.KindSupply, o.Supplier, o.ContractId,"
    " o.IncTranspInPrice, o.KindCurrency, o.RateOfExchange, o.SumManifacOrder,"
    " o.CurrSumManifacOrder, o.Notifier, o.CreatedFrom, o.CreatedOn, o.AmendFrom, o.AmendOn,"
    " o.Status, o.AnnulFrom, o.AnnulOn, o.PrevYearId, v.Name, k.Name, p.Name, t.ShortDescription,"
    " m.Name, n.Name, c.UserName, a.UserName, x.UserName from SuppManifacOrder o"
    " left join CostCenters v on v.CostCenter = o.CostCenter"
    " left join KindSupplies k on k.Code = o.KindSupply"
    " left join Partners p on p.Partner = o.Supplier"
    " left join SuppliesContracts t on t.IdNumber = o.ContractId"
    " left join Currencies m on m.Code = o.KindCurrency"
    " left join Employees n on n.Employee = o.Notifier"
    " left join WSysUsers c on c.ShortName = o.CreatedFrom"
    " left join WSysUsers a on a.ShortName = o.AmendFrom"
    " left join WSysUsers x on x.ShortName = o.AnnulFrom where o.IdNumber = ?1",
    "select d.RowNumber, d.SerialNumber, d.Measure, d.Quantity, d.RowNumerator, d.Numerator,"
    " d.InventoryId, d.ServiceCode, d.Remarks, d.Remarks2, b.EffectiveName, m.Name,"
    " m.OrdinaryFraction, i.RoundQuantity, s.RoundQuantity, i.Measure, i.IncomeMeasure,"
    " i.BarCodeMeasure, s.Measure from SuppManOrderDet d"
    " left join BaseSupplyList b on b.SerialNumber = d.SerialNumber"
    " left join Measures m on m.Code = d.Measure"
    " left join MaterialStocks i on i.IdNumber = d.InventoryId"
    " left join Services s on s.Code = d.ServiceCode where d.SuppManOrderId = ?1"
    " order by d.RowNumber",
    "select a.ConfirmationLevel, a.ConfirmedFrom, a.ConfermedOn, a.UnConfirmedFrom,"
    " a.UnConfirmedOn, a.Status, a.SendingNumber, e.Name, h.Name, s.Name, w.Name"
    " from SuppManOrderAdmin a left join Employees e on e.Employee = a.ConfirmedFrom"
    " left join Employees h on h.Employee = a.OnBehalfOf"
    " left join NomIn s on s.Nomenclature = 251 and s.Element = a.Status"
    " left join NomIn w on w.Nomenclature = 245 and w.Element = a.Approval"
    " where a.SuppManOrderId = ?1 order by a.ConfirmationLevel",
    "select distinct p.DocumentDate, p.POIdNumber, p.POVersion, p.Description"
    " from PurchaseOrderDet d join PurchaseOrder p on p.POIdNumber = d.PurchaseOrderId"
    " and p.POVersion = d.PurchaseOrderVer where d.SuppManifacOrderId = ?1 and p.OldVersion = 0"
    " and p.AnnulOn is null order by p.DocumentDate, p.POIdNumber",
    "select c.CostCenter, c.Name, c.Name2 from SuppManifacOrder o"
    " join CostCenters c on c.CostCenter = o.CostCenter where o.IdNumber = ?1",
    "select p.Partner, p.Name, p.Name2, p.SuppKindCurrency, p.KindSupplyChoice, p.KindSupplyList,"
    " p.SuppMaxTermOfPayment from SuppManifacOrder o join Partners p on p.Partner = o.Supplier"
    " where o.IdNumber = ?1",
    "select c.IdNumber, c.ShortDescription, c.ContractDate, c.ShortDescription2,"
    " c.KindSupplyChoice, c.KindSupplyList, c.MaxTermOfPayment, c.InclTransportInPrice"
    " from SuppManifacOrder o join SuppliesContracts c on c.IdNumber = o.ContractId"
    " where o.IdNumber = ?1",
};

}  // namespace

std::vector<BareStatement> RowsOfOrder(std::int64_t id) {
  std::vector<BareStatement> statements;
  for (const char* text : kOfOrder)
    statements.push_back({text, {std::to_string(id)}});
  return statements;
}

BareStatement PageOfOrders(const std::string& condition) {
  return {
      "select o.IdNumber, o.CostCenter, o.Supplier, o.Status, o.Description, c.Name, p.Name"
      " from SuppManifacOrder o left join CostCenters c on c.CostCenter = o.CostCenter"
      " left join Partners p on p.Partner = o.Supplier where " +
          condition + " order by o.IdNumber limit 81",
      {}};
}

std::vector<BareStatement> WritesOf(const OrderRowPost& post) {
  const std::string id = std::to_string(post.id);
  const std::string row = std::to_string(post.row);
  std::vector<BareStatement> writes = {
      {"update SuppManOrderDet set Quantity = ?1 where SuppManOrderId = ?2 and RowNumber = ?3",
       {std::to_string(post.quantity), id, row}},
      {"insert into ClientKey (Login, Key, RequestHash, Answer, CreatedOn) select 'admin', ?1, ?2,"
       " '', CreatedOn from SuppManifacOrder where IdNumber = ?3",
       {post.key, "0123456789abcdef0123456789abcdef", id}}};
  for (std::int64_t line = 0; line < post.history; ++line) {
    writes.push_back(
        {"insert into History (TableName, RowKey, ColumnName, OldValue, NewValue, ChangedBy,"
         " ChangedOn, MachineName, Kind) select 'SuppManOrderDet', ?1, 'Quantity', '1', '2',"
         " 'admin', CreatedOn, 'bench', 'U' from SuppManifacOrder where IdNumber = ?2",
         {id + "/" + row + "/", id}});
  }
  return writes;
}

}  // namespace orvane::bench
