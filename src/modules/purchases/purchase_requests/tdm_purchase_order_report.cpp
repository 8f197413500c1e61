#include "modules/purchases/purchase_requests/tdm_purchase_order_report.h"

#include "contract/purchase_request.h"
#include "contract/system.h"
#include "data/connection_scope.h"
#include "data/screen_fetch.h"
#include "kit/sql_text.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

namespace pr = purchase_request;

namespace {

constexpr std::int32_t kPortion = 80;
constexpr auto kStatusName = String("lupStatusName", 30, Joined, "Статус");

namespace filter {
constexpr auto CostCenter = Code19("CostCenter", Plain, "Център за разход");
constexpr auto FromId = Int32("FromId", Plain, "От номер");
constexpr auto ToId = Int32("ToId", Plain, "До номер");
constexpr auto FromDate = Day("FromDate", Plain, "От дата");
constexpr auto ToDate = Day("ToDate", Plain, "До дата");
constexpr auto KindSupply = Int16("KindSupply", Plain, "Вид покупка");
constexpr auto Supplier = Code19("Supplier", Plain, "Доставчик");
constexpr auto SuppManifacOrderId =
    Int32("SuppManifacOrderId", Plain, "Номер на поръчка за производство");
constexpr auto Status = Byte("Status", Plain, "Статус");
constexpr auto Annuled = Bit("Annuled", Plain, "Анулиран");
constexpr auto SerialNumber = Code19("SerialNumber", Plain, "Съдържа стока/услуга");
}  // namespace filter

/// What a filled field of the filter adds to the statement: its value between two texts.
struct FilterCondition {
  FieldDef field;
  std::string_view before;
  std::string_view after = {};
};
constexpr FilterCondition kBeforeAnnulled[] = {
    {filter::CostCenter, " AND po.CostCenter = "},
    {filter::FromId, " AND po.POIdNumber >= "},
    {filter::ToId, " AND po.POIdNumber <= "},
    {filter::FromDate, " AND po.DocumentDate >= "},
    {filter::ToDate, " AND po.DocumentDate <= "},
    {filter::KindSupply, " AND po.KindSupply = "},
    {filter::Supplier, " AND po.Supplier = "},
    {filter::SuppManifacOrderId,
     " AND po.POIdNumber IN (SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE "
     "SuppManifacOrderId = ",
     ") "},
    {filter::Status, " AND po.Status = "},
};
constexpr FilterCondition kContainsItem = {
    filter::SerialNumber,
    " AND po.POIdNumber IN (SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE SerialNumber = ",
    ") "};

constexpr std::string_view kSelect =
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

std::string ConditionOf(TVosClientDataSet& filterRow, const FilterCondition& condition) {
  const Variant value = filterRow[condition.field].Value();
  if (value.IsNull()) return {};
  const auto day = value.AsDate();
  const std::string text = day ? MSSQLDATE_Client(*day) : value.ToText();
  return std::string(condition.before) + text + std::string(condition.after);
}

}  // namespace

TdmPurchaseOrderReport::TdmPurchaseOrderReport(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcPurchaseOrderReport(Session(), Point(), pr::kReportClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsFilter("cdsFilter",
                {filter::CostCenter, filter::FromId, filter::ToId, filter::FromDate, filter::ToDate,
                 filter::KindSupply, filter::Supplier, filter::SuppManifacOrderId, filter::Status,
                 filter::Annuled, filter::SerialNumber}),
      cdsResult("cdsResult", sqlcPurchaseOrderReport, pr::report::dspResult),
      cdsCostCenters("cdsCostCenters", cSQL,
                     {own_rows::CostCenter, core::Name30, core::Name30Second}),
      cdsKindSupplies("cdsKindSupplies", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsPartners("cdsPartners", cSQL,
                  {own_rows::Partner, own_rows::Name50, own_rows::Name50Second}),
      cdsNomIn249("cdsNomIn249", cSQL, {core::Element, core::Name30, core::Name30Second}),
      cdsSuppManOrd("cdsSuppManOrd", cSQL,
                    {Int32("IdNumber", Key, "Номер"), String("Description", 50, Plain, "Описание"),
                     String("Description2", 50, Plain, "Описание 2")}),
      cdsBSL("cdsBSL", cSQL,
             {Code19("SerialNumber", Key, "Пореден номер"), String("cbName", 40, Plain, "Име"),
              String("cbName2", 40, Plain, "Име 2")}),
      costCenters(cdsCostCenters, "CostCenter"),
      kindSupplies(cdsKindSupplies, "Code"),
      partners(cdsPartners, "Partner"),
      nomIn249(cdsNomIn249, "Element"),
      suppManOrd(cdsSuppManOrd, "IdNumber"),
      bsl(cdsBSL, "SerialNumber"),
      dsFilter(cdsFilter),
      dsResult(cdsResult),
      form_(form) {
  cdsResult.AddLookup(kStatusName, cdsNomIn249, "Status", "Element", "Name");
  cdsResult.RowLimit = kPortion;
}

void TdmPurchaseOrderReport::SetLanguage(bool first) {
  cdsResult.SetLookupResult(kStatusName, first ? "Name" : "Name2");
}

void TdmPurchaseOrderReport::FetchOnOpening() {
  FetchTogether({&nomIn249, &costCenters, &kindSupplies}, {});
}

void TdmPurchaseOrderReport::EmptyFilter() {
  cdsFilter.EmptyDataSet();
  cdsFilter.Insert();
}

bool TdmPurchaseOrderReport::IsFiltered(std::string_view field) {
  return !cdsFilter.FieldByName(field).IsNull();
}

std::string TdmPurchaseOrderReport::Conditions(bool currentOnly) {
  std::string conditions;
  if (form_.App().UserCategory() != 0)
    conditions += " AND po.CreatedFrom = " + QuotedSql(form_.App().UserName());
  for (const FilterCondition& condition : kBeforeAnnulled)
    conditions += ConditionOf(cdsFilter, condition);
  conditions += cdsFilter[filter::Annuled].AsBool() ? " AND po.AnnulOn IS NOT NULL "
                                                    : " AND po.AnnulOn IS NULL ";
  conditions += ConditionOf(cdsFilter, kContainsItem);
  if (currentOnly) conditions += " AND po.OldVersion = 0 ";
  return conditions;
}

void TdmPurchaseOrderReport::FetchResult(bool currentOnly) {
  ConnectionScope scope(&sqlcPurchaseOrderReport);
  cdsResult.EmptyDataSet();
  cdsResult.Sql = std::string(kSelect) + Conditions(currentOnly);
  cdsResult.Open();
}

std::optional<RequestKey> TdmPurchaseOrderReport::NewRec(int kind, RequestKey of) {
  ConnectionScope scope(&sqlcPurchaseOrderReport);
  VariantArray data(pr::new_rec::kSize);
  data[pr::new_rec::kOperation] = pr::new_rec::kName;
  data[pr::new_rec::kKind] = kind;
  data[pr::new_rec::kId] = of.id;
  data[pr::new_rec::kVersion] = of.version;
  data[pr::new_rec::kLogin] = form_.App().UserName();
  const VariantArray answer = sqlcPurchaseOrderReport.Call(pr::kOperations, std::move(data));
  constexpr std::size_t kAnswerSize = 3;
  if (answer.size() < kAnswerSize || answer[0].AsInt() != 1) return std::nullopt;
  return RequestKey{answer[1].AsInt().value_or(0), static_cast<int>(answer[2].AsInt().value_or(0))};
}

}  // namespace orvane::modules
