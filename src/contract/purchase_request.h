#pragma once

// Purchase requests ("Искане за покупка"): fields, providers, server methods with their positions,
// and the moves of the document. A request is the pair (POIdNumber, POVersion); one version of each
// is current.

#include "contract/approval_rows.h"
#include "contract/document_rows.h"
#include "contract/field.h"
#include "contract/workflow.h"

namespace orvane::purchase_request {

inline constexpr std::string_view kServerClass = "TsmPurchaseOrder";
inline constexpr std::string_view kReportClass = "TsmPurchaseOrderReport";
inline constexpr std::string_view kOperations = "Operations";

namespace head {

inline constexpr auto POIdNumber = Int32("POIdNumber", Key | Required, "Идентификатор");
inline constexpr auto POVersion = Byte("POVersion", Key | Required, "Версия");
inline constexpr auto DocumentDate = Day("DocumentDate", Required, "Дата на документ");
inline constexpr auto Description = Memo("Description", Plain, "Описание");
inline constexpr auto Description2 = Memo("Description2", Plain, "Описание");
inline constexpr auto Rationale = Memo("Rationale", Plain, "Обосновка");
inline constexpr auto Rationale2 = Memo("Rationale2", Plain, "Обосновка");
inline constexpr auto CostCenter = Code19("CostCenter", Required, "Център за разход");
inline constexpr auto Notifier = Code19("Notifier", Required, "Заявител");
inline constexpr auto Supplier = Code19("Supplier", Plain, "Доставчик");
inline constexpr auto ContractId = Int32("ContractId", Plain, "Идентификатор на договор");
inline constexpr auto KindSupply = Int16("KindSupply", Required, "Вид покупка");
/// Element of nomenclature 250: 1 no, 2 yes.
inline constexpr auto IncTranspInPrice =
    Byte("IncTranspInPrice", Required, "Включен транспорт в цената");
inline constexpr auto KindCurrency = Int16("KindCurrency", Required, "Вид валута");
inline constexpr auto RateOfExchange = Rate("RateOfExchange", Required, "Валутен курс");
inline constexpr auto CurrSumPurchaseOrder =
    Amount("CurrSumPurchaseOrder", Required, "Валутна сума на искането");
inline constexpr auto SumPurchaseOrder = Amount("SumPurchaseOrder", Required, "Сума на искането");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Required | Stamped, "Създаден от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Required | Stamped, "Създаден на");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Коригиран от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Коригиран на");
inline constexpr auto Status = Byte("Status", Required, "Статус");
/// Sent to annul the request; the server writes its own login and time in their place.
inline constexpr auto AnnulFrom = String("AnnulFrom", 10, Plain, "Анулиран от");
inline constexpr auto AnnulOn = Moment("AnnulOn", Plain, "Анулиран на");
inline constexpr auto OldVersion = Bit("OldVersion", Required, "Стара версия");
inline constexpr auto NtfName = String("NtfName", 30, Joined, "Име");
inline constexpr auto CrtFrmName = String("CrtFrmName", 40, Joined, "Име");
inline constexpr auto AmndFrmName = String("AmndFrmName", 40, Joined, "Име");
inline constexpr auto AnnulFrmName = String("AnnulFrmName", 40, Joined, "Име");

inline constexpr auto dspPurchaseOrder =
    Writes("dspPurchaseOrder", "PurchaseOrder", POIdNumber, POVersion, DocumentDate, Description,
           Description2, Rationale, Rationale2, CostCenter, Notifier, Supplier, ContractId,
           KindSupply, IncTranspInPrice, KindCurrency, RateOfExchange, CurrSumPurchaseOrder,
           SumPurchaseOrder, CreatedFrom, CreatedOn, AmendFrom, AmendOn, Status, AnnulFrom, AnnulOn,
           OldVersion, NtfName, CrtFrmName, AmndFrmName, AnnulFrmName);

}  // namespace head

