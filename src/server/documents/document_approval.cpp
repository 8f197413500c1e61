#include "server/documents/document_approval.h"

#include <algorithm>
#include <any>

#include "contract/approval_rows.h"
#include "packet/fold.h"
#include "server/documents/document_roles.h"
#include "server/documents/document_steps.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

// Columns of approval rows, whatever the document.
constexpr std::string_view kLevel = "ConfirmationLevel";
constexpr std::string_view kStatus = "Status";
constexpr std::string_view kNote = approval_rows::ApprovalNote.name;

void AddTurns(ServerWrites& writes, const StoredDocument& document, DocumentKey key,
              std::span<const ApprovalRow> rows, const ApproversOfCostCenter& approvers) {
  const ApprovalRow* turn = TurnOf(rows);
  if (!turn) return;
  for (const Approver& approver : approvers.Of(turn->approver).approvers) {
    writes.Run(
        Named("insert into ApprovalTurn (Employee, KindRegister, DocumentId,"
              " DocumentVersion) values (:Employee, :Kind, :Id, :Version)"
              " on conflict do nothing",
              {{"Employee", approver.employee},
               {"Kind", static_cast<int>(document.kind)},
               {"Id", key.id},
               {"Version", key.version}}));
  }
}

/// A decision that was judged: the row as it is, and as it becomes.
struct Judged {
  StoredHead head;
  NamedValues row;
  NamedValues values;
};

/// The reason that a decision leaves in its row. Nothing: the one that is there. A withdrawn
/// decision may have kept it, and told again it is no change.
std::optional<Variant> NoteOf(const DecidedRow& decided, const DecisionAsked& asked) {
  if (decided.withdrawnBy) return Variant();
  if (asked.note) return IsBlank(*asked.note) ? Variant() : Variant(Trim(*asked.note));
  return decided.exchanges ? std::optional(Variant()) : std::nullopt;
}

NamedValues ValuesOf(const StoredDocument& document, const DecidedRow& decided,
                     const DecisionAsked& asked, Stamp moment) {
  const auto code = [](const std::optional<std::int64_t>& value) {
    return value ? Variant(*value) : Variant();
  };
  const Variant now(moment);
  NamedValues values = {{std::string(kStatus), decided.status},
                        {"UnConfirmedFrom", code(decided.withdrawnBy)},
                        {"UnConfirmedOn", decided.withdrawnBy ? now : Variant()}};
  if (decided.withdrawnBy && document.keepsDecider) return values;
  values.push_back({"ConfirmedFrom", code(decided.decidedBy)});
  values.push_back({"ConfermedOn", decided.decidedBy ? now : Variant()});
  values.push_back({std::string(stored::kOnBehalfOf.name), code(decided.onBehalfOf)});
  if (const auto note = NoteOf(decided, asked)) values.push_back({std::string(kNote), *note});
  return values;
}

Answer<Judged, Setback> Judge(const StoredDocument& document, WriteContext& context,
                              DocumentKey key, const DecisionAsked& asked) {
  std::vector<Statement> statements = {LockHead(context.work, document, key),
                                       SelectApprovalRows(document, key)};
  for (Statement& statement : SelectApproversOf(document, KeyParams(key), context.work.Today()))
    statements.push_back(std::move(statement));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "locking a document for a decision");
  const auto head = ReadHead(document, (*packets)[0]);
  if (auto closed = WhyClosed(document, head, key)) return Refusal(*std::move(closed));
  const std::vector<ApprovalRow> rows = ReadApprovalRows((*packets)[1]);
  const ApproversOfCostCenter approvers = ReadApprovers((*packets)[2], (*packets)[3]);
  const std::string sentOn =
      head->sentOn ? context.work.Zone().ToTextWithSeconds(*head->sentOn) : "";
  const auto decided = JudgeDecision(
      {NameOf(document, key), StatusName(head->status), head->status, kDecidableStatuses,
       head->sending, head->sentFrom, sentOn, rows, approvers, context.work.Who().Employee(),
       IsForbiddenOwn(context.work, head->createdFrom, head->notifier), document.sent, document.it},
      asked);
  if (!decided) return Refusal(decided.GetFailure());
  Judged judged{*head, {}, ValuesOf(document, *decided, asked, context.work.Now())};
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].level == asked.level) judged.row = RowValues((*packets)[1], row);
  }
  return judged;
}

/// After the row was written: the status that all rows give, and who is next.
Answer<Done, Setback> SettleDecision(const ApprovalSteps& steps, WriteContext& context,
                                     const StoredHead& head) {
  const StoredDocument& document = steps.document;
  std::vector<Statement> statements = {SelectApprovalRows(document, head.key)};
  for (Statement& statement :
       SelectApproversOf(document, KeyParams(head.key), context.work.Today()))
    statements.push_back(std::move(statement));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading decisions");
  const std::vector<ApprovalRow> rows = ReadApprovalRows((*packets)[0]);
  const DocumentStatus status = StatusOf(rows);
  if (steps.leavesApproved && head.status == Approved && status != Approved) {
    const auto free = steps.leavesApproved(context, head);
    if (!free) return free;
  }
  if (steps.leavesRejected && head.status == Rejected && status != Rejected) {
    const auto back = steps.leavesRejected(context, head);
    if (!back) return back;
  }
  ServerWrites writes(context.work);
  AddTurns(writes, document, head.key, rows, ReadApprovers((*packets)[1], (*packets)[2]));
  const auto written = writes.CarryOut(context.transaction, "noting turns");
  if (!written) return written;
  return steps.writeStatus(context, head, status);
}

