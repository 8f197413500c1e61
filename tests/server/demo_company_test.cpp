#include "server/demo/demo_companies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "packet/clock.h"
#include "server/check/check.h"
#include "server/demo/demo_tables.h"
#include "server/documents/document_pricing.h"
#include "server/documents/settings.h"
#include "server/requests/request_head.h"
#include "server/statements/named_statement.h"
#include "support/demo_rows.h"
#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

constexpr std::int64_t kDocuments = 3000;

std::unique_ptr<Database> Company(TestEngine engine, std::uint32_t seed, std::int64_t documents) {
  auto database = FreshDatabase(engine);
  DemoOptions options;
  options.seed = seed;
  options.passwordCost = PasswordCost::Lowest();
  options.documents = documents;
  const auto made = MakeDemoCompany(*database, SystemClock{}, options);
  if (!made) ADD_FAILURE() << made.GetFailure().message;
  return database;
}

DataPacket Rows(Database& database, const std::string& text, std::vector<ResultColumn> columns) {
  const Statement select = Sql(text, {}, std::move(columns));
  const auto packets = database.ReadSnapshot({&select, 1});
  if (packets) return packets->front();
  ADD_FAILURE() << packets.GetFailure().text;
  return {};
}

/// Everything a table holds, as one number.
std::uint64_t ContentsOf(Database& database, const DemoTable& table) {
  const DataPacket rows = ReadDemoTable(database, table);
  const std::size_t width = table.columns.size();
  std::uint64_t hash = rows.rowCount;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    for (std::size_t column = 0; column < width; ++column) {
      for (const char c : rows.At(row, column).ToText() + "|")
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    }
  }
  return hash;
}

using Contents = std::map<std::string, std::uint64_t>;
Contents ContentsOf(Database& database) {
  Contents contents;
  for (const DemoTable* table : demo::AllTables())
    contents[std::string(table->name)] = ContentsOf(database, *table);
  return contents;
}

TEST(DemoCompany, TheSameSeedMakesTheSameCompanyOnEveryEngine) {
  constexpr std::int64_t kFew = 400;
  const Contents first = ContentsOf(*Company(Engine::Sqlite, 7, kFew));
  for (const TestEngine engine : TestEngines())
    EXPECT_EQ(ContentsOf(*Company(engine, 7, kFew)), first) << EngineName(engine);
  const Contents other = ContentsOf(*Company(Engine::Sqlite, 8, kFew));
  for (const char* table : {"PurchaseOrder", "PurchaseOrderDet", "RatesOfExchange", "Partners"})
    EXPECT_NE(other.at(table), first.at(table)) << table;
}

/// One company per engine for all the cases below.
class DemoCompany : public testing::TestWithParam<TestEngine> {
 protected:
  Database& Base() {
    auto& database = companies[GetParam()];
    if (!database) database = Company(GetParam(), 1, kDocuments);
    return *database;
  }
  static void TearDownTestSuite() { companies.clear(); }

 private:
  static inline std::map<TestEngine, std::unique_ptr<Database>> companies;
};
INSTANTIATE_TEST_SUITE_P(Engines, DemoCompany, testing::ValuesIn(TestEngines()), TestEngineName);

bool IsCompanyNumber(const std::string& text) {
  if (text.size() != 9) return false;
  const auto weighed = [&](int first) {
    int sum = 0;
    for (int i = 0; i < 8; ++i)
      sum += (text[static_cast<std::size_t>(i)] - '0') * (first + i);
    return sum % 11;
  };
  const int check = weighed(1) < 10 ? weighed(1) : weighed(3) % 10;
  return text.back() - '0' == check;
}

TEST_P(DemoCompany, DomesticPartnersHaveValidNumbersOfTheirOwn) {
  const DataPacket rows =
      Rows(Base(), "select EIK from Partners where EIK is not null", {{"EIK", ValueKind::Memo, 0}});
  std::set<std::string> numbers;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    const std::string number = rows.At(row, 0).ToText();
    EXPECT_TRUE(IsCompanyNumber(number)) << number;
    EXPECT_TRUE(numbers.insert(number).second) << number;
  }
  EXPECT_GE(numbers.size(), 180u);
}

