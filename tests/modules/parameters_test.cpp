// Module parameters through their real screen and the real server: one write for each that changed,
// and what another open screen knows of it.

#include <gtest/gtest.h>

#include "host/controls/inspector.h"
#include "host/walk/scripted_toolkit.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "support/test_server.h"

namespace orvane::modules {
namespace {

class Screen {
 public:
  Screen(TestServer& server, const std::string& login)
      : app_(server.Server(), toolkit_, server.Time()) {
    EXPECT_TRUE(app_.LogIn(login, TestServer::PasswordOf(login)));
    RegisterOrvaneModule(app_);
    main_ = StartOrvaneModule(app_);
    app_.OpenPoint("Parameters");
  }

  TVosBaseForm& Form() { return *toolkit_.ActiveForm(app_); }
  TVosDataInspector& Inspector() {
    return dynamic_cast<TVosDataInspector&>(*Form().FindControl("di"));
  }
  std::string Text(std::string_view field) {
    return Inspector().DataSet().FieldByName(field).Text();
  }
  void Type(std::string_view field, std::string_view text) {
    Inspector().FocusField(field);
    toolkit_.TypeText(Form(), text);
    toolkit_.Press(Form(), KeyCode::Enter);
  }
  /// Presses F9 and answers how many calls went to the server.
  std::int64_t Save() {
    const std::int64_t before = app_.Session().calls;
    toolkit_.Press(Form(), KeyCode::F9);
    return app_.Session().calls - before;
  }
  VosApplication& App() { return app_; }
  ScriptedToolkit& Toolkit() { return toolkit_; }

 private:
  ScriptedToolkit toolkit_;
  VosApplication app_;
  std::unique_ptr<TfOrvaneMain> main_;
};

class ParametersScreen : public testing::Test {
 protected:
  ParametersScreen() : server(Engine::Sqlite) {
    server.AddUser("ivanova");
    server.AddUser("petrov");
    server.SetParam(11, 9, "5");
    server.SetParam(11, 8, "");
    server.SetParam(11, 16, "не е число");
  }

  TestServer server;
};

TEST_F(ParametersScreen, WritesEachChangedParameterOnceAndNoOther) {
  Screen screen(server, "ivanova");
  EXPECT_EQ(screen.Text("cpMaxTermOfPayment"), "") << "an empty text is no 0";
  EXPECT_EQ(screen.Text("cpLastNumIniEval"), "");
  EXPECT_EQ(screen.Save(), 0) << "nothing is in edit";
  screen.Type("cpPOTolerance", "7,25");
  screen.Type("cpMinPointsIniEval", "60");
  screen.Type("cpMaxTermOfPayment", "30");
  screen.Type("cpMinPointsIniEval", "");
  EXPECT_EQ(screen.Save(), 3);
  const auto stored = [&](int number) {
    return server.Value("select Value from Params where ParamGroup = 11 and Number = ?1",
                        ValueKind::String, {number});
  };
  EXPECT_EQ(stored(9), Variant("7,25")) << "with the client's decimal mark";
  EXPECT_EQ(stored(8), Variant("30"));
  EXPECT_EQ(stored(16), Variant("не е число")) << "what was not touched is not written";
  screen.Type("cpPOTolerance", "8");
  screen.Type("cpPOTolerance", "7,25");
  EXPECT_EQ(screen.Save(), 0) << "it is what the store holds";
}

TEST_F(ParametersScreen, WhatASessionStoresItsScreensReadAtOnce) {
  Screen screen(server, "ivanova");
  screen.Type("cpPOTolerance", "6");
  EXPECT_EQ(screen.Save(), 1);
  EXPECT_EQ(screen.App().GetParam(11, 1, 11, 9), Variant("6"));
}

TEST_F(ParametersScreen, ARefusedParameterLosesNothing) {
  Screen first(server, "ivanova");
  Screen second(server, "petrov");
  second.Type("cpPOTolerance", "6");
  EXPECT_EQ(second.Save(), 1);
  first.Type("cpMaxTermOfPayment", "10");
  first.Type("cpPOTolerance", "7");
  EXPECT_EQ(first.Save(), 3) << "the term, the refusal, what the store holds";
  const std::vector<MessageDialog> messages = first.Toolkit().TakeMessages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_NE(messages[0].text.find("вече е „6“"), std::string::npos) << messages[0].text;
  EXPECT_EQ(first.Text("cpPOTolerance"), "7,00");
  EXPECT_EQ(first.Text("cpMaxTermOfPayment"), "10");
  EXPECT_EQ(first.Save(), 1) << "stored over what was told";
}

}  // namespace
}  // namespace orvane::modules
