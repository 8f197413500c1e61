// What search statements find: rows counted by hand on both engines.

#include "server/dialect_world.h"

namespace orvane::server {
namespace {

struct Search {
  std::string rest;  ///< behind a fixed SELECT
  std::string rows;
};

std::string Many(const std::string& text, int times) {
  std::string many;
  for (int i = 0; i < times; ++i)
    many += text;
  return many;
}

std::string Finds(DialectWorld& world, const std::string& sql, const NamedValues& params = {}) {
  Asking asking;
  asking.params = params;
  return world.Rows(sql, asking);
}

TEST_P(DialectOnEngine, TextsAreFoundByTheirFold) {
  DialectWorld world(GetParam());
  world.Fill("KindSupplies", R"(
    Code | Name          | Name2
    1    | Стоки         | Goods
    2    | СТОКИ внос    | -
    3    | Услуги        | 50% off
    4    | услуги [нови] | a_b
    5    | Стол          | axb
    6    | c\d           | GOODS
  )");
  const Search kSearches[] = {
      {"Name = 'стоки'", "1"},
      {"Name = 'СТОКИ   '", "1"},
      {"Name LIKE 'СТО%'", "1; 2; 5"},
      {"Name LIKE 'стоки %'", "2"},
      {"Name LIKE '%ТОК%'", "1; 2"},
      {"Name LIKE 'сто_'", "5"},
      {"Name LIKE '%и'", "1; 3"},
      {"Name LIKE 'с%и%о%'", "2"},
      {"Name LIKE '%[[]нов%'", "4"},
      {"Name LIKE 'C\\%'", "6"},
      {"Name LIKE '_\\d'", "6"},
      {"Name LIKE 'стоки'", "1"},
      {"Name LIKE ''", ""},
      {"Name2 LIKE '%'", "1; 3; 4; 5; 6"},
      {"Name2 NOT LIKE '%'", ""},
      {"NOT (Name2 LIKE '%')", ""},
      {"CAST(Name AS VARCHAR(6)) = 'стоки'", "1; 2"},
      {"CAST(Name AS VARCHAR(6)) LIKE 'УСЛУГ_'", "3; 4"},
      {"CAST(Code AS VARCHAR(3)) = '3 '", "3"},
      {"Code IS NULL OR " + Many("Code IS NULL OR ", 1200) + "Code = 2", "2"},
      {"NOT (Code IS NULL OR " + Many("Code IS NULL OR ", 1200) + "Code <> 2)", "2"},
      {"Name2 LIKE '%[%]%'", "3"},
      {"Name2 LIKE 'a[_]%'", "4"},
      {"Name2 LIKE '%A_B%'", "4; 5"},
      {"Name2 NOT LIKE 'g%'", "3; 4; 5"},
      {"NOT (Name2 LIKE 'g%' OR Name2 IS NULL)", "3; 4; 5"},
      {"Name2 IN ('goods', 'AXB')", "1; 5; 6"},
      {"Name2 NOT IN ('goods', NULL)", ""},
      {"Name2 NOT IN ('goods')", "3; 4; 5"},
      {"Name >= 'стол' AND Name < 'у'", "5"},
      {"Name IN (SELECT Name FROM KindSupplies k WHERE k.Code = 2)", "2"},
      {"ISNULL(Name2, Name) = 'стоки внос'", "2"},
      {"Name = :Quoted", "3"},
      {"Name LIKE :Nothing", ""},
      {"Name = 'x'' OR 1=1'", ""},
      {"(Code = 1 OR Code >= 4) AND NOT Code = 4 AND NOT NOT Code <> 5", "1; 6"},
  };
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.rest);
    EXPECT_EQ(Finds(world, "SELECT Code FROM KindSupplies WHERE " + search.rest,
                    {{"Quoted", "УСЛУГИ"}, {"Nothing", Variant()}}),
              search.rows);
  }
  EXPECT_EQ(Finds(world, "SELECT DISTINCT CAST(Name AS VARCHAR(3)) N FROM KindSupplies ORDER BY N"),
            "c\\d; СТО; Сто; Усл; усл")
      << "each once, however the whole texts go on";
  EXPECT_EQ(Finds(world,
                  "DECLARE @A INT, @B INT SET @B = 2 SET @A = @B SET @B = 9 "
                  "SELECT Code, @B B FROM KindSupplies WHERE Code = @A"),
            "2 9")
      << "lines are carried out one after the other";
}