TEST_P(DemoCompany, LevelsOfApprovalCoverEverySumWithoutHoles) {
  const DataPacket rows = Rows(Base(),
                               "select KindRegister, KindSupply, Level, FromSum, ToSum from "
                               "LevelsApproval order by KindRegister, KindSupply, Level, FromSum",
                               {{"Register", ValueKind::Int32, 0},
                                {"Kind", ValueKind::Int32, 0},
                                {"Level", ValueKind::Int32, 0},
                                {"From", ValueKind::Amount, 0},
                                {"To", ValueKind::Amount, 0}});
  std::map<std::pair<std::int64_t, std::int64_t>, std::int64_t> levels;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    const auto number = [&](const char* name) { return rows.At(row, name).AsInt().value_or(-1); };
    const auto kind = std::pair(number("Register"), number("Kind"));
    const Decimal from = *rows.At(row, "From").AsDecimal();
    const Decimal to = *rows.At(row, "To").AsDecimal();
    const Decimal most = kind.first == 1 ? Decimal() : Decimal(99'999'999, 0);
    EXPECT_EQ(number("Level"), ++levels[kind]) << "a level is left out";
    EXPECT_EQ(to, most);
    if (levels[kind] > 1) continue;
    EXPECT_EQ(from, Decimal()) << "nobody approves small sums";
  }
  // Entertainment has none; orders have levels for the two kinds that are ordered.
  EXPECT_EQ(levels.size(), 3u * 9u + 2u);
  for (const auto& [kind, count] : levels) {
    EXPECT_TRUE(kind.first != 2 || count == 3) << kind.second;
  }
}

