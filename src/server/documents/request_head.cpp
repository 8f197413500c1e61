#include "server/documents/request_head.h"

#include "server/documents/named_statement.h"
#include "server/providers/change_writer.h"

namespace orvane {
namespace {

namespace request = purchase_request;
namespace field = purchase_request::head;

constexpr FieldDef kTableFields[] = {
    field::POIdNumber,       field::POVersion,
    field::DocumentDate,     field::Description,
    field::Description2,     field::Rationale,
    field::Rationale2,       field::CostCenter,
    field::Notifier,         field::Supplier,
    field::ContractId,       field::KindSupply,
    field::IncTranspInPrice, field::KindCurrency,
    field::RateOfExchange,   field::CurrSumPurchaseOrder,
    field::SumPurchaseOrder, field::CreatedFrom,
    field::CreatedOn,        field::AmendFrom,
    field::AmendOn,          field::Status,
    field::AnnulFrom,        field::AnnulOn,
    field::OldVersion,       kRequestSendingNumber,
    kRequestSentFrom,        kRequestSentOn,
    kRequestServiceEmployee,
};
constexpr ProviderDef kTable{"", "PurchaseOrder", kTableFields};

struct StatusRow {
  int status;
  std::string_view name;
  std::string_view wayOut;  ///< of somebody who wants to change the request
};
constexpr StatusRow kStatuses[] = {
    {Rejected, "Отхвърлен", "Направете нова версия или копие."},
    {Entered, "Въведен", ""},
    {ForApproval, "За одобрение", "Първо го върнете за корекция."},
    {PartlyApproved, "Частично одобрен", "Направете нова версия."},
    {Approved, "Одобрен", "Направете нова версия."},
    {Fulfilling, "В изпълнение", "Направете ново искане."},
    {Completed, "Приключен", "Първо премахнете приключването."},
};

const StatusRow* FindStatus(int status) {
  for (const StatusRow& row : kStatuses) {
    if (row.status == status) return &row;
  }
  return nullptr;
}

std::string HasStatus(const RequestHead& head) {
  return NameOf(head.key) + " е със статус „" + std::string(StatusName(head.status)) + "“";
}

}  // namespace

ProviderDef RequestTable() {
  return kTable;
}

Statement LockRequest(const Work& work, RequestKey key) {
  const Visibility visibility(kSeenRequests, SightOf(work));
  std::string text = "select ";
  std::vector<ResultColumn> columns = ColumnsOf(kTable);
  for (const ResultColumn& column : columns)
    text += "p." + column.name + ", ";
  text += "case when " + visibility.On("p") +
          " then 1 else 0 end from PurchaseOrder p where p.POIdNumber = :Id and p.POVersion = "
          ":Version";
  if (work.EngineKind() == Engine::Postgres) text += " for update of p";
  columns.push_back({"Seen", ValueKind::Bool, 0});
  NamedValues params = visibility.Params();
  params.push_back({"Id", key.id});
  params.push_back({"Version", key.version});
  return Named(text, params, std::move(columns));
}

std::optional<RequestHead> ReadRequestHead(const DataPacket& packet) {
  if (packet.rowCount == 0) return std::nullopt;
  const auto at = [&](const FieldDef& column) { return packet.At(0, column.name); };
  const auto number = [&](const FieldDef& column) { return at(column).AsInt().value_or(0); };
  const auto amount = [&](const FieldDef& column) {
    return at(column).AsDecimal().value_or(Decimal());
  };
  RequestHead head;
  head.key = {number(field::POIdNumber), number(field::POVersion)};
  head.row = RowValues(packet, 0);
  head.row.pop_back();  // whether it is seen
  head.documentDate = at(field::DocumentDate).AsDate().value_or(Date{});
  head.costCenter = number(field::CostCenter);
  head.notifier = number(field::Notifier);
  head.supplier = at(field::Supplier).AsInt();
  head.kindSupply = number(field::KindSupply);
  head.kindCurrency = number(field::KindCurrency);
  head.rate = amount(field::RateOfExchange);
  head.currSum = amount(field::CurrSumPurchaseOrder);
  head.sum = amount(field::SumPurchaseOrder);
  head.status = static_cast<int>(number(field::Status));
  head.annulled = !at(field::AnnulOn).IsNull();
  head.old = number(field::OldVersion) != 0;
  head.seen = packet.At(0, "Seen").AsBool().value_or(false);
  head.sending = number(kRequestSendingNumber);
  head.createdFrom = at(field::CreatedFrom).ToText();
  head.sentFrom = at(kRequestSentFrom).ToText();
  head.sentOn = at(kRequestSentOn).AsStamp();
  return head;
}

Statement SelectPart(const ProviderDef& part, RequestKey key) {
  std::string columns;
  std::string order;
  std::vector<ResultColumn> result;
  for (const FieldDef& field : part.fields) {
    if (field.Is(Joined)) continue;
    columns += (columns.empty() ? "" : ", ") + std::string(field.name);
    if (field.Is(Key)) order += (order.empty() ? "" : ", ") + std::string(field.name);
    result.push_back({std::string(field.name), field.kind, field.size});
  }
  return Named("select " + columns + " from " + std::string(part.table) +
                   " where PurchaseOrderId = :Id and PurchaseOrderVer = :Version order by " + order,
               {{"Id", key.id}, {"Version", key.version}}, std::move(result));
}

bool IsForbiddenOwn(const Work& work, const std::string& createdFrom, std::int64_t notifier) {
  if (work.Options().mayApproveOwn) return false;
  return createdFrom == work.Who().login || work.Who().Employee() == notifier;
}

std::string NameOf(RequestKey key) {
  return "Искане за покупка " + std::to_string(key.id) + ", версия " + std::to_string(key.version);
}

std::string_view StatusName(int status) {
  const StatusRow* row = FindStatus(status);
  return row ? row->name : "?";
}

std::optional<Failure> WhyClosed(const std::optional<RequestHead>& head, RequestKey key) {
  if (!head || !head->seen) return Refused(NameOf(key) + " не съществува.");
  if (head->old) {
    return Refused(NameOf(key) + " е стара версия и не се променя. Отворете текущата версия.");
  }
  if (head->annulled) return Refused(NameOf(key) + " е анулирано и не се променя.");
  return std::nullopt;
}

std::optional<Failure> WhyNotEditable(const std::optional<RequestHead>& head, RequestKey key) {
  if (auto closed = WhyClosed(head, key)) return closed;
  if (head->status == Entered) return std::nullopt;
  const StatusRow* status = FindStatus(head->status);
  return Refused(HasStatus(*head) + " и не се променя. " +
                 std::string(status ? status->wayOut : ""));
}

Answer<const Move*> JudgeMove(const RequestHead& head, const MoveAsked& asked) {
  for (const Move& move : request::kMoves) {
    if (move.to != asked.to || !move.from.Has(head.status)) continue;
    if (move.who == Who::ChiefOrRequester && !asked.chiefOrRequester) {
      return Refused(
          "Само заявителят и началникът на центъра за разход могат да променят "
          "приключването на " +
          NameOf(head.key) + ".");
    }
    return &move;
  }
  if (head.status == Completed) {
    return Refused(HasStatus(head) + ". Първо премахнете приключването.");
  }
  if (asked.to == 0) return Refused(HasStatus(head) + " и не може да бъде анулирано.");
  return Refused(HasStatus(head) + " и не може да получи статус „" +
                 std::string(StatusName(asked.to)) + "“.");
}

}  // namespace orvane
