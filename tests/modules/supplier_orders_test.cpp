// The screen of supplier orders on the real server: what walks/supplier_orders.walk cannot show of
// its rules, tried at their edges.

#include <algorithm>

#include "contract/parameters.h"
#include "contract/system.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"
#include "modules/user_screen.h"

namespace orvane::modules {
namespace {

using namespace supplier_order;

constexpr int kBulk = 2;
constexpr int kWares = 3;

/// Orders are of kinds 2 and 3, the national currency is 1. Supplier 7 has one contract of kind 2
/// and two of kind 3, supplier 8 (who is paid in currency 3) one of kind 3, supplier 9 none that is
/// in force and ordered through. The employee of "ivanova" is 100.
struct Company {
  explicit Company(int orders = 0) : server(Engine::Sqlite) {
    server.UseTwoLanguages();
    server.AddUser("ivanova");
    for (const char* statement :
         {"insert into KindSupplies (Code, Name, FoldName) values (2, 'ОСМ', 'о'), (3, 'Стоки', "
          "'с'), (5, 'Други', 'д')",
          "insert into Currencies (Code, Name, FoldName, CurrencyCode) values (1, 'Лев', 'л', "
          "'BGN'),"
          " (3, 'Долар', 'д', 'USD')",
          "insert into Partners (Partner, Name, FoldName, PartnerTypeSupplier, SuppKindCurrency,"
          " KindSupplyChoice) values (7, 'Местен', 'м', 1, null, 1), (8, 'Чужд', 'ч', 1, 3, 1),"
          " (9, 'Без', 'б', 1, null, null)",
          "insert into CostCenters (CostCenter, Name, FoldName) values (1001, 'Цех', 'ц')",
          "insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 100)",
          "insert into Measures (Code, Name, FoldName, Numerator, OrdinaryFraction) values"
          " (101, 'кг', 'к', 1, 0), (102, 'т', 'т', 1000, 0), (112, 'чувал', 'ч', 50, 0),"
          " (201, 'бр', 'б', 1, 0), (212, 'дузина', 'д', 12, 1), (305, 'час', 'ч', 1, 0)",
          "insert into MaterialStocks (IdNumber, Name, FoldName, Measure, IncomeMeasure,"
          " BarCodeMeasure, RoundQuantity) values (900, 'Стомана', 'с', 101, 102, 201, 2),"
          " (901, 'Шайба', 'ш', 212, null, null, 0)",
          "insert into Services (Code, Name, FoldName, Measure, RoundQuantity) values"
          " (77, 'Монтаж', 'м', 305, 1)",
          "insert into BaseSupplyList (SerialNumber, Name, FoldName, Kind, InventoryCode,"
          " ServiceCode, Measure) values (20, 'Стомана', 'с', 1, 900, null, 112),"
          " (21, 'Шайба', 'ш', 1, 901, null, 212), (22, 'Монтаж', 'м', 2, null, 77, 305)"})
      Run(statement);
    AddContract(30, 7, kBulk, true, true);
    AddContract(31, 7, kWares, true, false);
    AddContract(32, 7, kWares, true, false);
    AddContract(33, 8, kWares, true, false);
    AddContract(34, 9, kBulk, false, true);
    for (const auto& [number, value] : {std::pair(2, "2"), {5, "3"}, {3, "1"}})
      server.SetParam(system::kModuleGroup, number, value);
    for (const auto& [number, value] : {std::pair(26, "7"), {27, "1"}, {3, "2"}})
      server.SetParam(system::kHostGroup, number, value);
    for (int id = 1; id <= orders; ++id)
      AddOrder(id);
  }
  void Run(const char* statement) { server.Execute({statement, {}, {}}); }
  void AddContract(int id, int supplier, int kind, bool throughOrders, bool transport) {
    server.Execute(
        {"insert into SuppliesContracts (IdNumber, Supplier, ContractNumber,"
         " ShortDescription, FoldShortDescription, ContractDate, KindContract,"
         " ManifacOrder, InclTransportInPrice, KindSupplyChoice, CreatedFrom, CreatedOn)"
         " values (?1, ?2, 'Д', 'Договор', 'д', 20000, ?3, ?4, ?5, 1, 'ivanova', 1)",
         {id, supplier, kind, throughOrders, transport},
         {}});
  }
  void AddOrder(int id, const char* creator = "ivanova", int status = Entered) {
    server.Execute(
        {"insert into SuppManifacOrder (IdNumber, DocumentDate, FromDate, ToDate,"
         " CostCenter, KindSupply, Supplier, ContractId, IncTranspInPrice, KindCurrency,"
         " Notifier, CreatedFrom, CreatedOn, Status) values (?1, 20500, 20500, 20600,"
         " 1001, 3, 7, 31, 1, 1, 100, ?2, 1, ?3)",
         {id, creator, status},
         {}});
  }
  void AddRow(int order, int number, int serial, int measure) {
    server.Execute(
        {"insert into SuppManOrderDet (SuppManOrderId, RowNumber, SerialNumber, Measure,"
         " Quantity, RowNumerator, Numerator) values (?1, ?2, ?3, ?4, 24, 12, 12)",
         {order, number, serial, measure},
         {}});
  }

