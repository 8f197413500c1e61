#include "server/documents/document_head_apply.h"

#include <algorithm>
#include <any>

#include "server/approval/approvers.h"
#include "server/documents/document_pricing.h"
#include "server/documents/document_steps.h"
#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/providers/server_class.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// What the second hook needs to know of a change of a head.
struct HeadApply {
  ChangeKind kind = ChangeKind::Update;
  DocumentKey key;
  const Move* move = nullptr;
  /// Rows that change with the head, as they are and what they are to say.
  std::vector<std::pair<NamedValues, NamedValues>> rows;
};

/// Amounts that follow from prices change with these, and sums in national currency.
constexpr std::string_view kPriceColumns[] = {stored::kDocumentDate,   stored::kKindCurrency,
                                              stored::kRateOfExchange, stored::kKindSupply,
                                              stored::kSupplier,       stored::kContractId};

bool IsAnnulment(const Change& change) {
  const Variant* on = FindValue(change.after, stored::kAnnulOn);
  return on && !on->IsNull();
}

std::optional<Failure> WhyHeadRefused(const HeadSteps& steps, const HeadFacts& facts,
                                      const Change& change, const NamedValues& present) {
  const auto value = [&](std::string_view column) { return ValueAfter(change, present, column); };
  if (Changes(change, {stored::kNotifier, stored::kCostCenter}) && !facts.admissible) {
    return Refused("Заявител с код " + value(stored::kNotifier).ToText() +
                   " не е допустим за център за разход " + value(stored::kCostCenter).ToText() +
                   " (виж „Допустими заявители“). Изберете друг център за разход.");
  }
  if (Changes(change, {stored::kContractId, stored::kSupplier, stored::kKindSupply})) {
    const auto refused =
        WhyContractRefused(steps.document, facts, value(stored::kContractId),
                           value(stored::kSupplier).AsInt(), value(stored::kKindSupply).AsInt());
    if (refused) return Refused("Договор " + *refused);
  }
  if (value(stored::kRateOfExchange).AsDecimal().value_or(Decimal()) <= Decimal()) {
    return Refused("Валутният курс трябва да бъде по-голям от нула. Въведете друг.");
  }
  return steps.refuses ? steps.refuses(facts, change, present) : std::nullopt;
}

/// The national currency has the rate 1 whatever the date.
void ImposeRate(const DocumentSettings& settings, const NamedValues& present,
                PreparedChange& prepared) {
  const auto currency = ValueAfter(prepared.change, present, stored::kKindCurrency).AsInt();
  if (currency && currency == settings.nationalCurrency) {
    Impose(prepared, present, stored::kRateOfExchange, Decimal(10'000'000, 7));
  }
}

// --- inserting -----------------------------------------------------------------------------------

Answer<HeadApply, Setback> BeforeInsert(const HeadSteps& steps, WriteContext& context,
                                        PreparedChange& prepared) {
  const StoredDocument& document = steps.document;
  std::vector<Statement> statements = SelectHeadFacts(context.work, prepared.change, {});
  statements.push_back(NextNumber(document.head.table));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "numbering a document");
  const HeadFacts facts = ReadHeadFacts(*packets);
  const Variant id = packets->back().At(0, "LastNumber");
  Impose(prepared, {}, document.seen.id, id);
  for (const NamedValue& value : steps.entered)
    Impose(prepared, {}, value.name, value.value);
  Impose(prepared, {}, stored::kStatus, static_cast<int>(Entered));
  for (const std::string_view sum : {document.currencySum, document.nationalSum})
    Impose(prepared, {}, sum, Decimal(0, 4));
  for (const std::string_view column : {stored::kAnnulFrom, stored::kAnnulOn})
    Impose(prepared, {}, column, Variant());
  ImposeRate(facts.settings, {}, prepared);
  if (auto refusal = WhyHeadRefused(steps, facts, prepared.change, {})) {
    return Refusal(*std::move(refusal));
  }
  HeadApply apply;
  apply.kind = ChangeKind::Insert;
  apply.key = {id.AsInt().value_or(0), document.seen.version.empty() ? 0 : 1};
  return apply;
}

