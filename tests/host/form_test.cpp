// The gate of a form, its live actions, its focus and its closing, on controls that only take
// notes.
#include "host/form.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "data/lookup_table.h"
#include "host/controls/cell_editor.h"
#include "host/controls/combo.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/form_fakes.h"

namespace orvane::host {
namespace {

using fakes::Host;
using fakes::Press;
using Notes = std::vector<std::string>;

constexpr auto Code = Int32("Code", Key, "Код");
constexpr auto Text = String("Text", 20, Plain, "Текст");

class Spot : public Control {
 public:
  Spot(TVosBaseForm& form, std::string_view name, Notes& notes)
      : Control(form, name, ControlKind::Label), notes_(notes) {
    OnEnter = [this] { notes_.push_back("enter " + Name()); };
    OnExit = [this] { notes_.push_back("exit " + Name()); };
  }
  bool HandleKey(KeyStroke key) override {
    if (key == keyTaken) notes_.push_back(Name() + " took " + KeyText(key));
    return key == keyTaken;
  }
  CellEditor* Editor() override { return editor.IsOpen() ? &editor : nullptr; }
  TVosMTCombo* ActiveCombo() override { return combo; }
  void BeforeLeave() override {
    if (refuses) throw Abort();
  }

  KeyStroke keyTaken;
  CellEditor editor;
  TVosMTCombo* combo = nullptr;
  bool refuses = false;

 private:
  Notes& notes_;
};

bool SwitchIsOn(const TVosBaseForm& form);

constexpr LiveRow kTable[] = {
    {"acAnywhere", kAnywhere},
    {"acLeft", "left"},
    {"acDelete", "left", InState::NotInsert, paDelete},
    {"acDelete", "right", InState::Insert, {}},
    {"acSearch", kAtCombo},
    {"acOfCombo", "cbUser"},
    {"acWhen", kAnywhere, InState::Any, paEdit, &SwitchIsOn},
    {"acSave", kAnywhere, InState::Editing},
};

class Screen : public TVosBaseForm {
 public:
  explicit Screen(Host& host)
      : TVosBaseForm(host.Identity(), "TfScreen", "Проба"),
        cds("cds", {Code, Text}),
        cdsUsers("cdsUsers", {Code, Text}),
        users(cdsUsers, "Code"),
        cbUser(*this, "cbUser", users),
        left(*this, "left", notes),
        right(*this, "right", notes) {
    for (const LiveRow& row : kTable)
      Add(row.action, {});
  }

  TAction& Add(std::string_view name, KeyStroke key) {
    if (TAction* known = FindAction(name)) {
      known->shortcut = key;
      return *known;
    }
    TAction action;
    action.name = name;
    action.shortcut = key;
    action.OnExecute = [this, ran = std::string(name)] { notes.push_back("ran " + ran); };
    return AddAction(std::move(action));
  }
  bool IsLive(std::string_view name) const { return FindAction(name)->enabled; }
  Notes TakeNotes() { return std::exchange(notes, {}); }

  TVosClientDataSet* MainDataSet() const override { return const_cast<TVosClientDataSet*>(&cds); }
  std::span<const LiveRow> LiveRows() const override { return kTable; }
  void OnShow() override {
    if (onShow) onShow();
  }
  void OnChangeAccess() override { notes.push_back("access"); }
  void OnLanguageChanged() override { notes.push_back("language"); }
  void OnClose() override {
    if (refusesToClose) Refuse("Има какво да се довърши.");
  }

