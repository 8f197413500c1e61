// The grid by keyboard: where each key leads, when rows are posted, dropped and appended.
#include "host/controls/grid.h"

#include <gtest/gtest.h>

#include "data/abort.h"
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

/// Each row begins on a fresh screen, in the first row's first column behind the fixed one.
void CheckKeys(std::initializer_list<Row> rows,
               const std::function<void(EditingScreen&)>& prepare = nullptr) {
  for (const Row& row : rows) {
    Host host;
    host.LogIn();
    EditingScreen screen(host);
    screen.grid.SetCurrentColumn(1);
    if (prepare) prepare(screen);
    EXPECT_EQ(screen.See(row.keys), row.seen) << row.keys;
  }
}

TEST(GridTest, KeysMoveTheCursor) {
  CheckKeys({
      {"Enter", "1/3 Unit browse"},
      {"Tab Tab", "1/3 Sum browse"},
      {"Shift+Tab", "eKey browse"},
      {"Down Shift+Tab", "1/3 Done browse"},
      {"End Enter", "2/3 Name browse"},
      {"Left", "1/3 Code browse"},
      {"Left Left Left", "1/3 Code browse"},
      {"End Right", "1/3 Done browse"},
      {"End Home", "1/3 Name browse"},
      {"Home", "1/3 Code browse"},
      {"Down Down", "3/3 Name browse"},
      {"Down Up Up", "1/3 Name browse"},
      {"Ctrl+End", "3/3 Done browse"},
      {"Ctrl+End Ctrl+Home", "1/3 Name browse"},
      {"PageDown", "3/3 Name browse"},
      {"PageDown PageUp", "1/3 Name browse"},
  });
}

TEST(GridTest, TypingGoesIntoTheEditorAndEnterTakesItOver) {
  CheckKeys({
      {"'винт'", "1/3 Name browse [винт]"},
      {"'ви' 'нт'", "1/3 Name browse [винт]"},
      {"F2", "1/3 Name browse [болт]"},
      {"F2 'ове'", "1/3 Name browse [болтове]"},
      {"F2 Backspace", "1/3 Name browse [бол]"},
      {"Backspace", "1/3 Name browse []"},
      {"Delete Enter", "1/3 Unit edit"},
      {"'винт' Enter", "1/3 Unit edit"},
      {"'болт' Enter", "1/3 Unit browse"},
      {"F2 Enter", "1/3 Unit browse"},
      {"'винт' Down", "2/3 Name browse"},
      {"'винт' Left", "1/3 Name browse [винт]"},
      {"'винт' Escape", "1/3 Name browse"},
      {"'винт' Enter Escape", "1/3 Unit browse !Стоки: Редът не е записан. Да се запише ли?"},
  });
}

TEST(GridTest, TextsAreRefusedAtTheFirstCharacterThatDoesNotFitAndNumbersWhenTheyAreLeft) {
  CheckKeys({
      {"Left ' '", "1/3 Code browse"},
      {"Left '0' Enter",
       "1/3 Code browse [0] !Стоки: Поле „Код на стока“: „0“ не се въвежда тук. Въведете число от "
       "1 нагоре."},
      {"Left '12а3' Enter",
       "1/3 Code browse [12а3] !Стоки: Поле „Код“: „12а3“ не е число. Въведете само цифри."},
      {"Left '12345' Enter",
       "1/3 Code browse [12345] !Стоки: Поле „Код на стока“: „12345“ е твърде голямо число."},
      {"Left '12.5' Enter",
       "1/3 Code browse [12.5] !Стоки: Поле „Код“: „12.5“ не е цяло число. Въведете го без "
       "десетични знаци."},
      {"End Left '1.250,50' Enter Left F2", "1/3 Sum edit [1250,50]"},
      {"End Left '12,345' Enter",
       "1/3 Sum browse [12,345] !Стоки: Поле „Сума“: „12,345“ има повече от 2 знака след "
       "запетаята."},
      {"'0123456789' 'a'", "1/3 Name browse [0123456789]"},
      {"End Left '12,34'", "1/3 Sum browse [12,34]"},
      {"End Left '12.34'", "1/3 Sum browse [12.34]"},
      {"End Left '12.34' Enter", "1/3 Done edit"},
      {"Down End Left F2", "2/3 Sum browse [1234,56]"},
      {"Down End Left F2 Enter", "2/3 Done browse"},
      {"End Left '-' Enter",
       "1/3 Sum browse [-] !Стоки: Поле „Сума“: „-“ не е число. Въведете цифри и десетична "
       "запетая."},
      {"End Left '-' Down",
       "1/3 Sum browse [-] !Стоки: Поле „Сума“: „-“ не е число. Въведете цифри и десетична "
       "запетая."},
  });
}

