// The key edit and the pages of document screens.
#include <gtest/gtest.h>

#include "data/abort.h"
#include "host/editing_screen.h"

namespace orvane::host {
namespace {

using fakes::EditingScreen;
using fakes::Host;

struct AtKey {
  Host host;
  std::unique_ptr<EditingScreen> screen;
  std::string closedWith;

  AtKey() {
    host.LogIn();
    screen = std::make_unique<EditingScreen>(host);
    screen->eKey.SetText("42");
    screen->eKey.OnEditClosed = [this](const std::string& text) {
      closedWith += text + ";";
      if (text == "лошо") screen->Refuse("Въведете коректна стойност.");
    };
    screen->FocusControl(&screen->eKey);
  }
};

struct Row {
  const char* keys;
  const char* seen;
  const char* text;
  const char* closedWith;
};

TEST(KeyEditTest, TheInPlaceEditEndsWithEnterOnly) {
  const char* const refused = "eKey browse [лошо] !Стоки: Въведете коректна стойност.";
  for (const Row& row : {
           Row{"'17'", "eKey browse [17]", "42", ""},
           Row{"'17' Enter", "eKey browse", "17", "17;"},
           Row{"'17' Escape", "eKey browse", "42", ""},
           Row{"F2 '3' Enter", "eKey browse", "423", "423;"},
           Row{"F2 Backspace", "eKey browse [4]", "42", ""},
           Row{"F2 Enter", "eKey browse", "42", ""},
           Row{"Delete Enter", "eKey browse", "", ";"},
           Row{"'лошо' Enter", refused, "42", "лошо;"},
           Row{"'лошо' Enter Backspace", "eKey browse [лош] !Стоки: Въведете коректна стойност.",
               "42", "лошо;"},
           Row{"'17' Tab", "1/3 Code browse", "17", "17;"},
       }) {
    AtKey at;
    EXPECT_EQ(at.screen->See(row.keys), row.seen) << row.keys;
    EXPECT_EQ(at.screen->eKey.Text(), row.text) << row.keys;
    EXPECT_EQ(at.closedWith, row.closedWith) << row.keys;
  }
}

TEST(KeyEditTest, AHandlerThatLoadsSomethingElseAndRefusesKeepsTheTyping) {
  AtKey at;
  EditingScreen& screen = *at.screen;
  screen.eKey.OnEditClosed = [&screen](const std::string&) {
    screen.eKey.SetText("42");
    throw Abort{};
  };
  EXPECT_EQ(screen.See("'99' Enter"), "eKey browse [99]");
  EXPECT_EQ(screen.eKey.Text(), "42");
}

TEST(KeyEditTest, AReadOnlyKeyTakesNothing) {
  AtKey at;
  at.screen->eKey.readOnly = true;
  EXPECT_EQ(at.screen->See("'17' Enter Delete F2"), "eKey browse");
  EXPECT_EQ(at.screen->eKey.Text(), "42");
}

TEST(PageControlTest, APageIsShownWithItsContentFocused) {
  Host host;
  host.LogIn();
  EditingScreen screen(host);
  TPageControl pages(screen, "pcTables");
  pages.pages = {
      {.name = "tsGrid", .content = &screen.grid},
      {.name = "tsHidden", .content = &screen.eKey, .visible = false},
      {.name = "tsItems", .content = &screen.inspector},
  };
  const auto show = [&](std::string_view page) {
    screen.Dispatch(PageChosen{"pcTables", std::string(page)});
    return std::to_string(pages.active) + " " + screen.FocusName();
  };
  EXPECT_EQ(show("tsItems"), "2 inspector");
  EXPECT_EQ(show("tsHidden"), "2 inspector");
  EXPECT_EQ(show("tsNone"), "2 inspector");
  screen.See("'осем'");
  EXPECT_EQ(show("tsGrid"), "2 inspector") << "what was typed cannot be left";
  screen.See("Escape");
  EXPECT_EQ(show("tsGrid"), "0 grid");
}

}  // namespace
}  // namespace orvane::host
