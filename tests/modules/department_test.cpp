// The register of departments through its real screen and the real server, in-process: what rights,
// languages and states do to it. The whole road is walked in walks/departments.walk.

#include <gtest/gtest.h>

#include "modules/user_screen.h"

namespace orvane::modules {
namespace {

constexpr int kNothing = 0;

class Screen : public UserScreen {
 public:
  explicit Screen(TestServer& server, const std::string& login = "ivanova")
      : UserScreen(server, "Departments", login) {}
  TVosDBGrid& Grid() { return UserScreen::Grid("gDepartment"); }
  TVosClientDataSet& Rows() { return Grid().DataSet(); }
  std::string Live() {
    return UserScreen::Live({"acDelete", "acPrint", "acCancel", "acSearchByCode"});
  }
  std::string Columns() { return UserScreen::Columns("gDepartment"); }
};

void AddDepartment(TestServer& server, int code, const std::string& name) {
  server.Execute({"insert into Department (Code, Name, FoldName, Chief) values (?1, ?2, ?3, ?4)",
                  {code, name, name, "ivanova"},
                  {}});
}

TEST(DepartmentScreen, ShowsTheColumnsOfTheInstallationsLanguages) {
  TestServer one(Engine::Sqlite);
  one.AddUser("ivanova");
  EXPECT_EQ(Screen(one).Columns(), "Code Name Chief ChiefName");

  TestServer two(Engine::Sqlite);
  two.UseTwoLanguages();
  two.AddUser("ivanova");
  Screen screen(two);
  EXPECT_EQ(screen.Columns(), "Code Name Name2 Chief ChiefName2");
  const std::string first = "Име (" + screen.App().LanguageName(1) + ")";
  const std::string second = "Име (" + screen.App().LanguageName(2) + ")";
  EXPECT_EQ(screen.Grid().FindColumn("Name")->title, first);
  EXPECT_EQ(screen.Grid().FindColumn("Name2")->title, second);
  EXPECT_EQ(screen.Grid().FindColumn("ChiefName2")->title, second);
}

TEST(DepartmentScreen, OffersWhatTheRightsAllow) {
  struct Case {
    int rights;
    const char* browsing;
    bool mayInsert;
    const char* inserting;  ///< with the cell of the chief current
  };
  const Case cases[] = {
      {1, "acPrint", false, ""},
      {1 | 2, "acPrint acCancel", false, ""},
      {1 | 8, "acDelete acPrint", false, ""},
      {1 | 4, "acPrint", true, "acCancel acSearchByCode"},
      {15, "acDelete acPrint acCancel", true, "acCancel acSearchByCode"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.rights);
    TestServer server(Engine::Sqlite);
    server.AddUser("ivanova", row.rights);
    AddDepartment(server, 1, "първа");
    Screen screen(server);
    EXPECT_EQ(screen.Live(), row.browsing);
    EXPECT_TRUE(screen.Form()->DuplicateLiveKeys().empty());
    screen.Press(KeyCode::Down);
    EXPECT_EQ(screen.Rows().State() == DataSetState::Insert, row.mayInsert);
    if (!row.mayInsert) continue;
    screen.Grid().FocusField("Chief");
    screen.Form()->RefreshActions();
    EXPECT_EQ(screen.Live(), row.inserting);
  }
}

TEST(DepartmentScreen, DeletingAnEmptyRegisterAsksNothing) {
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova");
  Screen screen(server);
  const std::int64_t calls = screen.App().Session().calls;
  screen.Press(KeyCode::F5);
  EXPECT_TRUE(screen.Toolkit().TakeMessages().empty());
  EXPECT_EQ(screen.App().Session().calls, calls + kNothing);
}

TEST(ModuleStart, KnowsTheCurrentEmployeeAndRefusesTwo) {
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova");
  server.AddUser("admin", kAllRights, 0);
  server.AddUser("dvama");
  server.AddEmployee(900, "dvama");

  EXPECT_EQ(Screen(server, "ivanova").App().vCurrentEmployee, Variant(100));
  EXPECT_TRUE(Screen(server, "admin").App().vCurrentEmployee.IsNull());

  Screen two(server, "dvama");
  EXPECT_FALSE(two.HasModule());
  const std::vector<MessageDialog> messages = two.Toolkit().TakeMessages();
  ASSERT_FALSE(messages.empty());
  EXPECT_EQ(messages.front().caption, "Управление на покупките");
  EXPECT_EQ(messages.front().text,
            "За потребител 'dvama' съществуват повече от един запис в таблица 'Служители'");
}

TEST(ModuleStart, OpensTheLevelsPointForTheQuestionOnly) {
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova", kNothing);
  server.AddUser("dvama", kNothing);
  server.AddEmployee(900, "dvama");
  for (const char* login : {"ivanova", "dvama"}) {
    Screen screen(server, login);
    EXPECT_EQ(screen.App().FindPoint("LevelsApproval")->access, TPointAccess());
  }
}

TEST(ModuleStart, ABrokenLinkIsToldAndTriedAgainWhileTheUserWants) {
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova");
  FaultyDoor door(server.Server());
  ScriptedToolkit toolkit;
  VosApplication app(door, toolkit, server.Time());
  RegisterOrvaneModule(app);
  ASSERT_TRUE(app.LogIn("ivanova", TestServer::PasswordOf("ivanova")));
  door.Stop();
  EXPECT_EQ(StartOrvaneModule(app), nullptr);
  const std::vector<MessageDialog> messages = toolkit.TakeMessages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages.front().caption, "Управление на покупките");
  EXPECT_EQ(messages.front().text, "Няма връзка със сървъра. Желаете ли нов опит?");
  door.Start();
  toolkit.answerWithoutWalk = kAnswerYes;
  for (int call = 1; call <= 3; ++call) {
    door.BreakCall(call, LinkBreak::AfterCall);
    EXPECT_NE(StartOrvaneModule(app), nullptr) << call;
    for (const MessageDialog& message : toolkit.TakeMessages())
      EXPECT_EQ(message.text, "Отговорът на сървъра не дойде докрай. Желаете ли нов опит?");
  }
}

TEST(ModuleStart, RegistersEveryScreenClassInOrder) {
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova");
  Screen screen(server);
  const std::vector<std::string> expected = {"TfOrvaneMain",
                                             "TfDepartment",
                                             "TfKindSupplies",
                                             "TfEmployeesFinSupp",
                                             "TfOrvaneParameters",
                                             "TfStructure",
                                             "TfStructureDeputies",
                                             "TfLevelsApproval",
                                             "TfCapExPlan",
                                             "TfDeliveries",
                                             "TfSuppManifacOrder",
                                             "TfAdmissibleNotifiers",
                                             "TfSuppliesContracts",
                                             "TfPurchaseOrder",
                                             "TfRegisterSuppInvoice",
                                             "TfPurchaseOrderReport",
                                             "TfSuppDocConfirm",
                                             "TfQuestionInitEvalMap",
                                             "TfInitialEvaluationMap",
                                             "TfPeriodEvaluationMap",
                                             "TfCriteriaEvalSupp",
                                             "TfEvalCommitteeSupp",
                                             "TfSuppManifacOrderReport"};
  EXPECT_EQ(screen.App().classes.Names(), expected);
  for (ModuleEntry& sibling : screen.App().modules)
    EXPECT_NE(sibling.libraryHandle, 0);
}

}  // namespace
}  // namespace orvane::modules