/// Rows that contradict a rule; there are none.
struct Contradiction {
  const char* what;
  const char* sql;  ///< counts them
};
constexpr char kSent[] = "(p.OldVersion = 0 and p.AnnulOn is null and p.Status between 3 and 7)";
constexpr Contradiction kContradictions[] = {
    {"head differs from the sum of its rows",
     "select count(*) from PurchaseOrder p where p.CurrSumPurchaseOrder <> (select "
     "sum(d.CurrSumWithoutVAT) from PurchaseOrderDet d where d.PurchaseOrderId = p.POIdNumber and "
     "d.PurchaseOrderVer = p.POVersion)"},
    {"request without rows or without a planned date",
     "select count(*) from PurchaseOrder p where not exists (select 1 from PurchaseOrderDet d "
     "where "
     "d.PurchaseOrderId = p.POIdNumber and d.PurchaseOrderVer = p.POVersion) or not exists (select "
     "1 from PurchaseOrderDel e where e.PurchaseOrderId = p.POIdNumber and e.PurchaseOrderVer = "
     "p.POVersion)"},
    {"request without exactly one current version, the newest",
     "select count(*) from (select POIdNumber from PurchaseOrder group by POIdNumber having "
     "sum(OldVersion) <> count(*) - 1 or sum((1 - OldVersion) * POVersion) <> max(POVersion)) x"},
    {"sum in euro differs from the amount",
     "select count(*) from PurchaseOrder where KindCurrency = 1 and (SumPurchaseOrder <> "
     "CurrSumPurchaseOrder)"},
    {"rate is not the central bank's of the day",
     "select count(*) from PurchaseOrder p where p.KindCurrency <> 1 and p.RateOfExchange <> "
     "(select r.CurrencyRate1 from RatesOfExchange r where r.Partner = 1 and r.KindCurrency = "
     "p.KindCurrency and r.RateDate <= p.DocumentDate order by r.RateDate desc limit 1)"},
    {"currency is not the supplier's",
     "select count(*) from PurchaseOrder p left join Partners s on s.Partner = p.Supplier where "
     "p.KindCurrency <> coalesce(s.SuppKindCurrency, 1)"},
    {"capital, material or goods without supplier and contract",
     "select count(*) from PurchaseOrder where KindSupply in (1, 2, 3) and (Supplier is null or "
     "ContractId is null)"},
    {"contract of somebody else, of another kind or not in force",
     "select count(*) from PurchaseOrder p join SuppliesContracts c on c.IdNumber = p.ContractId "
     "where c.Supplier <> p.Supplier or c.KindContract <> p.KindSupply or c.ContractDate > "
     "p.DocumentDate or coalesce(c.FinishDate, p.DocumentDate + 1) <= p.DocumentDate"},
    {"requester who may not request for the cost centre",
     "select count(*) from PurchaseOrder p where not exists (select 1 from AdmissibleNotifiers a "
     "where a.CostCenter = p.CostCenter and a.Notifier = p.Notifier)"},
    {"unit of another block than the entry's",
     "select count(*) from PurchaseOrderDet d join BaseSupplyList b on b.SerialNumber = "
     "d.SerialNumber where d.Measure / 100 <> b.Measure / 100"},
    {"status that the decisions do not give",
     "select count(*) from (select p.Status, count(a.Status) as Levels, coalesce(sum(case when "
     "a.Status = 1 then 1 end), 0) as Rejections, coalesce(sum(case when a.Status = 3 then 1 end), "
     "0) as Given from PurchaseOrder p left join PurchaseOrderAdm a on a.PurchaseOrderId = "
     "p.POIdNumber and a.PurchaseOrderVer = p.POVersion group by p.POIdNumber, p.POVersion, "
     "p.Status) x where case when Status = 2 then Levels > 0 when Status = 1 then Rejections <> 1 "
     "when Status = 3 then Levels = 0 or Given > 0 or Rejections > 0 when Status = 4 then Given = "
     "0 "
     "or Given = Levels or Rejections > 0 else Given <> Levels end"},
    {"level decided before a lower one",
     "select count(*) from PurchaseOrderAdm a join PurchaseOrderAdm b on b.PurchaseOrderId = "
     "a.PurchaseOrderId and b.PurchaseOrderVer = a.PurchaseOrderVer and b.ConfirmationLevel > "
     "a.ConfirmationLevel where (a.Status <> 3 and b.Status <> 2) or b.ConfermedOn <= "
     "a.ConfermedOn"},
    {"levels of a sent request are not those of its sum",
     "select count(*) from PurchaseOrder p where p.Status <> 2 and (select count(*) from "
     "PurchaseOrderAdm a where a.PurchaseOrderId = p.POIdNumber and a.PurchaseOrderVer = "
     "p.POVersion) <> (select count(distinct l.Level) from LevelsApproval l where l.KindRegister = "
     "2 and l.KindSupply = p.KindSupply and p.SumPurchaseOrder between l.FromSum and l.ToSum)"},
    {"decided by somebody who does not head the unit",
     "select count(*) from PurchaseOrderAdm a join PurchaseOrder p on p.POIdNumber = "
     "a.PurchaseOrderId and p.POVersion = a.PurchaseOrderVer join CostCenters c on c.CostCenter = "
     "p.CostCenter join Structure s on s.CostCenter = p.CostCenter join Sections x on x.Section = "
     "s.Section join Department t on t.Code = s.Department join Employees e on e.Login = t.Chief "
     "where a.ConfirmedFrom <> case a.Approval when 1 then c.Chief when 2 then x.Chief else "
     "e.Employee end"},
    {"who decided or is to decide had no turn",
     "select count(*) from PurchaseOrderAdm a where a.ConfirmedFrom is not null and not exists "
     "(select 1 from ApprovalTurn t where t.Employee = a.ConfirmedFrom and t.KindRegister = 2 and "
     "t.DocumentId = a.PurchaseOrderId and t.DocumentVersion = a.PurchaseOrderVer)"},
    {"approval rows of another sending",
     "select count(*) from PurchaseOrderAdm a join PurchaseOrder p on p.POIdNumber = "
     "a.PurchaseOrderId and p.POVersion = a.PurchaseOrderVer where a.SendingNumber <> "
     "p.SendingNumber"},
    {"approved at once by nobody, or by service in spite of levels",
     "select count(*) from PurchaseOrder p where (case when p.ServiceEmployee is null then 0 else "
     "1 "
     "end) <> (case when p.Status >= 5 and not exists (select 1 from LevelsApproval l where "
     "l.KindRegister = 2 and l.KindSupply = p.KindSupply) then 1 else 0 end)"},
    {"head of a unit who cannot log in",
     "select count(*) from (select Chief from CostCenters union select Chief from Sections) h left "
     "join Employees e on e.Employee = h.Chief left join WSysUsers u on u.ShortName = e.Login "
     "where "
     "u.ShortName is null"},
    {"request against an order of another supplier or without the entry",
     "select count(*) from PurchaseOrderDet d join PurchaseOrder p on p.POIdNumber = "
     "d.PurchaseOrderId and p.POVersion = d.PurchaseOrderVer join SuppManifacOrder o on o.IdNumber "
     "= d.SuppManifacOrderId where o.Supplier <> p.Supplier or not exists (select 1 from "
     "SuppManOrderDet r where r.SuppManOrderId = o.IdNumber and r.SerialNumber = d.SerialNumber)"},
    {"being fulfilled without a delivery",
     "select count(*) from PurchaseOrder p where p.Status = 6 and not exists (select 1 from "
     "Deliveries v where v.PurchaseOrderId = p.POIdNumber and v.PurchaseOrderVer = p.POVersion and "
     "v.Status = 5)"},
    {"delivery on a request that takes none, or of another supplier",
     "select count(*) from Deliveries v join PurchaseOrder p on p.POIdNumber = v.PurchaseOrderId "
     "and p.POVersion = v.PurchaseOrderVer where p.Status not in (6, 7) or p.OldVersion = 1 or "
     "p.AnnulOn is not null or v.Supplier <> p.Supplier or v.KindSupply <> p.KindSupply"},
    {"more delivered than requested",
     "select count(*) from DeliveryRows r join Deliveries v on v.IdNumber = r.DeliveryId join "
     "PurchaseOrderDet d on d.PurchaseOrderId = v.PurchaseOrderId and d.PurchaseOrderVer = "
     "v.PurchaseOrderVer and d.RowNumber = r.RowNumber where r.SerialNumber <> d.SerialNumber or "
     "r.Quantity > d.Quantity"},
    {"plan marked as delivered without a delivery, or the reverse",
     "select count(*) from PurchaseOrderDel e where e.Delivered <> (select count(*) from "
     "Deliveries "
     "v where v.PurchaseOrderId = e.PurchaseOrderId and v.PurchaseOrderVer = e.PurchaseOrderVer "
     "and "
     "v.PODeliveryDate = e.DeliveryDate and v.Status = 5)"},
    {"entry without a price",
     "select count(*) from BaseSupplyList b where b.Price is null or b.Price <= 0 or not exists "
     "(select 1 from BaseSupplyListDates t where t.SerialNumber = b.SerialNumber and t.Price > 0)"},
    {"counter behind its documents",
     "select count(*) from DocumentCounter where (TableName = 'PurchaseOrder' and LastNumber <> "
     "3000) or (TableName = 'SuppManifacOrder' and LastNumber <> (select max(IdNumber) from "
     "SuppManifacOrder)) or (TableName = 'Deliveries' and LastNumber <> (select max(IdNumber) from "
     "Deliveries)) or (TableName = 'SuppliesContracts' and LastNumber <> (select max(IdNumber) "
     "from "
     "SuppliesContracts))"},
};

