#include "server/demo/demo_documents.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "server/demo/demo_contracts.h"
#include "server/demo/demo_orders.h"
#include "server/demo/demo_request.h"
#include "server/demo/demo_tables.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

constexpr int kRequestKind = static_cast<int>(DocumentKind::PurchaseRequest);
constexpr std::int64_t kRequestsTogether = 4000;     // of a round of statements
constexpr std::int64_t kRequestsPerCommit = 20'000;  // of a transaction
/// So many requests make a file with which SQLite's usual cache is too small.
constexpr std::int64_t kManyRequests = 20'000;
constexpr std::string_view kStorekeeper = "angelov";
constexpr char kRemark[] = "Да се достави с документ за произход.";
constexpr char kRemark2[] = "To be delivered with a certificate of origin.";

constexpr char kSetCounter[] =
    "update DocumentCounter set LastNumber = (select coalesce(max({key}), 0) from {table}) "
    "where TableName = '{table}'";
struct Counter {
  std::string_view table;
  std::string_view key;
};
constexpr Counter kCounters[] = {{"PurchaseOrder", "POIdNumber"},
                                 {"SuppManifacOrder", "IdNumber"},
                                 {"Deliveries", "IdNumber"},
                                 {"SuppliesContracts", "IdNumber"}};

Variant When(bool is, Stamp moment) {
  return is ? Variant(moment) : Variant();
}
Variant Who(bool is, std::string_view login) {
  return is ? Variant(login) : Variant();
}

void AddHead(DemoWriter& writer, const DemoRequest& row) {
  const bool sent = row.sendings > 0;
  const bool byService = row.status >= Approved && row.decisions.empty();
  writer.Add(demo::kRequests, {row.id,
                               row.version,
                               row.day,
                               row.description,
                               row.description2,
                               OrNull(row.rationale),
                               OrNull(row.rationale2),
                               row.center->code,
                               row.notifier,
                               row.supplier ? Variant(row.supplier->code) : Variant(),
                               row.contract ? Variant(row.contract->id) : Variant(),
                               static_cast<int>(row.kind),
                               row.contract && row.contract->transport ? 2 : 1,
                               static_cast<int>(row.currency),
                               row.rate,
                               Cents(row.currCents),
                               Cents(row.cents),
                               row.creator,
                               row.created,
                               OrNull(row.amender),
                               When(!row.amender.empty(), row.amended),
                               row.status,
                               Who(row.annulled, row.creator),
                               When(row.annulled, row.annulledOn),
                               row.oldVersion,
                               row.sendings,
                               Who(sent, row.creator),
                               When(sent, row.sent),
                               byService ? Variant(kServiceEmployee) : Variant()});
}

void AddRows(DemoWriter& writer, const DemoRequest& request) {
  int number = 0;
  for (const DemoRequestRow& row : request.rows) {
    writer.Add(demo::kRequestRows,
               {request.id, request.version, ++number, row.entry->serialNumber,
                OrNull(row.entry->material), OrNull(row.entry->service),
                static_cast<int>(row.measure), OrNull(row.order), static_cast<double>(row.quantity),
                DemoMeasureOf(row.entry->measure).numerator, DemoMeasureOf(row.measure).numerator,
                Cents(row.currCents), row.remarked ? Variant(kRemark) : Variant(),
                row.remarked ? Variant(kRemark2) : Variant()});
  }
}

void AddPlans(DemoWriter& writer, const DemoRequest& request) {
  for (const Date day : request.deliveries) {
    const bool delivered = request.delivered && day == request.deliveries.front();
    const bool abroad = request.supplier && request.supplier->town == 0;
    writer.Add(demo::kRequestDates, {request.id, request.version, day,
                                     abroad ? Variant(day.PlusDays(-4)) : Variant(), delivered});
  }
  int number = 0;
  for (const DemoPayment& row : request.payments) {
    writer.Add(demo::kRequestPayments, {request.id, request.version, ++number, row.invoice,
                                        Cents(row.currCents), row.advance, false, row.due});
  }
}

void AddDecisions(DemoWriter& writer, const DemoRequest& request) {
  for (const DemoDecision& row : request.decisions) {
    const bool decided = row.status != ApprovalWaiting;
    writer.Add(
        demo::kRequestApproval,
        {request.id, request.version, row.level, request.sendings, static_cast<int>(row.approver),
         row.status, decided ? Variant(row.head) : Variant(), When(decided, row.when)});
  }
  for (const std::int64_t employee : request.turns)
    writer.Add(demo::kTurns, {employee, kRequestKind, request.id, request.version});
}