// --- changing ------------------------------------------------------------------------------------

/// The move that a change is, if it is one. Judged by what is on disk.
Answer<const Move*, Setback> MoveIn(const HeadSteps& steps, const Work& work,
                                    const StoredHead& head, const Change& change,
                                    const ApproversOfCostCenter& approvers) {
  const StoredDocument& document = steps.document;
  const Variant* status = FindValue(change.after, stored::kStatus);
  MoveAsked asked;
  asked.annuls = IsAnnulment(change);
  const bool moves = status && status->AsInt() != head.status;
  if (!asked.annuls && !moves) return static_cast<const Move*>(nullptr);
  if (asked.annuls && moves) {
    return Refusal(Refused(NameOf(document, head.key) + " не може едновременно да бъде " +
                           std::string(document.annulled) + " и да смени статуса си."));
  }
  const auto employee = work.Who().Employee();
  asked.to = asked.annuls ? head.status : static_cast<int>(*status->AsInt());
  asked.chiefOrRequester = employee && (head.notifier == *employee ||
                                        approvers.Of(ApproverKind::CostCenterHead).Has(*employee));
  asked.owner = IsOwner(work, head);
  asked.requester = IsRequester(work, head);
  const auto move = JudgeMove(document, head, asked);
  if (!move) return Refusal(move.GetFailure());
  return *move;
}

Answer<Done, Setback> Reprice(const StoredDocument& document, WriteContext& context,
                              const StoredHead& head, const DocumentSettings& settings,
                              PreparedChange& prepared, HeadApply& apply) {
  const Change& change = prepared.change;
  if (!Changes(change, kPriceColumns)) return Done{};
  const auto value = [&](std::string_view column) { return ValueAfter(change, head.row, column); };
  NamedValues params = KeyParams(head.key);
  params.push_back({"Day", value(stored::kDocumentDate)});
  params.push_back({"Contract", value(stored::kContractId)});
  params.push_back({"Supplier", value(stored::kSupplier)});
  std::vector<Statement> statements =
      SelectEntries({":Day", ":Contract", ":Supplier", EntriesNamed(document), params});
  statements.push_back(SelectPart(document, document.rows, head.key));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading a document's prices");
  const auto entries = ReadEntries((*packets)[0], (*packets)[1]);
  std::vector<DocumentRow> rows = ReadDocumentRows((*packets)[2]);
  const Decimal rate = value(stored::kRateOfExchange).AsDecimal().value_or(Decimal(1, 0));
  const std::int64_t kind = value(stored::kKindSupply).AsInt().value_or(0);
  // Rows of other kinds name no order: the column is not shown, nobody would see the link.
  const bool unlinks = !settings.IsContracted(kind);
  for (DocumentRow& row : rows) {
    const auto entry = entries.find(row.serial);
    const auto amount = entry == entries.end()
                            ? std::optional(row.amount)
                            : RowAmount(kind, rate, row, entry->second, settings);
    if (!amount) return Refusal(TooGreat(NameOf(document, head.key) + ": сумата"));
    NamedValues after;
    if (*amount != row.amount) after.push_back({std::string(stored::kRowAmount), *amount});
    if (row.order && unlinks) after.push_back({std::string(stored::kRowOrder), Variant()});
    row.amount = *amount;
    if (!after.empty()) apply.rows.emplace_back(row.values, std::move(after));
  }
  const auto sums = SumsOf(rows, rate, settings);
  if (!sums) return Refusal(TooGreat(NameOf(document, head.key) + ": сумата"));
  Impose(prepared, head.row, document.currencySum, sums->currency);
  Impose(prepared, head.row, document.nationalSum, sums->national);
  return Done{};
}

/// Takes out of the change what only the server writes.
void DropServerColumns(const HeadSteps& steps, Change& change, const StoredHead& head) {
  for (const std::string_view column : steps.serverColumns)
    Drop(change.after, column);
  for (const std::string_view column : {steps.document.currencySum, steps.document.nationalSum})
    Drop(change.after, column);
  for (const std::string_view column : {stored::kAnnulFrom, stored::kAnnulOn, stored::kStatus}) {
    const Variant* sent = FindValue(change.after, column);
    const Variant* present = FindValue(head.row, column);
    if (sent && present && *sent == *present) Drop(change.after, column);
  }
}

