// The search report of supplier orders: what its filter leaves, who sees which orders, and portions
// that come one behind the other.

#include "contract/supplier_order.h"
#include "server/request_world.h"

namespace orvane::server {
namespace {

using namespace supplier_order;

class OrderReport : public RequestCase {
 protected:
  /// Orders 1 to 6: cost centre, supplier, status, creator.
  OrderReport() {
    const struct {
      int center, supplier, status;
      const char* creator;
    } orders[] = {{1001, 7, 2, "author"}, {1002, 7, 5, "author"}, {1001, 8, 5, "kolev"},
                  {1002, 8, 0, "kolev"},  {1001, 7, 6, "kolev"},  {1002, 7, 5, "kolev"}};
    int id = 0;
    for (const auto& order : orders) {
      world.RunSql(
          "insert into SuppManifacOrder (IdNumber, DocumentDate, Description, Description2,"
          " CostCenter, KindSupply, Supplier, KindCurrency, Notifier, CreatedFrom, CreatedOn,"
          " Status) values (?1, ?2, 'Листове', 'Sheets', ?3, 3, ?4, 1, 101, ?5, ?6, ?7)",
          {++id, *Date::FromYmd(2026, 3, 1), order.center, order.supplier, order.creator, Stamp{1},
           order.status});
    }
  }

  Answer<DataPacket> Ask(const std::string& login, const NamedValues& filter, int rows = 0,
                         const Variant& continuation = {}, bool first = true,
                         const std::string& claimed = "") {
    DataPacket packet;
    VariantArray values;
    for (const FieldDef& field : report::kFilter.fields) {
      packet.AddColumn(field.name, field.kind, field.size);
      const Variant* value = FindValue(filter, field.name);
      values.push_back(value ? *value->As(field.kind) : Variant());
    }
    packet.AppendRow(values);
    const VariantArray options = {first, rows, continuation};
    const VariantArray context = {Variant(), claimed.empty() ? login : claimed, Variant(options)};
    const auto answer = world.Server()->Call(world.As(login).At(Point::SupplierOrders),
                                             {std::string(kReportClass),
                                              std::string(get_report::kName),
                                              {Variant(context), Variant(packet)}});
    if (!answer) return answer.GetFailure();
    return *answer->at(get_report::kResultPacket).AsPacket();
  }
  /// "1 2 3", with "…3" behind when more follows.
  std::string Ids(const std::string& login, const NamedValues& filter, int rows = 0,
                  const Variant& continuation = {}) {
    const auto packet = Ask(login, filter, rows, continuation);
    if (!packet) return packet.GetFailure().message;
    std::string ids;
    for (std::size_t row = 0; row < packet->rowCount; ++row)
      ids += (row == 0 ? "" : " ") + packet->At(row, "IdNumber").ToText();
    return packet->continuation.empty() ? ids : ids + "…" + packet->continuation;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, OrderReport, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(OrderReport, ShowsWhatPassesTheFilterAndMayBeSeen) {
  const struct {
    const char* login;
    NamedValues filter;
    const char* ids;
  } cases[] = {
      {"boss", {}, "1 2 3 4 5 6"},
      {"boss", {{"CostCenter", 1001}}, "1 3 5"},
      {"boss", {{"Supplier", 8}}, "3 4"},
      {"boss", {{"Status", 5}}, "2 3 6"},
      {"boss", {{"Status", 5}, {"Supplier", 7}, {"FromNumber", 3}}, "6"},
      {"boss", {{"FromNumber", 2}, {"ToNumber", 4}}, "2 3 4"},
      {"boss", {{"FromNumber", 5}, {"ToNumber", 4}}, ""},
      {"boss", {{"FromNumber", 7}}, ""},
      {"boss", {{"CostCenter", 9999}}, ""},
      {"author", {}, "1 2 3 5 6"},  // his own, and those he may request against
      {"author", {{"Status", 5}}, "2 3 6"},
      {"author", {{"ToNumber", 1}}, "1"},
      {"author", {{"Supplier", 8}}, "3"},
      {"kolev", {{"CostCenter", 1002}}, "2 4 6"},
      {"petrova", {}, "1 3 5"},
      {"petrova", {{"FromNumber", 2}, {"ToNumber", 4}}, "3"},
      {"stranger", {}, ""},
  };
  for (const auto& row : cases)
    EXPECT_EQ(Ids(row.login, row.filter), row.ids) << row.login;
}

TEST_P(OrderReport, ComesInPortionsForWhoeverSeesAllAndForWhoeverSeesAPart) {
  for (const char* login : {"boss", "kolev"}) {
    EXPECT_EQ(Ids(login, {}, 4), "1 2 3 4…4") << login;
    EXPECT_EQ(Ids(login, {}, 4, "4"), "5 6") << login;
    EXPECT_EQ(Ids(login, {{"FromNumber", 2}}, 2, "3"), "4 5…5") << login;
    EXPECT_EQ(Ids(login, {}, 6), "1 2 3 4 5 6") << login;
  }
}

TEST_P(OrderReport, SpeaksTheLanguageThatIsAskedFor) {
  const auto first = Ask("boss", {{"ToNumber", 1}});
  const auto second = Ask("boss", {{"ToNumber", 1}}, 0, {}, false);
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->At(0, "Description"), Variant("Листове"));
  EXPECT_EQ(second->At(0, "Description"), Variant("Sheets"));
  EXPECT_EQ(second->At(0, "SupplierName"), Variant("Доставчик"));  // has no second name
}

TEST_P(OrderReport, RefusesWhatIsNotAQuestion) {
  EXPECT_EQ(Outcome(Ask("author", {}, 0, {}, true, "boss")), "NoRight");
  EXPECT_EQ(Outcome(Ask("boss", {}, 0, "4 or 1 = 1")), "BadRequest");
  EXPECT_EQ(Outcome(Ask("boss", {}, 0, "-1")), "BadRequest");
  const auto bare = world.Server()->Call(
      world.As("boss").At(Point::SupplierOrders),
      {std::string(kReportClass), std::string(get_report::kName), {Variant(), Variant()}});
  EXPECT_EQ(Outcome(bare), "BadRequest");
}

TEST_P(OrderReport, OpensWithTheCostCentresOfTheAskerAndTheNamesOfStatuses) {
  const auto ask = [&](const std::string& login, const Variant& employee) {
    return world.Server()->Call(world.As(login).At(Point::SupplierOrders),
                                {std::string(kReportClass),
                                 std::string(report_params::kName),
                                 {Variant(VariantArray{Variant(), employee, 1})}});
  };
  const auto author = ask("author", 100);
  ASSERT_TRUE(author);
  EXPECT_EQ(author->at(report_params::kCostCenters).AsPacket()->rowCount, 2u);
  EXPECT_EQ(author->at(report_params::kStatuses).AsPacket()->At(5, "Name"), Variant("Одобрен"));
  const auto boss = ask("boss", Variant());
  ASSERT_TRUE(boss);
  EXPECT_EQ(boss->at(report_params::kCostCenters).AsPacket()->rowCount, 0u);
  EXPECT_EQ(Outcome(ask("author", 101)), "NoRight");
}

}  // namespace
}  // namespace orvane::server