TEST_P(DialectOnEngine, ValuesMeetTheKindOfTheirColumn) {
  DialectWorld world(GetParam());
  world.Fill("SuppInvRegister", R"(
    IdNumber | JoinedDate | Supplier | InvoiceNumberDigit | InvoiceNumberSymbol | InvoiceDate | CurrSumWithVATRb | OutsideTolerance | CreatedOn | CreatedFrom | AnnulFrom
    1 | 04.03.2026 | 11 | 1234567890123456789 | -      | 01.03.2026 | 12,5      | 0 | 04.03.2026 | ivanova | -
    2 | 05.03.2026 | 11 | -                   | ФА-07  | 02.03.2026 | -0,0001   | 1 | 05.03.2026 | -       | Petrov
    3 | 06.03.2026 | 12 | 7                   | -      | 03.03.2026 | -         | 0 | 06.03.2026 | -       | -
  )");
  const Search kSearches[] = {
      {"JoinedDate = '05.03.2026'", "2"},
      {"JoinedDate >= '20260305'", "2; 3"},
      {"JoinedDate <= '5.3.2026' AND JoinedDate > :Day", "2"},
      {"JoinedDate IN ('04.03.2026', :Day)", "1"},
      {"CreatedOn >= '05.03.2026' AND CreatedOn < '06.03.2026'", "2"},
      {"CurrSumWithVATRb = 12.5", "1"},
      {"CurrSumWithVATRb > -1 AND CurrSumWithVATRb < 1", "2"},
      {"CurrSumWithVATRb = :Sum", "1"},
      {"CurrSumWithVATRb - 2.5 = 10", "1"},
      {"CurrSumWithVATRb IS NULL", "3"},
      {"OutsideTolerance = 1", "2"},
      {"OutsideTolerance = :Yes", "2"},
      {"InvoiceNumberDigit = 1234567890123456789", "1"},
      {"InvoiceNumber = '7'", "3"},
      {"InvoiceNumber = 'ФА-07'", "2"},
      {"InvoiceNumber = 'фа-07 '", "2"},
      {"InvoiceNumber LIKE 'Фа%7'", "2"},
      {"CreatedFrom LIKE 'IVAN%'", "1"},
      {"AnnulFrom LIKE '_ETROV'", "2"},
      {"12 <= Supplier", "3"},
      {"Supplier < 12 AND 1 > :Half AND :Half = 0.5 AND '05.03.2026' > :Day", "1; 2"},
      {"Supplier = 99999999999", ""},
      {"Supplier = IdNumber + 9", "2; 3"},
      {"IdNumber = (SELECT MAX(IdNumber) FROM SuppInvRegister i WHERE i.Supplier = 11)", "2"},
      {"InvoiceDate = (SELECT MAX(InvoiceDate) FROM SuppInvRegister i WHERE i.Supplier = "
       "s.Supplier)",
       "2; 3"},
      {"Supplier IN (SELECT Supplier FROM SuppInvRegister i WHERE i.OutsideTolerance = 1)", "1; 2"},
  };
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.rest);
    EXPECT_EQ(Finds(world, "SELECT IdNumber FROM SuppInvRegister s WHERE " + search.rest,
                    {{"Day", *Date::Parse("04.03.2026")},
                     {"Sum", Decimal(1250, 2)},
                     {"Half", 0.5},
                     {"Yes", true}}),
              search.rows);
  }
  EXPECT_EQ(Finds(world,
                  "SELECT CAST(s.InvoiceNumber as VARCHAR(4)) Number, CurrSumWithVATRb, "
                  "JoinedDate, CASE OutsideTolerance WHEN 1 THEN 'да' ELSE 'не' END Outside "
                  "FROM dbo.SuppInvRegister s"),
            "1234 12.5000 04.03.2026 не; ФА-0 -0.0001 05.03.2026 да; 7 - 06.03.2026 не");
  EXPECT_EQ(Finds(world,
                  "SELECT ISNULL(DocumentType, -1) a, ISNULL(DocumentType, 300) b, "
                  "CASE OutsideTolerance WHEN 0 THEN OutsideTolerance ELSE 70000 END c "
                  "FROM SuppInvRegister"),
            "-1 300 0; -1 300 70000; -1 300 0")
      << "a constant wider than its column";
}

