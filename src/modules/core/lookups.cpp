#include "modules/core/lookups.h"

#include <utility>

#include "kit/columns.h"

namespace orvane::modules::core {
namespace {

constexpr int kMostLanguages = 10;

}  // namespace

LookupSetup CostCentersOfNotifier(std::string_view caption) {
  return {.caption = std::string(caption),
          .sql = {"SELECT cc.CostCenter, cc.Name, cc.Name2", "FROM CostCenters cc {$WN}",
                  "INNER JOIN AdmissibleNotifiers an {$WN}",
                  "ON an.CostCenter = cc.CostCenter AND an.Notifier = :Notifier", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("CostCenter", "cc."),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfCostCenters"};
}

LookupSetup CostCenters(std::string_view caption) {
  return {.caption = std::string(caption),
          .sql = {"SELECT CostCenter, Name, Name2", "FROM CostCenters", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("CostCenter"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfCostCenters"};
}

LookupSetup Sections() {
  return {.caption = "Търсене - Отдели",
          .sql = {"SELECT Section, Name, Name2", "FROM Sections", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Section"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfSections"};
}

LookupSetup Departments() {
  return {.caption = "Търсене - Дирекции",
          .sql = {"SELECT Code, Name, Name2", "FROM Departments", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfDepartment"};
}

LookupSetup Employees(std::string_view caption) {
  return {.caption = std::string(caption),
          .sql = {"SELECT Employee, Name, Name2", "FROM Employees {$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Employee"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfEmployees"};
}

LookupSetup KindSupplies() {
  return {.caption = "Търсене - Видове покупки",
          .sql = {"SELECT Code, Name, Name2", "FROM KindSupplies ", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfKindSupplies"};
}

LookupSetup KindSupplyLists() {
  return {.caption = "Търсене - Вид списък за доставка",
          .sql = {"SELECT Code, Name, Name2", "FROM KindSupplyLists {$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4)};
}

LookupSetup InventoryReceipts() {
  return {.caption = "Търсене - Складов документ",
          .sql = {"SELECT Code, Name, Name2", "FROM KindDocInventory {$WN}",
                  "WHERE KindOperation = 1", "{$WA}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4)};
}

LookupSetup Currencies() {
  return {.caption = "Търсене - Валути",
          .sql = {"SELECT Code, Name, Name2", "FROM Currencies", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfCurrencies"};
}

LookupSetup Suppliers() {
  return {.caption = "Търсене - Доставчици",
          .sql = {"SELECT Partner, Name, Name2, SuppKindCurrency, ",
                  " KindSupplyChoice, KindSupplyList, SuppMaxTermOfPayment", "FROM Partners {$WN}",
                  "WHERE PartnerTypeSupplier = 1", "{$WA}", "{$O}"},
          .searchFields = CodeAndNames("Partner"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfPartners"};
}

LookupSetup Contracts(std::string_view kindParam, std::string_view condition) {
  std::string wanted = " KindContract = :";
  wanted.append(kindParam).append(" AND Active = 1").append(condition);
  return {.caption = "Търсене - Договори",
          .sql = {"SELECT IdNumber, ShortDescription, ShortDescription2, ContractDate, ",
                  " KindSupplyChoice, KindSupplyList, MaxTermOfPayment, InclTransportInPrice",
                  "FROM SuppliesContracts {$WN}", "WHERE Supplier = :Supplier AND ",
                  std::move(wanted), "{$WA}", "{$O}"},
          .nameField = "ShortDescription",
          .nameField2 = "ShortDescription2",
          .searchFields =
              {SearchBy("IdNumber", "Идентификатор"),
               SearchBy("ShortDescription", "Описание").In(Visibility::fvFirstLang).ByPart(),
               SearchBy("ShortDescription2", "Описание").In(Visibility::fvSecondLang).ByPart(),
               SearchBy("ContractDate", "Дата на сключване")},
          .mask = std::string(kMaskCode9)};
}

LookupSetup SupplyList() {
  return {.caption = "Търсене - Списък за доставка",
          .nameField = "cbName",
          .nameField2 = "cbName2",
          .searchFields = {SearchBy("SerialNumber", "Пореден номер"),
                           SearchBy("cbName", "Име").In(Visibility::fvFirstLang).ByPart(),
                           SearchBy("cbName2", "Име").In(Visibility::fvSecondLang).ByPart()},
          .mask = std::string(kMaskCode19)};
}

LookupSetup Measures() {
  return {.caption = "Търсене - Мерки",
          .sql = {"SELECT Code, Numerator, OrdinaryFraction, Name, Name2",
                  "FROM Measures WITH(NOLOCK)", "WHERE 1=1", "{$WA}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfMeasures"};
}

LookupSetup NomIn() {
  return {.sql = {"SELECT Element, Name, Name2 ", "FROM NomIn WITH (NOLOCK)",
                  "WHERE Nomenclature = :Nom", "ORDER BY Element"},
          .searchFields = CodeAndNames("Element"),
          .mask = std::string(kMaskCode4),
          .mode = LookupMode::lmNomenclature};
}

LookupSetup NomInOfLanguage() {
  LookupSetup setup = NomIn();
  setup.sql = {"SELECT Element, ", "  CASE :NomInLanguage", "    WHEN 1 THEN Name"};
  for (int language = 2; language <= kMostLanguages; ++language) {
    const std::string number = std::to_string(language);
    setup.sql.push_back("    WHEN " + number + " THEN Name" + number);
  }
  for (const char* line : {"  END Name", "FROM NomIn WITH (NOLOCK)", "WHERE Nomenclature = :NomIn",
                           "ORDER BY Element"})
    setup.sql.emplace_back(line);
  setup.nameField2 = setup.nameField;
  setup.searchFields = {SearchBy("Element", "Код")};
  return setup;
}

}  // namespace orvane::modules::core
