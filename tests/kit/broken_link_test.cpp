// What was typed when the link breaks, somebody else was first, or the user goes elsewhere: what is
// kept, in which order it goes, and what is given up.

#include "kit/grid_rows.h"
#include "kit/kit_desk.h"

namespace orvane::kit::papers {
namespace {

const std::string kKept =
    "Няма връзка със сървъра и промяната още не е записана. Въведеното е запазено на екрана. "
    "Желаете ли нов опит?|";

std::string StateOf(const TVosClientDataSet& rows) {
  constexpr const char* kStates[] = {"closed", "browse", "edit", "insert"};
  return kStates[static_cast<std::size_t>(rows.State())];
}

std::optional<Failure> RefuseAll(const Change&) {
  return Refused("Не.");
}

// --- registers ----------------------------------------------------------------------------------

TEST(ImmediateApply, WhatCannotBeSentWaitsAndDecisionsAreDropped) {
  const std::string notDecided =
      "Няма връзка със сървъра и решението не е записано. Желаете ли нов опит?|";
  const std::string whoKnows =
      "Връзката прекъсна и не се знае дали решението е записано. Желаете ли нов опит?|";
  const std::string ended =
      "Сесията Ви е приключила. Въведеното е запазено; влезте отново и повторете операцията.|";
  using enum FailureKind;
  const struct {
    FailureKind failure;
    bool drops;
    int again;  ///< answer to the question whether to try again
    std::string said;
    std::size_t waits;  ///< changes that are still to be sent
    const char* held;   ///< by the server when the link is whole again
  } rows[] = {
      {LinkDown, false, kAnswerNo, kKept, 1, "Мое"},
      {LinkDown, false, kAnswerYes, kKept, 0, "Мое"},
      {OutcomeUnknown, false, kAnswerNo, kKept, 1, "Мое"},
      {Internal, false, kAnswerNo, "Повреда.|", 1, "Мое"},
      {LinkDown, true, kAnswerNo, notDecided, 0, "Акт 1"},
      {LinkDown, true, kAnswerYes, notDecided, 0, "Мое"},
      {OutcomeUnknown, true, kAnswerNo, whoKnows, 0, "Акт 1"},
      {Internal, true, kAnswerNo, "Повреда.|", 0, "Акт 1"},
      {SessionEnded, true, kAnswerNo, ended, 1, "Мое"},  // it goes under the new login
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.said + std::to_string(row.again));
    Desk desk;
    Folder folder(desk, {.dropsUnsent = row.drops});
    desk.server.papers.wholeFailure = Failure{row.failure, "Повреда."};
    desk.toolkit.answers = {row.again};
    folder.Post(folder.cdsPapers, "Мое");
    EXPECT_EQ(desk.Messages(), row.said);
    EXPECT_EQ(folder.cdsPapers.ChangeCount(), row.waits);
    folder.RunInGate([&] { folder.SendWaiting(); });
    EXPECT_EQ(desk.server.papers.Text(), std::string("1 ") + row.held + ", 2 Акт 2");
    EXPECT_EQ(folder.cdsPapers[Name].AsString(), row.held);
  }
}

TEST(ImmediateApply, WhatIsLaidOverAnothersChangeGoesAtOnce) {
  for (const ApplyForm form : {ApplyForm::Once, ApplyForm::Repeated}) {
    Desk desk;
    Folder folder(desk, {.maxErrors = form == ApplyForm::Once ? 0 : -1, .form = form});
    desk.server.papers.rows[1][1] = "Чуждо";
    desk.toolkit.modals = {[](TVosBaseForm& conflict) {
      fakes::Press(conflict, KeyCode::Space);
      fakes::Press(conflict, KeyCode::F9);
    }};
    folder.Post(folder.cdsPapers, "Мое");
    EXPECT_EQ(desk.server.papers.Text(), "1 Мое, 2 Акт 2");
    EXPECT_FALSE(folder.HasWaiting());
  }
}

TEST(MasterDetail, RowsGoWithTheirMasterAndAreNeverShownUnderAnother) {
  Desk desk;
  Folder folder(desk);
  const auto next = [&] { folder.RunInGate([&] { folder.cdsPapers.Next(); }); };
  desk.door.Stop();
  folder.Post(folder.cdsLines, "мой");
  next();
  EXPECT_EQ(folder.cdsPapers[Id].AsInt(), 1) << "he stays with what waits";
  EXPECT_EQ(test::Shown(folder.cdsLines), "[11 мой], 12 ред 12");
  desk.door.Start();
  folder.RunInGate([&] { folder.SendWaiting(); });
  desk.door.Stop();
  desk.toolkit.whileAsking = [&] { EXPECT_TRUE(folder.cdsLines.IsEmpty()); };
  next();
  EXPECT_EQ(folder.cdsPapers[Id].AsInt(), 2);
  EXPECT_EQ(StateOf(folder.cdsLines), "closed") << "unread rows must not look like none";
  desk.door.Start();
  folder.RunInGate([&] { folder.cdsPapers.First(); });
  folder.Post(folder.cdsLines, "наш");
  next();
  EXPECT_EQ(test::Shown(folder.cdsLines), "[21 ред 21]");
  EXPECT_EQ(desk.server.lines.Text(), "11 наш, 12 ред 12, 21 ред 21");
  desk.door.ResetCounts();
  folder.RunInGate([&] { folder.cdsPapers.Append(); });
  EXPECT_EQ(test::Shown(folder.cdsLines), "") << "a master being entered has none";
  EXPECT_EQ(desk.door.Counts().Total(), 0);
}

/// The server refuses, the row is back: what was being typed into it is not.
TEST(Rows, DeletingOneGivesUpItsOpenEditor) {
  Desk desk;
  desk.server.lines.rows.erase(12);
  desk.server.lines.refuses = RefuseAll;
  Folder folder(desk);
  folder.GoTo(folder.gLines);
  fakes::Type(folder, "друг");
  desk.toolkit.answers = {kAnswerYes};
  folder.RunInGate([&] { DeleteAsked(folder, folder.gLines); });
  EXPECT_EQ(desk.Messages(), "Желаете ли да изтриете текущия запис?|Не.|");
  EXPECT_EQ(test::Shown(folder.cdsLines), "[11 ред 11]");
  EXPECT_EQ(folder.gLines.Editor(), nullptr);
}

// --- documents ----------------------------------------------------------------------------------

TEST(ShownDocument, AHeadWithTypingIsSavedGivenUpOrGoneBackTo) {
  constexpr int kCommand = -1, kMove = -2;  // the user's own, without a question
  const struct {
    const char* typed;  ///< null: nothing
    int answer;
    bool refused;  ///< by the server
    const char* seen;
    const char* held;
    int dropped;
  } rows[] = {
      {nullptr, kAnswerBack, false, "eId browse", "Акт 1", 1},
      {"Мое", kAnswerYes, false, "eId browse", "Мое", 0},
      {"Мое", kAnswerNo, false, "eId browse", "Акт 1", 1},
      {"Мое", kCommand, false, "eId browse", "Акт 1", 1},
      {"Мое", kAnswerBack, false, "di edit", "Акт 1", 0},
      {"", kAnswerYes, false, "di edit", "Акт 1", 0},
      {"Мое", kAnswerYes, true, "di edit", "Акт 1", 0},
      {"Мое", kMove, true, "di browse", "Акт 1", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.typed ? row.typed : "-") + std::to_string(row.answer));
    Desk desk;
    Document screen(desk);
    screen.RunInGate([&] { screen.cdsPapers.Edit(); });
    if (row.typed) screen.Type(screen.cdsPapers, row.typed);
    if (row.refused) desk.server.papers.refuses = RefuseAll;
    desk.toolkit.answers = {row.answer};
    if (row.answer == kCommand)
      screen.RunInGate([&] { screen.shown.GiveUp(); });
    else if (row.answer == kMove)
      screen.RunInGate([&] { screen.shown.PostMove(screen.head); });
    else
      screen.GoTo(screen.eId);
    EXPECT_EQ(desk.Messages().find("Да се запише ли?") == std::string::npos,
              !row.typed || row.answer < 0);
    EXPECT_EQ(screen.FocusName() + " " + StateOf(screen.cdsPapers), row.seen);
    EXPECT_EQ(desk.server.papers.rows[1][1], Variant(row.held));
    EXPECT_EQ(screen.dropped, row.dropped);
  }
}

