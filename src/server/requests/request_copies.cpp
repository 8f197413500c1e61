#include "server/requests/request_copies.h"

#include "server/documents/claims.h"
#include "server/documents/document_pricing.h"
#include "server/documents/document_steps.h"
#include "server/documents/rates.h"
#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/providers/arguments.h"
#include "server/providers/client_keys.h"
#include "server/requests/request_head.h"
#include "server/requests/request_moves.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;
namespace field = purchase_request::head;
using request::new_rec::At;

constexpr int kLastVersion = 255;

/// A request as it is made: its head and the rows of its parts.
struct NewRequest {
  DocumentKey key;
  NamedValues head;
  std::vector<NamedValues> rows;
  std::vector<NamedValues> schedule;
  std::vector<NamedValues> plan;
};

std::vector<NamedValues> AllRows(const DataPacket& packet) {
  std::vector<NamedValues> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row)
    rows.push_back(RowValues(packet, row));
  return rows;
}

/// Entered, by the asker, now; nothing of what came later.
void StartAnew(const Work& work, NewRequest& made) {
  for (const FieldDef* column :
       {&field::AmendFrom, &field::AmendOn, &field::AnnulFrom, &field::AnnulOn})
    SetValue(made.head, column->name, Variant());
  SetValue(made.head, field::POIdNumber.name, made.key.id);
  SetValue(made.head, field::POVersion.name, made.key.version);
  SetValue(made.head, field::CreatedFrom.name, work.Who().login);
  SetValue(made.head, field::CreatedOn.name, work.Now());
  SetValue(made.head, field::Status.name, static_cast<int>(Entered));
  SetValue(made.head, field::OldVersion.name, false);
  SetValue(made.head, stored::kSendingNumber.name, 0);
  for (const FieldDef* column : {&stored::kSentFrom, &stored::kSentOn, &kRequestServiceEmployee})
    SetValue(made.head, column->name, Variant());
  for (std::vector<NamedValues>* part : {&made.rows, &made.schedule, &made.plan}) {
    for (NamedValues& row : *part) {
      SetValue(row, "PurchaseOrderId", made.key.id);
      SetValue(row, "PurchaseOrderVer", made.key.version);
    }
  }
  for (NamedValues& row : made.schedule)
    SetValue(row, request::del::Delivered.name, false);
  for (NamedValues& row : made.plan)
    SetValue(row, request::pay::SupplyInvoiceId.name, Variant());
}

void AddWrites(ServerWrites& writes, const NewRequest& made) {
  writes.Insert(StoredRequest().head, made.head);
  for (const NamedValues& row : made.rows)
    writes.Insert(request::det::dspPurchaseOrderDet, row);
  for (const NamedValues& row : made.schedule)
    writes.Insert(request::del::dspPurchaseOrderDel, row);
  for (const NamedValues& row : made.plan)
    writes.Insert(request::pay::dspPurchaseOrderPayPl, row);
}

/// What both kinds read, behind the lock of the request they start from.
struct Source {
  StoredHead head;
  DocumentSettings settings;
  std::vector<NamedValues> rows;
  std::vector<NamedValues> schedule;
  std::vector<NamedValues> plan;
  std::int64_t admissible = 0;      ///< cost centres for which the asker may request
  std::int64_t admissibleHere = 0;  ///< is the request's among them
  std::int64_t delivery = 0;        ///< a delivery that is not annulled, 0 when none
};

