#pragma once

// Deliveries: the receipt of goods or services against one version of a purchase request.

#include "contract/field.h"
#include "contract/workflow.h"

namespace orvane::delivery {

inline constexpr std::string_view kServerClass = "TsmDeliveries";
inline constexpr std::string_view kOperations = "Operations";

/// Statuses of deliveries: 1 blocked, 5 received into stock; the others as for requests.
enum DeliveryStatus : std::uint8_t { Blocked = 1, Registered = 2, Waiting = 3, Received = 5 };

namespace head {

inline constexpr auto IdNumber = Int32("IdNumber", Key, "Номер");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Коригиран от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Коригиран на");
inline constexpr auto AnnulFrom = String("AnnulFrom", 10, Plain, "Анулиран от");
inline constexpr auto AnnulOn = Moment("AnnulOn", Plain, "Анулиран на");
inline constexpr auto CarNumber = String("CarNumber", 30, Plain, "Номер на транспортно средство");
inline constexpr auto ConfirmedFrom = String("ConfirmedFrom", 10, Plain, "Утвърден от");
inline constexpr auto ConfirmedOn = Moment("ConfirmedOn", Plain, "Утвърден на");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Required | Stamped, "Създаден от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Required | Stamped, "Създаден на");
inline constexpr auto DeliveryDate = Day("DeliveryDate", Required, "Дата на доставка");
inline constexpr auto Difference = Bit("Difference", Required, "Разлика (Документи - Доставено)");
inline constexpr auto IncTranspInPrice =
    Byte("IncTranspInPrice", Plain, "Включен транспорт в цената");
inline constexpr auto KindSupply = Int16("KindSupply", Required, "Вид покупка");
inline constexpr auto OutsideTolerance =
    Bit("OutsideTolerance", Required, "Извън толеранс (Искане - Доставено)");
inline constexpr auto PODeliveryDate = Day("PODeliveryDate", Required, "Планова дата на доставка");
inline constexpr auto PrevYearId = Int32("PrevYearId", Plain, "Предходна година - Идентификатор");
inline constexpr auto PurchaseOrderId = Int32("PurchaseOrderId", Required, "Номер на искане");
inline constexpr auto PurchaseOrderVer = Byte("PurchaseOrderVer", Required, "Версия на искане");
inline constexpr auto Status = Byte("Status", Required, "Статус");
inline constexpr auto Store = Int32("Store", Plain, "Склад");
inline constexpr auto StoreName = String("StoreName", 30, Joined, "Име");
inline constexpr auto StoreDocId = Int32("StoreDocId", Plain, "Складов документ - Идентификатор");
inline constexpr auto SuppDocDate = Day("SuppDocDate", Plain, "Дата на документ - Доставчик");
inline constexpr auto SuppDocNumber =
    String("SuppDocNumber", 30, Plain, "Номер на документ - Доставчик");
inline constexpr auto Supplier = Code19("Supplier", Required, "Доставчик");
inline constexpr auto SupplyInvoiceId =
    Int32("SupplyInvoiceId", Plain, "Фактура за доставка - Идентификатор");
inline constexpr auto SupplyPrInvoiceId =
    Int32("SupplyPrInvoiceId", Plain, "Проформа фактура за доставка - Идентификатор");
inline constexpr auto StoreDocNum = Int32("StoreDocNum", Joined, "Номер");
inline constexpr auto SupplierName = String("SupplierName", 50, Joined, "Име");
inline constexpr auto KindSuppName = String("KindSuppName", 40, Joined, "Име");
inline constexpr auto KindDocName = String("KindDocName", 30, Joined, "Име");
inline constexpr auto UserCrName = String("UserCrName", 40, Joined, "Име");
inline constexpr auto UserAmName = String("UserAmName", 40, Joined, "Име");
inline constexpr auto UserConfName = String("UserConfName", 40, Joined, "Име");
inline constexpr auto UserAnnulName = String("UserAnnulName", 40, Joined, "Име");
inline constexpr auto PODesc = Memo("PODesc", Joined, "Описание");

inline constexpr auto dspDeliveries =
    Writes("dspDeliveries", "Deliveries", IdNumber, AmendFrom, AmendOn, AnnulFrom, AnnulOn,
           CarNumber, ConfirmedFrom, ConfirmedOn, CreatedFrom, CreatedOn, DeliveryDate, Difference,
           IncTranspInPrice, KindSupply, OutsideTolerance, PODeliveryDate, PrevYearId,
           PurchaseOrderId, PurchaseOrderVer, Status, Store, StoreName, StoreDocId, SuppDocDate,
           SuppDocNumber, Supplier, SupplyInvoiceId, SupplyPrInvoiceId, StoreDocNum, SupplierName,
           KindSuppName, KindDocName, UserCrName, UserAmName, UserConfName, UserAnnulName, PODesc);

}  // namespace head

namespace rows {

inline constexpr auto DeliveryId = Int32("DeliveryId", Key | Required);
inline constexpr auto RowNumber = Int16("RowNumber", Key | Required, "Номер на ред");
inline constexpr auto SerialNumber = Code19("SerialNumber", Required, "Пореден номер");
inline constexpr auto bslName = String("bslName", 40, Joined, "Име");
inline constexpr auto InventoryId = Int32("InventoryId");
inline constexpr auto ServiceCode = Int32("ServiceCode");
inline constexpr auto Measure = Int16("Measure", Required, "Мярка");
inline constexpr auto MsrName = String("MsrName", 20, Joined, "Име");
/// Counted in the smallest unit of the measure's block.
inline constexpr auto Quantity = Real("Quantity", Required, "Количество");
inline constexpr auto Numerator = Int32("Numerator", Required);
inline constexpr auto RowNumerator = Int32("RowNumerator", Required);
inline constexpr auto Difference = Bit("Difference", Required);
inline constexpr auto OutsideTolerance = Bit("OutsideTolerance", Required);
inline constexpr auto roundQNT = Byte("roundQNT", Joined);
inline constexpr auto OrdinaryFraction = Bit("OrdinaryFraction", Joined);
inline constexpr auto msMeasure = Int16("msMeasure", Joined);
inline constexpr auto IncomeMeasure = Int16("IncomeMeasure", Joined);
inline constexpr auto BarCodeMeasure = Int16("BarCodeMeasure", Joined);
inline constexpr auto servMeasure = Int16("servMeasure", Joined);
inline constexpr auto LimitFitness = Day("LimitFitness", Plain, "Срок на годност");
inline constexpr auto LotNumber = String("LotNumber", 30, Plain, "Партида");
inline constexpr auto Remarks = Memo("Remarks", Plain, "Бележки");
inline constexpr auto Remarks2 = Memo("Remarks2", Plain, "Бележки");

inline constexpr auto dspDeliveriesRows =
    Writes("dspDeliveriesRows", "DeliveryRows", DeliveryId, RowNumber, SerialNumber, bslName,
           InventoryId, ServiceCode, Measure, MsrName, Quantity, Numerator, RowNumerator,
           Difference, OutsideTolerance, roundQNT, OrdinaryFraction, msMeasure, IncomeMeasure,
           BarCodeMeasure, servMeasure, LimitFitness, LotNumber, Remarks, Remarks2);

}  // namespace rows

/// Approval rows, one per level.
namespace adm {

inline constexpr auto DeliveryId = Int32("DeliveryId", Key | Required);
inline constexpr auto ConfirmationLevel =
    Byte("ConfirmationLevel", Key | Required, "Ниво на одобрение");
inline constexpr auto ConfirmedFrom = Code19("ConfirmedFrom", Plain, "Одобрен от");
inline constexpr auto EmplName = String("EmplName", 30, Joined, "Име");
inline constexpr auto ConfirmedOn = Moment("ConfirmedOn", Stamped, "Одобрен на");
inline constexpr auto Status = Byte("Status", Required, "Статус");
inline constexpr auto UnConfirmedFrom = Code19("UnConfirmedFrom");
inline constexpr auto UnConfirmedOn = Moment("UnConfirmedOn", Stamped);
inline constexpr auto SendingNumber = Int32("SendingNumber", Plain);
inline constexpr auto ConfLevelLocate = Int32("ConfLevelLocate", Joined);
inline constexpr auto Approval = Byte("Approval", Required, "Одобряващ");

inline constexpr auto dspDeliveryAdm = Writes(
    "dspDeliveryAdm", "DeliveryAdm", DeliveryId, ConfirmationLevel, ConfirmedFrom, EmplName,
    ConfirmedOn, Status, UnConfirmedFrom, UnConfirmedOn, SendingNumber, ConfLevelLocate, Approval);

}  // namespace adm

inline constexpr Move kConfirm{"confirm",   Right::Edit, StatusSet(Registered),
                               Who::Anyone, Waiting,     "ConfirmedFrom, ConfirmedOn"};
inline constexpr Move kCorrect{
    "correct",   Right::Edit, StatusSet(Waiting, PartlyApproved, Received),
    Who::Anyone, Registered,  "AmendFrom, AmendOn"};
inline constexpr Move kAnnul{"annul",     Right::Delete, StatusSet(Blocked, Registered),
                             Who::Anyone, Annulled,      "AnnulFrom, AnnulOn"};
inline constexpr Move kMoves[] = {kConfirm, kCorrect, kAnnul};

}  // namespace orvane::delivery
