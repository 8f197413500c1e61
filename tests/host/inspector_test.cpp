// The inspector by keyboard, and what it shows.
#include "host/controls/inspector.h"

#include <gtest/gtest.h>

#include "host/editing_screen.h"

namespace orvane::host {
namespace {

using fakes::EditingScreen;
using fakes::Host;
namespace goods = fakes::goods;

struct Row {
  const char* keys;
  const char* seen;
};

void CheckKeys(std::initializer_list<Row> rows,
               const std::function<void(EditingScreen&)>& prepare = nullptr) {
  for (const Row& row : rows) {
    Host host;
    host.LogIn();
    EditingScreen screen(host);
    screen.FocusControl(&screen.inspector);
    if (prepare) prepare(screen);
    EXPECT_EQ(screen.See(row.keys), row.seen) << row.keys;
  }
}

TEST(InspectorTest, KeysMoveBetweenVisibleItems) {
  CheckKeys({
      {"Enter Tab", "Unit browse"},
      {"Down Down Down", "Done browse"},
      {"Down Up Up", "Code browse"},
      {"Enter Shift+Tab", "Code browse"},
      {"Ctrl+End", "Note browse"},
      {"Ctrl+End Down", "Note browse"},
      {"Ctrl+End Ctrl+Home", "Code browse"},
  });
  CheckKeys({{"Enter", "Unit browse"}, {"Down Up", "Code browse"}},
            [](EditingScreen& screen) { screen.inspector.FindItem("Name")->visible = false; });
}

TEST(InspectorTest, TypedTextsAreTakenWhenTheItemIsLeft) {
  CheckKeys({
      {"Down 'нов' Enter", "Unit edit"},
      {"Down 'нов' Up", "Code edit"},
      {"Down 'болт' Enter", "Unit browse"},
      {"Down 'нов' Escape", "Name browse"},
      {"Down 'нов' Left", "Name browse [нов]"},
      {"Down F2 'ове'", "Name browse [болтове]"},
      {"Down 'дълго име' 'то'", "Name browse [дълго име]"},
      {"'седем' Enter",
       "Code browse [седем] !Стоки: Поле „Код“: „седем“ не е число. Въведете само "
       "цифри."},
      {"Down Down '77' Up", "Unit browse [77] !Стоки: Няма „77“ в списъка „Мярка“."},
      {"Down Down 'метър' Enter", "Done edit"},
      {"Ctrl+End Up Space", "Done edit"},
  });
}

TEST(InspectorTest, AMemoTakesLineEndsAndKeepsTheArrowsBetweenThem) {
  CheckKeys({
      {"Ctrl+End 'едно' Ctrl+Enter 'две'", "Note browse [едно\nдве]"},
      {"Ctrl+End 'едно' Ctrl+Enter 'две' Up", "Note browse [едно\nдве]"},
      {"Ctrl+End 'едно' Up", "Done edit"},
      {"Down 'едно' Ctrl+Enter", "Name browse [едно]"},
  });
}

TEST(InspectorTest, WhereNothingMayBeTypedTypingDoesNothing) {
  CheckKeys({{"'5' F2 Delete", "Code browse"}},
            [](EditingScreen& screen) { screen.inspector.readOnly = true; });
  CheckKeys({{"'5' F2 Delete", "Code browse"}},
            [](EditingScreen& screen) { screen.inspector.items[0].readOnly = true; });
  CheckKeys({{"'5' F2 Delete", "Code browse"}},
            [](EditingScreen& screen) { screen.cdsGoods.EmptyDataSet(); });
}

TEST(InspectorTest, TheLastItemLeadsOn) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.FocusControl(&screen.inspector);
  bool stays = true;
  screen.inspector.OnLastItem = [&] { return stays; };
  EXPECT_EQ(screen.See("Ctrl+End Enter Tab"), "Note browse");
  stays = false;
  EXPECT_EQ(screen.See("Enter"), "eKey browse") << "the next control in order";
}

TEST(InspectorTest, LeavingTakesTheTypingAndRefusesWhatCannotBeRead) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.FocusControl(&screen.inspector);
  screen.See("'8'");
  screen.Dispatch(Pointed{&screen.eKey});
  EXPECT_EQ(screen.Seen(), "eKey edit");
  EXPECT_EQ(screen.cdsGoods[goods::Code].Text(), "8");
  screen.FocusControl(&screen.inspector);
  screen.See("'осем'");
  screen.Dispatch(Pointed{&screen.eKey});
  EXPECT_EQ(screen.Seen(), "Code edit [осем]");
  EXPECT_NE(screen.TakeMessages(), "");
}

TEST(InspectorTest, ARuleThatMovesTheFocusWhileTypingIsTakenIsFollowed) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.FocusControl(&screen.inspector);
  screen.cdsGoods[goods::Code].OnChange = [&screen] { screen.inspector.FocusField("Note"); };
  EXPECT_EQ(screen.See("'8' Up"), "Done edit") << "Up goes on from where the rule led";
  EXPECT_EQ(screen.cdsGoods[goods::Code].Text(), "8");
}

TEST(InspectorTest, NamesStandBehindCodesAndPasswordsAreNeverShown) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  TVosDataInspector& inspector = screen.inspector;
  EXPECT_EQ(inspector.NameText(2), "брой");
  inspector.items[2].combo = nullptr;
  inspector.items[2].nameField = "Name";
  EXPECT_EQ(inspector.NameText(2), "болт");
  EXPECT_EQ(inspector.NameText(0), "");

  inspector.items[1].kind = ItemKind::Password;
  EXPECT_EQ(inspector.DisplayText(0), "1");
  EXPECT_EQ(inspector.DisplayText(1), "••••");
  screen.FocusControl(&inspector);
  EXPECT_EQ(screen.See("Down F2"), "Name browse []");
  screen.See("'тай'");
  EXPECT_EQ(inspector.EditorDisplayText(), "•••");
  screen.See("Escape F2 Enter");
  EXPECT_EQ(screen.cdsGoods[goods::Name].Text(), "болт");
}

}  // namespace
}  // namespace orvane::host