TEST_P(DialectOnEngine, QuantitiesOfAnOrderAreDerivedFromWhatStandsOnIt) {
  DialectWorld world(GetParam());
  world.Fill("SuppManifacOrder", R"(
    IdNumber | DocumentDate | Description | Supplier | Status | AnnulFrom
    1 | 01.03.2026 | Първа | 11 | 5 | -
    2 | 01.03.2026 | Втора | 11 | 6 | -
    3 | 01.03.2026 | -     | 11 | 6 | petrov
    4 | 01.03.2026 | -     | 12 | 6 | -
  )");
  world.Fill("SuppManOrderDet", R"(
    SuppManOrderId | RowNumber | SerialNumber | Quantity
    1 | 1 | 7 | 0.3
    1 | 2 | 8 | 9
    2 | 1 | 7 | 5
    3 | 1 | 7 | 5
    4 | 1 | 7 | 5
  )");
  world.Fill("PurchaseOrder", R"(
    POIdNumber | POVersion | Status | OldVersion | AnnulOn
    1 | 1 | 3 | 1 | -
    1 | 2 | 6 | 0 | -
    2 | 1 | 2 | 0 | -
    3 | 1 | 5 | 0 | 04.03.2026
  )");
  world.Fill("PurchaseOrderDet", R"(
    PurchaseOrderId | PurchaseOrderVer | RowNumber | SerialNumber | SuppManifacOrderId | Quantity
    1 | 1 | 1 | 7 | 1 | 50
    1 | 2 | 1 | 7 | 1 | 0.1
    1 | 2 | 2 | 7 | 2 | 2
    2 | 1 | 1 | 7 | 1 | 60
    3 | 1 | 1 | 7 | 1 | 70
  )");
  world.Fill("Deliveries", R"(
    IdNumber | PurchaseOrderId | PurchaseOrderVer | Status | AnnulOn
    1 | 1 | 2 | 5 | -
    2 | 1 | 2 | 4 | -
    3 | 1 | 2 | 5 | 04.03.2026
  )");
  world.Fill("DeliveryRows", R"(
    DeliveryId | RowNumber | SerialNumber | Quantity
    1 | 1 | 7 | 0.1
    1 | 2 | 8 | 3
    2 | 1 | 7 | 1
    3 | 1 | 7 | 1
  )");
  EXPECT_EQ(
      Finds(world,
            "SELECT O.IdNumber, CAST(O.Description AS VARCHAR(3)) Description, OD.CalcQuantity, "
            "OD.CalcOrderedQunatity, OD.CalcQuantity - OD.CalcOrderedQunatity RestOrdQNT, "
            "OD.CalcDeliverQuantity FROM SuppManifacOrder O WITH(NOLOCK) "
            "INNER JOIN SuppManOrderDet OD ON O.IdNumber = OD.SuppManOrderId AND "
            "OD.SerialNumber = :SerialNumber WHERE O.Supplier = :Supplier AND O.Status IN (5,6) "
            "AND O.AnnulFrom IS NULL ORDER BY O.IdNumber DESC",
            {{"SerialNumber", 7}, {"Supplier", 11}}),
      "2 Вто 5 2 3 0.1; 1 Пър 0.3 0.1 0.2 0.1");
}

