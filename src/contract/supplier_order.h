#pragma once

// Supplier orders ("Поръчки за производство"): fields and providers of the head, the rows, the
// approval rows and the requests that the order covers, the positions of the server methods, and
// the moves of the document.

#include "contract/approval_rows.h"
#include "contract/document_rows.h"
#include "contract/field.h"
#include "contract/workflow.h"

namespace orvane::supplier_order {

inline constexpr std::string_view kServerClass = "TsmSuppManifacOrder";
inline constexpr std::string_view kReportClass = "TsmSuppManifacOrderReport";

namespace head {

/// The server numbers a new order; its screen sends none.
inline constexpr auto IdNumber = Int32("IdNumber", Key, "Номер");
inline constexpr auto DocumentDate = Day("DocumentDate", Required, "Дата на документа");
inline constexpr auto Description = Memo("Description", Plain, "Описание");
inline constexpr auto Description2 = Memo("Description2", Plain, "Описание");
inline constexpr auto Rationale = Memo("Rationale", Plain, "Обосновка");
inline constexpr auto Rationale2 = Memo("Rationale2", Plain, "Обосновка");
inline constexpr auto FromDate = Day("FromDate", Plain, "От дата");
inline constexpr auto ToDate = Day("ToDate", Plain, "До дата");
inline constexpr auto CostCenter = Code19("CostCenter", Required, "Център за разход");
inline constexpr auto KindSupply = Int16("KindSupply", Required, "Вид покупка");
inline constexpr auto Supplier = Code19("Supplier", Required, "Доставчик");
inline constexpr auto ContractId = Int32("ContractId", Plain, "Договор");
/// Element of nomenclature 250: 1 no, 2 yes.
inline constexpr auto IncTranspInPrice =
    Byte("IncTranspInPrice", Required, "Включен транспорт в цената");
inline constexpr auto KindCurrency = Int16("KindCurrency", Required, "Вид валута");
inline constexpr auto RateOfExchange = Rate("RateOfExchange", Required, "Валутен курс");
inline constexpr auto SumManifacOrder = Amount("SumManifacOrder", Required, "Сума");
inline constexpr auto CurrSumManifacOrder = Amount("CurrSumManifacOrder", Required, "Валутна сума");
inline constexpr auto Notifier = Code19("Notifier", Required, "Заявител");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Required | Stamped, "Създаден от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Required | Stamped, "Създаден на");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Коригиран от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Коригиран на");
inline constexpr auto Status = Byte("Status", Required, "Статус");
/// Sent to annul the order; the server writes its own login and time in their place.
inline constexpr auto AnnulFrom = String("AnnulFrom", 10, Plain, "Анулиран от");
inline constexpr auto AnnulOn = Moment("AnnulOn", Plain, "Анулиран на");
inline constexpr auto PrevYearId = Int32("PrevYearId", Plain, "Предходна година - Идентификатор");
inline constexpr auto CostCenterName = String("CostCenterName", 30, Joined, "Име");
inline constexpr auto KindSupplyName = String("KindSupplyName", 40, Joined, "Име");
inline constexpr auto SupplierName = String("SupplierName", 50, Joined, "Име");
inline constexpr auto ContractName = String("ContractName", 50, Joined, "Описание");
inline constexpr auto KindCurrencyName = String("KindCurrencyName", 20, Joined, "Име");
inline constexpr auto NotifierName = String("NotifierName", 30, Joined, "Име");
inline constexpr auto CreatedFromName = String("CreatedFromName", 40, Joined, "Име");
inline constexpr auto AmendFromName = String("AmendFromName", 40, Joined, "Име");
inline constexpr auto AnnulFromName = String("AnnulFromName", 40, Joined, "Име");

inline constexpr auto dspSuppManifacOrder = Writes(
    "dspSuppManifacOrder", "SuppManifacOrder", IdNumber, DocumentDate, Description, Description2,
    Rationale, Rationale2, FromDate, ToDate, CostCenter, KindSupply, Supplier, ContractId,
    IncTranspInPrice, KindCurrency, RateOfExchange, SumManifacOrder, CurrSumManifacOrder, Notifier,
    CreatedFrom, CreatedOn, AmendFrom, AmendOn, Status, AnnulFrom, AnnulOn, PrevYearId,
    CostCenterName, KindSupplyName, SupplierName, ContractName, KindCurrencyName, NotifierName,
    CreatedFromName, AmendFromName, AnnulFromName);

}  // namespace head