TEST(ShownDocument, RowsThatWereKeptBackGoBeforeItIsLoadedAgain) {
  Desk desk;
  Document screen(desk);
  desk.door.Stop();
  screen.Post(screen.cdsLines, "мой");
  screen.GoTo(screen.eId);
  EXPECT_EQ(desk.Messages(), kKept + kKept);
  EXPECT_EQ(test::Shown(screen.cdsLines), "[11 мой], 12 ред 12") << "nothing is loaded over them";
  desk.door.Start();
  screen.GoTo(screen.di);
  screen.GoTo(screen.eId);
  EXPECT_EQ(desk.Log(), "dspLine get 1 ");
  EXPECT_EQ(test::Shown(screen.cdsLines), "[11 мой], 12 ред 12");
}

TEST(DocumentHead, GoesBeforeItsRowsAndIsWrittenOnce) {
  Desk desk;
  Document screen(desk);
  desk.door.Stop();
  screen.Post(screen.cdsLines, "мой");
  desk.door.Start();
  desk.door.CutAfterNextCommit();
  screen.Post(screen.cdsPapers, "Мое");
  desk.Log();
  screen.RunInGate([&] {
    screen.cdsPapers.Edit();  // and nothing more is typed
    EXPECT_TRUE(screen.head.Post());
  });
  EXPECT_EQ(desk.Log(), "dspPaper dspLine get 1 ");
  EXPECT_EQ(desk.server.papers.carriedOut, 1);
  EXPECT_EQ(desk.server.lines.Text(), "11 мой, 12 ред 12, 21 ред 21");
}