/// Rows of materials and services, each picked from the supply list.
namespace det {

inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Key | Required);
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Key | Required);
inline constexpr auto RowNumber = Int16("RowNumber", Key | Required, "Номер на ред");
inline constexpr auto SerialNumber = Code19("SerialNumber", Required, "Пореден номер");
inline constexpr auto bslName = String("bslName", 40, Joined, "Име");
inline constexpr auto InventoryId = Int32("InventoryId");
inline constexpr auto ServiceCode = Int32("ServiceCode");
inline constexpr auto Measure = Int16("Measure", Required, "Мярка");
inline constexpr auto MsrName = String("MsrName", 20, Joined, "Име");
inline constexpr auto SuppManifacOrderId =
    Int32("SuppManifacOrderId", Plain, "Поръчка за производство");
/// Counted in the smallest unit of the measure's block.
inline constexpr auto Quantity = Real("Quantity", Required, "Количество");
/// Size of the entry's own unit, to which its price belongs, in smallest units.
inline constexpr auto Numerator = Int32("Numerator", Required);
/// Size of the row's chosen unit, in smallest units.
inline constexpr auto RowNumerator = Int32("RowNumerator", Required);
inline constexpr auto CurrSumWithoutVAT = Amount("CurrSumWithoutVAT", Required, "Сума");
inline constexpr auto Remarks = Memo("Remarks", Plain, "Бележки");
inline constexpr auto Remarks2 = Memo("Remarks2", Plain, "Бележки");
inline constexpr auto SMOName = String("SMOName", 50, Joined, "Име");
inline constexpr auto msMeasure = Int16("msMeasure", Joined);
inline constexpr auto IncomeMeasure = Int16("IncomeMeasure", Joined);
inline constexpr auto BarCodeMeasure = Int16("BarCodeMeasure", Joined);
inline constexpr auto servMeasure = Int16("servMeasure", Joined);
inline constexpr auto roundQNT = Byte("roundQNT", Joined);
inline constexpr auto OrdinaryFraction = Bit("OrdinaryFraction", Joined);

inline constexpr auto dspPurchaseOrderDet =
    Writes("dspPurchaseOrderDet", "PurchaseOrderDet", PurchaseOrderId, PurchaseOrderVer, RowNumber,
           SerialNumber, bslName, InventoryId, ServiceCode, Measure, MsrName, SuppManifacOrderId,
           Quantity, Numerator, RowNumerator, CurrSumWithoutVAT, Remarks, Remarks2, SMOName,
           msMeasure, IncomeMeasure, BarCodeMeasure, servMeasure, roundQNT, OrdinaryFraction);

}  // namespace det

/// Delivery schedule.
namespace del {

inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Key | Required);
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Key | Required);
inline constexpr auto DeliveryDate = Day("DeliveryDate", Key | Required, "Дата на доставка");
inline constexpr auto DateOfLoading = Day("DateOfLoading", Plain, "Дата на товарене");
inline constexpr auto Delivered = Bit("Delivered", Plain, "Доставено");

inline constexpr auto dspPurchaseOrderDel =
    Writes("dspPurchaseOrderDel", "PurchaseOrderDel", PurchaseOrderId, PurchaseOrderVer,
           DeliveryDate, DateOfLoading, Delivered);

}  // namespace del

/// Payment plan.
namespace pay {

inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Key | Required);
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Key | Required);
/// Given by the server to new rows: highest plus one.
inline constexpr auto RowNumber = Byte("RowNumber", Key);
inline constexpr auto InvoiceDate = Day("InvoiceDate", Required, "Дата на фактура");
inline constexpr auto SumWithVAT = Amount("SumWithVAT", Required, "Сума с ДДС");
inline constexpr auto AdvancePayment = Bit("AdvancePayment", Plain, "Авансово плащане");
inline constexpr auto AdvanceStatement = Bit("AdvanceStatement", Plain, "Авансов отчет");
inline constexpr auto PaymentDate = Day("PaymentDate", Required, "Дата на плащане");
inline constexpr auto SupplyInvoiceId = Int32("SupplyInvoiceId", Plain, "Получена фактура");
/// Copy of RowNumber, for ordering.
inline constexpr auto RNLocate = Int32("RNLocate", Joined, "Номер на ред");

