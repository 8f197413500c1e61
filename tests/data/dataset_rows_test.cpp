// Order, finding, lookups, portions and the largest number of a dataset.

#include <gtest/gtest.h>

#include "data/abort.h"
#include "data/data_module.h"
#include "data/fake_server.h"

namespace orvane::data::test {
namespace {

std::string Names(const TVosClientDataSet& dataSet) {
  std::string names;
  for (std::size_t i = 0; i < dataSet.RecordCount(); ++i) {
    names += (i == 0 ? "" : " ") + dataSet.TextAt(i, dataSet.FieldByName("Name"));
  }
  return names;
}

void LoadNames(Desk& desk, std::initializer_list<const char*> names) {
  desk.server.rows.clear();
  int id = 0;
  for (const char* name : names) {
    ++id;
    desk.server.Put(id, name, id % 2);
  }
  desk.Open();
}

TEST(DatasetOrder, FoldsLettersOfBothAlphabets) {
  Desk desk;
  desk.items.SetIndexFieldNames("Name");
  LoadNames(desk, {"ябълка", "Боб", "боза", "АНА", "zebra", "Ана Мария", "Йод", "Apple", "ана"});
  EXPECT_EQ(Names(desk.items), "Apple zebra АНА ана Ана Мария Боб боза Йод ябълка");
}

TEST(DatasetOrder, TwoFieldsNullsFirstEqualRowsAsTheyCame) {
  Desk desk;
  LoadNames(desk, {"в", "б", "а", "г"});
  desk.server.rows[2][3] = Variant();
  desk.server.rows[1][3] = -5;
  desk.Open();
  desk.items.Locate("Name", "а");
  desk.items.SetIndexFieldNames("Unit;Name");
  EXPECT_EQ(Names(desk.items), "б в г а");  // Null, -5, 0, 1
  EXPECT_EQ(desk.items[item::Name].AsString(), "а");
  desk.items.SetIndexFieldNames("");
  EXPECT_EQ(Names(desk.items), "в б а г");
  EXPECT_EQ(desk.items[item::Name].AsString(), "а");
}

TEST(DatasetOrder, IsKeptWhileRowsChange) {
  Desk desk;
  desk.items.SetIndexFieldNames("Name");
  desk.Type(1, "Name=Пешо");
  desk.items.Post();
  EXPECT_EQ(Shown(desk.items), "2 Боби, 3 Вера, [1 Пешо]");
  desk.TypeNew("Id=9 Name=Гена");
  EXPECT_EQ(Shown(desk.items), "2 Боби, 3 Вера, 1 Пешо, [9 Гена]");
  desk.items.Post();
  EXPECT_EQ(Shown(desk.items), "2 Боби, 3 Вера, [9 Гена], 1 Пешо");
}

TEST(DatasetFind, TellsCasesApartAndTakesTheFirstRowShown) {
  Desk desk;
  LoadNames(desk, {"ана", "Ана", "Боби", "Ана"});
  EXPECT_EQ(desk.items.Find("Name", "Ана"), 1u);
  EXPECT_EQ(desk.items.Find("Name", "АНА"), std::nullopt);
  EXPECT_EQ(desk.items.Find("Id", Decimal(30000, 4)), 2u);
  EXPECT_EQ(desk.items.Find("Id", "3"), std::nullopt);
  EXPECT_EQ(desk.items.Find("Price", Variant()), 0u);
  EXPECT_EQ(desk.items.Find({{"Name", "Ана"}, {"Unit", 0}}), 1u);
  EXPECT_EQ(desk.items.Find({{"Name", "Боби"}, {"Unit", 0}}), std::nullopt);
  EXPECT_TRUE(desk.items.Locate("Name", "Боби"));
  EXPECT_FALSE(desk.items.Locate("Name", "Вера"));
  EXPECT_EQ(desk.items.RecNo(), 2u);
}

/// Finding is indexed; the index must follow whatever happens to the rows.
TEST(DatasetFind, FollowsEveryChange) {
  Desk desk;
  const auto at = [&](int id) { return desk.items.Find("Id", id); };
  EXPECT_EQ(at(3), 2u);
  desk.TypeNew("Id=9");
  EXPECT_EQ(at(9), std::nullopt);
  desk.items.Post();
  EXPECT_EQ(at(9), 3u);
  desk.Type(1, "Id=8");
  EXPECT_EQ(at(8), std::nullopt);
  desk.items.Post();
  EXPECT_EQ(at(8), 0u);
  EXPECT_EQ(at(1), std::nullopt);
  desk.items.Delete();
  EXPECT_EQ(at(9), 2u);
  desk.items.CancelUpdates();
  EXPECT_EQ(at(1), 0u);
  EXPECT_EQ(at(9), std::nullopt);
  desk.items.Insert();
  desk.items[item::Id].Set(7);
  desk.items.Post();
  EXPECT_EQ(at(7), 1u);  // before the current row, Боби
  EXPECT_EQ(at(3), 3u);
  desk.items.SetIndexFieldNames("Id");
  EXPECT_EQ(at(7), 3u);
}

TEST(DatasetPortions, AreAddedWithoutMovingTheCursor) {
  Desk desk;
  desk.items.SetIndexFieldNames("Name");
  desk.server.answers = [](const FetchRequest& request) {
    DataPacket packet;
    packet.AddColumn("ID", ValueKind::Code).AddColumn("name", ValueKind::Memo);
    packet.AddColumn("Unknown", ValueKind::Double);
    const bool first = request.continuation.empty();
    packet.AppendRow(std::vector<Variant>{first ? 5 : 6, first ? "Вера" : "Ана", 1.5});
    packet.continuation = first ? "5" : "";
    return packet;
  };
  desk.items.RowLimit = 1;
  desk.items.Open();
  EXPECT_TRUE(desk.items.HasMore());
  EXPECT_EQ(Shown(desk.items), "[5 Вера]");
  desk.items.FetchMore();
  EXPECT_EQ(Shown(desk.items), "6 Ана, [5 Вера]");
  EXPECT_EQ(desk.items.Find("Id", 5), 1u);
  EXPECT_TRUE(desk.items[item::Price].IsNull());  // no such column came
  const auto calls = desk.session.calls;
  desk.items.FetchMore();
  EXPECT_EQ(desk.session.calls, calls);
}

TEST(DatasetPortions, ValuesOfAnotherKindAreRefusedAndTheRowsStay) {
  Desk desk;
  DataPacket packet;
  packet.AddColumn("Id", ValueKind::String, 5);
  packet.AppendRow(std::vector<Variant>{"x"});
  EXPECT_THROW(desk.items.LoadPacket(packet), ServerError);
  EXPECT_EQ(desk.items.RecordCount(), 3u);
}

TEST(DatasetMax, CountsTheRowsThatAreThere) {
  Desk desk;
  EXPECT_EQ(desk.items.MaxOf(item::Id, 1), Variant(4));
  desk.items.Locate("Id", 3);
  desk.items.Delete();
  EXPECT_EQ(desk.items.MaxOf(item::Id, 1), Variant(3));
  desk.TypeNew("Id=40");
  EXPECT_EQ(desk.items.MaxOf(item::Id), Variant(40));
  desk.items.Cancel();
  EXPECT_TRUE(desk.items.MaxOf(item::Unit).IsNull());
  desk.items.EmptyDataSet();
  EXPECT_TRUE(desk.items.MaxOf(item::Id, 1).IsNull());
}

// --- lookups
// --------------------------------------------------------------------------------------

constexpr auto kCode = Int16("Code", Key);
constexpr auto kUnitName = String("Name", 20);
constexpr auto kUnitName2 = String("Name2", 20);
constexpr auto kLupUnit = String("lupUnit", 20, Joined);

DataPacket Units(std::initializer_list<std::pair<int, const char*>> units) {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Int16).AddColumn("Name", ValueKind::String, 20);
  packet.AddColumn("Name2", ValueKind::String, 20);
  for (const auto& [code, name] : units)
    packet.AppendRow(std::vector<Variant>{code, name, std::string(name) + "2"});
  return packet;
}

struct LookupDesk : Desk {
  LookupDesk() : units("cdsUnits", {kCode, kUnitName, kUnitName2}) {
    server.rows[1][3] = 10;
    server.rows[2][3] = 20;
    server.rows[3][3] = 10;
    items.AddLookup(kLupUnit, units, "Unit", "Code", "Name");
    units.LoadPacket(Units({{10, "кг"}, {20, "бр"}}));
    Open();
  }
  std::string UnitNames() const {
    std::string names;
    for (std::size_t i = 0; i < items.RecordCount(); ++i)
      names += items.TextAt(i, items.FieldByName("lupUnit")) + ";";
    return names;
  }
  TVosClientDataSet units;
};

TEST(Lookups, FollowTheKeyAndTheLanguageWithoutACall) {
  LookupDesk desk;
  EXPECT_EQ(desk.UnitNames(), "кг;бр;кг;");
  desk.items.SetLookupResult(kLupUnit, "Name2");
  EXPECT_EQ(desk.UnitNames(), "кг2;бр2;кг2;");
  desk.Type(1, "Unit=20");
  EXPECT_EQ(desk.items[kLupUnit].AsString(), "бр2");
  desk.items[item::Unit].Clear();
  EXPECT_EQ(desk.items[kLupUnit].AsString(), "");
  EXPECT_EQ(desk.session.calls, 0);
}

TEST(Lookups, KeepTheNamesOfRowsWhenTheirSourceIsNarrowed) {
  LookupDesk desk;
  desk.units.LoadPacket(Units({{20, "броя"}}));
  EXPECT_EQ(desk.UnitNames(), "кг;броя;кг;");
  desk.items.SetLookupResult(kLupUnit, "Name2");
  EXPECT_EQ(desk.UnitNames(), ";броя2;;");
}

TEST(Lookups, NameTheKeysThatHaveNotArrivedOnce) {
  LookupDesk desk;
  desk.server.rows[2][3] = 30;
  desk.server.Put(4, "Гена", 30);
  desk.server.Put(5, "Дора", 40);
  desk.Open();
  const TField& lookup = desk.items[kLupUnit];
  EXPECT_EQ(desk.items.MissingLookupKeys(lookup), (std::vector<Variant>{30, 40}));
  desk.units.AppendRows(Units({{30, "м"}}));
  EXPECT_EQ(desk.UnitNames(), "кг;м;кг;м;;");
  EXPECT_EQ(desk.items.MissingLookupKeys(lookup), (std::vector<Variant>{40}));
}

TEST(Lookups, OutliveTheirSource) {
  Desk desk;
  desk.server.rows[1][3] = 10;
  {
    TVosClientDataSet units("cdsUnits", {kCode, kUnitName});
    desk.items.AddLookup(kLupUnit, units, "Unit", "Code", "Name");
  }
  desk.Open();
  EXPECT_EQ(desk.items[kLupUnit].AsString(), "");
}

TEST(FetchTogether, IsOneCallAndClosesTheConnections) {
  Desk desk;
  TVosSQLConnection other(desk.session, {11, 1}, "TsmSQL");
  TVosClientDataSet more("cdsMore", other, {item::Id, item::Name});
  more.Sql = "SELECT Id, Name FROM Item";
  FetchTogether({&desk.items, &more});
  EXPECT_EQ(desk.session.calls, 1);
  ASSERT_EQ(desk.server.fetches.size(), 1u);
  EXPECT_EQ(desk.server.fetches[0][1].serverClass, "TsmSQL");
  EXPECT_EQ(desk.server.fetches[0][1].provider, "dspSQL");
  EXPECT_EQ(more.RecordCount(), 3u);
  EXPECT_FALSE(desk.connection.Connected());
  desk.server.link = Link::CutBefore;
  desk.connection.Open();
  other.Open();
  EXPECT_THROW(FetchTogether({&desk.items, &more}), ServerError);
  EXPECT_FALSE(desk.connection.Connected() || other.Connected());
}

}  // namespace
}  // namespace orvane::data::test
