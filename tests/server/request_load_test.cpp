// Loads of purchase requests: what travels, in how many trips, moves and their ends, and who sees
// what.

#include "server/request_world.h"

namespace orvane::server {
namespace {

class RequestLoads : public RequestCase {
 protected:
  /// Six requests of author: 1 to 6, of which `centers` says the cost centre of each.
  void SixRequests() {
    for (const int center : {1001, 1002, 1001, 1002, 1002, 1001})
      world.NewRequest(4, {{"CostCenter", center}});
  }
  /// What a user finds when he walks from the first to the last document.
  std::string Walk(const std::string& login) {
    std::string text = world.Where(login, Nav::First, 0);
    for (int step = 0; step < 20 && !text.ends_with("3"); ++step) {
      const std::size_t last = text.rfind(' ');
      const std::string here = text.substr(last == std::string::npos ? 0 : last + 1);
      if (here.starts_with("2:")) break;
      const std::int64_t id = std::stoll(here.substr(2));
      text += " " + world.Where(login, Nav::Next, id);
    }
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, RequestLoads, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestLoads, ANewRequestComesBackUnderItsNumberWithNamesAndRoles) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "100"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  const VariantArray told = world.Load("author", Nav::ByKey, id);
  ASSERT_EQ(told.size(), 12u);
  EXPECT_EQ(told[0].ToText(), "2");
  EXPECT_EQ(told[1], Variant(true));
  for (std::size_t i = 2; i < told.size(); ++i)
    EXPECT_TRUE(told[i].AsPacket() && told[i].AsPacket()->IsSound()) << i;
  const DataPacket& head = *told[2].AsPacket();
  EXPECT_EQ(head.At(0, "POVersion").ToText(), "1");
  EXPECT_EQ(head.At(0, "NtfName").ToText(), "Служител 100");
  EXPECT_EQ(head.At(0, "CrtFrmName").ToText(), "Потребител author");
  EXPECT_EQ(head.At(0, "SumPurchaseOrder").ToText(), "100.0000");
  const DataPacket& row = *told[3].AsPacket();
  EXPECT_EQ(row.At(0, "bslName").ToText(), "Ламарина 2 мм");
  EXPECT_EQ(row.At(0, "MsrName").ToText(), "Килограм");
  EXPECT_EQ(row.At(0, "roundQNT").ToText(), "3");
  EXPECT_EQ(told[4].AsPacket()->rowCount, 1u);
  EXPECT_EQ(told[9].AsPacket()->At(0, "Name").ToText(), "Цех");
  EXPECT_EQ(told[10].AsPacket()->At(0, "Name").ToText(), "Доставчик");
  EXPECT_EQ(told[11].AsPacket()->rowCount, 0u);
  const VariantArray english = world.Load("author", Nav::ByKey, id, {}, 0, 2);
  EXPECT_EQ(english[2].AsPacket()->At(0, "NtfName").ToText(), "Employee 100");
}

TEST_P(RequestLoads, ALoadIsOneRoundTrip) {
  const std::int64_t id = world.NewRequest();
  const EngineCounters& counters = world.Server().Base().Counters();
  for (const char* login : {"kolev", "boss"}) {
    world.Load(login, Nav::ByKey, id);
    for (const Nav nav : {Nav::ByKey, Nav::First, Nav::Previous, Nav::Next, Nav::Last, Nav::Step}) {
      const std::int64_t roundTrips = counters.roundTrips;
      const std::int64_t statements = counters.statements;
      world.Load(login, nav, id, {}, 10);
      EXPECT_EQ(counters.roundTrips - roundTrips, 1);
      EXPECT_LE(counters.statements - statements, 13) << "guard, key, head, 8 parts, approvers";
    }
  }
}

TEST_P(RequestLoads, MovesAnswerTheirEnds) {
  EXPECT_EQ(world.Where("boss", Nav::Last, 0), "3") << "nothing was entered yet";
  world.NewRequest();
  EXPECT_EQ(world.Where("boss", Nav::First, 0), "2:1/1") << "a sole document is the last";
  for (int i = 2; i <= 25; ++i)
    world.NewRequest();
  const struct {
    Nav nav;
    std::int64_t from;
    int step;
    const char* where;
  } cases[] = {
      {Nav::First, 0, 0, "1:1/1"},      {Nav::Last, 0, 0, "2:25/1"},
      {Nav::ByKey, 1, 0, "1:1/1"},      {Nav::ByKey, 25, 0, "2:25/1"},
      {Nav::ByKey, 7, 0, "0:7/1"},      {Nav::ByKey, 26, 0, "3"},
      {Nav::ByKey, 0, 0, "3"},          {Nav::Next, 7, 0, "0:8/1"},
      {Nav::Previous, 7, 0, "0:6/1"},   {Nav::Next, 25, 0, "2:25/1"},
      {Nav::Previous, 1, 0, "1:1/1"},   {Nav::Next, 0, 0, "1:1/1"},
      {Nav::Step, 7, 10, "0:17/1"},     {Nav::Step, 17, -10, "0:7/1"},
      {Nav::Step, 16, 10, "2:25/1"},    {Nav::Step, 15, 10, "2:25/1"},
      {Nav::Step, 14, 10, "0:24/1"},    {Nav::Step, 10, -10, "1:1/1"},
      {Nav::Step, 11, -10, "1:1/1"},    {Nav::Step, 25, 10, "2:25/1"},
      {Nav::Previous, 99, 0, "2:25/1"},
  };
  for (const char* login : {"boss", "author", "kolev"}) {
    for (const auto& row : cases) {
      EXPECT_EQ(world.Where(login, row.nav, row.from, {}, row.step), row.where)
          << login << " nav " << static_cast<int>(row.nav) << " from " << row.from;
    }
  }
}

TEST_P(RequestLoads, MovesWalkOverWhatMayBeSeenOnly) {
  SixRequests();
  EXPECT_EQ(Walk("boss"), "1:1/1 0:2/1 0:3/1 0:4/1 0:5/1 2:6/1");
  EXPECT_EQ(Walk("author"), "1:1/1 0:2/1 0:3/1 0:4/1 0:5/1 2:6/1");
  EXPECT_EQ(Walk("kolev"), "1:1/1 0:3/1 2:6/1") << "the head of cost centre 1001";
  EXPECT_EQ(Walk("stranger"), "3");
  EXPECT_EQ(world.Where("kolev", Nav::ByKey, 2), "3");
  EXPECT_EQ(world.Where("kolev", Nav::Previous, 5), "0:3/1");
  EXPECT_EQ(world.Where("kolev", Nav::Step, 1, {}, 10), "2:6/1");
  EXPECT_EQ(world.Where("stranger", Nav::Step, 1, {}, 10), "3");
}

TEST_P(RequestLoads, VersionsAreWalkedWithinTheirRequest) {
  const std::int64_t id = world.NewRequest();
  world.NewRequest();
  for (int version = 1; version <= 3; ++version) {
    ASSERT_TRUE(
        world.Call("author", "TsmPurchaseOrderReport", {"NewRec", 2, id, version, "author"}));
  }
  EXPECT_EQ(world.Where("boss", Nav::ByKey, id), "1:1/4") << "the current one, among requests";
  const struct {
    Nav nav;
    int from;
    int step;
    const char* where;
  } cases[] = {
      {Nav::ByKey, 1, 0, "1:1/1"}, {Nav::ByKey, 2, 0, "0:1/2"},    {Nav::ByKey, 4, 0, "2:1/4"},
      {Nav::ByKey, 5, 0, "3"},     {Nav::First, 3, 0, "1:1/1"},    {Nav::Last, 2, 0, "2:1/4"},
      {Nav::Next, 2, 0, "0:1/3"},  {Nav::Previous, 3, 0, "0:1/2"}, {Nav::Next, 4, 0, "2:1/4"},
      {Nav::Step, 2, 10, "2:1/4"}, {Nav::Step, 4, -10, "1:1/1"},   {Nav::Step, 4, -2, "0:1/2"},
  };
  for (const char* login : {"boss", "kolev"}) {
    for (const auto& row : cases) {
      EXPECT_EQ(world.Where(login, row.nav, id, row.from, row.step), row.where)
          << login << " nav " << static_cast<int>(row.nav) << " from " << row.from;
    }
  }
  EXPECT_EQ(world.Where("stranger", Nav::ByKey, id, 2), "3");
}

TEST_P(RequestLoads, EveryReasonToSeeOpensTheDocument) {
  SixRequests();
  const auto sees = [&](const std::string& login) {
    std::string text;
    for (int id = 1; id <= 6; ++id) {
      if (world.Where(login, Nav::ByKey, id) != "3") text += std::to_string(id);
    }
    return text;
  };
  const auto grant = [&](Point point, int rights) {
    ASSERT_TRUE(world.Server().Admin().Grant("stranger", static_cast<int>(point), rights));
  };
  struct Reason {
    const char* what;
    const char* sql;
    const char* undo;
    const char* seen;
  };
  const Reason reasons[] = {
      {"created", "update PurchaseOrder set CreatedFrom = 'stranger' where POIdNumber = 2",
       "update PurchaseOrder set CreatedFrom = 'author'", "2"},
      {"requested", "update PurchaseOrder set Notifier = 105 where POIdNumber in (3, 4)",
       "update PurchaseOrder set Notifier = 100", "34"},
      {"heads the cost centre", "update CostCenters set Chief = 105 where CostCenter = 1002",
       "update CostCenters set Chief = null where CostCenter = 1002", "245"},
      {"heads the section", "update Sections set Chief = 105", "update Sections set Chief = 102",
       "136"},
      {"heads the department", "update Department set Chief = 'stranger'",
       "update Department set Chief = 'dimitrov'", "136"},
      {"stands in for the cost centre's head", "update StructDepDates set Deputy = 105",
       "update StructDepDates set Deputy = 104", "136"},
      {"stands in for the section's head",
       "update StructureDeputies set StructuralUnitType = 2, CostCenter = null, Section = 20",
       "update StructureDeputies set StructuralUnitType = 1, CostCenter = 1001, Section = null",
       ""},
      {"had a turn", "insert into ApprovalTurn values (105, 2, 5, 1)", "delete from ApprovalTurn",
       "5"},
      {"had a turn at another kind", "insert into ApprovalTurn values (105, 1, 5, 1)",
       "delete from ApprovalTurn", ""},
  };
  for (const Reason& reason : reasons) {
    EXPECT_EQ(sees("stranger"), "") << "before " << reason.what;
    world.RunSql(reason.sql);
    EXPECT_EQ(sees("stranger"), reason.seen) << reason.what;
    const std::string walked = Walk("stranger");
    for (const char* id = reason.seen; *id != '\0'; ++id)
      EXPECT_NE(walked.find(std::string(":") + *id + "/"), std::string::npos) << reason.what;
    if (*reason.seen == '\0') {
      EXPECT_EQ(walked, "3") << reason.what;
    }
    world.RunSql(reason.undo);
  }
  world.RunSql(
      "update StructureDeputies set StructuralUnitType = 2, CostCenter = null, Section = 20");
  world.RunSql("update StructDepDates set Deputy = 105");
  EXPECT_EQ(sees("stranger"), "136") << "stands in for the section's head";
  world.RunSql(
      "update StructureDeputies set StructuralUnitType = 3, Section = null, Department = 3");
  EXPECT_EQ(sees("stranger"), "136") << "stands in for the department's head";
  world.RunSql("update StructDepDates set FromDate = ?1", {*Date::FromYmd(2026, 3, 6)});
  EXPECT_EQ(sees("stranger"), "") << "not before his period";
  world.RunSql("update StructDepDates set FromDate = ?1, ToDate = ?1",
               {*Date::FromYmd(2026, 3, 5)});
  EXPECT_EQ(sees("stranger"), "136") << "both days included";
  world.RunSql("update StructDepDates set Deputy = 104");

  world.RunSql("update PurchaseOrder set Status = POIdNumber + 1");  // 2 to 7
  for (const Point point : {Point::Deliveries, Point::SupplierInvoices}) {
    grant(point, 1);
    EXPECT_EQ(sees("stranger"), "45") << "statuses 5 and 6 for whoever receives or pays";
    grant(point, 0);
  }
  EXPECT_EQ(sees("stranger"), "");
}

TEST_P(RequestLoads, SearchesShowWhatLoadsShow) {
  SixRequests();
  for (int id = 1; id <= 6; ++id)
    ASSERT_EQ(world.AddRow(id, 1, 20, id * 1000.0), "ok");
  const auto search = [&](const std::string& login, const std::string& sql,
                          const std::string& serverClass, const std::string& provider) {
    FetchRequest request;
    request.serverClass = serverClass;
    request.provider = provider;
    request.sql = sql;
    const auto packets =
        world.Server()->Fetch(world.As(login).At(Point::PurchaseRequests), {request});
    if (!packets) return packets.GetFailure().message;
    std::string text;
    for (std::size_t row = 0; row < packets->front().rowCount; ++row)
      text += packets->front().At(row, std::size_t{0}).ToText();
    return text;
  };
  const std::string heads =
      "SELECT po.POIdNumber FROM PurchaseOrder po WITH (NOLOCK) WHERE 1=1"
      " ORDER BY po.POIdNumber";
  const std::string rows =
      "SELECT d.PurchaseOrderId FROM PurchaseOrderDet d WHERE d.Quantity > 0"
      " ORDER BY d.PurchaseOrderId";
  const std::string through =
      "SELECT c.CostCenter FROM CostCenters c WHERE c.CostCenter IN (SELECT"
      " CostCenter FROM PurchaseOrder)";
  std::vector<std::int64_t> read = {0};
  for (const auto& [serverClass, provider] :
       {std::pair("TsmSQL", "dspSQL"), std::pair("TsmPurchaseOrderReport", "dspResult")}) {
    EXPECT_EQ(search("boss", heads, serverClass, provider), "123456");
    EXPECT_EQ(search("kolev", heads, serverClass, provider), "136");
    EXPECT_EQ(search("kolev", rows, serverClass, provider), "136");
    EXPECT_EQ(search("stranger", heads, serverClass, provider), "");
    EXPECT_EQ(search("stranger", rows, serverClass, provider), "");
    EXPECT_EQ(search("kolev", through, serverClass, provider), "1001");
    EXPECT_EQ(search("stranger", through, serverClass, provider), "");
    read.push_back(world.Server().Orvane().SearchesRead());
  }
  EXPECT_EQ(read[1], 4) << "those who see a part share their statements";
  EXPECT_EQ(read[2], read[1]) << "none of them is read twice";
}

TEST_P(RequestLoads, ClaimsMayFallShortOfTheSessionAndNeverExceedIt) {
  const std::int64_t id = world.NewRequest();
  const auto load = [&](const std::string& login, const Variant& name, const Variant& employee,
                        const Variant& needs) {
    return Outcome(world.Call(login, "TsmPurchaseOrder",
                              {"GetRec", 1, 0, 0, id, Variant(), name, employee, needs, false}));
  };
  EXPECT_EQ(load("author", "author", 100, true), "ok");
  EXPECT_EQ(load("author", "author", Variant(), true), "ok");
  EXPECT_EQ(load("author", "kolev", 100, true), "NoRight");
  EXPECT_EQ(load("author", "author", 101, true), "NoRight");
  EXPECT_EQ(load("author", "author", 100, false), "NoRight") << "claims a lower level";
  EXPECT_EQ(load("boss", "boss", Variant(), false), "ok");
  EXPECT_EQ(load("boss", "boss", Variant(), true), "ok") << "claims less";
  EXPECT_EQ(load("boss", "boss", 100, false), "NoRight");
  const std::int64_t refused = world.Server().Orvane().ClaimsRefused();
  load("author", "kolev", 100, true);
  EXPECT_EQ(world.Server().Orvane().ClaimsRefused(), refused + 1);
}

TEST_P(RequestLoads, PartsAreReadWithTheirDocumentOnly) {
  const std::int64_t id = world.NewRequest();
  for (const char* provider : {"dspPurchaseOrder", "dspPurchaseOrderDet", "dspPurchaseOrderAdm",
                               "dspDeliveries", "dspGetSuppDocConfirm"}) {
    FetchRequest request;
    request.serverClass = "TsmPurchaseOrder";
    request.provider = provider;
    EXPECT_EQ(
        Outcome(world.Server()->Fetch(world.As("author").At(Point::PurchaseRequests), {request})),
        "BadRequest")
        << provider << " " << id;
  }
}

TEST_P(RequestLoads, RatesComeByDataRequestAndRequestersByParameter) {
  const auto fetch = [&](const std::string& provider, NamedValues params) {
    FetchRequest request;
    request.serverClass = "TsmPurchaseOrder";
    request.provider = provider;
    request.params = std::move(params);
    const auto packets =
        world.Server()->Fetch(world.As("author").At(Point::PurchaseRequests), {request});
    if (!packets) return Outcome(packets);
    return packets->front().rowCount == 0 ? std::string("-")
                                          : packets->front().At(0, std::size_t{0}).ToText();
  };
  const auto rate = [&](int currency, int day) {
    return fetch("dspRatesOfExchange",
                 {{"Data", VariantArray{1, currency, *Date::FromYmd(2026, 3, day)}}});
  };
  EXPECT_EQ(rate(2, 1), "-");
  EXPECT_EQ(rate(2, 2), "1.9558300");
  EXPECT_EQ(rate(2, 30), "1.9558300") << "the latest not later than the day";
  world.RunSql("insert into RatesOfExchange values (1, 2, ?1, ?2)",
               {*Date::FromYmd(2026, 3, 10), *Decimal::Parse("2")->AtScale(7)});
  EXPECT_EQ(rate(2, 9), "1.9558300");
  EXPECT_EQ(rate(2, 10), "2.0000000");
  EXPECT_EQ(rate(3, 10), "-");
  EXPECT_EQ(fetch("dspRatesOfExchange", {{"Data", VariantArray{1, 2}}}), "BadRequest");
  EXPECT_EQ(fetch("dspCheckAdmNotifiers", {{"Notifier", 100}}), "100");
  EXPECT_EQ(fetch("dspCheckAdmNotifiers", {{"Notifier", 101}}), "-");
  EXPECT_EQ(fetch("dspNomIn249", {}), "0");
}

}  // namespace
}  // namespace orvane::server
