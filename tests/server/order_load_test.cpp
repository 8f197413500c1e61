// Loads of supplier orders: what travels and in how many trips, moves and their ends, claims, and
// the providers that are read by themselves.

#include "server/order_world.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;
using order::get_record::At;

class OrderLoads : public OrderCase {
 protected:
  std::string Fetch(const std::string& login, std::string_view provider, NamedValues params,
                    std::string_view column) {
    FetchRequest request;
    request.serverClass = std::string(order::kServerClass);
    request.provider = std::string(provider);
    request.params = std::move(params);
    const auto packets =
        world.Server()->Fetch(world.As(login).At(Point::SupplierOrders), {request});
    if (!packets) return packets.GetFailure().message;
    std::string text;
    for (std::size_t row = 0; row < packets->front().rowCount; ++row)
      text += (row == 0 ? "" : ", ") + packets->front().At(row, column).ToText();
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, OrderLoads, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(OrderLoads, AnOrderComesBackUnderItsNumberWithNamesPartsAndPositions) {
  world.AddLevel(3, 1, 0, 0, ApproverKind::CostCenterHead, DocumentKind::SupplierOrder);
  const std::int64_t id = world.SentOrder();
  const VariantArray told = world.LoadOrder("kolev", Nav::ByKey, id);
  ASSERT_EQ(told.size(), std::size_t{At::kSize});
  EXPECT_EQ(told[At::kIdText], Variant(std::to_string(id))) << "the question comes back";
  EXPECT_EQ(told[At::kFound], Variant(true));
  EXPECT_EQ(told[At::kPosition].ToText(), "2");
  EXPECT_EQ(told[At::kReserved].ToText(), "0");
  EXPECT_EQ(told[At::kFullAccess], Variant(false));
  EXPECT_EQ(world.LoadOrder("boss", Nav::ByKey, id)[At::kFullAccess], Variant(true));
  for (const At at : {At::kHead, At::kRows, At::kApprovals, At::kRequests, At::kCostCenterRow,
                      At::kSupplierRow, At::kContractRow})
    ASSERT_TRUE(told[at].AsPacket() && told[at].AsPacket()->IsSound()) << int{at};
  const auto shown = [&](const VariantArray& answer, At at, std::string_view column) {
    return answer[at].AsPacket()->At(0, column).ToText();
  };
  const struct {
    At at;
    const char* column;
    const char* value;
  } cases[] = {
      {At::kHead, "CostCenterName", "Цех"},
      {At::kHead, "KindSupplyName", "Стоки"},
      {At::kHead, "SupplierName", "Доставчик"},
      {At::kHead, "ContractName", "Договор"},
      {At::kHead, "KindCurrencyName", "Лев"},
      {At::kHead, "NotifierName", "Служител 100"},
      {At::kHead, "CreatedFromName", "Потребител author"},
      {At::kHead, "SumManifacOrder", "100.0000"},
      {At::kRows, "Name", "Ламарина 2 мм"},
      {At::kRows, "MeasureName", "Килограм"},
      {At::kRows, "RoundQuantity", "3"},
      {At::kRows, "MatStockMeasure", "200"},
      {At::kRows, "Numerator", "1000"},
      {At::kApprovals, "ConfirmationLevel", "1"},
      {At::kCostCenterRow, "CostCenter", "1001"},
      {At::kSupplierRow, "Partner", "7"},
      {At::kContractRow, "IdNumber", "30"},
  };
  for (const auto& row : cases)
    EXPECT_EQ(shown(told, row.at, row.column), row.value) << row.column;
  EXPECT_NE(shown(told, At::kApprovals, "StatusName"), "");
  EXPECT_NE(shown(told, At::kApprovals, "ApprovalName"), "");
  EXPECT_EQ(told[At::kRequests].AsPacket()->rowCount, 0u);
  EXPECT_EQ(shown(world.LoadOrder("author", Nav::ByKey, id, 0, false), At::kHead, "NotifierName"),
            "Employee 100");
}

TEST_P(OrderLoads, ALoadIsOneRoundTrip) {
  const std::int64_t id = world.NewOrder();
  const EngineCounters& counters = world.Server().Base().Counters();
  for (const char* login : {"kolev", "boss"}) {
    world.LoadOrder(login, Nav::ByKey, id);
    for (const Nav nav : {Nav::ByKey, Nav::First, Nav::Previous, Nav::Next, Nav::Last, Nav::Step}) {
      const std::int64_t roundTrips = counters.roundTrips;
      const std::int64_t statements = counters.statements;
      world.LoadOrder(login, nav, id, 10);
      EXPECT_EQ(counters.roundTrips - roundTrips, 1);
      EXPECT_LE(counters.statements - statements, 12)
          << "guard, key, head, 5 parts, 2 of approvers, approval rows, requests";
    }
  }
}

TEST_P(OrderLoads, MovesAnswerTheirEndsAndWalkOverWhatMayBeSeen) {
  EXPECT_EQ(world.WhereOrder("boss", Nav::Last, 0), "3") << "nothing was entered yet";
  world.NewOrder();
  EXPECT_EQ(world.WhereOrder("boss", Nav::First, 0), "2:1") << "a sole document is the last";
  for (int i = 2; i <= 25; ++i)
    world.NewOrder({{"CostCenter", i % 2 == 1 ? 1001 : 1002}});
  const struct {
    Nav nav;
    std::int64_t from;
    int step;
    const char* where;
    const char* toHead;  ///< of cost centre 1001, the odd ones
  } cases[] = {
      {Nav::First, 0, 0, "1:1", "1:1"},    {Nav::Last, 0, 0, "2:25", "2:25"},
      {Nav::ByKey, 7, 0, "0:7", "0:7"},    {Nav::ByKey, 8, 0, "0:8", "3"},
      {Nav::ByKey, 26, 0, "3", "3"},       {Nav::Next, 7, 0, "0:8", "0:9"},
      {Nav::Previous, 7, 0, "0:6", "0:5"}, {Nav::Next, 25, 0, "2:25", "2:25"},
      {Nav::Previous, 1, 0, "1:1", "1:1"}, {Nav::Step, 7, 10, "0:17", "2:25"},
      {Nav::Step, 17, -10, "0:7", "1:1"},  {Nav::Step, 16, 10, "2:25", "2:25"},
      {Nav::Step, 10, -10, "1:1", "1:1"},  {Nav::Step, 3, 10, "0:13", "0:23"},
  };
  for (const auto& row : cases) {
    const std::string what =
        "nav " + std::to_string(static_cast<int>(row.nav)) + " from " + std::to_string(row.from);
    EXPECT_EQ(world.WhereOrder("boss", row.nav, row.from, row.step), row.where) << what;
    EXPECT_EQ(world.WhereOrder("author", row.nav, row.from, row.step), row.where) << what;
    EXPECT_EQ(world.WhereOrder("kolev", row.nav, row.from, row.step), row.toHead) << what;
    EXPECT_EQ(world.WhereOrder("stranger", row.nav, row.from, row.step), "3") << what;
  }
}

TEST_P(OrderLoads, WhoMayRequestForACostCenterFindsItsApprovedOrdersAndChangesNothing) {
  for (int i = 1; i <= 8; ++i)
    world.NewOrder({{"CostCenter", i % 2 == 1 ? 1001 : 1002}});
  world.RunSql("update SuppManifacOrder set Status = IdNumber where IdNumber < 8");
  world.RunSql("insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 105)");
  EXPECT_EQ(world.WhereOrder("stranger", Nav::First, 0), "1:5");
  EXPECT_EQ(world.WhereOrder("stranger", Nav::Next, 5), "2:7");
  EXPECT_EQ(world.WhereOrder("stranger", Nav::Previous, 7), "1:5");
  for (const int id : {1, 2, 3, 4, 6, 8})
    EXPECT_EQ(world.WhereOrder("stranger", Nav::ByKey, id), "3") << id;
  EXPECT_EQ(world.PartIn("stranger", 5), "-- 00@0");
  const std::string refusals[] = {
      world.MoveOrder("stranger", 5, Approved, Completed),
      world.MoveOrder("stranger", 5, Approved, Entered),
      world.MoveOrder("stranger", 7, Completed, Fulfilling),
      world.AnnulOrder("stranger", 5),
      world.DecideOrder("stranger", 5, 1, ApprovalWaiting, ApprovalGiven),
      world.ApplyOrder("stranger", "dspSuppManOrderDet", InsertOf(world.OrderRow(5, 1, 20, 1))),
      world.ApplyOrder(
          "stranger", "dspSuppManifacOrder",
          UpdateOf({{"IdNumber", 5}, {"Description", Variant()}}, {{"Description", "мое"}})),
      world.ApplyOrder("stranger", "dspSuppManifacOrder", DeleteOf({{"IdNumber", 5}})),
  };
  for (const std::string& refusal : refusals)
    EXPECT_NE(refusal, "ok");
  EXPECT_EQ(world.OrderStatus(5), Approved);
  world.RunSql("update SuppManifacOrder set CostCenter = 1002");
  EXPECT_EQ(world.WhereOrder("stranger", Nav::First, 0), "3");
}

TEST_P(OrderLoads, ClaimsAreComparedWithTheSession) {
  const std::int64_t id = world.NewOrder();
  const auto load = [&](const std::string& login, VariantArray changed) {
    VariantArray ask = {0, 0, std::to_string(id), "", login == "boss", login, "", true, false};
    for (std::size_t i = 0; i + 1 < changed.size(); i += 2)
      ask[static_cast<std::size_t>(*changed[i].AsInt())] = changed[i + 1];
    const auto told = world.Server()->Call(
        world.As(login).At(Point::SupplierOrders),
        {std::string(order::kServerClass), std::string(order::get_record::kName), ask});
    return told ? "ok " + (*told)[At::kFound].ToText() : Outcome(told);
  };
  const std::string found = "ok " + Variant(true).ToText();
  const std::string notFound = "ok " + Variant(false).ToText();
  EXPECT_EQ(load("author", {}), found);
  EXPECT_EQ(load("author", {At::kEmployee, "100"}), found);
  EXPECT_EQ(load("author", {At::kEmployee, 100}), found);
  EXPECT_EQ(load("author", {At::kEmployee, "101"}), "NoRight");
  EXPECT_EQ(load("author", {At::kEmployee, "сто"}), "BadRequest");
  EXPECT_EQ(load("author", {At::kLogin, "kolev"}), "NoRight");
  EXPECT_EQ(load("author", {At::kBelowThree, true}), "NoRight") << "claims a lower level";
  EXPECT_EQ(load("boss", {At::kBelowThree, false}), found) << "claims less";
  EXPECT_EQ(load("author", {At::kContext, world.As("author").info.sessionName}), found);
  EXPECT_EQ(load("author", {At::kContext, world.As("kolev").info.sessionName}), "BadRequest");
  EXPECT_EQ(load("author", {At::kIdText, "12a"}), notFound);
  EXPECT_EQ(load("author", {At::kIdText, "99999999999999999999"}), notFound);
  EXPECT_EQ(load("author", {At::kIdText, "4294967297"}), notFound) << "beyond 32 bits";
  EXPECT_EQ(load("author", {At::kMode, 9}), "BadRequest");
}

TEST_P(OrderLoads, ParametersOfTheScreenComeInOneAnswer) {
  const auto ask = [&](const std::string& login, const Variant& employee, bool first) {
    const auto told = world.Server()->Call(world.As(login).At(Point::SupplierOrders),
                                           {std::string(order::kServerClass),
                                            std::string(order::get_params::kName),
                                            {employee, first}});
    if (!told) return Outcome(told);
    EXPECT_EQ(told->size(), std::size_t{order::get_params::kSize});
    EXPECT_EQ((*told)[order::get_params::kContext], Variant(world.As(login).info.sessionName));
    for (const auto at :
         {order::get_params::kStatuses, order::get_params::kNoYes, order::get_params::kCurrencies})
      EXPECT_NE((*told)[at].AsPacket(), nullptr) << int{at};
    const DataPacket* centers = (*told)[order::get_params::kCostCenters].AsPacket();
    return (*told)[order::get_params::kEmployeeName].ToText() + "/" +
           (*told)[order::get_params::kIdentityWithNom].ToText() + "/" +
           (centers ? std::to_string(centers->rowCount) : "-");
  };
  const std::string no = Variant(false).ToText();
  EXPECT_EQ(ask("author", 100, true), "Служител 100/" + no + "/2");
  EXPECT_EQ(ask("author", 100, false), "Employee 100/" + no + "/2");
  EXPECT_EQ(ask("author", 101, true), "NoRight");
  EXPECT_EQ(ask("boss", 0, true), "/" + no + "/0");
  world.RunSql("insert into DescrBaseSupplyList (Id, IdentityWithNom) values (1, 1)");
  EXPECT_EQ(ask("author", 100, true), "Служител 100/" + Variant(true).ToText() + "/2");
}

TEST_P(OrderLoads, PartsAreReadByThemselvesForThoseWhoSeeTheOrder) {
  world.AddLevel(3, 1, 0, 0, ApproverKind::CostCenterHead, DocumentKind::SupplierOrder);
  const std::int64_t id = world.SentOrder();
  const NamedValues both = {{"FirstLanguage", true}, {"IdNumber", id}};
  const auto rows = [&](bool asStocks) {
    return NamedValues{{"IdentityWithNom", asStocks}, {"FirstLanguage", true}, {"IdNumber", id}};
  };
  const auto levels = [&](int language) {
    return NamedValues{{"FirstLanguage", language == 1},
                       {"NomInLanguage", language},
                       {"NomInApproval", 245},
                       {"NomInStatus", 251},
                       {"IdNumber", id}};
  };
  const VariantArray told = world.LoadOrder("author", Nav::ByKey, id);
  const std::string status = told[At::kApprovals].AsPacket()->At(0, "StatusName").ToText();
  for (const char* login : {"author", "kolev", "boss"}) {
    EXPECT_EQ(Fetch(login, "dspSuppManifacOrder", both, "NotifierName"), "Служител 100") << login;
    EXPECT_EQ(Fetch(login, "dspSuppManOrderDet", rows(false), "Name"), "Ламарина 2 мм");
    EXPECT_EQ(Fetch(login, "dspSuppManOrderDet", rows(true), "Name"), "Ламарина");
    EXPECT_EQ(Fetch(login, "dspSuppManOrderAdmin", levels(1), "StatusName"), status);
    EXPECT_EQ(Fetch(login, "dspSuppManOrderAdmin", levels(7), "StatusName"), status)
        << "a language without a name shows the first";
  }
  for (const char* provider : {"dspSuppManifacOrder", "dspPurchaseOrder"})
    EXPECT_EQ(Fetch("stranger", provider, both, "IdNumber"), "");
  EXPECT_EQ(Fetch("stranger", "dspSuppManOrderDet", rows(false), "Name"), "");
  EXPECT_EQ(Fetch("stranger", "dspSuppManOrderAdmin", levels(1), "StatusName"), "");
  EXPECT_EQ(Fetch("author", "dspRatesOfExchange",
                  {{"Data", VariantArray{1, 2, *Date::FromYmd(2026, 3, 9)}}}, "CurrencyRate1"),
            "1.9558300");
}

TEST_P(OrderLoads, RequestsAgainstAnOrderAreShownToThoseWhoSeeThem) {
  const std::int64_t id = world.AddOrder(20, 9000);
  const std::int64_t first = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(first, 1, 20, 1000, "0", id), "ok");
  const std::int64_t other = world.NewRequest(3, {{"CostCenter", 1002}});
  ASSERT_EQ(world.AddRow(other, 1, 20, 1000, "0", id), "ok");
  const std::int64_t annulled = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(annulled, 1, 20, 1000, "0", id), "ok");
  ASSERT_EQ(world.Annul("author", annulled), "ok");
  const auto seen = [&](const std::string& login) {
    const VariantArray told = world.LoadOrder(login, Nav::ByKey, id);
    const DataPacket& requests = *told[At::kRequests].AsPacket();
    std::string text;
    for (std::size_t row = 0; row < requests.rowCount; ++row)
      text += (row == 0 ? "" : ", ") + requests.At(row, "POIdNumber").ToText();
    EXPECT_EQ(
        Fetch(login, "dspPurchaseOrder", {{"FirstLanguage", true}, {"IdNumber", id}}, "POIdNumber"),
        text);
    return text;
  };
  EXPECT_EQ(seen("author"), "") << "what is only entered does not count against the order";
  world.RunSql("update PurchaseOrder set Status = 3");
  const std::string both = std::to_string(first) + ", " + std::to_string(other);
  EXPECT_EQ(seen("author"), both);
  EXPECT_EQ(seen("boss"), both);
  EXPECT_EQ(seen("kolev"), std::to_string(first)) << "the other is of cost centre 1002";
  world.RunSql("update PurchaseOrder set Status = 5");
  ASSERT_TRUE(world.Server().Admin().Grant("kolev", static_cast<int>(Point::Deliveries), 1));
  EXPECT_EQ(seen("kolev"), both) << "approved ones, for whoever receives";
}

}  // namespace
}  // namespace orvane::server
