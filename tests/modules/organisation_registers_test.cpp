// The registers of the organisation through their real screens and the real server: what a walk
// cannot show of their rules. Their whole roads are walked in walks/structure.walk and its
// neighbours.

#include "modules/user_screen.h"

namespace orvane::modules {
namespace {

struct Company {
  Company() : server(Engine::Sqlite) {
    server.UseTwoLanguages();
    server.AddUser("ivanova");
    for (const char* statement :
         {"insert into Department (Code, Name, Name2, FoldName, Chief) values"
          " (1, 'Производство', 'Production', 'п', 'ivanova')",
          "insert into Sections (Section, Name, FoldName) values (11, 'Цехове', 'ц')",
          "insert into CostCenters (CostCenter, Name, FoldName) values (1001, 'Механичен', 'м'),"
          " (1002, 'Заваръчен', 'з'), (1003, 'Щанцов', 'щ')",
          "insert into Structure (CostCenter, Department) values (1001, 1), (1002, 1)",
          "insert into StructureDeputies (IdNumber, StructuralUnitType, CostCenter) values"
          " (4, 1, 1001)"})
      server.Execute({statement, {}, {}});
  }
  TestServer server;
};

TEST(StructureScreen, OffersWhatTheColumnTheStateAndTheRightsAllow) {
  for (int rights = 1; rights <= kAllRights; rights += 2) {
    Company company;
    company.server.AddUser("petrov", rights);
    UserScreen screen(company.server, "Structure", "petrov");
    const auto live = [&] {
      return screen.Live({"acDelete", "acPrint", "acCancel", "acStructureDeputies"});
    };
    const bool mayEdit = (rights & 2) != 0;
    const bool mayInsert = (rights & 4) != 0;
    const bool mayDelete = (rights & 8) != 0;
    for (const GridColumn& column : screen.Grid("gStructure").columns) {
      SCOPED_TRACE(std::to_string(rights).append(" ").append(column.field));
      screen.GoTo("gStructure", column.field);
      std::string expected;
      if (column.field != "CostCenter") {
        expected.append(mayDelete ? "acDelete " : "").append("acPrint ");
        expected.append(mayEdit ? "acCancel " : "").append("acStructureDeputies");
      }
      EXPECT_EQ(live(), expected);
    }
    if (!mayInsert) continue;
    screen.Press(Ctrl(KeyCode::End));
    screen.Press(KeyCode::Down);
    EXPECT_EQ(live(), "acCancel") << rights;
    screen.GoTo("gStructure", "Section");
    EXPECT_EQ(live(), "acCancel") << rights;
  }
}

TEST(NameFills, AnEmptyCodeClearsAndAnUnknownOneLeavesTheName) {
  Company company;
  UserScreen screen(company.server, "Structure");
  TVosClientDataSet& rows = screen.Grid("gStructure").DataSet();
  const auto name = [&](const Variant& code) {
    if (!rows.Editing()) rows.Edit();
    rows.FieldByName("Department").Set(code);
    return rows.FieldByName("DepName").AsString();
  };
  EXPECT_EQ(rows.FieldByName("DepName").AsString(), "Производство");
  EXPECT_EQ(name({}), "");
  EXPECT_EQ(name(77), "");
  EXPECT_EQ(name(1), "Производство");
  EXPECT_EQ(name(77), "Производство");
  rows.Cancel();
  screen.Form()->Dispatch(ActionChosen{"acLanguage"});
  EXPECT_EQ(rows.FieldByName("DepName").AsString(), "Production");
  EXPECT_EQ(name(77), "Production");
  EXPECT_EQ(name({}), "");
  EXPECT_EQ(name(1), "Production");
}

TEST(StructureScreen, ShiftAloneGoesBackFromTheLastColumns) {
  Company company;
  UserScreen screen(company.server, "Structure");
  TVosDBGrid& grid = screen.Grid("gStructure");
  const auto after = [&](KeyStroke key) {
    screen.Form()->RunInGate([&] { grid.GoToRow(0); });
    screen.GoTo("gStructure", "Section");
    screen.Press(key);
    std::string place = std::to_string(grid.DataSet().RecNo());
    return place.append(" ").append(grid.CurrentField().Name());
  };
  EXPECT_EQ(after(KeyCode::Enter), "1 Department");
  EXPECT_EQ(after(KeyCode::Tab), "1 Department");
  EXPECT_EQ(after(Shift(KeyCode::Tab)), "0 DepName");
}

/// Somebody takes the number between the question for it and the write.
TEST(DeputiesScreen, ANumberTakenMeanwhileIsToldAndTheNextPostTakesAnother) {
  Company company;
  UserScreen screen(company.server, "StructureDeputies");
  TVosClientDataSet& units = screen.Grid("gStructDeputies").DataSet();
  ASSERT_EQ(units.RecordCount(), 1U);
  bool taken = false;
  units.BeforeApplyUpdates = [&] {
    if (taken) return;
    taken = true;
    company.server.Execute(
        {"insert into StructureDeputies (IdNumber, StructuralUnitType, Section)"
         " values (5, 2, 11)",
         {},
         {}});
  };
  screen.Form()->RunInGate([&] {
    units.Append();
    units.FieldByName("StructuralUnitType").Set(1);
    units.FieldByName("CostCenter").Set(1002);
    units.Post();
  });
  EXPECT_EQ(screen.Messages(),
            "Номер 5 междувременно е даден на друга структурна единица. Запишете реда още веднъж, "
            "той ще получи следващия свободен номер.");
  EXPECT_EQ(units.State(), DataSetState::Insert);
  EXPECT_EQ(units.FieldByName("CCName").AsString(), "Заваръчен");
  screen.Form()->RunInGate([&] { units.Post(); });
  EXPECT_EQ(screen.Messages(), "");
  EXPECT_EQ(units.FieldByName("IdNumber").AsInt(), 6);
}

TEST(DeputiesScreen, APeriodNeedsAUnitThatIsSaved) {
  Company company;
  UserScreen screen(company.server, "StructureDeputies");
  TVosClientDataSet& units = screen.Grid("gStructDeputies").DataSet();
  TVosClientDataSet& periods = screen.Grid("gStructDepDates").DataSet();
  screen.Form()->RunInGate([&] { units.Append(); });
  screen.Form()->RunInGate([&] { periods.Append(); });
  EXPECT_EQ(screen.Messages(),
            "Изберете или запишете първо структурна единица, за която е заместникът.");
  EXPECT_EQ(periods.State(), DataSetState::Browse);
  units.Cancel();
  screen.Form()->RunInGate([&] { periods.Append(); });
  EXPECT_EQ(periods.State(), DataSetState::Insert);
  periods.Cancel();
  screen.Form()->RunInGate([&] { units.Delete(); });
  EXPECT_TRUE(units.IsEmpty());
  screen.Form()->RunInGate([&] { periods.Append(); });
  EXPECT_NE(screen.Messages(), "");
}

}  // namespace
}  // namespace orvane::modules
