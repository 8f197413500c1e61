// Rules of the fields of a supplier order and of its rows.

#include "data/abort.h"
#include "kit/current_employee.h"
#include "kit/documents/rates.h"
#include "modules/purchases/frame/orvane_com.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr int kNoTransport = 1;
constexpr int kTransportIncluded = 2;
const Variant kRateOne = Variant(Decimal(10'000'000, 7));
const Variant kNoAmount = Variant(Decimal(0, 4));

}  // namespace

bool TdmSuppManifacOrder::IsOwner() const {
  const VosApplication& app = form_.App();
  const Variant creator = cdsSuppManifacOrder.FieldByName(head::CreatedFrom.name).Value();
  return !NeedsEmployee(app) || creator == Variant(app.UserName());
}

bool TdmSuppManifacOrder::MayBeChanged() const {
  const Variant status = cdsSuppManifacOrder.FieldByName(head::Status.name).Value();
  return form_.May(paDelete) && (IsOwner() || part.fullAccess) && !form_.viewOnly &&
         status == Variant(static_cast<int>(Entered));
}

bool TdmSuppManifacOrder::InNationalCurrency() const {
  const auto currency = cdsSuppManifacOrder.FieldByName(head::KindCurrency.name).AsInt();
  return !currency || *currency == parameters.nationalCurrency;
}

// --- head ---------------------------------------------------------------------------------------

void TdmSuppManifacOrder::BindHead() {
  using namespace supplier_order::head;
  TVosClientDataSet& order = cdsSuppManifacOrder;
  order.AddLookup(lupStatus, cdsNomIn249, "Status", "Element", "Name");
  order.AddLookup(lupIncTranspInPrice, cdsNomIn250, "IncTranspInPrice", "Element", "Name");
  order.OnNewRecord = [this] { cdsSuppManifacOrderNewRecord(); };
  // Who amended an order is written by the moves that amend it.
  order.BeforePost = [this] { documentHead.Stamp(IdNumber, false); };
  order[DocumentDate].OnChange = [this] { SetRateOfExchange(); };
  order[KindSupply].OnChange = [this] { cdsSuppManifacOrderKindSupplyChange(); };
  order[Supplier].OnChange = [this] { cdsSuppManifacOrderSupplierChange(); };
  order[ContractId].OnChange = [this] { cdsSuppManifacOrderContractIdChange(); };
  order[KindCurrency].OnChange = [this] { cdsSuppManifacOrderKindCurrencyChange(); };
  dsSuppManifacOrder.OnStateChange = [this] {
    form_.SetVosFormStatus(fsInserting, cdsSuppManifacOrder.State() == DataSetState::Insert);
  };
}

void TdmSuppManifacOrder::cdsSuppManifacOrderNewRecord() {
  using namespace supplier_order::head;
  TVosClientDataSet& order = cdsSuppManifacOrder;
  order[SumManifacOrder].Set(kNoAmount);
  order[CurrSumManifacOrder].Set(kNoAmount);
  order[Status].Set(static_cast<int>(Entered));
  order[CreatedFrom].Set(form_.App().UserName());
  order[Notifier].Set(form_.App().vCurrentEmployee);
  order[NotifierName].Set(employeeName);
  order[RateOfExchange].Set(kRateOne);
  order[KindCurrency].Set(parameters.nationalCurrency);
}

void TdmSuppManifacOrder::cdsSuppManifacOrderKindSupplyChange() {
  suppliesContracts.SetParam("KindSupply", cdsSuppManifacOrder[head::KindSupply].Value());
  TakeOnlyContract();
}

void TdmSuppManifacOrder::TakeOnlyContract() {
  using namespace supplier_order::head;
  TVosClientDataSet& order = cdsSuppManifacOrder;
  if (!order.Editing() || !order[ContractId].IsNull()) return;
  if (order[Supplier].IsNull() || order[KindSupply].IsNull()) return;
  suppliesContracts.FillIfStale();
  if (cdsSuppliesContracts.RecordCount() != 1) return;
  order[ContractId].Set(cdsSuppliesContracts.FieldByName("IdNumber").Value());
}

void TdmSuppManifacOrder::cdsSuppManifacOrderSupplierChange() {
  using namespace supplier_order::head;
  TVosClientDataSet& order = cdsSuppManifacOrder;
  const Variant supplier = order[Supplier].Value();
  suppliesContracts.SetParam("Supplier", supplier);
  if (!order.Editing()) return;
  const Variant contract = order[ContractId].Value();
  const bool known = !supplier.IsNull() && suppliesContracts.LocateKey(contract);
  if (!contract.IsNull() && !known) order[ContractId].Clear();
  TakeOnlyContract();
  suppliers.LocateKey(supplier);
  const Variant currency = suppliers.ValueOf(supplier, "SuppKindCurrency");
  order[KindCurrency].Set(currency.IsNull() ? Variant(parameters.nationalCurrency) : currency);
  RefreshKPL();
}