  Notes notes;
  std::function<void()> onShow;
  bool switchedOn = false;
  bool refusesToClose = false;
  TVosClientDataSet cds;
  TVosClientDataSet cdsUsers;
  TLookupTable users;
  TVosMTCombo cbUser;
  Spot left;
  Spot right;
};

bool SwitchIsOn(const TVosBaseForm& form) {
  return static_cast<const Screen&>(form).switchedOn;
}

class FormTest : public ::testing::Test {
 protected:
  FormTest() {
    host.LogIn();
    screen = std::make_unique<Screen>(host);
    screen->layout = ColumnOf({Of(screen->left), Of(screen->right)});
  }
  Host host;
  std::unique_ptr<Screen> screen;
};

// --- the gate ----------------------------------------------------------------

TEST_F(FormTest, WhateverAnEventThrowsEndsAtTheGateWithItsMessage) {
  struct Row {
    std::function<void()> work;
    std::string_view message;  ///< "0 messages": silence
  };
  const auto fails = [](FailureKind kind, std::string text) {
    return [kind, text] { throw ServerError{{kind, text}}; };
  };
  const Row rows[] = {
      {[] { throw Abort(); }, "0 messages"},
      {fails(FailureKind::LinkDown, "Заявката беше прекъсната."),
       "Заявката беше прекъсната. Опитайте отново."},
      {fails(FailureKind::NoRight, "Нямате право да четете дирекции."),
       "Нямате право да четете дирекции."},
      {fails(FailureKind::NoRight, ""), "Нямате право за тази операция."},
      {fails(FailureKind::Refused, "!!Err_Искане 7 е анулирано."), "Искане 7 е анулирано."},
      {fails(FailureKind::OutcomeUnknown, "deadline"),
       "Връзката прекъсна и не се знае дали операцията е изпълнена. Опитайте отново, промяната "
       "няма "
       "да се запише два пъти."},
      {[] { throw std::runtime_error("xyz"); }, "Неочаквана грешка: xyz. Опитайте отново."},
  };
  for (const Row& row : rows) {
    host.toolkit.changes = 0;
    screen->switchedOn = false;
    screen->RunInGate([&] {
      screen->switchedOn = true;
      row.work();
    });
    EXPECT_TRUE(host.toolkit.messages.empty() || host.toolkit.messages[0].caption == "Проба");
    EXPECT_EQ(host.toolkit.TakeMessage(), row.message);
    EXPECT_TRUE(screen->IsLive("acWhen")) << "actions are settled after " << row.message;
    EXPECT_EQ(host.toolkit.changes, 1);
  }
}

TEST_F(FormTest, AnEndedSessionIsReplacedByTheSameUserAndTheScreenStaysOpen) {
  host.toolkit.modals.push_back([&](TVosBaseForm& login) {
    EXPECT_EQ(login.caption, "Вход отново");
    fakes::Type(login, host.server.password);
    Press(login, KeyCode::F9);
  });
  host.app.vCurrentEmployee = Variant(1204);
  screen->RunInGate([] { throw ServerError{{FailureKind::SessionEnded, "expired"}}; });
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Сесията Ви е приключила. Влезте отново и повторете операцията.");
  ASSERT_EQ(host.server.logins.size(), 2U);
  EXPECT_EQ(host.server.logins[1].login, "ivanova");
  EXPECT_EQ(host.app.Info().ticket, "билет 2");
  EXPECT_EQ(host.app.vCurrentEmployee, Variant(1204));
  EXPECT_FALSE(screen->IsClosed());
}

TEST_F(FormTest, AnEventMayAskAndBeEnteredAgainMeanwhile) {
  host.toolkit.whileAsking = [&] {
    EXPECT_TRUE(screen->IsBusy());
    screen->RunInGate([&] {
      screen->notes.push_back("inner");
      throw Abort();
    });
    EXPECT_TRUE(screen->IsBusy());
  };
  host.toolkit.answers = {kAnswerYes};
  screen->RunInGate([&] {
    if (Confirmed(*screen, "Изтриване", "?")) screen->notes.push_back("outer goes on");
  });
  EXPECT_EQ(screen->notes, (Notes{"inner", "outer goes on"}));
  EXPECT_FALSE(screen->IsBusy());
}

// --- live actions ------------------------------------------------------------

TEST_F(FormTest, LiveActionsFollowFocusStateRightsAndConditionInEveryCombination) {
  const TPointAccess accesses[] = {
      paOpen, {paOpen, paEdit}, {paOpen, paDelete}, {paOpen, paEdit, paDelete}};
  enum Focus { None, Left, Right, LeftCombo };
  for (const TPointAccess access : accesses) {
    for (const Focus focus : {None, Left, Right, LeftCombo}) {
      for (const DataSetState state :
           {DataSetState::Browse, DataSetState::Edit, DataSetState::Insert}) {
        for (const bool on : {false, true}) {
          if (screen->cds.Editing()) screen->cds.Cancel();
          screen->cds.EmptyDataSet();
          if (state == DataSetState::Insert) screen->cds.Append();
          if (state == DataSetState::Edit) {
            screen->cds.Append();
            screen->cds[Code].Set(1);
            screen->cds.Post();
            screen->cds.Edit();
          }
          screen->switchedOn = on;
          screen->left.combo = focus == LeftCombo ? &screen->cbUser : nullptr;
          screen->FocusControl(focus == None    ? nullptr
                               : focus == Right ? &screen->right
                                                : &screen->left);
          screen->SetAccess(access);
          const bool atLeft = focus == Left || focus == LeftCombo;
          const bool inserting = state == DataSetState::Insert;
          EXPECT_TRUE(screen->IsLive("acAnywhere"));
          EXPECT_EQ(screen->IsLive("acLeft"), atLeft);
          EXPECT_EQ(screen->IsLive("acDelete"), (atLeft && !inserting && access.Has(paDelete)) ||
                                                    (focus == Right && inserting));
          EXPECT_EQ(screen->IsLive("acSearch"), focus == LeftCombo);
          EXPECT_EQ(screen->IsLive("acOfCombo"), focus == LeftCombo);
          EXPECT_EQ(screen->IsLive("acWhen"), on && access.Has(paEdit));
          EXPECT_EQ(screen->IsLive("acSave"), state != DataSetState::Browse);
        }
      }
    }
  }
}

TEST_F(FormTest, AnActionWithoutARowIsNeverLiveAndDoesNotRun) {
  screen->Add("acForgotten", KeyCode::F5);
  Press(*screen, KeyCode::F5);
  screen->Dispatch(ActionChosen{"acForgotten"});
  screen->Dispatch(ActionChosen{"acUnknown"});
  EXPECT_EQ(screen->TakeNotes(), Notes{});
  EXPECT_FALSE(screen->Execute("acForgotten"));
}

TEST_F(FormTest, OfTwoLiveActionsWithOneKeyTheFirstOfTheTableRunsAndTheMistakeIsTold) {
  screen->Add("acSave", KeyCode::F9);
  screen->Add("acAnywhere", KeyCode::F9);
  screen->RefreshActions();
  EXPECT_EQ(screen->DuplicateLiveKeys(), Notes{});
  screen->cds.Append();
  Press(*screen, KeyCode::F9);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"ran acAnywhere"}));
  EXPECT_EQ(screen->DuplicateLiveKeys(), (Notes{"F9: acAnywhere, acSave"}));
}

