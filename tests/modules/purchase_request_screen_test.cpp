// The purchase request screen: what opening and moving cost, columns and items by kind, currency
// and language, the keys and the focus, new requests, and one given request over another screen.

#include <gtest/gtest.h>

#include "host/report_fakes.h"
#include "modules/request_world.h"

namespace orvane::modules::requests {
namespace {

Document InCurrency(int id, int kind, int currency) {
  Document document = MakeDocument(id);
  Set(document.head, "KindSupply", kind);
  Set(document.head, "KindCurrency", currency);
  Set(document.head, "RateOfExchange", Decimal(9'234'000, 7));
  return document;
}

TEST(PurchaseRequestScreen, OpensOnTheLastRequestWithTwoCalls) {
  World world;
  world.server.documents = {MakeDocument(7), MakeDocument(9)};
  world.Open();
  EXPECT_EQ(world.Calls(), 2);
  EXPECT_EQ(world.Focus(), "eIdNum");
  EXPECT_EQ(world.Screen().eIdNum.Text(), "9");
  EXPECT_EQ(world.Screen().eVer.Text(), "1");
  EXPECT_EQ(world.Screen().lStatus.text, "Въведено");
  EXPECT_EQ(world.Messages(), "");
}

TEST(PurchaseRequestScreen, MovesWithOneCallAndStopsAtTheEnds) {
  World world;
  for (int id = 1; id <= 15; ++id)
    world.server.documents.push_back(MakeDocument(id));
  world.Open();
  world.Calls();
  struct Move {
    KeyStroke key;
    const char* id;
    const char* live;
  };
  const char* const back = "acFirstY acPriorPageY acPriorY";
  const char* const both = "acFirstY acPriorPageY acPriorY acNextY acNextPageY acLastY";
  const char* const forth = "acNextY acNextPageY acLastY";
  EXPECT_EQ(world.Live({"acFirstY", "acPriorPageY", "acPriorY", "acNextY", "acLastY"}), back);
  const Move moves[] = {
      {KeyCode::F3, "14", both}, {Ctrl(KeyCode::F3), "4", both},  {Shift(KeyCode::F3), "1", forth},
      {KeyCode::F3, "1", forth},  // not live: nothing happens
      {KeyCode::F4, "2", both},  {Ctrl(KeyCode::F4), "12", both}, {Shift(KeyCode::F4), "15", back},
  };
  for (const Move& move : moves) {
    SCOPED_TRACE(move.id);
    const std::string before = world.Screen().eIdNum.Text();
    world.Press(move.key);
    EXPECT_EQ(world.Screen().eIdNum.Text(), move.id);
    EXPECT_EQ(world.Calls(), before == move.id ? 0 : 1);
    EXPECT_EQ(
        world.Live({"acFirstY", "acPriorPageY", "acPriorY", "acNextY", "acNextPageY", "acLastY"}),
        move.live);
    EXPECT_EQ(world.Live({"acFirst", "acPrior", "acNext", "acLast"}), "");
  }
}

TEST(PurchaseRequestScreen, ShowsNamesBehindItsCodesWithoutAskingForThem) {
  World world;
  Document document = InCurrency(1, kWares, kDollar);
  Set(document.head, "Supplier", kSteel);
  Set(document.head, "ContractId", 38);
  world.server.documents = {document};
  world.Open();
  EXPECT_EQ(world.Calls(), 2);
  TVosDataInspector& items = world.Screen().diMainInfo;
  const auto nameAt = [&items](std::string_view field) {
    return items.NameText(static_cast<int>(items.FindItem(field) - items.items.data()));
  };
  EXPECT_EQ(nameAt("CostCenter"), "Механичен цех");
  EXPECT_EQ(nameAt("KindSupply"), "Стоки");
  EXPECT_EQ(nameAt("Supplier"), "Стил Трейд ООД");
  EXPECT_EQ(nameAt("ContractId"), "Рамков договор метали");
  EXPECT_EQ(nameAt("IncTranspInPrice"), "Не");
  EXPECT_EQ(nameAt("KindCurrency"), "Щатски долар");
  EXPECT_EQ(world.Calls(), 0);
}

// --- what is shown ------------------------------------------------------------------------------

TEST(PurchaseRequestScreen, ChoosesColumnsByKindAndCurrency) {
  struct Case {
    int kind;
    int currency;
    bool orders;
    const char* sum;  ///< title of the amount; empty: no such column
    bool sumReadOnly;
  };
  const Case cases[] = {
      {kCapital, kLev, true, "Сума", false},   {kCapital, kDollar, true, "Валутна сума", false},
      {kBrm, kLev, true, "", false},           {kWares, kDollar, true, "", false},
      {kServices, kLev, false, "Сума", false}, {kOther, kDollar, false, "Валутна сума", false},
      {kPriced, kLev, false, "Сума", true},    {kPriced, kDollar, false, "Валутна сума", true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.kind) + " in " + std::to_string(row.currency));
    World world;
    world.server.documents = {InCurrency(1, row.kind, row.currency)};
    world.Open();
    std::string expected = "RowNumber SerialNumber bslName";
    if (row.orders) expected += " SuppManifacOrderId SMOName";
    expected += " Measure MsrName Quantity";
    if (*row.sum != 0) expected += " CurrSumWithoutVAT";
    TVosDBGrid& grid = world.Screen().gPurchaseOrderDet;
    EXPECT_EQ(world.Columns(grid), expected + " Remarks Remarks2");
    const GridColumn* sum = grid.FindColumn("CurrSumWithoutVAT");
    ASSERT_EQ(sum != nullptr, *row.sum != 0);
    if (sum == nullptr) continue;
    EXPECT_EQ(sum->title, row.sum);
    EXPECT_EQ(sum->readOnly, row.sumReadOnly);
  }
}

TEST(PurchaseRequestScreen, ChoosesItemsByKindAndCurrency) {
  struct Case {
    int kind;
    int currency;
    const char* national;  ///< name of the national currency
    bool transport;
    const char* sum;
  };
  const Case cases[] = {
      {kWares, kLev, "Български лев", true, "Сума на искането"},
      {kBrm, kDollar, "Български лев", true, "Левова сума на искането"},
      {kOther, kLev, "Евро", false, "Сума на искането"},
      {kCapital, kDollar, "Евро", false, "Сума на искането в евро"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.sum);
    World world;
    Set(world.server.tables["Currencies"][0], "Name", row.national);
    world.server.documents = {InCurrency(1, row.kind, row.currency)};
    world.Open();
    const bool foreign = row.currency != kLev;
    EXPECT_EQ(world.Items(world.Screen().diMainInfo),
              std::string("DocumentDate Description Description2 Rationale Rationale2 CostCenter "
                          "KindSupply Supplier ContractId") +
                  (row.transport ? " IncTranspInPrice" : "") + " KindCurrency" +
                  (foreign ? " RateOfExchange" : ""));
    const TVosDataInspector& admin = world.Screen().diAdminInfo;
    EXPECT_EQ(world.Items(admin).find("CurrSumPurchaseOrder") != std::string::npos, foreign);
    EXPECT_EQ(admin.LabelOf("SumPurchaseOrder"), row.sum);
  }
}

TEST(PurchaseRequestScreen, NamesTheLanguagesWhereThereAreTwo) {
  World two;
  two.server.documents = {MakeDocument(1)};
  two.Open();
  EXPECT_EQ(two.Screen().diMainInfo.LabelOf("Description2"), "Описание (English)");
  EXPECT_EQ(two.Screen().gPurchaseOrderDet.FindColumn("Remarks")->title, "Бележки (Български)");

  World one(15, 1);
  one.server.documents = {MakeDocument(1)};
  one.Open();
  EXPECT_EQ(one.Items(one.Screen().diMainInfo),
            "DocumentDate Description Rationale CostCenter KindSupply Supplier ContractId "
            "KindCurrency");
  EXPECT_EQ(one.Screen().diMainInfo.LabelOf("Description"), "Описание");
  EXPECT_EQ(one.Screen().gPurchaseOrderDet.FindColumn("Remarks2"), nullptr);
  EXPECT_EQ(one.Screen().gPurchaseOrderDet.FindColumn("Remarks")->title, "Бележки");
}

TEST(PurchaseRequestScreen, WorksInTheLanguageItIsSwitchedTo) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.Choose("acLanguage");
  EXPECT_EQ(world.Screen().lStatus.text, "en Въведено");
  EXPECT_EQ(world.server.methods.back().arguments[purchase_request::get_rec::kLanguage],
            Variant(2));
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("Description", "Спешно");
  world.Choose("acLanguage");
  EXPECT_EQ(world.Head()[purchase_request::head::Description].AsString(), "Спешно");
}

