#include "server/documents/request_approval.h"

#include <algorithm>
#include <any>

#include "server/approval/levels.h"
#include "server/documents/named_statement.h"
#include "server/documents/request_apply.h"
#include "server/documents/request_moves.h"
#include "server/documents/request_parts.h"
#include "server/documents/request_pricing.h"
#include "server/documents/request_rows.h"
#include "server/documents/values.h"

namespace orvane {
namespace {

namespace request = purchase_request;
namespace adm = purchase_request::adm;

constexpr auto kOnBehalfOf = Code19("OnBehalfOf");
constexpr FieldDef kApprovalFields[] = {adm::PurchaseOrderId,
                                        adm::PurchaseOrderVer,
                                        adm::ConfirmationLevel,
                                        adm::SendingNumber,
                                        adm::Approval,
                                        adm::Status,
                                        adm::ConfirmedFrom,
                                        adm::ConfermedOn,
                                        adm::UnConfirmedFrom,
                                        adm::UnConfirmedOn,
                                        kOnBehalfOf};
constexpr ProviderDef kApprovalTable{"", "PurchaseOrderAdm", kApprovalFields};

constexpr std::string_view kCostCenterOf =
    "(select q.CostCenter from PurchaseOrder q where q.POIdNumber = :Id and q.POVersion = "
    ":Version)";
constexpr std::string_view kOrdersNamed =
    "{order} in (select d.SuppManifacOrderId from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version and d.SuppManifacOrderId is not null)";
constexpr std::string_view kEntriesNamed =
    "{serial} in (select d.SerialNumber from PurchaseOrderDet d where d.PurchaseOrderId = :Id"
    " and d.PurchaseOrderVer = :Version)";
constexpr std::string_view kRateOnDay =
    "select CurrencyRate1 from RatesOfExchange where Partner = :Bank and KindCurrency = :Currency"
    " and RateDate <= :Day order by RateDate desc limit 1";

NamedValues KeyParams(RequestKey key) {
  return {{"Id", key.id}, {"Version", key.version}};
}

/// Everything that a sending looks at.
struct SendingRead {
  RequestHead head;
  DocumentSettings settings;
  std::vector<RequestRow> rows;
  std::map<std::int64_t, EntryFacts> entries;
  std::map<std::int64_t, OrderFacts> orders;
  std::int64_t plannedDates = 0;
  std::optional<Decimal> bankRate;
  std::vector<LevelRow> levels;
  ApproversOfCostCenter approvers;
};

Answer<SendingRead, Setback> ReadSending(WriteContext& context, RequestKey key) {
  const NamedValues params = KeyParams(key);
  const Statement locking[] = {LockRequest(context.work, key), SelectSettings()};
  const auto first = context.transaction.QueryAll(locking);
  if (!first) return ToSetback(first.GetFailure(), "reading a request that is sent");
  const auto head = ReadRequestHead((*first)[0]);
  if (!head) return Refusal(*WhyClosed(head, key));
  SendingRead read;
  read.head = *head;
  read.settings = ReadSettings((*first)[1]);

  std::vector<Statement> statements = {
      SelectRequestRows(key),
      Named("select count(*) from PurchaseOrderDel where PurchaseOrderId = :Id"
            " and PurchaseOrderVer = :Version",
            params, {{"Dates", ValueKind::Code, 0}}),
      Named(kRateOnDay,
            {{"Bank", read.settings.centralBank.value_or(0)},
             {"Currency", head->kindCurrency},
             {"Day", head->documentDate}},
            {{"CurrencyRate1", ValueKind::Rate, 0}}),
      SelectLevels(DocumentKind::PurchaseRequest, head->kindSupply)};
  for (auto& part : {SelectEntries(EntriesOfRequest(std::string(kEntriesNamed), params)),
                     SelectOrders(context.work, std::string(kOrdersNamed), key, params),
                     SelectApprovers(kCostCenterOf, params, context.work.Today())})
    statements.insert(statements.end(), part.begin(), part.end());
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what a sending needs");
  read.rows = ReadRequestRows((*packets)[0]);
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
  for (const RequestRow& row : read.rows) {
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

void AddTurns(ServerWrites& writes, RequestKey key, std::span<const ApprovalRow> rows,
              const ApproversOfCostCenter& approvers) {
  const ApprovalRow* turn = TurnOf(rows);
  if (!turn) return;
  for (const Approver& approver : approvers.Of(turn->approver).approvers) {
    writes.Run(
        Named("insert into ApprovalTurn (Employee, KindRegister, DocumentId,"
              " DocumentVersion) values (:Employee, :Kind, :Id, :Version)"
              " on conflict do nothing",
              {{"Employee", approver.employee},
               {"Kind", static_cast<int>(DocumentKind::PurchaseRequest)},
               {"Id", key.id},
               {"Version", key.version}}));
  }
}

void AddApprovalRows(ServerWrites& writes, RequestKey key, std::int64_t sending,
                     std::span<const ApprovalRow> rows) {
  for (const ApprovalRow& row : rows) {
    writes.Insert(kApprovalTable, {{"PurchaseOrderId", key.id},
                                   {"PurchaseOrderVer", key.version},
                                   {"ConfirmationLevel", row.level},
                                   {"SendingNumber", sending},
                                   {"Approval", static_cast<int>(row.approver)},
                                   {"Status", row.status}});
  }
}

}  // namespace

ProviderDef RequestApprovalTable() {
  return kApprovalTable;
}

Statement SelectApprovalRows(RequestKey key) {
  return SelectPart(kApprovalTable, key);
}

std::vector<ApprovalRow> ReadApprovalRows(const DataPacket& packet) {
  std::vector<ApprovalRow> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto number = [&](const FieldDef& column) {
      return static_cast<int>(packet.At(row, column.name).AsInt().value_or(0));
    };
    rows.push_back({number(adm::ConfirmationLevel),
                    static_cast<ApproverKind>(number(adm::Approval)), number(adm::Status),
                    packet.At(row, adm::ConfirmedFrom.name).AsInt()});
  }
  return rows;
}

Answer<Done, Setback> SendRequest(WriteContext& context, RequestKey key) {
  auto read = ReadSending(context, key);
  if (!read) return read.GetFailure();
  if (auto refusal = WhyNotWhole(*read)) return Refusal(*std::move(refusal));
  const auto sum = SumForLevels(*read);
  if (!sum) return Refusal(TooGreat(NameOf(key) + ": сумата"));
  const auto plan = PlanApproval({NameOf(key), DocumentKind::PurchaseRequest, read->head.kindSupply,
                                  *sum, read->levels, read->approvers});
  if (!plan) return Refusal(plan.GetFailure());

  ServerWrites writes(context.work);
  const std::int64_t sending = read->head.sending + 1;
  NamedValues sent = {{std::string(kRequestSendingNumber.name), sending},
                      {std::string(kRequestSentFrom.name), context.work.Who().login},
                      {std::string(kRequestSentOn.name), context.work.Now()}};
  const bool byService = plan->empty();
  if (byService) {
    const auto& service = read->settings.serviceEmployee;
    sent.push_back(
        {std::string(kRequestServiceEmployee.name), service ? Variant(*service) : Variant()});
  }
  writes.Update(RequestTable(), read->head.row, sent);
  AddApprovalRows(writes, key, sending, *plan);
  AddTurns(writes, key, *plan, read->approvers);
  const auto written = writes.CarryOut(context.transaction, "sending a request");
  if (!written) return written;
  if (byService) return WriteRequestStatus(context, read->head, Approved);
  return SettleOrders(context, key);
}

Answer<Done, Setback> DropApprovalRows(WriteContext& context, RequestKey key) {
  const auto rows = context.transaction.Query(SelectApprovalRows(key));
  if (!rows) return ToSetback(rows.GetFailure(), "reading approval rows");
  ServerWrites writes(context.work);
  for (std::size_t row = 0; row < rows->rowCount; ++row)
    writes.Delete(kApprovalTable, RowValues(*rows, row));
  return writes.CarryOut(context.transaction, "dropping approval rows");
}

// --- decisions -----------------------------------------------------------------------------------

namespace {

/// A decision that was judged: the row as it is, and as it becomes.
struct Judged {
  RequestHead head;
  NamedValues row;
  NamedValues values;
};

Answer<Judged, Setback> Judge(WriteContext& context, RequestKey key, const DecisionAsked& asked) {
  std::vector<Statement> statements = {LockRequest(context.work, key), SelectApprovalRows(key)};
  for (Statement& statement : SelectApprovers(kCostCenterOf, KeyParams(key), context.work.Today()))
    statements.push_back(std::move(statement));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "locking a request for a decision");
  const auto head = ReadRequestHead((*packets)[0]);
  if (auto closed = WhyClosed(head, key)) return Refusal(*std::move(closed));
  const std::vector<ApprovalRow> rows = ReadApprovalRows((*packets)[1]);
  const ApproversOfCostCenter approvers = ReadApprovers((*packets)[2], (*packets)[3]);
  const std::string sentOn =
      head->sentOn ? context.work.Zone().ToTextWithSeconds(*head->sentOn) : "";
  const auto decided = JudgeDecision(
      {NameOf(key), StatusName(head->status), head->status, kDecidableStatuses, head->sending,
       head->sentFrom, sentOn, rows, approvers, context.work.Who().Employee(),
       IsForbiddenOwn(context.work, head->createdFrom, head->notifier)},
      asked);
  if (!decided) return Refusal(decided.GetFailure());

