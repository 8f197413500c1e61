// What the change log makes of a series of edits, and how it is taken back.

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "data/fake_server.h"
#include "support/seed.h"

namespace orvane::data::test {
namespace {

/// Runs words like "edit 2 Борис", "insert 9 Жана", "delete 1", "cancel" and returns what would be
/// sent.
std::string LogAfter(Desk& desk, const std::string& script) {
  std::istringstream words(script);
  for (std::string verb; words >> verb;) {
    std::string id;
    std::string name;
    words >> id;
    if (verb != "delete") words >> name;
    if (verb == "insert") desk.TypeNew("Id=" + id + " Name=" + name);
    if (verb == "edit") desk.Type(std::stoi(id), "Name=" + name);
    if (verb == "delete") {
      EXPECT_TRUE(desk.items.Locate("Id", std::stoi(id)));
      desk.items.Delete();
    } else {
      desk.items.Post();
    }
  }
  const std::size_t count = desk.items.ChangeCount();
  if (count == 0) return "";
  desk.server.link = Link::CutBefore;
  EXPECT_ANY_THROW(desk.items.ApplyUpdates(-1));
  desk.server.link = Link::Whole;
  EXPECT_EQ(desk.server.applies.back().delta.size(), count);
  return TextOf(desk.server.applies.back().delta);
}

TEST(ChangeLog, EditsOfARowThatWasNotSentAreOneChange) {
  struct Row {
    const char* script;
    const char* log;
  };
  constexpr Row kRows[] = {
      {"edit 2 Борис", "update 2 Name: Боби → Борис"},
      {"edit 2 Борис edit 2 Боян", "update 2 Name: Боби → Боян"},
      {"edit 2 Борис edit 2 Боби", ""},
      {"insert 9 Жана", "insert 9 Жана"},
      {"insert 9 Жана edit 9 Жени", "insert 9 Жени"},
      {"insert 9 Жана delete 9", ""},
      {"insert 9 Жана edit 9 Жени delete 9", ""},
      {"delete 1", "delete 1"},
      {"edit 1 Анна delete 1", "delete 1"},
      {"edit 3 Веска insert 9 Жана delete 2 edit 3 Вили",
       "update 3 Name: Вера → Вили; insert 9 Жана; delete 2"},
  };
  for (const Row& row : kRows) {
    Desk desk;
    EXPECT_EQ(LogAfter(desk, row.script), row.log) << row.script;
  }
}

TEST(ChangeLog, ADeletedRowIsSentAsItWasLoaded) {
  Desk desk;
  LogAfter(desk, "edit 1 Анна delete 1");
  EXPECT_EQ(*FindValue(desk.server.applies.back().delta[0].before, "Name"), Variant("Ана"));
}

TEST(ChangeLog, AnUpdateSendsKeyAndChangedColumnsOnly) {
  Desk desk;
  desk.Type(2, "Price=5");
  desk.items[item::UnitName].Set("кг");  // a joined name
  desk.items.Post();
  desk.items.ApplyUpdates(0);
  const Change& change = desk.server.applies.back().delta[0];
  const NamedValues before = {{"Id", 2}, {"Price", Variant()}};
  const NamedValues after = {{"Price", Decimal(50000, 4)}};
  EXPECT_EQ(change.before, before);
  EXPECT_EQ(change.after, after);
  EXPECT_EQ(change.clientKey, "desk-1");
  desk.Type(2, "");
  desk.items[item::UnitName].Set("гр");
  desk.items.Post();
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
  EXPECT_EQ(desk.items[item::UnitName].AsString(), "гр");
}

TEST(ChangeLog, OldValuesAreThoseBeforeTheEditAndThenThoseLoaded) {
  Desk desk;
  const TField& name = desk.items[item::Name];
  desk.Type(1, "Name=Анна");
  EXPECT_EQ(name.OldValue(), Variant("Ана"));
  desk.items.Post();
  EXPECT_EQ(name.OldValue(), Variant("Ана"));
  desk.Type(1, "Name=Ани");
  EXPECT_EQ(name.OldValue(), Variant("Анна"));
  desk.items.Post();
  EXPECT_EQ(name.OldValue(), Variant("Ана"));
  desk.items.ApplyUpdates(0);
  EXPECT_EQ(name.OldValue(), Variant("Ани"));
  desk.TypeNew("Id=9 Name=Жана");
  EXPECT_TRUE(name.OldValue().IsNull());
}

TEST(ChangeLog, EditThenCancelLeavesARowUntouched) {
  Desk desk;
  const std::string before = Shown(desk.items);
  desk.Type(1, "Name=Анна Price=5 Unit=2");
  desk.items.Cancel();
  desk.items.Insert();
  desk.items.Cancel();
  desk.TypeNew("Id=9 Name=Жана");
  desk.items.Cancel();
  EXPECT_EQ(Shown(desk.items), before);
  EXPECT_TRUE(desk.items[item::Price].IsNull());
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
}

TEST(ChangeLog, CancelUpdatesPutsEveryRowBackWhereItStood) {
  Desk desk;
  LogAfter(desk, "delete 1 edit 2 Борис insert 9 Жана delete 3 delete 2");
  EXPECT_EQ(Shown(desk.items), "[9 Жана]");
  desk.items.CancelUpdates();
  EXPECT_EQ(Shown(desk.items), "[1 Ана], 2 Боби, 3 Вера");
  EXPECT_EQ(desk.items.ChangeCount(), 0u);
}

TEST(ChangeLog, WithoutATableToWriteThereIsNoLog) {
  TVosClientDataSet inMemory("cdsForSave", {item::Id, item::Name});
  inMemory.Append();
  inMemory[item::Id].Set(1);
  inMemory.Post();
  EXPECT_EQ(inMemory.ChangeCount(), 0u);
  EXPECT_EQ(inMemory.RecordCount(), 1u);
  inMemory.Open();
  EXPECT_EQ(inMemory.RecordCount(), 1u);
  inMemory.Delete();
  EXPECT_TRUE(inMemory.IsEmpty());
}

/// One random insert, edit or delete, posted three times of four.
void RandomStep(Desk& desk, std::mt19937& random, int& nextId) {
  const auto pick = [&](std::size_t below) { return random() % below; };
  TVosClientDataSet& items = desk.items;
  if (!items.IsEmpty()) items.SetRecNo(pick(items.RecordCount()));
  switch (pick(4)) {
    case 0:
      if (pick(2) == 0) items.Insert();
      if (!items.Editing()) items.Append();
      items[item::Id].Set(nextId++);
      items[item::Name].Set("Н" + std::to_string(pick(9)));
      break;
    case 1:
      return items.Delete();
    default:
      if (items.IsEmpty()) return;
      items.Edit();
      items[item::Name].Set("П" + std::to_string(pick(9)));
      if (pick(3) == 0) items[item::Unit].Set(static_cast<int>(pick(4)));
  }
  if (pick(4) == 0) {
    items.Cancel();
  } else {
    items.Post();
  }
}

/// Whatever was done to a dataset, its delta carried out on the rows as they were loaded gives the
/// rows as they are shown; and taken back, it shows what was loaded.
TEST(ChangeLog, TheDeltaCarriedOutIsTheDatasetShown) {
  const unsigned first = Seed();
  for (unsigned seed = first; seed < first + 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Desk desk;
    for (int id = 4; id < 12; ++id)
      desk.server.Put(id, "Ред" + std::to_string(id), id % 3);
    const bool ordered = seed % 2 == 0;
    desk.items.SetIndexFieldNames(ordered ? "Name;Id" : "");
    desk.Open();
    const std::string loaded = Shown(desk.items);
    int nextId = 20;
    for (int step = 0; step < 40; ++step)
      RandomStep(desk, random, nextId);
    if (seed % 3 == 0) {
      desk.items.CancelUpdates();
      desk.items.First();
      EXPECT_EQ(Shown(desk.items), loaded);
      continue;
    }
    const std::size_t changes = desk.items.ChangeCount();
    EXPECT_EQ(desk.items.ApplyUpdates(0), 0u);
    EXPECT_EQ(static_cast<std::size_t>(desk.server.carriedOut), changes);
    // Rows kept in order must stand as if they had just been loaded.
    if (!ordered) desk.items.SetIndexFieldNames("Id");
    desk.items.First();
    const std::string shown = Shown(desk.items);
    desk.Open();
    EXPECT_EQ(shown, Shown(desk.items));
  }
}

}  // namespace
}  // namespace orvane::data::test