TEST(PurchaseRequestScreen, DecimalsOfAmountsMakeTheMask) {
  const std::pair<const char*, const char*> cases[] = {{"0", "{{;-,;+}#,#}[*12[#]]"},
                                                       {"1", "{{;-,;+}#,#}[*12[#]][;.[#]]"},
                                                       {"2", "{{;-,;+}#,#}[*12[#]][;.[#[*1[#]]]]"},
                                                       {"4", "{{;-,;+}#,#}[*12[#]][;.[#[*3[#]]]]"}};
  for (const auto& [decimals, mask] : cases) {
    World world;
    world.server.params[1][3] = decimals;
    world.server.documents = {MakeDocument(1)};
    world.Open();
    EXPECT_EQ(world.Screen().gPurchaseOrderDet.FindColumn("CurrSumWithoutVAT")->mask, mask);
    EXPECT_EQ(world.Screen().gPOPayPl.FindColumn("SumWithVAT")->mask, mask);
  }
}

// --- keys ---------------------------------------------------------------------------------------

TEST(PurchaseRequestScreen, ReadsTypedKeysOrSaysWhatIsWrong) {
  struct Case {
    const char* edit;
    const char* typed;
    const char* message;
    const char* shown;  ///< identifier/version afterwards
    bool editing;
  };
  const Case cases[] = {
      {"eIdNum", "7", "", "7/1", false},
      {"eIdNum", "9", "", "9/2", false},
      {"eIdNum", "абв", "Въведете коректна стойност за поле \"Идентификатор\"!", "9/2", true},
      {"eIdNum", "55", "Документ 55 не е намерен!", "9/2", false},
      {"eVer", "1", "", "9/1", false},
      {"eVer", "x", "Въведете коректна стойност за поле \"Версия\"!", "9/2", true},
      {"eVer", "5", "Не съществува версия 5 за идентификатор 9!", "9/2", true},
      {"eVer", "300", "Не съществува версия 300 за идентификатор 9!", "9/2", true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.typed);
    World world;
    Document old = MakeDocument(9, 1);
    Set(old.head, "OldVersion", true);
    world.server.documents = {MakeDocument(7), old, MakeDocument(9, 2)};
    world.Open();
    ASSERT_EQ(world.Screen().eVer.Text(), "2");
    Control& edit = *world.Screen().FindControl(row.edit);
    world.FocusOn(edit);
    fakes::Type(world.Screen(), row.typed);
    world.Press(KeyCode::Enter);
    EXPECT_EQ(world.Messages(), row.message);
    EXPECT_EQ(std::to_string(world.Screen().values.LastGetID) + "/" +
                  std::to_string(world.Screen().values.LastGetVer),
              row.shown);
    EXPECT_EQ(edit.Editor() != nullptr, row.editing);
    EXPECT_EQ(world.Focus(), row.edit);
  }
}

