// Every search template of the screens is understood and runs on both engines.

#include "server/dialect_world.h"

namespace orvane::server {
namespace {

struct Template {
  const char* name;
  const char* sql;
};

constexpr char kSupplyNames[] =
    "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN "
    "S.Name "
    "END WHEN 0 THEN B.Name END";

// With the macros as the client replaces them, and conditions of the user on every other one.
constexpr Template kTemplates[] = {
    {"users",
     "select ShortName,UserName,UserName2 \nfrom WSysUsers WITH(NOLOCK)\n"
     "WHERE UserName LIKE :Begins\nORDER BY UserName"},
    {"kinds of supplies",
     "SELECT Code, Name, Name2\nFROM KindSupplies \nWITH(NOLOCK)\n"
     "WHERE Name LIKE :Contains\nORDER BY Name"},
    {"kinds of supplies, lower case",
     "select Code,Name,Name2 \nfrom KindSupplies WITH(nolock)\n\n"},
    {"kinds of supplies, one language",
     "DECLARE @FirstLanguage BIT\nSET @FirstLanguage = :FirstLanguage\n\nSELECT Code, \n"
     "  CASE WHEN @FirstLanguage = 1 THEN Name ELSE Name2 END AS Name\n"
     "FROM KindSupplies WITH(NOLOCK)\nWHERE Name LIKE :Begins\nORDER BY Name "},
    {"two kinds of supplies",
     "SELECT Code, Name FROM KindSupplies WHERE Code IN (:BRM, :Wares) "
     "AND Code = :Code\nORDER BY Code"},
    {"kinds of supply lists", "SELECT Code, Name, Name2\nFROM KindSupplyLists WITH(NOLOCK)\n\n"},
    {"stock documents",
     "SELECT Code, Name, Name2\nFROM KindDocInventory WITH(NOLOCK)\n"
     "WHERE KindOperation = 1\nAND Name LIKE :Begins\nORDER BY Name"},
    {"employees",
     "SELECT Employee, Name, Name2\nFROM Employees WITH(NOLOCK)\n"
     "WHERE Name2 LIKE :Contains\nORDER BY Name2 DESC"},
    {"nomenclature",
     "SELECT Element, Name, Name2 \nFROM NomIn WITH (NOLOCK)\n"
     "WHERE Nomenclature = :Nom\nORDER BY Element"},
    {"nomenclature 283",
     "SELECT Nomenclature, Element, Name, Name2 FROM NomIn\n"
     "WHERE Nomenclature = 283"},
    {"nomenclature by language",
     "SELECT Element, \n  CASE :NomInLanguage\n    WHEN 1 THEN Name\n    WHEN 2 THEN Name2\n"
     "    WHEN 3 THEN Name3\n    WHEN 4 THEN Name4\n    WHEN 5 THEN Name5\n    WHEN 6 THEN Name6\n"
     "    WHEN 7 THEN Name7\n    WHEN 8 THEN Name8\n    WHEN 9 THEN Name9\n    WHEN 10 THEN "
     "Name10\n"
     "  END Name\nFROM NomIn WITH (NOLOCK)\nWHERE Nomenclature = :NomIn\nORDER BY Element"},
    {"nomenclature, all names",
     "SELECT Element, Name, Name2, Name3, Name4, Name5, Name6, Name7, Name8, Name9, Name10 "
     "FROM NomIn (NOLOCK) WHERE Nomenclature = :NomIn"},
    {"cost centres",
     "SELECT CostCenter, Name, Name2\nFROM CostCenters\nWITH(NOLOCK) \n"
     "WHERE CostCenter = :Code\nORDER BY CostCenter"},
    {"departments", "SELECT Code, Name, Name2\nFROM Departments\nWITH(NOLOCK)\n\nORDER BY Name2"},
    {"sections", "SELECT Section, Name, Name2\nFROM Sections\nWITH(NOLOCK)\n\n"},
    {"capital plan",
     "SELECT Code, Name, Name2\nFROM CapExPlan WITH(NOLOCK)\n"
     "WHERE Code IN (:Code, :Code2)\nORDER BY Code"},
    {"admissible cost centres",
     "SELECT cc.CostCenter, cc.Name, cc.Name2\nFROM CostCenters cc WITH(NOLOCK)\n"
     "INNER JOIN AdmissibleNotifiers an WITH(NOLOCK)\n"
     "ON an.CostCenter = cc.CostCenter AND an.Notifier = :Notifier\n"
     "WHERE Name LIKE :Begins AND CostCenter = :Code\nORDER BY Name"},
    {"suppliers",
     "SELECT Partner, Name, Name2, SuppKindCurrency, \n"
     " KindSupplyChoice, KindSupplyList, SuppMaxTermOfPayment\n"
     "FROM Partners WITH(NOLOCK)\nWHERE PartnerTypeSupplier = 1\n"
     "AND Name LIKE :Begins\nORDER BY Name"},
    {"suppliers with invoices",
     "SELECT p.Partner, p.Name, p.Name2, s.KindInvoice\nFROM Partners p WITH(NOLOCK)\n"
     "LEFT OUTER JOIN SupplyInvoiceDescr s WITH(NOLOCK)\nON p.SupplyInvoiceDescr = s.Code \n"
     "WHERE p.Name LIKE :Contains\nORDER BY p.Name"},
    {"candidates",
     "SELECT Partner, Name, Name2 , Seat, Address, Address2,  Telephone1, Telephone2, "
     "email\nFROM Partners WITH (NOLOCK)\nWHERE PartnerTypeSupplier = 1\n\n"},
    {"contracts",
     "SELECT IdNumber, ShortDescription, ShortDescription2, ContractDate, \n"
     " KindSupplyChoice, KindSupplyList, MaxTermOfPayment, InclTransportInPrice\n"
     "FROM SuppliesContracts WITH(NOLOCK)\nWHERE Supplier = :Supplier AND \n"
     " KindContract = :KindSupp AND Active = 1\nAND ShortDescription LIKE :Begins\n"
     "ORDER BY ShortDescription"},
    {"contracts with production",
     "SELECT IdNumber, ShortDescription, ContractDate, InclTransportInPrice, KindSupplyList, "
     "KindSupplyChoice FROM SuppliesContracts WITH(NOLOCK)\n"
     "WHERE Supplier = :Supplier AND KindContract = :KindSupp AND\nActive = 1 AND ManifacOrder = "
     "1"},
    {"currencies", "SELECT Code, Name, Name2\nFROM Currencies\nWITH(NOLOCK)\n\n"},
    {"orders of an item",
     "SELECT O.IdNumber, CAST(O.Description AS VARCHAR(50)) Description, \n"
     " CAST(O.Description2 AS VARCHAR(50)) Description2, \n  O.DocumentDate,\n"
     "  OD.CalcQuantity, OD.CalcOrderedQunatity, "
     "OD.CalcQuantity - OD.CalcOrderedQunatity RestOrdQNT,\n"
     "  OD.CalcDeliverQuantity, OD.CalcQuantity - OD.CalcDeliverQuantity RestDlvrQNT\n"
     "FROM SuppManifacOrder O  WITH(NOLOCK)\nINNER JOIN SuppManOrderDet OD  WITH(NOLOCK)\n"
     "ON O.IdNumber = OD.SuppManOrderId AND OD.SerialNumber = :SerialNumber\n"
     "WHERE O.Supplier = :Supplier AND O.Status IN (5,6) AND O.AnnulFrom IS NULL\n"
     "AND O.IdNumber = :Code\nORDER BY O.IdNumber"},
    {"supplier orders",
     "SELECT IdNumber, CAST(Description AS VARCHAR(50)) Description, \n"
     " CAST(Description2 AS VARCHAR(50)) Description2\n"
     "FROM SuppManifacOrder WITH(NOLOCK)\nWHERE Description LIKE :Contains\n"
     "ORDER BY Description"},
    {"measures",
     "SELECT Code, Numerator, OrdinaryFraction, Name, Name2\n"
     "FROM Measures WITH(NOLOCK)\nWHERE Code >= 100 AND Code <= 199\n\n"},
    {"all measures",
     "SELECT Code, Numerator, OrdinaryFraction, Name, Name2\n"
     "FROM Measures WITH(NOLOCK)\nWHERE 1=1\nAND Name LIKE :Begins\nORDER BY Name"},
    {"own measures",
     "SELECT Code, Numerator, OrdinaryFraction, Name, Name2\n"
     "FROM Measures WITH(NOLOCK)\nWHERE Code IN (101,102,103)\n\n"},
    {"requests report",
     "SELECT po.POIdNumber, CAST(po.POVersion AS INT) POVersion, \n"
     "  CAST(po.Description AS VARCHAR(50)) Description, "
     "CAST(po.Description2 AS VARCHAR(50)) Description2,\n"
     "  po.CostCenter, c.Name CCName, c.Name2 CCName2, \n"
     "  po.Supplier, P.Name SuppName, P.Name2 SuppName2, po.Status\n"
     "FROM PurchaseOrder po WITH (NOLOCK)\nLEFT OUTER JOIN CostCenters c WITH (NOLOCK)\n"
     "ON c.CostCenter = po.CostCenter\nLEFT OUTER JOIN Partners P WITH (NOLOCK)\n"
     "ON P.Partner = po.Supplier\nWHERE 1=1\n"
     " AND po.CreatedFrom = 'ivanova' AND po.CostCenter = 1001 AND po.POIdNumber >= 1"
     " AND po.POIdNumber <= 99 AND po.DocumentDate >= '20260101' AND po.DocumentDate <= "
     "'20261231' AND po.KindSupply = 5 AND po.Supplier = 9000000000000000001"
     " AND po.POIdNumber IN (SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE "
     "SuppManifacOrderId = 3)  AND po.Status = 5 AND po.AnnulOn IS NULL  AND po.POIdNumber IN "
     "(SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE SerialNumber = 20045)  AND "
     "po.OldVersion = 0 "},
    {"requests report, unfiltered",
     "SELECT po.POIdNumber, po.Status\nFROM PurchaseOrder po WITH (NOLOCK)\nWHERE 1=1\n--"},
    {"requests of a supplier",
     "SELECT p.POIdNumber, p.POVersion, p.Description, p.Description2, "
     "CAST(p.Description AS VARCHAR(50)) TextDescr FROM PurchaseOrder p WITH(NOLOCK)\n"
     "Where p.Status IN (5, 6) and p.AnnulOn IS NULL AND p.OldVersion=0 and "
     "((p.Supplier=:Partner) or (p.Supplier IS NULL))\n\n"},
    {"requests to deliver",
     "SELECT p.POIdNumber, CAST(p.Description AS VARCHAR(50)) Description, "
     "CAST(p.Description2 AS VARCHAR(50)) Description2 FROM PurchaseOrder p\n"
     "Where p.Status IN (5, 6) and p.AnnulOn IS NULL AND p.OldVersion=0\nORDER BY p.POIdNumber"},
    {"planned dates",
     "SELECT Deliverydate,Delivered\nFROM PurchaseOrderDel a WITH(NOLOCK)\n"
     "WHERE a.PurchaseOrderId=:IdNumber AND a.PurchaseOrderVer=:Ver\n"
     "ORDER BY  Delivered, Deliverydate desc "},
    {"stores",
     "SELECT s.Code, s.Name, s.Name2 FROM stores s WITH(NOLOCK)\n"
     "INNER JOIN UserAccessToStores ua WITH(NOLOCK)\n ON s.code=ua.Store \n"
     "WHERE ua.ForUser=:UserName "},
    {"deliveries report",
     "SELECT po.IdNumber, po.DeliveryDate, po.KindSupply, k.Name ksName, k.Name2 ksName2, "
     "po.Supplier, s.Name SuppName, s.Name2 SuppName2, po.Status FROM Deliveries po\n"
     "LEFT JOIN KindSupplies k ON k.Code = po.KindSupply\n"
     "LEFT JOIN Partners s ON s.Partner = po.Supplier\nWHERE 1=1\n"
     " AND po.CreatedFrom = 'ivanova' AND po.IdNumber >= 1 AND po.DeliveryDate >= '20260101'"
     " AND po.AnnulOn IS NULL  AND po.PurchaseOrderId = 7 "},
    {"invoices report",
     "SELECT s.IdNumber, s.JoinedDate,\nCAST(s.InvoiceNumber as VARCHAR(20)) InvoiceNumber, "
     "s.InvoiceDate, \ns.Supplier, p.Name SuppName, p.Name2 SuppName2, s.CurrSumWithVATRb \n"
     "FROM dbo.SuppInvRegister s\nLEFT OUTER JOIN Partners p \nON (s.Supplier = p.Partner)\n"
     "WHERE 1=1\n AND s.JoinedDate >= '20260101' AND s.InvoiceNumberDigit >= 1 AND "
     "s.InvoiceNumberSymbol <= 'Б''7' AND s.KindSupply = 5 AND s.CurrSumWithVATRb > 12.5\n"
     "ORDER BY IdNumber"},
    {"invoice descriptions",
     "SELECT Code, Name, Name2\nFROM SupplyInvoiceDescr WITH(NOLOCK)\n"
     "WHERE AdvanceInvoice = 0 AND KindInvoice in (1,2) AND Respondent = 1\n"},
    {"debit notices",
     "DECLARE @KindInvoice int\nSET @KindInvoice = :KindInvoice\n\n"
     "SELECT Code, Name, Name2\nFROM SupplyInvoiceDescr WITH(NOLOCK)\n"
     "WHERE AdvanceInvoice = 0 AND Respondent = 1\n"
     "AND KindInvoice = case @KindInvoice when 1 then 3 when 2 then 4 else 100 end\n"
     "AND Name LIKE :Begins\nORDER BY Name"},
    {"order descriptions", "SELECT Code, Name, Name2\nFROM SupplyRequestDescr WITH(NOLOCK)\n\n"},
    {"receipt descriptions", "SELECT Code, Name, Name2\nFROM SupplyArtVchDescr WITH(NOLOCK)\n\n"},
    {"ways of payment",
     "SELECT Element, NAME, NAME2 FROM FreeNomElements\nWITH(NOLOCK)\n"
     "WHERE FreeNomenclature = 15\nAND NAME LIKE :Begins\nORDER BY NAME"},
    {"towns", "SELECT Code, Name, Name2 \nFROM TownsAndVillages WITH (NOLOCK)\n\nORDER BY Name"},
    {"questionnaires",
     "SELECT IdNumber, SupplierName, SupplierName2, Seat, Address, Address2, \n"
     "  ContactPerson, ContactPerson2, Phone1, Phone2, email\n"
     "FROM QuestionInitEvalMap WITH (NOLOCK)\nWHERE SupplierName LIKE :Begins\n"
     "ORDER BY SupplierName"},
    {"main points",
     "SELECT SerialNumber, Name, Name2 \nFROM CriteriaEvalSupp WITH (NOLOCK)\n"
     "WHERE CriteriaType = :CriteriaType\n\nORDER BY SerialNumber"},
    {"criteria",
     "SELECT SerialNumber, Name, Name2, EvalFixedPoints\n"
     "FROM CriteriaEvalSupp WITH (NOLOCK)\nWHERE CriteriaType = 1 AND HeadPoint = 1\n"},
    {"periodic criteria",
     "SELECT SerialNumber, Name, Name2, EvalFixedPoints, MinCountPoints, MaxCountPoints\n"
     "FROM CriteriaEvalSupp WITH (NOLOCK)\nWHERE CriteriaType = 2\n\n"},
};

/// The four searches of the supply list.
std::string SupplyTemplate(const std::string& rows, bool distinct, const std::string& measure,
                           const std::string& condition) {
  const std::string names(kSupplyNames);
  std::string names2 = names;
  for (const char* name : {"M.Name", "S.Name", "B.Name"}) {
    names2.replace(names2.find(std::string(name)), 6, std::string(name) + "2");
  }
  return std::string("SELECT ") + (distinct ? "DISTINCT " : "") +
         "B.SerialNumber, B.InventoryCode, B.ServiceCode,\n" + names + " cbName, " + names2 +
         " cbName2,\n" + measure +
         ".Measure bslMeasure, M.Measure msMeasure, M.IncomeMeasure, M.BarCodeMeasure, "
         "S.Measure servMeasure,\nCASE B.Kind WHEN 1 THEN M.RoundQuantity ELSE S.RoundQuantity END "
         "roundQNT\n" +
         rows +
         "LEFT OUTER JOIN MaterialStocks M WITH (NOLOCK) ON B.InventoryCode = M.IdNumber\n"
         "LEFT OUTER JOIN Services S WITH (NOLOCK) ON S.Code = B.ServiceCode\n"
         "LEFT OUTER JOIN DescrBaseSupplyList D WITH (NOLOCK) ON 1=1\nWHERE " +
         condition +
         "(M.SuppForbiddenFrom IS NULL OR M.SuppForbiddenFrom > '05.03.2026') AND "
         "(M.SuppActiveFrom IS NULL OR M.SuppActiveFrom <= '05.03.2026')\n";
}

std::vector<std::string> SupplyTemplates() {
  const std::string base = "INNER JOIN BaseSupplyList B WITH (NOLOCK) ON ";
  const std::string dates =
      "FROM BaseSupplyListDates BSD WITH (NOLOCK)\n" + base + "BSD.SerialNumber = B.SerialNumber\n";
  return {
      SupplyTemplate("FROM BaseSupplyList B WITH (NOLOCK)\n", false, "B", ""),
      SupplyTemplate(
          "FROM SupplyLists P WITH (NOLOCK)\n" + base + "P.SerialNumber = B.SerialNumber\n", false,
          "P", "P.KindList = 4 AND "),
      SupplyTemplate(dates, true, "B", "AvailableFromDate = '05.03.2026' AND "),
      SupplyTemplate(dates, true, "B", "AvailableFromDate <= '05.03.2026' AND "),
      SupplyTemplate(
          "FROM SupplyListsDates SD WITH (NOLOCK)\nINNER JOIN SupplyLists P WITH (NOLOCK)"
          " ON (P.KindList = SD.KindList) AND (SD.SerialNumber = P.SerialNumber)\n" +
              base + "SD.SerialNumber = B.SerialNumber\n",
          true, "P",
          "SD.KindList = 4 AND   SD.AvailableFromDate in ( select "
          "max(AvailableFromDate) from SupplyListsDates   WHERE "
          "SupplyListsDates.AvailableFromDate <= '05.03.2026'   AND  "
          "SupplyListsDates.KindList = 4 ) AND "),
  };
}

const NamedValues kParams = {
    {"FirstLanguage", false},
    {"Begins", "сто%"},
    {"Contains", "%сто%"},
    {"Code", 5},
    {"Code2", 6},
    {"BRM", 1},
    {"Wares", 2},
    {"Nom", 90},
    {"NomIn", 249},
    {"NomInLanguage", 1},
    {"Notifier", 7},
    {"Supplier", 11},
    {"KindSupp", 5},
    {"SerialNumber", 20045},
    {"Partner", Variant()},
    {"IdNumber", 1},
    {"Ver", 1},
    {"UserName", "ivanova"},
    {"KindInvoice", 1},
    {"CriteriaType", 1},
};

TEST_P(DialectOnEngine, EveryTemplateIsUnderstoodAndRuns) {
  DialectWorld world(GetParam());
  for (const Template& one : kTemplates) {
    SCOPED_TRACE(one.name);
    Asking asking{kParams};
    EXPECT_EQ(world.Rows(one.sql, asking), "");
    for (NamedValue& value : asking.params) {
      if (SameName(value.name, "FirstLanguage")) value.value = true;
    }
    asking.rowLimit = 80;
    EXPECT_EQ(world.Rows(one.sql, asking), "") << "in the first language";
  }
}

TEST_P(DialectOnEngine, EverySearchOfTheSupplyListRuns) {
  DialectWorld world(GetParam());
  for (const std::string& sql : SupplyTemplates()) {
    const Asking asking{kParams, 80};
    EXPECT_EQ(world.Rows(sql + " ORDER BY cbName", asking), "") << sql;
    EXPECT_EQ(world.Rows(sql + " AND cbName2 LIKE :Begins ORDER BY cbName2", asking), "") << sql;
    EXPECT_EQ(world.Rows(sql + " AND " + kSupplyNames + " LIKE :Contains ORDER BY B.SerialNumber",
                         asking),
              "")
        << sql;
  }
}

/// Entries as the server keeps them under the setting, 0 or 1.
void FillSupply(DialectWorld& world, int identity) {
  const char* entries[] = {R"(
    SerialNumber | Kind | InventoryCode | ServiceCode | Name   | Name2 | Measure | EffectiveName
    1            | 1    | 10            | -           | Ютия   | Iron  | 100     | Ютия
    2            | 2    | -             | 20          | Бор    | Pine  | 200     | Бор
    3            | 1    | 11            | -           | Ангро  | -     | 100     | Ангро
)",
                           R"(
    SerialNumber | Kind | InventoryCode | ServiceCode | Name   | Name2 | Measure | EffectiveName
    1            | 1    | 10            | -           | Ютия   | Iron  | 100     | Арматура
    2            | 2    | -             | 20          | Бор    | Pine  | 200     | Ремонт
    3            | 1    | 11            | -           | Ангро  | -     | 100     | Забранен
)"};
  world.Fill("BaseSupplyList", entries[identity]);
  world.Fill("DescrBaseSupplyList", "IdentityWithNom\n " + std::to_string(identity));
  world.Fill("MaterialStocks", R"(
    IdNumber | Name     | Measure | RoundQuantity | SuppForbiddenFrom | SuppActiveFrom
    10       | Арматура | 101     | 3             | 06.03.2026        | 05.03.2026
    11       | Забранен | 102     | 2             | 05.03.2026        | -
  )");
  world.Fill("Services", "Code | Name   | Measure | RoundQuantity\n 20 | Ремонт | 201 | 1");
  world.Fill("BaseSupplyListDates", R"(
    SerialNumber | AvailableFromDate
    1 | 01.01.2026
    1 | 05.03.2026
    2 | 01.02.2026
    2 | 06.03.2026
  )");
  world.Fill("SupplyLists",
             "KindList | SerialNumber | Measure\n 4 | 1 | 105\n 4 | 2 | 205\n 5 | 1 | 9");
  world.Fill("SupplyListsDates", R"(
    KindList | SerialNumber | AvailableFromDate
    4 | 1 | 01.01.2026
    4 | 2 | 01.02.2026
    4 | 1 | 01.04.2026
    5 | 1 | 01.03.2026
  )");
}

TEST_P(DialectOnEngine, TheSupplyListShowsTheNameThatTheSettingChooses) {
  DialectWorld own(GetParam());
  FillSupply(own, 0);
  DialectWorld named(GetParam());
  FillSupply(named, 1);
  const std::string iron = "1 10 - Ютия Iron 100 101 - - - 3";
  const std::string pine = "2 - 20 Бор Pine 200 - - - 201 1";
  const std::string ironOfMaterial = "1 10 - Арматура - 100 101 - - - 3";
  const std::string pineOfService = "2 - 20 Ремонт - 200 - - - 201 1";
  const auto inList = [](std::string row, const std::string& from, const std::string& to) {
    return row.replace(row.find(from), from.size(), to);
  };
  // The material forbidden from the day itself is not offered, the one active from it is.
  struct Row {
    const char* name;
    std::size_t number;
    int identity;
    std::string expected;
  };
  const Row kRows[] = {
      {"base list, own names", 0, 0, pine + "; " + iron},
      {"base list, names of the nomenclature", 0, 1, ironOfMaterial + "; " + pineOfService},
      {"list 4", 1, 0, inList(pine, " 200 ", " 205 ") + "; " + inList(iron, " 100 ", " 105 ")},
      {"on the day", 2, 0, iron},
      {"up to the day, once each", 3, 0, pine + "; " + iron},
      {"up to the day, names of the nomenclature", 3, 1, ironOfMaterial + "; " + pineOfService},
      {"newest version of list 4", 4, 0, inList(pine, " 200 ", " 205 ")},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    DialectWorld& world = row.identity == 0 ? own : named;
    const std::string sql = SupplyTemplates()[row.number];
    EXPECT_EQ(world.Rows(sql + " ORDER BY cbName"), row.expected);
    EXPECT_EQ(world.Rows(sql + " AND cbName LIKE 'РЕМ%'"), row.identity == 0 ? "" : pineOfService);
  }
}

TEST_P(DialectOnEngine, OnlyTheNameThatTheSettingChoosesIsTheOneThatIsKept) {
  DialectWorld own(GetParam());
  FillSupply(own, 0);
  DialectWorld named(GetParam());
  FillSupply(named, 1);
  const std::string kind = "CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN S.Name END";
  const auto sql = [](const std::string& name, const std::string& onMaterial,
                      const std::string& onSetting) {
    return "SELECT B.SerialNumber, " + name +
           " n FROM BaseSupplyList B LEFT JOIN MaterialStocks M ON B.InventoryCode = M.IdNumber" +
           onMaterial + " LEFT JOIN Services S ON S.Code = B.ServiceCode LEFT JOIN " +
           "DescrBaseSupplyList D ON " + onSetting + " WHERE n >= 'а' AND n < 'с' ORDER BY n";
  };
  const std::string chosen =
      "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN " + kind + " ELSE B.Name END";
  const struct {
    const char* what;
    DialectWorld& world;
    std::string sql;
    const char* rows;
  } kRows[] = {
      {"chosen", named, sql(chosen, "", "1 = 1"), "1 Арматура; 3 Забранен; 2 Ремонт"},
      {"no branch asks for the setting", own, sql(kind, "", "1 = 1"),
       "1 Арматура; 3 Забранен; 2 Ремонт"},
      {"a row of the material may be missing", named, sql(chosen, " AND M.Measure = 102", "1 = 1"),
       "3 Забранен; 2 Ремонт"},
      {"the setting may be missing", named, sql(chosen, "", "D.IdentityWithNom = 0"),
       "3 Ангро; 2 Бор"},
  };
  for (const auto& row : kRows)
    EXPECT_EQ(row.world.Rows(row.sql), row.rows) << row.what;
}

TEST(DialectPlans, TheSupplyListIsReadAlongTheIndexOfItsOrder) {
  DialectWorld world(Engine::Sqlite);
  const auto templates = SupplyTemplates();
  for (const std::size_t number : {std::size_t{0}, std::size_t{3}}) {
    const Asking asking{kParams, 80};
    for (const char* rest : {" ORDER BY cbName", " AND cbName LIKE :Begins ORDER BY cbName"}) {
      const std::string plan = world.Plan(templates[number] + rest, asking);
      EXPECT_EQ(plan.find("TEMP B-TREE"), std::string::npos) << plan;
      EXPECT_NE(plan.find("INDEX BaseSupplyListByFoldEffectiveName"), std::string::npos) << plan;
    }
  }
}

/// A kind of list with every one of 3,000 entries, and one with ten, in the migrated database.
void FillLists(Database& database) {
  const auto filled = database.RunScript(
      "insert into Measures (Code, Name, FoldName, Numerator) values (100, 'бр.', 'бр.', 1);\n"
      "insert into KindSupplyLists (Code, Name, FoldName) values (4, 'А', 'а'), (5, 'Б', 'б');\n"
      "with recursive n (i) as (select 1 union all select i + 1 from n where i < 3000), e (Serial,"
      " Entry) as (select i, 'проба ' || substr(cast(10000 + i * 7 % 3000 as text), 2) from n)"
      " insert into BaseSupplyList (SerialNumber, Name, FoldName, Kind, Measure) select Serial,"
      " Entry, Entry, 1, 100 from e;\n"
      "insert into SupplyLists (KindList, SerialNumber, Measure) select 4, SerialNumber, 100 from"
      " BaseSupplyList;\n"
      "insert into SupplyLists (KindList, SerialNumber, Measure) select 5, SerialNumber, 100 from"
      " BaseSupplyList where SerialNumber % 300 = 0;\n"
      "insert into SupplyListsDates (KindList, SerialNumber, AvailableFromDate) select KindList,"
      " SerialNumber, 20454 from SupplyLists;\n"  // 01.01.2026
      "insert into BaseSupplyListDates (SerialNumber, AvailableFromDate) select SerialNumber, 20517"
      " from SupplyLists where KindList = 5;\n"  // 05.03.2026
      "analyze");
  if (!filled) throw std::runtime_error(filled.GetFailure().text);
}

TEST(DialectPlans, AListOpensWithoutReadingMoreThanItsPage) {
  const auto database = FreshDatabase(Engine::Sqlite);
  FillLists(*database);
  const std::vector<std::string> templates = SupplyTemplates();
  const struct {
    const char* name;
    std::size_t number;
    const char* kind;
    std::size_t rows;
    const char* first;
  } kRows[] = {
      {"list of all", 1, "4", 80, "3000"},
      {"list of ten", 1, "5", 10, "3000"},
      {"on a day that ten have", 2, "4", 10, "3000"},
      {"list of all, newest", 4, "4", 80, "3000"},
      {"list of ten, newest", 4, "5", 10, "3000"},
  };
  const Statement guard{"select 1", {}, {{"one", ValueKind::Int32, 0}}};
  const NamedValues none;
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    std::string sql = templates[row.number] + " ORDER BY cbName";
    constexpr std::string_view kKind = "KindList = 4";
    for (std::size_t at = sql.find(kKind); at != std::string::npos; at = sql.find(kKind, at + 1))
      sql.replace(at + kKind.size() - 1, 1, row.kind);
    SearchInput input{sql, none, 80, {}, Engine::Sqlite};
    input.mayRead = [](const CatalogueTable&) { return true; };
    const auto search = RenderSearch(input);
    ASSERT_TRUE(search) << search.GetFailure().message;
    const std::int64_t before = database->Counters().machineSteps;
    auto packets = database->Search(guard, {&search->statement, 1}, {});
    ASSERT_TRUE(packets) << packets.GetFailure().text;
    const std::int64_t steps = database->Counters().machineSteps - before;
    const DataPacket page = FinishPortion(*search, std::move(packets->back()));
    EXPECT_EQ(page.rowCount, row.rows);
    EXPECT_EQ(page.At(0, 0).ToText(), row.first) << "in the order of names";
    EXPECT_LT(steps, 9000) << search->statement.text;
  }
}

}  // namespace
}  // namespace orvane::server
