#include "server/orders/order_document.h"

#include "contract/supplier_order.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;

constexpr std::string_view kSelectHead =
    "select o.IdNumber, o.DocumentDate, o.Description, o.Description2, o.Rationale, o.Rationale2,"
    " o.FromDate, o.ToDate, o.CostCenter, o.KindSupply, o.Supplier, o.ContractId,"
    " o.IncTranspInPrice, o.KindCurrency, o.RateOfExchange, o.SumManifacOrder,"
    " o.CurrSumManifacOrder, o.Notifier, o.CreatedFrom, o.CreatedOn, o.AmendFrom, o.AmendOn,"
    " o.Status, o.AnnulFrom, o.AnnulOn, o.PrevYearId, {q.Name}, {k.Name}, {p.Name},"
    " {d.ShortDescription}, {y.Name}, {n.Name}, {c.UserName}, {a.UserName}, {x.UserName}"
    " from SuppManifacOrder o left join CostCenters q on q.CostCenter = o.CostCenter"
    " left join KindSupplies k on k.Code = o.KindSupply"
    " left join Partners p on p.Partner = o.Supplier"
    " left join SuppliesContracts d on d.IdNumber = o.ContractId"
    " left join Currencies y on y.Code = o.KindCurrency"
    " left join Employees n on n.Employee = o.Notifier"
    " left join WSysUsers c on c.ShortName = o.CreatedFrom"
    " left join WSysUsers a on a.ShortName = o.AmendFrom"
    " left join WSysUsers x on x.ShortName = o.AnnulFrom where o.IdNumber = {id}";

/// <entry> is the name an entry goes by.
constexpr std::string_view kSelectRows =
    "select r.SuppManOrderId, r.RowNumber, r.SerialNumber, r.Measure, r.Quantity, r.RowNumerator,"
    " r.Numerator, r.InventoryId, r.ServiceCode, r.Remarks, r.Remarks2, <entry>, {m.Name},"
    " m.OrdinaryFraction, coalesce(i.RoundQuantity, s.RoundQuantity), i.Measure, i.IncomeMeasure,"
    " i.BarCodeMeasure, s.Measure from SuppManOrderDet r"
    " left join BaseSupplyList b on b.SerialNumber = r.SerialNumber"
    " left join Measures m on m.Code = r.Measure"
    " left join MaterialStocks i on i.IdNumber = r.InventoryId"
    " left join Services s on s.Code = r.ServiceCode"
    " where r.SuppManOrderId = {id} order by r.RowNumber";
constexpr std::string_view kEffectiveName = "{b.EffectiveName}";
constexpr std::string_view kNameAsAsked =
    "case when :IdentityWithNom = 1 then coalesce({i.Name}, {s.Name}, {b.Name}) else {b.Name} end";

/// A deputy's decision names the head in whose place it was made. <status> and <approver> are the
/// names of nomenclatures.
constexpr std::string_view kSelectApprovals =
    "select a.SuppManOrderId, a.ConfirmationLevel, a.ConfirmedFrom, a.ConfermedOn,"
    " a.UnConfirmedFrom, a.UnConfirmedOn, a.Status, a.SendingNumber,"
    " case when a.OnBehalfOf is null then {e.Name}"
    " else {e.Name} || ' (за ' || {h.Name} || ')' end, <status>, <approver>,"
    " a.ApprovalNote, cast(null as text) from SuppManOrderAdmin a left join Employees e on "
    "e.Employee = a.ConfirmedFrom"
    " left join Employees h on h.Employee = a.OnBehalfOf"
    " left join NomIn w on w.Nomenclature = <statuses> and w.Element = a.Status"
    " left join NomIn v on v.Nomenclature = <approvers> and v.Element = a.Approval"
    " where a.SuppManOrderId = {id} order by a.ConfirmationLevel";
/// A name by the number of its language; one that is not there is that of the first.
constexpr std::string_view kNameByNumber =
    "coalesce(case :NomInLanguage when 2 then {t}.Name2 when 3 then {t}.Name3 when 4 then"
    " {t}.Name4 when 5 then {t}.Name5 when 6 then {t}.Name6 when 7 then {t}.Name7 when 8 then"
    " {t}.Name8 when 9 then {t}.Name9 when 10 then {t}.Name10 end, {t}.Name)";
constexpr std::string_view kApprovalStatuses = "251";
constexpr std::string_view kApprovers = "245";

