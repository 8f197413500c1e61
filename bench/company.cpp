#include "company.h"

#include <libpq-fe.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>

#include "packet/clock.h"
#include "server/demo/demo_company.h"
#include "server/schema/migrate.h"

namespace orvane::bench {
namespace {

std::string Variable(const char* name, const char* otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr || *value == '\0' ? otherwise : value;
}

template <class T, class F>
T Must(Answer<T, F> answer) {
  if (answer) return *std::move(answer);
  if constexpr (std::is_same_v<F, Failure>) {
    std::fprintf(stderr, "company: %s\n", answer.GetFailure().message.c_str());
  } else {
    std::fprintf(stderr, "company: %s\n", answer.GetFailure().text.c_str());
  }
  std::exit(1);
}

std::string ServerInfo() {
  return Variable("ORVANE_TEST_POSTGRES", "");
}

/// Databases are made and renamed outside of transactions, hence not by a Database.
bool Administer(const std::string& sql) {
  PGconn* connection = PQconnectdb(ServerInfo().c_str());
  PGresult* result = PQexec(connection, sql.c_str());
  const ExecStatusType status = PQresultStatus(result);
  const bool found = status == PGRES_TUPLES_OK && PQntuples(result) > 0;
  if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
    std::fprintf(stderr, "company: %s\n", PQerrorMessage(connection));
    std::exit(1);
  }
  PQclear(result);
  PQfinish(connection);
  return found;
}

std::unique_ptr<Database> OpenAt(Engine engine, const std::string& location) {
  if (engine == Engine::Sqlite) return Must(OpenSqlite(location));
  return Must(OpenPostgres({location, 8}));
}

std::string AddEntries() {
  return "with recursive n (i) as (select 1 union all select i + 1 from n where i < " +
         std::to_string(kManyEntries) +
         "), e (Serial, Name) as (select 50000000 + i, 'проба ' || substr(cast(1000000 + i *"
         " 4001 % 500000 as text), 2) || ' резервна част' from n) "
         "insert into BaseSupplyList (SerialNumber, Name, FoldName, Kind, Measure, EffectiveName,"
         " FoldEffectiveName) select Serial, Name, Name, 1, 100, Name, Name from e";
}

/// Every statement is the same on both engines but for its days.
std::string AddLists(Engine engine) {
  const auto day = [&](int days) {
    const std::string number = std::to_string(days);
    return engine == Engine::Sqlite ? number : "date '1970-01-01' + " + number;
  };
  const std::string full = std::to_string(kFullList);
  const std::string few = std::to_string(kFewList);
  const std::string many = " from BaseSupplyList where SerialNumber > 50000000";
  const std::string ten = many + " and SerialNumber % 50000 = 0";
  const std::string lists = "insert into SupplyLists (KindList, SerialNumber, Measure) select ";
  const std::string dated =
      "insert into SupplyListsDates (KindList, SerialNumber, AvailableFromDate) select KindList,"
      " SerialNumber, ";
  const std::string days =
      "insert into BaseSupplyListDates (SerialNumber, AvailableFromDate) select SerialNumber, ";
  return "insert into KindSupplyLists (Code, Name, FoldName) values (" + full +
         ", 'Пълен списък', 'пълен списък'), (" + few + ", 'Къс списък', 'къс списък');\n" + lists +
         full + ", SerialNumber, 100" + many + ";\n" + lists + few + ", SerialNumber, 100" + ten +
         ";\n" + dated + day(kManyDay) + " from SupplyLists where KindList in (" + full + ", " +
         few + ");\n" + days + day(kManyDay) + many + ";\n" + days + day(kFewDay) + ten;
}

std::string AddPartners() {
  return "with recursive n (i) as (select 1 union all select i + 1 from n where i < " +
         std::to_string(kManyPartners) +
         "), p (Code, Name) as (select 70000000 + i, 'снабдител ' || substr(cast(1000000 + i * 7919"
         " % 200000 as text), 2) || ' оод' from n) insert into Partners (Partner, Name, FoldName,"
         " PartnerTypeSupplier) select Code, Name, Name, 1 from p";
}

/// Requests of the company of orders: as many as tell who sees how much.
constexpr std::int64_t kFewRequests = 1000;

/// Each order has the cost centre, requester and creator of some request, so that everybody sees as
/// large a part of the orders as of the requests, and the supplier, contract and first rows of one
/// of the demonstration's orders.
std::string AddOrders(std::int64_t orders) {
  const std::string first = std::to_string(kManyOrdersFrom);
  const std::string numbers =
      "with recursive n (i) as (select 1 union all select i + 1 from n where i < " +
      std::to_string(orders) + ") ";
  const std::string models =
      "(select count(*) from SuppManifacOrder where IdNumber < " + first + ")";
  const std::string heads =
      numbers +
      "insert into SuppManifacOrder (IdNumber, DocumentDate, Description, Description2, Rationale,"
      " FromDate, ToDate, CostCenter, KindSupply, Supplier, ContractId, IncTranspInPrice,"
      " KindCurrency, RateOfExchange, Notifier, CreatedFrom, CreatedOn, Status) select " +
      first +
      " + n.i, q.DocumentDate, m.Description, m.Description2, 'За година', m.FromDate, m.ToDate,"
      " q.CostCenter, m.KindSupply, m.Supplier, m.ContractId, m.IncTranspInPrice, m.KindCurrency,"
      " m.RateOfExchange, q.Notifier, q.CreatedFrom, q.CreatedOn, case when n.i % 200 = 0 then 0"
      " else 2 + n.i % 6 end from n join PurchaseOrder q on q.POIdNumber = 1 + n.i % " +
      std::to_string(kFewRequests) +
      " and q.POVersion = 1 join SuppManifacOrder m on m.IdNumber = 1 + n.i % " + models;
  const std::string rows =
      "insert into SuppManOrderDet (SuppManOrderId, RowNumber, SerialNumber, Measure, Quantity,"
      " RowNumerator, Numerator, InventoryId, ServiceCode) select o.IdNumber, d.RowNumber,"
      " d.SerialNumber, d.Measure, d.Quantity, d.RowNumerator, d.Numerator, d.InventoryId,"
      " d.ServiceCode from SuppManifacOrder o join SuppManOrderDet d on d.SuppManOrderId = 1 +"
      " (o.IdNumber - " +
      first + ") % " + models + " and d.RowNumber <= 3 where o.IdNumber > " + first;
  const std::string decisions =
      "insert into SuppManOrderAdmin (SuppManOrderId, ConfirmationLevel, SendingNumber, Approval,"
      " Status) select IdNumber, 1, 1, 1, case when Status > 4 then 3 else 2 end"
      " from SuppManifacOrder where Status > 2 and IdNumber > " +
      first;
  return heads + ";\n" + rows + ";\n" + decisions;
}

/// The demonstration with so many requests and what `more` adds.
void Fill(Database& database, std::int64_t requests, const std::vector<std::string>& more) {
  Must(Migrate(database));
  DemoOptions options;
  options.passwordCost = PasswordCost::Lowest();
  options.documents = requests;
  Must(MakeDemoCompany(database, SystemClock{}, options));
  for (const std::string& script : more)
    Must(database.RunScript(script));
  Must(database.RunScript("analyze"));
}

/// Another schema is another company.
std::string NameOf(const std::string& size) {
  const auto memory = Must(OpenSqlite(":memory:"));
  const auto schema = Must(CurrentSchema(*memory));
  return "orvane_bench_" + std::to_string(schema.newest) + "_" + size;
}

using Filling = std::function<void(Database&)>;

/// Made under another name first, so that what was broken off is not taken for whole.
std::string MakeSqlite(const std::string& name, const Filling& fill) {
  const std::filesystem::path folder = Variable("ORVANE_BENCH_CACHE", "build/bench");
  std::filesystem::create_directories(folder);
  const std::filesystem::path path = folder / (name + ".sqlite");
  if (std::filesystem::exists(path)) return path.string();
  const std::filesystem::path making = path.string() + ".new";
  for (const char* suffix : {"", "-wal", "-shm"})
    std::filesystem::remove(making.string() + suffix);
  fill(*OpenAt(Engine::Sqlite, making.string()));
  std::filesystem::rename(making, path);
  return path.string();
}

std::string MakePostgres(const std::string& name, const Filling& fill) {
  const std::string info = ServerInfo() + " dbname=" + name;
  if (Administer("select 1 from pg_database where datname = '" + name + "'")) return info;
  Administer("drop database if exists " + name + "_new");
  Administer("create database " + name + "_new template template0");
  fill(*OpenAt(Engine::Postgres, info + "_new"));
  Administer("alter database " + name + "_new rename to " + name);
  return info;
}

BenchCompany Open(Engine engine, std::int64_t documents, const std::string& name,
                  const Filling& fill) {
  const std::string location =
      engine == Engine::Sqlite ? MakeSqlite(name, fill) : MakePostgres(name, fill);
  return {engine, documents, location, OpenAt(engine, location)};
}

}  // namespace