TEST_F(FormTest, AKeyGoesToTheLiveActionThenToTheControlThenToTheForm) {
  screen->BeShown();
  screen->TakeNotes();
  screen->left.keyTaken = KeyCode::F7;
  screen->Add("acLeft", KeyCode::F7).secondShortcut = KeyCode::Escape;
  Press(*screen, KeyCode::F7);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"ran acLeft"}));
  Press(*screen, KeyCode::Escape);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"ran acLeft"}));
  Press(*screen, KeyCode::Tab);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"exit left", "enter right"}));
  Press(*screen, KeyCode::F7);  // not live at the right
  EXPECT_EQ(screen->TakeNotes(), Notes{});
  Press(*screen, Shift(KeyCode::Tab));
  EXPECT_EQ(screen->TakeNotes(), (Notes{"exit right", "enter left"}));
}

TEST_F(FormTest, EscapeClosesAnOpenEditorBeforeItMeansAnything) {
  screen->BeShown();
  screen->TakeNotes();
  screen->Add("acAnywhere", KeyCode::Escape);
  screen->left.keyTaken = KeyCode::Escape;
  screen->left.editor.OpenText("12", PictureMask());
  Press(*screen, KeyCode::Escape);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"left took Escape"}));
  screen->left.editor.Close();
  Press(*screen, KeyCode::Escape);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"ran acAnywhere"}));
}