inline constexpr auto dspPurchaseOrderPayPl =
    Writes("dspPurchaseOrderPayPl", "PurchaseOrderPayPl", PurchaseOrderId, PurchaseOrderVer,
           RowNumber, InvoiceDate, SumWithVAT, AdvancePayment, AdvanceStatement, PaymentDate,
           SupplyInvoiceId, RNLocate);

}  // namespace pay

/// Approval rows, one per level; the server makes them when the request is sent.
namespace adm {

inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Key | Required);
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Key | Required);
inline constexpr auto ConfirmationLevel =
    Byte("ConfirmationLevel", Key | Required, "Ниво на одобрение");
inline constexpr auto ConfirmedFrom = Code19("ConfirmedFrom", Plain, "Одобрен от");
inline constexpr auto EmpName = String("EmpName", 70, Joined, "Име");
inline constexpr auto ConfermedOn = Moment("ConfermedOn", Stamped, "Одобрен на");
inline constexpr auto UnConfirmedFrom = Code19("UnConfirmedFrom");
inline constexpr auto UnConfirmedOn = Moment("UnConfirmedOn", Stamped);
inline constexpr auto Status = Byte("Status", Required, "Статус");
/// Number of the sending that made the row; a decision on a former sending is a conflict.
inline constexpr auto SendingNumber = Int32("SendingNumber", Key | Required);
inline constexpr auto ConfLevelLocate = Int32("ConfLevelLocate", Joined);
inline constexpr auto Approval = Byte("Approval", Plain, "Одобряващ");
using approval_rows::ApprovalNote;
using approval_rows::WaitsFor;

inline constexpr auto dspPurchaseOrderAdm =
    Writes("dspPurchaseOrderAdm", "PurchaseOrderAdm", PurchaseOrderId, PurchaseOrderVer,
           ConfirmationLevel, ConfirmedFrom, EmpName, ConfermedOn, UnConfirmedFrom, UnConfirmedOn,
           Status, SendingNumber, ConfLevelLocate, Approval, ApprovalNote, WaitsFor);

}  // namespace adm

/// Deliveries made against the request (read only).
namespace deliveries {

inline constexpr auto DeliveryDate = Day("DeliveryDate", Plain, "Дата на доставка");
inline constexpr auto IdNumber = Int32("IdNumber", Plain, "Номер");
inline constexpr auto dspDeliveries = Reads("dspDeliveries", DeliveryDate, IdNumber);

}  // namespace deliveries

/// The asking user's roles in the approval of the request (read only).
namespace roles {

inline constexpr auto oKindUser = Int32("oKindUser");
inline constexpr auto oConfirmationLevel = Byte("oConfirmationLevel");
inline constexpr auto oConfirmationStats = Byte("oConfirmationStats");
inline constexpr auto dspGetSuppDocConfirm =
    Reads("dspGetSuppDocConfirm", oKindUser, oConfirmationLevel, oConfirmationStats);

}  // namespace roles

/// Is an employee an admissible requester: one row when he is. Parameter Notifier.
inline constexpr auto AdmNotifier = Code19("Notifier");
inline constexpr auto dspCheckAdmNotifiers = Reads("dspCheckAdmNotifiers", AdmNotifier);

/// Nomenclatures served by the document's own class. Names in both languages.
inline constexpr auto Element = Code19("Element", Key);
inline constexpr auto ElementName = String("Name", 30);
inline constexpr auto ElementName2 = String("Name2", 30);
inline constexpr auto dspNomIn245 = Reads("dspNomIn245", Element, ElementName, ElementName2);
inline constexpr auto dspNomIn249 = Reads("dspNomIn249", Element, ElementName, ElementName2);
inline constexpr auto dspNomIn251 = Reads("dspNomIn251", Element, ElementName, ElementName2);