TEST_P(DialectOnEngine, AContractIsActiveFromItsSigningToItsEnd) {
  DialectWorld world(GetParam());
  world.Fill("SuppliesContracts", R"(
    IdNumber | ContractDate | FinishDate | FreezeDate | AutomaticRenewal
    1 | 05.03.2026 | -          | -          | 0
    2 | 06.03.2026 | -          | -          | 0
    3 | 01.01.2026 | 05.03.2026 | -          | 0
    4 | 01.01.2026 | 06.03.2026 | -          | 0
    5 | 01.01.2026 | 05.03.2026 | -          | 1
    6 | 01.01.2026 | -          | 05.03.2026 | 0
    7 | 01.01.2026 | -          | 06.03.2026 | 0
  )");
  EXPECT_EQ(Finds(world, "SELECT IdNumber FROM SuppliesContracts WHERE Active = 1"), "1; 4; 5; 7");
  world.Fill("Partners", "Partner | Name\n 8 | Осма");
  EXPECT_EQ(Finds(world,
                  "SELECT p.Partner, c.Active FROM Partners p LEFT JOIN SuppliesContracts c ON "
                  "c.Supplier = p.Partner"),
            "8 -")
      << "of a row that is not there nothing is derived";
}

TEST_P(DialectOnEngine, TheLanguageAskedForGivesTheNameItsOrderAndItsSearch) {
  DialectWorld world(GetParam());
  world.Fill("NomIn", R"(
    Nomenclature | Element | Name    | Name2   | Name3
    249          | 1       | Въведен | Entered | X
    249          | 2       | Одобрен | approved| W
    250          | 1       | Не      | No      | -
  )");
  const std::string sql =
      "SELECT Element, CASE :Lang WHEN 1 THEN Name WHEN 2 THEN Name2 WHEN 3 THEN Name3 END Name "
      "FROM NomIn (nolock) WHERE Nomenclature = :NomIn ORDER BY Name";
  EXPECT_EQ(Finds(world, sql, {{"Lang", 1}, {"NomIn", 249}}), "1 Въведен; 2 Одобрен");
  EXPECT_EQ(Finds(world, sql, {{"lang", 2}, {"nomin", 249}}), "2 approved; 1 Entered");
  EXPECT_EQ(Finds(world, sql, {{"Lang", 3}, {"NomIn", 249}}), "2 W; 1 X");
  EXPECT_EQ(Finds(world, sql, {{"Lang", 9}, {"NomIn", 249}}), "1 -; 2 -");
}

TEST_P(DialectOnEngine, OuterJoinsKeepRowsWithoutAPartner) {
  DialectWorld world(GetParam());
  world.Fill("Partners", R"(
    Partner | Name | SupplyInvoiceDescr | PartnerTypeSupplier
    1 | Алфа | 5 | 1
    2 | Бета | 6 | 1
    3 | Вега | - | 1
  )");
  world.Fill("SupplyInvoiceDescr", "Code | Name | KindInvoice\n 5 | Опис | 2");
  const std::string sql =
      "SELECT p.Partner, s.KindInvoice FROM Partners p WITH(NOLOCK) LEFT OUTER JOIN "
      "SupplyInvoiceDescr s WITH(NOLOCK) ON p.SupplyInvoiceDescr = s.Code ";
  EXPECT_EQ(Finds(world, sql + "ORDER BY p.Name"), "1 2; 2 -; 3 -");
  EXPECT_EQ(Finds(world, sql + "ORDER BY s.KindInvoice DESC, p.Name DESC"), "1 2; 3 -; 2 -");
  EXPECT_EQ(Finds(world, sql + "WHERE s.Code IS NULL"), "2 -; 3 -");
  EXPECT_EQ(Finds(world,
                  "SELECT DISTINCT s.Code FROM Partners p LEFT JOIN SupplyInvoiceDescr s ON "
                  "p.SupplyInvoiceDescr = s.Code"),
            "-; 5");
}

