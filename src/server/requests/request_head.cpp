#include "server/requests/request_head.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;
namespace field = purchase_request::head;
namespace adm = purchase_request::adm;

constexpr FieldDef kHeadFields[] = {
    field::POIdNumber,       field::POVersion,
    field::DocumentDate,     field::Description,
    field::Description2,     field::Rationale,
    field::Rationale2,       field::CostCenter,
    field::Notifier,         field::Supplier,
    field::ContractId,       field::KindSupply,
    field::IncTranspInPrice, field::KindCurrency,
    field::RateOfExchange,   field::CurrSumPurchaseOrder,
    field::SumPurchaseOrder, field::CreatedFrom,
    field::CreatedOn,        field::AmendFrom,
    field::AmendOn,          field::Status,
    field::AnnulFrom,        field::AnnulOn,
    field::OldVersion,       stored::kSendingNumber,
    stored::kSentFrom,       stored::kSentOn,
    kRequestServiceEmployee,
};
constexpr FieldDef kApprovalFields[] = {
    adm::PurchaseOrderId, adm::PurchaseOrderVer, adm::ConfirmationLevel, adm::SendingNumber,
    adm::Approval,        adm::Status,           adm::ConfirmedFrom,     adm::ConfermedOn,
    adm::UnConfirmedFrom, adm::UnConfirmedOn,    stored::kOnBehalfOf,    adm::ApprovalNote};

constexpr WayOut kWaysOut[] = {
    {Rejected, "Направете нова версия или копие."}, {ForApproval, "Първо го върнете за корекция."},
    {PartlyApproved, "Направете нова версия."},     {Approved, "Направете нова версия."},
    {Fulfilling, "Направете ново искане."},         {Completed, "Първо премахнете приключването."},
};

constexpr StoredDocument kStored{
    .kind = DocumentKind::PurchaseRequest,
    .name = "Искане за покупка",
    .within = "искане за покупка",
    .itself = "искането",
    .one = "едно искане",
    .annulled = "анулирано",
    .sent = "изпратено",
    .it = "го",
    .waysOut = kWaysOut,
    .seen = kSeenRequests,
    .head = {"", "PurchaseOrder", kHeadFields},
    .rows = request::det::dspPurchaseOrderDet,
    .approvals = {"", "PurchaseOrderAdm", kApprovalFields},
    .currencySum = field::CurrSumPurchaseOrder.name,
    .nationalSum = field::SumPurchaseOrder.name,
    .ofDocument = "PurchaseOrderId = :Id and PurchaseOrderVer = :Version",
    .partId = request::det::PurchaseOrderId.name,
    .partVersion = request::det::PurchaseOrderVer.name,
    .moves = request::kMoves,
};

}  // namespace

const StoredDocument& StoredRequest() {
  return kStored;
}

std::string NameOf(DocumentKey request) {
  return NameOf(kStored, request);
}

}  // namespace orvane::server
