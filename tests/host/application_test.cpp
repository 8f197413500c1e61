// The application object: rights, languages, parameters, opening and freeing of screens.
#include "host/application.h"

#include <gtest/gtest.h>

#include "contract/points.h"
#include "data/abort.h"
#include "host/form_fakes.h"

namespace orvane::host {
namespace {

using fakes::Host;

int made = 0;
bool aborts = false;

class Screen : public TVosBaseForm {
 public:
  explicit Screen(const FormIdentity& identity)
      : TVosBaseForm(identity, "TfDepartment", "Дирекции") {
    if (aborts) Refuse("Липсва информация за Вас.");
    ++made;
  }
  bool HasUnsavedTyping() const override { return unsaved; }
  bool unsaved = false;
};

std::unique_ptr<TVosBaseForm> MakeScreen(const FormIdentity& identity) {
  return std::make_unique<Screen>(identity);
}

class ApplicationTest : public ::testing::Test {
 protected:
  ApplicationTest() {
    made = 0;
    aborts = false;
    host.app.AddPoints(kOrvaneModuleNo, kPoints);
    host.app.classes.Register("TfDepartment", &MakeScreen);
    host.app.classes.Register("TfKindSupplies", nullptr);
    host.LogIn();
  }
  Variant Param(int group, int number) { return host.app.GetParam(11, 1, group, number); }

