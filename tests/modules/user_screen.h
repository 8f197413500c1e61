#pragma once

// One user on one screen of the module, on the real server in-process.

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>

#include "host/controls/grid.h"
#include "host/walk/scripted_toolkit.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "support/test_server.h"

namespace orvane::modules {

class UserScreen {
 public:
  UserScreen(TestServer& server, std::string_view point, const std::string& login = "ivanova")
      : app_(server.Server(), toolkit_, server.Time()) {
    EXPECT_TRUE(app_.LogIn(login, TestServer::PasswordOf(login)));
    RegisterOrvaneModule(app_);
    main_ = StartOrvaneModule(app_);
    app_.OpenPoint(point);
  }

  TVosBaseForm* Form() { return toolkit_.ActiveForm(app_); }
  TVosDBGrid& Grid(std::string_view name) {
    return dynamic_cast<TVosDBGrid&>(*Form()->FindControl(name));
  }
  VosApplication& App() { return app_; }
  ScriptedToolkit& Toolkit() { return toolkit_; }
  bool HasModule() const { return main_ != nullptr; }

  std::string Columns(std::string_view grid) {
    std::string names;
    for (const GridColumn& column : Grid(grid).columns)
      names.append(names.empty() ? "" : " ").append(column.field);
    return names;
  }
  /// Names of the live actions of the list, in its order, parted by blanks.
  std::string Live(std::initializer_list<const char*> of) {
    std::string names;
    for (const char* name : of) {
      if (Form()->FindAction(name)->enabled) names.append(names.empty() ? "" : " ").append(name);
    }
    return names;
  }
  void Press(KeyStroke key) { toolkit_.Press(*Form(), key); }
  void GoTo(std::string_view grid, std::string_view field) {
    Form()->RunInGate([&] { Grid(grid).FocusField(field); });
  }
  /// Texts of the messages shown since the last question, parted by " | ".
  std::string Messages() {
    std::string texts;
    for (const MessageDialog& message : toolkit_.TakeMessages())
      texts.append(texts.empty() ? "" : " | ").append(message.text);
    return texts;
  }

 private:
  ScriptedToolkit toolkit_;
  VosApplication app_;
  std::unique_ptr<TfOrvaneMain> main_;
};

}  // namespace orvane::modules
