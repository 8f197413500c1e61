// Modal loops: messages, questions, dialogs over dialogs, and a walk that goes on inside them.

#include <gtest/gtest.h>

#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QMenu>

#include "desktop/ribbon_view.h"
#include "desktop/screen.h"
#include "host/dialogs.h"

namespace orvane::desktop {
namespace {

using sample::Screen;

struct AnswerRow {
  const char* text;  ///< typed; null: the key is pressed
  KeyStroke key;
  bool deletes;
};

TEST(DesktopDialogs, AQuestionAnswersToLettersOfBothLayoutsAndIsHarmlessByDefault) {
  const AnswerRow rows[] = {
      {"д", {}, true},
      {"Д", {}, true},
      {"y", {}, true},
      {"н", {}, false},
      {"n", {}, false},
      {nullptr, KeyCode::Escape, false},
      {nullptr, KeyCode::Enter, false},
      {nullptr, KeyCode::Y, true},
      {nullptr, KeyCode::N, false},
  };
  for (const AnswerRow& row : rows) {
    Screen screen;
    screen.PointAt(screen.form->gRows, 0, 1);
    Screen::Inside([&] {
      MessageView* question = screen.toolkit.OpenMessage();
      ASSERT_NE(question, nullptr);
      EXPECT_EQ(Utf8(question->windowTitle()), _rDeleteCaption);
      if (row.text != nullptr)
        TypeKeys(*question, row.text);
      else
        PressKey(*question, row.key);
    });
    screen.Press(KeyCode::F5);
    const std::size_t rowsLeft = screen.form->cdsRows_.RecordCount();
    EXPECT_EQ(rowsLeft, row.deletes ? 4U : 5U)
        << (row.text != nullptr ? row.text : KeyText(row.key));
    EXPECT_EQ(screen.toolkit.OpenMessage(), nullptr);
  }
}

TEST(DesktopDialogs, TheArrowMovesToYesAndEnterTakesIt) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 1);
  Screen::Inside([&] {
    PressKey(*screen.toolkit.OpenMessage(), KeyCode::Left);
    PressKey(*screen.toolkit.OpenMessage(), KeyCode::Enter);
  });
  screen.Press(KeyCode::F5);
  EXPECT_EQ(screen.form->cdsRows_.RecordCount(), 4U);
}

TEST(DesktopDialogs, ALineInAQuestionTakesTheKeysUntilItIsLeft) {
  const struct {
    bool first;
    const char* keys;  ///< as a walk names them; what is none is typed
    int answer;
    const char* text;
  } rows[] = {
      {true, "д Enter н", kAnswerNo, "д"},         {true, "Enter д", kAnswerYes, "старо"},
      {true, "Ctrl+A Escape", kAnswerNo, "старо"}, {true, "Enter Enter", kAnswerNo, "старо"},
      {false, "д", kAnswerYes, "старо"},           {false, "Up н Tab Enter", kAnswerYes, "н"},
      {false, "Left Left н", kAnswerNo, "н"},
  };
  for (const auto& row : rows) {
    Screen screen;
    QuestionLine line{.label = "Причина", .hint = "", .text = "старо", .first = row.first};
    Screen::Inside([&] {
      MessageView& question = *screen.toolkit.OpenMessage();
      for (const QString& word : QString(row.keys).split(' ')) {
        if (const auto key = ParseKey(Utf8(word)); key && word.size() > 1)
          PressKey(question.KeyTarget(), *key);
        else
          TypeKeys(question.KeyTarget(), Utf8(word));
      }
      question.Finish(kAnswerNo);
    });
    const MessageDialog question{.kind = 1, .caption = "Проба", .text = "Да?", .yesNo = true};
    EXPECT_EQ(screen.toolkit.AskLine(screen.form.get(), question, line), row.answer) << row.keys;
    EXPECT_EQ(line.text, row.text) << row.keys;
  }
}

