// Lookup combos: what the list offers while typing, what a text means, the searches, the register
// behind the list.
#include "host/controls/combo.h"

#include <gtest/gtest.h>

#include "host/editing_screen.h"

namespace orvane::host {
namespace {

using fakes::EditingScreen;
using fakes::Host;
namespace goods = fakes::goods;

/// A screen with the cursor on the first row's unit.
struct AtUnit {
  Host host;
  std::unique_ptr<EditingScreen> screen;

  AtUnit() {
    host.LogIn();
    screen = std::make_unique<EditingScreen>(host);
    screen->See("Right Right");
  }
  std::string See(std::string_view keys) { return screen->See(keys); }
  std::string Unit() { return screen->cdsGoods[goods::Unit].Text(); }
  /// "10 килограм|*11 километър": the open list, a star before the highlighted entry.
  std::string List() {
    const ComboList& list = screen->cbUnits.List();
    if (!list.open) return "closed";
    std::string texts;
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
      if (i > 0) texts += '|';
      if (static_cast<int>(i) == list.current) texts += '*';
      texts += screen->cbUnits.ListText(i);
    }
    return texts;
  }
};

struct Row {
  const char* keys;
  const char* list;
};

TEST(ComboTest, TypingNarrowsTheList) {
  for (const Row& row : {
           Row{"'1'", "1  брой|10  килограм|11  километър|12  метър"},
           Row{"'1' '1'", "11  километър"},
           Row{"'кил'", "10  килограм|11  километър"},
           Row{"'КИЛ'", "10  килограм|11  километър"},
           Row{"'метър'", "12  метър|11  километър"},
           Row{"'метър' Down", "*12  метър|11  километър"},
           Row{"'кил' Down Down Down", "10  килограм|*11  километър"},
           Row{"'кил' Down Down Up", "*10  килограм|11  километър"},
           Row{"'ъгъл'", "closed"},
           Row{"'1' Backspace", "closed"},
           Row{"'1' Escape", "closed"},
           Row{"Alt+Down", "*1  брой|10  килограм|11  километър|12  метър"},
           Row{"Alt+Down PageDown", "1  брой|10  килограм|11  километър|*12  метър"},
       }) {
    AtUnit at;
    at.See(row.keys);
    EXPECT_EQ(at.List(), row.list) << row.keys;
  }
}

TEST(ComboTest, TheListSpeaksTheLanguageOfTheForm) {
  AtUnit at;
  at.screen->SwitchLanguage();
  at.See("'kil'");
  EXPECT_EQ(at.List(), "10  kilogram|11  kilometre");
}

struct Meaning {
  const char* keys;
  const char* unit;
  const char* seen;
};

TEST(ComboTest, WhatWasTypedBecomesACode) {
  const char* const missing = "1/3 Unit browse [99] !Стоки: Няма „99“ в списъка „Мярка“.";
  const char* const tooMany =
      "1/3 Unit browse [кил] !Стоки: „кил“ отговаря на няколко записа в "
      "списъка „Мярка“. Изберете един от тях.";
  for (const Meaning& row : {
           Meaning{"'12' Enter", "12", "1/3 Sum edit"},
           Meaning{"'1' Enter", "1", "1/3 Sum browse"},
           Meaning{"'килог' Enter", "10", "1/3 Sum edit"},
           Meaning{"'лограм' Enter", "10", "1/3 Sum edit"},
           Meaning{"'метър' Enter", "12", "1/3 Sum edit"},
           Meaning{"'кил' Down Down Enter", "11", "1/3 Sum edit"},
           Meaning{"Alt+Down Down Enter", "10", "1/3 Sum edit"},
           Meaning{"Alt+Down Escape Enter", "1", "1/3 Sum browse"},
           Meaning{"Delete Enter", "", "1/3 Sum edit"},
           Meaning{"'99' Enter", "1", missing},
           Meaning{"'кил' Enter", "1", tooMany},
           Meaning{"'99' Escape", "1", "1/3 Unit browse"},
           Meaning{"'1' Escape Escape", "1", "1/3 Unit browse"},
       }) {
    AtUnit at;
    EXPECT_EQ(at.See(row.keys), row.seen) << row.keys;
    EXPECT_EQ(at.Unit(), row.unit) << row.keys;
  }
}

TEST(ComboTest, AnEntryPickedByPointingIsTaken) {
  AtUnit at;
  at.See("'кил'");
  at.screen->Dispatch(ListPicked{1});
  EXPECT_EQ(at.Unit(), "11");
  EXPECT_EQ(at.screen->Seen(), "1/3 Unit edit");
}

TEST(ComboTest, ACellWithAComboIsItsFocus) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  std::string notes;
  screen.cbUnits.OnEnter = [&notes] { notes += "enter "; };
  screen.cbUnits.OnExit = [&notes] { notes += "exit "; };
  EXPECT_EQ(screen.FocusName(), "cbUnits");
  at.See("Right");
  EXPECT_EQ(screen.FocusName(), "grid");
  at.See("Left Down '1' Escape Escape");
  EXPECT_EQ(notes, "exit enter ");
  screen.FocusControl(&screen.eKey);
  screen.FocusControl(&screen.grid);
  EXPECT_EQ(notes, "exit enter exit enter ");
  screen.cbUnits.readOnly = true;
  EXPECT_EQ(screen.FocusName(), "grid") << "nothing can be looked up for a cell that is closed";
}

