#include "bare/statements.h"

namespace orvane::bench {
namespace {

constexpr const char* kOfRequest[] = {
    "select o.POIdNumber, o.POVersion, o.DocumentDate, o.Description, o.Description2, o.Rationale,"
    " o.Rationale2, o.CostCenter, o.Notifier, o.Supplier, o.ContractId, o.KindSupply,"
    " o.IncTranspInPrice, o.KindCurrency, o.RateOfExchange, o.CurrSumPurchaseOrder,"
    " o.SumPurchaseOrder, o.CreatedFrom, o.CreatedOn, o.AmendFrom, o.AmendOn, o.Status,"
    " o.AnnulFrom, o.AnnulOn, o.OldVersion, n.Name, c.UserName, a.UserName, x.UserName"
    " from PurchaseOrder o left join Employees n on n.Employee = o.Notifier"
    " left join WSysUsers c on c.ShortName = o.CreatedFrom"
    " left join WSysUsers a on a.ShortName = o.AmendFrom"
    " left join WSysUsers x on x.ShortName = o.AnnulFrom"
    " where o.POIdNumber = ?1 and o.POVersion = ?2",
    "select d.RowNumber, d.SerialNumber, b.EffectiveName, d.InventoryId, d.ServiceCode, d.Measure,"
    " m.Name, d.SuppManifacOrderId, d.Quantity, d.Numerator, d.RowNumerator, d.CurrSumWithoutVAT,"
    " d.Remarks, d.Remarks2, o.Description, i.Measure, i.IncomeMeasure, i.BarCodeMeasure,"
    " s.Measure, i.RoundQuantity, s.RoundQuantity, m.OrdinaryFraction"
    " from PurchaseOrderDet d left join BaseSupplyList b on b.SerialNumber = d.SerialNumber"
    " left join Measures m on m.Code = d.Measure"
    " left join SuppManifacOrder o on o.IdNumber = d.SuppManifacOrderId"
    " left join MaterialStocks i on i.IdNumber = d.InventoryId"
    " left join Services s on s.Code = d.ServiceCode"
    " where d.PurchaseOrderId = ?1 and d.PurchaseOrderVer = ?2 order by d.RowNumber",
    "select DeliveryDate, DateOfLoading, Delivered from PurchaseOrderDel"
    " where PurchaseOrderId = ?1 and PurchaseOrderVer = ?2 order by DeliveryDate",
    "select RowNumber, InvoiceDate, SumWithVAT, AdvancePayment, AdvanceStatement, PaymentDate,"
    " SupplyInvoiceId from PurchaseOrderPayPl"
    " where PurchaseOrderId = ?1 and PurchaseOrderVer = ?2 order by RowNumber",
    "select a.ConfirmationLevel, a.ConfirmedFrom, e.Name, h.Name, a.ConfermedOn,"
    " a.UnConfirmedFrom, a.UnConfirmedOn, a.Status, a.SendingNumber, a.Approval"
    " from PurchaseOrderAdm a left join Employees e on e.Employee = a.ConfirmedFrom"
    " left join Employees h on h.Employee = a.OnBehalfOf"
    " where a.PurchaseOrderId = ?1 and a.PurchaseOrderVer = ?2 order by a.ConfirmationLevel",
    "select DeliveryDate, IdNumber from Deliveries where PurchaseOrderId = ?1"
    " and PurchaseOrderVer = ?2 and AnnulOn is null order by DeliveryDate, IdNumber",
    "select c.CostCenter, c.Name, c.Name2 from PurchaseOrder o"
    " join CostCenters c on c.CostCenter = o.CostCenter where o.POIdNumber = ?1"
    " and o.POVersion = ?2",
    "select p.Partner, p.Name, p.Name2, p.SuppKindCurrency, p.KindSupplyChoice, p.KindSupplyList,"
    " p.SuppMaxTermOfPayment from PurchaseOrder o join Partners p on p.Partner = o.Supplier"
    " where o.POIdNumber = ?1 and o.POVersion = ?2",
    "select c.IdNumber, c.ShortDescription, c.ContractDate, c.ShortDescription2,"
    " c.KindSupplyChoice, c.KindSupplyList, c.MaxTermOfPayment, c.InclTransportInPrice"
    " from PurchaseOrder o join SuppliesContracts c on c.IdNumber = o.ContractId"
    " where o.POIdNumber = ?1 and o.POVersion = ?2",
};

}  // namespace

std::vector<BareStatement> RowsOfRequest(std::int64_t id, std::int64_t version) {
  std::vector<BareStatement> statements;
  for (const char* text : kOfRequest)
    statements.push_back({text, {std::to_string(id), std::to_string(version)}});
  return statements;
}

BareStatement PageOfRequests(const std::string& condition) {
  return {
      "select po.POIdNumber, po.POVersion, po.Description, po.Description2, po.CostCenter, c.Name,"
      " c.Name2, po.Supplier, p.Name, p.Name2, po.Status from PurchaseOrder po"
      " left join CostCenters c on c.CostCenter = po.CostCenter"
      " left join Partners p on p.Partner = po.Supplier where " +
          condition + " and po.OldVersion = 0 order by po.POIdNumber, po.POVersion limit 81",
      {}};
}

BareStatement EntriesThatBegin(const std::string& begin) {
  return {
      "select b.SerialNumber, b.InventoryCode, b.ServiceCode, b.EffectiveName, b.EffectiveName2,"
      " b.Measure, m.Measure, m.IncomeMeasure, m.BarCodeMeasure, s.Measure, m.RoundQuantity,"
      " s.RoundQuantity from BaseSupplyList b"
      " left join MaterialStocks m on m.IdNumber = b.InventoryCode"
      " left join Services s on s.Code = b.ServiceCode"
      " where b.FoldEffectiveName >= ?1 and b.FoldEffectiveName < ?2"
      " order by b.FoldEffectiveName nulls first, b.SerialNumber limit 81",
      {begin, begin + "\xf4\x8f\xbf\xbf"}};
}

std::vector<BareStatement> WritesOf(const RowPost& post) {
  const std::string id = std::to_string(post.id);
  const std::string version = std::to_string(post.version);
  const std::string row = std::to_string(post.row);
  const std::string number = std::to_string(post.quantity);
  std::vector<BareStatement> writes = {
      {"update PurchaseOrderDet set Quantity = ?1, CurrSumWithoutVAT = ?2 where PurchaseOrderId ="
       " ?3 and PurchaseOrderVer = ?4 and RowNumber = ?5",
       {number, number, id, version, row}},
      {"update PurchaseOrder set CurrSumPurchaseOrder = ?1, SumPurchaseOrder = ?2 where POIdNumber"
       " = ?3 and POVersion = ?4",
       {number, number, id, version}},
      {"insert into ClientKey (Login, Key, RequestHash, Answer, CreatedOn) select 'admin', ?1, ?2,"
       " '', CreatedOn from PurchaseOrder where POIdNumber = ?3 and POVersion = ?4",
       {post.key, "0123456789abcdef0123456789abcdef", id, version}}};
  for (std::int64_t line = 0; line < post.history; ++line) {
    writes.push_back(
        {"insert into History (TableName, RowKey, ColumnName, OldValue, NewValue, ChangedBy,"
         " ChangedOn, MachineName, Kind) select 'PurchaseOrderDet', ?1, 'Quantity', '1', '2',"
         " 'admin', CreatedOn, 'bench', 'U' from PurchaseOrder where POIdNumber = ?2 and POVersion"
         " = ?3",
         {id + "/" + version + "/" + row + "/", id, version}});
  }
  return writes;
}

std::vector<BareStatement> DecisionOf(const LevelDecision& decision) {
  const std::string id = std::to_string(decision.id);
  const std::string version = std::to_string(decision.version);
  const std::string level = std::to_string(decision.level);
  const std::string document = " where PurchaseOrderId = ?1 and PurchaseOrderVer = ?2";
  std::vector<BareStatement> writes = {
      {"select ConfirmationLevel, Status, ConfirmedFrom, Approval from PurchaseOrderAdm" + document,
       {id, version}},
      {"select o.Status, o.CostCenter, c.Chief from PurchaseOrder o left join CostCenters c"
       " on c.CostCenter = o.CostCenter where o.POIdNumber = ?1 and o.POVersion = ?2",
       {id, version}},
      {"update PurchaseOrderAdm set Status = Status" + document + " and ConfirmationLevel = ?3",
       {id, version, level}},
      {"update PurchaseOrder set Status = Status where POIdNumber = ?1 and POVersion = ?2",
       {id, version}},
      {"insert into ClientKey (Login, Key, RequestHash, Answer, CreatedOn) select 'admin', ?1, ?2,"
       " '', CreatedOn from PurchaseOrder where POIdNumber = ?3 and POVersion = ?4",
       {decision.key, "0123456789abcdef0123456789abcdef", id, version}}};
  for (int line = 0; line < 4; ++line) {
    writes.push_back(
        {"insert into History (TableName, RowKey, ColumnName, OldValue, NewValue, ChangedBy,"
         " ChangedOn, MachineName, Kind) select 'PurchaseOrderAdm', ?1, 'Status', '2', '3',"
         " 'admin', CreatedOn, 'bench', 'U' from PurchaseOrder where POIdNumber = ?2 and POVersion"
         " = ?3",
         {id + "/" + version + "/" + level + "/", id, version}});
  }
  return writes;
}

}  // namespace orvane::bench