TEST(PurchaseRequestScreen, AnEmptyIdentifierIsNotLeft) {
  World world;
  world.Open();
  EXPECT_EQ(world.Screen().eIdNum.Text(), "");
  world.FocusOn(world.Screen().eVer);
  EXPECT_EQ(world.Focus(), "eIdNum");
  world.Press(KeyCode::F10);
  EXPECT_EQ(world.Focus(), "diMainInfo.DocumentDate");
}

TEST(PurchaseRequestScreen, ComingToTheKeysGivesUpWhatWasTyped) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("CostCenter", "1002");
  EXPECT_EQ(world.Head().State(), DataSetState::Edit);
  world.Calls();
  world.Press(Ctrl(KeyCode::Z));
  EXPECT_EQ(world.Calls(), 1);
  EXPECT_EQ(world.Focus(), "eIdNum");
  EXPECT_EQ(world.Head().State(), DataSetState::Browse);
  EXPECT_EQ(world.Head()[purchase_request::head::CostCenter].AsInt(), 1001);
  world.FocusOn(world.Screen().eVer);
  EXPECT_EQ(world.Calls(), 1);
}

// --- focus --------------------------------------------------------------------------------------

TEST(PurchaseRequestScreen, LeadsFromTheLastItemToTheRowsAndOnThroughTheTabs) {
  World world;
  Document document = MakeDocument(1);
  document.det = {MakeRow(1, 1)};
  document.del = {{{"PurchaseOrderId", 1},
                   {"PurchaseOrderVer", 1},
                   {"DeliveryDate", *Date::FromYmd(2026, 4, 1)}}};
  world.server.documents = {document};
  world.Open();
  world.Screen().diMainInfo.FocusField("KindCurrency");
  world.Press(KeyCode::Enter);  // the rate is not shown: this is the last item
  EXPECT_EQ(world.Focus().substr(0, 17), "gPurchaseOrderDet");
  world.Press(KeyCode::End);
  world.Press(KeyCode::Enter);
  EXPECT_EQ(world.Focus().substr(0, 17), "gPurchaseOrderDel");
  world.Screen().gPurchaseOrderDel.FocusField("Delivered");
  world.Press(KeyCode::Tab);
  EXPECT_EQ(world.Focus().substr(0, 8), "gPOPayPl");
  world.FocusOn(world.Screen().gPurchaseOrderDet);
  world.Press(Ctrl(KeyCode::Z));
  EXPECT_EQ(world.Focus(), "diMainInfo.DocumentDate");
}

