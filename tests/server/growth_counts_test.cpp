// What the engines do among a hundred thousand requests is what they do among a thousand, counted
// in their own units: SQLite's machine steps, PostgreSQL's buffers.

#include <map>

#include "contract/supplier_order.h"
#include "server/many_requests.h"

namespace orvane::server {
namespace {

constexpr int kFew = 1'000;
#if defined(__SANITIZE_ADDRESS__)
constexpr int kMany = 5'000;  // what is counted is the same, and the sanitizers take their time
#else
constexpr int kMany = 100'000;
#endif
constexpr double kMostSteps = 1.3;
constexpr double kMostBuffers = 1.5;
/// Of two indexes that each lead to a handful of rows, either may be taken.
constexpr double kFewBuffers = 16;
/// Registers of a handful of rows may be walked where an index was used among few.
constexpr std::int64_t kMostScans = 20;
constexpr std::int64_t kRowsOf = 300;  // a request that is entered

/// What a deed cost, in the engine's unit, and what of it walked tables from row to row.
struct Cost {
  std::int64_t work = 0;
  std::int64_t scans = 0;
};

struct Deed {
  std::string name;
  std::function<void(RequestWorld&)> act;
  bool onSqlite = true;
};

Deed Loading(const std::string& login, Nav nav, std::int64_t from, std::int64_t to) {
  const std::string name = login + " load " + std::to_string(static_cast<int>(nav));
  return {name, [=](RequestWorld& world) {
            EXPECT_EQ(world.Where(login, nav, from), "0:" + std::to_string(to) + "/1") << name;
          }};
}

Deed Page(const std::string& condition, std::size_t rows) {
  return {"page" + condition, [=](RequestWorld& world) {
            FetchRequest fetch;
            fetch.serverClass = purchase_request::kReportClass;
            fetch.provider = purchase_request::report::dspResult.name;
            fetch.rowLimit = 80;
            fetch.sql =
                "SELECT po.POIdNumber, CAST(po.POVersion AS INT) POVersion, "
                "CAST(po.Description AS VARCHAR(50)) Description, "
                "CAST(po.Description2 AS VARCHAR(50)) Description2, po.CostCenter, c.Name CCName, "
                "c.Name2 CCName2, po.Supplier, P.Name SuppName, P.Name2 SuppName2, po.Status "
                "FROM PurchaseOrder po WITH (NOLOCK) LEFT OUTER JOIN CostCenters c WITH (NOLOCK) "
                "ON c.CostCenter = po.CostCenter LEFT OUTER JOIN Partners P WITH (NOLOCK) "
                "ON P.Partner = po.Supplier WHERE 1=1" +
                condition + " AND po.OldVersion = 0 ";
            const auto pages =
                world.Server()->Fetch(world.As("boss").At(Point::PurchaseRequestReport), {fetch});
            ASSERT_TRUE(pages) << condition << ": " << pages.GetFailure().message;
            EXPECT_EQ(pages->front().rowCount, rows) << condition;
          }};
}

Deed LoadingOrder(const std::string& login, Nav nav, std::int64_t from, std::int64_t to) {
  using supplier_order::get_record::At;
  const std::string name = login + " load order " + std::to_string(static_cast<int>(nav));
  return {name, [=](RequestWorld& world) {
            const auto told = world.Server()->Call(world.As(login).At(Point::SupplierOrders),
                                                   {std::string(supplier_order::kServerClass),
                                                    std::string(supplier_order::get_record::kName),
                                                    {static_cast<int>(nav), 0, std::to_string(from),
                                                     "", false, login, "", true, false}});
            ASSERT_TRUE(told) << name << ": " << told.GetFailure().message;
            EXPECT_EQ((*told)[At::kPosition].ToText(), "0") << name;
            EXPECT_EQ((*told)[At::kHead].AsPacket()->At(0, "IdNumber").AsInt(), to) << name;
          }};
}

/// Entries are new ones each time: an order holds each once.
void PostOrderRow(RequestWorld& world) {
  const auto last =
      world.Count("SuppManOrderDet where SuppManOrderId = ?1", {std::int64_t{kRowsOf + 1}});
  const ApplyRequest post{std::string(supplier_order::kServerClass),
                          std::string(supplier_order::det::dspSuppManOrderDet.name),
                          0,
                          {},
                          {InsertOf({{"SuppManOrderId", kRowsOf + 1},
                                     {"RowNumber", last + 1},
                                     {"SerialNumber", 1000 + last},
                                     {"Measure", 200},
                                     {"Quantity", 1.0},
                                     {"RowNumerator", 1},
                                     {"Numerator", 1}})}};
  const auto answer = world.Server()->Apply(world.As("author").At(Point::SupplierOrders), post);
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->outcomes[0].failure) << answer->outcomes[0].failure->message;
}

void PostRow(RequestWorld& world) {
  const auto last =
      world.Count("PurchaseOrderDet where PurchaseOrderId = ?1", {std::int64_t{kRowsOf}});
  EXPECT_EQ(world.AddRow(kRowsOf, static_cast<int>(last) + 1, 20, 1000), "ok");
  EXPECT_EQ(world.Where("author", Nav::ByKey, kRowsOf), "0:300/1");
}

/// The report's filters: a value of five requests, one of nearly all, and one of none.
std::vector<Deed> Pages() {
  constexpr const char* kOfRows =
      " AND po.POIdNumber IN (SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE ";
  const struct {
    std::string before;
    const char* rare;
    const char* common;
    const char* none;
    const char* after = "";
    /// SQLite knows how many rows a value has on average only. What begins on a day is expected to
    /// be many, and requests of an entry to be few; where that is wrong it reads them all.
    bool onSqlite = true;
  } filters[] = {
      {" AND po.CostCenter = ", "1003", "1002", "1009"},
      {" AND po.POIdNumber >= ", nullptr, "1", "1000000"},
      {" AND po.POIdNumber <= ", "5", "1000000", "0"},
      {" AND po.DocumentDate >= ", "'01.04.2026'", "'01.03.2026'", "'01.05.2026'", "", false},
      {" AND po.DocumentDate <= ", nullptr, "'01.04.2026'", "'01.01.2026'", "", false},
      {" AND po.KindSupply = ", "3", "4", "2"},
      {" AND po.Supplier = ", "8", "7", "9"},
      {std::string(kOfRows) + "SuppManifacOrderId = ", "1", nullptr, "9", ") "},
      {" AND po.Status = ", "1", "4", "0"},
      {std::string(kOfRows) + "SerialNumber = ", "21", "20", "22", ") ", false},
      {"", "", "", nullptr},
  };
  std::vector<Deed> deeds;
  for (const auto& filter : filters) {
    const auto add = [&](const char* value, const char* annulled, std::size_t rows) {
      if (!value) return;
      deeds.push_back(Page(filter.before + value + filter.after + annulled, rows));
      deeds.back().onSqlite = filter.onSqlite;
    };
    add(filter.rare, " AND po.AnnulOn IS NOT NULL ", 5);
    add(filter.common, " AND po.AnnulOn IS NULL ", 80);
    add(filter.none, " AND po.AnnulOn IS NULL ", 0);
  }
  return deeds;
}

std::vector<Deed> Deeds() {
  std::vector<Deed> deeds = {Loading("boss", Nav::ByKey, 400, 400),
                             Loading("boss", Nav::Next, 399, 400),
                             Loading("boss", Nav::Previous, 401, 400),
                             Loading("petrova", Nav::ByKey, 400, 400),
                             Loading("petrova", Nav::Next, 398, 400),
                             Loading("petrova", Nav::Previous, 402, 400),
                             Loading("kolev", Nav::ByKey, 300, 300),
                             Loading("kolev", Nav::Next, 200, 300),
                             Loading("kolev", Nav::Previous, 400, 300),
                             Loading("author", Nav::Next, 399, 400),
                             {"post a row", &PostRow},
                             LoadingOrder("boss", Nav::ByKey, 401, 401),
                             LoadingOrder("boss", Nav::Next, 400, 401),
                             LoadingOrder("kolev", Nav::Next, 201, 301),
                             LoadingOrder("kolev", Nav::Previous, 401, 301),
                             LoadingOrder("author", Nav::Previous, 402, 401),
                             {"post a row of an order", &PostOrderRow}};
  for (Deed& page : Pages())
    deeds.push_back(std::move(page));
  return deeds;
}

class GrowthCounts : public testing::TestWithParam<Engine> {
 protected:
  std::int64_t Number(RequestWorld& world, const std::string& sql) {
    return world.Server().Value(sql, ValueKind::Code).AsInt().value_or(-1);
  }

