// Rules of purchase requests: what must be filled, what follows a change of the head, rows with
// their units and quantities, the payment plan, and what stays when the link breaks.

#include <gtest/gtest.h>

#include "modules/request_world.h"

namespace orvane::modules::requests {
namespace {

namespace head = purchase_request::head;
namespace det = purchase_request::det;
namespace pay = purchase_request::pay;

std::string Filled(std::string_view field) {
  return "Поле \"" + std::string(field) + "\" не е попълнено!";
}

/// Mends one fault a line: the message names the next one, and the focus goes there.
TEST(PurchaseRequestRules, TheHeadIsCheckedInItsOrder) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.Press(KeyCode::F10);
  struct Rung {
    const char* label;
    const char* field;
    const char* mend;
  };
  const Rung rungs[] = {
      {"Дата на документ", "DocumentDate", "05.03.2026"},
      {"Център за разход", "CostCenter", "1001"},
      {"Вид покупка", "KindSupply", "5"},
      {"Доставчик", "Supplier", "20117"},
      {"Идентификатор на договор", "ContractId", "38"},
      {"Включен транспорт в цената", "IncTranspInPrice", ""},
      {"Вид валута", "KindCurrency", ""},
  };
  for (const Rung& rung : rungs) {
    SCOPED_TRACE(rung.field);
    if (*rung.mend == 0) world.Type(rung.field, "");
    world.Press(KeyCode::F9);
    EXPECT_EQ(world.Messages(), Filled(rung.label));
    EXPECT_EQ(world.Focus(), std::string("diMainInfo.") + rung.field);
    world.Type(rung.field, *rung.mend != 0                                  ? rung.mend
                           : std::string_view(rung.field) == "KindCurrency" ? "1"
                                                                            : "2");
  }
  EXPECT_TRUE(world.server.applies.empty());
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.Messages(), "");
  EXPECT_EQ(world.server.applies.size(), 1u);
}

TEST(PurchaseRequestRules, OtherKindsNeedNoSupplier) {
  for (const int kind : {kCapital, kBrm, kServices, kOther, kWares, kPriced}) {
    World world;
    world.server.documents = {MakeDocument(1)};
    world.Open();
    world.StartNew();
    world.Type("KindSupply", std::to_string(kind));
    world.Press(KeyCode::F9);
    const bool contracted = kind == kCapital || kind == kBrm || kind == kWares;
    EXPECT_EQ(world.Messages(), contracted ? Filled("Доставчик") : "") << kind;
    EXPECT_EQ(world.Screen().diMainInfo.FindItem("Supplier")->required, contracted);
  }
}

// --- what follows a change of the head ----------------------------------------------------------

TEST(PurchaseRequestRules, AContractBelongsToSupplierAndKind) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.StartNew();
  world.Type("KindSupply", "5");
  world.Type("Supplier", "20117");
  EXPECT_EQ(world.Screen().values.vMaxTermOfPayment, 45);  // the supplier's
  world.Type("ContractId", "38");
  EXPECT_EQ(world.Head()[head::IncTranspInPrice].AsInt(), 2);
  EXPECT_EQ(world.Screen().values.vMaxTermOfPayment, 60);  // the contract's
  world.Type("ContractId", "39");
  EXPECT_EQ(world.Head()[head::IncTranspInPrice].AsInt(), 1);
  EXPECT_EQ(world.Screen().values.vMaxTermOfPayment, 60);  // this one has none
  world.Type("Supplier", "20117");
  EXPECT_EQ(world.Head()[head::ContractId].AsInt(), 39);  // the same supplier again
  world.Type("KindSupply", "5");
  EXPECT_EQ(world.Head()[head::ContractId].AsInt(), 39);
  world.Type("Supplier", "20200");
  EXPECT_TRUE(world.Head()[head::ContractId].IsNull());
  EXPECT_EQ(world.Head()[head::KindCurrency].AsInt(), kDollar);  // the supplier's
  world.Type("ContractId", "40");
  EXPECT_EQ(world.Head()[head::ContractId].AsInt(), 40);
  world.Type("ContractId", "38");  // of another supplier: not offered
  EXPECT_EQ(world.Messages(), "Няма „38“ в списъка „Идентификатор на договор“.");
  world.Press(KeyCode::Escape);
  world.Type("KindSupply", "");
  EXPECT_TRUE(world.Head()[head::ContractId].IsNull());
  world.Type("Supplier", "");
  EXPECT_EQ(world.Head()[head::KindCurrency].AsInt(), kDollar);  // stays
  world.Type("Supplier", "20117");
  EXPECT_EQ(world.Head()[head::KindCurrency].AsInt(), kLev);  // that one names none
}