  Host host;
};

TEST_F(ApplicationTest, LoggingInTakesRightsLanguageAndCompanyDay) {
  EXPECT_EQ(host.app.FindPoint("Departments")->access, TPointAccess::FromBits(15));
  EXPECT_EQ(host.app.FindPoint(2)->access, TPointAccess(paOpen));
  EXPECT_EQ(host.app.FindPoint("Structure")->access, TPointAccess());
  EXPECT_EQ(host.app.Today().ToText(), "05.03.2026");
  EXPECT_EQ(host.app.UserLanguage(), 1);
  host.server.session.userLanguage = 2;
  host.LogIn();
  EXPECT_EQ(host.app.UserLanguage(), 2);
  EXPECT_EQ(host.app.LanguageName(2), "English");
  EXPECT_EQ(host.app.LanguageName(3), "");
  host.server.session.languageNames = {"Български"};
  host.LogIn();
  EXPECT_TRUE(host.app.AppNotMultiLang());
  EXPECT_EQ(host.app.UserLanguage(), 1) << "there is no second language to work in";
}

TEST_F(ApplicationTest, AWrongPasswordLeavesTheSessionAsItWas) {
  EXPECT_FALSE(host.app.LogIn("petrov", "друга").Ok());
  EXPECT_EQ(host.app.UserName(), "ivanova");
  host.app.LogOut();
  EXPECT_FALSE(host.app.IsLoggedIn());
  EXPECT_EQ(host.app.FindPoint("Departments")->access, TPointAccess());
  host.app.LogOut();
  EXPECT_EQ(host.server.logOuts, 1);
}

TEST_F(ApplicationTest, LoggingInAgainKeepsTheLanguagesOfScreensAndTakesTheRights) {
  TVosBaseForm& screen = *host.app.OpenPoint("Departments", 2);
  host.server.session.points = {{1, 1}};
  ASSERT_TRUE(host.app.LogInAgain(host.server.password).Ok());
  EXPECT_EQ(screen.GetLanguageNumber(), 2);
  EXPECT_EQ(host.app.FindPoint("Departments")->access, TPointAccess(paOpen));
}

TEST_F(ApplicationTest, ParametersOfAGroupComeWithOneCallUntilRefreshed) {
  host.server.onCall = [](const MethodCall& call) -> Answer<VariantArray> {
    EXPECT_EQ(call.serverClass, "TsmParameters");
    EXPECT_EQ(call.method, "GetParams");
    const auto pair = [](int number, const char* text) {
      return Variant(VariantArray{Variant(number), Variant(text)});
    };
    const VariantArray pairs = call.arguments[0] == Variant(1)
                                   ? VariantArray(1, pair(3, "2"))
                                   : VariantArray{pair(1, "5"), pair(9, "0,5"), pair(2, "  ")};
    return VariantArray(1, Variant(pairs));
  };
  EXPECT_EQ(Param(11, 1), Variant("5"));
  EXPECT_EQ(Param(11, 9), Variant("0,5"));
  EXPECT_TRUE(Param(11, 2).IsNull()) << "blanks are no value";
  EXPECT_TRUE(Param(11, 19).IsNull());
  EXPECT_EQ(host.server.methodCalls.size(), 1U);
  EXPECT_EQ(Param(1, 3), Variant("2"));
  EXPECT_EQ(host.server.methodCalls.size(), 2U);
  host.app.RefreshParams(11, 1, 11);
  Param(11, 1);
  EXPECT_EQ(host.server.methodCalls.size(), 3U);
}

TEST_F(ApplicationTest, WhatOthersStoreIsSeenAfterAMinute) {
  std::string stored = "5";
  bool broken = false;
  host.server.onCall = [&](const MethodCall&) -> Answer<VariantArray> {
    if (broken) return Failure{FailureKind::LinkDown, "Няма връзка."};
    return VariantArray(1, Variant(VariantArray(1, Variant(VariantArray{Variant(9), stored}))));
  };
  EXPECT_EQ(Param(11, 9), Variant("5"));
  stored = "6";
  host.clock.Set({host.clock.Now().micros + 59'000'000});
  EXPECT_EQ(Param(11, 9), Variant("5"));
  host.clock.Set({host.clock.Now().micros + 1'000'000});
  EXPECT_EQ(Param(11, 9), Variant("6"));
  broken = true;
  host.clock.Set({host.clock.Now().micros + 60'000'000});
  EXPECT_EQ(Param(11, 9), Variant("6")) << "what is kept stays in use";
}

TEST_F(ApplicationTest, SettingAParameterIsOneCallAndIsReadBackWithoutAnother) {
  host.server.onCall = [](const MethodCall&) -> Answer<VariantArray> {
    return VariantArray(1, Variant(VariantArray()));
  };
  Param(11, 1);
  host.server.methodCalls.clear();
  host.app.SetParam(11, 4, 11, 8, Variant(30));
  ASSERT_EQ(host.server.methodCalls.size(), 1U);
  EXPECT_EQ(host.server.methodCalls[0].method, "SetParam");
  EXPECT_EQ(host.server.methodCalls[0].arguments,
            (VariantArray{Variant(11), Variant(8), Variant("30"), Variant()}));
  EXPECT_EQ(Param(11, 8), Variant("30"));
  host.app.SetParam(11, 4, 11, 8, Variant());
  EXPECT_TRUE(host.server.methodCalls[1].arguments[2].IsNull());
  EXPECT_EQ(host.server.methodCalls[1].arguments[3], Variant("30")) << "what was seen goes along";
  EXPECT_TRUE(Param(11, 8).IsNull());
  host.server.onCall = [](const MethodCall&) -> Answer<VariantArray> {
    return Failure{FailureKind::NoRight, "Нямате право да променяте параметри."};
  };
  EXPECT_THROW(host.app.SetParam(11, 4, 11, 8, Variant(45)), ServerError);
  EXPECT_TRUE(Param(11, 8).IsNull()) << "what was refused is not shown";
}

TEST_F(ApplicationTest, AScreenOpensOnlyWithTheRightAndOnlyWhenThereIsOne) {
  struct Row {
    std::string_view point;
    std::string_view message;
    bool opens;
  };
  const Row rows[] = {
      {"Departments", "0 messages", true},
      {"KindSupplies", "Екранът „Видове покупки“ още не е наличен.", false},
      {"Structure", "Нямате право да отворите „Организационна структура“.", false},
      {"Nowhere", "Няма точка „Nowhere“.", false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(host.app.OpenPoint(row.point) != nullptr, row.opens) << row.point;
    EXPECT_EQ(host.toolkit.TakeMessage(), row.message);
  }
  EXPECT_EQ(host.app.CreateVosForm(nullptr, "TfCostCenters", 11, 1, nullptr), nullptr);
  EXPECT_EQ(host.toolkit.TakeMessage(), "Този екран още не е наличен.");
  ASSERT_EQ(host.app.OpenForms().size(), 1U);
  const TVosBaseForm& form = *host.app.OpenForms()[0];
  EXPECT_EQ(form.Access(), TPointAccess::FromBits(15));
  EXPECT_EQ(form.ModuleNo(), kOrvaneModuleNo);
  EXPECT_EQ(form.PointNo(), 1);
}

TEST_F(ApplicationTest, APointThatIsOpenComesToTheFrontInsteadOfOpeningTwice) {
  EXPECT_TRUE(host.app.OpenPoint("Departments"));
  EXPECT_TRUE(host.app.OpenScreen("TfDepartment"));
  EXPECT_EQ(made, 1);
  EXPECT_EQ(host.toolkit.shown.size(), 2U);
  host.app.OpenForms()[0]->Dispatch(CloseWanted());
  EXPECT_TRUE(host.app.OpenPoint("Departments"));
  EXPECT_EQ(made, 2);
  host.app.FreeClosedForms();
  EXPECT_EQ(host.app.OpenForms().size(), 1U);
}

TEST_F(ApplicationTest, AScreenThatRefusesToBeMadeLeavesNothingBehind) {
  aborts = true;
  EXPECT_FALSE(host.app.OpenPoint("Departments"));
  EXPECT_EQ(host.toolkit.TakeMessage(), "Липсва информация за Вас.");
  EXPECT_TRUE(host.app.OpenForms().empty());
  EXPECT_TRUE(host.app.LivingForms().empty());
  EXPECT_THROW(host.app.CreateVosForm(nullptr, "TfDepartment", 11, 1, nullptr), Abort);
}

TEST_F(ApplicationTest, AClosedFormIsNotFreedInsideItsOwnEvent) {
  host.app.OpenPoint("Departments");
  TVosBaseForm& form = *host.app.OpenForms()[0];
  form.RunInGate([&] {
    form.Close();
    host.app.FreeClosedForms();
    EXPECT_EQ(host.app.OpenForms().size(), 1U);
  });
  host.app.FreeClosedForms();
  EXPECT_TRUE(host.app.OpenForms().empty());
}

TEST_F(ApplicationTest, ClosingEverythingStopsAtTheFirstThatRefuses) {
  host.app.OpenPoint("Departments");
  auto& form = static_cast<Screen&>(*host.app.OpenForms()[0]);
  form.unsaved = true;
  EXPECT_FALSE(host.app.CloseForms());
  EXPECT_FALSE(form.IsClosed());
  form.unsaved = false;
  EXPECT_TRUE(host.app.CloseForms());
}

TEST_F(ApplicationTest, ConnectionInfoIsTextNumberAndThreeTexts) {
  host.app.program = {"1.2", "PC-7", 70000, ""};
  EXPECT_EQ(host.app.ConnectionInfo(),
            (VariantArray{"s1", 70000 & 0x7FFF, "ivanova", "PC-7", "1.2"}));
}

TEST_F(ApplicationTest, AClassRegisteredAgainKeepsItsPlace) {
  host.app.classes.Register("TfKindSupplies", &MakeScreen);
  EXPECT_EQ(host.app.classes.Names(), (std::vector<std::string>{"TfDepartment", "TfKindSupplies"}));
  EXPECT_NE(host.app.classes.Find("TfKindSupplies"), nullptr);
  EXPECT_EQ(host.app.classes.Find("TfNone"), nullptr);
}

}  // namespace
}  // namespace orvane::host
