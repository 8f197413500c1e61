#include "server/documents/request_approval.h"

#include "server/approval/levels.h"
#include "server/documents/document_approval.h"
#include "server/documents/document_steps.h"
#include "server/documents/named_statement.h"
#include "server/documents/rates.h"
#include "server/documents/request_apply.h"
#include "server/documents/request_head.h"
#include "server/documents/request_moves.h"
#include "server/documents/request_rows.h"
#include "server/documents/values.h"

namespace orvane {
namespace {

constexpr std::string_view kOrdersNamed =
    "{order} in (select d.SuppManifacOrderId from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version and d.SuppManifacOrderId is not null)";
/// Everything that a sending looks at.
struct SendingRead {
  DocumentHead head;
  DocumentSettings settings;
  std::vector<DocumentRow> rows;
  std::map<std::int64_t, EntryFacts> entries;
  std::map<std::int64_t, OrderFacts> orders;
  std::int64_t plannedDates = 0;
  std::optional<Decimal> bankRate;
  std::vector<LevelRow> levels;
  ApproversOfCostCenter approvers;
};

Answer<SendingRead, Setback> ReadSending(WriteContext& context, DocumentKey key) {
  const NamedValues params = KeyParams(key);
  const Statement locking[] = {LockHead(context.work, StoredRequest(), key), SelectSettings()};
  const auto first = context.transaction.QueryAll(locking);
  if (!first) return ToSetback(first.GetFailure(), "reading a request that is sent");
  const auto head = ReadHead(StoredRequest(), (*first)[0]);
  if (!head) return Refusal(*WhyClosed(StoredRequest(), head, key));
  SendingRead read;
  read.head = *head;
  read.settings = ReadSettings((*first)[1]);

  std::vector<Statement> statements = {
      SelectPart(StoredRequest(), StoredRequest().rows, key),
      Named("select count(*) from PurchaseOrderDel where PurchaseOrderId = :Id"
            " and PurchaseOrderVer = :Version",
            params, {{"Dates", ValueKind::Code, 0}}),
      SelectRate(read.settings, head->kindCurrency, head->documentDate),
      SelectLevels(DocumentKind::PurchaseRequest, head->kindSupply)};
  for (auto& part :
       {SelectEntries(EntriesOf(StoredRequest(), EntriesNamed(StoredRequest()), params)),
        SelectOrders(context.work, std::string(kOrdersNamed), key, params),
        SelectApproversOf(StoredRequest(), params, context.work.Today())})
    statements.insert(statements.end(), part.begin(), part.end());
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what a sending needs");
  read.rows = ReadDocumentRows((*packets)[0]);
  read.plannedDates = (*packets)[1].At(0, "Dates").AsInt().value_or(0);
  if ((*packets)[2].rowCount > 0) read.bankRate = (*packets)[2].At(0, 0).AsDecimal();
  read.levels = ReadLevels((*packets)[3]);
  read.entries = ReadEntries((*packets)[4], (*packets)[5]);
  read.orders = ReadOrders((*packets)[6], (*packets)[7]);
  read.approvers = ReadApprovers((*packets)[8], (*packets)[9]);
  return read;
}

std::optional<Failure> WhyNotWhole(const SendingRead& read) {
  const std::string name = NameOf(read.head.key);
  if (read.rows.empty()) {
    return Refused(name + " няма редове. Въведете поне един ред с материал или услуга.");
  }
  if (read.plannedDates == 0) {
    return Refused(name + " няма планирана дата на доставка. Въведете поне една.");
  }
  for (const DocumentRow& row : read.rows) {
    if (!read.settings.IsPriced(read.head.kindSupply)) break;
    const auto entry = read.entries.find(row.serial);
    if (entry != read.entries.end() && entry->second.Price(read.settings)) continue;
    return Refused(name + ", ред " + std::to_string(row.number) + ": пореден номер " +
                   std::to_string(row.serial) +
                   " няма цена към датата на документа. Въведете цена "
                   "в списъка за доставка и запишете реда отново.");
  }
  return WhyOrdersRefuse(read.head, read.rows, read.orders, read.entries);
}

/// The sum by which levels are matched: in national currency at the bank's rate on the request's
/// day, at its own only when the bank has none.
std::optional<Decimal> SumForLevels(const SendingRead& read) {
  if (read.head.kindCurrency == read.settings.nationalCurrency) return read.head.currSum;
  return InNational(read.head.currSum, read.bankRate.value_or(read.head.rate),
                    read.settings.amountDecimals);
}

}  // namespace

Answer<Done, Setback> SendRequest(WriteContext& context, DocumentKey key) {
  auto read = ReadSending(context, key);
  if (!read) return read.GetFailure();
  if (auto refusal = WhyNotWhole(*read)) return Refusal(*std::move(refusal));
  const auto sum = SumForLevels(*read);
  if (!sum) return Refusal(TooGreat(NameOf(key) + ": сумата"));
  const auto plan = PlanApproval({NameOf(key), DocumentKind::PurchaseRequest, read->head.kindSupply,
                                  *sum, read->levels, read->approvers});
  if (!plan) return Refusal(plan.GetFailure());

  const bool byService = plan->empty();
  NamedValues more;
  if (byService) {
    const auto& service = read->settings.serviceEmployee;
    more.push_back(
        {std::string(kRequestServiceEmployee.name), service ? Variant(*service) : Variant()});
  }
  ServerWrites writes(context.work);
  AddSending(writes, context.work, StoredRequest(), read->head, *plan, read->approvers,
             std::move(more));
  const auto written = writes.CarryOut(context.transaction, "sending a request");
  if (!written) return written;
  if (byService) return WriteRequestStatus(context, read->head, Approved);
  return SettleOrders(context, key);
}

// --- decisions -----------------------------------------------------------------------------------

namespace {

/// Something later stands on an approved request.
Answer<Done, Setback> CheckNothingStandsOn(WriteContext& context, const DocumentHead& head) {
  const auto found = context.transaction.Query(
      Named("select coalesce(min(IdNumber), 0) from Deliveries where PurchaseOrderId = :Id"
            " and PurchaseOrderVer = :Version and AnnulOn is null",
            KeyParams(head.key), {{"IdNumber", ValueKind::Int32, 0}}));
  if (!found) return ToSetback(found.GetFailure(), "looking for deliveries of a request");
  const std::int64_t delivery = found->At(0, 0).AsInt().value_or(0);
  if (delivery == 0) return Done{};
  return Refusal(Refused("По " + NameOf(head.key) + " има доставка " + std::to_string(delivery) +
                         ". Първо анулирайте доставката."));
}

/// The quantities of a request that was rejected are free for others until it comes back.
Answer<Done, Setback> CheckOrdersStillLeave(WriteContext& context, const DocumentHead& head) {
  const NamedValues params = KeyParams(head.key);
  std::vector<Statement> statements = {SelectPart(StoredRequest(), StoredRequest().rows, head.key)};
  for (auto& part :
       {SelectEntries(EntriesOf(StoredRequest(), EntriesNamed(StoredRequest()), params)),
        SelectOrders(context.work, std::string(kOrdersNamed), head.key, params)})
    statements.insert(statements.end(), part.begin(), part.end());
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what orders leave");
  const auto refusal = WhyOrdersRefuse(head, ReadDocumentRows((*packets)[0]),
                                       ReadOrders((*packets)[3], (*packets)[4]),
                                       ReadEntries((*packets)[1], (*packets)[2]));
  if (refusal) return Refusal(*refusal);
  return Done{};
}

ApprovalSteps Steps() {
  return {StoredRequest(), &CheckNothingStandsOn, &CheckOrdersStillLeave, &WriteRequestStatus};
}

Answer<Done, Setback> BeforeRequestDecisions(WriteContext& context,
                                             std::span<PreparedChange> changes) {
  return BeforeDecisions(Steps(), context, changes);
}

Answer<Done, Setback> AfterRequestDecisions(WriteContext& context, std::span<PreparedChange>) {
  return AfterDecisions(Steps(), context);
}

}  // namespace

Answer<Done, Setback> DecideOnRequest(WriteContext& context, DocumentKey key,
                                      const DecisionAsked& asked) {
  return Decide(Steps(), context, key, asked);
}

WriteRules RequestApprovalRules() {
  return {.beforeWrite = &BeforeRequestDecisions, .afterWrite = &AfterRequestDecisions};
}

}  // namespace orvane
