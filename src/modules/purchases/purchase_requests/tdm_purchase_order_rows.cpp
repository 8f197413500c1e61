// Rules of the rows of a purchase request: materials and services, delivery schedule, payment plan.

#include "host/dialogs.h"
#include "host/search_dialog.h"
#include "kit/columns.h"
#include "kit/required_fields.h"
#include "kit/row_names.h"
#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"
#include "packet/quantity.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr int kWarning = 2;
constexpr std::string_view _rExceedsOrder =
    "Въведеното количество трябва да бъде по-малко или равно от \"Остатък за искане\" за "
    "избраната поръчка!";
constexpr std::string_view _rNotInSupplyList =
    "Артикул %s не е в списъка за доставка, от който избира този документ.";

constexpr std::string_view kOrderQuantities[] = {
    "CalcQuantity", "CalcOrderedQunatity", "RestOrdQNT", "CalcDeliverQuantity", "RestDlvrQNT"};

/// Entries of the supplier's list that are in force on a day, with their names.
const std::vector<std::string> kGroupSearch = {
    "SELECT DISTINCT B.SerialNumber,",
    " CASE ISNULL(D.IdentityWithNom, 0)",
    "  WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN S.Name END",
    "  WHEN 0 THEN B.Name END cbName,",
    " CASE ISNULL(D.IdentityWithNom, 0)",
    "  WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name2 WHEN 2 THEN S.Name2 END",
    "  WHEN 0 THEN B.Name2 END cbName2",
    "FROM Partners PR {$WN}",
    "INNER JOIN SupplyListsDates SD {$WN} ON SD.KindList = PR.KindSupplyList",
    "INNER JOIN BaseSupplyList B {$WN} ON SD.SerialNumber = B.SerialNumber",
    "LEFT OUTER JOIN MaterialStocks M {$WN} ON B.InventoryCode = M.IdNumber",
    "LEFT OUTER JOIN Services S {$WN} ON S.Code = B.ServiceCode",
    "LEFT OUTER JOIN DescrBaseSupplyList D {$WN} ON 1=1",
    "WHERE PR.Partner = :Partner AND SD.AvailableFromDate <= :ForDate",
    "AND (M.SuppForbiddenFrom IS NULL OR M.SuppForbiddenFrom > :ForDate)",
    "AND (M.SuppActiveFrom IS NULL OR M.SuppActiveFrom <= :ForDate)",
    "{$WA} {$O}"};

constexpr FieldDef kGroupColumns[] = {
    Code19("SerialNumber", Key, "Пореден номер"),
    String("cbName", 40, Plain, "Име"),
    String("cbName2", 40, Plain, "Име 2"),
};

}  // namespace

void TdmPurchaseOrder::NameParts() {
  const auto name = [](TVosClientDataSet& rows, RowWord row) {
    NameRows(
        rows,
        {{kDocumentName, det::PurchaseOrderId.name}, {"версия", det::PurchaseOrderVer.name}, row});
  };
  name(cdsPurchaseOrderDet, {"ред", det::RowNumber.name});
  name(cdsPurchaseOrderDel, {"доставка на", del::DeliveryDate.name});
  name(cdsPurchaseOrderPayPl, {"плащане", pay::RowNumber.name});
  name(cdsPurchaseOrderAdm, {"ниво", adm::ConfirmationLevel.name});
}