// --- focus -------------------------------------------------------------------

TEST_F(FormTest, ShowingRunsOnShowOnceAndFocusesTheFirstThatCan) {
  screen->left.visible = false;
  screen->onShow = [&] {
    screen->notes.push_back("show");
    throw Abort();
  };
  screen->BeShown();
  screen->BeShown();
  EXPECT_EQ(screen->TakeNotes(), (Notes{"show", "enter right"}));
}

TEST_F(FormTest, FocusEventsComeOnceEachAndOnlyOnAChange) {
  screen->FocusControl(&screen->left);
  screen->FocusControl(&screen->left);
  screen->FocusControl(&screen->right);
  screen->right.visible = false;
  screen->FocusControl(&screen->right);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"enter left", "exit left", "enter right"}));
}

TEST_F(FormTest, ARuleOfTheOldControlKeepsTheFocus) {
  struct Row {
    std::string_view what;
    std::function<void()> onExit;
    bool refuses;
  };
  const Row rows[] = {
      {"the editor's text is not complete", [] {}, true},
      {"leaving aborts", [] { throw Abort(); }, false},
      {"leaving asks for the focus back", [&] { screen->FocusControl(&screen->left); }, false},
  };
  for (const Row& row : rows) {
    screen->left.refuses = false;
    screen->left.OnExit = nullptr;
    screen->FocusControl(&screen->left);
    screen->left.refuses = row.refuses;
    screen->left.OnExit = row.onExit;
    screen->TakeNotes();
    screen->RunInGate([&] { screen->FocusControl(&screen->right); });
    EXPECT_EQ(screen->ActiveControl(), &screen->left) << row.what;
    EXPECT_EQ(screen->TakeNotes(), Notes{}) << row.what;
  }
}

TEST_F(FormTest, EnteringMayPassTheFocusOn) {
  screen->right.OnEnter = [&] {
    screen->notes.push_back("enter right");
    screen->FocusControl(&screen->left);
  };
  screen->FocusControl(&screen->right);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"enter right", "exit right", "enter left"}));
  EXPECT_EQ(screen->FocusName(), "left");
}

TEST_F(FormTest, OnlyThePageThatIsShownTakesPartInTheOrder) {
  Spot first(*screen, "first", screen->notes);
  Spot second(*screen, "second", screen->notes);
  TPageControl pages(*screen, "pages");
  pages.pages = {{"a", "А", &first}, {"b", "Б", &second}};
  screen->layout = ColumnOf({Of(screen->left), Of(pages)});
  screen->FocusControl(&screen->left);
  screen->FocusNext();
  EXPECT_EQ(screen->FocusName(), "first");
  screen->Dispatch(PageChosen{"pages", "b"});
  EXPECT_EQ(screen->FocusName(), "second");
  screen->FocusNext();
  EXPECT_EQ(screen->FocusName(), "left");
  screen->FocusControl(nullptr);
  screen->layout = {};
}

// --- rights, closing, host actions -------------------------------------------

TEST_F(FormTest, NewRightsRunTheRuleAndSettleTheActions) {
  screen->FocusControl(&screen->left);
  screen->TakeNotes();
  screen->SetAccess(paOpen);
  EXPECT_EQ(screen->TakeNotes(), (Notes{"access"}));
  EXPECT_FALSE(screen->IsLive("acDelete"));
  EXPECT_FALSE(screen->May(paDelete));
}

