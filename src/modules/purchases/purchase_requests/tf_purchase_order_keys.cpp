// Identifier and version of the shown request, and what of the screen depends on what was loaded.

#include <optional>

#include "host/dialogs.h"
#include "kit/documents/national_currency.h"
#include "kit/grid_rows.h"
#include "kit/pages.h"
#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr int kWarning = 2;
constexpr std::string_view _rWrongVersion = "Въведете коректна стойност за поле \"Версия\"!";
constexpr std::string_view _rNoSuchVersion = "Не съществува версия %s за идентификатор %s!";

constexpr std::string_view _rRowSum = "Сума";
constexpr std::string_view _rRowCurrencySum = "Валутна сума";

}  // namespace

void TfPurchaseOrder::ShowKeys(std::int64_t id, int ver) {
  eIdNum.SetText(std::to_string(id));
  eVer.SetText(std::to_string(ver));
  values.LastGetID = id;
  values.LastGetVer = ver;
  shown_.WasLoaded();
}

ShownDocumentRules TfPurchaseOrder::MakeShownRules() {
  ShownDocumentRules rules;
  rules.notFound = _rDocNotFound;
  rules.id = [this] { return values.LastGetID; };
  rules.save = [this] { SaveHead(SavedBy::Leaving); };
  rules.reload = [this] {
    dmPurchaseOrder->GetRecord(Nav::ByKey, 0, values.LastGetID, values.LastGetVer);
  };
  rules.load = [this](std::int64_t id) { return dmPurchaseOrder->GetRecord(Nav::ByKey, 0, id, 0); };
  rules.typingDropped = [this] { SetPropertiesVals(); };
  return rules;
}

void TfPurchaseOrder::eIdNumExit() {
  const bool inserting = dmPurchaseOrder->cdsPurchaseOrder.State() == DataSetState::Insert;
  if (eIdNum.Text().empty() && !inserting) FocusControl(&eIdNum);
}

void TfPurchaseOrder::eVerClosed(const std::string& text) {
  const std::optional<std::int32_t> version = ReadKey(text);
  RefuseIf(!version, _rWrongVersion);
  const std::int32_t id = shown_.TypedIdentifier();
  constexpr int kHighestVersion = 255;
  const LoadCode code = *version > 0 && *version <= kHighestVersion
                            ? dmPurchaseOrder->GetRecord(Nav::ByKey, 0, id, *version)
                            : LoadCode::None;
  if (code != LoadCode::None) return;
  VosMessageDlg(*this, kWarning, caption,
                Filled(_rNoSuchVersion, {std::to_string(*version), std::to_string(id)}));
  shown_.IsOutdated();
  ReloadShown();
  throw Abort{};
}

// --- what is shown and what may be written ------------------------------------------------------

void TfPurchaseOrder::SetPropertiesVals() {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  values.FDocumentAnnulated = !head[head::AnnulOn].IsNull();
  values.FDocumentStatus = static_cast<int>(head[head::Status].AsInt().value_or(0));
  lStatus.text = values.FDocumentAnnulated ? "Анулирано" : head.FieldByName("lupStatusName").Text();
  if (head[head::OldVersion].AsBool() && !lStatus.text.empty()) lStatus.text += " · стара версия";
  SetReadWrite(false);
}

void TfPurchaseOrder::SetReadWrite(bool forceWritable) {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  const bool current = !values.FDocumentAnnulated && values.FDocumentStatus == Entered &&
                       !head[head::OldVersion].AsBool();
  const bool writable = forceWritable || (current && !values.DisplayOneDocMode && May(paEdit));
  diMainInfo.readOnly = !writable;
  for (const OfferedRows& rows :
       {OfferedRows{gPurchaseOrderDet, "Няма материали и услуги.", " Insert добавя първия ред."},
        OfferedRows{gPurchaseOrderDel, "Няма дати на доставка.", " Insert добавя първата."},
        OfferedRows{gPOPayPl, "Няма план за плащане.", " Insert добавя първото плащане."}})
    OfferRows(rows, writable, May(paInsert));
  eIdNum.readOnly = values.DisplayOneDocMode;
  eVer.readOnly = values.DisplayOneDocMode;
}

void TfPurchaseOrder::VisibleItemsDependOnKind() {
  const std::int64_t kind = dmPurchaseOrder->KindSupply();
  diMainInfo.FindItem("IncTranspInPrice")->visible = values.IsPricedByList(kind);
  for (std::string_view field : {"Supplier", "ContractId"})
    diMainInfo.FindItem(field)->required = values.IsContracted(kind);
}

void TfPurchaseOrder::VisibleItemsDependOnCurrency() {
  ShowByCurrency(diMainInfo, diAdminInfo,
                 {.sum = "SumPurchaseOrder",
                  .currencySum = "CurrSumPurchaseOrder",
                  .plain = "Сума на искането",
                  .lev = "Левова сума на искането"},
                 !dmPurchaseOrder->InNationalCurrency(), dmPurchaseOrder->currencies,
                 values._cpBGNKindCurrency);
}

void TfPurchaseOrder::VisibleMSGridCols() {
  const std::int64_t kind = dmPurchaseOrder->KindSupply();
  gPurchaseOrderDet.columns = MSGridCols;
  if (!values.IsContracted(kind)) {
    gPurchaseOrderDet.RemoveColumn("SuppManifacOrderId");
    gPurchaseOrderDet.RemoveColumn("SMOName");
  }
  if (values.IsPricedByList(kind)) return gPurchaseOrderDet.RemoveColumn("CurrSumWithoutVAT");
  GridColumn& sum = *gPurchaseOrderDet.FindColumn("CurrSumWithoutVAT");
  sum.title = dmPurchaseOrder->InNationalCurrency() ? _rRowSum : _rRowCurrencySum;
  sum.readOnly = kind == values._cpSuppServ;
}

void TfPurchaseOrder::ShowDeliveriesPage() {
  OfferPageWithRows(pcTables, "tsDeliveries");
}

}  // namespace orvane::modules
