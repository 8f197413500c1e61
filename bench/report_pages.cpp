#include "report_pages.h"

#include "packet/date.h"

namespace orvane::bench {

const std::string_view kReportSearch =
    "SELECT po.POIdNumber, CAST(po.POVersion AS INT) POVersion, \n"
    "  CAST(po.Description AS VARCHAR(50)) Description, CAST(po.Description2 AS VARCHAR(50)) "
    "Description2,\n"
    "  po.CostCenter, c.Name CCName, c.Name2 CCName2, \n"
    "  po.Supplier, P.Name SuppName, P.Name2 SuppName2, po.Status\n"
    "FROM PurchaseOrder po WITH (NOLOCK)\n"
    "LEFT OUTER JOIN CostCenters c WITH (NOLOCK)\n"
    "ON c.CostCenter = po.CostCenter\n"
    "LEFT OUTER JOIN Partners P WITH (NOLOCK)\n"
    "ON P.Partner = po.Supplier\n"
    "WHERE 1=1\n";

const std::string_view kSupplyListSearch =
    "SELECT B.SerialNumber, B.InventoryCode, B.ServiceCode,\n"
    "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN "
    "S.Name END WHEN 0 THEN B.Name END cbName,\n"
    "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name2 WHEN 2 THEN "
    "S.Name2 END WHEN 0 THEN B.Name2 END cbName2,\n"
    "B.Measure bslMeasure, M.Measure msMeasure, M.IncomeMeasure, M.BarCodeMeasure, "
    "S.Measure servMeasure,\n"
    "CASE B.Kind WHEN 1 THEN M.RoundQuantity ELSE S.RoundQuantity END roundQNT\n"
    "FROM BaseSupplyList B WITH (NOLOCK)\n"
    "LEFT OUTER JOIN MaterialStocks M WITH (NOLOCK) ON B.InventoryCode = M.IdNumber\n"
    "LEFT OUTER JOIN Services S WITH (NOLOCK) ON S.Code = B.ServiceCode\n"
    "LEFT OUTER JOIN DescrBaseSupplyList D WITH (NOLOCK) ON 1=1\n"
    "WHERE (M.SuppForbiddenFrom IS NULL OR M.SuppForbiddenFrom > '05.03.2026') AND "
    "(M.SuppActiveFrom IS NULL OR M.SuppActiveFrom <= '05.03.2026')";

namespace {

constexpr std::string_view kShown = " po.AnnulOn is null";
constexpr std::string_view kNone = "999999";

/// A field that is compared with a value.
struct Field {
  std::string_view name;
  std::string_view before;  ///< of the value
  std::string_view after = "";
  std::string_view values;  ///< where it has values, with the column {c}
  std::string_view column;
};
constexpr std::string_view kOfHead =
    "PurchaseOrder where AnnulOn is null and OldVersion = 0 and {c} is not null";
constexpr std::string_view kOfRow =
    "PurchaseOrderDet d join PurchaseOrder o on o.POIdNumber = d.PurchaseOrderId and o.POVersion ="
    " d.PurchaseOrderVer where o.AnnulOn is null and o.OldVersion = 0 and {c} is not null";
constexpr Field kFields[] = {
    {"CostCenter", "po.CostCenter = ", "", kOfHead, "CostCenter"},
    {"KindSupply", "po.KindSupply = ", "", kOfHead, "KindSupply"},
    {"Supplier", "po.Supplier = ", "", kOfHead, "Supplier"},
    {"Status", "po.Status = ", "", kOfHead, "Status"},
    {"Order",
     "po.POIdNumber in (select PurchaseOrderId from PurchaseOrderDet where SuppManifacOrderId = ",
     ")", kOfRow, "d.SuppManifacOrderId"},
    {"Item", "po.POIdNumber in (select PurchaseOrderId from PurchaseOrderDet where SerialNumber = ",
     ")", kOfRow, "d.SerialNumber"},
};

std::string Put(std::string_view text, std::string_view column) {
  std::string put(text);
  put.replace(put.find("{c}"), 3, column);
  return put;
}

std::string Most(const BenchCompany& company, const Field& field, bool rare) {
  const std::string column(field.column);
  return std::to_string(company.Number(
      "select " + column + " from " + Put(field.values, field.column) + " group by " + column +
      " order by count(*)" + (rare ? "" : " desc") + ", " + column + " limit 1"));
}

ReportPage PageOf(const std::string& name, const std::string& asked, const std::string& byHand) {
  return {name, " AND " + asked + " AND po.AnnulOn IS NULL  AND po.OldVersion = 0 ",
          byHand + " and" + std::string(kShown)};
}

void AddDays(const BenchCompany& company, std::vector<ReportPage>& pages) {
  const bool sqlite = company.engine == Engine::Sqlite;
  const std::string epoch = sqlite ? "DocumentDate" : "DocumentDate - date '1970-01-01'";
  const std::string from = " from PurchaseOrder where AnnulOn is null and OldVersion = 0";
  const auto first = static_cast<std::int32_t>(company.Number("select min(" + epoch + ")" + from));
  const auto last = static_cast<std::int32_t>(company.Number("select max(" + epoch + ")" + from));
  const struct {
    std::string name;
    std::string sign;
    std::int32_t day;
  } rows[] = {{"FromDate=common", ">=", first},  {"FromDate=rare", ">=", last},
              {"FromDate=none", ">=", last + 1}, {"ToDate=common", "<=", last},
              {"ToDate=rare", "<=", first},      {"ToDate=none", "<=", first - 1}};
  for (const auto& row : rows) {
    const std::string before = "po.DocumentDate " + row.sign + " ";
    const std::string day = std::to_string(row.day);
    pages.push_back(PageOf(row.name, before + "'" + Date{row.day}.ToText() + "'",
                           before + (sqlite ? day : "date '1970-01-01' + " + day)));
  }
}

}  // namespace

std::vector<ReportPage> ReportPages(const BenchCompany& company) {
  std::vector<ReportPage> pages;
  for (const Field& field : kFields) {
    const std::string rare = Most(company, field, true);
    const std::string common = Most(company, field, false);
    for (const auto& [which, value] : {std::pair<std::string, std::string>{"rare", rare},
                                       {"common", common},
                                       {"none", std::string(kNone)}}) {
      const std::string condition = std::string(field.before) + value + std::string(field.after);
      pages.push_back(PageOf(std::string(field.name) + "=" + which, condition, condition));
    }
  }
  AddDays(company, pages);
  const std::string id = "po.POIdNumber ";
  const std::string last = std::to_string(company.documents);
  pages.push_back(PageOf("FromId=rare", id + ">= " + last, id + ">= " + last));
  pages.push_back(PageOf("FromId=common", id + ">= 1", id + ">= 1"));
  pages.push_back(PageOf("ToId=rare", id + "<= 1", id + "<= 1"));
  pages.push_back({"Annulled", " AND po.AnnulOn IS NOT NULL  AND po.OldVersion = 0 ",
                   "po.AnnulOn is not null"});
  return pages;
}

}  // namespace orvane::bench