TEST_F(FormTest, ClosingAsksAboutUnsavedTypingAndKeepsItWithoutAYes) {
  screen->cds.Append();
  screen->Dispatch(CloseWanted());
  EXPECT_TRUE(screen->IsClosed()) << "nothing was typed into the new row";

  Screen typed(host);
  typed.cds.Append();
  typed.cds[Text].Set("12 болта");
  typed.Dispatch(CloseWanted());
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Има незаписани промени. Желаете ли да затворите екрана без запис?");
  EXPECT_FALSE(typed.IsClosed());
  EXPECT_EQ(typed.cds[Text].AsString(), "12 болта");
  host.toolkit.answers = {kAnswerYes};
  typed.Dispatch(CloseWanted());
  EXPECT_TRUE(typed.IsClosed());
}

TEST_F(FormTest, AFormMayRefuseToClose) {
  screen->refusesToClose = true;
  screen->Dispatch(CloseWanted());
  EXPECT_EQ(host.toolkit.TakeMessage(), "Има какво да се довърши.");
  EXPECT_FALSE(screen->IsClosed());
}

TEST_F(FormTest, HostActionsAreLiveEverywhereAndDoWhatTheySay) {
  AddHostActions(*screen);
  screen->BeShown();
  screen->TakeNotes();
  Press(*screen, CtrlAlt(KeyCode::T));
  EXPECT_TRUE(screen->stayOnTop);
  screen->Dispatch(ActionChosen{"acMax"});
  EXPECT_EQ(screen->windowRequest, WindowRequest::Maximize);
  screen->Dispatch(ActionChosen{"acLanguage"});
  EXPECT_FALSE(screen->FirstLanguage());
  EXPECT_EQ(screen->TakeNotes(), (Notes{"language"}));
  screen->FindAction("acAnywhere")->caption = "Печат";
  screen->FindAction("acAnywhere")->shortcut = KeyCode::F7;
  screen->RunInGate([&] { screen->FocusControl(nullptr); });
  screen->Dispatch(ActionChosen{"acFormHelp"});
  EXPECT_EQ(host.toolkit.TakeMessage(), "Печат – F7");
  Press(*screen, Alt(KeyCode::F4));
  EXPECT_TRUE(screen->IsClosed());
}

TEST_F(FormTest, WithOneLanguageThereIsNoSwitch) {
  host.server.session.languageNames = {"Български"};
  host.LogIn();
  AddHostActions(*screen);
  screen->RefreshActions();
  EXPECT_FALSE(screen->FindAction("acLanguage")->visible);
  EXPECT_FALSE(screen->Execute("acLanguage"));
}

TEST_F(FormTest, WhatWasTypedIsSaidToBeKeptOnlyWhereSomethingWasTyped) {
  const auto fail = [&](FailureKind kind) {
    screen->RunInGate([kind] { throw ServerError{{kind, "Няма връзка със сървъра."}}; });
    return host.toolkit.TakeMessage();
  };
  screen->cds.Append();
  screen->cds[Text].Set("въведено");
  EXPECT_EQ(fail(FailureKind::LinkDown),
            "Няма връзка със сървъра. Въведеното е запазено; опитайте отново.");
  EXPECT_EQ(fail(FailureKind::OutcomeUnknown),
            "Връзката прекъсна и не се знае дали операцията е изпълнена. Въведеното е запазено; "
            "опитайте отново, промяната няма да се запише два пъти.");
  screen->RunInGate([] { throw std::runtime_error("xyz"); });
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Неочаквана грешка: xyz. Въведеното е запазено; повторете операцията.");
  screen->cds.Cancel();
  EXPECT_EQ(fail(FailureKind::LinkDown), "Няма връзка със сървъра. Опитайте отново.");
}

