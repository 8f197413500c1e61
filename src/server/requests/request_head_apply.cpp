#include "server/documents/document_head_apply.h"
#include "server/documents/document_steps.h"
#include "server/requests/request_apply.h"
#include "server/requests/request_head.h"
#include "server/requests/request_moves.h"

namespace orvane::server {
namespace {

namespace field = purchase_request::head;

constexpr std::string_view kOwnColumns[] = {
    field::CostCenter.name,       field::Notifier.name,     field::Supplier.name,
    field::ContractId.name,       field::KindSupply.name,   field::KindCurrency.name,
    field::IncTranspInPrice.name, field::DocumentDate.name, field::RateOfExchange.name,
    field::Description.name,      field::Description2.name, field::Rationale.name,
    field::Rationale2.name,
};
constexpr std::string_view kServerColumns[] = {field::OldVersion.name};

std::optional<Failure> WhyKept(DocumentKey key) {
  if (key.version <= 1) return std::nullopt;
  return Refused(NameOf(key) +
                 " не се изтрива: тя замества предишната версия. Анулирайте искането.");
}

HeadSteps Steps() {
  static const NamedValue kEntered[] = {{std::string(field::POVersion.name), 1},
                                        {std::string(field::OldVersion.name), false}};
  return {.document = StoredRequest(),
          .ownColumns = kOwnColumns,
          .serverColumns = kServerColumns,
          .entered = kEntered,
          .annulledStatus = {},
          .refuses = nullptr,
          .keeps = &WhyKept,
          .moved = &RequestMoved};
}

Answer<Done, Setback> BeforeHead(WriteContext& context, std::span<PreparedChange> changes) {
  return BeforeDocumentHead(Steps(), context, changes);
}

Answer<Done, Setback> AfterHead(WriteContext& context, std::span<PreparedChange>) {
  return AfterDocumentHead(Steps(), context);
}

constexpr UsedByRule kUsedBy[] = {
    {"POIdNumber", "PurchaseOrderDet", "PurchaseOrderId",
     "Искане за покупка {POIdNumber} има редове. Първо ги изтрийте."},
    {"POIdNumber", "PurchaseOrderDel", "PurchaseOrderId",
     "Искане за покупка {POIdNumber} има планирани доставки. Първо ги изтрийте."},
    {"POIdNumber", "PurchaseOrderPayPl", "PurchaseOrderId",
     "Искане за покупка {POIdNumber} има план за плащане. Първо го изтрийте."},
};

}  // namespace

WriteRules RequestHeadRules() {
  return {.references = kHeadReferences,
          .usedBy = kUsedBy,
          .beforeWrite = &BeforeHead,
          .afterWrite = &AfterHead,
          .right = &DocumentHeadRight,
          .word = &DocumentHeadWord};
}

}  // namespace orvane::server
