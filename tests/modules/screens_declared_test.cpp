// Declarations of every screen of the module, checked by machine: columns and items name fields,
// the ribbon and the bars name actions, every action has a place, combos offer something by a code.

#include <gtest/gtest.h>

#include <set>

#include "modules/request_world.h"

namespace orvane::requests {
namespace {

class Findings {
 public:
  explicit Findings(const TVosBaseForm& form) : form_(form) {
    for (const Control* control : form.Controls())
      CheckControl(*control);
    for (const RibbonTab& tab : form.ribbon) {
      for (const RibbonGroup& group : tab.groups)
        CheckActions("ribbon", group.actions);
    }
    CheckLayout(form.layout);
    CheckPlaces();
  }
  const std::vector<std::string>& All() const { return all_; }

 private:
  void Add(const std::string& what) { all_.push_back(form_.ClassName() + ": " + what); }

  void CheckField(const Control& control, const TVosClientDataSet& rows, std::string_view field,
                  const TVosMTCombo* combo) {
    auto& dataSet = const_cast<TVosClientDataSet&>(rows);
    if (dataSet.FindField(field) == nullptr)
      Add(control.Name() + ": '" + std::string(field) + "' names no field of " + rows.Name());
    if (combo == nullptr) return;
    TVosClientDataSet& offered = combo->Table().DataSet();
    for (const std::string& name : {combo->lookupNameField, combo->lookupTrNameField}) {
      if (!name.empty() && offered.FindField(name) == nullptr)
        Add(combo->Name() + ": '" + name + "' names no field of " + offered.Name());
    }
    if (combo->mask.empty()) Add(combo->Name() + ": no mask");
  }

  void CheckControl(const Control& control) {
    if (const auto* grid = dynamic_cast<const TVosDBGrid*>(&control)) {
      for (const GridColumn& column : grid->columns)
        CheckField(control, grid->DataSet(), column.field, column.combo);
    }
    if (const auto* inspector = dynamic_cast<const TVosDataInspector*>(&control)) {
      for (const InspectorItem& item : inspector->items) {
        CheckField(control, inspector->DataSet(), item.field, item.combo);
        if (!item.nameField.empty())
          CheckField(control, inspector->DataSet(), item.nameField, nullptr);
        if (item.label.empty()) Add(control.Name() + "." + item.field + ": no label");
      }
    }
  }

  void CheckActions(const std::string& where, const std::vector<std::string>& actions) {
    for (const std::string& action : actions) {
      placed_.insert(action);
      if (form_.FindAction(action) == nullptr) Add(where + ": no action " + action);
    }
  }

  void CheckLayout(const LayoutNode& node) {
    CheckActions("bar", node.actions);
    for (const LayoutNode& child : node.children)
      CheckLayout(child);
  }

  void CheckPlaces() {
    for (const auto& action : form_.Actions()) {
      if (!action->always && !placed_.contains(action->name))
        Add("action " + action->name + " has no place");
      if (action->caption.empty()) Add("action " + action->name + " has no caption");
    }
  }

  const TVosBaseForm& form_;
  std::set<std::string> placed_;
  std::vector<std::string> all_;
};

TEST(EveryScreen, IsDeclaredWhole) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  int screens = 0;
  for (const PointRow& point : kPoints) {
    if (world.app->classes.Find(point.screenClass) == nullptr) continue;
    const auto form = world.app->CreateVosForm(nullptr, point.screenClass, kOrvaneModuleNo,
                                               static_cast<std::int32_t>(point.point),
                                               world.app->FindPoint(point.name));
    ASSERT_NE(form, nullptr) << point.screenClass;
    EXPECT_EQ(Findings(*form).All(), std::vector<std::string>()) << point.screenClass;
    ++screens;
  }
  EXPECT_GE(screens, 3);
}

}  // namespace
}  // namespace orvane::requests
