#include "modules/core/lookups.h"

namespace orvane::core {

LookupSetup CostCentersOfNotifier() {
  return {.caption = "Търсене - Центрове за разходи",
          .sql = {"SELECT cc.CostCenter, cc.Name, cc.Name2", "FROM CostCenters cc {$WN}",
                  "INNER JOIN AdmissibleNotifiers an {$WN}",
                  "ON an.CostCenter = cc.CostCenter AND an.Notifier = :Notifier", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("CostCenter", "cc."),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfCostCenters"};
}

LookupSetup KindSupplies() {
  return {.caption = "Търсене - Видове покупки",
          .sql = {"SELECT Code, Name, Name2", "FROM KindSupplies ", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfKindSupplies"};
}

LookupSetup Currencies() {
  return {.caption = "Търсене - Валути",
          .sql = {"SELECT Code, Name, Name2", "FROM Currencies", "{$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(kMaskCode4),
          .nomenclatureClass = "TfCurrencies"};
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

}  // namespace orvane::core
