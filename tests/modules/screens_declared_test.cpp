// Declarations of every screen of the module, checked by machine on the real server; and the check
// itself, on a screen in which everything is wrong that it looks for.

#include <gtest/gtest.h>

#include "contract/parameters.h"
#include "contract/system.h"
#include "data/lookup_table.h"
#include "host/controls/combo.h"
#include "kit/columns.h"
#include "modules/purchases/frame/orvane_com.h"
#include "modules/purchases/purchase_requests/tdm_purchase_order.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"
#include "modules/purchases/registers/cap_ex_plan/tdm_cap_ex_plan.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order_report.h"
#include "modules/screen_findings.h"
#include "modules/user_screen.h"
#include "server/classes/server_classes.h"

namespace orvane::modules {
namespace {

/// A server of two languages with one user who may do everything.
struct Company {
  Company() : server(Engine::Sqlite) {
    server.UseTwoLanguages();
    server.AddUser("ivanova");
    for (const int kind : {parameters::cpCar, parameters::cpBRM, parameters::cpWares})
      server.SetParam(system::kModuleGroup, kind, "1");
    for (const int number : {parameters::kCentralBank, parameters::kNationalCurrency})
      server.SetParam(system::kHostGroup, number, "1");
  }

  TestServer server;
  std::vector<ServerClass> classes = MakeServerClasses();
  std::set<std::string> folds = StoredFolds();
};

TEST(EveryScreen, IsDeclaredWhole) {
  Company company;
  UserScreen user(company.server, "Departments");
  int screens = 0;
  for (const PointRow& point : kPoints) {
    if (user.App().classes.Find(point.screenClass) == nullptr) continue;
    SCOPED_TRACE(point.screenClass);
    const auto form = user.App().CreateVosForm(nullptr, point.screenClass, kOrvaneModuleNo,
                                               static_cast<std::int32_t>(point.point),
                                               user.App().FindPoint(point.name));
    ASSERT_NE(form, nullptr);
    form->BeShown();
    EXPECT_EQ(ScreenFindings(*form, company.classes, company.folds).All(),
              std::vector<std::string>());
    user.Messages();
    ++screens;
  }
  EXPECT_GE(screens, 8);
}

TEST(EveryScreen, ThatAnotherOneOpensIsDeclaredWhole) {
  Company company;
  UserScreen user(company.server, "Departments");
  TfSuppManifacOrderReport report({&user.App(), nullptr, kOrvaneModuleNo,
                                   static_cast<std::int32_t>(Point::SupplierOrders), nullptr,
                                   paOpen});
  report.BeShown();
  EXPECT_EQ(ScreenFindings(report, company.classes, company.folds).All(),
            std::vector<std::string>());
}

TEST(EveryScreen, SearchesBesideItsListsByFoldsToo) {
  Company company;
  UserScreen user(company.server, "Departments");
  const auto open = [&](std::string_view screen, Point point, std::string_view name) {
    auto form =
        user.App().CreateVosForm(nullptr, screen, kOrvaneModuleNo, static_cast<std::int32_t>(point),
                                 user.App().FindPoint(name));
    form->BeShown();
    return form;
  };
  const auto request = open("TfPurchaseOrder", Point::PurchaseRequests, "PurchaseRequests");
  auto& screen = dynamic_cast<TfPurchaseOrder&>(*request);
  const auto order = open("TfSuppManifacOrder", Point::SupplierOrders, "SupplierOrders");
  const auto plan = open("TfCapExPlan", Point::CapExPlan, "CapExPlan");
  TdmCapExPlan positions(dynamic_cast<TVosDBForm&>(*plan));

  ScreenFindings findings(*request, company.classes, company.folds);
  findings.CheckSearch("acSearchGroup", screen.dmPurchaseOrder->GroupSearch());
  findings.CheckSearch("acSearch", SearchOf(positions.search));
  for (const SupplyChoice way :
       {SupplyChoice::ByList, SupplyChoice::ByListOnDate, SupplyChoice::ByListUpToDate}) {
    for (const Variant& list : {Variant(), Variant(4)}) {
      screen.cbKPL.Table().SetTemplate(
          SetSuppListsSQL(static_cast<int>(way), list, screen.cbKPL, Date{20'000}));
      findings.CheckSearch("cbKPL", SearchOf(screen.cbKPL.Table()));
    }
  }
  EXPECT_EQ(findings.All(), std::vector<std::string>());
}

namespace broken {
inline constexpr auto Code = Int16("Code", Key | Required, "Код");
inline constexpr auto Colour = String("Colour", 10, Plain, "Цвят");
inline constexpr auto Name = String("Name", 40, Plain, "Име");
inline constexpr auto dspDepartment = Writes("dspDepartment", "Department", Code, Colour);
}  // namespace broken

/// A screen with every mistake.
class TfBroken : public TVosDBForm {
 public:
  explicit TfBroken(const FormIdentity& identity)
      : TVosDBForm(identity, "TfBroken", "Грешен"),
        own(App().Session(), DataPoint(), "TsmDepartment"),
        cSQL(App().Session(), DataPoint(), "TsmSQL"),
        rows("cdsBroken", own, broken::dspDepartment),
        offered("cdsOffered", cSQL, {broken::Code, broken::Colour, broken::Name}),
        table(offered, "Code"),
        source(rows),
        combo(*this, "cbBroken", table),
        grid(*this, "gBroken", source) {
    combo.lookupNameField = "Title";
    table.SetTemplate({"SELECT Code, Chief Colours, Name", "FROM Departments", "{$W}"});
    table.dlgSearchFields = {SearchBy("Name", "Име")};
    grid.columns = {Column("Code", 10, "").Edit(combo), Column("Chef", 10, "Началник")};
    for (const char* name : {"acOne", "acTwo"}) {
      TAction action;
      action.name = name;
      action.shortcut = KeyCode::F5;
      action.OnExecute = [] {};
      AddAction(std::move(action)).caption = "Действие";
    }
    TAction empty;
    empty.name = "acEmpty";
    AddAction(std::move(empty));
    ribbon = {{"Операции", {{"Операции", {"acOne", "acTwo", "acThree"}}}}};
    layout = ColumnOf({Of(grid, 1)});
  }

  TVosClientDataSet* MainDataSet() const override { return &grid.DataSet(); }

 protected:
  std::span<const LiveRow> LiveRows() const override {
    static constexpr LiveRow kLive[] = {{"acOne", "gBroken"}, {"acTwo", "cbBroken"}};
    return kLive;
  }

 private:
  TVosSQLConnection own;
  TVosSQLConnection cSQL;
  TVosClientDataSet rows;
  TVosClientDataSet offered;
  TLookupTable table;
  TDataSource source;
  TVosMTCombo combo;
  TVosDBGrid grid;
};

TEST(EveryScreen, OfAWrongOneTellsEachMistakeByNumber) {
  Company company;
  UserScreen user(company.server, "Departments");
  user.App().classes.Register("TfBroken", [](const FormIdentity& identity) {
    return std::unique_ptr<TVosBaseForm>(new TfBroken(identity));
  });
  const auto form = user.App().CreateVosForm(nullptr, "TfBroken", kOrvaneModuleNo,
                                             static_cast<std::int32_t>(Point::Structure),
                                             user.App().FindPoint("Structure"));
  ASSERT_NE(form, nullptr);
  dynamic_cast<TVosDBGrid&>(*form->FindControl("gBroken")).canInsert = true;
  company.folds.erase("department.foldname");
  const std::vector<std::string> expected = {
      "S003 TfBroken.cbBroken: 'Title' names no field of cdsOffered",
      "S004 TfBroken.cbBroken: no mask",
      "S005 TfBroken.cbBroken: 'Colour' is not in its statement",
      "S012 TfBroken.cbBroken: 'Name' is searched without Department.FoldName",
      "S008 TfBroken.gBroken: 'Code' has no title",
      "S001 TfBroken.gBroken: 'Chef' names no field of cdsBroken",
      "S011 TfBroken.cdsBroken: TsmDepartment is not for this point",
      "S002 TfBroken.cdsBroken: 'Colour' is not in dspDepartment",
      "S010 TfBroken.cdsBroken: AfterPost",
      "S010 TfBroken.cdsBroken: OnReconcileError",
      "S010 TfBroken.cdsBroken: OnStateChange",
      "S006 TfBroken.ribbon: no action acThree",
      "S007 TfBroken.acEmpty: no place",
      "S008 TfBroken.acEmpty: no caption",
      "S010 TfBroken.acEmpty: OnExecute",
      "S009 TfBroken.gBroken new Code: F5: acOne, acTwo",
  };
  EXPECT_EQ(ScreenFindings(*form, company.classes, company.folds).All(), expected);
}

}  // namespace
}  // namespace orvane::modules