TEST(PurchaseRequestScreen, EnteringAGridSavesTheHeadWithTwoCalls) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("Description", "Ламарина");
  world.Calls();
  world.Press(KeyCode::F6);
  EXPECT_EQ(world.Calls(), 2);
  EXPECT_EQ(world.Focus().substr(0, 17), "gPurchaseOrderDet");
  EXPECT_EQ(world.Head().State(), DataSetState::Browse);
  EXPECT_EQ(world.server.applies.size(), 1u);
  EXPECT_EQ(world.server.applies[0].ownerData.AsArray()->at(1), Variant(true));
}

TEST(PurchaseRequestScreen, AHeadThatIsNotWholeKeepsTheUserOutOfTheGrids) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  for (const char* page : {"tsPurchaseOrderDet", "tsPurchaseOrderDel", "tsPOPayPl", "tsgPOAdm"}) {
    SCOPED_TRACE(page);
    world.Press(KeyCode::F10);
    world.Screen().Dispatch(PageChosen{"pcTables", page});
    EXPECT_EQ(world.Messages(), "Поле \"Дата на документ\" не е попълнено!");
    EXPECT_EQ(world.Focus(), "diMainInfo.DocumentDate");
    world.Press(Ctrl(KeyCode::Z));
  }
  EXPECT_TRUE(world.server.applies.empty());
}

// --- new requests -------------------------------------------------------------------------------