TEST_P(DialectOnEngine, OnlyRowsThatTheAskerSeesAreFoundAlsoThroughParts) {
  DialectWorld world(GetParam());
  world.Fill("PurchaseOrder", R"(
    POIdNumber | POVersion | CreatedFrom | CostCenter
    1 | 1 | ivanova | 1
    2 | 1 | petrov  | 1
    3 | 1 | ivanova | 2
  )");
  world.Fill("PurchaseOrderDet", R"(
    PurchaseOrderId | PurchaseOrderVer | RowNumber | SerialNumber
    1 | 1 | 1 | 7
    2 | 1 | 1 | 7
  )");
  world.Fill("CostCenters", "CostCenter | Name\n 1 | Цех\n 2 | Склад");
  Asking asking;
  asking.predicate = {"({t}.CreatedFrom = ?1 or {t}.POIdNumber = ?2) and ?1 = {t}.CreatedFrom",
                      {"ivanova", 99}};
  EXPECT_EQ(world.Rows("SELECT POIdNumber FROM PurchaseOrder WHERE POVersion = 1", asking), "1; 3");
  EXPECT_EQ(world.Rows("SELECT PurchaseOrderId FROM PurchaseOrderDet", asking), "1");
  EXPECT_EQ(world.Rows("SELECT CostCenter FROM CostCenters WHERE CostCenter IN (SELECT CostCenter "
                       "FROM PurchaseOrder p WHERE p.POIdNumber > 1)",
                       asking),
            "2");
  EXPECT_EQ(world.Rows("SELECT c.CostCenter, p.POIdNumber FROM CostCenters c LEFT JOIN "
                       "PurchaseOrder p ON p.CostCenter = c.CostCenter AND p.POIdNumber > 1",
                       asking),
            "1 -; 2 3");
}

TEST_P(DialectOnEngine, QuantitiesAreAddedAlikeOnBothEngines) {
  DialectWorld world(GetParam());
  world.Fill("PurchaseOrderDet", R"(
    PurchaseOrderId | PurchaseOrderVer | RowNumber | Quantity
    1 | 1 | 1 | 1234567890.123457
    1 | 1 | 2 | -0.0
    1 | 1 | 3 | 0.3
  )");
  EXPECT_EQ(Finds(world,
                  "SELECT RowNumber, Quantity, Quantity - 0.1 less, Quantity + :More more FROM "
                  "PurchaseOrderDet",
                  {{"More", -0.0}}),
            "1 1234567890.123457 1234567890.023457 1234567890.123457; 2 0 -0.1 0; 3 0.3 0.2 0.3");
}

TEST_P(DialectOnEngine, ASumBeyondSixtyFourBitsIsNull) {
  DialectWorld world(GetParam());
  world.Fill("PurchaseOrder", R"(
    POIdNumber | POVersion | CostCenter | Supplier             | CurrSumPurchaseOrder  | SumPurchaseOrder
    1          | 1         | 1          | 9223372036854775807  | 922337203685477.5807  | 0.0001
    2          | 1         | 1          | 9223372036854775806  | 922337203685477.5806  | 0.0001
    3          | 1         | 2          | -9223372036854775807 | -922337203685477.5807 | -0.0002
    4          | 1         | 2          | -                    | -                     | 1
  )");
  const std::string all =
      "SELECT POIdNumber, Supplier + CostCenter c, CurrSumPurchaseOrder + SumPurchaseOrder a ";
  const std::string rest = "FROM PurchaseOrder ";
  EXPECT_EQ(Finds(world, all + rest),
            "1 - -; 2 9223372036854775807 922337203685477.5807; 3 -9223372036854775805 -; 4 - -");
  const Search kSearches[] = {
      {"WHERE Supplier + CostCenter IS NULL", "1; 4"},
      {"WHERE Supplier + Supplier > 0 OR NOT (Supplier + Supplier > 0)", ""},
      {"WHERE ISNULL(Supplier + CostCenter - CostCenter, 0) = 0", "1; 4"},
      {"WHERE Supplier - CostCenter < 0", ""},
      {"WHERE Supplier - 1 < 0", "3"},
      {"WHERE SumPurchaseOrder - CurrSumPurchaseOrder > 0", "3"},
      {"WHERE 2 IN (SELECT MAX(d.Supplier + d.Supplier) FROM PurchaseOrder d)", ""},
      {"ORDER BY Supplier + CostCenter DESC", "2; 3; 4; 1"},
  };
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.rest);
    EXPECT_EQ(Finds(world, "SELECT POIdNumber " + rest + search.rest), search.rows);
  }
}