void TdmPurchaseOrder::BindParts() {
  NameParts();
  cdsPurchaseOrderDet.OnNewRecord = [this] { cdsPurchaseOrderDetNewRecord(); };
  cdsPurchaseOrderDet.BeforePost = [this] { cdsPurchaseOrderDetBeforePost(); };
  cdsPurchaseOrderDet.AfterScroll = [this] {
    suppManOrd.SetParam("SerialNumber", cdsPurchaseOrderDet[det::SerialNumber].Value());
  };
  cdsPurchaseOrderDet[det::SerialNumber].OnChange = [this] { SerialNumberChange(); };
  cdsPurchaseOrderDet[det::Measure].OnChange = [this] {
    supplyRows.TakeMeasure(form_.values.FirstLanguage());
  };
  cdsPurchaseOrderDet[det::SuppManifacOrderId].OnChange = [this] { SuppManifacOrderIdChange(); };
  dsPurchaseOrderDet.OnStateChange = [this] { dsPurchaseOrderDetStateChange(); };
  for (std::string_view field : kOrderQuantities)
    cdsSuppManOrd.FieldByName(field).OnGetText = [this](const Variant& value) {
      return OrderQuantityText(value);
    };

  cdsPurchaseOrderDel.SetIndexFieldNames("DeliveryDate");
  cdsPurchaseOrderDel.BeforePost = [this] { CopyKey(cdsPurchaseOrderDel); };

  cdsPurchaseOrderPayPl.SetIndexFieldNames("RNLocate");
  cdsPurchaseOrderPayPl.OnNewRecord = [this] { cdsPurchaseOrderPayPlNewRecord(); };
  cdsPurchaseOrderPayPl.BeforePost = [this] { cdsPurchaseOrderPayPlBeforePost(); };
  cdsPurchaseOrderPayPl[pay::InvoiceDate].OnChange = [this] { InvoiceDateChange(); };

  cdsPurchaseOrderAdm.SetIndexFieldNames("ConfLevelLocate");
  cdsPurchaseOrderAdm.AddLookup(lupAppStatusName, cdsNomIn251, "Status", "Element", "Name");
  cdsPurchaseOrderAdm.AddLookup(lupApprovalName, cdsNomIn245, "Approval", "Element", "Name");
  cdsPurchaseOrderAdm[adm::ConfermedOn].Format.withSeconds = true;
  cdsPurchaseOrderAdm[adm::UnConfirmedOn].Format.withSeconds = true;

  for (TVosClientDataSet* rows :
       {&cdsPurchaseOrderDet, &cdsPurchaseOrderDel, &cdsPurchaseOrderPayPl})
    ApplyRowsAtOnce(form_, *rows, cdsPurchaseOrder);
  ApplyRowsAtOnce(form_, cdsPurchaseOrderAdm, cdsPurchaseOrder,
                  {.maxErrors = -1,
                   .form = ApplyForm::Repeated,
                   .afterRefusal = AfterRefusal::Cancel,
                   .dropsUnsent = true});
  cdsPurchaseOrderAdm.AfterDelete = {};
  cdsPurchaseOrderAdm.BeforeApplyUpdates = [this] {
    cdsPurchaseOrderAdm.OwnerData = Variant(form_.App().ConnectionInfo());
  };
}

void TdmPurchaseOrder::CopyKey(TVosClientDataSet& rows) {
  if (rows.State() != DataSetState::Insert) return;
  rows.FieldByName("PurchaseOrderId").Set(cdsPurchaseOrder[head::POIdNumber].Value());
  rows.FieldByName("PurchaseOrderVer").Set(cdsPurchaseOrder[head::POVersion].Value());
}

// --- rows ---------------------------------------------------------------------------------------

void TdmPurchaseOrder::cdsPurchaseOrderDetNewRecord() {
  cdsPurchaseOrderDet[det::Quantity].Set(0.0);
  cdsPurchaseOrderDet[det::CurrSumWithoutVAT].Set(Decimal(0, 4));
}

void TdmPurchaseOrder::cdsPurchaseOrderDetBeforePost() {
  RequireFields(form_, form_.gPurchaseOrderDet, _rFieldNotFilled,
                {"SerialNumber", "Measure", "Quantity"});
  CheckOrderRest();
  RequireFields(form_, form_.gPurchaseOrderDet, _rFieldNotFilled, {"CurrSumWithoutVAT"});
  CopyKey(cdsPurchaseOrderDet);
}

/// No more may be requested than the supplier order still leaves; all of it may. Others request
/// meanwhile: what is left is asked anew.
void TdmPurchaseOrder::CheckOrderRest() {
  const Variant order = cdsPurchaseOrderDet[det::SuppManifacOrderId].Value();
  if (order.IsNull()) return;
  SetOrderParams();
  suppManOrd.Forget();
  if (!suppManOrd.LocateKey(order)) return;
  const auto rest = suppManOrd.ValueOf(order, "RestOrdQNT").AsDouble();
  const auto asked = cdsPurchaseOrderDet[det::Quantity].AsDouble();
  if (rest && asked && CompareQuantities(*asked, *rest) > 0)
    RefuseAt(form_, form_.gPurchaseOrderDet, "Quantity", _rExceedsOrder);
}

bool TdmPurchaseOrder::NamesOrders() const {
  const TField& order = cdsPurchaseOrderDet.FieldByName(det::SuppManifacOrderId.name);
  for (std::size_t row = 0; row < cdsPurchaseOrderDet.RecordCount(); ++row) {
    if (!cdsPurchaseOrderDet.ValueAt(row, order).IsNull()) return true;
  }
  return false;
}

void TdmPurchaseOrder::dsPurchaseOrderDetStateChange() {
  TVosDBGrid& grid = form_.gPurchaseOrderDet;
  if (cdsPurchaseOrderDet.State() != DataSetState::Insert) return;
  const GridColumn* column = grid.FindColumn(det::RowNumber.name);
  if (column != nullptr) grid.SetCurrentColumn(static_cast<int>(column - grid.columns.data()));
  const auto next = cdsPurchaseOrderDet.MaxOf(det::RowNumber, 1).AsInt().value_or(0);
  cdsPurchaseOrderDet[det::RowNumber].Set(next == 0 ? std::int64_t{1} : next);
  grid.fixedCols = 1;
}

