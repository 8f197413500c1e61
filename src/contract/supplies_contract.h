#pragma once

// Supplies contracts: the frame agreement with a supplier for one kind of purchase, whose terms the
// documents made under it inherit.

#include "contract/field.h"

namespace orvane::supplies_contract {

inline constexpr std::string_view kServerClass = "TsmSuppliesContracts";
inline constexpr std::string_view kOperations = "Operations";

inline constexpr auto IdNumber = Int32("IdNumber", Key, "Идентификатор");
inline constexpr auto Supplier = Code19("Supplier", Required, "Доставчик");
inline constexpr auto SupplierName = String("SupplierName", 50, Joined, "Име");
inline constexpr auto SupplierName2 = String("SupplierName2", 50, Joined, "Име");
inline constexpr auto ContractNumber = String("ContractNumber", 30, Required, "Номер на договор");
inline constexpr auto ShortDescription =
    String("ShortDescription", 50, Required | Folded, "Съкратено описание");
inline constexpr auto ShortDescription2 =
    String("ShortDescription2", 50, Folded, "Съкратено описание");
inline constexpr auto Description = Memo("Description", Plain, "Описание");
inline constexpr auto Description2 = Memo("Description2", Plain, "Описание");
inline constexpr auto ContractDate = Day("ContractDate", Required, "Дата на сключване");
inline constexpr auto FreezeDate = Day("FreezeDate", Plain, "Дата на блокиране");
inline constexpr auto FinishDate = Day("FinishDate", Plain, "Дата на прекратяване");
inline constexpr auto AutomaticRenewal = Bit("AutomaticRenewal", Plain, "Автоматично подновяване");
/// In days; means something with automatic renewal only.
inline constexpr auto NoticePeriod = Int16("NoticePeriod", Plain, "Срок за предизвестие");
/// Derived by the server from the dates, on the day asked.
inline constexpr auto Active = Int32("Active", Joined, "Активен");
inline constexpr auto KindContract = Int16("KindContract", Required, "Вид договор");
inline constexpr auto KindContractName = String("KindContractName", 40, Joined, "Име");
inline constexpr auto KindContractName2 = String("KindContractName2", 40, Joined, "Име");
inline constexpr auto CapExPlanCode =
    Int32("CapExPlanCode", Plain, "Код в плана за капиталови разходи");
inline constexpr auto DeliveryTimes = Memo("DeliveryTimes", Plain, "Срокове за доставка");
inline constexpr auto DeliveryTimes2 = Memo("DeliveryTimes2", Plain, "Срокове за доставка");
inline constexpr auto MinOrderDelivery =
    Memo("MinOrderDelivery", Plain, "Минимално количество за доставка");
inline constexpr auto MinOrderDelivery2 =
    Memo("MinOrderDelivery2", Plain, "Минимално количество за доставка");
/// Purchases under the contract go through supplier orders.
inline constexpr auto ManifacOrder = Bit("ManifacOrder", Plain, "Поръчка за производство");
inline constexpr auto SupplyRequestDescr =
    Int16("SupplyRequestDescr", Plain, "Описание на поръчка");
inline constexpr auto SupplyRequestDescrName = String("SupplyRequestDescrName", 40, Joined, "Име");
inline constexpr auto SupplyRequestDescrName2 =
    String("SupplyRequestDescrName2", 40, Joined, "Име");
inline constexpr auto SupplyArtVchDescr =
    Int16("SupplyArtVchDescr", Plain, "Описание на стокова разписка");
inline constexpr auto SupplyArtVchDescrName = String("SupplyArtVchDescrName", 40, Joined, "Име");
inline constexpr auto SupplyArtVchDescrName2 = String("SupplyArtVchDescrName2", 40, Joined, "Име");
inline constexpr auto ToSupplyArtVchDescr =
    Int16("ToSupplyArtVchDescr", Plain, "Описание на разлики по стокова разписка");
inline constexpr auto ToSupplyArtVchDescrName =
    String("ToSupplyArtVchDescrName", 40, Joined, "Име");
inline constexpr auto ToSupplyArtVchDescrName2 =
    String("ToSupplyArtVchDescrName2", 40, Joined, "Име");
inline constexpr auto SupplyInvoiceDescr =
    Int16("SupplyInvoiceDescr", Plain, "Описание на фактура");
inline constexpr auto SupplyInvoiceDescrName = String("SupplyInvoiceDescrName", 40, Joined, "Име");
inline constexpr auto SupplyInvoiceDescrName2 =
    String("SupplyInvoiceDescrName2", 40, Joined, "Име");
inline constexpr auto SuppAdvInvDescr =
    Int16("SuppAdvInvDescr", Plain, "Описание на фактура за авансово плащане");
inline constexpr auto SuppAdvInvDescrName = String("SuppAdvInvDescrName", 40, Joined, "Име");
inline constexpr auto SuppAdvInvDescrName2 = String("SuppAdvInvDescrName2", 40, Joined, "Име");
inline constexpr auto SuppDNoticeDescr =
    Int16("SuppDNoticeDescr", Plain, "Описание на дебитно известие");
inline constexpr auto SuppDNoticeDescrName = String("SuppDNoticeDescrName", 40, Joined, "Име");
inline constexpr auto SuppDNoticeDescrName2 = String("SuppDNoticeDescrName2", 40, Joined, "Име");
inline constexpr auto SuppCNoticeDescr =
    Int16("SuppCNoticeDescr", Plain, "Описание на кредитно известие");
inline constexpr auto SuppCNoticeDescrName = String("SuppCNoticeDescrName", 40, Joined, "Име");
inline constexpr auto SuppCNoticeDescrName2 = String("SuppCNoticeDescrName2", 40, Joined, "Име");
inline constexpr auto KindSupplyList = Int16("KindSupplyList", Plain, "Вид списък за доставка");
inline constexpr auto KindSupplyListName = String("KindSupplyListName", 40, Joined, "Име");
inline constexpr auto KindSupplyListName2 = String("KindSupplyListName2", 40, Joined, "Име");
inline constexpr auto KindSupplyChoice = Byte("KindSupplyChoice", Required, "Начин на избор");
inline constexpr auto InclTransportInPrice =
    Bit("InclTransportInPrice", Plain, "Включен транспорт в цената");
inline constexpr auto UseQuantityRabat =
    Bit("UseQuantityRabat", Plain, "Ползване на количествена отстъпка");
inline constexpr auto SuppElKindPayment = Code19("SuppElKindPayment", Plain, "Начин на плащане");
inline constexpr auto SuppElKindPaymentName = String("SuppElKindPaymentName", 30, Joined, "Име");
inline constexpr auto SuppElKindPaymentName2 = String("SuppElKindPaymentName2", 30, Joined, "Име");
inline constexpr auto MaxTermOfPayment =
    Byte("MaxTermOfPayment", Plain, "Максимален срок за плащане (дни)");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Required | Stamped, "Създаден от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Required | Stamped, "Създаден на");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Коригиран от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Коригиран на");