TEST(PurchaseRequestRules, TheRateFollowsCurrencyAndDate) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.StartNew();
  const auto rate = [&world] { return world.Head()[head::RateOfExchange].Text(); };
  EXPECT_EQ(rate(), "1,0000000");
  world.server.rate = Decimal(9'234'000, 7);
  world.Calls();
  world.Type("KindCurrency", "3");
  EXPECT_EQ(world.Calls(), 1);
  EXPECT_EQ(rate(), "0,9234000");
  const VariantArray& asked = *FindValue(world.server.fetches.back().params, "Data")->AsArray();
  EXPECT_EQ(asked, (VariantArray{1, kDollar, *Date::FromYmd(2026, 3, 5)}));
  world.server.rate = Decimal(9'000'000, 7);
  world.Type("DocumentDate", "06.03.2026");
  EXPECT_EQ(rate(), "0,9000000");
  world.server.rate = {};
  world.Type("DocumentDate", "07.03.2026");
  EXPECT_EQ(rate(), "1,0000000");  // nothing known
  world.Type("RateOfExchange", "0,95");
  EXPECT_EQ(rate(), "0,9500000");
  const std::size_t fetches = world.server.fetches.size();
  world.Head()[head::KindCurrency].Set(Variant(kLev));
  EXPECT_EQ(rate(), "1,0000000");
  EXPECT_EQ(world.server.fetches.size(), fetches);
}

TEST(PurchaseRequestRules, TheRequesterChoosesTheCostCentresButKeepsTheChosenOne) {
  World world;
  for (NamedValues& row : world.server.tables["CostCenters"])
    Set(row, "Notifier", kIvanova);
  world.server.documents = {MakeDocument(1)};
  world.Open();
  EXPECT_EQ(world.Rules().costCenters.Param("Notifier"), Variant(kIvanova));
  world.Head().Edit();
  world.Head()[head::Notifier].Set(Variant(1300));
  EXPECT_TRUE(world.Rules().costCenters.IsStale());
  EXPECT_EQ(world.Head()[head::CostCenter].AsInt(), 1001);
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("CostCenter", "1002");
  EXPECT_EQ(world.Messages(), "Няма „1002“ в списъка „Център за разход“.");
}

TEST(PurchaseRequestRules, TheSupplyListFollowsContractSupplierAndParameters) {
  struct Case {
    const char* who;
    Variant supplier, contract;
    const char* choice;  ///< the parameter
    const char* from;    ///< of the statement; empty: nothing is searched
    const char* message;
  };
  const Case cases[] = {
      {"contract", kSteel, 38, "1", "SupplyListsDates", ""},
      {"supplier", kSteel, 39, "3", "BaseSupplyList", ""},
      {"parameters", kForeign, {}, "3", "BaseSupplyListDates", ""},
      {"none", {}, {}, "", "", "Не е попълнен параметър \"Начин на избор в списък за доставка\"!"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.who);
    World world;
    world.server.params[11][3] = row.choice;
    Document document = MakeDocument(1);
    Set(document.head, "Supplier", row.supplier);
    Set(document.head, "ContractId", row.contract);
    world.server.documents = {document};
    world.Open();
    EXPECT_EQ(world.Messages(), row.message);
    std::string text;
    for (const std::string& line : world.Rules().kpl.dlgSQL)
      text += line + "\n";
    EXPECT_EQ(text.empty(), *row.from == 0);
    const std::string from = *row.from == 0 ? "" : "FROM " + std::string(row.from) + " ";
    EXPECT_NE(text.find(from), std::string::npos);
  }
}

// --- rows ---------------------------------------------------------------------------------------

/// A world with one entered request, standing in its rows.
class Rowed : public World {
 public:
  explicit Rowed(Document document = WithSupplier()) {
    server.documents = {std::move(document)};
    Open();
    Press(KeyCode::F6);
  }
  static Document WithSupplier() {
    Document document = MakeDocument(1);
    Set(document.head, "KindSupply", kCapital);
    Set(document.head, "Supplier", kSteel);
    return document;
  }
  void NewRow() {
    Press(Ctrl(KeyCode::End));
    Press(Rows().IsEmpty() ? KeyStroke(KeyCode::Insert) : KeyStroke(KeyCode::Down));
  }
};