Answer<Source, Setback> ReadSource(Transaction& transaction, const Work& work, DocumentKey key) {
  const NamedValues params = {
      {"Id", key.id}, {"Version", key.version}, {"Employee", work.Who().Employee().value_or(0)}};
  const Statement statements[] = {
      LockHead(work, StoredRequest(), key),
      SelectSettings(),
      SelectPart(StoredRequest(), StoredRequest().rows, key),
      SelectPart(StoredRequest(), request::del::dspPurchaseOrderDel, key),
      SelectPart(StoredRequest(), request::pay::dspPurchaseOrderPayPl, key),
      Named("select count(*), coalesce(sum(case when n.CostCenter = q.CostCenter then 1 else 0 end)"
            ", 0) from PurchaseOrder q join AdmissibleNotifiers n on n.Notifier = :Employee"
            " where q.POIdNumber = :Id and q.POVersion = :Version",
            params, {{"All", ValueKind::Code, 0}, {"Here", ValueKind::Code, 0}}),
      Named("select coalesce(min(IdNumber), 0) from Deliveries where PurchaseOrderId = :Id"
            " and PurchaseOrderVer = :Version and AnnulOn is null",
            params, {{"IdNumber", ValueKind::Int32, 0}})};
  const auto packets = transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading a request to start from");
  const auto head = ReadHead(StoredRequest(), (*packets)[0]);
  if (!head || !head->seen) return Refusal(*WhyClosed(StoredRequest(), std::nullopt, key));
  Source source;
  source.head = *head;
  source.settings = ReadSettings((*packets)[1]);
  source.rows = AllRows((*packets)[2]);
  source.schedule = AllRows((*packets)[3]);
  source.plan = AllRows((*packets)[4]);
  source.admissible = (*packets)[5].At(0, "All").AsInt().value_or(0);
  source.admissibleHere = (*packets)[5].At(0, "Here").AsInt().value_or(0);
  source.delivery = (*packets)[6].At(0, 0).AsInt().value_or(0);
  return source;
}

std::string Asker(const Work& work) {
  const auto employee = work.Who().Employee();
  return employee ? "Заявител с код " + std::to_string(*employee)
                  : "Потребител „" + work.Who().login + "“ без запис в „Служители“";
}

// --- a new version -------------------------------------------------------------------------------

std::optional<Failure> WhyNoNewVersion(const Work& work, const Source& source) {
  const StoredHead& head = source.head;
  if (auto closed = WhyClosed(StoredRequest(), head, head.key)) return closed;
  if (head.status >= Fulfilling) {
    return Refused(NameOf(head.key) + " е със статус „" + std::string(StatusName(head.status)) +
                   "“ и от него не се прави нова версия. Направете копие.");
  }
  if (source.delivery != 0) {
    return Refused(
        "По " + NameOf(head.key) + " има доставка " + std::to_string(source.delivery) +
        " и от него не се прави нова версия. Анулирайте доставката или направете копие.");
  }
  if (source.admissible == 0) {
    return Refused(Asker(work) +
                   " няма право да създава „Искане за покупка“ (виж „Допустими "
                   "заявители“).");
  }
  if (head.key.version >= kLastVersion) {
    return Refused(NameOf(head.key) + " е последната възможна версия. Направете копие.");
  }
  return std::nullopt;
}

Answer<DocumentKey, Setback> MakeVersion(WriteContext& context, DocumentKey key) {
  const auto source = ReadSource(context.transaction, context.work, key);
  if (!source) return source.GetFailure();
  if (auto refusal = WhyNoNewVersion(context.work, *source)) return Refusal(*std::move(refusal));
  NewRequest made{
      {key.id, key.version + 1}, source->head.row, source->rows, source->schedule, source->plan};
  StartAnew(context.work, made);
  ServerWrites writes(context.work);
  writes.Update(StoredRequest().head, source->head.row,
                {{std::string(field::OldVersion.name), true}});
  AddWrites(writes, made);
  const auto written = writes.CarryOut(context.transaction, "making a new version");
  if (!written) return written.GetFailure();
  const auto settled = SettleOrders(context, key);  // what the former took is free again
  if (!settled) return settled.GetFailure();
  return made.key;
}

// --- a copy --------------------------------------------------------------------------------------

std::optional<Failure> WhyNoCopy(const Work& work, const Source& source) {
  if (source.admissibleHere != 0) return std::nullopt;
  return Refused(Asker(work) + " не е допустим за център за разход " +
                 std::to_string(source.head.costCenter) + " (виж „Допустими заявители“).");
}