TEST_F(FormTest, WhatCouldNotBeReadIsReadAgainOrTheScreenIsNotOpened) {
  int reads = 0;
  screen->onShow = [&reads] {
    if (++reads < 3) throw ServerError{{FailureKind::LinkDown, "Няма връзка със сървъра."}};
  };
  host.toolkit.answers = {kAnswerYes, kAnswerYes};
  screen->BeShown();
  EXPECT_EQ(reads, 3);
  EXPECT_EQ(host.toolkit.messages.size(), 2U);
  EXPECT_EQ(host.toolkit.messages[0].text, "Няма връзка със сървъра. Желаете ли нов опит?");
  EXPECT_FALSE(screen->IsClosed());
  EXPECT_EQ(screen->ActiveControl(), &screen->left);

  Screen other(host);
  other.onShow = [] { throw ServerError{{FailureKind::NoRight, ""}}; };
  host.toolkit.messages.clear();
  other.BeShown();
  EXPECT_EQ(host.toolkit.TakeMessage(), "Нямате право за тази операция.");
  EXPECT_TRUE(other.IsClosed());
}

TEST_F(FormTest, ALanguageIsTheScreensOwnAndIsHandedToWhatItOpens) {
  Screen other(host);
  screen->SwitchLanguage();
  EXPECT_EQ(screen->TakeNotes(), (Notes{"language"}));
  EXPECT_TRUE(other.FirstLanguage());
  TVosBaseForm opened(DialogIdentity(*screen), "TfOpened", "Отворен");
  EXPECT_EQ(opened.GetLanguageNumber(), 2);
  opened.SwitchLanguage();
  EXPECT_EQ(screen->GetLanguageNumber(), 2);
}

TEST_F(FormTest, TheStatusBarTellsServerRowsAndDay) {
  host.app.program.serverName = "127.0.0.1:8011";
  host.app.waiting.text = "2 документа чакат Вас";
  TVosBaseForm* ledFrom = nullptr;
  host.app.waiting.Open = [&ledFrom](TVosBaseForm& from) { ledFrom = &from; };
  AddHostActions(*screen);
  screen->RefreshActions();
  const auto bar = [this] {
    std::string text;
    for (const StatusPart& part : StatusBar(*screen))
      text += (part.atRight ? ">" : "<") + part.text + (part.action.empty() ? "" : "!");
    return text;
  };
  EXPECT_EQ(bar(), "<● Свързан: 127.0.0.1:8011>2 документа чакат Вас (F12)!>F1 Помощ!>05.03.2026");
  Press(*screen, KeyCode::F12);
  EXPECT_EQ(ledFrom, screen.get());
  host.server.reachable = false;
  host.app.waiting.text.clear();
  EXPECT_EQ(bar(), "<○ Няма връзка: 127.0.0.1:8011>F1 Помощ!>05.03.2026");
  host.app.LogOut();
  EXPECT_EQ(bar(), "<○ Няма връзка: 127.0.0.1:8011>F1 Помощ!") << "whose day is it?";
}

TEST(Keys, WhatIsWrittenIsReadBack) {
  for (int code = 1; code <= static_cast<int>(KeyCode::BackQuote); ++code) {
    for (int modifiers = 0; modifiers < 8; ++modifiers) {
      const KeyStroke key(static_cast<KeyCode>(code), static_cast<std::uint8_t>(modifiers));
      EXPECT_EQ(ParseKey(KeyText(key)), key) << KeyText(key);
    }
  }
  EXPECT_EQ(KeyText(CtrlAlt(KeyCode::T)), "Ctrl+Alt+T");
  EXPECT_EQ(KeyText(Shift(KeyCode::F2)), "Shift+F2");
  EXPECT_EQ(KeyText({}), "(none)");
  for (const std::string_view text : {"", "Ctrl+", "F13", "Ctrl+Ctrl+A", "f9", "Alt+Ctrl+A"})
    EXPECT_FALSE(ParseKey(text).has_value()) << text;
}

}  // namespace
}  // namespace orvane::host