TEST(GridTest, ATextThatCannotBeReadKeepsTheEditorWithTheTyping) {
  const auto withoutMask = [](EditingScreen& screen) { screen.grid.columns[0].mask.clear(); };
  CheckKeys(
      {
          {"Left 'седем' Enter",
           "1/3 Code browse [седем] !Стоки: Поле „Код“: „седем“ не е число. "
           "Въведете само цифри."},
          {"Left '70000' Enter Escape",
           "1/3 Code browse !Стоки: Поле „Код“: „70000“ е извън допустимите граници: "
           "от -32768 до 32767."},
      },
      withoutMask);
}

TEST(GridTest, NewRowsAreAppendedPastTheLastOne) {
  CheckKeys({
      {"Ctrl+End Enter", "4/4 Code insert"},
      {"Ctrl+End Down", "4/4 Code insert"},
      {"Ctrl+End Down Down", "4/4 Code insert"},
      {"Ctrl+End Down Up", "3/3 Code browse"},
      {"Ctrl+End Down Escape", "3/3 Code browse"},
      {"Ctrl+End Down '7' Enter", "4/4 Name insert"},
      {"Ctrl+End Down '7' Enter Up", "3/4 Name browse"},
      {"Ctrl+End Down '7' Enter 'а' Down", "5/5 Code insert"},
      {"Ctrl+End Down '7' Escape", "4/4 Code insert"},
      {"Ctrl+End Down '7' Escape Escape", "3/3 Code browse"},
      {"Ctrl+End Down '7' Enter Escape",
       "3/3 Name browse !Стоки: Редът не е записан. Да се запише ли?"},
      {"Down Insert", "2/4 Code insert"},
      {"Down Insert Up", "1/3 Code browse"},
      {"Down Insert '2' Enter Down", "3/4 Name browse"},
      {"Down Insert Ctrl+Delete", "2/3 Code browse"},
  });
}

TEST(GridTest, WithoutTheRightToInsertTheLastRowIsTheEnd) {
  const auto noInsert = [](EditingScreen& screen) { screen.grid.canInsert = false; };
  CheckKeys(
      {
          {"Ctrl+End Down", "3/3 Done browse"},
          {"Ctrl+End Enter", "3/3 Done browse"},
          {"Insert", "1/3 Name browse"},
          {"Ctrl+End Left '5' Tab", "3/3 Done edit"},
          {"Ctrl+End Space Enter", "3/3 Done browse"},
      },
      noInsert);
}

TEST(GridTest, TypingInAnEmptyGridStartsItsFirstRow) {
  const auto empty = [](EditingScreen& screen) { screen.cdsGoods.EmptyDataSet(); };
  CheckKeys(
      {
          {"'7'", "1/1 Code insert [7]"},
          {"Insert", "1/1 Code insert"},
          {"Down", "1/1 Code insert"},
          {"Enter Up PageDown Ctrl+Home", "0/0 Name browse"},
      },
      empty);
}

TEST(GridTest, WhereNothingMayBeTypedTypingDoesNothing) {
  CheckKeys({{"'x' F2 Delete Space Ctrl+Delete", "1/3 Name browse"},
             {"Ctrl+End Down Insert", "3/3 Done browse"}},
            [](EditingScreen& screen) { screen.grid.readOnly = true; });
  CheckKeys({{"'x' F2 Delete", "1/3 Name browse"}},
            [](EditingScreen& screen) { screen.grid.columns[1].readOnly = true; });
  CheckKeys({{"'x' F2 Delete", "1/3 Name browse"}},
            [](EditingScreen& screen) { screen.cdsGoods[goods::Name].ReadOnly = true; });
  CheckKeys({{"Ctrl+End Down", "4/4 Code insert"}}, [](EditingScreen& screen) {
    screen.grid.readOnly = true;
    screen.grid.insertWhenReadOnly = true;
  });
}

TEST(GridTest, SpaceTogglesACheck) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  EXPECT_EQ(screen.See("End Space"), "1/3 Done edit");
  EXPECT_TRUE(screen.cdsGoods[goods::Done].AsBool());
  EXPECT_EQ(screen.See("' '"), "1/3 Done edit");
  EXPECT_FALSE(screen.cdsGoods[goods::Done].AsBool());
  EXPECT_EQ(screen.See("'да' F2"), "1/3 Done edit");
}

