#include "modules/purchases/purchase_requests/tdm_purchase_order.h"

#include "contract/system.h"
#include "data/screen_fetch.h"
#include "host/dialogs.h"
#include "kit/current_employee.h"
#include "kit/documents/approval_decisions.h"
#include "kit/documents/document_load.h"
#include "kit/documents/rates.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/frame/orvane_com.h"
#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr int kWarning = 2;
constexpr int kEntered = DocumentStatus::Entered;
constexpr int kNoTransport = 1;
constexpr int kTransportIncluded = 2;
const Variant kRateOne = Variant(Decimal(10'000'000, 7));
const Variant kNoAmount = Variant(Decimal(0, 4));

constexpr std::string_view _rNotAdmissible =
    "Заявител с код %s няма право да създава \"Искане за покупка\"! (Виж \"Допустими заявители\")";
constexpr std::string_view _rNoKindSupplyChoice =
    "Не е попълнен параметър \"Начин на избор в списък за доставка\"!";
constexpr std::string_view _rDiffFromSum =
    "Има разлика между сумата от план за плащане и сумата на искането.Стойностите са съответно  ";
constexpr std::string_view _rDiffFromRows =
    "Има разлика между сумата от план за плащане и сумата от редовете с материали и услуги с "
    "начислено ДДС. Стойностите са съответно ";

/// Columns of the lookups that are not the document's own.
namespace order_lookup {
constexpr auto IdNumber = Int32("IdNumber", Key, "Номер");
constexpr auto Description = String("Description", 50, Plain, "Описание");
constexpr auto Description2 = String("Description2", 50, Plain, "Описание 2");
constexpr auto DocumentDate = Day("DocumentDate", Plain, "Дата на документа");
constexpr auto CalcQuantity = Real("CalcQuantity", Plain, "Поръчано количество");
constexpr auto CalcOrderedQunatity = Real("CalcOrderedQunatity", Plain, "Поискано количество");
constexpr auto RestOrdQNT = Real("RestOrdQNT", Plain, "Остатък за искане");
constexpr auto CalcDeliverQuantity = Real("CalcDeliverQuantity", Plain, "Доставено количество");
constexpr auto RestDlvrQNT = Real("RestDlvrQNT", Plain, "Остатък за доставка");
}  // namespace order_lookup

constexpr SupplyRowFields kRowFields{.name = "bslName",
                                     .measureName = "MsrName",
                                     .roundQuantity = "roundQNT",
                                     .stockMeasure = "msMeasure",
                                     .incomeMeasure = "IncomeMeasure",
                                     .barCodeMeasure = "BarCodeMeasure",
                                     .serviceMeasure = "servMeasure",
                                     .noQuantity = "0"};

}  // namespace