/// Rows of the search report (TsmPurchaseOrderReport). The fetch carries the statement, as a search
/// does; it comes in portions ordered by identifier and version.
namespace report {

inline constexpr auto POIdNumber = Int32("POIdNumber", Key, "Номер");
inline constexpr auto POVersion = Int32("POVersion", Key, "Версия");
inline constexpr auto Description = String("Description", 50, Plain, "Описание");
inline constexpr auto Description2 = String("Description2", 50, Plain, "Описание");
inline constexpr auto CostCenter = Code19("CostCenter", Plain, "Код");
inline constexpr auto CCName = String("CCName", 30, Plain, "Име");
inline constexpr auto CCName2 = String("CCName2", 30, Plain, "Име");
inline constexpr auto Supplier = Code19("Supplier", Plain, "Код");
inline constexpr auto SuppName = String("SuppName", 50, Plain, "Име");
inline constexpr auto SuppName2 = String("SuppName2", 50, Plain, "Име");
inline constexpr auto Status = Byte("Status", Plain, "Статус");
inline constexpr auto dspResult =
    Reads("dspResult", POIdNumber, POVersion, Description, Description2, CostCenter, CCName,
          CCName2, Supplier, SuppName, SuppName2, Status);

}  // namespace report

/// Operations "GetRec": positions of the question.
namespace get_rec {
inline constexpr std::string_view kName = "GetRec";
enum Ask : std::uint8_t {
  kOperation,
  kLanguage,
  kNav,
  kStep,
  kId,
  kVersion,
  kLogin,
  kEmployee,
  kNeedsEmployee,
  kOneDocument,
  kAskSize
};
/// Positions of the answer; packets in the order head, det, del, pay, adm, deliveries, roles, and
/// behind them the rows of the codes in the head (own_rows), so that a screen shows their names
/// without asking again. A code that is Null, or whose row is gone, gives a packet without rows.
enum Tell : std::uint8_t {
  kCode,
  kFound,
  kFirstPacket,
  kCostCenterRow = 9,
  kPartnerRow,
  kContractRow,
  kTellSize
};
}  // namespace get_rec

/// Operations "GetSumCheck": [0] name, [1] id, [2] version; answer [4] compared total, [5] total of
/// the payment plan, [6] 1 when the compared total is the request's amount.
namespace sum_check {
inline constexpr std::string_view kName = "GetSumCheck";
enum At : std::uint8_t {
  kOperation,
  kId,
  kVersion,
  kCompared = 4,
  kPlan = 5,
  kIsAmount = 6,
  kSize = 7
};
}  // namespace sum_check

/// TsmPurchaseOrderReport.Operations "NewRec": [1] 2 new version or 3 copy, [2] id, [3] version,
/// [4] login; answer [0] 1 on success, [1] id, [2] version of the request made.
namespace new_rec {
inline constexpr std::string_view kName = "NewRec";
enum At : std::uint8_t { kOperation, kKind, kId, kVersion, kLogin, kSize };
inline constexpr int kNewVersion = 2;
inline constexpr int kCopy = 3;
}  // namespace new_rec

// --- moves ---------------------------------------------------------------------------------------

inline constexpr Move kSend{"send", Right::Edit, StatusSet(Entered), Who::Anyone, ForApproval, {}};
inline constexpr Move kCorrect{"correct",   Right::Edit, StatusSet(ForApproval),
                               Who::Anyone, Entered,     {}};
inline constexpr Move kAnnul{"annul",     Right::Delete, StatusSet(Rejected, Entered),
                             Who::Anyone, kKeepsStatus,  "AnnulFrom, AnnulOn"};
inline constexpr Move kComplete{
    "complete", Right::Edit, StatusSet(Approved, Fulfilling), Who::ChiefOrRequester, Completed, {}};
inline constexpr Move kReopen{"reopen",   Right::Edit, StatusSet(Completed), Who::ChiefOrRequester,
                              Fulfilling, {}};
inline constexpr Move kMoves[] = {kSend, kCorrect, kAnnul, kComplete, kReopen};

}  // namespace orvane::purchase_request
