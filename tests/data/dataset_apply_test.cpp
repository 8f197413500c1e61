// Sending the log: what every reconcile answer makes of a failed change, and what a broken link
// leaves behind.

#include <gtest/gtest.h>

#include <optional>

#include "data/abort.h"
#include "data/fake_server.h"

namespace orvane::data::test {
namespace {

using enum ReconcileAction;

constexpr const char* kStates[] = {"Inactive", "Browse", "Edit", "Insert"};

/// Two users: the other one changes or removes row 2 before we apply "Боби" → "Борис" with a price.
enum class Other { Nothing, Renames, SetsUnit, Removes };

struct ReconcileRow {
  const char* mine;  ///< "edit", "insert" or "delete"
  Other other;
  ReconcileAction action;
  const char* shown;
  const char* state;
  const char* next;  ///< what the next apply sends; "" when the log is empty
};

void MakeChange(Desk& desk, const std::string& what) {
  if (what == "edit") desk.Type(2, "Name=Борис Price=5");
  if (what == "insert") desk.TypeNew("Id=3 Name=Жана");
  if (what == "delete") {
    desk.items.Locate("Id", 2);
    desk.items.Delete();
  } else {
    desk.items.Post();
  }
}

std::optional<Failure> NoRule(const Change&) {
  return std::nullopt;
}

void Meddle(FakeServer& server, Other other) {
  switch (other) {
    case Other::Nothing:
      server.refuses = [](const Change&) { return Refused("Не може."); };
      return;
    case Other::Renames:
      server.rows[2][1] = "Бойка";
      return;
    case Other::SetsUnit:
      server.rows[2][1] = "Бойка";
      server.rows[2][3] = 7;
      return;
    case Other::Removes:
      server.rows.erase(2);
      return;
  }
}

std::string NextSent(Desk& desk) {
  desk.server.refuses = NoRule;
  desk.items.OnReconcileError = nullptr;
  const std::size_t before = desk.server.applies.size();
  desk.items.ApplyUpdates(0);
  return desk.server.applies.size() == before ? "" : TextOf(desk.server.applies.back().delta);
}

TEST(Reconcile, EveryAnswerDoesWhatItSays) {
  constexpr ReconcileRow kRows[] = {
      // a rule of the server says no
      {"edit", Other::Nothing, Skip, "1 Ана, [2 Борис], 3 Вера", "Browse",
       "update 2 Name: Боби → Борис Price:  → 5.0000"},
      {"edit", Other::Nothing, Abort, "1 Ана, [2 Борис], 3 Вера", "Browse",
       "update 2 Name: Боби → Борис Price:  → 5.0000"},
      {"edit", Other::Nothing, Merge, "1 Ана, [2 Борис], 3 Вера", "Browse",
       "update 2 Name: Боби → Борис Price:  → 5.0000"},
      {"edit", Other::Nothing, Correct, "1 Ана, [2 Борис], 3 Вера", "Edit", ""},
      {"edit", Other::Nothing, Cancel, "1 Ана, [2 Боби], 3 Вера", "Browse", ""},
      {"edit", Other::Nothing, Refresh, "1 Ана, [2 Боби], 3 Вера", "Browse", ""},
      {"insert", Other::Nothing, Skip, "1 Ана, 2 Боби, 3 Вера, [3 Жана]", "Browse",
       "insert 3 Жана"},
      {"insert", Other::Nothing, Correct, "1 Ана, 2 Боби, 3 Вера, [3 Жана]", "Insert", ""},
      {"insert", Other::Nothing, Cancel, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
      {"insert", Other::Nothing, Refresh, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
      {"delete", Other::Nothing, Skip, "1 Ана, [3 Вера]", "Browse", "delete 2"},
      {"delete", Other::Nothing, Correct, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
      {"delete", Other::Nothing, Cancel, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
      {"delete", Other::Nothing, Refresh, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
      // somebody else changed the row
      {"edit", Other::Renames, Merge, "1 Ана, [2 Борис], 3 Вера", "Browse",
       "update 2 Name: Бойка → Борис Price:  → 5.0000"},
      {"edit", Other::Renames, Correct, "1 Ана, [2 Борис], 3 Вера", "Edit", ""},
      {"edit", Other::Renames, Cancel, "1 Ана, [2 Боби], 3 Вера", "Browse", ""},
      {"edit", Other::Renames, Refresh, "1 Ана, [2 Бойка], 3 Вера", "Browse", ""},
      {"delete", Other::Renames, Merge, "1 Ана, [3 Вера]", "Browse", "delete 2"},
      {"delete", Other::Renames, Refresh, "1 Ана, 2 Бойка, [3 Вера]", "Browse", ""},
      // somebody else removed it
      {"edit", Other::Removes, Refresh, "1 Ана, [3 Вера]", "Browse", ""},
      {"edit", Other::Removes, Merge, "1 Ана, [2 Борис], 3 Вера", "Browse",
       "update 2 Name: Боби → Борис Price:  → 5.0000"},
      {"delete", Other::Removes, Refresh, "1 Ана, [3 Вера]", "Browse", ""},
      {"delete", Other::Removes, Cancel, "1 Ана, 2 Боби, [3 Вера]", "Browse", ""},
  };
  for (const ReconcileRow& row : kRows) {
    SCOPED_TRACE(std::string(row.mine) + " other " + std::to_string(static_cast<int>(row.other)) +
                 " action " + std::to_string(static_cast<int>(row.action)));
    Desk desk;
    MakeChange(desk, row.mine);
    Meddle(desk.server, row.other);
    desk.items.OnReconcileError = [&](const ReconcileError&) { return row.action; };
    bool closed = false;
    desk.items.AfterApplyUpdates = [&](const Variant&) { closed = true; };
    if (row.action == Abort) {
      EXPECT_THROW(desk.items.ApplyUpdates(0), data::Abort);
    } else {
      EXPECT_EQ(desk.items.ApplyUpdates(0), 1u);
    }
    EXPECT_TRUE(closed);
    EXPECT_EQ(Shown(desk.items), row.shown);
    EXPECT_EQ(std::string(kStates[static_cast<int>(desk.items.State())]), row.state);
    EXPECT_EQ(NextSent(desk), row.next);
  }
}

TEST(Reconcile, TheHandlerSeesThreeVersionsOfTheRow) {
  Desk desk;
  MakeChange(desk, "edit");
  Meddle(desk.server, Other::SetsUnit);
  desk.items.OnReconcileError = [&](const ReconcileError& error) {
    EXPECT_EQ(error.kind, ChangeKind::Update);
    EXPECT_EQ(error.failure.kind, FailureKind::Conflict);
    EXPECT_EQ(*FindValue(error.before, "Name"), Variant("Боби"));
    EXPECT_EQ(*FindValue(error.mine, "Name"), Variant("Борис"));
    EXPECT_EQ(FindValue(error.mine, "Unit"), nullptr);
    EXPECT_EQ(*FindValue(error.present, "Name"), Variant("Бойка"));
    error.givenUp = {"name"};
    return Merge;
  };
  desk.items.ApplyUpdates(0);
  EXPECT_EQ(desk.items[item::Name].AsString(), "Бойка");
  EXPECT_EQ(desk.items[item::Unit].AsInt(), 7);
  EXPECT_EQ(NextSent(desk), "update 2 Price:  → 5.0000");
}

TEST(Reconcile, CorrectingOnTopOfTheOthersRowCanBePosted) {
  Desk desk;
  MakeChange(desk, "edit");
  Meddle(desk.server, Other::SetsUnit);
  desk.items.OnReconcileError = [](const ReconcileError&) { return Correct; };
  desk.items.ApplyUpdates(0);
  EXPECT_TRUE(desk.items.Modified());
  EXPECT_EQ(desk.items[item::Unit].AsInt(), 7);
  desk.items.Post();
  EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
  EXPECT_EQ(desk.server.Text(), "1 Ана, 2 Борис, 3 Вера");
}

TEST(Reconcile, ACorrectedInsertCanBeCancelled) {
  Desk desk;
  desk.items.SetIndexFieldNames("Name");
  MakeChange(desk, "insert");
  desk.items.OnReconcileError = [](const ReconcileError&) { return Correct; };
  desk.items.ApplyUpdates(0);
  EXPECT_EQ(desk.items.State(), DataSetState::Insert);
  EXPECT_EQ(desk.items[item::Name].AsString(), "Жана");
  desk.items.Cancel();
  EXPECT_EQ(Shown(desk.items), "1 Ана, 2 Боби, [3 Вера]");
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
}

TEST(Apply, WithoutALimitTheGoodChangesAreKept) {
  Desk desk;
  desk.Type(1, "Name=Анна");
  desk.items.Post();
  MakeChange(desk, "edit");
  desk.server.refuses = [](const Change& change) {
    return TextOf(change).starts_with("update 2") ? std::optional(Refused("Не.")) : std::nullopt;
  };
  EXPECT_EQ(desk.items.ApplyUpdates(0), 1u);
  EXPECT_EQ(desk.items.ChangeCount(), 2u);
  EXPECT_EQ(desk.server.Text(), "1 Ана, 2 Боби, 3 Вера");
  EXPECT_EQ(desk.items.ApplyUpdates(-1), 1u);
  EXPECT_EQ(desk.items.ChangeCount(), 1u);
  EXPECT_EQ(desk.server.Text(), "1 Анна, 2 Боби, 3 Вера");
}

TEST(Apply, WhatTheServerFilledInIsMergedWithoutRules) {
  Desk desk;
  desk.NoteEvents();
  desk.TypeNew("Id=-1 Name=Жана");
  desk.items.Post();
  desk.Noted();
  desk.server.ownerDataAnswer = 100;
  desk.items.ApplyUpdates(0);
  EXPECT_EQ(desk.Noted(), "BeforeApply AfterApply(100)");
  EXPECT_EQ(Shown(desk.items), "1 Ана, 2 Боби, 3 Вера, [100 Жана]");
  desk.Type(100, "Name=Жени");
  desk.items.Post();
  EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
  EXPECT_EQ(desk.server.Text(), "1 Ана, 2 Боби, 3 Вера, 100 Жени");
}

TEST(Apply, ValuesTheServerMovedGoUnderWhatWasTyped) {
  Desk desk;
  desk.Type(2, "Name=Борис");
  desk.items.Post();
  desk.items.Edit();
  desk.Fill("Unit=5");
  desk.server.rows[2][1] = "Бойка";
  desk.server.rows[2][2] = Decimal(35000, 4);
  desk.items.TakeLoaded({{"Name", "Бойка"}, {"Price", Decimal(35000, 4)}});
  EXPECT_EQ(desk.items[item::Name].AsString(), "Борис");
  EXPECT_EQ(desk.items[item::Price].Text(), "3,50");
  desk.items.Post();
  EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
  EXPECT_EQ(TextOf(desk.server.applies.back().delta), "update 2 Name: Бойка → Борис Unit:  → 5");
}

TEST(Apply, OwnerDataIsSetBeforeAndReadAfter) {
  Desk desk;
  desk.items.BeforeApplyUpdates = [&] { desk.items.OwnerData = VariantArray{"ivanova", true}; };
  MakeChange(desk, "edit");
  desk.items.ApplyUpdates(0);
  EXPECT_EQ(desk.server.applies.back().ownerData, Variant(VariantArray{"ivanova", true}));
}

TEST(Apply, TheScreenMayReloadInsideItsEvents) {
  Desk desk;
  desk.items.AfterApplyUpdates = [&](const Variant&) { desk.items.Open(); };
  MakeChange(desk, "edit");
  EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
  EXPECT_EQ(Shown(desk.items), "[1 Ана], 2 Борис, 3 Вера");
  MakeChange(desk, "insert");
  desk.items.OnReconcileError = [&](const ReconcileError&) {
    desk.items.Open();
    return Correct;
  };
  EXPECT_EQ(desk.items.ApplyUpdates(0), 1u);
  EXPECT_EQ(Shown(desk.items), "[1 Ана], 2 Борис, 3 Вера");
  EXPECT_EQ(desk.items.State(), DataSetState::Browse);
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
}

TEST(Apply, ARuleThatThrowsWhileReconcilingLeavesTheChangeInTheLog) {
  Desk desk;
  MakeChange(desk, "edit");
  Meddle(desk.server, Other::Nothing);
  bool closed = false;
  desk.items.AfterApplyUpdates = [&](const Variant&) { closed = true; };
  desk.items.OnReconcileError = [](const ReconcileError&) -> ReconcileAction {
    throw ServerError{{FailureKind::LinkDown, "Няма връзка."}};
  };
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  EXPECT_TRUE(closed);
  EXPECT_EQ(desk.items.ChangeCount(), 1u);
}

TEST(Apply, AVerdictOnTheWholeRequestIsAskedAboutLikeARefusal) {
  Desk desk;
  MakeChange(desk, "edit");
  desk.server.wholeFailure = Failure{FailureKind::NoRight, "Нямате право."};
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  EXPECT_EQ(desk.items.ChangeCount(), 1u);
  desk.server.wholeFailure = Failure{FailureKind::NoRight, "Нямате право."};
  desk.items.OnReconcileError = [](const ReconcileError& error) {
    EXPECT_EQ(error.failure.message, "Нямате право.");
    return Cancel;
  };
  EXPECT_EQ(desk.items.ApplyUpdates(0), 1u);
  EXPECT_EQ(Shown(desk.items), "1 Ана, [2 Боби], 3 Вера");
}

TEST(Apply, AFailedChangeGoesAgainUnderANewKey) {
  Desk desk;
  MakeChange(desk, "edit");
  Meddle(desk.server, Other::Nothing);
  desk.items.ApplyUpdates(0);
  const std::string key = desk.server.applies.back().delta[0].clientKey;
  desk.items.ApplyUpdates(0);
  EXPECT_NE(desk.server.applies.back().delta[0].clientKey, key);
}

// --- broken links
// ---------------------------------------------------------------------------------

bool SameBytes(const ApplyRequest& left, const ApplyRequest& right) {
  return left.delta == right.delta && left.ownerData == right.ownerData &&
         left.maxErrors == right.maxErrors;
}

/// Applies over a link that breaks, types further, applies again.
void CheckBrokenLink(Link link, const std::string& mine, const std::string& further,
                     const std::string& shown, const std::string& furtherSent) {
  SCOPED_TRACE(mine + ", then " + further);
  Desk desk;
  int answers = 0;
  desk.items.AfterApplyUpdates = [&](const Variant&) { ++answers; };
  MakeChange(desk, mine);
  desk.server.link = link;
  desk.items.OwnerData = "first";
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  desk.items.OwnerData = "second";
  EXPECT_THROW(desk.items.ApplyUpdates(-1), ServerError);
  if (further == "edit") {
    desk.Type(2, "Name=Друга");
    desk.items.Post();
  }
  if (further == "delete") desk.items.Delete();
  desk.server.link = Link::Whole;
  EXPECT_EQ(desk.items.ApplyUpdates(-1), 0u);
  EXPECT_EQ(answers, 1);
  ASSERT_GE(desk.server.applies.size(), 3u);
  EXPECT_TRUE(SameBytes(desk.server.applies[0], desk.server.applies[1]));
  EXPECT_TRUE(SameBytes(desk.server.applies[0], desk.server.applies[2]));
  EXPECT_EQ(desk.server.Text(), shown);
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
  EXPECT_EQ(desk.server.applies.size(), furtherSent.empty() ? 3u : 4u);
  if (!furtherSent.empty()) {
    EXPECT_EQ(TextOf(desk.server.applies.back().delta), furtherSent);
    EXPECT_EQ(desk.server.applies.back().ownerData, Variant("second"));
  }
}

TEST(BrokenLink, TheSameBytesGoFirstAndWhatWasTypedSinceBehindThem) {
  for (const Link link : {Link::CutBefore, Link::CutAfter}) {
    CheckBrokenLink(link, "edit", "", "1 Ана, 2 Борис, 3 Вера", "");
    CheckBrokenLink(link, "edit", "edit", "1 Ана, 2 Друга, 3 Вера", "update 2 Name: Борис → Друга");
    CheckBrokenLink(link, "edit", "delete", "1 Ана, 3 Вера", "delete 2");
    CheckBrokenLink(link, "delete", "", "1 Ана, 3 Вера", "");
  }
}

TEST(BrokenLink, ANewRowLearnsItsNumberBeforeWhatWasTypedSinceIsSent) {
  for (const Link link : {Link::CutBefore, Link::CutAfter}) {
    Desk desk;
    desk.TypeNew("Id=-1 Name=Жана");
    desk.items.Post();
    desk.server.link = link;
    EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
    desk.Type(-1, "Name=Жени Price=3");
    desk.items.Post();
    desk.server.link = Link::Whole;
    desk.server.ownerDataAnswer = 100;
    EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
    EXPECT_EQ(desk.server.Text(), "1 Ана, 2 Боби, 3 Вера, 100 Жени");
    EXPECT_EQ(desk.server.carriedOut, 2);
    EXPECT_EQ(Shown(desk.items), "1 Ана, 2 Боби, 3 Вера, [100 Жени]");
    EXPECT_EQ(desk.items[item::Price].Text(), "3,00");
  }
}

TEST(BrokenLink, AWritingCallThatIsAskedAgainRepeatsItsBytes) {
  Desk desk;
  desk.server.link = Link::CutAfter;
  EXPECT_THROW(desk.connection.Call("Copy", {1}), ServerError);
  // Another screen of the session asks again.
  TVosSQLConnection other(desk.session, {11, 1}, "TsmItem");
  EXPECT_THROW(other.Call("Copy", {1}), ServerError);
  desk.server.link = Link::Whole;
  other.Call("Copy", {1});
  other.Call("Copy", {1});
  other.Call("Copy", {2});
  other.Ask("Look", {2});
  std::string keys;
  for (const MethodCall& call : desk.server.calls)
    keys += call.clientKey + " ";
  EXPECT_EQ(keys, "desk-1 desk-1 desk-1 desk-2 desk-3  ");
}

TEST(BrokenLink, TheSecondBreakDoesNotLoseTheFirstAnswer) {
  Desk desk;
  std::string owners;
  desk.items.AfterApplyUpdates = [&](const Variant& data) { owners += data.ToText() + ";"; };
  MakeChange(desk, "edit");
  desk.server.link = Link::CutAfter;
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  desk.Type(2, "Name=Друга");
  desk.items.Post();
  // The repetition is answered; then the link breaks on what was typed since.
  desk.server.link = Link::Whole;
  desk.server.ownerDataAnswer = 77;
  desk.server.breaksAfter = 1;
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  EXPECT_EQ(owners, "");
  EXPECT_EQ(desk.items.ChangeCount(), 1u);
  desk.server.link = Link::Whole;
  desk.server.ownerDataAnswer = Variant();
  EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
  EXPECT_EQ(owners, "77;");
  EXPECT_EQ(desk.server.Text(), "1 Ана, 2 Друга, 3 Вера");
}

TEST(BrokenLink, ARefusedRepetitionTakesUpWhatWasTypedSince) {
  Desk desk;
  MakeChange(desk, "edit");
  desk.server.link = Link::CutBefore;
  EXPECT_THROW(desk.items.ApplyUpdates(0), ServerError);
  desk.Type(2, "Name=Друга");
  desk.items.Post();
  desk.server.link = Link::Whole;
  Meddle(desk.server, Other::Nothing);
  int asked = 0;
  desk.items.OnReconcileError = [&](const ReconcileError& error) {
    ++asked;
    EXPECT_EQ(*FindValue(error.mine, "Name"), Variant("Друга"));
    return Correct;
  };
  EXPECT_EQ(desk.items.ApplyUpdates(0), 1u);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(desk.items.State(), DataSetState::Edit);
  EXPECT_EQ(desk.items[item::Name].AsString(), "Друга");
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
  desk.items.Cancel();
  EXPECT_EQ(Shown(desk.items), "1 Ана, [2 Боби], 3 Вера");
}

TEST(BrokenLink, AFailedFetchLeavesTheRows) {
  Desk desk;
  desk.server.link = Link::CutBefore;
  EXPECT_THROW(desk.items.Open(), ServerError);
  EXPECT_EQ(Shown(desk.items), "[1 Ана], 2 Боби, 3 Вера");
  EXPECT_EQ(desk.session.calls, 1);
}

}  // namespace
}  // namespace orvane::data::test