TEST(GridTest, ARefusedPostKeepsRowCellAndTyping) {
  for (const char* key : {"Enter", "Down", "Up", "PageUp", "Shift+Tab", "Insert"}) {
    Host host;
    host.LogIn();
    EditingScreen screen(host);
    screen.grid.columns.resize(2);
    screen.See("Ctrl+End");
    screen.cdsGoods.BeforePost = [&screen] { screen.Refuse("Така не може."); };
    EXPECT_EQ(screen.See("'гвоздей'"), "3/3 Name browse [гвоздей]");
    EXPECT_EQ(screen.See(key), "3/3 Name edit !Стоки: Така не може.") << key;
    EXPECT_EQ(screen.cdsGoods[goods::Name].AsString(), "гвоздей") << key;
  }
}

TEST(GridTest, ARuleThatFocusesAnotherColumnWins) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.cdsGoods.BeforePost = [&screen] {
    if (!screen.cdsGoods[goods::Name].IsBlank()) return;
    screen.grid.FocusField("Name");
    screen.Refuse("Попълнете стойност в поле 'Име'");
  };
  EXPECT_EQ(screen.See("Ctrl+End Down '9' Enter Enter '12' Down Down Enter"), "4/4 Sum insert");
  EXPECT_EQ(screen.See("Down"), "4/4 Name insert !Стоки: Попълнете стойност в поле 'Име'");
}

TEST(GridTest, TheRowReachedIsTheOneSeenThoughPostingMovedTheOther) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.cdsGoods.SetIndexFieldNames("Code");
  EXPECT_EQ(screen.See("'9' Down"), "1/3 Code browse");
  EXPECT_EQ(screen.Rows(), "3 гайка 1; 5 пирон 10; 9 болт 1");
  EXPECT_EQ(screen.See("Ctrl+End Home Home '2' Up"), "3/3 Code browse");
  EXPECT_EQ(screen.Rows(), "2 болт 1; 3 гайка 1; 5 пирон 10");
}

TEST(GridTest, AReloadInsideThePostKeepsThePlace) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.cdsGoods.AfterPost = [&screen] { screen.FillGoods(); };
  EXPECT_EQ(screen.See("Right Down 'x' Down"), "3/3 Name browse");
  EXPECT_EQ(screen.See("'y' Enter End Enter"), "4/4 Code insert");
}

TEST(GridTest, TheLastColumnMayLeadElsewhereOnceTheRowIsPosted) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  std::string calls;
  screen.grid.OnLastColumn = [&] {
    calls += screen.cdsGoods.Editing() ? "edit " : "posted ";
    return true;
  };
  EXPECT_EQ(screen.See("End Space Enter Tab"), "1/3 Done browse");
  EXPECT_EQ(calls, "posted posted ");
}

TEST(GridTest, LeavingTheGridDropsWhatWasNotPosted) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.See("Right 'нов' Enter 'x'");
  screen.FocusControl(&screen.eKey);
  EXPECT_EQ(screen.Seen(), "eKey browse");
  EXPECT_EQ(screen.Rows(), "1 болт 1; 3 гайка 1; 5 пирон 10");
  screen.FocusControl(&screen.grid);
  EXPECT_EQ(screen.Seen(), "1/3 Unit browse");
}

TEST(GridTest, AGridThatKeepsRowsPostsThemWhenItIsLeft) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  screen.grid.cancelOnExit = false;
  screen.See("Right 'нов'");
  screen.FocusControl(&screen.eKey);
  EXPECT_EQ(screen.Rows(), "1 нов 1; 3 гайка 1; 5 пирон 10");
  screen.FocusControl(&screen.grid);
  screen.See("Ctrl+End Down");
  screen.FocusControl(&screen.eKey);
  EXPECT_EQ(screen.cdsGoods.RecordCount(), 3U) << "an untouched row is not posted";
}

TEST(GridTest, ARowIsDeletedByTheScreensActionWhileThatIsLive) {
  const auto deleted = [](bool live) {
    Host host;
    host.LogIn();
    EditingScreen screen(host);
    TAction action;
    action.name = "acDelete";
    action.always = live;
    action.OnExecute = [&screen] { screen.cdsGoods.Delete(); };
    screen.AddAction(std::move(action));
    screen.RefreshActions();
    return screen.See("Ctrl+Delete");
  };
  EXPECT_EQ(deleted(true), "1/2 Code browse");
  EXPECT_EQ(deleted(false), "1/3 Code browse");
}