std::string BenchCompany::Name() const {
  return (engine == Engine::Sqlite ? "sqlite/" : "postgres/") + std::to_string(documents);
}

std::int64_t BenchCompany::Number(const std::string& sql) const {
  const Statement select{sql, {}, {{"Number", ValueKind::Code, 0}}};
  const auto packets = Must(database->ReadSnapshot({&select, 1}));
  if (packets.front().rowCount == 0) return 0;
  return packets.front().At(0, std::size_t{0}).AsInt().value_or(0);
}

std::vector<Engine> EnginesAtHand() {
  std::vector<Engine> engines = {Engine::Sqlite};
  if (!ServerInfo().empty()) engines.push_back(Engine::Postgres);
  return engines;
}

std::vector<std::int64_t> SizesAsked() {
  std::vector<std::int64_t> sizes;
  std::istringstream text(Variable("ORVANE_BENCH_DOCUMENTS", "1000,100000"));
  for (std::string size; std::getline(text, size, ',');)
    sizes.push_back(std::atoll(size.c_str()));
  return sizes;
}

BenchCompany OpenCompany(Engine engine, std::int64_t requests) {
  return Open(engine, requests, NameOf(std::to_string(requests)), [&](Database& database) {
    Fill(database, requests, {AddEntries(), AddLists(database.Kind()), AddPartners()});
  });
}

BenchCompany OpenCompanyOfOrders(Engine engine, std::int64_t orders) {
  return Open(engine, orders, NameOf("orders_" + std::to_string(orders)),
              [&](Database& database) { Fill(database, kFewRequests, {AddOrders(orders)}); });
}

}  // namespace orvane::bench