Answer<DecisionAsked, Setback> AskedIn(const Change& change) {
  const Variant* status = FindValue(change.after, kStatus);
  const Variant* level = FindValue(change.before, kLevel);
  const Variant* sending = FindValue(change.before, stored::kSendingNumber.name);
  const auto wanted = status ? status->AsInt() : std::nullopt;
  const bool decision = wanted && *wanted >= ApprovalRejected && *wanted <= ApprovalGiven;
  if (change.kind != ChangeKind::Update || !decision || !level || !sending) {
    return BadRequest("Редовете на одобрението се променят само с решение.");
  }
  const Variant* note = FindValue(change.after, kNote);
  return DecisionAsked{static_cast<int>(level->AsInt().value_or(0)), sending->AsInt().value_or(0),
                       static_cast<int>(*wanted),
                       note ? std::optional(note->ToText()) : std::nullopt};
}

}  // namespace

std::vector<Statement> SelectApproversOf(const StoredDocument& document, const NamedValues& params,
                                         Date today) {
  return SelectApprovers(HeadColumn(document, stored::kCostCenter), params, today);
}

Statement SelectApprovalRows(const StoredDocument& document, DocumentKey key) {
  return SelectPart(document, document.approvals, key);
}

void AddSending(ServerWrites& writes, const Work& work, const StoredDocument& document,
                const StoredHead& head, std::span<const ApprovalRow> plan,
                const ApproversOfCostCenter& approvers, NamedValues more) {
  const std::int64_t sending = head.sending + 1;
  more.push_back({std::string(stored::kSendingNumber.name), sending});
  more.push_back({std::string(stored::kSentFrom.name), work.Who().login});
  more.push_back({std::string(stored::kSentOn.name), work.Now()});
  writes.Update(document.head, head.row, more);
  for (const ApprovalRow& row : plan) {
    NamedValues values = PartKey(document, head.key);
    values.push_back({std::string(kLevel), row.level});
    values.push_back({std::string(stored::kSendingNumber.name), sending});
    values.push_back({"Approval", static_cast<int>(row.approver)});
    values.push_back({std::string(kStatus), row.status});
    writes.Insert(document.approvals, values);
  }
  AddTurns(writes, document, head.key, plan, approvers);
}

Answer<Done, Setback> DropApprovalRows(WriteContext& context, const StoredDocument& document,
                                       DocumentKey key) {
  const auto rows = context.transaction.Query(SelectApprovalRows(document, key));
  if (!rows) return ToSetback(rows.GetFailure(), "reading approval rows");
  ServerWrites writes(context.work);
  for (std::size_t row = 0; row < rows->rowCount; ++row)
    writes.Delete(document.approvals, RowValues(*rows, row));
  return writes.CarryOut(context.transaction, "dropping approval rows");
}

Answer<bool, Setback> WriteStatus(WriteContext& context, const StoredDocument& document,
                                  const StoredHead& head, DocumentStatus status) {
  ServerWrites writes(context.work);
  writes.Update(document.head, head.row, {{std::string(kStatus), static_cast<int>(status)}});
  if (writes.Empty()) return false;
  const auto written = writes.CarryOut(context.transaction, "writing a document's status");
  if (!written) return written.GetFailure();
  SetValue(context.headMoved, kStatus, static_cast<int>(status));
  return true;
}

Answer<Done, Setback> Decide(const ApprovalSteps& steps, WriteContext& context, DocumentKey key,
                             const DecisionAsked& asked) {
  const auto judged = Judge(steps.document, context, key, asked);
  if (!judged) return judged.GetFailure();
  ServerWrites writes(context.work);
  writes.Update(steps.document.approvals, judged->row, judged->values);
  const auto written = writes.CarryOut(context.transaction, "writing a decision");
  if (!written) return written;
  return SettleDecision(steps, context, judged->head);
}

Answer<Done, Setback> BeforeDecisions(const ApprovalSteps& steps, WriteContext& context,
                                      std::span<PreparedChange> changes) {
  const auto key = DocumentOf(steps.document, changes);
  if (!key) return key.GetFailure();
  if (changes.size() != 1) return BadRequest("Решенията се записват едно по едно.");
  PreparedChange& prepared = changes.front();
  const auto asked = AskedIn(prepared.change);
  if (!asked) return asked.GetFailure();
  auto judged = Judge(steps.document, context, *key, *asked);
  if (!judged) return judged.GetFailure();
  prepared.change.after.clear();
  for (const NamedValue& value : judged->values)
    Impose(prepared, judged->row, value.name, value.value);
  Drop(prepared.filled, stored::kOnBehalfOf.name);  // no client knows the column
  context.kept = std::move(judged->head);
  return Done{};
}

Answer<Done, Setback> AfterDecisions(const ApprovalSteps& steps, WriteContext& context) {
  return SettleDecision(steps, context, *std::any_cast<StoredHead>(&context.kept));
}

}  // namespace orvane::server