  /// Counted so far. PostgreSQL tells of its own work once the session that did it reports; the
  /// sessions of a server are taken up again last come first, so that this is the same one.
  Cost Counted(RequestWorld& world) {
    if (GetParam() == Engine::Sqlite) {
      const EngineCounters& counters = world.Server().Base().Counters();
      return {counters.machineSteps, counters.scanSteps};
    }
    const Statement report{
        "select count(*) from pg_stat_force_next_flush()", {}, {{"N", ValueKind::Code, 0}}};
    EXPECT_TRUE(world.Server().Base().ReadSnapshot({&report, 1}));
    EXPECT_TRUE(world.Server().Base().Search(report, {}, {}));  // those behind the fence
    return {
        Number(world,
               "select sum(heap_blks_hit + heap_blks_read + coalesce(idx_blks_hit, 0) +"
               " coalesce(idx_blks_read, 0))::bigint from pg_statio_user_tables"),
        Number(world,
               "select sum(seq_scan)::bigint from pg_stat_user_tables where relname in"
               " ('purchaseorder', 'purchaseorderdet', 'purchaseorderdel',"
               " 'purchaseorderpaypl', 'purchaseorderadm', 'approvalturn', 'deliveries',"
               " 'history', 'clientkey', 'basesupplylist', 'suppmanifacorder', 'suppmanorderdet',"
               " 'suppmanorderadmin')")};
  }

  Cost CostOf(RequestWorld& world, const Deed& deed) {
    deed.act(world);  // what is prepared once is prepared now
    const Cost before = Counted(world);
    deed.act(world);
    const Cost after = Counted(world);
    return {after.work - before.work, after.scans - before.scans};
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, GrowthCounts, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(GrowthCounts, OfAHundredThousandRequestsAreThoseOfAThousand) {
  const bool sqlite = GetParam() == Engine::Sqlite;
  RequestWorld few(GetParam());
  RequestWorld many(GetParam());
  FillManyRequests(few, kFew);
  FillManyRequests(many, kMany);
  for (const Deed& deed : Deeds()) {
    if (sqlite && !deed.onSqlite) continue;
    const Cost small = CostOf(few, deed);
    const Cost great = CostOf(many, deed);
    EXPECT_GT(small.work, 0) << deed.name;
    EXPECT_LE(static_cast<double>(great.work),
              static_cast<double>(small.work) * (sqlite ? kMostSteps : kMostBuffers) +
                  (sqlite ? 0 : kFewBuffers))
        << deed.name << ": " << small.work << " among few";
    // SQLite counts rows of all tables, PostgreSQL walks of those that grow.
    EXPECT_LE(great.scans, sqlite ? small.scans + kMostScans : 0) << deed.name;
  }
}

}  // namespace
}  // namespace orvane::server
