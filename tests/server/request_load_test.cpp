// Loads of purchase requests: what travels, in how many trips, moves and their ends, and who sees
// what.

#include "server/request_world.h"

namespace orvane {
namespace {

class RequestLoads : public RequestCase {};
INSTANTIATE_TEST_SUITE_P(Engines, RequestLoads, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestLoads, ANewRequestComesBackUnderItsNumberWithNamesAndRoles) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "100"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  const VariantArray told = world.Load("author", Nav::ByKey, id);
  ASSERT_EQ(told.size(), 12u);
  EXPECT_EQ(told[0].ToText(), "2");
  EXPECT_EQ(told[1], Variant(true));
  const DataPacket& head = *told[2].AsPacket();
  EXPECT_TRUE(head.IsSound());
  EXPECT_EQ(head.At(0, "POVersion").ToText(), "1");
  EXPECT_EQ(head.At(0, "NtfName").ToText(), "Служител 100");
  EXPECT_EQ(head.At(0, "CrtFrmName").ToText(), "Потребител author");
  EXPECT_EQ(head.At(0, "SumPurchaseOrder").ToText(), "100.0000");
  const DataPacket& row = *told[3].AsPacket();
  EXPECT_TRUE(row.IsSound());
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
  world.Load("kolev", Nav::ByKey, id);
  const EngineCounters& counters = world.Server().Base().Counters();
  for (const Nav nav : {Nav::ByKey, Nav::First, Nav::Previous, Nav::Next, Nav::Last, Nav::Step}) {
    const std::int64_t roundTrips = counters.roundTrips;
    const std::int64_t statements = counters.statements;
    world.Load("kolev", nav, id, {}, 10);
    EXPECT_EQ(counters.roundTrips - roundTrips, 1);
    EXPECT_LE(counters.statements - statements, 13) << "guard, key, head, 8 parts, approvers";
  }
}

}  // namespace
}  // namespace orvane