TEST_P(DemoCompany, NothingContradictsTheRules) {
  for (const Contradiction& row : kContradictions)
    EXPECT_EQ(AskNumber(Base(), row.sql), 0) << row.what;
  // What is left of an order, and the status that it gives it.
  const std::string taken =
      "select count(*) from (select o.IdNumber, o.Status, r.Quantity, coalesce((select "
      "sum(d.Quantity) from PurchaseOrderDet d join PurchaseOrder p on p.POIdNumber = "
      "d.PurchaseOrderId and p.POVersion = d.PurchaseOrderVer where d.SuppManifacOrderId = "
      "o.IdNumber and d.SerialNumber = r.SerialNumber and " +
      std::string(kSent) +
      "), 0) as Taken from SuppManifacOrder o join SuppManOrderDet r on r.SuppManOrderId = "
      "o.IdNumber) x where ";
  EXPECT_EQ(AskNumber(Base(), taken + "Taken > Quantity"), 0);
  EXPECT_EQ(AskNumber(Base(), taken + "Status in (6, 7) and Taken = 0"), 0);
  EXPECT_EQ(AskNumber(Base(), taken + "Status not in (6, 7) and Taken > 0"), 0);
}

std::string InLevs(std::string sql) {
  for (const auto& [euro, lev] : {std::pair("KindCurrency = 1", "KindCurrency = 2"),
                                  std::pair("KindCurrency <> 1", "KindCurrency <> 2"),
                                  std::pair("SuppKindCurrency, 1", "SuppKindCurrency, 2")})
    sql = Replaced(sql, euro, lev);
  return sql;
}