TEST(ComboTest, ASearchedRowsCodeGoesIntoTheFieldByItsRules) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  int changes = 0;
  screen.cdsGoods[goods::Unit].OnChange = [&changes] { ++changes; };
  std::string start;
  at.host.toolkit.modals.push_back([&](TVosBaseForm& dialog) {
    start = dialog.caption;
    DataPacket found;
    found.AddColumn("Code", ValueKind::Int16);
    found.AddColumn("Name", ValueKind::String, 30);
    found.AppendRow(std::vector<Variant>{10, "килограм"});
    at.host.server.packets = {found};
    fakes::Press(dialog, KeyCode::F9);
    fakes::Press(dialog, KeyCode::Enter);
  });
  screen.lookupUnits.dlgSQL = {"SELECT Code, Name, Name2", "FROM Measures", "{$W}", "{$O}"};
  screen.lookupUnits.dlgSearchFields = {
      {.name = "Code", .displayName = "Код"},
      {.name = "Name", .displayName = "Име", .allowPartSearch = true},
  };
  screen.RunInGate([&] { screen.cbUnits.SearchByName(); });
  EXPECT_EQ(screen.TakeMessages(), "");
  EXPECT_EQ(start, "Търсене - Мерки");
  EXPECT_EQ(at.Unit(), "10");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(screen.Seen(), "1/3 Unit edit");
}

class UnitsRegister : public TVosBaseForm {
 public:
  explicit UnitsRegister(const FormIdentity& identity)
      : TVosBaseForm(identity, "TfUnits", "Мерки") {
    chosenCode = 12;
  }
};

TEST(ComboTest, TheRegisterBehindTheListHandsItsChoiceBack) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  at.host.app.classes.Register("TfUnits", [](const FormIdentity& identity) {
    return std::unique_ptr<TVosBaseForm>(new UnitsRegister(identity));
  });
  screen.lookupUnits.dlgSQL = {"SELECT Code, Name, Name2", "FROM Measures", "{$W}", "{$O}"};
  screen.cbUnits.nomenclatureClass = "TfElsewhere";
  EXPECT_FALSE(screen.cbUnits.HasNomenclature()) << "no such screen";
  screen.cbUnits.nomenclatureClass = "TfUnits";
  EXPECT_TRUE(screen.cbUnits.HasNomenclature());
  DataPacket fresh;
  fresh.AddColumn("Code", ValueKind::Int16);
  fresh.AppendRow(std::vector<Variant>{12});
  at.host.server.packets = {fresh};
  screen.RunInGate([&] { screen.cbUnits.OpenNomenclature(); });
  EXPECT_EQ(screen.TakeMessages(), "");
  EXPECT_EQ(at.Unit(), "12");
}

