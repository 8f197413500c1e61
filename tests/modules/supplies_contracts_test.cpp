// The supplies contracts screen on the real server: what walks/contracts.walk cannot show of its
// rules, tried in every combination.

#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "modules/purchases/contracts/tf_supplies_contracts.h"
#include "modules/user_screen.h"

namespace orvane::modules {
namespace {

constexpr int kCapital = 1;
constexpr int kBulk = 2;
constexpr int kWares = 3;
constexpr int kOther = 5;

/// Kinds 1, 2, 3 are set as capital expenditure, ОСМ and goods. Supplier 7 invoices by kind 1, 8 by
/// kind 2, 9 by none.
struct Company {
  explicit Company(int contracts = 0) : server(Engine::Sqlite) {
    server.UseTwoLanguages();
    server.AddUser("ivanova");
    for (const char* statement :
         {"insert into KindSupplies (Code, Name, FoldName) values (1, 'Капиталов', 'к'),"
          " (2, 'ОСМ', 'о'), (3, 'Стоки', 'с'), (5, 'Други', 'д')",
          "insert into SupplyInvoiceDescr (Code, Name, FoldName, KindInvoice) values"
          " (1, 'Фактура', 'ф', 1), (2, 'Внос', 'в', 2)",
          "insert into Partners (Partner, Name, FoldName, SupplyInvoiceDescr) values"
          " (7, 'Местен', 'м', 1), (8, 'Чужд', 'ч', 2), (9, 'Без', 'б', null)"})
      server.Execute({statement, {}, {}});
    for (const int number : {kCapital, kBulk})
      server.SetParam(11, number, std::to_string(number));
    server.SetParam(11, 5, "3");
    for (int id = 1; id <= contracts; ++id)
      AddContract(id);
  }
  void AddContract(int id) {
    server.Execute(
        {"insert into SuppliesContracts (IdNumber, Supplier, ContractNumber,"
         " ShortDescription, FoldShortDescription, ContractDate, KindContract,"
         " KindSupplyChoice, CreatedFrom, CreatedOn) values (?1, 7, 'Д', 'Договор', 'д',"
         " 20000, 5, 1, 'ivanova', 1)",
         {id},
         {}});
  }

  TestServer server;
};

class Contracts : public UserScreen {
 public:
  explicit Contracts(Company& company, const std::string& login = "ivanova")
      : UserScreen(company.server, "SuppliesContracts", login) {}

