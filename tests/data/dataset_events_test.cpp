// The order of a dataset's events, and what is left when a rule says no.

#include <gtest/gtest.h>

#include "data/abort.h"
#include "data/fake_server.h"

namespace orvane::data::test {
namespace {

/// Does a step and compares the events it made.
void CheckEvents(Desk& desk, const std::function<void()>& step, const std::string& expected) {
  desk.Noted();
  step();
  EXPECT_EQ(desk.Noted(), expected);
}

TEST(DatasetEvents, ComeInOneOrder) {
  Desk desk;
  desk.NoteEvents();
  TVosClientDataSet& items = desk.items;
  CheckEvents(
      desk, [&] { items.Open(); }, "Browse AfterScroll");
  CheckEvents(
      desk, [&] { items.Next(); }, "BeforeScroll AfterScroll");
  CheckEvents(
      desk, [&] { items.Edit(); }, "BeforeEdit Edit");
  CheckEvents(
      desk, [&] { items.Post(); }, "Browse");
  CheckEvents(
      desk, [&] { desk.Type(2, "Name=Борис"); }, "BeforeEdit Edit Name=Борис");
  CheckEvents(
      desk, [&] { items.Post(); }, "BeforePost Browse AfterPost");
  CheckEvents(
      desk, [&] { items.Append(); }, "BeforeInsert BeforeScroll Insert OnNewRecord AfterScroll");
  CheckEvents(
      desk, [&] { items.Cancel(); }, "Browse AfterCancel AfterScroll");
  CheckEvents(
      desk, [&] { items.Cancel(); }, "");
  CheckEvents(
      desk, [&] { items.Delete(); }, "BeforeDelete BeforeScroll AfterScroll AfterDelete");
  CheckEvents(
      desk, [&] { items.ApplyUpdates(0); }, "BeforeApply AfterApply()");
  CheckEvents(
      desk, [&] { items.ApplyUpdates(0); }, "");
  CheckEvents(
      desk, [&] { items.EmptyDataSet(); }, "Browse AfterScroll");
  CheckEvents(
      desk, [&] { items.Close(); }, "Inactive");
  CheckEvents(
      desk, [&] { items.Close(); }, "");
}

TEST(DatasetEvents, SettingTheValueItHasIsNoChange) {
  Desk desk;
  desk.NoteEvents();
  desk.items.Edit();
  CheckEvents(
      desk, [&] { desk.items[item::Name].Set("Ана"); }, "");
  EXPECT_FALSE(desk.items.Modified());
  CheckEvents(
      desk, [&] { desk.items[item::Price].Set(3); }, "Price=3,00");
  CheckEvents(
      desk, [&] { desk.items[item::Price].Set(Decimal(300, 2)); }, "");
  CheckEvents(
      desk, [&] { desk.items[item::Price].Clear(); }, "Price=");
}

TEST(DatasetEvents, FieldRulesRunAtOnceAndInsideEachOther) {
  Desk desk;
  desk.NoteEvents();
  TVosClientDataSet& items = desk.items;
  items[item::Unit].OnChange = [&] {
    desk.Note("Unit");
    items[item::Price].Set(items[item::Unit].AsInt().value_or(0) * 2);
    desk.Note("/Unit");
  };
  items[item::Price].OnChange = [&] {
    desk.Note("Price");
    items[item::Price].OnChange = nullptr;  // a rule may detach itself
    items[item::Name].Set("по " + items[item::Price].Text());
  };
  items.Edit();
  CheckEvents(
      desk, [&] { items[item::Unit].Set(5); }, "Unit Price Name=по 10,00 /Unit");
}

TEST(DatasetEvents, ARefusedPostStaysInEditWithWhatWasTyped) {
  Desk desk;
  desk.items.BeforePost = [] { throw Abort{}; };
  desk.Type(2, "Name=Борис");
  EXPECT_THROW(desk.items.Post(), Abort);
  EXPECT_EQ(desk.items.State(), DataSetState::Edit);
  EXPECT_EQ(desk.items[item::Name].AsString(), "Борис");
  EXPECT_THROW(desk.items.Next(), Abort);
  EXPECT_EQ(desk.items.RecNo(), 1u);
  desk.items.Cancel();
  EXPECT_EQ(Shown(desk.items), "1 Ана, [2 Боби], 3 Вера");
}

TEST(DatasetEvents, AnInsertGivenUpByItsRuleLeavesNothing) {
  Desk desk;
  desk.NoteEvents();
  desk.items.Next();
  desk.items.OnNewRecord = [&] {
    desk.items[item::Name].Set("нов");
    throw Abort{};
  };
  desk.Noted();
  EXPECT_THROW(desk.items.Append(), Abort);
  EXPECT_EQ(desk.Noted(), "BeforeInsert BeforeScroll Insert Name=нов Browse");
  EXPECT_EQ(Shown(desk.items), "1 Ана, [2 Боби], 3 Вера");
}

TEST(DatasetEvents, MovingPostsAChangedRowAndDropsAnUntouchedOne) {
  Desk desk;
  desk.Type(1, "Name=Анна");
  desk.items.Next();
  EXPECT_EQ(Shown(desk.items), "1 Анна, [2 Боби], 3 Вера");
  desk.items.OnNewRecord = [&] { desk.items[item::Price].Set(1); };
  desk.items.Append();
  EXPECT_FALSE(desk.items.Modified());
  desk.items.Prior();
  EXPECT_EQ(Shown(desk.items), "1 Анна, [2 Боби], 3 Вера");
  EXPECT_EQ(desk.items.ChangeCount(), 1u);
}

TEST(DatasetEvents, LocateDoesNotLeaveARowWithUnpostedTyping) {
  Desk desk;
  desk.Type(1, "Name=Анна");
  EXPECT_FALSE(desk.items.Locate("Id", 3));
  EXPECT_EQ(desk.items.State(), DataSetState::Edit);
  EXPECT_EQ(desk.items[item::Name].AsString(), "Анна");
}

TEST(DatasetEvents, AReloadInsideAnEventEndsWhatWasGoingOn) {
  Desk desk;
  desk.items.BeforePost = [&] { desk.items.Open(); };
  desk.Type(2, "Name=Борис");
  desk.items.Post();
  EXPECT_EQ(desk.items.State(), DataSetState::Browse);
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
  desk.items.BeforePost = nullptr;
  desk.items.BeforeDelete = [&] { desk.items.EmptyDataSet(); };
  desk.items.Delete();
  EXPECT_TRUE(desk.items.IsEmpty());
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
}

TEST(DatasetEvents, AReloadInsideAfterScrollFiresItOnceMore) {
  Desk desk;
  int scrolls = 0;
  desk.items.AfterScroll = [&] {
    if (++scrolls == 1) desk.items.Open();
  };
  desk.items.Open();
  EXPECT_EQ(scrolls, 2);
}

TEST(DatasetEvents, ABookmarkOutlivesOtherRowsAndNoReload) {
  Desk desk;
  desk.items.Last();
  const Bookmark vera = desk.items.GetBookmark();
  desk.items.First();
  desk.items.Delete();
  EXPECT_TRUE(desk.items.GotoBookmark(vera));
  EXPECT_EQ(Shown(desk.items), "2 Боби, [3 Вера]");
  desk.items.Delete();
  EXPECT_FALSE(desk.items.GotoBookmark(vera));
  desk.items.CancelUpdates();
  EXPECT_TRUE(desk.items.GotoBookmark(vera));
  desk.items.Open();
  EXPECT_FALSE(desk.items.GotoBookmark(vera));
}

TEST(DatasetEvents, ALoopOverTheRowsEnds) {
  Desk desk;
  std::string names;
  for (desk.items.First(); !desk.items.Eof(); desk.items.Next())
    names += desk.items[item::Name].AsString();
  EXPECT_EQ(names, "АнаБобиВера");
  for (desk.items.Last(); !desk.items.Bof(); desk.items.Prior())
    names += '<';
  EXPECT_EQ(names, "АнаБобиВера<<<");
  desk.items.EmptyDataSet();
  EXPECT_TRUE(desk.items.Bof() && desk.items.Eof());
}

TEST(DatasetEvents, WhatTheUserTypedWrongChangesNothing) {
  Desk desk;
  desk.NoteEvents();
  const Answer<Done> typed = desk.items[item::Unit].SetText("40000");
  ASSERT_FALSE(typed.Ok());
  EXPECT_EQ(typed.GetFailure().kind, FailureKind::Refused);
  EXPECT_EQ(typed.GetFailure().message,
            "Поле „Мярка“: „40000“ е извън допустимите граници: от -32768 до 32767.");
  EXPECT_EQ(desk.Noted(), "");
  desk.server.rows[1][2] = Decimal(123456, 4);
  desk.Open();
  EXPECT_TRUE(desk.items[item::Price].SetText("12,35").Ok());  // as it is shown
  EXPECT_EQ(desk.items.State(), DataSetState::Browse);
}

}  // namespace
}  // namespace orvane::data::test
