#include <algorithm>
#include <any>
#include <map>

#include "server/approval/approvers.h"
#include "server/documents/active_contract.h"
#include "server/documents/named_statement.h"
#include "server/documents/request_apply.h"
#include "server/documents/request_moves.h"
#include "server/documents/request_parts.h"
#include "server/documents/request_pricing.h"
#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/providers/server_class.h"

namespace orvane {
namespace {

namespace request = purchase_request;
namespace field = purchase_request::head;

/// What the second hook needs to know of a change of a head.
struct HeadApply {
  ChangeKind kind = ChangeKind::Update;
  RequestKey key;
  const Move* move = nullptr;
  /// Rows whose amounts changed with the head, as they are and their new amounts.
  std::vector<std::pair<NamedValues, Decimal>> amounts;
};

/// Columns that a head may be told by its screen.
constexpr std::string_view kOwnColumns[] = {
    field::CostCenter.name,       field::Notifier.name,     field::Supplier.name,
    field::ContractId.name,       field::KindSupply.name,   field::KindCurrency.name,
    field::IncTranspInPrice.name, field::DocumentDate.name, field::RateOfExchange.name,
    field::Description.name,      field::Description2.name, field::Rationale.name,
    field::Rationale2.name,
};

bool Changes(const Change& change, std::initializer_list<FieldDef> columns) {
  return std::any_of(columns.begin(), columns.end(), [&](const FieldDef& column) {
    return FindValue(change.after, column.name) != nullptr;
  });
}

bool IsAnnulment(const Change& change) {
  const Variant* on = FindValue(change.after, field::AnnulOn.name);
  return on && !on->IsNull();
}

/// The annulment has the right to delete, everything else that of its kind of change.
Right HeadRight(const Change& change) {
  if (change.kind == ChangeKind::Update && IsAnnulment(change)) return request::kAnnul.right;
  return RightFor(change.kind);
}

void Drop(NamedValues& values, std::string_view column) {
  std::erase_if(values, [&](const NamedValue& value) { return SameName(value.name, column); });
}

// --- what the head says of other registers -------------------------------------------------------

struct HeadFacts {
  DocumentSettings settings;
  bool admissible = false;
  bool hasContract = false;
  std::int64_t contractSupplier = 0;
  std::int64_t contractKind = 0;
  bool contractActive = false;
};

std::vector<Statement> SelectHeadFacts(const Work& work, const Change& change,
                                       const NamedValues& present) {
  const NamedValues params = {{"CostCenter", ValueAfter(change, present, field::CostCenter.name)},
                              {"Notifier", ValueAfter(change, present, field::Notifier.name)},
                              {"Contract", ValueAfter(change, present, field::ContractId.name)},
                              {"Today", work.Today()}};
  return {SelectSettings(),
          Named("select count(*) from AdmissibleNotifiers where CostCenter = :CostCenter and"
                " Notifier = :Notifier",
                params, {{"Found", ValueKind::Code, 0}}),
          Named("select c.Supplier, c.KindContract, " + ActiveContract("c", ":Today") +
                    " from SuppliesContracts c where c.IdNumber = :Contract",
                params,
                {{"Supplier", ValueKind::Code, 0},
                 {"Kind", ValueKind::Int16, 0},
                 {"Active", ValueKind::Bool, 0}})};
}

HeadFacts ReadHeadFacts(std::span<const DataPacket> packets) {
  HeadFacts facts;
  facts.settings = ReadSettings(packets[0]);
  facts.admissible = packets[1].At(0, "Found").AsInt().value_or(0) > 0;
  const DataPacket& contract = packets[2];
  facts.hasContract = contract.rowCount == 1;
  if (!facts.hasContract) return facts;
  facts.contractSupplier = contract.At(0, "Supplier").AsInt().value_or(0);
  facts.contractKind = contract.At(0, "Kind").AsInt().value_or(0);
  facts.contractActive = contract.At(0, "Active").AsBool().value_or(false);
  return facts;
}

std::optional<Failure> WhyHeadRefused(const HeadFacts& facts, const Change& change,
                                      const NamedValues& present) {
  const auto value = [&](const FieldDef& column) {
    return ValueAfter(change, present, column.name);
  };
  if (Changes(change, {field::Notifier, field::CostCenter}) && !facts.admissible) {
    return Refused("Заявител с код " + value(field::Notifier).ToText() +
                   " не е допустим за център за разход " + value(field::CostCenter).ToText() +
                   " (виж „Допустими заявители“). Изберете друг център за разход.");
  }
  const Variant contract = value(field::ContractId);
  const bool chosen = Changes(change, {field::ContractId, field::Supplier, field::KindSupply});
  if (chosen && !contract.IsNull() && facts.hasContract) {
    const std::string name = "Договор " + contract.ToText();
    if (value(field::Supplier).AsInt() != facts.contractSupplier ||
        value(field::KindSupply).AsInt() != facts.contractKind) {
      return Refused(name +
                     " не е за доставчика и вида покупка на искането. Изберете друг "
                     "договор.");
    }
    if (!facts.contractActive) {
      return Refused(name + " не е действащ днес. Изберете друг договор.");
    }
  }
  if (value(field::RateOfExchange).AsDecimal().value_or(Decimal()) <= Decimal()) {
    return Refused("Валутният курс трябва да бъде по-голям от нула. Въведете друг.");
  }
  return std::nullopt;
}

/// The national currency has the rate 1 whatever the date.
void ImposeRate(const DocumentSettings& settings, const NamedValues& present,
                PreparedChange& prepared) {
  const auto currency = ValueAfter(prepared.change, present, field::KindCurrency.name).AsInt();
  if (currency && currency == settings.nationalCurrency) {
    Impose(prepared, present, field::RateOfExchange.name, Decimal(10'000'000, 7));
  }
}

// --- inserting -----------------------------------------------------------------------------------

Answer<HeadApply, Setback> BeforeInsert(WriteContext& context, PreparedChange& prepared) {
  std::vector<Statement> statements = SelectHeadFacts(context.work, prepared.change, {});
  statements.push_back(NextNumber("PurchaseOrder"));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "numbering a request");
  const HeadFacts facts = ReadHeadFacts(*packets);
  const Variant id = packets->back().At(0, "LastNumber");
  Impose(prepared, {}, field::POIdNumber.name, id);
  Impose(prepared, {}, field::POVersion.name, 1);
  Impose(prepared, {}, field::Status.name, static_cast<int>(Entered));
  Impose(prepared, {}, field::OldVersion.name, false);
  Impose(prepared, {}, field::CurrSumPurchaseOrder.name, Decimal(0, 4));
  Impose(prepared, {}, field::SumPurchaseOrder.name, Decimal(0, 4));
  Impose(prepared, {}, field::AnnulFrom.name, Variant());
  Impose(prepared, {}, field::AnnulOn.name, Variant());
  ImposeRate(facts.settings, {}, prepared);
  if (auto refusal = WhyHeadRefused(facts, prepared.change, {})) {
    return Refusal(*std::move(refusal));
  }
  HeadApply apply;
  apply.kind = ChangeKind::Insert;
  apply.key = {id.AsInt().value_or(0), 1};
  return apply;
}

// --- changing ------------------------------------------------------------------------------------

/// The move that a change is, if it is one. Judged by what is on disk.
Answer<const Move*, Setback> MoveIn(const Work& work, const RequestHead& head, const Change& change,
                                    const ApproversOfCostCenter& approvers) {
  const Variant* status = FindValue(change.after, field::Status.name);
  const bool annulment = IsAnnulment(change);
  const bool moves = status && status->AsInt() != head.status;
  if (!annulment && !moves) return static_cast<const Move*>(nullptr);
  if (annulment && moves) {
    return Refusal(Refused(NameOf(head.key) + " не може едновременно да бъде анулирано и да смени "
                                              "статуса си."));
  }
  const auto employee = work.Who().Employee();
  MoveAsked asked;
  asked.to = annulment ? 0 : static_cast<int>(*status->AsInt());
  asked.chiefOrRequester = employee && (head.notifier == *employee ||
                                        approvers.Of(ApproverKind::CostCenterHead).Has(*employee));
  const auto move = JudgeMove(head, asked);
  if (!move) return Refusal(move.GetFailure());
  return *move;
}

/// Amounts that follow from prices change with the day, the currency, the rate, the kind and the
/// list of the request; the sum in national currency with the rate.
Answer<Done, Setback> Reprice(WriteContext& context, const RequestHead& head,
                              const DocumentSettings& settings, PreparedChange& prepared,
                              HeadApply& apply) {
  const Change& change = prepared.change;
  if (!Changes(change, {field::DocumentDate, field::KindCurrency, field::RateOfExchange,
                        field::KindSupply, field::Supplier, field::ContractId})) {
    return Done{};
  }
  const auto value = [&](const FieldDef& column) {
    return ValueAfter(change, head.row, column.name);
  };
  const EntriesAsked asked{
      ":Day",
      ":Contract",
      ":Supplier",
      "{serial} in (select SerialNumber from PurchaseOrderDet where PurchaseOrderId = :Id and"
      " PurchaseOrderVer = :Version)",
      {{"Day", value(field::DocumentDate)},
       {"Contract", value(field::ContractId)},
       {"Supplier", value(field::Supplier)},
       {"Id", head.key.id},
       {"Version", head.key.version}}};
  std::vector<Statement> statements = SelectEntries(asked);
  statements.push_back(SelectRequestRows(head.key));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading a request's prices");
  const auto entries = ReadEntries((*packets)[0], (*packets)[1]);
  std::vector<RequestRow> rows = ReadRequestRows((*packets)[2]);
  const Decimal rate = value(field::RateOfExchange).AsDecimal().value_or(Decimal(1, 0));
  const std::int64_t kind = value(field::KindSupply).AsInt().value_or(0);
  for (RequestRow& row : rows) {
    const auto entry = entries.find(row.serial);
    const auto amount = entry == entries.end()
                            ? std::optional(row.amount)
                            : RowAmount(kind, rate, row, entry->second, settings);
    if (!amount) return Refusal(TooGreat(NameOf(head.key) + ": сумата"));
    if (*amount == row.amount) continue;
    row.amount = *amount;
    apply.amounts.emplace_back(row.values, *amount);
  }
  const auto sums = SumsOf(rows, rate, settings);
  if (!sums) return Refusal(TooGreat(NameOf(head.key) + ": сумата"));
  Impose(prepared, head.row, field::CurrSumPurchaseOrder.name, sums->currency);
  Impose(prepared, head.row, field::SumPurchaseOrder.name, sums->national);
  return Done{};
}

/// Takes out of the change what only the server writes.
void DropServerColumns(Change& change, const RequestHead& head) {
  for (const FieldDef* column :
       {&field::OldVersion, &field::CurrSumPurchaseOrder, &field::SumPurchaseOrder}) {
    Drop(change.after, column->name);
  }
  for (const FieldDef* column : {&field::AnnulFrom, &field::AnnulOn, &field::Status}) {
    const Variant* sent = FindValue(change.after, column->name);
    const Variant* present = FindValue(head.row, column->name);
    if (sent && present && *sent == *present) Drop(change.after, column->name);
  }
}

bool TouchesOwnColumns(const Change& change) {
  return std::any_of(std::begin(kOwnColumns), std::end(kOwnColumns), [&](std::string_view column) {
    return FindValue(change.after, column) != nullptr;
  });
}

void ImposeMove(const Work& work, const RequestHead& head, const Move& move,
                PreparedChange& prepared) {
  if (move.to != 0) {
    Drop(prepared.change.after, field::AnnulFrom.name);
    Drop(prepared.change.after, field::AnnulOn.name);
    return;
  }
  Impose(prepared, head.row, field::AnnulFrom.name, work.Who().login);
  Impose(prepared, head.row, field::AnnulOn.name, work.Now());
  for (const FieldDef* column : {&field::AmendFrom, &field::AmendOn}) {  // it is no amendment
    Drop(prepared.change.after, column->name);
    Drop(prepared.filled, column->name);
  }
}

/// Somebody moved the request since it was loaded: a conflict, which is told with the present row.
bool MovedMeanwhile(const RequestHead& head, const Change& change) {
  const Variant* before = FindValue(change.before, field::Status.name);
  return before && before->AsInt() != head.status;
}

Answer<HeadApply, Setback> BeforeUpdate(WriteContext& context, PreparedChange& prepared,
                                        RequestKey key) {
  Change& change = prepared.change;
  std::vector<Statement> statements = {LockRequest(context.work, key)};
  for (Statement& statement : SelectApprovers(
           "(select q.CostCenter from PurchaseOrder q where q.POIdNumber = :Id and q.POVersion = "
           ":Version)",
           {{"Id", key.id}, {"Version", key.version}}, context.work.Today()))
    statements.push_back(std::move(statement));
  const auto locked = context.transaction.QueryAll(statements);
  if (!locked) return ToSetback(locked.GetFailure(), "locking a request");
  const auto head = ReadRequestHead((*locked)[0]);
  HeadApply apply;
  apply.key = key;
  if (head && head->seen && MovedMeanwhile(*head, change)) return apply;
  if (auto closed = WhyClosed(head, key)) return Refusal(*std::move(closed));
  if (FindValue(change.after, field::POIdNumber.name) ||
      FindValue(change.after, field::POVersion.name)) {
    return BadRequest("Номерът и версията на искане не се променят.");
  }
  DropServerColumns(change, *head);
  const auto move = MoveIn(context.work, *head, change, ReadApprovers((*locked)[1], (*locked)[2]));
  if (!move) return move.GetFailure();
  apply.move = *move;
  if (!apply.move || TouchesOwnColumns(change)) {
    if (auto refusal = WhyNotEditable(head, key)) return Refusal(*std::move(refusal));
  }
  if (apply.move) ImposeMove(context.work, *head, *apply.move, prepared);
  CompleteOldValues(change, head->row);
  if (!TouchesOwnColumns(change)) return apply;

  const auto read = context.transaction.QueryAll(SelectHeadFacts(context.work, change, head->row));
  if (!read) return ToSetback(read.GetFailure(), "reading what stands behind a request");
  const HeadFacts facts = ReadHeadFacts(*read);
  ImposeRate(facts.settings, head->row, prepared);
  if (auto refusal = WhyHeadRefused(facts, change, head->row)) return Refusal(*std::move(refusal));
  const auto repriced = Reprice(context, *head, facts.settings, prepared, apply);
  if (!repriced) return repriced.GetFailure();
  return apply;
}

Answer<HeadApply, Setback> BeforeDelete(WriteContext& context, RequestKey key) {
  const auto locked = context.transaction.Query(LockRequest(context.work, key));
  if (!locked) return ToSetback(locked.GetFailure(), "locking a request");
  if (auto refusal = WhyNotEditable(ReadRequestHead(*locked), key)) {
    return Refusal(*std::move(refusal));
  }
  if (key.version > 1) {
    return Refusal(Refused(NameOf(key) + " не се изтрива: тя замества предишната версия. "
                                         "Анулирайте искането."));
  }
  HeadApply apply;
  apply.kind = ChangeKind::Delete;
  apply.key = key;
  return apply;
}

Answer<Done, Setback> BeforeHead(WriteContext& context, std::span<PreparedChange> changes) {
  std::vector<HeadApply> applies;
  for (PreparedChange& prepared : changes) {
    const auto number = [&](const FieldDef& column) {
      const Variant* value = FindValue(prepared.change.before, column.name);
      return value ? value->AsInt().value_or(0) : 0;
    };
    const RequestKey key{number(field::POIdNumber), number(field::POVersion)};
    const auto apply = prepared.change.kind == ChangeKind::Insert ? BeforeInsert(context, prepared)
                       : prepared.change.kind == ChangeKind::Update
                           ? BeforeUpdate(context, prepared, key)
                           : BeforeDelete(context, key);
    if (!apply) return apply.GetFailure();
    applies.push_back(*apply);
  }
  context.kept = std::move(applies);
  return Done{};
}

// --- afterwards ----------------------------------------------------------------------------------

Answer<Done, Setback> WriteAmounts(WriteContext& context, const HeadApply& apply) {
  ServerWrites writes(context.work);
  for (const auto& [row, amount] : apply.amounts) {
    writes.Update(request::det::dspPurchaseOrderDet, row,
                  {{std::string(request::det::CurrSumWithoutVAT.name), amount}});
  }
  return writes.CarryOut(context.transaction, "pricing a request's rows");
}

Answer<Done, Setback> AfterHead(WriteContext& context, std::span<PreparedChange>) {
  for (const HeadApply& apply : *std::any_cast<std::vector<HeadApply>>(&context.kept)) {
    context.ownerAnswer = apply.kind == ChangeKind::Delete ? Variant() : Variant(apply.key.id);
    const auto priced = WriteAmounts(context, apply);
    if (!priced) return priced.GetFailure();
    if (!apply.move) continue;
    const auto moved = RequestMoved(context, apply.key, *apply.move);
    if (!moved) return moved.GetFailure();
  }
  return Done{};
}

std::string WordOf(std::string_view column, const Variant& value) {
  if (column != field::Status.name || !value.AsInt()) return {};
  return std::string(StatusName(static_cast<int>(*value.AsInt())));
}

constexpr ReferenceRule kReferences[] = {
    {"CostCenter", "CostCenters", "CostCenter",
     "Няма център за разход {CostCenter}. Изберете друг център за разход."},
    {"Notifier", "Employees", "Employee", "Няма служител {Notifier}. Изберете друг заявител."},
    {"Supplier", "Partners", "Partner", "Няма доставчик {Supplier}. Изберете друг доставчик."},
    {"ContractId", "SuppliesContracts", "IdNumber",
     "Няма договор {ContractId}. Изберете друг договор."},
    {"KindSupply", "KindSupplies", "Code",
     "Няма вид покупка {KindSupply}. Изберете друг вид покупка."},
    {"KindCurrency", "Currencies", "Code",
     "Няма вид валута {KindCurrency}. Изберете друга валута."},
};
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
  return {.references = kReferences,
          .usedBy = kUsedBy,
          .beforeWrite = &BeforeHead,
          .afterWrite = &AfterHead,
          .right = &HeadRight,
          .word = &WordOf};
}

}  // namespace orvane
