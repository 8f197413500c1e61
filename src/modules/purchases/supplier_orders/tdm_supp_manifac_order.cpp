#include "modules/purchases/supplier_orders/tdm_supp_manifac_order.h"

#include "contract/document_rows.h"
#include "contract/system.h"
#include "kit/current_employee.h"
#include "kit/documents/document_load.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

/// Everything an order's datasets apply goes all or nothing, once.
constexpr ImmediateApply kAtOnce{.maxErrors = 0, .form = ApplyForm::Once};

int NumberAt(const VariantArray& answer, std::size_t position) {
  return static_cast<int>(answer[position].AsInt().value_or(0));
}

bool FlagAt(const VariantArray& answer, std::size_t position) {
  return answer[position].AsBool().value_or(false);
}

}  // namespace

TdmSuppManifacOrder::TdmSuppManifacOrder(TfSuppManifacOrder& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcSuppManifacOrder(Session(), Point(), kServerClass),
      sqlcSQL(Session(), Point(), system::kSearchClass),
      cdsSuppManifacOrder("cdsSuppManifacOrder", sqlcSuppManifacOrder, head::dspSuppManifacOrder),
      cdsSuppManOrderDet("cdsSuppManOrderDet", sqlcSuppManifacOrder, det::dspSuppManOrderDet),
      cdsSuppManOrderAdmin("cdsSuppManOrderAdmin", sqlcSuppManifacOrder, adm::dspSuppManOrderAdmin),
      cdsPurchaseOrder("cdsPurchaseOrder", sqlcSuppManifacOrder, requests::dspPurchaseOrder),
      cdsRatesOfExchange("cdsRatesOfExchange", sqlcSuppManifacOrder, dspRatesOfExchange),
      cdsNomIn249("cdsNomIn249", sqlcSQL, opening_rows::kNomenclature),
      cdsNomIn250("cdsNomIn250", sqlcSQL, opening_rows::kNomenclature),
      cdsKindSupplies("cdsKindSupplies", sqlcSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsCostCenters("cdsCostCenters", sqlcSQL, own_rows::kCostCenter),
      cdsSuppliers("cdsSuppliers", sqlcSQL, own_rows::kPartner),
      cdsCurrencies("cdsCurrencies", sqlcSQL, opening_rows::kCurrency),
      cdsSuppliesContracts("cdsSuppliesContracts", sqlcSQL, own_rows::kContract),
      cdsMeasures(
          "cdsMeasures", sqlcSQL,
          {core::Code, core::Name20, core::Name20Second, core::Numerator, core::OrdinaryFraction}),
      cdsKPL("cdsKPL", sqlcSQL, core::supply_list::kEntry),
      nomIn250(cdsNomIn250, "Element"),
      kindSupplies(cdsKindSupplies, "Code"),
      costCenters(cdsCostCenters, "CostCenter"),
      suppliers(cdsSuppliers, "Partner"),
      currencies(cdsCurrencies, "Code"),
      suppliesContracts(cdsSuppliesContracts, "IdNumber"),
      measures(cdsMeasures, "Code"),
      kpl(cdsKPL, "SerialNumber"),
      dsSuppManifacOrder(cdsSuppManifacOrder),
      dsSuppManOrderDet(cdsSuppManOrderDet),
      dsSuppManOrderAdmin(cdsSuppManOrderAdmin),
      dsPurchaseOrder(cdsPurchaseOrder),
      documentHead(form, cdsSuppManifacOrder, MakeHeadRules()),
      supplyRows(cdsSuppManOrderDet, {}, kpl, measures),
      form_(form) {
  cdsSuppManOrderAdmin.SetIndexFieldNames("ConfirmationLevel");
  cdsPurchaseOrder.SetIndexFieldNames("DocumentDate;POIdNumber;POVersion");
  constexpr std::string_view kName = "Поръчка за производство";
  NameRows(cdsSuppManifacOrder, {{kName, head::IdNumber.name}});
  NameRows(cdsSuppManOrderDet, {{kName, det::SuppManOrderId.name}, {"ред", det::RowNumber.name}});
  NameRows(cdsSuppManOrderAdmin,
           {{kName, adm::SuppManOrderId.name}, {"ниво", adm::ConfirmationLevel.name}});
  BindHead();
  BindRows();
  ApplyRowsAtOnce(form_, cdsSuppManOrderDet, cdsSuppManifacOrder, kAtOnce);
  cdsSuppManOrderDet.AfterApplyUpdates =
      [this, before = cdsSuppManOrderDet.AfterApplyUpdates](const Variant& told) {
        before(told);
        ++lastRowNumber_;
      };
  ApplyRowsAtOnce(form_, cdsSuppManOrderAdmin, cdsSuppManifacOrder,
                  {.maxErrors = 0,
                   .form = ApplyForm::Once,
                   .afterRefusal = AfterRefusal::Cancel,
                   .dropsUnsent = true});
  cdsSuppManOrderAdmin.AfterDelete = {};
  cdsSuppManOrderAdmin.BeforeApplyUpdates = [this] {
    cdsSuppManOrderAdmin.OwnerData = Variant(form_.App().ConnectionInfo());
  };
}

// --- opening and loading ------------------------------------------------------------------------

void TdmSuppManifacOrder::GetParams() {
  VariantArray data(get_params::kAskSize);
  data[get_params::kEmployee] = form_.App().vCurrentEmployee;
  data[get_params::kFirstLanguage] = form_.FirstLanguage();
  CallOperations(sqlcSuppManifacOrder, get_params::kName, data);
  const DataPacket& statuses = PacketAt(data, get_params::kStatuses);
  employeeName = data[get_params::kEmployeeName];
  identityWithNom = FlagAt(data, get_params::kIdentityWithNom);
  context_ = data[get_params::kContext].ToText();
  cdsNomIn249.LoadPacket(statuses);
  nomIn250.TakeFilled(PacketAt(data, get_params::kNoYes));
  currencies.TakeFilled(PacketAt(data, get_params::kCurrencies));
  costCenters.SetParam("Notifier", form_.App().vCurrentEmployee);
  const DataPacket* admissible = data[get_params::kCostCenters].AsPacket();
  if (admissible != nullptr) costCenters.TakeFilled(*admissible);
  const bool any = admissible == nullptr || admissible->rowCount > 0;
  newDocumentAllowed = any && !form_.App().vCurrentEmployee.IsNull();
}

void TdmSuppManifacOrder::FetchCostCenters() {
  costCenters.SetParam("Notifier", form_.App().vCurrentEmployee);
  costCenters.Forget();
  costCenters.FillIfStale();
}

LoadCode TdmSuppManifacOrder::GetRecord(Nav mode, int step, const std::string& idText) {
  form_.SendWaiting();
  const VosApplication& app = form_.App();
  VariantArray data(get_record::kAskSize);
  data[get_record::kMode] = static_cast<int>(mode);
  data[get_record::kStep] = step;
  data[get_record::kIdText] = idText;
  data[get_record::kEmployee] = app.vCurrentEmployee.ToText();
  data[get_record::kBelowThree] = !NeedsEmployee(app);
  data[get_record::kLogin] = app.UserName();
  data[get_record::kContext] = context_;
  data[get_record::kFirstLanguage] = form_.FirstLanguage();
  data[get_record::kViewOnly] = form_.viewOnly;
  CallOperations(sqlcSuppManifacOrder, get_record::kName, data);
  const auto [code, found] = ReadLoadTold(data, get_record::kPosition, get_record::kFound);
  if (!found || code == LoadCode::None) return LoadCode::None;
  TakeRecord(data);
  form_.position = code;
  return code;
}

void TdmSuppManifacOrder::TakeRecord(const VariantArray& answer) {
  PacketAt(answer, get_record::kHead);
  TakeShownRows(answer, {{get_record::kCostCenterRow, costCenters},
                         {get_record::kSupplierRow, suppliers},
                         {get_record::kContractRow, suppliesContracts}});
  LoadPackets(answer, get_record::kRows,
              {&cdsSuppManOrderDet, &cdsSuppManOrderAdmin, &cdsPurchaseOrder});
  LoadPackets(answer, get_record::kHead, {&cdsSuppManifacOrder});
  TakeShownNames(cdsSuppManifacOrder, {{head::KindSupply.name, kindSupplies}});
  part = {.mayApprove = FlagAt(answer, get_record::kMayApprove),
          .mayWithdraw = FlagAt(answer, get_record::kMayWithdraw),
          .pendingStatus = NumberAt(answer, get_record::kPendingStatus),
          .ownStatus = NumberAt(answer, get_record::kOwnStatus),
          .ownLevel = NumberAt(answer, get_record::kOwnLevel),
          .fullAccess = FlagAt(answer, get_record::kFullAccess)};
  lastRowNumber_ = cdsSuppManOrderDet.MaxOf(det::RowNumber).AsInt().value_or(0);
  costCenters.SetParam("Notifier", cdsSuppManifacOrder[head::Notifier].Value());
  cdsSuppManifacOrderKindSupplyChange();
  cdsSuppManifacOrderSupplierChange();
  cdsSuppManifacOrderContractIdChange();
  form_.ShowOrder(cdsSuppManifacOrder[head::IdNumber].AsInt().value_or(0));
}

void TdmSuppManifacOrder::EmptyParts() {
  for (TVosClientDataSet* rows : {&cdsSuppManOrderDet, &cdsSuppManOrderAdmin, &cdsPurchaseOrder})
    rows->EmptyDataSet();
  part = {.fullAccess = part.fullAccess};
  lastRowNumber_ = 0;
}

void TdmSuppManifacOrder::SetLanguage() {
  const std::string_view name = form_.FirstLanguage() ? "Name" : "Name2";
  cdsSuppManifacOrder.SetLookupResult(lupStatus, name);
  cdsSuppManifacOrder.SetLookupResult(lupIncTranspInPrice, name);
}

// --- saving -------------------------------------------------------------------------------------

HeadApplyRules TdmSuppManifacOrder::MakeHeadRules() {
  HeadApplyRules rules;
  rules.afterRefusal = AfterRefusal::Correct;
  rules.savedIdentifier = head::IdNumber.name;
  rules.ownerData = [this](bool) { return Variant(form_.App().ConnectionInfo()); };
  rules.reloadSaved = [this](const Variant& saved, bool) {
    GetRecord(Nav::ByKey, 0, saved.ToText());
  };
  rules.reloadDropped = [this] {
    if (cdsSuppManifacOrder.Editing()) cdsSuppManifacOrder.Cancel();
    form_.ReloadShown();
    form_.FocusControl(&form_.eIdNumber);
  };
  return rules;
}

}  // namespace orvane::modules