void ImposeMove(const HeadSteps& steps, const Work& work, const StoredHead& head,
                const Change& asked, PreparedChange& prepared) {
  if (!IsAnnulment(asked)) {
    Drop(prepared.change.after, stored::kAnnulFrom);
    Drop(prepared.change.after, stored::kAnnulOn);
    return;
  }
  Impose(prepared, head.row, stored::kAnnulFrom, work.Who().login);
  Impose(prepared, head.row, stored::kAnnulOn, work.Now());
  if (steps.annulledStatus) Impose(prepared, head.row, stored::kStatus, *steps.annulledStatus);
}

/// Annulling and completing, or taking the completion off, amend nothing of what the document says.
bool IsAmendment(const Move& move, const Change& asked) {
  return !IsAnnulment(asked) && move.to != Completed && !move.from.Has(Completed);
}

/// The client may have stamped an amendment that is none: it is told what stands.
void KeepAmendment(const StoredHead& head, PreparedChange& prepared) {
  for (const std::string_view column : {stored::kAmendFrom, stored::kAmendOn}) {
    Drop(prepared.change.after, column);
    const Variant* present = FindValue(head.row, column);
    SetValue(prepared.filled, column, present ? *present : Variant());
  }
}

/// Somebody moved the document since it was loaded: a conflict, which is told with the present row.
bool MovedMeanwhile(const StoredHead& head, const Change& change) {
  const Variant* before = FindValue(change.before, stored::kStatus);
  return before && before->AsInt() != head.status;
}

/// The head, and who heads its cost centre where a move asks for him.
Answer<Packets, Setback> LockForUpdate(const HeadSteps& steps, WriteContext& context,
                                       DocumentKey key) {
  const StoredDocument& document = steps.document;
  std::vector<Statement> statements = {LockHead(context.work, document, key)};
  const bool asksForChief =
      std::any_of(document.moves.begin(), document.moves.end(),
                  [](const Move& move) { return move.who == Who::ChiefOrRequester; });
  if (asksForChief) {
    for (Statement& statement : SelectApprovers(HeadColumn(document, stored::kCostCenter),
                                                KeyParams(key), context.work.Today()))
      statements.push_back(std::move(statement));
  }
  auto locked = context.transaction.QueryAll(statements);
  if (!locked) return ToSetback(locked.GetFailure(), "locking a document");
  return *std::move(locked);
}

Answer<HeadApply, Setback> BeforeUpdate(const HeadSteps& steps, WriteContext& context,
                                        PreparedChange& prepared, DocumentKey key) {
  const StoredDocument& document = steps.document;
  Change& change = prepared.change;
  const auto locked = LockForUpdate(steps, context, key);
  if (!locked) return locked.GetFailure();
  const auto head = ReadHead(document, (*locked)[0]);
  HeadApply apply;
  apply.key = key;
  if (head && head->seen && MovedMeanwhile(*head, change)) return apply;
  if (auto closed = WhyClosed(document, head, key)) return Refusal(*std::move(closed));
  if (Changes(change, {document.seen.id, document.seen.version})) {
    return BadRequest("Номерът на " + std::string(document.itself) + " („" +
                      std::string(document.seen.id) + "“) не се променя.");
  }
  DropServerColumns(steps, change, *head);
  const ApproversOfCostCenter approvers =
      locked->size() > 1 ? ReadApprovers((*locked)[1], (*locked)[2]) : ApproversOfCostCenter{};
  const auto move = MoveIn(steps, context.work, *head, change, approvers);
  if (!move) return move.GetFailure();
  apply.move = *move;
  const bool ownColumns = Changes(change, steps.ownColumns);
  if (!apply.move || ownColumns) {
    if (auto refusal = WhyNotEditable(context.work, document, head, key)) {
      return Refusal(*std::move(refusal));
    }
  }
  if (apply.move) {
    const Change asked = change;
    ImposeMove(steps, context.work, *head, asked, prepared);
    if (!IsAmendment(*apply.move, asked)) KeepAmendment(*head, prepared);
  }
  CompleteOldValues(change, head->row);
  if (!ownColumns) return apply;

  const auto read = context.transaction.QueryAll(SelectHeadFacts(context.work, change, head->row));
  if (!read) return ToSetback(read.GetFailure(), "reading what stands behind a document");
  const HeadFacts facts = ReadHeadFacts(*read);
  ImposeRate(facts.settings, head->row, prepared);
  if (auto refusal = WhyHeadRefused(steps, facts, change, head->row)) {
    return Refusal(*std::move(refusal));
  }
  const auto repriced = Reprice(document, context, *head, facts.settings, prepared, apply);
  if (!repriced) return repriced.GetFailure();
  return apply;
}