inline constexpr auto dspSuppliesContracts = Writes(
    "dspSuppliesContracts", "SuppliesContracts", IdNumber, Supplier, SupplierName, SupplierName2,
    ContractNumber, ShortDescription, ShortDescription2, Description, Description2, ContractDate,
    FreezeDate, FinishDate, AutomaticRenewal, NoticePeriod, Active, KindContract, KindContractName,
    KindContractName2, CapExPlanCode, DeliveryTimes, DeliveryTimes2, MinOrderDelivery,
    MinOrderDelivery2, ManifacOrder, SupplyRequestDescr, SupplyRequestDescrName,
    SupplyRequestDescrName2, SupplyArtVchDescr, SupplyArtVchDescrName, SupplyArtVchDescrName2,
    ToSupplyArtVchDescr, ToSupplyArtVchDescrName, ToSupplyArtVchDescrName2, SupplyInvoiceDescr,
    SupplyInvoiceDescrName, SupplyInvoiceDescrName2, SuppAdvInvDescr, SuppAdvInvDescrName,
    SuppAdvInvDescrName2, SuppDNoticeDescr, SuppDNoticeDescrName, SuppDNoticeDescrName2,
    SuppCNoticeDescr, SuppCNoticeDescrName, SuppCNoticeDescrName2, KindSupplyList,
    KindSupplyListName, KindSupplyListName2, KindSupplyChoice, InclTransportInPrice,
    UseQuantityRabat, SuppElKindPayment, SuppElKindPaymentName, SuppElKindPaymentName2,
    MaxTermOfPayment, CreatedFrom, CreatedOn, AmendFrom, AmendOn);

/// Contracts of these kinds name a kind of supply list: ОСМ and goods, as the parameters set them.
/// An unset parameter, or no kind, is 0.
constexpr bool NeedsSupplyList(std::int64_t kindContract, std::int64_t bulk, std::int64_t wares) {
  return kindContract != 0 && (kindContract == bulk || kindContract == wares);
}

/// Rows behind codes of a loaded contract whose names or terms its own row does not bring.
namespace own_rows {

inline constexpr auto Partner = Code19("Partner", Key, "Код");
inline constexpr auto PlanLine = Int32("Code", Key, "Код");
inline constexpr auto Name = String("Name", 50, Plain, "Име");
inline constexpr auto Name2 = String("Name2", 50, Plain, "Име 2");
/// The supplier's kind of invoice: 1 or 2, which decides the notices offered.
inline constexpr auto KindInvoice = Byte("KindInvoice", Plain, "Вид фактура");

inline constexpr auto kSupplier = Reads("", Partner, Name, Name2, KindInvoice);
inline constexpr auto kPlanLine = Reads("", PlanLine, Name, Name2);

}  // namespace own_rows

/// Operations "GetRec": positions of the question.
namespace get_rec {
inline constexpr std::string_view kName = "GetRec";
enum Ask : std::uint8_t { kOperation, kNav, kStep, kId, kAskSize };
/// Positions of the answer; behind the contract the rows of own_rows, empty where the code is Null.
enum Tell : std::uint8_t { kCode, kFound, kContract, kSupplierRow, kPlanRow, kTellSize };
}  // namespace get_rec

}  // namespace orvane::supplies_contract