/// Rows of goods and services.
namespace det {

inline constexpr auto SuppManOrderId = Int32("SuppManOrderId", Key | Required);
inline constexpr auto RowNumber = Int16("RowNumber", Key | Required, "Номер на ред");
inline constexpr auto SerialNumber = Code19("SerialNumber", Required, "Пореден номер");
inline constexpr auto Measure = Int16("Measure", Required, "Мярка");
/// Counted in the smallest unit of the measure's block.
inline constexpr auto Quantity = Real("Quantity", Required, "Количество");
/// Size of the row's unit and of the entry's own unit, in smallest units.
inline constexpr auto RowNumerator = Int32("RowNumerator", Required);
inline constexpr auto Numerator = Int32("Numerator", Required);
inline constexpr auto InventoryId = Int32("InventoryId");
inline constexpr auto ServiceCode = Int32("ServiceCode");
inline constexpr auto Remarks = Memo("Remarks", Plain, "Бележки");
inline constexpr auto Remarks2 = Memo("Remarks2", Plain, "Бележки");
inline constexpr auto Name = String("Name", 40, Joined, "Име");
inline constexpr auto MeasureName = String("MeasureName", 20, Joined, "Име");
inline constexpr auto OrdinaryFraction = Bit("OrdinaryFraction", Joined);
inline constexpr auto RoundQuantity = Byte("RoundQuantity", Joined);
inline constexpr auto MatStockMeasure = Int16("MatStockMeasure", Joined);
inline constexpr auto MatStockIncomeMeasure = Int16("MatStockIncomeMeasure", Joined);
inline constexpr auto MatStockBarCodeMeasure = Int16("MatStockBarCodeMeasure", Joined);
inline constexpr auto ServiceMeasure = Int16("ServiceMeasure", Joined);

inline constexpr auto dspSuppManOrderDet =
    Writes("dspSuppManOrderDet", "SuppManOrderDet", SuppManOrderId, RowNumber, SerialNumber,
           Measure, Quantity, RowNumerator, Numerator, InventoryId, ServiceCode, Remarks, Remarks2,
           Name, MeasureName, OrdinaryFraction, RoundQuantity, MatStockMeasure,
           MatStockIncomeMeasure, MatStockBarCodeMeasure, ServiceMeasure);

}  // namespace det

/// Approval rows, one per level; the server makes them when the order is sent.
namespace adm {

inline constexpr auto SuppManOrderId = Int32("SuppManOrderId", Key | Required);
inline constexpr auto ConfirmationLevel =
    Byte("ConfirmationLevel", Key | Required, "Ниво на одобрение");
inline constexpr auto ConfirmedFrom = Code19("ConfirmedFrom", Plain, "Одобрен от");
inline constexpr auto ConfermedOn = Moment("ConfermedOn", Stamped, "Одобрен на");
inline constexpr auto UnConfirmedFrom = Code19("UnConfirmedFrom");
inline constexpr auto UnConfirmedOn = Moment("UnConfirmedOn", Stamped);
inline constexpr auto Status = Byte("Status", Required, "Статус");
/// Number of the sending that made the row; a decision on a former sending is a conflict.
inline constexpr auto SendingNumber = Int32("SendingNumber", Key | Required);
inline constexpr auto ConfirmedFromName = String("ConfirmedFromName", 70, Joined, "Име");
inline constexpr auto StatusName = String("StatusName", 30, Joined, "Статус");
inline constexpr auto ApprovalName = String("ApprovalName", 30, Joined, "Одобряващ");
using approval_rows::ApprovalNote;
using approval_rows::WaitsFor;

inline constexpr auto dspSuppManOrderAdmin =
    Writes("dspSuppManOrderAdmin", "SuppManOrderAdmin", SuppManOrderId, ConfirmationLevel,
           ConfirmedFrom, ConfermedOn, UnConfirmedFrom, UnConfirmedOn, Status, SendingNumber,
           ConfirmedFromName, StatusName, ApprovalName, ApprovalNote, WaitsFor);

}  // namespace adm

/// Purchase requests that the order covers (read only).
namespace requests {

inline constexpr auto DocumentDate = Day("DocumentDate", Plain, "Дата на документа");
inline constexpr auto POIdNumber = Int32("POIdNumber", Key, "Номер");
inline constexpr auto POVersion = Byte("POVersion", Key, "Версия");
inline constexpr auto Description = String("Description", 30, Plain, "Описание");
inline constexpr auto dspPurchaseOrder =
    Reads("dspPurchaseOrder", DocumentDate, POIdNumber, POVersion, Description);

}  // namespace requests

/// Rows that lookups open with.
namespace opening_rows {
inline constexpr auto Element = Code19("Element", Key, "Код");
inline constexpr auto Code = Int16("Code", Key, "Код");
inline constexpr auto Name = String("Name", 30, Plain, "Име");
inline constexpr auto Name2 = String("Name2", 30, Plain, "Име 2");
inline constexpr auto kNomenclature = Reads("", Element, Name, Name2);
inline constexpr auto kCurrency = Reads("", Code, Name, Name2);
}  // namespace opening_rows

/// Method "GetParams": what the screen asks once when it is created. One array both ways.
namespace get_params {
inline constexpr std::string_view kName = "GetParams";
enum At : std::uint8_t {
  kEmployee,       ///< in
  kFirstLanguage,  ///< in
  kAskSize,
  kEmployeeName = kAskSize,
  kIdentityWithNom,  ///< names come from materials and services, not from the list
  kContext,          ///< opaque, goes back with GetRecord
  /// Behind these what the screen opens with beside an order, so that it asks once: cost centres
  /// for which the employee is an admissible requester (Null when they are too many to be sent
  /// unasked), and names of statuses, of no and yes, of currencies.
  kCostCenters,
  kStatuses,
  kNoYes,
  kCurrencies,
  kSize
};
}  // namespace get_params