TEST(DesktopDialogs, TheFocusIsWhereItWasAndNoFocusEventRan) {
  Screen screen;
  sample::TfSample& form = *screen.form;
  screen.PointAt(form.gRows, 0, 1);
  int moves = 0;
  form.gRows.OnEnter = form.gRows.OnExit = [&moves] { ++moves; };
  Screen::Inside([&] { PressKey(*screen.toolkit.OpenMessage(), KeyCode::Escape); });
  screen.Press(KeyCode::F5);
  QApplication::processEvents();
  EXPECT_EQ(moves, 0);
  EXPECT_EQ(form.ActiveControl(), &form.gRows);
  EXPECT_EQ(screen.View().focusWidget(), &screen.View().ViewOf(form.gRows)->Widget());
  screen.Press(KeyCode::Down);
  EXPECT_EQ(form.cdsRows_.RecNo(), 1U);
}

TEST(DesktopDialogs, ModalFormsNestAndReturnInOrder) {
  Screen screen;
  sample::TfSample second(screen.app);
  sample::TfSample third(screen.app);
  std::vector<std::string> order;
  Screen::Inside([&] {
    Screen::Inside([&] {
      order.emplace_back("innermost open");
      EXPECT_EQ(&screen.toolkit.TopView(screen.app)->Form(), &third);
      third.Dispatch(CloseWanted());
    });
    third.ShowModal();
    order.emplace_back("third closed");
    EXPECT_FALSE(second.IsClosed());
    second.Dispatch(CloseWanted());
  });
  second.ShowModal();
  order.emplace_back("second closed");
  EXPECT_EQ(order, (std::vector<std::string>{"innermost open", "third closed", "second closed"}));
  EXPECT_EQ(&screen.toolkit.TopView(screen.app)->Form(), screen.form.get());
}

TEST(DesktopDialogs, ClosingTheWindowAsksTheForm) {
  Screen screen;
  sample::TfSample& form = *screen.form;
  form.cdsHead_.Edit();
  form.cdsHead_.FieldByName("Description").Set("Друго");
  Screen::Inside([&] { PressKey(*screen.toolkit.OpenMessage(), KeyCode::Escape); });
  screen.View().close();
  EXPECT_FALSE(form.IsClosed());
  EXPECT_FALSE(screen.View().isHidden());
  Screen::Inside([&] { TypeKeys(*screen.toolkit.OpenMessage(), "д"); });
  screen.Press(Alt(KeyCode::F4));
  EXPECT_TRUE(form.IsClosed());
  EXPECT_TRUE(screen.View().isHidden());
}

TEST(DesktopDialogs, APreviewClosesByEscapeAndReturns) {
  Screen screen;
  ReportDocument report;
  report.title = "Дирекции";
  Screen::Inside([] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->windowTitle() == "Дирекции")
        PressKey(*window, KeyCode::Escape);
    }
  });
  screen.toolkit.PreviewReport(*screen.form, std::move(report));
  EXPECT_EQ(&screen.toolkit.TopView(screen.app)->Form(), screen.form.get());
}

TEST(DesktopDialogs, TheMenuKeyOffersWhatTheRibbonDoesNotShow) {
  Screen screen;
  screen.View().showNormal();
  screen.View().resize(500, 600);
  QApplication::processEvents();
  screen.Press(Shift(KeyCode::F10));
  const QMenu* menu = screen.View().findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  QStringList offered;
  for (const QAction* action : menu->actions())
    offered.push_back(action->text().section('\t', 0, 0));
  for (const char* caption : {"Печат", "Изход", "Смяна език", "Относно"})
    EXPECT_TRUE(offered.contains(caption)) << caption;
  EXPECT_FALSE(offered.contains("Запис"));
}

