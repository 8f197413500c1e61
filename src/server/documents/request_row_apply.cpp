#include <algorithm>
#include <any>
#include <set>

#include "packet/quantity.h"
#include "server/documents/named_statement.h"
#include "server/documents/request_apply.h"
#include "server/documents/request_parts.h"
#include "server/documents/request_pricing.h"
#include "server/documents/request_rows.h"
#include "server/documents/server_writes.h"
#include "server/documents/values.h"

namespace orvane {
namespace {

namespace det = purchase_request::det;
namespace field = purchase_request::head;

/// What the second hook needs of what the first one read.
struct RowsApply {
  RequestHead head;
  Decimal currSum;
  Decimal sum;
};

/// Facts behind the rows of a batch, read in one trip behind the head's lock.
struct RowFacts {
  RequestHead head;
  DocumentSettings settings;
  std::vector<RequestRow> rows;
  std::map<std::int64_t, EntryFacts> entries;
  std::map<std::int64_t, std::int64_t> numerators;  ///< of units, by code
  std::map<std::int64_t, OrderFacts> orders;
};

/// "select :V1 union all select :V2 union all " over the values of a column in the new values.
std::string SelectsOf(std::span<const PreparedChange> changes, std::string_view column,
                      NamedValues& params) {
  std::string selects;
  for (const PreparedChange& change : changes) {
    const Variant* value = FindValue(change.change.after, column);
    if (!value || value->IsNull()) continue;
    const std::string name = "V" + std::to_string(params.size());
    selects += "select :" + name + " union all ";
    params.push_back({name, *value});
  }
  return selects;
}

std::string ChangedNumbers(std::span<const PreparedChange> changes, NamedValues& params) {
  std::string list;
  for (const PreparedChange& change : changes) {
    const Variant* number = FindValue(change.change.before, det::RowNumber.name);
    if (!number) continue;
    const std::string name = "Row" + std::to_string(params.size());
    list += (list.empty() ? ":" : ", :") + name;
    params.push_back({name, *number});
  }
  return list.empty() ? "null" : list;
}

Answer<RowFacts, Setback> ReadFacts(WriteContext& context, RequestKey key,
                                    std::span<const PreparedChange> changes) {
  NamedValues params = {{"Id", key.id}, {"Version", key.version}};
  const std::string ofKept =
      "select {column} from PurchaseOrderDet where PurchaseOrderId = :Id and"
      " PurchaseOrderVer = :Version and RowNumber in (" +
      ChangedNumbers(changes, params) + ")";
  // One list, because PostgreSQL would walk the whole supply list for two joined by "or".
  const auto wanted = [&](std::string_view column, std::string_view what) {
    return std::string(what) + " in (" + SelectsOf(changes, column, params) +
           Replaced(ofKept, "{column}", column) + ")";
  };
  const std::string entries = wanted(det::SerialNumber.name, "{serial}");
  const std::string units = wanted(det::Measure.name, "Code");
  const std::string orders = wanted(det::SuppManifacOrderId.name, "{order}");

  std::vector<Statement> statements = {LockRequest(context.work, key), SelectSettings(),
                                       SelectRequestRows(key)};
  statements.push_back(Named("select Code, Numerator from Measures where " + units, params,
                             {{"Code", ValueKind::Int16, 0}, {"Numerator", ValueKind::Int32, 0}}));
  for (Statement& statement : SelectEntries(EntriesOfRequest(entries, params)))
    statements.push_back(std::move(statement));
  for (Statement& statement : SelectOrders(context.work, orders, key, params))
    statements.push_back(std::move(statement));
  auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what stands behind rows");

  const auto head = ReadRequestHead((*packets)[0]);
  if (auto refusal = WhyNotEditable(head, key)) return Refusal(*std::move(refusal));
  RowFacts facts;
  facts.head = *head;
  facts.settings = ReadSettings((*packets)[1]);
  facts.rows = ReadRequestRows((*packets)[2]);
  const DataPacket& measures = (*packets)[3];
  for (std::size_t row = 0; row < measures.rowCount; ++row) {
    facts.numerators[measures.At(row, "Code").AsInt().value_or(0)] =
        measures.At(row, "Numerator").AsInt().value_or(1);
  }
  facts.entries = ReadEntries((*packets)[4], (*packets)[5]);
  facts.orders = ReadOrders((*packets)[6], (*packets)[7]);
  return facts;
}

const NamedValues* PresentRowOf(const RowFacts& facts, const Change& change) {
  const Variant* number = FindValue(change.before, det::RowNumber.name);
  for (const RequestRow& row : facts.rows) {
    if (number && number->AsInt() == row.number) return &row.values;
  }
  return nullptr;
}

bool HasNumber(const std::vector<RequestRow>& rows, const Change& change) {
  const auto number = ValueAfter(change, {}, det::RowNumber.name).AsInt();
  return std::any_of(rows.begin(), rows.end(),
                     [&](const RequestRow& row) { return row.number == number; });
}

/// Codes, sizes of units and the amount are the server's to fill.
std::optional<Failure> FillRow(const RowFacts& facts, const NamedValues& present,
                               PreparedChange& prepared) {
  const Change& change = prepared.change;
  const auto serial = ValueAfter(change, present, det::SerialNumber.name).AsInt().value_or(0);
  const auto measure = ValueAfter(change, present, det::Measure.name).AsInt().value_or(0);
  const std::string where = NameOf(facts.head.key) + ", ред " +
                            ValueAfter(change, present, det::RowNumber.name).ToText() + ": ";
  const auto entry = facts.entries.find(serial);
  if (entry == facts.entries.end()) {
    return Refused(where + "в списъка за доставка няма пореден номер " + std::to_string(serial) +
                   ". Изберете друг.");
  }
  const auto unit = facts.numerators.find(measure);
  if (unit == facts.numerators.end()) {
    return Refused(where + "няма мярка с код " + std::to_string(measure) + ". Изберете друга.");
  }
  if (ValueAfter(change, present, det::Quantity.name).AsDouble().value_or(0) < 0) {
    return Refused(where + "количеството не може да бъде отрицателно. Въведете друго.");
  }
  const auto code = [](const std::optional<std::int64_t>& value) {
    return value ? Variant(*value) : Variant();
  };
  Impose(prepared, present, det::InventoryId.name, code(entry->second.inventoryId));
  Impose(prepared, present, det::ServiceCode.name, code(entry->second.serviceCode));
  Impose(prepared, present, det::Numerator.name, entry->second.numerator);
  Impose(prepared, present, det::RowNumerator.name, unit->second);
  const RequestRow row = RequestRowOf(After(present, change));
  const auto amount =
      RowAmount(facts.head.kindSupply, facts.head.rate, row, entry->second, facts.settings);
  if (!amount) return TooGreat(where + "сумата");
  Impose(prepared, present, det::CurrSumWithoutVAT.name, *amount);
  return std::nullopt;
}

/// Rows that name an order which one of the changes names.
std::vector<RequestRow> OrderedTogether(const std::vector<RequestRow>& rows,
                                        std::span<const PreparedChange> changes) {
  std::set<std::int64_t> orders;
  for (const PreparedChange& prepared : changes) {
    if (prepared.change.kind == ChangeKind::Delete) continue;
    const Variant* number = FindValue(prepared.change.after, det::RowNumber.name);
    if (!number) number = FindValue(prepared.change.before, det::RowNumber.name);
    for (const RequestRow& row : rows) {
      if (number && number->AsInt() == row.number && row.order) orders.insert(*row.order);
    }
  }
  std::vector<RequestRow> together;
  for (const RequestRow& row : rows) {
    if (row.order && orders.contains(*row.order)) together.push_back(row);
  }
  return together;
}

Answer<Done, Setback> BeforeRows(WriteContext& context, std::span<PreparedChange> changes) {
  const auto key = RequestOf(changes);
  if (!key) return key.GetFailure();
  auto facts = ReadFacts(context, *key, changes);
  if (!facts) return facts.GetFailure();
  std::vector<RequestRow> rows = facts->rows;
  for (PreparedChange& prepared : changes) {
    const bool insert = prepared.change.kind == ChangeKind::Insert;
    const NamedValues* present = insert ? nullptr : PresentRowOf(*facts, prepared.change);
    if (prepared.change.kind != ChangeKind::Delete && (insert || present)) {
      static const NamedValues kNothing;
      const NamedValues& old = present ? *present : kNothing;
      if (auto refusal = FillRow(*facts, old, prepared)) return Refusal(*std::move(refusal));
      CompleteOldValues(prepared.change, old);
    }
    if (insert && HasNumber(rows, prepared.change)) {
      return Refusal(Refused(NameOf(*key) + " вече има ред " +
                             ValueAfter(prepared.change, {}, det::RowNumber.name).ToText() +
                             ". Изберете друг номер на ред."));
    }
    ApplyChange(rows, prepared.change);
  }
  const auto refusal =
      WhyOrdersRefuse(facts->head, OrderedTogether(rows, changes), facts->orders, facts->entries);
  if (refusal) return Refusal(*refusal);
  const auto sums = SumsOf(rows, facts->head.rate, facts->settings);
  if (!sums) return Refusal(TooGreat(NameOf(*key) + ": сумата"));
  context.kept = RowsApply{std::move(facts->head), sums->currency, sums->national};
  return Done{};
}

Answer<Done, Setback> AfterRows(WriteContext& context, std::span<PreparedChange>) {
  const RowsApply& apply = *std::any_cast<RowsApply>(&context.kept);
  context.headMoved = {{std::string(field::CurrSumPurchaseOrder.name), apply.currSum},
                       {std::string(field::SumPurchaseOrder.name), apply.sum}};
  ServerWrites writes(context.work);
  writes.Update(RequestTable(), apply.head.row, context.headMoved);
  return writes.CarryOut(context.transaction, "writing a request's sums");
}

}  // namespace

WriteRules RequestRowRules() {
  return {.beforeWrite = &BeforeRows, .afterWrite = &AfterRows};
}

}  // namespace orvane
