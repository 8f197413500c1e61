#include "contract/supplier_order.h"
#include "server/approval/levels.h"
#include "server/catalogue/order_remainder.h"
#include "server/documents/document_approval.h"
#include "server/documents/document_sending.h"
#include "server/documents/document_steps.h"
#include "server/orders/order_apply.h"
#include "server/orders/order_head.h"
#include "server/orders/order_moves.h"
#include "server/providers/server_class.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;

/// The first request that takes from the order; 0 when there is none.
Statement SelectRequestAgainst(DocumentKey key) {
  return Named(
      "select coalesce(min(p.POIdNumber), 0) " + Replaced(kTakenFromOrder, "{order}", ":Id"),
      KeyParams(key), {{"POIdNumber", ValueKind::Int32, 0}});
}

/// What an order is asked beside what all documents are.
std::optional<Failure> WhyOrderNotSent(const SentDocument& sent) {
  const std::string name = NameOf(sent.document, sent.head.key) + ": ";
  if (!sent.facts.isSupplier) {
    return Refused(name + "контрагентът вече не е доставчик. Изберете друг доставчик.");
  }
  if (sent.facts.hasContract && !sent.facts.contractThroughOrders) {
    return Refused(name +
                   "по договора вече не се прави поръчка за производство. Изберете друг договор.");
  }
  return std::nullopt;
}

/// Sends an order whose head has status 3. Its levels have no sums: every kind of supply has its
/// own, and an order of a kind without levels is not sent at all.
Answer<Done, Setback> SendOrder(WriteContext& context, DocumentKey key) {
  const StoredDocument& document = StoredOrder();
  const auto locked = context.transaction.Query(LockHead(context.work, document, key));
  if (!locked) return ToSetback(locked.GetFailure(), "reading an order that is sent");
  const auto head = ReadHead(document, *locked);
  if (!head) return Refusal(*WhyClosed(document, head, key));
  std::vector<Statement> statements = SelectSent(context.work, document, *head);
  statements.push_back(SelectLevels(document.kind, head->kindSupply));
  for (Statement& statement : SelectApproversOf(document, KeyParams(key), context.work.Today()))
    statements.push_back(std::move(statement));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what a sending needs");
  const SentDocument sent = ReadSent(document, *head, *packets);
  if (auto refusal = WhyNotSent(sent)) return Refusal(*std::move(refusal));
  if (auto refusal = WhyOrderNotSent(sent)) return Refusal(*std::move(refusal));
  const auto behind = std::span(*packets).subspan(kSentStatements);
  const std::vector<LevelRow> levels = ReadLevels(behind[0]);
  const ApproversOfCostCenter approvers = ReadApprovers(behind[1], behind[2]);
  const DocumentOwners owners{head->createdFrom, head->notifier};
  const auto plan = PlanApproval({NameOf(document, key), document.kind, head->kindSupply, Decimal(),
                                  levels, approvers, WhoMayNotDecide(context.work, owners)});
  if (!plan) return Refusal(plan.GetFailure());
  ServerWrites writes(context.work);
  AddSending(writes, context.work, document, *head, *plan, approvers);
  return writes.CarryOut(context.transaction, "sending an order");
}

Answer<Done, Setback> WriteOrderStatus(WriteContext& context, const StoredHead& head,
                                       DocumentStatus status) {
  const auto moved = WriteStatus(context, StoredOrder(), head, status);
  if (!moved) return moved.GetFailure();
  return Done{};
}

/// While it was completed, the last request against it may have gone.
Answer<Done, Setback> SettleReopened(WriteContext& context, DocumentKey key) {
  const Statement statements[] = {LockHead(context.work, StoredOrder(), key),
                                  SelectRequestAgainst(key)};
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "settling an order that was reopened");
  const auto head = ReadHead(StoredOrder(), (*packets)[0]);
  if (!head || (*packets)[1].At(0, 0).AsInt().value_or(0) != 0) return Done{};
  return WriteOrderStatus(context, *head, Approved);
}

/// A request that is sent makes its order 6 under the order's lock, and at 6 nothing is decided: an
/// approval on which a request stands is never asked to go.
ApprovalSteps Steps() {
  return {StoredOrder(), nullptr, nullptr, &WriteOrderStatus};
}

Answer<Done, Setback> BeforeOrderDecisions(WriteContext& context,
                                           std::span<PreparedChange> changes) {
  return BeforeDecisions(Steps(), context, changes);
}

Answer<Done, Setback> AfterOrderDecisions(WriteContext& context, std::span<PreparedChange>) {
  return AfterDecisions(Steps(), context);
}

/// On the order's own screen whoever may open it decides when it is his turn; in the queue
/// decisions are its edits.
Right DecisionRight(const Work& work, const Change& change) {
  const bool queue = work.PointNo() == static_cast<std::int32_t>(Point::ApprovalQueue);
  return change.kind == ChangeKind::Update && !queue ? Right::Open : RightFor(change.kind);
}

}  // namespace

Answer<Done, Setback> OrderMoved(WriteContext& context, DocumentKey key, const Move& move) {
  if (move.name == order::kSend.name) return SendOrder(context, key);
  if (move.name == order::kCorrect.name) return DropApprovalRows(context, StoredOrder(), key);
  if (move.name == order::kReopen.name) return SettleReopened(context, key);
  return Done{};
}

WriteRules OrderApprovalRules() {
  return {.beforeWrite = &BeforeOrderDecisions,
          .afterWrite = &AfterOrderDecisions,
          .right = &DecisionRight,
          .decisions = true};
}

}  // namespace orvane::server