/// What counts against the order: requests from the sending on. They are found by the rows that
/// name the order, however many requests there are: "+ 0" keeps the index of statuses out of it.
constexpr std::string_view kSelectRequests =
    "select p.DocumentDate, p.POIdNumber, p.POVersion, substr({p.Description}, 1, 30)"
    " from PurchaseOrder p join (select distinct d.PurchaseOrderId, d.PurchaseOrderVer"
    " from PurchaseOrderDet d where d.SuppManifacOrderId = {id}) r"
    " on r.PurchaseOrderId = p.POIdNumber and r.PurchaseOrderVer = p.POVersion"
    " where p.OldVersion = 0 and p.AnnulOn is null and p.Status + 0 between 3 and 7 and <seen>"
    " order by p.DocumentDate, p.POIdNumber, p.POVersion";

constexpr std::string_view kSelectCostCenter =
    "select c.CostCenter, c.Name, c.Name2 from SuppManifacOrder o"
    " join CostCenters c on c.CostCenter = o.CostCenter where o.IdNumber = {id}";

constexpr std::string_view kSelectPartner =
    "select p.Partner, p.Name, p.Name2, p.SuppKindCurrency, p.KindSupplyChoice, p.KindSupplyList,"
    " p.SuppMaxTermOfPayment from SuppManifacOrder o join Partners p on p.Partner = o.Supplier"
    " where o.IdNumber = {id}";

constexpr std::string_view kSelectContract =
    "select c.IdNumber, c.ShortDescription, c.ContractDate, c.ShortDescription2,"
    " c.KindSupplyChoice, c.KindSupplyList, c.MaxTermOfPayment, c.InclTransportInPrice"
    " from SuppManifacOrder o join SuppliesContracts c on c.IdNumber = o.ContractId"
    " where o.IdNumber = {id}";

std::string RowsText(std::string_view entry) {
  return Replaced(kSelectRows, "<entry>", entry);
}

struct NomenclatureNames {
  std::string_view name;  ///< of an element of alias {t}
  std::string_view statuses;
  std::string_view approvers;
};

std::string ApprovalsText(const NomenclatureNames& names) {
  std::string text = Replaced(kSelectApprovals, "<status>", Replaced(names.name, "{t}", "w"));
  text = Replaced(text, "<approver>", Replaced(names.name, "{t}", "v"));
  text = Replaced(text, "<statuses>", names.statuses);
  return Replaced(text, "<approvers>", names.approvers);
}

/// A part's text for a provider that is read by itself: for the order :IdNumber, if it may be seen.
std::string ByItself(std::string_view text) {
  const std::string seen =
      "(select o.IdNumber from SuppManifacOrder o where o.IdNumber = :IdNumber and " +
      SeenBySession(kSeenOrders, "o") + ")";
  return InAskedLanguage(Replaced(text, "{id}", seen));
}

}  // namespace

const Document& SupplierOrder() {
  static const std::string kRows = RowsText(kEffectiveName);
  static const std::string kApprovalRows =
      ApprovalsText({"{{t}.Name}", kApprovalStatuses, kApprovers});
  static const DocumentPart kParts[] = {
      {order::det::dspSuppManOrderDet, kRows},    {order::adm::dspSuppManOrderAdmin, kApprovalRows},
      {own_rows::kCostCenter, kSelectCostCenter}, {own_rows::kPartner, kSelectPartner},
      {own_rows::kContract, kSelectContract},
  };
  static const Document kDocument{
      {order::head::dspSuppManifacOrder, kSelectHead}, kParts, kSeenOrders, order::kMoves};
  return kDocument;
}

std::string SelectRequestsOfOrder(std::string_view id, const std::string& seen) {
  return Replaced(Replaced(kSelectRequests, "{id}", id), "<seen>", seen);
}

namespace order_select {

const std::string& Head() {
  static const std::string kText = ByItself(kSelectHead);
  return kText;
}

const std::string& Rows() {
  static const std::string kText = ByItself(RowsText(kNameAsAsked));
  return kText;
}

const std::string& Approvals() {
  static const std::string kText =
      ByItself(ApprovalsText({kNameByNumber, ":NomInStatus", ":NomInApproval"}));
  return kText;
}

const std::string& Requests() {
  static const std::string kText =
      ByItself(SelectRequestsOfOrder("{id}", SeenBySession(kSeenRequests, "p")));
  return kText;
}

}  // namespace order_select

}  // namespace orvane::server