/// It is new to the server however often it is posted, and written once.
TEST(DocumentHead, ANewRecordThatWasKeptBackStaysNew) {
  enum class By : unsigned char { Post, Identifier, Row };  // sends it again
  struct Case {
    bool answerLost;  ///< else the request
    By by;
    const char* held;
  };
  for (const Case& one :
       {Case{false, By::Post, "100 По-ново"}, Case{true, By::Post, "100 По-ново"},
        Case{false, By::Identifier, "100 Ново"}, Case{true, By::Identifier, "100 Ново"},
        Case{false, By::Row, "100 Ново"}}) {
    SCOPED_TRACE(one.held + std::to_string(one.answerLost));
    Desk desk;
    desk.server.papers.rows.clear();
    Document screen(desk, 0);
    one.answerLost ? desk.door.CutAfterNextCommit() : desk.door.CutBeforeNextCommit();
    screen.Post(screen.cdsPapers, "Ново", true);
    EXPECT_TRUE(screen.HoldsTyping());
    if (one.by == By::Post) screen.Post(screen.cdsPapers, "По-ново");
    if (one.by == By::Identifier) screen.GoTo(screen.eId);
    if (one.by == By::Row) {
      desk.server.papers.wholeFailure = Refused("Не сега.");
      screen.Post(screen.cdsLines, "първи", true);
      EXPECT_TRUE(screen.cdsLines.IsEmpty()) << "without a number it gets none";
      if (screen.cdsPapers.Editing()) screen.RunInGate([&] { screen.cdsPapers.Post(); });
      screen.Post(screen.cdsLines, "първи", true);
    }
    EXPECT_EQ(desk.Messages(), kKept + (one.by == By::Row ? "Не сега.|" : ""));
    EXPECT_EQ(desk.server.papers.Text(), one.held);
    EXPECT_FALSE(screen.existed);
    EXPECT_EQ(screen.cdsPapers.FieldByName("AmendFrom").AsString(), "");
    EXPECT_EQ(screen.id, 100);
    EXPECT_EQ(desk.server.lines.Rows("PaperId", 100).rowCount, one.by == By::Row ? 1u : 0u);
    EXPECT_FALSE(screen.HoldsTyping());
  }
}

}  // namespace
}  // namespace orvane::kit::papers