  const auto code = [](const std::optional<std::int64_t>& value) {
    return value ? Variant(*value) : Variant();
  };
  const Variant now(context.work.Now());
  Judged judged{*head,
                {},
                {{std::string(adm::Status.name), decided->status},
                 {std::string(adm::ConfirmedFrom.name), code(decided->decidedBy)},
                 {std::string(adm::ConfermedOn.name), decided->decidedBy ? now : Variant()},
                 {std::string(adm::UnConfirmedFrom.name), code(decided->withdrawnBy)},
                 {std::string(adm::UnConfirmedOn.name), decided->withdrawnBy ? now : Variant()},
                 {std::string(kOnBehalfOf.name), code(decided->onBehalfOf)}}};
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].level == asked.level) judged.row = RowValues((*packets)[1], row);
  }
  return judged;
}

/// Something later stands on an approved request.
Answer<Done, Setback> CheckNothingStandsOn(WriteContext& context, const RequestHead& head) {
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
Answer<Done, Setback> CheckOrdersStillLeave(WriteContext& context, const RequestHead& head) {
  const NamedValues params = KeyParams(head.key);
  std::vector<Statement> statements = {SelectRequestRows(head.key)};
  for (auto& part : {SelectEntries(EntriesOfRequest(std::string(kEntriesNamed), params)),
                     SelectOrders(context.work, std::string(kOrdersNamed), head.key, params)})
    statements.insert(statements.end(), part.begin(), part.end());
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what orders leave");
  const auto refusal = WhyOrdersRefuse(head, ReadRequestRows((*packets)[0]),
                                       ReadOrders((*packets)[3], (*packets)[4]),
                                       ReadEntries((*packets)[1], (*packets)[2]));
  if (refusal) return Refusal(*refusal);
  return Done{};
}

/// After the row was written: the status that all rows give, and who is next.
Answer<Done, Setback> SettleDecision(WriteContext& context, const RequestHead& head) {
  std::vector<Statement> statements = {SelectApprovalRows(head.key)};
  for (Statement& statement :
       SelectApprovers(kCostCenterOf, KeyParams(head.key), context.work.Today()))
    statements.push_back(std::move(statement));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading decisions");
  const std::vector<ApprovalRow> rows = ReadApprovalRows((*packets)[0]);
  const DocumentStatus status = StatusOf(rows);
  if (head.status == Approved && status != Approved) {
    const auto free = CheckNothingStandsOn(context, head);
    if (!free) return free;
  }
  if (head.status == Rejected && status != Rejected) {
    const auto left = CheckOrdersStillLeave(context, head);
    if (!left) return left;
  }
  ServerWrites writes(context.work);
  AddTurns(writes, head.key, rows, ReadApprovers((*packets)[1], (*packets)[2]));
  const auto written = writes.CarryOut(context.transaction, "noting turns");
  if (!written) return written;
  return WriteRequestStatus(context, head, status);
}

Answer<DecisionAsked, Setback> AskedIn(const Change& change) {
  const Variant* status = FindValue(change.after, adm::Status.name);
  const Variant* level = FindValue(change.before, adm::ConfirmationLevel.name);
  const Variant* sending = FindValue(change.before, adm::SendingNumber.name);
  const auto wanted = status ? status->AsInt() : std::nullopt;
  const bool decision = wanted && *wanted >= ApprovalRejected && *wanted <= ApprovalGiven;
  if (change.kind != ChangeKind::Update || !decision || !level || !sending) {
    return BadRequest("Редовете на одобрението се променят само с решение.");
  }
  return DecisionAsked{static_cast<int>(level->AsInt().value_or(0)), sending->AsInt().value_or(0),
                       static_cast<int>(*wanted)};
}

Answer<Done, Setback> BeforeDecisions(WriteContext& context, std::span<PreparedChange> changes) {
  const auto key = RequestOf(changes);
  if (!key) return key.GetFailure();
  if (changes.size() != 1) return BadRequest("Решенията се записват едно по едно.");
  PreparedChange& prepared = changes.front();
  const auto asked = AskedIn(prepared.change);
  if (!asked) return asked.GetFailure();
  auto judged = Judge(context, *key, *asked);
  if (!judged) return judged.GetFailure();
  prepared.change.after.clear();
  for (const NamedValue& value : judged->values) {
    const bool known = value.name != kOnBehalfOf.name;
    Impose(prepared, judged->row, value.name, value.value);
    if (!known) {
      std::erase_if(prepared.filled,
                    [&](const NamedValue& own) { return own.name == kOnBehalfOf.name; });
    }
  }
  context.kept = std::move(judged->head);
  return Done{};
}

Answer<Done, Setback> AfterDecisions(WriteContext& context, std::span<PreparedChange>) {
  return SettleDecision(context, *std::any_cast<RequestHead>(&context.kept));
}

}  // namespace

Answer<Done, Setback> DecideOnRequest(WriteContext& context, RequestKey key,
                                      const DecisionAsked& asked) {
  const auto judged = Judge(context, key, asked);
  if (!judged) return judged.GetFailure();
  ServerWrites writes(context.work);
  writes.Update(kApprovalTable, judged->row, judged->values);
  const auto written = writes.CarryOut(context.transaction, "writing a decision");
  if (!written) return written;
  return SettleDecision(context, judged->head);
}

WriteRules RequestApprovalRules() {
  return {.beforeWrite = &BeforeDecisions, .afterWrite = &AfterDecisions};
}

}  // namespace orvane