/// The first planned delivery came: whole, or half when another one is planned.
void AddDelivery(DemoWriter& writer, const DemoRequest& request, std::int32_t id) {
  const Date day = request.deliveries.front();
  const Stamp moment = TimeZone{}.At(day, 15, id % 60);
  const bool stored =
      request.kind == kRawMaterials || request.kind == kWares || request.kind == kOtherMaterials;
  const int store = request.kind == kOtherMaterials ? 4 : request.kind;
  writer.Add(demo::kDeliveries,
             {id, day, day, request.id, request.version, static_cast<int>(request.kind),
              request.supplier->code, stored ? Variant(store) : Variant(),
              std::to_string(100000 + id), day, static_cast<int>(Approved), kStorekeeper, moment,
              kStorekeeper, moment, 1, kStorekeeper, moment});
  const std::int64_t part = request.deliveries.size() > 1 ? 2 : 1;
  int number = 0;
  for (const DemoRequestRow& row : request.rows) {
    writer.Add(demo::kDeliveryRows,
               {id, ++number, row.entry->serialNumber, OrNull(row.entry->material),
                OrNull(row.entry->service), static_cast<int>(row.measure),
                static_cast<double>((row.quantity + part - 1) / part),
                DemoMeasureOf(row.entry->measure).numerator, DemoMeasureOf(row.measure).numerator});
  }
}

/// Writes the requests of one transaction after the other.
class RequestWriter {
 public:
  RequestWriter(Database& database, const DemoRequests& requests, const DemoDocuments& documents)
      : database_(database), requests_(requests), documents_(documents) {}

  EngineAnswer<Done> WriteAll() {
    for (std::int64_t first = 1; first <= requests_.Count(); first += kRequestsPerCommit) {
      const std::int64_t last = std::min(first + kRequestsPerCommit - 1, requests_.Count());
      if (const auto written = WriteTransaction(first, last); !written) return written;
      if (documents_.progress) documents_.progress(last);
    }
    return Done{};
  }

 private:
  EngineAnswer<Done> WriteTransaction(std::int64_t first, std::int64_t last) {
    auto transaction = database_.Begin();
    if (!transaction) return transaction.GetFailure();
    for (std::int64_t number = first; number <= last; ++number) {
      Add(number);
      if (number < last && number % kRequestsTogether != 0) continue;
      if (const auto sent = writer_.Flush(**transaction); !sent) return sent;
    }
    return (*transaction)->Commit();
  }

  void Add(std::int64_t number) {
    for (const DemoRequest& request : requests_.Make(number)) {
      AddHead(writer_, request);
      AddRows(writer_, request);
      AddPlans(writer_, request);
      AddDecisions(writer_, request);
      if (request.delivered) AddDelivery(writer_, request, ++deliveries_);
    }
  }

  Database& database_;
  const DemoRequests& requests_;
  const DemoDocuments& documents_;
  DemoWriter writer_;
  std::int32_t deliveries_ = 0;
};

std::string Replaced(std::string text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at))
    text.replace(at, what.size(), with);
  return text;
}

EngineAnswer<Done> SetCounters(Database& database) {
  auto transaction = database.Begin();
  if (!transaction) return transaction.GetFailure();
  for (const Counter& counter : kCounters) {
    const std::string text =
        Replaced(Replaced(kSetCounter, "{key}", counter.key), "{table}", counter.table);
    const auto set = (*transaction)->Execute(Command(text));
    if (!set) return set.GetFailure();
  }
  return (*transaction)->Commit();
}

EngineAnswer<Done> WriteFrames(Database& database, const DemoWorld& world,
                               const std::vector<DemoContract>& contracts,
                               const std::vector<DemoOrder>& orders) {
  auto transaction = database.Begin();
  if (!transaction) return transaction.GetFailure();
  DemoWriter writer;
  AddContracts(writer, contracts);
  AddOrders(writer, world, orders);
  if (const auto written = writer.Flush(**transaction); !written) return written;
  return (*transaction)->Commit();
}

/// Pages of many indexes are touched at once; the cache goes back to its size afterwards.
EngineAnswer<Done> SetCache(Database& database, std::string_view kibibytes) {
  if (database.Kind() != Engine::Sqlite) return Done{};
  return database.RunScript("pragma cache_size = -" + std::string(kibibytes));
}

}  // namespace

EngineAnswer<Done> WriteDocuments(Database& database, const DemoWorld& world,
                                  const DemoDocuments& documents) {
  const auto contracts = DemoContracts(world.partners, world.seed);
  const auto orders = DemoOrders(contracts, documents.requests, world.seed);
  if (const auto written = WriteFrames(database, world, contracts, orders); !written)
    return written;
  const DemoRequests requests(world, contracts, orders, documents.requests);
  const bool many = documents.requests > kManyRequests;
  if (many) {
    if (const auto set = SetCache(database, "524288"); !set) return set;
  }
  if (const auto written = RequestWriter(database, requests, documents).WriteAll(); !written)
    return written;
  if (many) {
    if (const auto set = SetCache(database, "2000"); !set) return set;
  }
  return SetCounters(database);
}

}  // namespace orvane::server