TEST_P(DialectOnEngine, HiddenRowsAnswerNeitherByErrorsNorByTime) {
  DialectWorld world(GetParam());
  world.Fill("CostCenters", "CostCenter | Name\n 1 | Цех\n 77 | Тайна");
  world.Fill("PurchaseOrder", R"(
    POIdNumber | POVersion | CostCenter | Supplier            | Description
    1          | 1         | 1          | 5                   | Ламарина
    2          | 1         | 77         | 9223372036854775807 | Злато
  )");
  world.Fill("PurchaseOrderDet", R"(
    PurchaseOrderId | PurchaseOrderVer | RowNumber | SerialNumber
    1 | 1 | 1 | 7
    2 | 1 | 1 | 7
  )");
  std::vector<VariantArray> partners;
  for (int i = 1; i <= 400; ++i)
    partners.push_back({i, "Фирма " + std::to_string(i)});
  world.FillRows("Partners", {"Partner", "Name"}, partners);
  Asking asking;
  asking.predicate = {
      "exists (select 1 from CostCenters v where v.CostCenter = {t}.CostCenter and v.Name = ?1)",
      {"Цех"}};
  const std::string orders = "SELECT POIdNumber FROM PurchaseOrder o ";
  const std::string slow =
      "(SELECT MAX(a.Partner) FROM Partners a INNER JOIN Partners b ON b.Partner <> a.Partner)";
  const Search kSearches[] = {
      {orders + "WHERE Supplier + CostCenter > 0", "1"},
      {orders + "WHERE NOT (Supplier + CostCenter > 0)", ""},
      {orders + "WHERE CostCenter = 77 AND Supplier > " + slow, ""},
      {orders + "WHERE CostCenter = 77 AND Supplier IN " + slow, ""},
      {orders + "WHERE CostCenter = 77 AND Description LIKE '%л%т%'", ""},
      {orders + "INNER JOIN Partners p ON p.Partner = 1 AND o.Supplier + o.CostCenter > p.Partner",
       "1"},
      {"SELECT c.CostCenter, o.POIdNumber FROM CostCenters c LEFT JOIN PurchaseOrder o ON "
       "o.CostCenter = c.CostCenter AND o.Supplier + o.CostCenter > 0",
       "1 1; 77 -"},
      {"SELECT c.CostCenter FROM CostCenters c LEFT JOIN PurchaseOrder o ON "
       "o.CostCenter = c.CostCenter WHERE o.POVersion = 1 AND o.Supplier + o.CostCenter > 0",
       "1"},
      {"SELECT c.CostCenter FROM CostCenters c LEFT JOIN PurchaseOrder o ON "
       "o.CostCenter = c.CostCenter WHERE ISNULL(o.Supplier + o.CostCenter, 0) = 0",
       "77"},
      {"SELECT PurchaseOrderId FROM PurchaseOrderDet d WHERE PurchaseOrderId = 2 AND SerialNumber "
       "< "
       "(SELECT MAX(o.Supplier + o.CostCenter) FROM PurchaseOrder o WHERE o.POIdNumber = "
       "d.PurchaseOrderId)",
       ""},
      {"SELECT DISTINCT POIdNumber, POVersion FROM PurchaseOrder o INNER JOIN Partners a ON 1 = 1 "
       "INNER JOIN Partners b ON b.Partner > a.Partner AND b.Partner < 0 WHERE CostCenter = 77",
       ""},
  };
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.rest);
    const std::int64_t before = world.Data().Counters().machineSteps;
    EXPECT_EQ(world.Rows(search.rest, asking), search.rows);
    EXPECT_LT(world.Data().Counters().machineSteps - before, 20'000) << "the slow part was begun";
  }
}

}  // namespace
}  // namespace orvane::server