TdmPurchaseOrder::TdmPurchaseOrder(TfPurchaseOrder& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcPurchaseOrder(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsPurchaseOrder("cdsPurchaseOrder", sqlcPurchaseOrder, head::dspPurchaseOrder),
      cdsPurchaseOrderDet("cdsPurchaseOrderDet", sqlcPurchaseOrder, det::dspPurchaseOrderDet),
      cdsPurchaseOrderDel("cdsPurchaseOrderDel", sqlcPurchaseOrder, del::dspPurchaseOrderDel),
      cdsPurchaseOrderPayPl("cdsPurchaseOrderPayPl", sqlcPurchaseOrder, pay::dspPurchaseOrderPayPl),
      cdsPurchaseOrderAdm("cdsPurchaseOrderAdm", sqlcPurchaseOrder, adm::dspPurchaseOrderAdm),
      cdsDeliveries("cdsDeliveries", sqlcPurchaseOrder, deliveries::dspDeliveries),
      cdsGetSuppDocConfirm("cdsGetSuppDocConfirm", sqlcPurchaseOrder, roles::dspGetSuppDocConfirm),
      cdsCheckAdmNotifiers("cdsCheckAdmNotifiers", sqlcPurchaseOrder, dspCheckAdmNotifiers),
      cdsRatesOfExchange("cdsRatesOfExchange", sqlcPurchaseOrder, dspRatesOfExchange),
      cdsNomIn245("cdsNomIn245", sqlcPurchaseOrder, dspNomIn245),
      cdsNomIn249("cdsNomIn249", sqlcPurchaseOrder, dspNomIn249),
      cdsNomIn251("cdsNomIn251", sqlcPurchaseOrder, dspNomIn251),
      cdsCostCenters("cdsCostCenters", cSQL, own_rows::kCostCenter),
      cdsKindSupplies("cdsKindSupplies", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsPartners("cdsPartners", cSQL, own_rows::kPartner),
      cdsSuppliesContracts("cdsSuppliesContracts", cSQL, own_rows::kContract),
      cdsCurrencies("cdsCurrencies", cSQL, {core::Code, core::Name20, core::Name20Second}),
      cdsNomIn250("cdsNomIn250", cSQL, {core::Element, core::Name30, core::Name30Second}),
      cdsKPL("cdsKPL", cSQL, core::supply_list::kEntry),
      cdsSuppManOrd("cdsSuppManOrd", cSQL,
                    {order_lookup::IdNumber, order_lookup::Description, order_lookup::Description2,
                     order_lookup::DocumentDate, order_lookup::CalcQuantity,
                     order_lookup::CalcOrderedQunatity, order_lookup::RestOrdQNT,
                     order_lookup::CalcDeliverQuantity, order_lookup::RestDlvrQNT}),
      cdsMeasures(
          "cdsMeasures", cSQL,
          {core::Code, core::Name20, core::Name20Second, core::Numerator, core::OrdinaryFraction}),
      costCenters(cdsCostCenters, "CostCenter"),
      kindSupplies(cdsKindSupplies, "Code"),
      partners(cdsPartners, "Partner"),
      suppliesContracts(cdsSuppliesContracts, "IdNumber"),
      currencies(cdsCurrencies, "Code"),
      nomIn250(cdsNomIn250, "Element"),
      kpl(cdsKPL, "SerialNumber"),
      suppManOrd(cdsSuppManOrd, "IdNumber"),
      measures(cdsMeasures, "Code"),
      dsPurchaseOrder(cdsPurchaseOrder),
      dsPurchaseOrderDet(cdsPurchaseOrderDet),
      dsPurchaseOrderDel(cdsPurchaseOrderDel),
      dsPurchaseOrderPayPl(cdsPurchaseOrderPayPl),
      dsPurchaseOrderAdm(cdsPurchaseOrderAdm),
      dsDeliveries(cdsDeliveries),
      documentHead(form, cdsPurchaseOrder, MakeHeadRules()),
      supplyRows(cdsPurchaseOrderDet, kRowFields, kpl, measures),
      form_(form) {
  BindHead();
  BindParts();
}

void TdmPurchaseOrder::BindHead() {
  using namespace purchase_request::head;
  NameRows(cdsPurchaseOrder, {{kDocumentName, POIdNumber.name}, {"версия", POVersion.name}});
  cdsPurchaseOrder.AddLookup(lupStatusName, cdsNomIn249, "Status", "Element", "Name");
  cdsPurchaseOrder.BeforePost = [this] { cdsPurchaseOrderBeforePost(); };
  cdsPurchaseOrder.OnNewRecord = [this] { cdsPurchaseOrderNewRecord(); };
  cdsPurchaseOrder[DocumentDate].OnChange = [this] { DocumentDateChange(); };
  cdsPurchaseOrder[Notifier].OnChange = [this] { NotifierChange(); };
  cdsPurchaseOrder[Supplier].OnChange = [this] { SupplierChange(); };
  cdsPurchaseOrder[ContractId].OnChange = [this] { ContractIdChange(); };
  cdsPurchaseOrder[head::KindSupply].OnChange = [this] { KindSupplyChange(); };
  cdsPurchaseOrder[KindCurrency].OnChange = [this] { KindCurrencyChange(); };
  dsPurchaseOrder.OnStateChange = [this] {
    form_.SetVosFormStatus(fsInserting, cdsPurchaseOrder.State() == DataSetState::Insert);
  };
}

void TdmPurchaseOrder::SetLanguage() {
  const std::string_view name = form_.values.FirstLanguage() ? "Name" : "Name2";
  cdsPurchaseOrder.SetLookupResult(lupStatusName, name);
  cdsPurchaseOrderAdm.SetLookupResult(lupAppStatusName, name);
  cdsPurchaseOrderAdm.SetLookupResult(lupApprovalName, name);
}

std::int64_t TdmPurchaseOrder::KindSupply() const {
  return cdsPurchaseOrder.FieldByName(head::KindSupply.name).AsInt().value_or(0);
}

bool TdmPurchaseOrder::InNationalCurrency() const {
  const auto currency = cdsPurchaseOrder.FieldByName(head::KindCurrency.name).AsInt();
  return !currency || *currency == form_.values._cpBGNKindCurrency;
}

// --- loading ------------------------------------------------------------------------------------

void TdmPurchaseOrder::FetchOnOpening() {
  cdsCheckAdmNotifiers.SetParam("Notifier", form_.App().vCurrentEmployee);
  FetchTogether({&kindSupplies, &currencies, &nomIn250},
                {&cdsNomIn245, &cdsNomIn249, &cdsNomIn251, &cdsCheckAdmNotifiers});
}

void TdmPurchaseOrder::Operations(VariantArray& data) {
  CallOperations(sqlcPurchaseOrder, kOperations, data);
}

LoadCode TdmPurchaseOrder::GetRecord(Nav nav, int step, std::int64_t id, int ver) {
  PurchaseOrderValues& values = form_.values;
  form_.SendWaiting();
  VosApplication& app = form_.App();
  const std::int64_t shownBefore = values.LastGetID;
  VariantArray data(get_rec::kAskSize);
  data[get_rec::kOperation] = get_rec::kName;
  data[get_rec::kLanguage] = values.LNG_;
  data[get_rec::kNav] = static_cast<int>(nav);
  data[get_rec::kStep] = step;
  data[get_rec::kId] = id;
  data[get_rec::kVersion] = ver == 0 ? Variant() : Variant(ver);
  data[get_rec::kLogin] = app.UserName();
  data[get_rec::kEmployee] = app.vCurrentEmployee;
  data[get_rec::kNeedsEmployee] = NeedsEmployee(app);
  data[get_rec::kOneDocument] = values.DisplayOneDocMode;
  Operations(data);

  const auto [code, found] = ReadLoadTold(data);
  if (code != LoadCode::None && found) TakeRecord(data);
  if (ver == 0) {
    values.LastGetRecID = code;
    values.LastGetRecVer = LoadCode::Last;
  } else {
    values.LastGetRecVer = code;
    // Where among all requests it stands is not told with one of its versions.
    if (values.LastGetID != shownBefore) values.LastGetRecID = LoadCode::Between;
  }
  return code;
}

void TdmPurchaseOrder::TakeRecord(const VariantArray& answer) {
  using namespace purchase_request::head;
  PurchaseOrderValues& values = form_.values;
  TakeShownRows(answer, {{get_rec::kCostCenterRow, costCenters},
                         {get_rec::kPartnerRow, partners},
                         {get_rec::kContractRow, suppliesContracts}});
  LoadPackets(
      answer, get_rec::kFirstPacket,
      {&cdsPurchaseOrder, &cdsPurchaseOrderDet, &cdsPurchaseOrderDel, &cdsPurchaseOrderPayPl,
       &cdsPurchaseOrderAdm, &cdsDeliveries, &cdsGetSuppDocConfirm});
  form_.ShowKeys(cdsPurchaseOrder[POIdNumber].AsInt().value_or(0),
                 static_cast<int>(cdsPurchaseOrder[POVersion].AsInt().value_or(0)));
  costCenters.SetParam("Notifier", cdsPurchaseOrder[Notifier].Value());
  suppliesContracts.SetParam("Supplier", cdsPurchaseOrder[Supplier].Value());
  suppliesContracts.SetParam("KindSupp", cdsPurchaseOrder[head::KindSupply].Value());
  if (values.DisplayOneDocMode) RefreshMeasure();
  form_.VisibleItemsDependOnKind();
  form_.ShowDeliveriesPage();
  form_.VisibleItemsDependOnCurrency();
  SetUpKPL();
  GetMaxTermOfPayment();
  form_.VisibleMSGridCols();
  values.FillAmend = true;
  TakeRoles();
  form_.SetPropertiesVals();
}

void TdmPurchaseOrder::TakeRoles() {
  const ApprovalRoles roles = ReadRoles(cdsGetSuppDocConfirm);
  PurchaseOrderValues& values = form_.values;
  values.vCanUnConfirm = roles.canUnConfirm;
  values.vUnConfirmationLevel = roles.unConfirmLevel;
  values.vUnConfirmationStatus = roles.unConfirmStatus;
  values.vCanConfirm = roles.canConfirm;
  values.vConfirmationLevel = roles.confirmLevel;
  values.vConfirmationStatus = roles.confirmStatus;
  values.vCostCentetChief = roles.isChief;
}

void TdmPurchaseOrder::EmptyParts() {
  for (TVosClientDataSet* part :
       {&cdsPurchaseOrderDet, &cdsPurchaseOrderDel, &cdsPurchaseOrderPayPl, &cdsPurchaseOrderAdm,
        &cdsDeliveries, &cdsGetSuppDocConfirm})
    part->EmptyDataSet();
  TakeRoles();
}

bool TdmPurchaseOrder::GetSumCheck(std::int64_t id, int ver, std::string& Msg) {
  VariantArray data(sum_check::kSize);
  data[sum_check::kOperation] = sum_check::kName;
  data[sum_check::kId] = id;
  data[sum_check::kVersion] = ver;
  Operations(data);
  data.resize(sum_check::kSize);
  const Variant& plan = data[sum_check::kPlan];
  const Variant& compared = data[sum_check::kCompared];
  if (plan == compared) return false;
  const bool isAmount = data[sum_check::kIsAmount].AsInt() == 1;
  const TField& sum = cdsPurchaseOrderPayPl[pay::SumWithVAT];
  Msg = std::string(isAmount ? _rDiffFromSum : _rDiffFromRows) + sum.TextOf(plan) + " и  " +
        sum.TextOf(compared) + ".";
  return true;
}

// --- saving -------------------------------------------------------------------------------------

HeadApplyRules TdmPurchaseOrder::MakeHeadRules() {
  HeadApplyRules rules;
  rules.ownerData = [this](bool postExisting) {
    return Variant(VariantArray{Variant(form_.App().ConnectionInfo()), Variant(postExisting)});
  };
  rules.reloadSaved = [this](const Variant& saved, bool postExisting) {
    const PurchaseOrderValues& values = form_.values;
    if (postExisting) {
      GetRecord(Nav::ByKey, 0, values.LastGetID, values.LastGetVer);
    } else {
      form_.eIdNum.SetText(saved.ToText());
      GetRecord(Nav::ByKey, 0, saved.AsInt().value_or(0), 0);
    }
  };
  rules.reloadDropped = [this] {
    if (cdsPurchaseOrder.Editing()) cdsPurchaseOrder.Cancel();
    form_.ReloadShown();
    form_.FocusControl(&form_.eIdNum);
  };
  return rules;
}

// --- rules of the head --------------------------------------------------------------------------

void TdmPurchaseOrder::cdsPurchaseOrderBeforePost() {
  using namespace purchase_request::head;
  if (!documentHead.Stamp(POIdNumber, form_.values.FillAmend)) return;
  cdsPurchaseOrder[POVersion].Set(0);
  cdsPurchaseOrder[Status].Set(kEntered);
}

void TdmPurchaseOrder::cdsPurchaseOrderNewRecord() {
  using namespace purchase_request::head;
  const Variant employee = form_.App().vCurrentEmployee;
  cdsPurchaseOrder[POIdNumber].Set(-1);
  cdsPurchaseOrder[POVersion].Set(0);
  cdsPurchaseOrder[Status].Set(kEntered);
  cdsPurchaseOrder[OldVersion].Set(false);
  cdsPurchaseOrder[RateOfExchange].Set(kRateOne);
  cdsPurchaseOrder[CurrSumPurchaseOrder].Set(kNoAmount);
  cdsPurchaseOrder[SumPurchaseOrder].Set(kNoAmount);
  cdsPurchaseOrder[Notifier].Set(employee);
  for (const std::string_view param : {"Supplier", "KindSupp"})
    suppliesContracts.SetParam(param, Variant());  // of the request shown before
  cdsCheckAdmNotifiers.SetParam("Notifier", employee);
  cdsCheckAdmNotifiers.Open();
  sqlcPurchaseOrder.Close();
  if (cdsCheckAdmNotifiers.IsEmpty()) {
    VosMessageDlg(form_, kWarning, form_.caption, Filled(_rNotAdmissible, {employee.ToText()}));
    form_.FocusControl(&form_.eIdNum);
    throw Abort{};
  }
  cdsPurchaseOrder[IncTranspInPrice].Set(kNoTransport);
  cdsPurchaseOrder[KindCurrency].Set(form_.values._cpBGNKindCurrency);
  form_.values.vMaxTermOfPayment = form_.values._cpMaxTermOfPayment;
}

void TdmPurchaseOrder::NotifierChange() {
  costCenters.SetParam("Notifier", cdsPurchaseOrder[head::Notifier].Value());
}

void TdmPurchaseOrder::BindContractsTo(std::string_view param, const Variant& value) {
  if (!value.IsNull() && suppliesContracts.Param(param) == value) return;
  cdsPurchaseOrder[head::ContractId].Clear();
  suppliesContracts.SetParam(param, value);
}

void TdmPurchaseOrder::SupplierChange() {
  const Variant supplier = cdsPurchaseOrder[head::Supplier].Value();
  if (!supplier.IsNull() && partners.LocateKey(supplier)) {
    const auto term = partners.ValueOf(supplier, "SuppMaxTermOfPayment").AsInt();
    if (term) form_.values.vMaxTermOfPayment = static_cast<int>(*term);
  }
  BindContractsTo("Supplier", supplier);
  if (supplier.IsNull()) return;
  const Variant currency = partners.ValueOf(supplier, "SuppKindCurrency");
  cdsPurchaseOrder[head::KindCurrency].Set(
      currency.IsNull() ? Variant(form_.values._cpBGNKindCurrency) : currency);
}

void TdmPurchaseOrder::ContractIdChange() {
  const Variant contract = cdsPurchaseOrder[head::ContractId].Value();
  if (contract.IsNull() || !suppliesContracts.LocateKey(contract)) return;
  const bool included =
      suppliesContracts.ValueOf(contract, "InclTransportInPrice").AsBool().value_or(false);
  cdsPurchaseOrder[head::IncTranspInPrice].Set(included ? kTransportIncluded : kNoTransport);
  const auto term = suppliesContracts.ValueOf(contract, "MaxTermOfPayment").AsInt();
  if (term) form_.values.vMaxTermOfPayment = static_cast<int>(*term);
}

void TdmPurchaseOrder::KindSupplyChange() {
  BindContractsTo("KindSupp", cdsPurchaseOrder[head::KindSupply].Value());
  form_.VisibleItemsDependOnKind();
}

void TdmPurchaseOrder::KindCurrencyChange() {
  form_.VisibleItemsDependOnCurrency();
  SetRateOfExchange();
}

void TdmPurchaseOrder::SetRateOfExchange() {
  kit::SetRateOfExchange({.head = cdsPurchaseOrder,
                          .cdsRatesOfExchange = cdsRatesOfExchange,
                          .centralBank = form_.values._cpCentralBank,
                          .nationalCurrency = form_.values._cpBGNKindCurrency});
}

void TdmPurchaseOrder::GetMaxTermOfPayment() {
  const Variant contract = cdsPurchaseOrder[head::ContractId].Value();
  const Variant supplier = cdsPurchaseOrder[head::Supplier].Value();
  for (const Variant& term : {suppliesContracts.ValueOf(contract, "MaxTermOfPayment"),
                              partners.ValueOf(supplier, "SuppMaxTermOfPayment"),
                              Variant(form_.values._cpMaxTermOfPayment)}) {
    if (term.IsNull()) continue;
    form_.values.vMaxTermOfPayment = static_cast<int>(term.AsInt().value_or(0));
    return;
  }
}

void TdmPurchaseOrder::SetUpKPL() {
  const PurchaseOrderValues& values = form_.values;
  const Variant contract = cdsPurchaseOrder[head::ContractId].Value();
  const Variant supplier = cdsPurchaseOrder[head::Supplier].Value();
  SupplyWay way = WayOf(suppliesContracts, contract);
  if (way.choice.IsNull()) way = WayOf(partners, supplier);
  if (way.choice.IsNull()) {
    if (values._cpKindSupplyChoice == 0)
      VosMessageDlg(form_, kWarning, form_.caption, _rNoKindSupplyChoice);
    // No list is number 0 or less: an unset parameter means the base list.
    way = {values._cpKindSupplyChoice,
           values._cpKindSupplyList > 0 ? Variant(values._cpKindSupplyList) : Variant()};
  }
  kpl.SetTemplate(SetSuppListsSQL(static_cast<int>(way.choice.AsInt().value_or(0)), way.list,
                                  form_.cbKPL, cdsPurchaseOrder[head::DocumentDate].AsDate()));
}

}  // namespace orvane::modules