TEST(PurchaseRequestRules, ARowTakesWhatItsEntryKnows) {
  Rowed world;
  world.Calls();
  world.NewRow();
  EXPECT_EQ(world.Focus(), "gPurchaseOrderDet.RowNumber");
  EXPECT_EQ(world.Rows()[det::RowNumber].AsInt(), 1);
  EXPECT_EQ(world.Calls(), 0);
  world.Type("SerialNumber", "20045");
  TVosClientDataSet& row = world.Rows();
  EXPECT_EQ(row[det::bslName].AsString(), "Ламарина 2 мм");
  EXPECT_EQ(row[det::InventoryId].AsInt(), 900);
  EXPECT_TRUE(row[det::ServiceCode].IsNull());
  EXPECT_EQ(row[det::Measure].AsInt(), 101);
  EXPECT_EQ(row[det::MsrName].AsString(), "кг");
  EXPECT_EQ(row[det::Numerator].AsInt(), 1);
  EXPECT_EQ(row[det::Quantity].Text(), "0");
  world.Type("Measure", "102");
  EXPECT_EQ(row[det::RowNumerator].AsInt(), 1000);
  EXPECT_EQ(row[det::Numerator].AsInt(), 1);  // the entry's own unit
  world.Type("Quantity", "1,25");
  EXPECT_EQ(row[det::Quantity].AsDouble(), 1250.0);
  world.Type("SerialNumber", "40001");
  EXPECT_TRUE(row[det::InventoryId].IsNull());
  EXPECT_EQ(row[det::ServiceCode].AsInt(), 77);
  EXPECT_EQ(row[det::Quantity].AsDouble(), 0.0);
  EXPECT_NE(world.server.SqlOf("Measures").find("WHERE Code >= 300 AND Code <= 399"),
            std::string::npos);
}

TEST(PurchaseRequestRules, RowsAreNumberedBehindTheHighest) {
  Document document = Rowed::WithSupplier();
  document.det = {MakeRow(1, 1), MakeRow(1, 5)};
  Rowed world(document);
  world.NewRow();
  EXPECT_EQ(world.Rows()[det::RowNumber].AsInt(), 6);
  EXPECT_EQ(world.Screen().gPurchaseOrderDet.fixedCols, 1);
  EXPECT_EQ(world.Live({"acDelete", "acCancel"}), "acCancel");
}

TEST(PurchaseRequestRules, ARowIsCheckedInItsOrder) {
  Rowed world;
  world.NewRow();
  world.Type("Remarks", "спешно");
  struct Rung {
    const char* message;
    const char* field;
    const char* mend;
  };
  const std::string rest =
      "Въведеното количество трябва да бъде по-малко или равно от \"Остатък за искане\" за "
      "избраната поръчка!";
  const std::string serial = Filled("Пореден номер"), measure = Filled("Код"),
                    quantity = Filled("Количество"), sum = Filled("Сума");
  const Rung rungs[] = {
      {serial.c_str(), "SerialNumber", "20045"},   {measure.c_str(), "Measure", "101"},
      {quantity.c_str(), "Quantity", "100,01"},    {rest.c_str(), "Quantity", "100"},
      {sum.c_str(), "CurrSumWithoutVAT", "12,50"},
  };
  for (const Rung& rung : rungs) {
    SCOPED_TRACE(rung.message);
    world.Press(KeyCode::Down);
    EXPECT_EQ(world.Messages(), rung.message);
    EXPECT_EQ(world.Focus(), std::string("gPurchaseOrderDet.") + rung.field);
    EXPECT_EQ(world.Rows().State(), DataSetState::Insert);
    world.Type(rung.field, rung.mend);
    if (std::string_view(rung.field) == "SerialNumber") {
      world.Type("Measure", "");
      world.Type("Quantity", " ");
      world.Type("CurrSumWithoutVAT", "");
      world.Type("SuppManifacOrderId", "112");
      EXPECT_EQ(world.Rows()[det::SMOName].AsString(), "Поръчка метали");
    }
  }
  EXPECT_TRUE(world.server.applies.empty());
  world.Calls();
  world.Press(KeyCode::Down);
  EXPECT_EQ(world.Messages(), "");
  EXPECT_EQ(world.Calls(), 2);  // what the order leaves, the post; rows are not loaded again
  ASSERT_EQ(world.server.applies.size(), 1u);
  const NamedValues& sent = world.server.applies[0].delta.at(0).after;
  EXPECT_EQ(*FindValue(sent, "PurchaseOrderId"), Variant(1));
  EXPECT_EQ(*FindValue(sent, "PurchaseOrderVer"), Variant(1));
  EXPECT_EQ(*FindValue(sent, "Quantity"), Variant(100.0));
  EXPECT_EQ(FindValue(sent, "bslName"), nullptr);
}