TEST(PurchaseRequestScreen, ANewRequestComesBackUnderItsIdentifier) {
  World world;
  Document document = MakeDocument(41);
  document.det = {MakeRow(41, 1)};
  document.deliveries = {{{"IdNumber", 3}}};
  world.server.documents = {document};
  world.Open();
  EXPECT_TRUE(world.Screen().pcTables.FindPage("tsDeliveries")->visible);
  world.StartNew();
  EXPECT_TRUE(world.Rows().IsEmpty());
  EXPECT_FALSE(world.Screen().pcTables.FindPage("tsDeliveries")->visible);
  EXPECT_EQ(world.Screen().eIdNum.Text() + world.Screen().eVer.Text(), "");
  EXPECT_NE(world.Screen().Status() & fsInserting, 0);
  EXPECT_EQ(world.Live({"acSave", "acCancel", "acRows", "acNewDoc", "acForConfirmation"}),
            "acSave acCancel acRows");
  world.Calls();
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.Messages(), "");
  EXPECT_EQ(world.Calls(), 2);
  EXPECT_EQ(world.Focus(), "eVer");
  EXPECT_EQ(world.Screen().eIdNum.Text() + "/" + world.Screen().eVer.Text(), "42/1");
  EXPECT_EQ(world.Screen().Status() & fsInserting, 0);
  const ApplyRequest& applied = world.server.applies.back();
  EXPECT_EQ(applied.ownerData.AsArray()->at(1), Variant(false));
  EXPECT_EQ(applied.ownerData.AsArray()->at(0).AsArray()->at(2), Variant("ivanova"));
  const NamedValues& sent = applied.delta.at(0).after;
  for (const NamedValue& expected : NamedValues{{"POIdNumber", -1},
                                                {"POVersion", 0},
                                                {"Status", 2},
                                                {"Notifier", kIvanova},
                                                {"IncTranspInPrice", 1},
                                                {"KindCurrency", kLev},
                                                {"RateOfExchange", Decimal(1, 0)},
                                                {"CreatedFrom", "ivanova"},
                                                {"OldVersion", false}})
    EXPECT_EQ(*FindValue(sent, expected.name), expected.value) << expected.name;
}

TEST(PurchaseRequestScreen, WhoIsNoRequesterStartsNothing) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.server.admissible = false;  // taken away while the screen is open
  world.Press(KeyCode::F10);
  EXPECT_EQ(world.Messages(),
            "Заявител с код 1204 няма право да създава \"Искане за покупка\"! (Виж \"Допустими "
            "заявители\")");
  EXPECT_EQ(world.Head().State(), DataSetState::Browse);
  EXPECT_EQ(world.Focus(), "eIdNum");
  EXPECT_EQ(world.Screen().eIdNum.Text(), "1");
}

TEST(PurchaseRequestScreen, WhoMustBeAnEmployeeAndIsNotGetsNoScreen) {
  World world;
  world.server.employee = 0;
  world.Open();
  EXPECT_EQ(world.Messages(),
            "Нямате права за работа с екрана. Липсва информация за Вас в таблица \"Служители\"!");
  EXPECT_TRUE(world.app->OpenForms().empty());

  World lower(15, 2, 2);
  lower.server.employee = 0;
  lower.server.admissible = false;
  lower.server.documents = {MakeDocument(1)};
  lower.Open();
  EXPECT_EQ(lower.Screen().eIdNum.Text(), "1");
  EXPECT_EQ(lower.Live({"acNewDoc", "acNewVersion", "acCopyDoc", "acPrint"}), "acPrint");
}

// --- paper --------------------------------------------------------------------------------------