TEST(ComboTest, AColumnOfNamesIsChosenByNameOrCodeAndWritesTheCode) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  constexpr auto kUnitName = String("lupUnit", 30, Joined, "Мярка");
  screen.cdsGoods.AddLookup(kUnitName, screen.cdsUnits, "Unit", "Code", "Name");
  screen.grid.columns[2].field = "lupUnit";
  screen.FillGoods();
  screen.grid.SetCurrentColumn(2);
  EXPECT_EQ(at.See("F2"), "1/3 lupUnit browse [брой]");
  EXPECT_EQ(at.See("Enter"), "1/3 Sum browse") << "an untouched name is no choice";
  for (const auto& [keys, unit, name] :
       {std::tuple{"'километър' Enter", "11", "километър"}, std::tuple{"'12' Enter", "12", "метър"},
        std::tuple{"Alt+Down Down Enter", "12", "метър"}, std::tuple{"Delete Enter", "", ""}}) {
    screen.grid.SetCurrentColumn(2);
    at.See(keys);
    EXPECT_EQ(at.Unit(), unit) << keys;
    EXPECT_EQ(screen.cdsGoods[kUnitName].Text(), name) << keys;
  }
  screen.grid.columns[2].combo = nullptr;
  screen.grid.SetCurrentColumn(2);
  EXPECT_EQ(at.See("'1'"), "1/3 lupUnit edit") << "without a list a name is only shown";
}

TEST(ComboTest, ALongListGrowsWhenItsEndIsReached) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  DataPacket many;
  many.AddColumn("Code", ValueKind::Int16);
  many.AddColumn("Name", ValueKind::String, 30);
  for (int code = 1; code <= 200; ++code)
    many.AppendRow(std::vector<Variant>{code, "мярка " + std::to_string(code)});
  screen.lookupUnits.TakeFilled(std::move(many));
  at.See("Alt+Down");
  EXPECT_EQ(screen.cbUnits.List().rows.size(), 80U);
  EXPECT_TRUE(screen.cbUnits.List().more);
  for (int i = 0; i < 20; ++i)
    at.See("PageDown");
  EXPECT_EQ(screen.cbUnits.List().rows.size(), 200U);
  EXPECT_EQ(screen.cbUnits.List().current, 199);
  at.See("Enter");
  EXPECT_EQ(at.Unit(), "200");
}

TEST(ComboTest, BehindAPortionTypingAsksTheServerAndKeysAreFetchedOneByOne) {
  AtUnit at;
  EditingScreen& screen = *at.screen;
  screen.lookupUnits.dlgSQL = {"SELECT Code, Name, Name2", "FROM Measures", "{$W}", "{$O}"};
  DataPacket first;
  first.AddColumn("Code", ValueKind::Int16);
  first.AddColumn("Name", ValueKind::String, 30);
  first.AppendRow(std::vector<Variant>{1, "брой"});
  first.continuation = "още";
  screen.lookupUnits.TakeFilled(first);
  DataPacket found;
  found.AddColumn("Code", ValueKind::Int16);
  found.AddColumn("Name", ValueKind::String, 30);
  found.AppendRow(std::vector<Variant>{70, "литър"});
  at.host.server.packets = {found};
  at.See("'лит'");
  EXPECT_EQ(at.List(), "70  литър");
  EXPECT_EQ(at.host.server.fetches.size(), 1U) << "beginnings answered: nothing else is asked";
  at.See("Down Enter");
  EXPECT_EQ(at.Unit(), "70");
  EXPECT_EQ(at.host.server.fetches.size(), 1U) << "a listed row is not fetched again";
}

}  // namespace
}  // namespace orvane::host