void TdmSuppManifacOrder::cdsSuppManifacOrderContractIdChange() {
  using namespace supplier_order::head;
  TVosClientDataSet& order = cdsSuppManifacOrder;
  const Variant contract = order[ContractId].Value();
  if (order.State() == DataSetState::Insert && suppliesContracts.LocateKey(contract)) {
    const Variant included = suppliesContracts.ValueOf(contract, "InclTransportInPrice");
    order[IncTranspInPrice].Set(included.AsBool().value_or(false) ? kTransportIncluded
                                                                  : kNoTransport);
  }
  RefreshKPL();
}

/// The list follows the day too. The same statement again changes nothing and fetches nothing.
void TdmSuppManifacOrder::RefreshKPL() {
  using namespace supplier_order::head;
  const Variant contract = cdsSuppManifacOrder[ContractId].Value();
  SupplyWay way = contract.IsNull() ? WayOf(suppliers, cdsSuppManifacOrder[Supplier].Value())
                                    : WayOf(suppliesContracts, contract);
  if (way.choice.IsNull()) way.choice = parameters.way.choice;
  if (way.list.IsNull()) way.list = parameters.way.list;
  kpl.SetTemplate(SetSuppListsSQL(static_cast<int>(way.choice.AsInt().value_or(0)), way.list,
                                  form_.cbKPL, cdsSuppManifacOrder[DocumentDate].AsDate()));
}

void TdmSuppManifacOrder::cdsSuppManifacOrderKindCurrencyChange() {
  form_.VisibleItemsDependOnCurrency();
  SetRateOfExchange();
}

void TdmSuppManifacOrder::SetRateOfExchange() {
  kit::SetRateOfExchange({.head = cdsSuppManifacOrder,
                          .cdsRatesOfExchange = cdsRatesOfExchange,
                          .centralBank = parameters.centralBank,
                          .nationalCurrency = parameters.nationalCurrency});
}

// --- rows ---------------------------------------------------------------------------------------

void TdmSuppManifacOrder::BindRows() {
  using namespace supplier_order::det;
  TVosClientDataSet& rows = cdsSuppManOrderDet;
  rows.OnNewRecord = [this] { cdsSuppManOrderDetAfterInsert(); };
  rows.BeforePost = [this] { cdsSuppManOrderDetBeforePost(); };
  rows.AfterScroll = [this] {
    RefreshMeasure();
    form_.QuantityFollowsUnit();
  };
  rows[SerialNumber].OnChange = [this] { cdsSuppManOrderDetSerialNumberChange(); };
  rows[Measure].OnChange = [this] { cdsSuppManOrderDetMeasureChange(); };
}

void TdmSuppManifacOrder::cdsSuppManOrderDetAfterInsert() {
  cdsSuppManOrderDet[det::SuppManOrderId].Set(cdsSuppManifacOrder[head::IdNumber].Value());
  cdsSuppManOrderDet[det::RowNumber].Set(lastRowNumber_ + 1);
  form_.gSuppManOrderDet.FocusField(det::SerialNumber.name);
}

/// A row without an entry is nothing: it goes without a word.
void TdmSuppManifacOrder::cdsSuppManOrderDetBeforePost() {
  if (!cdsSuppManOrderDet[det::SerialNumber].IsNull()) return;
  cdsSuppManOrderDet.Cancel();
  throw Abort{};
}

void TdmSuppManifacOrder::cdsSuppManOrderDetSerialNumberChange() {
  if (!cdsSuppManOrderDet.Editing()) return;
  const bool first = form_.FirstLanguage();
  if (!supplyRows.TakeEntry(cdsSuppManOrderDet[det::SerialNumber].Value(), first)) return;
  RefreshMeasure();
  supplyRows.TakeEntryMeasure(first);
  form_.QuantityFollowsUnit();
}

void TdmSuppManifacOrder::cdsSuppManOrderDetMeasureChange() {
  if (!cdsSuppManOrderDet.Editing()) return;
  supplyRows.TakeMeasure(form_.FirstLanguage());
  form_.QuantityFollowsUnit();
}

void TdmSuppManifacOrder::RefreshMeasure() {
  supplyRows.RefreshMeasure(parameters.ownMeasuresOnly);
}

}  // namespace orvane::modules
