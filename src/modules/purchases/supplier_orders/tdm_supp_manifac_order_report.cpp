#include "modules/purchases/supplier_orders/tdm_supp_manifac_order_report.h"

#include "contract/supplier_order.h"
#include "contract/system.h"
#include "data/connection_scope.h"
#include "kit/documents/document_load.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr std::int32_t kPortion = 80;
constexpr auto lupStatusName = String("lupStatusName", 30, Joined, "Статус");

/// The record as it travels.
DataPacket RecordPacket(TVosClientDataSet& record, const ProviderDef& shape) {
  DataPacket packet;
  VariantArray values;
  for (const FieldDef& field : shape.fields) {
    packet.AddColumn(field.name, field.kind, field.size);
    values.push_back(record[field].Value());
  }
  packet.AppendRow(values);
  return packet;
}

}  // namespace

TdmSuppManifacOrderReport::TdmSuppManifacOrderReport(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcSuppManifacOrderReport(Session(), Point(), kReportClass),
      sqlcSQL(Session(), Point(), system::kSearchClass),
      cdsFilter("cdsFilter", {report::CostCenter, report::FromNumber, report::ToNumber,
                              report::Supplier, report::Status}),
      cdsReport("cdsReport", sqlcSuppManifacOrderReport, report::kResult),
      cdsCostCenters("cdsCostCenters", sqlcSQL, own_rows::kCostCenter),
      cdsSuppliers("cdsSuppliers", sqlcSQL, own_rows::kPartner),
      cdsNomIn249("cdsNomIn249", sqlcSQL, {core::Element, core::Name30}),
      costCenters(cdsCostCenters, "CostCenter"),
      suppliers(cdsSuppliers, "Partner"),
      nomIn249(cdsNomIn249, "Element"),
      dsFilter(cdsFilter),
      dsReport(cdsReport),
      form_(form) {
  cdsReport.AddLookup(lupStatusName, cdsNomIn249, "Status", "Element", "Name");
  cdsReport.RowLimit = kPortion;
  cdsReport.OnFetchPortion = [this](std::int32_t rowLimit, const std::string& continuation) {
    return FetchPortion(rowLimit, continuation);
  };
}

void TdmSuppManifacOrderReport::SetLanguage() {
  nomIn249.SetParam("NomInLanguage", form_.GetLanguageNumber());
}

void TdmSuppManifacOrderReport::GetParams() {
  const ConnectionScope scope(&sqlcSuppManifacOrderReport);
  VariantArray input(report_params::kInputSize);
  input[report_params::kEmployee] = form_.App().vCurrentEmployee;
  input[report_params::kLanguage] = form_.GetLanguageNumber();
  const VariantArray answer =
      sqlcSuppManifacOrderReport.Ask(report_params::kName, {Variant(std::move(input))});
  nomIn249.TakeFilled(PacketAt(answer, report_params::kStatuses));
  if (!answer[report_params::kCostCenters].IsNull())
    costCenters.TakeFilled(PacketAt(answer, report_params::kCostCenters));
}

DataPacket TdmSuppManifacOrderReport::FetchPortion(std::int32_t rowLimit,
                                                   const std::string& continuation) {
  VariantArray options(get_report::kOptionsSize);
  options[get_report::kFirstLanguage] = form_.FirstLanguage();
  options[get_report::kRowLimit] = rowLimit;
  options[get_report::kContinuation] = continuation.empty() ? Variant() : Variant(continuation);
  VariantArray context(get_report::kContextSize);
  context[get_report::kLogin] = form_.App().UserName();
  context[get_report::kOptions] = Variant(std::move(options));
  VariantArray ask(get_report::kAskSize);
  ask[get_report::kContext] = Variant(std::move(context));
  ask[get_report::kFilterPacket] = Variant(RecordPacket(cdsFilter, report::kFilter));
  const VariantArray answer = sqlcSuppManifacOrderReport.Ask(get_report::kName, std::move(ask));
  return PacketAt(answer, get_report::kResultPacket);
}

void TdmSuppManifacOrderReport::GetReport() {
  const ConnectionScope scope(&sqlcSuppManifacOrderReport);
  cdsReport.EmptyDataSet();
  cdsReport.Open();
}

void TdmSuppManifacOrderReport::EmptyFilter() {
  cdsFilter.EmptyDataSet();
  cdsFilter.Insert();
}

}  // namespace orvane::modules