Answer<HeadApply, Setback> BeforeDelete(const HeadSteps& steps, WriteContext& context,
                                        DocumentKey key) {
  const auto locked = context.transaction.Query(LockHead(context.work, steps.document, key));
  if (!locked) return ToSetback(locked.GetFailure(), "locking a document");
  const auto head = ReadHead(steps.document, *locked);
  if (auto refusal = WhyNotEditable(context.work, steps.document, head, key)) {
    return Refusal(*std::move(refusal));
  }
  if (auto kept = steps.keeps ? steps.keeps(key) : std::nullopt) return Refusal(*std::move(kept));
  HeadApply apply;
  apply.kind = ChangeKind::Delete;
  apply.key = key;
  return apply;
}

DocumentKey KeyBefore(const StoredDocument& document, const Change& change) {
  const auto number = [&](std::string_view column) -> std::int64_t {
    const Variant* value = column.empty() ? nullptr : FindValue(change.before, column);
    return value ? value->AsInt().value_or(0) : 0;
  };
  return {number(document.seen.id), number(document.seen.version)};
}

Answer<Done, Setback> WriteRows(const StoredDocument& document, WriteContext& context,
                                const HeadApply& apply) {
  ServerWrites writes(context.work);
  for (const auto& [row, after] : apply.rows)
    writes.Update(document.rows, row, after);
  return writes.CarryOut(context.transaction, "changing rows with their head");
}

}  // namespace

Answer<Done, Setback> BeforeDocumentHead(const HeadSteps& steps, WriteContext& context,
                                         std::span<PreparedChange> changes) {
  std::vector<HeadApply> applies;
  for (PreparedChange& prepared : changes) {
    const DocumentKey key = KeyBefore(steps.document, prepared.change);
    const auto apply =
        prepared.change.kind == ChangeKind::Insert   ? BeforeInsert(steps, context, prepared)
        : prepared.change.kind == ChangeKind::Update ? BeforeUpdate(steps, context, prepared, key)
                                                     : BeforeDelete(steps, context, key);
    if (!apply) return apply.GetFailure();
    applies.push_back(*apply);
  }
  context.kept = std::move(applies);
  return Done{};
}

Answer<Done, Setback> AfterDocumentHead(const HeadSteps& steps, WriteContext& context) {
  for (const HeadApply& apply : *std::any_cast<std::vector<HeadApply>>(&context.kept)) {
    if (steps.identifierIsOwnerData) {
      context.ownerAnswer = apply.kind == ChangeKind::Delete ? Variant() : Variant(apply.key.id);
    }
    const auto priced = WriteRows(steps.document, context, apply);
    if (!priced) return priced.GetFailure();
    if (!apply.move) continue;
    const auto moved = steps.moved(context, apply.key, *apply.move);
    if (!moved) return moved.GetFailure();
  }
  return Done{};
}

Right DocumentHeadRight(const Work&, const Change& change) {
  const bool annuls = change.kind == ChangeKind::Update && IsAnnulment(change);
  return annuls ? Right::Delete : RightFor(change.kind);
}

std::string DocumentHeadWord(std::string_view column, const Variant& value) {
  if (column != stored::kStatus || !value.AsInt()) return {};
  return std::string(StatusName(static_cast<int>(*value.AsInt())));
}

}  // namespace orvane::server
