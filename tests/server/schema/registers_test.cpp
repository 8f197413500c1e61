#include <gtest/gtest.h>

#include "packet/fold.h"
#include "support/engine_steps.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

class RegisterTables : public testing::TestWithParam<TestEngine> {
 protected:
  RegisterTables() : database_(FreshDatabase(GetParam())) {
    Do(*database_, Sql("insert into Measures (Code, Name, FoldName, Numerator) values (100, 'бр.', "
                       "'бр.', 1)"));
    Named("MaterialStocks (IdNumber, Measure, Name, FoldName)", "(7, 100, ", "Ламарина");
    Named("Services (Code, Measure, Name, FoldName)", "(8, 100, ", "Превоз");
    Named("BaseSupplyList (SerialNumber, Kind, InventoryCode, Measure, Name, FoldName)",
          "(1, 1, 7, 100, ", "Лист");
    Named("BaseSupplyList (SerialNumber, Kind, ServiceCode, Measure, Name, FoldName)",
          "(2, 2, 8, 100, ", "Камион");
  }

  void Named(const std::string& table, const std::string& values, const std::string& name) {
    Do(*database_,
       Sql("insert into " + table + " values " + values + "?1, ?2)", {name, Fold(name)}));
  }
  void Rename(const std::string& table, const std::string& where, const std::string& name) {
    Do(*database_,
       Sql("update " + table + " set Name = ?1, FoldName = ?2 where " + where, {name, Fold(name)}));
  }
  /// "Name/fold" of the two entries.
  std::string Shown() {
    const auto of = [&](int entry, const std::string& column) {
      return Ask(*database_, "select " + column + " from BaseSupplyList where SerialNumber = ?1",
                 ValueKind::Memo, {entry})
          .ToText();
    };
    std::string shown;
    for (const int entry : {1, 2})
      shown += of(entry, "EffectiveName") + "/" + of(entry, "FoldEffectiveName") + " ";
    return shown;
  }

  std::unique_ptr<Database> database_;
};
INSTANTIATE_TEST_SUITE_P(Engines, RegisterTables, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RegisterTables, AnEntryGoesByTheNameThatTheSettingChooses) {
  EXPECT_EQ(Shown(), "Лист/лист Камион/камион ");
  Rename("MaterialStocks", "IdNumber = 7", "Ламарина 2 мм");
  EXPECT_EQ(Shown(), "Лист/лист Камион/камион ");

  Do(*database_, Sql("insert into DescrBaseSupplyList (IdentityWithNom) values (1)"));
  EXPECT_EQ(Shown(), "Ламарина 2 мм/ламарина 2 мм Превоз/превоз ");
  Rename("Services", "Code = 8", "Транспорт");
  Rename("BaseSupplyList", "SerialNumber = 1", "Друго");
  EXPECT_EQ(Shown(), "Ламарина 2 мм/ламарина 2 мм Транспорт/транспорт ");

  Do(*database_, Sql("update DescrBaseSupplyList set IdentityWithNom = 0"));
  EXPECT_EQ(Shown(), "Друго/друго Камион/камион ");
  Do(*database_, Sql("update DescrBaseSupplyList set IdentityWithNom = 1"));
  Do(*database_, Sql("delete from DescrBaseSupplyList"));
  EXPECT_EQ(Shown(), "Друго/друго Камион/камион ");
}

TEST_P(RegisterTables, ListsKeepTheNameThatTheirEntryGoesBy) {
  Do(*database_, Sql("insert into KindSupplyLists (Code, Name, FoldName) values (4, 'Л', 'л')"));
  Do(*database_, Sql("insert into SupplyLists (KindList, SerialNumber, Measure) values (4, 1, 100),"
                     " (4, 2, 100)"));
  const Date day = *Date::FromYmd(2026, 3, 5);
  Do(*database_, Sql("insert into SupplyListsDates (KindList, SerialNumber, AvailableFromDate)"
                     " values (4, 1, ?1)",
                     {day}));
  Do(*database_, Sql("insert into BaseSupplyListDates (SerialNumber, AvailableFromDate)"
                     " values (1, ?1)",
                     {day}));
  const auto kept = [&] {
    std::string all;
    for (const char* list : {"SupplyLists", "SupplyListsDates", "BaseSupplyListDates"}) {
      const auto name = Ask(*database_,
                            std::string("select FoldEffectiveName from ")
                                .append(list)
                                .append(" where SerialNumber = 1"),
                            ValueKind::Memo, {});
      all.append(name.ToText()).append(" ");
    }
    return all;
  };
  EXPECT_EQ(kept(), "лист лист лист ");
  Rename("BaseSupplyList", "SerialNumber = 1", "Друго");
  EXPECT_EQ(kept(), "друго друго друго ");
  Do(*database_, Sql("insert into DescrBaseSupplyList (IdentityWithNom) values (1)"));
  EXPECT_EQ(kept(), "ламарина ламарина ламарина ");
  Rename("MaterialStocks", "IdNumber = 7", "Плоча");
  EXPECT_EQ(kept(), "плоча плоча плоча ");
  Do(*database_, Sql("update BaseSupplyListDates set SerialNumber = 2"));
  EXPECT_EQ(
      Ask(*database_, "select FoldEffectiveName from BaseSupplyListDates", ValueKind::Memo, {})
          .ToText(),
      "превоз");
}

TEST_P(RegisterTables, ThereIsOneSettingOfTheSupplyListAtMost) {
  Do(*database_, Sql("insert into DescrBaseSupplyList (IdentityWithNom) values (1)"));
  auto transaction = std::move(*database_->Begin());
  EXPECT_NE(Outcome(transaction->Execute(
                Sql("insert into DescrBaseSupplyList (IdentityWithNom) values (0)"))),
            "-");
}

}  // namespace
}  // namespace orvane::server
