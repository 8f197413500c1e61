#include "modules/purchases/frame/orvane_com.h"

#include "host/controls/combo.h"
#include "modules/purchases/frame/orvane_msgs.h"

namespace orvane::modules {
namespace {

/// Later than any document: no date limit.
constexpr std::string_view kNoLimit = "01.01.3000";

constexpr std::string_view kColumns[] = {
    "B.SerialNumber, B.InventoryCode, B.ServiceCode,",
    " CASE ISNULL(D.IdentityWithNom, 0)",
    "  WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN S.Name END",
    "  WHEN 0 THEN B.Name END cbName,",
    " CASE ISNULL(D.IdentityWithNom, 0)",
    "  WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name2 WHEN 2 THEN S.Name2 END",
    "  WHEN 0 THEN B.Name2 END cbName2,",
};
constexpr std::string_view kMeasures[] = {
    " M.Measure msMeasure, M.IncomeMeasure, M.BarCodeMeasure, S.Measure servMeasure,",
    " CASE B.Kind WHEN 1 THEN M.RoundQuantity ELSE S.RoundQuantity END roundQNT",
};
constexpr std::string_view kItems[] = {
    "LEFT OUTER JOIN MaterialStocks M WITH (NOLOCK) ON B.InventoryCode = M.IdNumber",
    "LEFT OUTER JOIN Services S WITH (NOLOCK) ON S.Code = B.ServiceCode",
    "LEFT OUTER JOIN DescrBaseSupplyList D WITH (NOLOCK) ON 1=1",
};

/// Where rows come from, and the condition before the material's own validity.
struct SupplySource {
  std::string_view caption;
  bool distinct = false;
  std::string_view measure;  ///< column that holds the list's measure
  std::vector<std::string> from;
  std::string condition;  ///< empty: none
};

SupplySource SourceOf(SupplyChoice choice, const std::string& list, const std::string& day) {
  const std::string base = "INNER JOIN BaseSupplyList B WITH (NOLOCK) ON ";
  if (choice == SupplyChoice::ByList && list.empty()) {
    return {_rBaseSuppList, false, "B.Measure", {"FROM BaseSupplyList B WITH (NOLOCK)"}, {}};
  }
  if (choice == SupplyChoice::ByList) {
    return {_rSuppList,
            false,
            "P.Measure",
            {"FROM SupplyLists P WITH (NOLOCK)", base + "P.SerialNumber = B.SerialNumber"},
            Filled("P.KindList = %s", {list})};
  }
  if (list.empty()) {
    const std::string_view sign = choice == SupplyChoice::ByListOnDate ? "=" : "<=";
    return {
        _rBaseSuppListDates,
        true,
        "B.Measure",
        {"FROM BaseSupplyListDates BSD WITH (NOLOCK)", base + "BSD.SerialNumber = B.SerialNumber"},
        Filled("AvailableFromDate %s %s", {sign, day})};
  }
  return {_rSuppListDates,
          true,
          "P.Measure",
          {"FROM SupplyListsDates SD WITH (NOLOCK)",
           "INNER JOIN SupplyLists P WITH (NOLOCK) ON (P.KindList = SD.KindList) AND "
           "(SD.SerialNumber = P.SerialNumber)",
           base + "SD.SerialNumber = B.SerialNumber"},
          Filled("SD.KindList = %s AND SD.AvailableFromDate in ( select max(AvailableFromDate) "
                 "from SupplyListsDates WHERE SupplyListsDates.AvailableFromDate <= %s AND "
                 "SupplyListsDates.KindList = %s )",
                 {list, day, list})};
}

}  // namespace

std::vector<std::string> SetSuppListsSQL(int kind, const Variant& kindList, TVosMTCombo& combo,
                                         std::optional<Date> onDate) {
  if (kind < 1 || kind > 3) {
    combo.dlgCaption = _rBaseSuppList;
    return {};
  }
  const std::string day = "'" + (onDate ? onDate->ToText() : std::string(kNoLimit)) + "'";
  const SupplySource source = SourceOf(static_cast<SupplyChoice>(kind), kindList.ToText(), day);
  combo.dlgCaption = source.caption;

  std::vector<std::string> lines = {source.distinct ? "SELECT DISTINCT" : "SELECT"};
  lines.insert(lines.end(), std::begin(kColumns), std::end(kColumns));
  lines.push_back(" " + std::string(source.measure) + " bslMeasure,");
  lines.insert(lines.end(), std::begin(kMeasures), std::end(kMeasures));
  lines.insert(lines.end(), source.from.begin(), source.from.end());
  lines.insert(lines.end(), std::begin(kItems), std::end(kItems));
  const std::string validity = Filled(
      "(M.SuppForbiddenFrom IS NULL OR M.SuppForbiddenFrom > %s) AND "
      "(M.SuppActiveFrom IS NULL OR M.SuppActiveFrom <= %s)",
      {day, day});
  lines.push_back("WHERE " +
                  (source.condition.empty() ? validity : source.condition + " AND " + validity));
  lines.emplace_back("{$WA} {$O}");
  return lines;
}

}  // namespace orvane::modules
