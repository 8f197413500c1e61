// Registers of an installation with one language: nothing of the second one is shown.

#include <gtest/gtest.h>

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/walk/scripted_toolkit.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "support/test_server.h"

namespace orvane::modules {
namespace {

TEST(OneLanguage, LeavesOutWhatIsOfTheSecond) {
  struct Case {
    const char* point;
    const char* control;
    const char* shown;
  };
  const Case cases[] = {
      {"KindSupplies", "gKindSupplies", "Code Name"},
      {"CapExPlan", "di", "Name InternalNumber FromDate TimeLimit CapSum Description"},
  };
  TestServer server(Engine::Sqlite);
  server.AddUser("ivanova");
  for (const Case& row : cases) {
    ScriptedToolkit toolkit;
    VosApplication app(server.Server(), toolkit, server.Time());
    ASSERT_TRUE(app.LogIn("ivanova", TestServer::PasswordOf("ivanova")));
    RegisterOrvaneModule(app);
    const auto main = StartOrvaneModule(app);
    ASSERT_TRUE(app.OpenPoint(row.point));
    Control* control = toolkit.ActiveForm(app)->FindControl(row.control);
    std::string shown;
    const auto add = [&shown](const std::string& field) {
      if (!shown.empty()) shown += ' ';
      shown += field;
    };
    if (const auto* grid = dynamic_cast<TVosDBGrid*>(control)) {
      for (const GridColumn& column : grid->columns)
        add(column.field);
    }
    if (const auto* inspector = dynamic_cast<TVosDataInspector*>(control)) {
      for (const InspectorItem& item : inspector->items) {
        if (item.visible) add(item.field);
      }
    }
    EXPECT_EQ(shown, row.shown);
  }
}

}  // namespace
}  // namespace orvane::modules