/// Amounts of a copy follow today's prices and rate where they follow prices at all.
std::optional<Failure> PriceCopy(NewRequest& made, const Source& source, Decimal rate,
                                 const std::map<std::int64_t, EntryFacts>& entries) {
  std::vector<DocumentRow> rows;
  for (NamedValues& values : made.rows) {
    SetValue(values, request::det::SuppManifacOrderId.name, Variant());
    DocumentRow row = DocumentRowOf(values);
    const auto entry = entries.find(row.serial);
    const auto amount =
        RowAmount(source.head.kindSupply, rate, row,
                  entry == entries.end() ? EntryFacts{} : entry->second, source.settings);
    if (!amount) return TooGreat(NameOf(source.head.key) + ": сумата");
    row.amount = *amount;
    SetValue(values, request::det::CurrSumWithoutVAT.name, *amount);
    rows.push_back(std::move(row));
  }
  const auto sums = SumsOf(rows, rate, source.settings);
  if (!sums) return TooGreat(NameOf(source.head.key) + ": сумата");
  SetValue(made.head, field::CurrSumPurchaseOrder.name, sums->currency);
  SetValue(made.head, field::SumPurchaseOrder.name, sums->national);
  return std::nullopt;
}

Answer<DocumentKey, Setback> MakeCopy(WriteContext& context, DocumentKey key) {
  const Work& work = context.work;
  const auto source = ReadSource(context.transaction, work, key);
  if (!source) return source.GetFailure();
  if (auto refusal = WhyNoCopy(work, *source)) return Refusal(*std::move(refusal));
  NamedValues params = KeyParams(key);
  params.push_back({"Today", work.Today()});
  EntriesAsked asked = EntriesOf(StoredRequest(), EntriesNamed(StoredRequest()), params);
  asked.day = ":Today";  // a copy is dated today
  std::vector<Statement> statements = SelectEntries(asked);
  statements.push_back(SelectRate(source->settings, source->head.kindCurrency, work.Today()));
  statements.push_back(NextNumber("PurchaseOrder"));
  const auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "numbering a copy");

  const bool national = source->head.kindCurrency == source->settings.nationalCurrency;
  Decimal rate(10'000'000, 7);
  if (!national && (*packets)[2].rowCount > 0) rate = *(*packets)[2].At(0, 0).AsDecimal();
  const std::int64_t id = packets->back().At(0, 0).AsInt().value_or(0);
  NewRequest made{{id, 1}, source->head.row, source->rows, source->schedule, source->plan};
  StartAnew(work, made);
  SetValue(made.head, field::DocumentDate.name, work.Today());
  SetValue(made.head, field::RateOfExchange.name, rate);
  SetValue(made.head, field::Notifier.name, work.Who().Employee().value_or(0));
  const auto entries = ReadEntries((*packets)[0], (*packets)[1]);
  if (auto refusal = PriceCopy(made, *source, rate, entries)) return Refusal(*std::move(refusal));
  ServerWrites writes(work);
  AddWrites(writes, made);
  const auto written = writes.CarryOut(context.transaction, "copying a request");
  if (!written) return written.GetFailure();
  return made.key;
}

}  // namespace

Answer<VariantArray> MakeRequestFrom(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Operation", ValueKind::String, Need::Needed}, {"Kind", ValueKind::Byte, Need::Needed},
      {"Id", ValueKind::Int32, Need::Needed},         {"Version", ValueKind::Int32, Need::Needed},
      {"Login", ValueKind::String, Need::Optional},
  };
  const auto sound = CheckArguments(request::new_rec::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto kind = ask[At::kKind].AsInt();
  const auto id = ask[At::kId].AsInt();
  const auto version = ask[At::kVersion].AsInt();
  if (kind != request::new_rec::kNewVersion && kind != request::new_rec::kCopy) {
    return Failure{FailureKind::BadRequest, "Методът „NewRec“ не приема аргумента „Kind“."};
  }
  const auto claimed = CheckClaims(work, {ask[At::kLogin], {}, {}});
  if (!claimed) return claimed.GetFailure();
  return WriteOnce(
      work, {}, [&](Transaction& transaction, const Packets&) -> Answer<VariantArray, Setback> {
        const Variant nothing;
        WriteContext context{work, transaction, nothing, {}, {}, {}};
        const DocumentKey from{*id, *version};
        const auto key =
            kind == request::new_rec::kCopy ? MakeCopy(context, from) : MakeVersion(context, from);
        if (!key) return key.GetFailure();
        return VariantArray{1, key->id, key->version};
      });
}

}  // namespace orvane::server
