#pragma once

// The register of supplier invoices: each invoice received, the purchase requests it settles, and
// its approval.

#include "contract/field.h"
#include "contract/workflow.h"

namespace orvane::supplier_invoice {

inline constexpr std::string_view kServerClass = "TsmRegisterSuppInvoice";
inline constexpr std::string_view kOperations = "Operations";

namespace head {

inline constexpr auto IdNumber = Int32("IdNumber", Key, "Идентификатор");
inline constexpr auto JoinedDate = Day("JoinedDate", Required, "Дата на регистрация");
inline constexpr auto Supplier = Code19("Supplier", Required, "Доставчик");
/// As typed; the server keeps it in one of the two columns below and derives it back.
inline constexpr auto InvoiceNumber = String("InvoiceNumber", 20, Joined, "Номер на фактура");
inline constexpr auto InvoiceNumberDigit = Code19("InvoiceNumberDigit", Plain, "Номер на фактура");
inline constexpr auto InvoiceNumberSymbol =
    String("InvoiceNumberSymbol", 20, Plain, "Номер на фактура");
inline constexpr auto InvoiceDate = Day("InvoiceDate", Required, "Дата на фактура");
inline constexpr auto DocumentType = Byte("DocumentType", Required, "Вид документ");
inline constexpr auto KindSupply = Int16("KindSupply", Plain, "Вид покупка");
inline constexpr auto CostCenter = Code19("CostCenter", Plain, "Център за разход");
inline constexpr auto KindCurrency = Int16("KindCurrency", Plain, "Вид валута");
inline constexpr auto CurrSumWithVATRb = Amount("CurrSumWithVATRb", Plain, "Сума");
inline constexpr auto OutsideTolerance = Bit("OutsideTolerance", Plain, "Извън толеранс");
inline constexpr auto Maturity = Day("Maturity", Required, "Падеж");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Required | Stamped, "Създаден от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Required | Stamped, "Създаден на");
inline constexpr auto CreatedFromName = String("CreatedFromName", 40, Joined, "Име");
inline constexpr auto Status = Byte("Status", Plain, "Статус");
inline constexpr auto ConfirmedFrom = String("ConfirmedFrom", 10, Plain, "Утвърден от");
inline constexpr auto ConfirmedOn = Moment("ConfirmedOn", Plain, "Утвърден на");
inline constexpr auto ConfirmedFromName = String("ConfirmedFromName", 40, Joined, "Име");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Коригиран от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Коригиран на");
inline constexpr auto AmendFromName = String("AmendFromName", 40, Joined, "Име");
inline constexpr auto AnnulFrom = String("AnnulFrom", 10, Plain, "Анулиран от");
inline constexpr auto AnnulOn = Moment("AnnulOn", Plain, "Анулиран на");
inline constexpr auto AnnulFromName = String("AnnulFromName", 40, Joined, "Име");
inline constexpr auto SumWithoutVATRb = Amount("SumWithoutVATRb", Plain, "Сума без ДДС");
inline constexpr auto OrdersSum = Amount("OrdersSum", Plain, "Сума по искания");
inline constexpr auto PrevYearId = Int32("PrevYearId", Plain, "Предходна година - Идентификатор");
inline constexpr auto SupplyInvoiceId = Int32("SupplyInvoiceId", Joined, "Фактура – идентификатор");
inline constexpr auto ProformaInvoiceId =
    Int32("ProformaInvoiceId", Joined, "Проформа фактура – идентификатор");

inline constexpr auto dspSuppInvRegister =
    Writes("dspSuppInvRegister", "SuppInvRegister", IdNumber, JoinedDate, Supplier, InvoiceNumber,
           InvoiceNumberDigit, InvoiceNumberSymbol, InvoiceDate, DocumentType, KindSupply,
           CostCenter, KindCurrency, CurrSumWithVATRb, OutsideTolerance, Maturity, CreatedFrom,
           CreatedOn, CreatedFromName, Status, ConfirmedFrom, ConfirmedOn, ConfirmedFromName,
           AmendFrom, AmendOn, AmendFromName, AnnulFrom, AnnulOn, AnnulFromName, SumWithoutVATRb,
           OrdersSum, PrevYearId, SupplyInvoiceId, ProformaInvoiceId);

}  // namespace head

/// Links to the requests that the invoice settles.
namespace links {

inline constexpr auto SuppInvRegiId = Int32("SuppInvRegiId", Key | Required);
inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Key | Required);
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Key | Required);
inline constexpr auto POVerLocate = Int32("POVerLocate", Joined);

inline constexpr auto dspSuppInvPurchaseOrder =
    Writes("dspSuppInvPurchaseOrder", "SuppInvPurchaseOrder", SuppInvRegiId, PurchaseOrderId,
           PurchaseOrderVer, POVerLocate);

}  // namespace links

/// Approval rows, one per level.
namespace adm {

inline constexpr auto SuppInvRegiId = Int32("SuppInvRegiId", Key | Required);
inline constexpr auto ConfirmationLevel =
    Byte("ConfirmationLevel", Key | Required, "Ниво на одобрение");
inline constexpr auto ConfirmedFrom = Code19("ConfirmedFrom", Plain, "Одобрен от");
inline constexpr auto ConfirmedOn = Moment("ConfirmedOn", Stamped, "Одобрен на");
inline constexpr auto ConfirmedFromName = String("ConfirmedFromName", 30, Joined, "Име");
inline constexpr auto Status = Byte("Status", Required, "Статус");
inline constexpr auto SendingNumber = Int32("SendingNumber", Plain);
inline constexpr auto Approval = Int32("Approval", Plain, "Одобряващ");

inline constexpr auto dspAdm =
    Writes("dspAdm", "SuppInvAdm", SuppInvRegiId, ConfirmationLevel, ConfirmedFrom, ConfirmedOn,
           ConfirmedFromName, Status, SendingNumber, Approval);

}  // namespace adm

}  // namespace orvane::supplier_invoice