TEST(PurchaseRequestRules, UnitsAreThoseOfTheBlockOrTheItemsOwn) {
  struct Case {
    const char* ownOnly;
    const char* serial;
    const char* clause;
  };
  const Case cases[] = {{"0", "20045", "WHERE Code >= 100 AND Code <= 199"},
                        {"1", "20045", "WHERE Code IN (101,101,102)"},
                        {"1", "40001", "WHERE Code >= 300 AND Code <= 399"}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.clause);
    World world;
    world.server.params[1][283] = row.ownOnly;
    world.server.documents = {Rowed::WithSupplier()};
    world.Open();
    world.Press(KeyCode::F6);
    world.Press(KeyCode::Insert);
    world.Type("SerialNumber", row.serial);
    EXPECT_NE(world.server.SqlOf("Measures").find(row.clause), std::string::npos);
  }
}

TEST(PurchaseRequestRules, QuantitiesReadInEachRowsOwnUnit) {
  NamedValues dozens = MakeRow(1, 2);
  Set(dozens, "Quantity", 500.0);
  Set(dozens, "RowNumerator", 12);
  Set(dozens, "OrdinaryFraction", true);
  Set(dozens, "roundQNT", 0);
  NamedValues tons = MakeRow(1, 3);
  Set(tons, "Quantity", 1250.0);
  Set(tons, "RowNumerator", 1000);
  Document document = Rowed::WithSupplier();
  document.det = {MakeRow(1, 1), dozens, tons};
  Rowed world(document);
  TVosClientDataSet& rows = world.Rows();
  const TField& quantity = rows[det::Quantity];
  EXPECT_EQ(rows.TextAt(0, quantity), "12,5");
  EXPECT_EQ(rows.TextAt(1, quantity), "41 8/12");
  EXPECT_EQ(rows.TextAt(2, quantity), "1,25");
  world.Type("Quantity", "12,505");
  EXPECT_EQ(world.Messages(),
            "Поле „Количество“: Количеството на тази стока е с най-много 2 знака след "
            "запетаята.");
  EXPECT_EQ(rows[det::Quantity].AsDouble(), 12.5);
}

TEST(PurchaseRequestRules, FractionsAskForTheQuantityInUnits) {
  NamedValues dozens = MakeRow(1, 1);
  Set(dozens, "Measure", 212);
  Set(dozens, "SerialNumber", 30140);
  Set(dozens, "InventoryId", 901);
  Set(dozens, "Quantity", 500.0);
  Set(dozens, "RowNumerator", 12);
  Set(dozens, "OrdinaryFraction", true);
  Document document = Rowed::WithSupplier();
  document.det = {dozens};
  Rowed world(document);
  std::string seen;
  const auto play = [&seen](const char* count, KeyStroke last) {
    return [&seen, count, last](TVosBaseForm& form) {
      auto& grid = dynamic_cast<TVosDBGrid&>(*form.FindControl("gUnits"));
      for (std::size_t row = 0; row < grid.DataSet().RecordCount(); ++row) {
        seen += grid.DataSet().TextAt(row, grid.DataSet().FieldByName("Count")) + " " +
                grid.DataSet().TextAt(row, grid.DataSet().FieldByName("Name")) + " ";
      }
      fakes::Type(form, count);
      fakes::Press(form, last);
    };
  };
  EXPECT_FALSE(world.IsLive("acQuantity"));
  world.toolkit.modals.push_back(play("3", KeyCode::F9));
  world.Screen().Dispatch(
      Pointed{&world.Screen().gPurchaseOrderDet, 0,
              static_cast<int>(world.Screen().gPurchaseOrderDet.FindColumn("Quantity") -
                               world.Screen().gPurchaseOrderDet.columns.data())});
  EXPECT_EQ(seen, "41 дузина 8 бр. ");
  EXPECT_EQ(world.Rows()[det::Quantity].AsDouble(), 44.0);
  EXPECT_EQ(world.Rows()[det::Quantity].Text(), "3 8/12");
  EXPECT_TRUE(world.IsLive("acQuantity"));
  world.toolkit.modals.push_back(play("9", KeyCode::Escape));
  world.Press(Ctrl(KeyCode::Q));
  EXPECT_EQ(world.Rows()[det::Quantity].AsDouble(), 44.0);
}

