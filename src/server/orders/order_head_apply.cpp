#include "contract/supplier_order.h"
#include "server/documents/document_head_apply.h"
#include "server/documents/document_steps.h"
#include "server/orders/order_apply.h"
#include "server/orders/order_head.h"
#include "server/orders/order_moves.h"
#include "server/providers/row_checks.h"

namespace orvane::server {
namespace {

namespace field = supplier_order::head;

constexpr std::string_view kOwnColumns[] = {
    field::DocumentDate.name, field::Description.name,    field::Description2.name,
    field::Rationale.name,    field::Rationale2.name,     field::FromDate.name,
    field::ToDate.name,       field::CostCenter.name,     field::KindSupply.name,
    field::Supplier.name,     field::ContractId.name,     field::IncTranspInPrice.name,
    field::KindCurrency.name, field::RateOfExchange.name, field::Notifier.name,
};
/// Orders are not carried over from one year to the next.
constexpr std::string_view kServerColumns[] = {field::PrevYearId.name};

constexpr RangeRule kRanges[] = {
    {field::IncTranspInPrice, 1, 2,
     "Транспортът е включен в цената или не е. Изберете „Не“ (1) или „Да“ (2)."},
};

std::optional<Failure> WhyRefused(const HeadFacts& facts, const Change& change,
                                  const NamedValues& present) {
  const auto value = [&](const FieldDef& column) {
    return ValueAfter(change, present, column.name);
  };
  const DocumentSettings& settings = facts.settings;
  const auto kind = value(field::KindSupply).AsInt();
  if (Changes(change, {field::KindSupply.name}) && kind != settings.bulkKind &&
      kind != settings.waresKind) {
    return Refused(
        "Поръчка за производство се прави само за вид покупка „ОСМ“ или „Стоки“. Изберете един от "
        "двата.");
  }
  if (Changes(change, {field::Supplier.name}) && !facts.isSupplier) {
    return Refused("Контрагент " + value(field::Supplier).ToText() +
                   " не е доставчик. Изберете друг доставчик.");
  }
  const auto from = value(field::FromDate).AsDate();
  const auto to = value(field::ToDate).AsDate();
  if (from && to && *from > *to) {
    return Refused(
        "Периодът на поръчката свършва, преди да започне. Въведете „До дата“ не "
        "по-рано от „От дата“.");
  }
  const Variant contract = value(field::ContractId);
  if (Changes(change, {field::ContractId.name}) && facts.hasContract &&
      !facts.contractThroughOrders) {
    return Refused("По договор " + contract.ToText() +
                   " не се прави поръчка за производство. Изберете друг договор.");
  }
  return std::nullopt;
}

HeadSteps Steps() {
  static const NamedValue kEntered[] = {{std::string(field::PrevYearId.name), Variant()}};
  return {.document = StoredOrder(),
          .ownColumns = kOwnColumns,
          .serverColumns = kServerColumns,
          .entered = kEntered,
          .identifierIsOwnerData = false,
          .annulledStatus = Annulled,
          .refuses = &WhyRefused,
          .keeps = nullptr,
          .moved = &OrderMoved};
}

Answer<Done, Setback> BeforeHead(WriteContext& context, std::span<PreparedChange> changes) {
  const auto within = WithinRanges(changes, kRanges);
  if (!within) return within;
  return BeforeDocumentHead(Steps(), context, changes);
}

Answer<Done, Setback> AfterHead(WriteContext& context, std::span<PreparedChange>) {
  return AfterDocumentHead(Steps(), context);
}

constexpr UsedByRule kUsedBy[] = {
    {"IdNumber", "SuppManOrderDet", "SuppManOrderId",
     "Поръчка за производство {IdNumber} има редове. Първо ги изтрийте."},
    {"IdNumber", "PurchaseOrderDet", "SuppManifacOrderId",
     "По поръчка за производство {IdNumber} е искане за покупка {used}. Първо го изтрийте.",
     "PurchaseOrderId"},
};

}  // namespace

WriteRules OrderHeadRules() {
  return {.references = kHeadReferences,
          .usedBy = kUsedBy,
          .beforeWrite = &BeforeHead,
          .afterWrite = &AfterHead,
          .right = &DocumentHeadRight,
          .word = &DocumentHeadWord};
}

}  // namespace orvane::server
