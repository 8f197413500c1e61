// Messages, what happens to a change the server did not take, and the dialogs that search and log
// in.
#include "host/dialogs.h"

#include <gtest/gtest.h>

#include "data/lookup_table.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/form_fakes.h"
#include "host/login_form.h"
#include "host/search_dialog.h"
#include "host/shell_form.h"

namespace orvane::host {
namespace {

using fakes::Host;
using fakes::Press;
using fakes::Type;
using Names = std::vector<std::string>;

constexpr auto Code = Int16("Code", Key, "Код");
constexpr auto Name = String("Name", 40, Plain, "Име");
constexpr auto Chief = String("Chief", 10, Plain, "Началник");
constexpr auto AmendOn = Moment("AmendOn", Stamped, "Променен на");

class DialogsTest : public ::testing::Test {
 protected:
  DialogsTest() {
    host.LogIn();
    form = std::make_unique<TVosBaseForm>(host.Identity(), "TfDepartment", "Дирекции");
  }
  Host host;
  std::unique_ptr<TVosBaseForm> form;
  TVosClientDataSet cds{"cdsDepartment", {Code, Name, Chief, AmendOn}};
};

TEST_F(DialogsTest, TheRefusalMarkIsNeverShownAndOnlyYesIsYes) {
  VosMessageDlg(*form, 0, "Дирекции", "!!Err_Код 7 вече съществува.");
  EXPECT_EQ(host.toolkit.TakeMessage(), "Код 7 вече съществува.");
  host.toolkit.answers = {kAnswerYes, kAnswerNo, kAnswerOk};
  EXPECT_TRUE(Confirmed(*form, "Изтриване", _rDeleteText));
  EXPECT_FALSE(Confirmed(*form, "Изтриване", _rDeleteText));
  EXPECT_FALSE(Confirmed(*form, "Изтриване", _rDeleteText));
  EXPECT_TRUE(host.toolkit.messages[0].yesNo);
}

// --- changes that the server did not take ------------------------------------

TEST_F(DialogsTest, ARefusedChangeIsToldAndAnsweredByItsKind) {
  struct Row {
    ChangeKind kind;
    Failure failure;
    AfterRefusal after;
    ReconcileAction action;
    std::string_view message;
  };
  using enum ReconcileAction;
  const Failure refused = Refused("Код 7 вече съществува.");
  const Row rows[] = {
      {ChangeKind::Insert, refused, AfterRefusal::Correct, Correct, "Код 7 вече съществува."},
      {ChangeKind::Update, refused, AfterRefusal::Cancel, Cancel, "Код 7 вече съществува."},
      {ChangeKind::Delete, refused, AfterRefusal::Correct, Cancel, "Код 7 вече съществува."},
      {ChangeKind::Update,
       {FailureKind::NoRight, ""},
       AfterRefusal::Correct,
       Correct,
       "Нямате право за тази операция."},
      {ChangeKind::Update,
       {FailureKind::BadRequest, ""},
       AfterRefusal::Correct,
       Correct,
       "Сървърът не разбра заявката. Въведеното е запазено."},
      {ChangeKind::Insert,
       {FailureKind::Conflict, "Запис с този ключ вече има."},
       AfterRefusal::Correct,
       Correct,
       "Запис с този ключ вече има."},
      {ChangeKind::Update,
       {FailureKind::Conflict, "Ниво 2 вече е одобрено."},
       AfterRefusal::Cancel,
       Cancel,
       "Ниво 2 вече е одобрено."},
      {ChangeKind::Update,
       {FailureKind::LinkDown, "Няма връзка със сървъра."},
       AfterRefusal::Cancel,
       Abort,
       "Няма връзка със сървъра. Въведеното е запазено; опитайте отново."},
  };
  for (const Row& row : rows) {
    const ReconcileError error{row.kind, row.failure, {}, {}, {}, {}};
    EXPECT_EQ(HandleReconcileError(*form, cds, error, row.after), row.action) << row.message;
    EXPECT_EQ(host.toolkit.TakeMessage(), row.message);
  }
}

ReconcileError NameConflict() {
  return {ChangeKind::Update,
          {FailureKind::Conflict, "Записът е променен."},
          {{"Code", 7}, {"Name", "Механичен"}, {"Chief", "petrov"}, {"AmendOn", Variant()}},
          {{"Name", "Механичен цех"}, {"Chief", "ivanova"}, {"AmendOn", Stamp{1}}},
          {{"Code", 7}, {"Name", "Цех 1"}, {"Chief", "georgiev"}, {"AmendOn", Stamp{2}}},
          {}};
}

TEST_F(DialogsTest, AConflictShowsMineTheirsAndWasAndTheUserChooses) {
  struct Row {
    KeyStroke key;
    ReconcileAction action;
  };
  using enum ReconcileAction;
  const Row rows[] = {
      {KeyCode::F9, Merge},
      {KeyCode::F6, Correct},
      {KeyCode::F5, Refresh},
      {KeyCode::Escape, Correct},
  };
  for (const Row& row : rows) {
    host.toolkit.modals.push_back([&](TVosBaseForm& dialog) {
      const auto& grid = static_cast<TVosDBGrid&>(*dialog.FindControl("gDifferences"));
      const TVosClientDataSet& shown = grid.DataSet();
      ASSERT_EQ(shown.RecordCount(), 2U) << "what the server stamps is no difference";
      Names texts;
      for (const GridColumn& column : grid.columns)
        texts.push_back(shown.TextAt(0, shown.FieldByName(column.field)));
      EXPECT_EQ(texts, (Names{"Име", "Механичен цех", "Цех 1", "Механичен", "Не"}));
      Press(dialog, row.key);
      EXPECT_TRUE(dialog.IsClosed());
    });
    const ReconcileError error = NameConflict();
    EXPECT_EQ(HandleReconcileError(*form, cds, error), row.action);
    EXPECT_EQ(error.givenUp, row.action == Merge ? (Names{"Name", "Chief"}) : Names{})
        << "theirs stays until it is ticked";
  }
  EXPECT_TRUE(host.toolkit.messages.empty());
}

TEST_F(DialogsTest, AFieldThatIsTickedIsKept) {
  host.toolkit.modals.push_back([](TVosBaseForm& dialog) {
    Press(dialog, KeyCode::Down);
    Press(dialog, KeyCode::Space);
    Press(dialog, KeyCode::F9);
  });
  const ReconcileError error = NameConflict();
  EXPECT_EQ(HandleReconcileError(*form, cds, error), ReconcileAction::Merge);
  EXPECT_EQ(error.givenUp, Names{"Name"});
}

TEST_F(DialogsTest, AConflictSpeaksAsTheScreenDoes) {
  constexpr auto DocumentId = Int32("DocumentId", Key);
  constexpr auto Status = Byte("Status", Plain, "Статус");
  constexpr auto Quantity = Real("Quantity", Plain, "Количество");
  constexpr auto Size = Int32("Size");
  constexpr auto Remarks = String("Remarks", 40, Plain, "Бележки");
  constexpr auto Untitled = Int32("Untitled");
  TVosClientDataSet statuses{"statuses", {Code, Name}};
  const std::pair<int, const char*> names[] = {{2, "Въведен"}, {3, "За одобрение"}, {5, "Одобрен"}};
  for (const auto& [code, name] : names) {
    statuses.Append();
    statuses[Code].Set(code);
    statuses[Name].Set(name);
    statuses.Post();
  }
  TVosClientDataSet rows{"rows", {DocumentId, Status, Quantity, Size, Remarks, Untitled}};
  rows.AddLookup(String("lupStatus", 40, Joined), statuses, "Status", "Code", "Name");
  rows[Quantity].OnGetRowText = [](const RowReader& row) {
    const double boxes = *row("Quantity").AsDouble() / *row("Size").AsDouble();
    return std::to_string(static_cast<int>(boxes)) + " кутии";
  };
  TDataSource source{rows};
  TVosDBGrid grid{*form, "gRows", source};
  grid.columns = {{.field = "Untitled", .title = "Брой~листа"}};
  const ReconcileError error{
      ChangeKind::Update,
      {FailureKind::Conflict, "x"},
      {{"DocumentId", 17},
       {"Status", 2},
       {"Quantity", 24.0},
       {"Size", 12},
       {"Remarks", "а"},
       {"Untitled", 1}},
      {{"Status", 3}, {"Quantity", 36.0}, {"Size", 6}, {"Remarks", "б"}, {"Untitled", 2}},
      {{"DocumentId", 17},
       {"Status", 5},
       {"Quantity", 48.0},
       {"Size", 24},
       {"Remarks", "а"},
       {"Untitled", 3}},
      {}};
  std::vector<Names> shown;
  const auto read = [&](TVosBaseForm& dialog) {
    const auto& differences = static_cast<TVosDBGrid&>(*dialog.FindControl("gDifferences"));
    for (std::size_t row = 0; row < differences.DataSet().RecordCount(); ++row) {
      shown.emplace_back();
      for (std::string_view column : {"Label", "Mine", "Theirs", "Was"})
        shown.back().push_back(
            differences.DataSet().TextAt(row, differences.DataSet().FieldByName(column)));
    }
    Press(dialog, KeyCode::F9);
  };
  host.toolkit.modals.push_back(read);
  EXPECT_EQ(HandleReconcileError(*form, rows, error), ReconcileAction::Merge);
  EXPECT_EQ(shown, (std::vector<Names>{{"Статус", "За одобрение", "Одобрен", "Въведен"},
                                       {"Количество", "6 кутии", "2 кутии", "2 кутии"},
                                       {"Брой листа", "2", "3", "1"}}))
      << "what only one of them changed is no question";
  EXPECT_EQ(error.givenUp, (Names{"Status", "Quantity", "Untitled", "Size"}))
      << "what nobody sees follows the rest";
  ReconcileError gone = error;
  gone.present = {};
  EXPECT_EQ(HandleReconcileError(*form, rows, gone), ReconcileAction::Refresh);
  EXPECT_TRUE(host.toolkit.TakeMessage().starts_with("Записът вече е изтрит"));
  rows.OnNameRow = [](const RowReader& row) { return "Искане " + row("DocumentId").ToText(); };
  EXPECT_EQ(HandleReconcileError(*form, rows, gone), ReconcileAction::Refresh);
  EXPECT_TRUE(host.toolkit.TakeMessage().starts_with("Записът „Искане 17“ вече е изтрит"));
}

TEST_F(DialogsTest, AConflictWithNothingToChooseIsToldInASentence) {
  ReconcileError gone = NameConflict();
  gone.present = {};
  EXPECT_EQ(HandleReconcileError(*form, cds, gone), ReconcileAction::Refresh);
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Записът „Код 7“ вече е изтрит от друг потребител. Промяната Ви не може да се запише.");
  ReconcileError deleted = NameConflict();
  deleted.kind = ChangeKind::Delete;
  EXPECT_EQ(HandleReconcileError(*form, cds, deleted), ReconcileAction::Refresh);
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Записът „Код 7“ е променен от друг потребител и не беше изтрит. Прегледайте го и "
            "повторете изтриването, ако още е нужно.");
  deleted.changedBy = "Петър Петров";
  deleted.changedOn = TimeZone{}.At(*Date::FromYmd(2026, 3, 5), 9, 12);
  EXPECT_EQ(HandleReconcileError(*form, cds, deleted), ReconcileAction::Refresh);
  EXPECT_EQ(host.toolkit.TakeMessage(),
            "Записът „Код 7“ е променен от „Петър Петров“ на 05.03.2026 09:12 и не беше изтрит. "
            "Прегледайте го и повторете изтриването, ако още е нужно.");
  ReconcileError same = NameConflict();
  same.mine = {{"Name", "Цех 1"}};
  EXPECT_EQ(HandleReconcileError(*form, cds, same), ReconcileAction::Merge);
  EXPECT_TRUE(host.toolkit.messages.empty());
}

// --- searching ---------------------------------------------------------------

class SearchTest : public DialogsTest {
 protected:
  SearchTest() {
    spec.caption = "Търсене - Дирекции";
    spec.lines = {"SELECT d.Code, d.Name, Name2, Secret", "FROM Department d {$WN}", "{$W}",
                  "{$O}"};
    spec.fields = {
        {.name = "d.Code", .displayName = "Код"},
        {.name = "d.Name",
         .displayName = "Име",
         .visibility = Visibility::fvFirstLang,
         .allowPartSearch = true,
         .defaultPartSearch = true},
        {.name = "Name2",
         .displayName = "Име 2",
         .visibility = Visibility::fvSecondLang,
         .allowPartSearch = true,
         .defaultPartSearch = true,
         .defaultSearchPos = SearchPos::spAnywhere},
        {.name = "Secret", .displayName = "Скрито", .visibility = Visibility::fvHidden},
    };
    spec.columns = {Int16("Code"), String("Name", 40), String("Name2", 40), Int32("Secret")};
  }