TEST_P(DemoCompany, ACompanyInLevsContradictsNothingEither) {
  auto options = DemoCompanyNamed("lev");
  ASSERT_TRUE(options);
  options->passwordCost = PasswordCost::Lowest();
  const auto database = FreshDatabase(GetParam());
  ASSERT_TRUE(MakeDemoCompany(*database, SystemClock{}, *options));
  for (const Contradiction& row : kContradictions)
    EXPECT_EQ(AskNumber(*database, InLevs(row.sql)), 0) << row.what;
  EXPECT_GT(AskNumber(*database, "select count(*) from PurchaseOrder where KindCurrency = 2"),
            2000);
  EXPECT_GT(AskNumber(*database, "select count(*) from PurchaseOrder where KindCurrency = 1"), 20);
}

TEST(DemoCompanies, EachPassesTheServersCheckAndTheEmptyOneHoldsNoDocuments) {
  for (const char* name : {"one language", "lev", "empty", "without parameters"}) {
    auto options = DemoCompanyNamed(name);
    ASSERT_TRUE(options) << name;
    options->passwordCost = PasswordCost::Lowest();
    options->documents = std::min<std::int64_t>(options->documents, 40);
    const auto database = FreshDatabase(Engine::Sqlite);
    ASSERT_TRUE(MakeDemoCompany(*database, SystemClock{}, *options)) << name;
    const auto findings = CheckDatabase(*database, SystemClock().Now());
    ASSERT_TRUE(findings) << findings.GetFailure().message;
    EXPECT_EQ(*findings, std::vector<std::string>{}) << name;
    if (options->documents > 0) continue;
    for (const DemoTable* table : {&demo::kRequests, &demo::kOrders, &demo::kContracts})
      EXPECT_EQ(ReadDemoTable(*database, *table).rowCount, 0u) << table->name;
  }
  EXPECT_FALSE(DemoCompanyNamed("няма такова"));
}

