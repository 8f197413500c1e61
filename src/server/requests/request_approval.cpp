#include "server/requests/request_approval.h"

#include "server/approval/levels.h"
#include "server/documents/document_approval.h"
#include "server/documents/document_sending.h"
#include "server/documents/document_steps.h"
#include "server/documents/rates.h"
#include "server/documents/values.h"
#include "server/requests/request_apply.h"
#include "server/requests/request_head.h"
#include "server/requests/request_moves.h"
#include "server/requests/request_rows.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr std::string_view kOrdersNamed =
    "{order} in (select d.SuppManifacOrderId from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version and d.SuppManifacOrderId is not null)";
/// Everything that a sending looks at.
struct SendingRead {
  StoredHead head;
  std::optional<SentDocument> sent;
  std::map<std::int64_t, OrderFacts> orders;
  std::int64_t plannedDates = 0;
  std::optional<Decimal> bankRate;
  std::vector<LevelRow> levels;
  ApproversOfCostCenter approvers;
};

/// Fills `read`, into whose head the rest looks.
Answer<Done, Setback> ReadSending(WriteContext& context, DocumentKey key, SendingRead& read) {
  const StoredDocument& document = StoredRequest();
  const NamedValues params = KeyParams(key);
  const Statement locking[] = {LockHead(context.work, document, key), SelectSettings()};
  const auto first = context.transaction.QueryAll(locking);
  if (!first) return ToSetback(first.GetFailure(), "reading a request that is sent");
  const auto head = ReadHead(document, (*first)[0]);
  if (!head) return Refusal(*WhyClosed(document, head, key));
  read.head = *head;

  std::vector<Statement> statements = SelectSent(context.work, document, *head);
  statements.push_back(
      Named("select count(*) from PurchaseOrderDel where PurchaseOrderId = :Id"
            " and PurchaseOrderVer = :Version",
            params, {{"Dates", ValueKind::Code, 0}}));
  statements.push_back(
      SelectRate(ReadSettings((*first)[1]), head->kindCurrency, head->documentDate));
  statements.push_back(SelectLevels(DocumentKind::PurchaseRequest, head->kindSupply));
  for (auto& part : {SelectOrders(context.work, std::string(kOrdersNamed), key, params),
                     SelectApproversOf(document, params, context.work.Today())})
    statements.insert(statements.end(), part.begin(), part.end());
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what a sending needs");
  read.sent.emplace(ReadSent(document, read.head, *packets));
  const auto behind = std::span(*packets).subspan(kSentStatements);
  read.plannedDates = behind[0].At(0, "Dates").AsInt().value_or(0);
  if (behind[1].rowCount > 0) read.bankRate = behind[1].At(0, 0).AsDecimal();
  read.levels = ReadLevels(behind[2]);
  read.orders = ReadOrders(behind[3], behind[4]);
  read.approvers = ReadApprovers(behind[5], behind[6]);
  return Done{};
}

std::optional<Failure> WhyNotWhole(const SendingRead& read) {
  if (!read.sent->rows.empty() && read.plannedDates == 0) {
    return Refused(NameOf(read.head.key) + " няма планирана дата на доставка. Въведете поне една.");
  }
  if (auto refusal = WhyNotSent(*read.sent)) return refusal;
  return WhyOrdersRefuse(read.head, read.sent->rows, read.orders, read.sent->entries);
}

/// The sum by which levels are matched: in national currency at the bank's rate on the request's
/// day, at its own only when the bank has none.
std::optional<Decimal> SumForLevels(const SendingRead& read) {
  const DocumentSettings& settings = read.sent->facts.settings;
  if (read.head.kindCurrency == settings.nationalCurrency) return read.head.currSum;
  return InNational(read.head.currSum, read.bankRate.value_or(read.head.rate),
                    settings.amountDecimals);
}

}  // namespace

Answer<Done, Setback> SendRequest(WriteContext& context, DocumentKey key) {
  SendingRead read;
  const auto found = ReadSending(context, key, read);
  if (!found) return found;
  if (auto refusal = WhyNotWhole(read)) return Refusal(*std::move(refusal));
  const auto sum = SumForLevels(read);
  if (!sum) return Refusal(TooGreat(NameOf(key) + ": сумата"));
  const DocumentOwners owners{read.head.createdFrom, read.head.notifier};
  const auto plan =
      PlanApproval({NameOf(key), DocumentKind::PurchaseRequest, read.head.kindSupply, *sum,
                    read.levels, read.approvers, WhoMayNotDecide(context.work, owners)});
  if (!plan) return Refusal(plan.GetFailure());

  const bool byService = plan->empty();
  NamedValues more;
  if (byService) {
    const auto& service = read.sent->facts.settings.serviceEmployee;
    more.push_back(
        {std::string(kRequestServiceEmployee.name), service ? Variant(*service) : Variant()});
  }
  ServerWrites writes(context.work);
  AddSending(writes, context.work, StoredRequest(), read.head, *plan, read.approvers,
             std::move(more));
  const auto written = writes.CarryOut(context.transaction, "sending a request");
  if (!written) return written;
  if (byService) return WriteRequestStatus(context, read.head, Approved);
  return SettleOrders(context, key);
}

// --- decisions -----------------------------------------------------------------------------------

namespace {

/// Something later stands on an approved request.
Answer<Done, Setback> CheckNothingStandsOn(WriteContext& context, const StoredHead& head) {
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
Answer<Done, Setback> CheckOrdersStillLeave(WriteContext& context, const StoredHead& head) {
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
  return {.beforeWrite = &BeforeRequestDecisions,
          .afterWrite = &AfterRequestDecisions,
          .decisions = true};
}

}  // namespace orvane::server