TEST(PurchaseRequestScreen, PrintsWhatTheServerHoldsInWords) {
  World world;
  Document document = InCurrency(7, kWares, kDollar);
  Set(document.head, "Supplier", kSteel);
  Set(document.head, "Description", "Ламарина");
  Set(document.head, "SumPurchaseOrder", Decimal(12'345'000, 4));
  NamedValues dozens = MakeRow(7, 2);
  Set(dozens, "Quantity", 500.0);
  Set(dozens, "RowNumerator", 12);
  Set(dozens, "OrdinaryFraction", true);
  Set(dozens, "CurrSumWithoutVAT", Decimal(1'000'500, 4));
  document.det = {MakeRow(7, 1), dozens};
  document.adm = {{{"ConfirmationLevel", 1}, {"Status", 3}, {"EmpName", "Христо Колев"}}};
  world.server.documents = {document};
  world.Open();
  world.Calls();
  world.Press(KeyCode::F7);
  EXPECT_EQ(world.Calls(), 2);
  ASSERT_EQ(world.toolkit.reports.size(), 1u);
  const ReportSnapshot& printed = *world.toolkit.reports[0];
  const ReportDocument& report = printed.Document();
  EXPECT_EQ(report.company, "Проба ООД");
  EXPECT_EQ(report.number, "7");
  EXPECT_EQ(report.key.number, 25);
  std::map<std::string, std::string> facts;
  for (const ReportFact& fact : report.facts)
    facts[fact.label] = fact.value;
  EXPECT_EQ(facts["Доставчик"], "20117  Стил Трейд ООД");
  EXPECT_EQ(facts["Вид валута"], "Щатски долар");
  EXPECT_EQ(facts["Валутен курс"], "0,9234000");
  EXPECT_EQ(facts["Левова сума на искането"], "1\u2009234,50");
  EXPECT_EQ(facts.count("Сума на искането (Щатски долар)"), 1u);
  EXPECT_EQ(facts.count("Анулиран"), 0u);
  EXPECT_EQ(report.title, "Искане за покупка");
  ASSERT_EQ(report.tables.size(), 2u);
  EXPECT_EQ(report.tables[0].columns[5].title, "Сума без ДДС (Щатски долар)");
  const auto rows = fakes::TextsOf(printed);
  EXPECT_EQ(rows[0][4], "12,5");
  EXPECT_EQ(rows[1][4], "41 8/12");
  EXPECT_EQ(printed.Totals(0)[5].text, "100,05");
  const auto approvals = fakes::TextsOf(printed, 1);
  EXPECT_EQ(approvals[0][2], "Христо Колев");
  EXPECT_EQ(approvals[0][4], "Одобрен");
}

// --- one given request --------------------------------------------------------------------------

TEST(PurchaseRequestScreen, OneGivenRequestIsShownAndNothingElse) {
  World world;
  Document document = MakeDocument(7);
  document.roles = {{{"oKindUser", 2}, {"oConfirmationLevel", 1}, {"oConfirmationStats", 2}}};
  world.server.documents = {document, MakeDocument(9)};
  world.Open();
  world.Calls();
  std::string seen;
  world.toolkit.modals.push_back([&seen](TVosBaseForm& form) {
    auto& screen = static_cast<TfPurchaseOrder&>(form);
    seen = screen.eIdNum.Text() + (screen.eIdNum.readOnly ? " keys fixed" : "") +
           (screen.diMainInfo.readOnly ? " read only" : "");
    for (const char* action : {"acPriorY", "acNextY", "acNewDoc", "acConfirm", "acPrint"}) {
      if (screen.FindAction(action)->enabled) seen += std::string(" ") + action;
    }
  });
  TfPurchaseOrder::StartPurchaseOrder(world.Screen(), 7);
  EXPECT_EQ(seen, "7 keys fixed read only acConfirm acPrint");
  EXPECT_EQ(world.Calls(), 2);
  TfPurchaseOrder::StartPurchaseOrder(world.Screen(), 70);
  EXPECT_EQ(world.Messages(), "Документ 70 не е намерен!");
}

}  // namespace
}  // namespace orvane::modules::requests