  DataPacket Rows(int count, std::string continuation = "") {
    DataPacket packet;
    packet.AddColumn("Code", ValueKind::Int16).AddColumn("Name", ValueKind::String, 40);
    packet.AddColumn("Secret", ValueKind::Int32);
    for (int i = 1; i <= count; ++i)
      packet.AppendRow(VariantArray{i, "Цех " + std::to_string(i), 100 + i});
    packet.continuation = std::move(continuation);
    return packet;
  }

  std::optional<NamedValues> Run(std::function<void(TVosBaseForm&)> play) {
    host.toolkit.modals.push_back(std::move(play));
    return RunSearchDialog(*form, spec);
  }

  const FetchRequest& LastFetch() const { return host.server.fetches.back(); }

  SearchSpec spec;
};

TVosDataInspector& Conditions(TVosBaseForm& dialog) {
  return static_cast<TVosDataInspector&>(*dialog.FindControl("diConditions"));
}
TVosDBGrid& Result(TVosBaseForm& dialog) {
  return static_cast<TVosDBGrid&>(*dialog.FindControl("gResult"));
}

TEST_F(SearchTest, TypingAConditionAndEnterTwiceChoosesTheFirstRow) {
  host.server.packets = {Rows(3)};
  spec.startField = "Name";
  const auto row = Run([&](TVosBaseForm& dialog) {
    EXPECT_EQ(dialog.caption, "Търсене - Дирекции");
    EXPECT_EQ(Conditions(dialog).CurrentField().Name(), "Name");
    EXPECT_TRUE(host.server.fetches.empty()) << "nothing is fetched before it is asked for";
    Type(dialog, "Це");
    Press(dialog, KeyCode::Enter);
    EXPECT_EQ(dialog.ActiveControl(), &Result(dialog));
    EXPECT_EQ(dialog.DuplicateLiveKeys(), Names{});
    Press(dialog, KeyCode::Enter);
    EXPECT_TRUE(dialog.IsClosed());
  });
  ASSERT_EQ(host.server.fetches.size(), 1U);
  EXPECT_EQ(LastFetch().provider, "dspSQL");
  EXPECT_EQ(LastFetch().rowLimit, 80);
  EXPECT_NE(LastFetch().sql.find("WHERE"), std::string::npos) << LastFetch().sql;
  EXPECT_NE(LastFetch().sql.find("ORDER BY d.Name"), std::string::npos) << LastFetch().sql;
  ASSERT_TRUE(row.has_value());
  EXPECT_EQ(*FindValue(*row, "Code"), Variant(1));
  EXPECT_EQ(*FindValue(*row, "Secret"), Variant(101)) << "hidden fields come with the row";
}

TEST_F(SearchTest, FieldsAreOfferedByTheLanguageOfTheScreen) {
  struct Row {
    bool multi, first;
    Names offered;
  };
  const Row rows[] = {{false, true, {"Code", "Name"}},
                      {true, true, {"Code", "Name"}},
                      {true, false, {"Code", "Name2"}}};
  for (const Row& row : rows) {
    host.server.session.languageNames =
        row.multi ? Names{"Български", "English"} : Names{"Български"};
    host.server.session.userLanguage = row.first ? 1 : 2;
    host.LogIn();
    if (form->FirstLanguage() != row.first) form->SwitchLanguage();
    Run([&](TVosBaseForm& dialog) {
      Names columns, items;
      for (const GridColumn& column : Result(dialog).columns)
        columns.push_back(column.field);
      for (const InspectorItem& item : Conditions(dialog).items)
        items.push_back(item.field);
      EXPECT_EQ(columns, row.offered);
      EXPECT_EQ(items, row.offered);
    });
  }
}

TEST_F(SearchTest, TheWayOfSearchingIsSeenAndChosenForTextsOnly) {
  spec.startField = "Name";
  spec.partial = true;
  host.server.packets = {Rows(0)};
  Run([&](TVosBaseForm& dialog) {
    TVosDataInspector& conditions = Conditions(dialog);
    EXPECT_EQ(conditions.NameText(1), "съдържа");
    Press(dialog, Ctrl(KeyCode::Digit1));
    EXPECT_EQ(conditions.NameText(1), "започва с");
    Press(dialog, Ctrl(KeyCode::Digit3));
    EXPECT_EQ(conditions.NameText(1), "съвпада");
    Type(dialog, "цех");
    Press(dialog, Ctrl(KeyCode::Digit2));
    Press(dialog, KeyCode::F9);
    EXPECT_EQ(dialog.ActiveControl(), &conditions) << "nothing found: the condition is typed on";
    dialog.RunInGate([&] { conditions.FocusField("Code"); });
    EXPECT_FALSE(dialog.FindAction("acContains")->enabled) << "a number has no parts";
  });
  const auto text = [&] {
    std::string all;
    for (const NamedValue& value : LastFetch().params)
      all += value.value.ToText() + ";";
    return all;
  };
  EXPECT_NE(text().find("цех"), std::string::npos) << text();
}

TEST_F(SearchTest, AStartTextIsSearchedAtOnceAndLeavingChoosesNothing) {
  spec.startField = "Code";
  spec.startText = "7";
  host.server.packets = {Rows(80, "after 80"), Rows(2)};
  const auto row = Run([&](TVosBaseForm& dialog) {
    EXPECT_EQ(host.server.fetches.size(), 1U);
    dialog.Dispatch(EndNeared{&Result(dialog)});
    EXPECT_EQ(host.server.fetches.size(), 2U);
    EXPECT_EQ(LastFetch().continuation, "after 80");
    EXPECT_EQ(Result(dialog).DataSet().RecordCount(), 82U);
    Press(dialog, KeyCode::Escape);
    EXPECT_TRUE(dialog.IsClosed());
  });
  EXPECT_FALSE(row.has_value());
}

TEST_F(SearchTest, WhatCannotBeReadAsANumberIsToldAndNothingIsSent) {
  spec.startField = "Code";
  Run([&](TVosBaseForm& dialog) {
    Type(dialog, "седем");
    Press(dialog, KeyCode::F9);
    EXPECT_EQ(host.toolkit.messages.size(), 1U);
    EXPECT_FALSE(dialog.IsClosed());
  });
  EXPECT_TRUE(host.server.fetches.empty());
}

TEST_F(SearchTest, AServerThatRefusesTheSearchLeavesTheConditions) {
  host.server.packets = {Failure{FailureKind::Refused, "!!Err_Търсенето продължи твърде дълго."}};
  spec.startField = "Name";
  Run([&](TVosBaseForm& dialog) {
    Type(dialog, "а");
    Press(dialog, KeyCode::Enter);
    EXPECT_EQ(host.toolkit.TakeMessage(), "Търсенето продължи твърде дълго.");
    EXPECT_EQ(Conditions(dialog).DataSet().FieldByName("Name").AsString(), "а");
    EXPECT_FALSE(dialog.IsClosed());
  });
}

TEST(SearchOf, ALookupGivesItsTemplateParametersAndColumns) {
  TVosClientDataSet rows("cdsUsers", {Code, Name});
  rows.AddLookup(Chief, rows, "Code", "Code", "Name");
  TLookupTable table(rows, "Code");
  table.SetTemplate({"SELECT 1"});
  table.SetParam("Supplier", 5);
  const SearchSpec spec = SearchOf(table);
  EXPECT_EQ(spec.lines, Names{"SELECT 1"});
  EXPECT_EQ(spec.params, (NamedValues{{"Supplier", 5}}));
  EXPECT_EQ(spec.columns.size(), 2U) << "lookup fields are no columns";
}

// --- logging in, the menu ----------------------------------------------------

TEST(Login, AWrongPasswordKeepsTheTypingAndTheDialog) {
  Host host;
  host.toolkit.modals.push_back([&](TVosBaseForm& dialog) {
    auto& inspector = static_cast<TVosDataInspector&>(*dialog.FindControl("diLogin"));
    Type(dialog, "ivanova");
    Press(dialog, KeyCode::Enter);
    EXPECT_EQ(inspector.CurrentField().Name(), "Password") << "the password is still missing";
    EXPECT_TRUE(host.server.logins.empty());
    Type(dialog, "грешна");
    Press(dialog, KeyCode::Enter);
    EXPECT_EQ(host.toolkit.TakeMessage(), "Грешен потребител или парола.");
    EXPECT_FALSE(dialog.IsClosed());
    EXPECT_EQ(inspector.DataSet().FieldByName("Login").AsString(), "ivanova");
    EXPECT_EQ(inspector.CurrentField().Name(), "Password");
    Type(dialog, host.server.password);
    Press(dialog, KeyCode::F9);
    EXPECT_TRUE(dialog.IsClosed());
  });
  EXPECT_TRUE(RunLogin(host.app));
  EXPECT_EQ(host.app.UserName(), "ivanova");
}

TEST(Login, ADemonstrationUserIsPickedFromTheList) {
  Host host;
  host.server.greeting.demonstrationUsers = {{"ivanova", host.server.password, "заявител"},
                                             {"petrov", host.server.password, "ръководител"}};
  host.toolkit.modals.push_back([&](TVosBaseForm& dialog) {
    dialog.Dispatch(Pointed{dialog.FindControl("gUsers"), 1, 0, false});
    Press(dialog, KeyCode::Enter);
  });
  EXPECT_TRUE(RunLogin(host.app));
  EXPECT_EQ(host.app.UserName(), "petrov");
}

TEST(Login, GivingUpOrNoServerIsNoLogin) {
  Host host;
  host.toolkit.modals.push_back([](TVosBaseForm& dialog) {
    EXPECT_FALSE(dialog.FindControl("gUsers")->visible);
    Press(dialog, KeyCode::Escape);
  });
  EXPECT_FALSE(RunLogin(host.app));
  EXPECT_FALSE(host.app.IsLoggedIn());

  const Failure down{FailureKind::LinkDown, "Няма връзка със сървъра 127.0.0.1:8011."};
  host.server.greetFailures = {down, down};
  host.toolkit.answers = {kAnswerYes, kAnswerNo};
  EXPECT_FALSE(RunLogin(host.app));
  EXPECT_TRUE(host.server.greetFailures.empty());
  ASSERT_EQ(host.toolkit.messages.size(), 2U);
  EXPECT_EQ(host.toolkit.messages[1].text,
            "Няма връзка със сървъра 127.0.0.1:8011. Желаете ли нов опит?");
}

class MenuScreen : public TVosBaseForm {
 public:
  explicit MenuScreen(const FormIdentity& identity)
      : TVosBaseForm(identity, "TfDepartment", "Дирекции") {}
  void OnClose() override {
    if (busy) Refuse("Има какво да се довърши.");
  }
  static inline bool busy = false;
};

TEST(Shell, TheMenuShowsWhatMayBeOpenedOpensItAndClosesEverything) {
  Host host;
  host.app.AddPoints(kOrvaneModuleNo, kPoints);
  host.app.classes.Register("TfDepartment",
                            [](const FormIdentity& identity) -> std::unique_ptr<TVosBaseForm> {
                              return std::make_unique<MenuScreen>(identity);
                            });
  host.LogIn();
  TfVosShell shell(host.app);
  shell.BeShown();
  const auto& grid = static_cast<TVosDBGrid&>(*shell.FindControl("gPoints"));
  EXPECT_EQ(grid.DataSet().RecordCount(), 2U) << "two points hold the right to open";
  Press(shell, KeyCode::Enter);
  ASSERT_EQ(host.app.OpenForms().size(), 1U);
  MenuScreen::busy = true;
  Press(shell, Alt(KeyCode::F4));
  EXPECT_FALSE(shell.IsClosed());
  MenuScreen::busy = false;
  Press(shell, Alt(KeyCode::F4));
  EXPECT_TRUE(shell.IsClosed());
  EXPECT_TRUE(host.app.OpenForms()[0]->IsClosed());
}

}  // namespace
}  // namespace orvane::host
