#include "server/documents/document_steps.h"
#include "server/documents/server_writes.h"
#include "server/documents/settings.h"
#include "server/requests/request_apply.h"
#include "server/requests/request_head.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace del = purchase_request::del;
namespace pay = purchase_request::pay;

constexpr int kMostPlanRows = 255;

/// Locks the head and reads what `more` asks; refuses when nothing may be changed.
Answer<std::vector<DataPacket>, Setback> LockEditable(WriteContext& context, DocumentKey key,
                                                      std::span<const Statement> more) {
  std::vector<Statement> statements = {LockHead(context.work, StoredRequest(), key)};
  statements.insert(statements.end(), more.begin(), more.end());
  auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "locking a request");
  const auto head = ReadHead(StoredRequest(), packets->front());
  if (auto refusal = WhyNotEditable(context.work, StoredRequest(), head, key))
    return Refusal(*std::move(refusal));
  packets->erase(packets->begin());
  return std::move(*packets);
}

void ImposeOnInsert(PreparedChange& change, std::string_view column, const Variant& value) {
  if (change.change.kind == ChangeKind::Insert) {
    Impose(change, {}, column, value);
    return;
  }
  Drop(change.change.after, column);
}

/// A check box left alone is off.
void ImposeFlag(PreparedChange& change, std::string_view column) {
  const Variant* sent = FindValue(change.change.after, column);
  const bool absent = change.change.kind == ChangeKind::Insert && !sent;
  if (absent || (sent && sent->IsNull())) {
    SetValue(change.change.after, column, false);
    SetValue(change.filled, column, false);
  }
}

/// Whether a planned date was delivered is the deliveries' to say.
Answer<Done, Setback> BeforeSchedule(WriteContext& context, std::span<PreparedChange> changes) {
  const auto key = DocumentOf(StoredRequest(), changes);
  if (!key) return key.GetFailure();
  const auto locked = LockEditable(context, *key, {});
  if (!locked) return locked.GetFailure();
  for (PreparedChange& change : changes)
    ImposeOnInsert(change, del::Delivered.name, false);
  return Done{};
}

Answer<Done, Setback> BeforePlan(WriteContext& context, std::span<PreparedChange> changes) {
  const auto key = DocumentOf(StoredRequest(), changes);
  if (!key) return key.GetFailure();
  const Statement more[] = {
      SelectSettings(),
      Named("select coalesce(max(RowNumber), 0) from PurchaseOrderPayPl"
            " where PurchaseOrderId = :Id and PurchaseOrderVer = :Version",
            {{"Id", key->id}, {"Version", key->version}}, {{"Last", ValueKind::Int32, 0}})};
  const auto read = LockEditable(context, *key, more);
  if (!read) return read.GetFailure();
  const DocumentSettings settings = ReadSettings((*read)[0]);
  std::int64_t last = (*read)[1].At(0, "Last").AsInt().value_or(0);
  for (PreparedChange& change : changes) {
    ImposeOnInsert(change, pay::SupplyInvoiceId.name, Variant());
    if (change.change.kind == ChangeKind::Delete) continue;
    ImposeFlag(change, pay::AdvancePayment.name);
    ImposeFlag(change, pay::AdvanceStatement.name);
    if (const Variant* sum = FindValue(change.change.after, pay::SumWithVAT.name)) {
      const auto rounded = sum->AsDecimal()
                               .value_or(Decimal())
                               .Times(Decimal(1, 0))
                               .RoundedHalfUp(settings.amountDecimals);
      Impose(change, {}, pay::SumWithVAT.name, *rounded->AtScale(4));
    }
    if (change.change.kind != ChangeKind::Insert) continue;
    if (++last > kMostPlanRows) {
      return Refusal(Refused("Планът за плащане на " + NameOf(*key) + " има вече " +
                             std::to_string(kMostPlanRows) + " реда. Обединете плащания."));
    }
    Impose(change, {}, pay::RowNumber.name, last);
    SetValue(change.filled, pay::RNLocate.name, last);
  }
  return Done{};
}

constexpr std::string_view kScheduleKey[] = {"PurchaseOrderId", "PurchaseOrderVer", "DeliveryDate"};
constexpr UniqueRule kScheduleUnique[] = {
    {kScheduleKey,
     "Искане за покупка {PurchaseOrderId}, версия {PurchaseOrderVer}, вече има доставка на "
     "{DeliveryDate}. Изберете друга дата."},
};

}  // namespace

WriteRules RequestScheduleRules() {
  return {.unique = kScheduleUnique, .beforeWrite = &BeforeSchedule};
}

WriteRules RequestPlanRules() {
  return {.beforeWrite = &BeforePlan};
}

}  // namespace orvane::server