void TdmPurchaseOrder::SerialNumberChange() {
  const bool firstLanguage = form_.values.FirstLanguage();
  const Variant serial = cdsPurchaseOrderDet[det::SerialNumber].Value();
  if (!supplyRows.TakeEntry(serial, firstLanguage)) return;
  cdsPurchaseOrderDet[det::CurrSumWithoutVAT].Set(Decimal(0, 4));
  RefreshMeasure();
  supplyRows.TakeEntryMeasure(firstLanguage);
  suppManOrd.SetParam("SerialNumber", serial);
}

void TdmPurchaseOrder::RefreshMeasure() {
  supplyRows.RefreshMeasure(form_.values._cpLimitMeasures == 1);
}

void TdmPurchaseOrder::SetOrderParams() {
  suppManOrd.SetParam("Supplier", cdsPurchaseOrder[head::Supplier].Value());
  suppManOrd.SetParam("SerialNumber", cdsPurchaseOrderDet[det::SerialNumber].Value());
}

void TdmPurchaseOrder::SuppManifacOrderIdChange() {
  const Variant order = cdsPurchaseOrderDet[det::SuppManifacOrderId].Value();
  if (order.IsNull()) return cdsPurchaseOrderDet[det::SMOName].Clear();
  SetOrderParams();
  if (!suppManOrd.LocateKey(order)) return;
  const std::string_view name = form_.values.FirstLanguage() ? "Description" : "Description2";
  cdsPurchaseOrderDet[det::SMOName].Set(suppManOrd.ValueOf(order, name));
}

/// Quantities of supplier orders are shown in smallest units, as the row's item is counted.
std::string TdmPurchaseOrder::OrderQuantityText(const Variant& value) {
  if (value.IsNull()) return "0";
  QuantityUnit unit = supplyRows.UnitAt(cdsPurchaseOrderDet.RecNo());
  unit.rowNumerator = 1;
  return QuantityToStr(value.AsDouble().value_or(0), unit);
}

// --- payment plan -------------------------------------------------------------------------------

void TdmPurchaseOrder::cdsPurchaseOrderPayPlNewRecord() {
  cdsPurchaseOrderPayPl[pay::SumWithVAT].Set(Decimal(0, 4));
  cdsPurchaseOrderPayPl[pay::AdvancePayment].Set(false);
  cdsPurchaseOrderPayPl[pay::AdvanceStatement].Set(false);
}

void TdmPurchaseOrder::InvoiceDateChange() {
  const auto invoiced = cdsPurchaseOrderPayPl[pay::InvoiceDate].AsDate();
  if (!invoiced) return;
  cdsPurchaseOrderPayPl[pay::PaymentDate].Set(invoiced->PlusDays(form_.values.vMaxTermOfPayment));
}

void TdmPurchaseOrder::cdsPurchaseOrderPayPlBeforePost() {
  RequireFields(form_, form_.gPOPayPl, _rFieldNotFilled,
                {"InvoiceDate", "SumWithVAT", "PaymentDate"});
  if (cdsPurchaseOrderPayPl.State() == DataSetState::Insert)
    cdsPurchaseOrderPayPl[pay::RowNumber].Set(cdsPurchaseOrderPayPl[pay::RNLocate].Value());
  CopyKey(cdsPurchaseOrderPayPl);
}

// --- search by groups ---------------------------------------------------------------------------

SearchSpec TdmPurchaseOrder::GroupSearch() {
  SearchSpec spec;
  spec.caption = "Търсене -Групиране";
  spec.provider = system::kDialogSearchProvider;
  spec.lines = kGroupSearch;
  spec.params = {{"Partner", cdsPurchaseOrder[head::Supplier].Value()},
                 {"ForDate", cdsPurchaseOrder[head::DocumentDate].Value()},
                 {"Store", 0}};
  spec.fields = {
      SearchBy("SerialNumber", "Пореден номер"),
      SearchBy("cbName", "Име").In(Visibility::fvFirstLang).ByPart(),
      SearchBy("cbName2", "Име 2").In(Visibility::fvSecondLang).ByPart(),
  };
  spec.columns.assign(std::begin(kGroupColumns), std::end(kGroupColumns));
  spec.startField = "cbName";
  return spec;
}

void TdmPurchaseOrder::SearchGroup() {
  const auto chosen = RunSearchDialog(form_, GroupSearch());
  const Variant* serial = chosen ? FindValue(*chosen, "SerialNumber") : nullptr;
  if (form_.gPurchaseOrderDet.readOnly || serial == nullptr || serial->IsNull()) return;
  if (!kpl.LocateKey(*serial)) {
    VosMessageDlg(form_, kWarning, form_.caption, Filled(_rNotInSupplyList, {serial->ToText()}));
    return;
  }
  form_.gPurchaseOrderDet.CloseEditor();
  if (!cdsPurchaseOrderDet.Editing()) cdsPurchaseOrderDet.Edit();
  cdsPurchaseOrderDet[det::SerialNumber].Set(*serial);
}

}  // namespace orvane::modules