TEST_P(DemoCompany, AmountsArePricedAsTheServerPricesRows) {
  const Statement select = SelectSettings();
  const auto params = Base().ReadSnapshot({&select, 1});
  ASSERT_TRUE(params);
  const DocumentSettings settings = ReadSettings(params->front());
  const DataPacket heads = Rows(Base(),
                                "select POIdNumber, POVersion, KindSupply, RateOfExchange, "
                                "CurrSumPurchaseOrder, SumPurchaseOrder from PurchaseOrder where "
                                "KindSupply in (2, 3, 4, 5) and POIdNumber % 7 = 0",
                                {{"Id", ValueKind::Int32, 0},
                                 {"Version", ValueKind::Byte, 0},
                                 {"Kind", ValueKind::Int32, 0},
                                 {"Rate", ValueKind::Rate, 0},
                                 {"Currency", ValueKind::Amount, 0},
                                 {"National", ValueKind::Amount, 0}});
  for (std::size_t at = 0; at < heads.rowCount; ++at) {
    const DocumentKey key{heads.At(at, "Id").AsInt().value_or(0),
                          heads.At(at, "Version").AsInt().value_or(0)};
    const StoredDocument& request = StoredRequest();
    std::vector<Statement> statements = {SelectPart(request, request.rows, key)};
    for (Statement& own : SelectEntries(EntriesOf(request, EntriesNamed(request), KeyParams(key))))
      statements.push_back(std::move(own));
    const auto packets = Base().ReadSnapshot(statements);
    ASSERT_TRUE(packets) << packets.GetFailure().text;
    const auto rows = ReadDocumentRows((*packets)[0]);
    const auto entries = ReadEntries((*packets)[1], (*packets)[2]);
    const Decimal rate = *heads.At(at, "Rate").AsDecimal();
    for (const DocumentRow& row : rows) {
      const EntryFacts& entry = entries.at(row.serial);
      EXPECT_EQ(row.numerator, entry.numerator) << key.id;
      EXPECT_EQ(*RowAmount(heads.At(at, "Kind").AsInt().value_or(0), rate, row, entry, settings),
                row.amount)
          << key.id << ", row " << row.number;
    }
    const auto sums = SumsOf(rows, rate, settings);
    ASSERT_TRUE(sums);
    EXPECT_EQ(sums->currency, *heads.At(at, "Currency").AsDecimal()) << key.id;
    EXPECT_EQ(sums->national, *heads.At(at, "National").AsDecimal()) << key.id;
  }
  EXPECT_GT(heads.rowCount, 200u);
}

TEST_P(DemoCompany, RequestsStandInEveryStatus) {
  const DataPacket rows = Rows(
      Base(),
      "select Status, case when AnnulOn is null then 0 else 1 end, count(*) from PurchaseOrder "
      "where OldVersion = 0 group by Status, case when AnnulOn is null then 0 else 1 end "
      "order by 1, 2",
      {{"Status", ValueKind::Int32, 0},
       {"Annulled", ValueKind::Bool, 0},
       {"Requests", ValueKind::Int32, 0}});
  std::string statuses;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    EXPECT_GE(rows.At(row, "Requests").AsInt(), 15);
    statuses += rows.At(row, "Status").ToText();
    if (rows.At(row, "Annulled").AsBool().value_or(false)) statuses += "a";
    statuses += " ";
  }
  EXPECT_EQ(statuses, "1 1a 2 2a 3 4 5 6 7 ");
}

TEST_P(DemoCompany, OneUserConcernsOneRequestInAThousand) {
  EXPECT_EQ(AskNumber(Base(),
                      "select count(distinct POIdNumber) from PurchaseOrder p join Employees e on "
                      "e.Employee = p.Notifier where e.Login = 'dobreva' and p.CreatedFrom = "
                      "'dobreva'"),
            kDocuments / 1000);
  EXPECT_EQ(AskNumber(Base(),
                      "select count(*) from PurchaseOrder p join Employees e on e.Employee = "
                      "p.Notifier where (e.Login = 'dobreva') <> (p.CreatedFrom = 'dobreva')"),
            0);
}

TEST_P(DemoCompany, TheServersOwnCheckFindsNothing) {
  const auto findings = CheckDatabase(Base(), SystemClock().Now());
  ASSERT_TRUE(findings) << findings.GetFailure().message;
  EXPECT_EQ(*findings, std::vector<std::string>{});
}

TEST_P(DemoCompany, ASecondCompanyIsRefused) {
  const auto again = MakeDemoCompany(Base(), SystemClock{}, {});
  ASSERT_FALSE(again);
  EXPECT_EQ(again.GetFailure().kind, FailureKind::Refused);
}

TEST_P(DemoCompany, TwentyThousandRequestsAreMade) {
  constexpr std::int64_t kMany = 20'000;
  const auto begin = std::chrono::steady_clock::now();
  const auto database = Company(GetParam(), 1, kMany);
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
  std::printf("%s: %.0f requests a second\n", EngineName(GetParam()).c_str(),
              static_cast<double>(kMany) / passed.count());
  EXPECT_EQ(AskNumber(*database, "select count(*) from PurchaseOrder where OldVersion = 0"), kMany);
}

}  // namespace
}  // namespace orvane::server