TEST(GridTest, ALeftRowIsSavedGivenUpOrGoneBackTo) {
  const auto left = [](int answer) {
    Host host;
    host.LogIn();
    EditingScreen screen(host);
    host.toolkit.answers = {answer};
    screen.See("Right 'нов' Enter Enter '5'");
    screen.Dispatch(Pointed{&screen.eKey});
    return screen.Rows() + " at " + screen.FocusName();
  };
  EXPECT_EQ(left(kAnswerYes), "1 нов 1; 3 гайка 1; 5 пирон 10 at eKey");
  EXPECT_EQ(left(kAnswerNo), "1 болт 1; 3 гайка 1; 5 пирон 10 at eKey");
  EXPECT_EQ(left(kAnswerBack), "1 нов 1; 3 гайка 1; 5 пирон 10 at grid");
}

TEST(GridTest, AnEditorWhoseRowIsGoneIsClosed) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  EXPECT_EQ(screen.See("Ctrl+End Down '7'"), "4/4 Code insert [7]");
  screen.cdsGoods.Cancel();
  EXPECT_EQ(screen.Seen(), "3/3 Code browse");
  screen.See("'8'");
  screen.FillGoods();
  EXPECT_EQ(screen.Seen(), "1/3 Code browse");
}

TEST(GridTest, TheVersionGrowsWithWhatAViewPaintsAndOnlyThen) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  TVosDBGrid& grid = screen.grid;
  std::uint64_t seen = grid.Version();
  const auto changed = [&] {
    const bool differs = grid.Version() != seen;
    seen = grid.Version();
    return differs;
  };
  EXPECT_FALSE(changed());
  grid.columns[1].title = "Име (Български)";
  EXPECT_TRUE(changed());
  screen.See("Right");
  EXPECT_TRUE(changed());
  screen.See("'а'");
  EXPECT_TRUE(changed());
  screen.See("Escape");
  EXPECT_TRUE(changed());
  grid.readOnly = true;
  EXPECT_TRUE(changed());
  screen.See("'а'");
  EXPECT_FALSE(changed());
}

TEST(GridTest, TheNextPortionComesWhenTheEndIsReached) {
  Host host;
  host.LogIn();
  TVosSQLConnection connection(host.app.Session(), {11, 1}, "TsmSQL");
  EditingScreen screen(host);
  TVosClientDataSet cds("cds", connection, {goods::Code});
  TDataSource ds(cds);
  TVosDBGrid grid(screen, "portions", ds);
  grid.columns = {{.field = "Code"}};
  const auto portion = [](int first, bool more) {
    DataPacket packet;
    packet.AddColumn("Code", ValueKind::Int16);
    for (int code = first; code < first + 2; ++code)
      packet.AppendRow(std::vector<Variant>{code});
    if (more) packet.continuation = "още";
    return packet;
  };
  cds.LoadPacket(portion(1, true));
  host.server.packets = {portion(3, true), portion(5, false)};
  screen.FocusControl(&grid);
  screen.PressKeys("Down");
  EXPECT_EQ(cds.RecordCount(), 4U);
  screen.PressKeys("Down");
  EXPECT_EQ(cds.RecordCount(), 4U);
  screen.PressKeys("Ctrl+End Ctrl+End");
  EXPECT_EQ(cds.RecordCount(), 6U);
  EXPECT_EQ(cds.RecNo(), 5U);
}

TEST(GridTest, AKeyTheScreenUsesUpDoesNothingElse) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  std::string keys;
  screen.grid.OnKeyDown = [&](KeyStroke key) {
    keys += KeyText(key) + " ";
    return key == KeyStroke(KeyCode::Enter);
  };
  EXPECT_EQ(screen.See("Right Enter"), "1/3 Name browse");
  EXPECT_EQ(screen.See("Right 'к' Down"), "1/3 Unit browse [к]")
      << "the list's own keys stay its own";
  EXPECT_EQ(screen.See("Escape Escape Down"), "2/3 Unit browse");
  EXPECT_EQ(keys, "Right Enter Right Down ");
}

TEST(GridTest, MessagesNameColumnsWithoutLineBreaks) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  EXPECT_EQ(screen.grid.TitleOf("code"), "Код на стока");
  EXPECT_EQ(screen.grid.TitleOf("Note"), "Бележки");
  screen.grid.SetCurrentColumn(3);
  screen.grid.RemoveColumn("Name");
  EXPECT_EQ(screen.Seen(), "1/3 Sum browse");
}

}  // namespace
}  // namespace orvane::host