/// Opens a dialog by the entry of a menu that `open` opens. What an action opens runs a loop of its
/// own: nothing of the menu may be on the stack then.
void ChooseHelp(Screen& screen, const std::function<void()>& open, const char* caption) {
  open();
  QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_FALSE(menu.isNull());
  bool told = false;
  screen.toolkit.onMessage = [&](const MessageDialog&) {
    told = true;
    EXPECT_TRUE(menu.isNull());
    Screen::Inside([&] { PressKey(*screen.toolkit.OpenMessage(), KeyCode::Enter); });
  };
  for (QAction* action : menu->actions()) {
    if (action->text().section('\t', 0, 0) != caption) continue;
    menu->setActiveAction(action);
    PressKey(*menu, KeyCode::Enter);
    break;
  }
  QApplication::processEvents();
  EXPECT_TRUE(told) << caption;
}

TEST(DesktopDialogs, AnEntryOfAMenuRunsWhenNothingOfTheMenuIsLeft) {
  Screen screen;
  screen.View().showNormal();
  screen.View().resize(300, 600);
  QApplication::processEvents();
  ChooseHelp(
      screen, [&] { screen.Press(Shift(KeyCode::F10)); }, "Относно");
  TAction& folded = *screen.form->FindAction(screen.View().Ribbon()->FoldedActions().back());
  folded.always = true;
  folded.OnExecute = [&screen] { VosMessageDlg(*screen.form, 1, "Проба", "От лентата"); };
  screen.form->Dispatch(KeyPressed{KeyCode::F6});
  RibbonView& ribbon = *screen.View().Ribbon();
  ChooseHelp(
      screen, [&] { Click(ribbon, ribbon.FoldRect()); }, folded.caption.c_str());
}

// --- walks
// ----------------------------------------------------------------------------------------

std::unique_ptr<TVosBaseForm> MakeSample(const FormIdentity& identity) {
  return std::make_unique<sample::TfSample>(*identity.app);
}

class SampleMain final : public TVosModuleForm {
 public:
  explicit SampleMain(VosApplication& app) : TVosModuleForm({.app = &app}, "SampleMain", "") {}
};

std::unique_ptr<TVosBaseForm> StartSample(VosApplication& app) {
  app.classes.Register("TfSample", &MakeSample);
  constexpr PointRow points[] = {{Point::Departments, "Sample", "TfSample", "Искане за покупка"}};
  app.AddPoints(11, points);
  return std::make_unique<SampleMain>(app);
}

/// The problem's text; empty when the walk went well.
std::string Walk(const std::string& text) {
  sample::SampleServer server;
  FaultyDoor door(server);
  SetClock clock{Stamp{0}};
  QtToolkit toolkit(std::make_unique<FormMemory>());
  QtWalkDriver driver(toolkit, {});
  WalkRunner runner(
      "sample.walk", *ParseWalk(text), driver,
      {&door, &clock, TimeZone{}, [](std::string_view) { return "п"; }, &StartSample});
  return driver.Go(runner);
}

TEST(DesktopWalk, GoesOnInsideQuestionsAndMessages) {
  EXPECT_EQ(Walk("clock 05.03.2026 09:00\nuser ivanova\nopen TfSample\nexpect focus eIdNum\n"
                 "press F6\nexpect rows gRows 5\nfocus SerialNumber\npress F5\n"
                 "expect dialog \"Желаете ли да изтриете текущия запис?\"\nanswer Не\n"
                 "expect rows gRows 5\npress F5\nanswer Да\nexpect rows gRows 4\n"
                 "type Quantity 7,25\nexpect Quantity 7,25\n"
                 "type Measure 999\nexpect dialog \"Няма „999“ в списъка „Мярка“.\"\npress Escape\n"
                 "row new gDates\nanswer Не\ntype RowNumber 1\nexpect rows gDates 1\n"
                 "choose acRows\nanswer Да\nexpect focus gRows\nclose\n"),
            "");
}

TEST(DesktopWalk, NamesTheLineAndWhatAPersonWouldHaveSeen) {
  const std::string problem =
      Walk("user ivanova\nopen TfSample\npress F6\npress F5\nexpect rows gRows 4\n");
  EXPECT_NE(problem.find("sample.walk:5"), std::string::npos) << problem;
  EXPECT_NE(problem.find("Желаете ли да изтриете"), std::string::npos) << problem;
}

}  // namespace
}  // namespace orvane::desktop
