#include "server/orders/order_head.h"

#include "contract/supplier_order.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;
namespace field = supplier_order::head;
namespace det = supplier_order::det;
namespace adm = supplier_order::adm;

constexpr FieldDef kHeadFields[] = {
    field::IdNumber,
    field::DocumentDate,
    field::Description,
    field::Description2,
    field::Rationale,
    field::Rationale2,
    field::FromDate,
    field::ToDate,
    field::CostCenter,
    field::KindSupply,
    field::Supplier,
    field::ContractId,
    field::KindCurrency,
    field::IncTranspInPrice,
    field::RateOfExchange,
    field::SumManifacOrder,
    field::CurrSumManifacOrder,
    field::Notifier,
    field::CreatedFrom,
    field::CreatedOn,
    field::AmendFrom,
    field::AmendOn,
    field::Status,
    field::AnnulFrom,
    field::AnnulOn,
    field::PrevYearId,
    stored::kSendingNumber,
    stored::kSentFrom,
    stored::kSentOn,
};
/// A row's amount is the server's: no screen shows it, and the head's sums are made of it.
constexpr FieldDef kRowFields[] = {
    det::SuppManOrderId, det::RowNumber,    det::SerialNumber, det::Measure,
    det::Quantity,       det::RowNumerator, det::Numerator,    det::InventoryId,
    det::ServiceCode,    det::Remarks,      det::Remarks2,     Amount(stored::kRowAmount),
};
constexpr FieldDef kApprovalFields[] = {
    adm::SuppManOrderId, adm::ConfirmationLevel, adm::SendingNumber, Byte("Approval"),
    adm::Status,         adm::ConfirmedFrom,     adm::ConfermedOn,   adm::UnConfirmedFrom,
    adm::UnConfirmedOn,  stored::kOnBehalfOf,    adm::ApprovalNote,
};

constexpr std::string_view kWithdrawFirst = "Първо одобряващите да оттеглят решенията си.";
constexpr WayOut kWaysOut[] = {
    {Rejected, "Въведете нова поръчка."},   {ForApproval, "Първо я върнете за корекция."},
    {PartlyApproved, kWithdrawFirst},       {Approved, kWithdrawFirst},
    {Fulfilling, "Въведете нова поръчка."}, {Completed, "Първо премахнете приключването."},
};

constexpr StoredDocument kStored{
    .kind = DocumentKind::SupplierOrder,
    .name = "Поръчка за производство",
    .within = "поръчка за производство",
    .itself = "поръчката",
    .one = "една поръчка за производство",
    .annulled = "анулирана",
    .sent = "изпратена",
    .it = "я",
    .waysOut = kWaysOut,
    .seen = kSeenOrders,
    .head = {"", field::dspSuppManifacOrder.table, kHeadFields},
    .rows = {"", det::dspSuppManOrderDet.table, kRowFields},
    .approvals = {"", adm::dspSuppManOrderAdmin.table, kApprovalFields},
    .currencySum = field::CurrSumManifacOrder.name,
    .nationalSum = field::SumManifacOrder.name,
    .ofDocument = "SuppManOrderId = :Id",
    .partId = det::SuppManOrderId.name,
    .moves = order::kMoves,
    .ownersOnly = true,
    .keepsDecider = true,
};

}  // namespace

const StoredDocument& StoredOrder() {
  return kStored;
}

}  // namespace orvane::server