  TestServer server;
};

class Orders : public UserScreen {
 public:
  explicit Orders(Company& company, const std::string& login = "ivanova")
      : UserScreen(company.server, "SupplierOrders", login) {}

  TfSuppManifacOrder& Screen() { return dynamic_cast<TfSuppManifacOrder&>(*Form()); }
  TdmSuppManifacOrder& Rules() { return *Screen().dmSuppManifacOrder; }
  TVosClientDataSet& Head() { return Rules().cdsSuppManifacOrder; }
  void Set(const FieldDef& field, const Variant& value) {
    Screen().RunInGate([&] { Head()[field].Set(value); });
  }
  void Edit() {
    Screen().RunInGate([&] {
      Screen().FocusControl(&Screen().di);
      Head().Edit();
    });
  }
  std::string Text(const FieldDef& field) { return Head()[field].Value().ToText(); }
  std::string Units() { return Rules().measures.dlgSQL[2]; }
  std::int64_t Calls() {
    const std::int64_t calls = App().Session().calls;
    return calls - std::exchange(callsSeen_, calls);
  }

 private:
  std::int64_t callsSeen_ = 0;
};

TEST(OrderScreen, DoesNotOpenWithoutItsParameters) {
  const struct {
    int group;
    int number;
    const char* message;
  } cases[] = {
      {11, 2, "Параметър Вид покупка \"ОСМ\" няма стойност"},
      {11, 5, "Параметър Вид покупка \"Стоки\" няма стойност"},
      {1, 26, "Параметър \"Централна банка\" не е попълнен!"},
      {1, 27, "Параметър \"Вид валута BGN\" не е попълнен!"},
  };
  for (const auto& row : cases) {
    Company company;
    company.server.SetParam(row.group, row.number, "");
    Orders screen(company);
    EXPECT_EQ(screen.Messages(), row.message);
    EXPECT_EQ(dynamic_cast<TfSuppManifacOrder*>(screen.Form()), nullptr);
  }
}

TEST(OrderScreen, OpensWithTwoCallsAndMovesWithOne) {
  Company company(12);
  UserScreen other(company.server, "Departments");
  const std::int64_t before = other.App().Session().calls;
  other.App().OpenPoint("SupplierOrders");
  EXPECT_EQ(other.App().Session().calls - before, 2);

  Orders screen(company);
  EXPECT_EQ(screen.Screen().eIdNumber.Text(), "12");
  screen.Calls();
  const auto forth = [&] { return screen.Live({"acNext", "acNextPage", "acLast"}); };
  const auto back = [&] { return screen.Live({"acFirst", "acPriorPage", "acPrior"}); };
  const char* const allBack = "acFirst acPriorPage acPrior";
  const char* const allForth = "acNext acNextPage acLast";
  const struct {
    KeyStroke key;
    const char* id;
    const char* back;
    const char* forth;
  } moves[] = {{Shift(KeyCode::F3), "1", "", allForth}, {KeyCode::F4, "2", allBack, allForth},
               {Ctrl(KeyCode::F4), "12", allBack, ""},  {KeyCode::F3, "11", allBack, allForth},
               {Ctrl(KeyCode::F4), "12", allBack, ""},  {Ctrl(KeyCode::F3), "2", allBack, allForth},
               {Ctrl(KeyCode::F3), "1", "", allForth}};
  for (const auto& move : moves) {
    SCOPED_TRACE(move.id);
    screen.Press(move.key);
    EXPECT_EQ(screen.Screen().eIdNumber.Text(), move.id);
    EXPECT_EQ(screen.Calls(), 1);
    EXPECT_EQ(back(), move.back);
    EXPECT_EQ(forth(), move.forth);
  }
  EXPECT_EQ(screen.Messages(), "") << "nothing is said at the ends";
}

TEST(OrderScreen, TakesTheOnlyContractOfSupplierAndKind) {
  Company company;
  Orders screen(company);
  const struct {
    int kind;
    int supplier;
    const char* contract;
    const char* transport;  ///< "": not settled yet
    const char* currency;
  } cases[] = {
      {kBulk, 7, "30", "2", "1"},  {kWares, 7, "", "", "1"},  // two of them
      {kWares, 8, "33", "1", "3"}, {kBulk, 8, "", "", "3"},   // of another kind
      {kBulk, 9, "", "", "1"},                                // not ordered through
  };
  for (const auto& row : cases) {
    for (const bool kindFirst : {true, false}) {
      SCOPED_TRACE(std::to_string(row.kind) + " of " + std::to_string(row.supplier));
      screen.Press(KeyCode::F10);
      if (kindFirst) screen.Set(head::KindSupply, row.kind);
      screen.Set(head::Supplier, row.supplier);
      if (!kindFirst) screen.Set(head::KindSupply, row.kind);
      EXPECT_EQ(screen.Text(head::ContractId), row.contract);
      EXPECT_EQ(screen.Text(head::IncTranspInPrice), row.transport);
      EXPECT_EQ(screen.Text(head::KindCurrency), row.currency);
      const bool foreign = row.supplier == 8;
      EXPECT_EQ(screen.Screen().di.FindItem("RateOfExchange")->visible, foreign);
      EXPECT_EQ(screen.Screen().di2.LabelOf("SumManifacOrder"),
                foreign ? "Левова сума на поръчката" : "Сума на поръчката");
      screen.Press(Ctrl(KeyCode::Z));
    }
  }
}

TEST(OrderScreen, AnotherSupplierTakesTheContractAlong) {
  Company company(1);
  Orders screen(company);
  screen.Edit();
  screen.Set(head::Supplier, 9);
  EXPECT_EQ(screen.Text(head::ContractId), "") << "it was supplier 7's";
  screen.Set(head::Supplier, 8);
  EXPECT_EQ(screen.Text(head::ContractId), "33") << "the only one of his";
  EXPECT_EQ(screen.Text(head::IncTranspInPrice), "1") << "a stored order keeps what it has";
  screen.Set(head::KindSupply, kBulk);
  screen.Set(head::Supplier, 7);
  EXPECT_EQ(screen.Text(head::ContractId), "30");
  EXPECT_EQ(screen.Text(head::IncTranspInPrice), "1") << "though this one has transport included";
}

TEST(OrderScreen, OffersUnitsOfTheRowsBlockOrItsItemsOwn) {
  for (const bool own : {false, true}) {
    Company company(1);
    company.AddRow(1, 1, 20, 112);
    company.AddRow(1, 2, 22, 305);
    company.Run("update SuppManOrderDet set InventoryId = 900 where RowNumber = 1");
    company.Run("update SuppManOrderDet set ServiceCode = 77 where RowNumber = 2");
    if (own) company.server.SetParam(system::kHostGroup, parameters::kOwnUnitsOnly, "1");
    Orders screen(company);
    EXPECT_EQ(screen.Units(),
              own ? "WHERE Code IN (112,101,102,201)" : "WHERE Code >= 100 AND Code <= 199");
    screen.Press(KeyCode::F6);
    screen.Press(KeyCode::Down);
    EXPECT_EQ(screen.Units(), "WHERE Code >= 300 AND Code <= 399") << "of the service's unit";
  }
}

TEST(OrderScreen, NumbersRowsBehindTheHighestAndDropsEmptyOnes) {
  Company company(1);
  company.AddRow(1, 4, 21, 212);
  Orders screen(company);
  TVosClientDataSet& rows = screen.Rules().cdsSuppManOrderDet;
  const auto column = [&] { return screen.Screen().gSuppManOrderDet.FindColumn("Quantity"); };
  EXPECT_TRUE(column()->readOnly) << "dozens are asked for in a dialog";
  EXPECT_EQ(rows[det::Quantity].Text(), "2");
  screen.Press(KeyCode::F6);
  screen.Press(KeyCode::Down);
  EXPECT_EQ(rows[det::RowNumber].Value(), Variant(5));
  EXPECT_EQ(screen.Form()->FocusName(), "cbKPL") << "the entry comes first";
  EXPECT_FALSE(column()->readOnly);
  screen.Form()->RunInGate([&] {
    rows[det::Remarks].Set("нищо");
    rows.Post();
  });
  EXPECT_EQ(rows.RecordCount(), 1U);
  EXPECT_EQ(screen.Messages(), "");

  screen.Toolkit().answerWithoutWalk = kAnswerYes;
  screen.Press(KeyCode::F5);
  EXPECT_TRUE(rows.IsEmpty());
  screen.Press(KeyCode::Insert);
  EXPECT_EQ(rows[det::RowNumber].Value(), Variant(6)) << "a deletion is an apply too";
}

/// What is offered follows from rights, owner and status by this rule alone.
TEST(OrderScreen, OffersWhatRightsOwnerAndStatusAllow) {
  for (int rights = 1; rights <= kAllRights; rights += 2) {
    const bool edits = (rights & 2) != 0;
    const bool deletes = (rights & 8) != 0;
    Company company;
    int id = 0;
    for (const char* creator : {"petrov", "ivanova"}) {
      for (int status = 0; status <= 7; ++status)
        company.AddOrder(++id, creator, status);
    }
    company.server.AddUser("petrov", rights);
    company.Run("update SuppManifacOrder set Notifier = 101");
    company.Run("insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 101)");
    Orders screen(company, "petrov");
    for (id = 1; id <= 16; ++id) {
      SCOPED_TRACE(std::to_string(rights) + " order " + std::to_string(id));
      screen.Toolkit().TypeText(*screen.Form(), std::to_string(id));
      screen.Press(KeyCode::Enter);
      const int status = (id - 1) % 8;
      const bool owner = id <= 8;
      std::string expected;
      const auto add = [&](bool live, const char* name) {
        if (live) expected.append(expected.empty() ? "" : " ").append(name);
      };
      add((rights & 4) != 0, "acNewDoc");
      add(edits && owner && status == 2, "acForConfirmation");
      add(edits && owner && status == 3, "acCorrect");
      add(deletes && owner && (status == 1 || status == 2), "acAnnul");
      add(edits && status == 6, "acComplete");
      add(edits && status == 7, "acRemoveCompletion");
      EXPECT_EQ(screen.Live({"acNewDoc", "acForConfirmation", "acCorrect", "acAnnul", "acComplete",
                             "acRemoveCompletion"}),
                expected);
      EXPECT_EQ(screen.Screen().di.readOnly, !(deletes && owner && status == 2));
    }
  }
}

TEST(OrderScreen, WithoutACostCentreEntersNothing) {
  Company company(1);
  company.server.AddUser("petrov");
  Orders none(company, "petrov");
  EXPECT_EQ(none.Live({"acNewDoc"}), "") << "no admissible cost centre";

  Orders screen(company);
  EXPECT_EQ(screen.Live({"acNewDoc"}), "acNewDoc");
  company.Run("delete from AdmissibleNotifiers");
  screen.Press(KeyCode::F10);
  EXPECT_EQ(screen.Messages(), "За заявител 'Служител 100' няма допустими центрове за разход");
  EXPECT_EQ(screen.Head().State(), DataSetState::Browse);
  EXPECT_EQ(screen.Screen().eIdNumber.Text(), "1");
}

TEST(OrderScreen, ShowsOneGivenOrderToBeReadOnly) {
  Company company(3);
  Orders screen(company);
  TVosBaseForm& owner = *screen.Form();
  TfSuppManifacOrder::StartSuppManifacOrder(owner, 9);
  EXPECT_EQ(screen.Messages(), "Документ 9 не е намерен!");

  TfSuppManifacOrder view(DialogIdentity(owner));
  view.viewOnly = true;
  view.SetAccess(TPointAccess::FromBits(kAllRights));
  view.dmSuppManifacOrder->GetParams();
  view.dmSuppManifacOrder->GetRecord(Nav::ByKey, 0, "2");
  view.BeShown();
  EXPECT_TRUE(view.di.readOnly);
  EXPECT_FALSE(view.gSuppManOrderDet.CanAppend());
  std::string live;
  for (const auto& action : view.Actions()) {
    const bool hosts = action->always;
    if (action->enabled && !hosts) live += action->name + " ";
  }
  EXPECT_EQ(live, "acGoToRows acPrint ");
}

}  // namespace
}  // namespace orvane::modules