/// Method "GetRecord": loads an order whole. The question takes the positions before kFound.
namespace get_record {
inline constexpr std::string_view kName = "GetRecord";
enum At : std::uint8_t {
  kMode,  ///< Nav
  kStep,  ///< of Nav::Step
  kIdText,
  kEmployee,
  kBelowThree,  ///< the user's level is below 3
  kLogin,
  kContext,
  kFirstLanguage,
  kViewOnly,
  kAskSize,
  kFound = kAskSize,
  kPosition,  ///< LoadCode
  kHead,
  kMayApprove,     ///< the turn is the asker's
  kMayWithdraw,    ///< the asker decided and has no turn now
  kPendingStatus,  ///< status of the approval row whose turn is the asker's
  kOwnStatus,      ///< status of the row that he may take back
  kOwnLevel,       ///< level of the one of these two that he has
  kReserved,
  kFullAccess,  ///< may complete and edit any order
  /// Behind these what else a load brings, in one snapshot: the parts and the rows behind the
  /// head's codes (own_rows), so that a screen shows them without asking again. A code that is
  /// null, or whose row is gone, gives a packet without rows.
  kRows,
  kApprovals,
  kRequests,
  kCostCenterRow,
  kSupplierRow,
  kContractRow,
  kSize
};
}  // namespace get_record

/// The search report (TsmSuppManifacOrderReport).
namespace report {

/// The filter's one record. Empty fields do not limit.
inline constexpr auto CostCenter = Code19("CostCenter", Plain, "Център за разход");
inline constexpr auto FromNumber = Int32("FromNumber", Plain, "От номер");
inline constexpr auto ToNumber = Int32("ToNumber", Plain, "До номер");
inline constexpr auto Supplier = Code19("Supplier", Plain, "Доставчик");
inline constexpr auto Status = Byte("Status", Plain, "Статус");
inline constexpr auto kFilter = Reads("", CostCenter, FromNumber, ToNumber, Supplier, Status);

inline constexpr auto IdNumber = Int32("IdNumber", Key | Required, "Номер");
inline constexpr auto ResultCostCenter = Code19("CostCenter", Required, "Код");
inline constexpr auto ResultSupplier = Code19("Supplier", Required, "Код");
inline constexpr auto ResultStatus = Byte("Status", Required, "Статус");
inline constexpr auto Description = Memo("Description", Plain, "Описание");
inline constexpr auto CostCenterName = String("CostCenterName", 30, Joined, "Име");
inline constexpr auto SupplierName = String("SupplierName", 50, Joined, "Име");
inline constexpr auto kResult = Reads("", IdNumber, ResultCostCenter, ResultSupplier, ResultStatus,
                                      Description, CostCenterName, SupplierName);

}  // namespace report

/// TsmSuppManifacOrderReport.GetParams: what the screen opens with. [0] array of the database
/// context, the employee and the number of his language; answer [1] packet of all cost centres for
/// which he is an admissible requester, null where they are too many to send unasked, [2] packet of
/// the names of statuses.
namespace report_params {
inline constexpr std::string_view kName = "GetParams";
enum Ask : std::uint8_t { kDatabase, kEmployee, kLanguage, kInputSize };
enum At : std::uint8_t { kInput, kAskSize, kCostCenters = kAskSize, kStatuses, kSize };
}  // namespace report_params

/// TsmSuppManifacOrderReport.GetReport: the rows that pass the filter and that the asker may see,
/// by identifier, in portions.
namespace get_report {
inline constexpr std::string_view kName = "GetReport";
/// Inside the context array.
enum Context : std::uint8_t { kDatabase, kLogin, kOptions, kContextSize };
/// Inside its options: the language of names, the most rows of a portion, and the continuation of
/// the former portion (null for the first).
enum Options : std::uint8_t { kFirstLanguage, kRowLimit, kContinuation, kOptionsSize };
enum At : std::uint8_t { kContext, kFilterPacket, kAskSize, kResultPacket = kAskSize, kSize };
}  // namespace get_report

// --- moves ---------------------------------------------------------------------------------------

inline constexpr Move kSend{"send", Right::Edit, StatusSet(Entered), Who::Owner, ForApproval, {}};
inline constexpr Move kCorrect{"correct",  Right::Edit, StatusSet(ForApproval),
                               Who::Owner, Entered,     {}};
inline constexpr Move kAnnul{"annul",    Right::Delete, StatusSet(Rejected, Entered),
                             Who::Owner, Annulled,      "AnnulFrom, AnnulOn"};
inline constexpr Move kComplete{"complete",     Right::Edit, StatusSet(Fulfilling),
                                Who::Requester, Completed,   {}};
inline constexpr Move kReopen{"reopen",       Right::Edit, StatusSet(Completed),
                              Who::Requester, Fulfilling,  {}};
inline constexpr Move kMoves[] = {kSend, kCorrect, kAnnul, kComplete, kReopen};

}  // namespace orvane::supplier_order