  TfSuppliesContracts& Screen() { return dynamic_cast<TfSuppliesContracts&>(*Form()); }
  TVosClientDataSet& Rows() { return Screen().dmSuppliesContracts->cdsSuppliesContracts; }
  void Set(const FieldDef& field, const Variant& value) {
    Screen().RunInGate([&] { Rows()[field].Set(value); });
  }
  bool Shows(std::string_view field) { return Screen().diLeft.FindItem(field)->visible; }
};

using namespace supplies_contract;

TEST(ContractScreen, DoesNotOpenWithoutItsKindsOfPurchase) {
  const struct {
    int number;
    const char* value;
    const char* message;
  } cases[] = {
      {1, "",
       "Невалидна стойност на параметър 'Вид покупка \"Капиталов разход\"' в таблица 'Параметри'!"},
      {2, "  ", "Невалидна стойност на параметър 'Вид покупка \"ОСМ\"' в таблица 'Параметри'!"},
      {5, "", "Невалидна стойност на параметър 'Вид покупка \"Стоки\"' в таблица 'Параметри'!"},
  };
  for (const auto& row : cases) {
    Company company;
    company.server.SetParam(11, row.number, row.value);
    Contracts screen(company);
    EXPECT_EQ(screen.Messages(), row.message);
    EXPECT_EQ(dynamic_cast<TfSuppliesContracts*>(screen.Form()), nullptr);
  }
}

TEST(ContractScreen, ShowsWhatTheKindAndTheRenewalAskFor) {
  Company company;
  Contracts screen(company);
  screen.Press(KeyCode::F10);
  for (const Variant& kind :
       {Variant(), Variant(kCapital), Variant(kBulk), Variant(kWares), Variant(kOther)}) {
    for (const bool renewed : {false, true}) {
      SCOPED_TRACE(kind.ToText().append(renewed ? " renewed" : ""));
      screen.Set(KindContract, kind);
      screen.Set(AutomaticRenewal, renewed);
      const bool listed = kind == Variant(kBulk) || kind == Variant(kWares);
      EXPECT_EQ(screen.Shows("ManifacOrder"), listed);
      EXPECT_EQ(screen.Shows("CapExPlanCode"), kind == Variant(kCapital));
      EXPECT_EQ(screen.Shows("NoticePeriod"), renewed);
      EXPECT_EQ(screen.Screen().diRight.FindItem("KindSupplyList")->required, listed);
    }
  }
}

TEST(ContractScreen, OffersNoticesOfTheSuppliersKindOfInvoice) {
  Company company(1);
  Contracts screen(company);
  const auto kind = [&] {
    const Variant debit =
        screen.Screen().dmSuppliesContracts->suppDNoticeDescr.Param("KindInvoice");
    EXPECT_EQ(screen.Screen().dmSuppliesContracts->suppCNoticeDescr.Param("KindInvoice"), debit);
    return debit.ToText();
  };
  EXPECT_EQ(kind(), "1") << "of the contract that was loaded";
  screen.Press(KeyCode::F10);
  EXPECT_EQ(kind(), "");
  for (const auto& [supplier, expected] :
       {std::pair(8, "2"), std::pair(9, ""), std::pair(7, "1")}) {
    screen.Set(Supplier, supplier);
    EXPECT_EQ(kind(), expected) << supplier;
  }
  screen.Set(Supplier, Variant());
  EXPECT_EQ(kind(), "");
}

TEST(ContractScreen, ShowsANeighbourOfADeletedOne) {
  const struct {
    int contracts;
    const char* deleted;
    const char* shown;
  } cases[] = {{1, "1", ""},  {2, "1", "2"}, {2, "2", "1"}, {3, "2", "1"},
               {4, "1", "2"}, {4, "2", "3"}, {4, "3", "2"}, {4, "4", "3"}};
  for (const auto& row : cases) {
    SCOPED_TRACE(std::to_string(row.contracts).append(" without ").append(row.deleted));
    Company company(row.contracts);
    Contracts screen(company);
    TKeyEdit& key = screen.Screen().eIdNumber;
    screen.Toolkit().TypeText(*screen.Form(), row.deleted);
    screen.Toolkit().answerWithoutWalk = kAnswerYes;
    screen.Press(KeyCode::F5);
    EXPECT_EQ(key.Text(), row.shown);
    EXPECT_EQ(screen.Rows()[IdNumber].Value().ToText(), row.shown);
    EXPECT_EQ(screen.Live({"acNew", "acDelete"}), *row.shown == 0 ? "acNew" : "acNew acDelete");
  }
}

TEST(ContractScreen, DeletesNothingForAnIdentifierThatIsNone) {
  Company company(2);
  Contracts screen(company);
  for (const char* typed : {"9", "1а"}) {
    screen.Toolkit().TypeText(*screen.Form(), typed);
    screen.Press(KeyCode::F5);
    EXPECT_NE(screen.Messages(), "") << typed;
    screen.Press(KeyCode::Escape);
  }
  EXPECT_EQ(company.server.Value("select count(*) from SuppliesContracts", ValueKind::Code), 2);
  EXPECT_EQ(screen.Screen().eIdNumber.Text(), "1");
}

TEST(ContractScreen, OffersWhatTheRightsAllow) {
  for (int rights = 1; rights <= kAllRights; rights += 2) {
    SCOPED_TRACE(rights);
    const bool edits = (rights & 2) != 0;
    const bool inserts = (rights & 4) != 0;
    const bool deletes = (rights & 8) != 0;
    for (const int contracts : {0, 1}) {
      Company company(contracts);
      company.server.AddUser("petrov", rights);
      Contracts screen(company, "petrov");
      const auto live = [&] { return screen.Live({"acNew", "acDelete", "acSave", "acCancel"}); };
      const bool loaded = contracts > 0;
      std::string atKey = inserts ? "acNew" : "";
      if (deletes && loaded) atKey.append(inserts ? " " : "").append("acDelete");
      EXPECT_EQ(live(), atKey);
      for (TVosDataInspector* items : {&screen.Screen().diLeft, &screen.Screen().diRight}) {
        screen.Form()->RunInGate([&] { screen.Form()->FocusControl(items); });
        EXPECT_EQ(live(), edits && loaded ? "acSave acCancel" : "acCancel");
      }
      if (!inserts) continue;
      screen.Form()->RunInGate([&] { screen.Form()->FocusControl(&screen.Screen().eIdNumber); });
      screen.Press(KeyCode::F10);
      EXPECT_EQ(live(), "acSave acCancel");
      screen.Press(Ctrl(KeyCode::Z));
      EXPECT_EQ(live(), atKey);
      EXPECT_EQ(screen.Screen().eIdNumber.Text(), loaded ? "1" : "");
    }
  }
}

TEST(ContractScreen, WithOneLanguageHasOneTextOfEach) {
  for (const bool two : {false, true}) {
    TestServer server(Engine::Sqlite);
    server.AddUser("ivanova");
    if (two) server.UseTwoLanguages();
    for (const int number : {1, 2, 5})
      server.SetParam(11, number, "1");
    UserScreen screen(server, "SuppliesContracts");
    auto& items = dynamic_cast<TfSuppliesContracts&>(*screen.Form()).diLeft;
    for (const char* field :
         {"ShortDescription2", "Description2", "DeliveryTimes2", "MinOrderDelivery2"})
      EXPECT_EQ(items.FindItem(field)->visible, two) << field;
    EXPECT_EQ(items.LabelOf("Description"), two ? "Описание (Български)" : "Описание");
  }
}

}  // namespace
}  // namespace orvane::modules