TEST(PurchaseRequestRules, DeletingARowAsksFirst) {
  Document document = Rowed::WithSupplier();
  document.det = {MakeRow(1, 1), MakeRow(1, 2)};
  Rowed world(document);
  world.Press(KeyCode::F5);
  EXPECT_EQ(world.Messages(), "Желаете ли да изтриете текущия запис?");
  EXPECT_EQ(world.Rows().RecordCount(), 2u);
  world.AnswerYes();
  world.Press(KeyCode::F5);
  EXPECT_EQ(world.Rows().RecordCount(), 1u);
  EXPECT_EQ(world.server.applies.back().delta.at(0).kind, ChangeKind::Delete);
}

// --- payment plan -------------------------------------------------------------------------------

TEST(PurchaseRequestRules, PaymentsAreDueByTheTermInForceAndCheckedInOrder) {
  Rowed world;
  world.Screen().Dispatch(PageChosen{"pcTables", "tsPOPayPl"});
  world.Press(KeyCode::Insert);
  TVosClientDataSet& plan = world.Rules().cdsPurchaseOrderPayPl;
  EXPECT_FALSE(plan[pay::AdvancePayment].AsBool());
  world.Type("InvoiceDate", "10.03.2026");
  EXPECT_EQ(plan[pay::PaymentDate].Text(), "24.04.2026");  // the supplier's 45 days
  for (const char* field : {"InvoiceDate", "SumWithVAT", "PaymentDate"})
    world.Type(field, "");
  struct Rung {
    const char* label;
    const char* field;
    const char* mend;
  };
  for (const Rung& rung : {Rung{"Дата на фактура", "InvoiceDate", "11.03.2026"},
                           Rung{"Сума с ДДС", "SumWithVAT", "120"},
                           Rung{"Дата на плащане", "PaymentDate", "30.03.2026"}}) {
    world.Type("PaymentDate", "");  // filled again with each invoice date
    world.Press(KeyCode::Down);
    EXPECT_EQ(world.Messages(), Filled(rung.label));
    EXPECT_EQ(world.Focus(), std::string("gPOPayPl.") + rung.field);
    world.Type(rung.field, rung.mend);
  }
  world.Press(KeyCode::Down);
  EXPECT_EQ(world.Messages(), "");
  EXPECT_EQ(world.server.applies.back().provider, "dspPurchaseOrderPayPl");
}

// --- refusals and the link ----------------------------------------------------------------------

TEST(PurchaseRequestRules, ARefusedHeadShowsWhatTheServerHolds) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("CostCenter", "1002");
  world.server.refuseNext = Refused("Искане 1 е изпратено от друг потребител.");
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.Messages(), "Искане 1 е изпратено от друг потребител.");
  EXPECT_EQ(world.Head()[head::CostCenter].AsInt(), 1001);
  EXPECT_EQ(world.Focus(), "eIdNum");
  EXPECT_EQ(world.Head().ChangeCount(), 0u);
  world.FocusOn(world.Screen().diMainInfo);
  world.Press(KeyCode::F9);  // nothing to save: the refusal is over
  EXPECT_EQ(world.Focus(), "eVer");
}

TEST(PurchaseRequestRules, ABrokenLinkLosesNothingTyped) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.FocusOn(world.Screen().diMainInfo);
  world.Type("CostCenter", "1002");
  world.server.failNext = Failure{FailureKind::LinkDown, ""};
  world.Press(KeyCode::F9);  // "try again?" is answered No
  EXPECT_NE(world.Messages(), "");
  EXPECT_EQ(world.Head()[head::CostCenter].AsInt(), 1002);
  EXPECT_TRUE(world.Screen().HasWaiting());
  world.FocusOn(world.Screen().eIdNum);  // sent before anything is loaded
  EXPECT_EQ(world.Messages(), "");
  EXPECT_FALSE(world.Screen().HasWaiting());
  ASSERT_EQ(world.server.applies.size(), 2u);
  EXPECT_EQ(world.server.applies[0].delta, world.server.applies[1].delta);
  EXPECT_EQ(*FindValue(world.server.documents[0].head, "CostCenter"), Variant(1002));
}

}  // namespace
}  // namespace orvane::modules::requests
