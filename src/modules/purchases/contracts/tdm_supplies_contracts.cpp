#include "modules/purchases/contracts/tdm_supplies_contracts.h"

#include "contract/system.h"
#include "kit/documents/document_load.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/contracts/tf_supplies_contracts.h"

namespace orvane::modules {

using namespace supplies_contract;

namespace {

/// As the statement of the ways of payment spells them.
constexpr auto NAME = String("NAME", 30, Plain, "Име");
constexpr auto NAME2 = String("NAME2", 30, Plain, "Име 2");

}  // namespace

TdmSuppliesContracts::TdmSuppliesContracts(TfSuppliesContracts& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcSuppliesContracts(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsSuppliesContracts("cdsSuppliesContracts", sqlcSuppliesContracts, dspSuppliesContracts),
      cdsPartner("cdsPartner", cSQL,
                 {own_rows::Partner, own_rows::Name, own_rows::Name2, own_rows::KindInvoice}),
      cdsKindSupplies("cdsKindSupplies", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsCapExPlan("cdsCapExPlan", cSQL, {own_rows::PlanLine, own_rows::Name, own_rows::Name2}),
      cdsSupplyRequestDescr("cdsSupplyRequestDescr", cSQL,
                            {core::Code, core::Name40, core::Name40Second}),
      cdsSupplyArtVchDescr("cdsSupplyArtVchDescr", cSQL,
                           {core::Code, core::Name40, core::Name40Second}),
      cdsToSupplyArtVchDescr("cdsToSupplyArtVchDescr", cSQL,
                             {core::Code, core::Name40, core::Name40Second}),
      cdsSupplyInvoiceDescr("cdsSupplyInvoiceDescr", cSQL,
                            {core::Code, core::Name40, core::Name40Second}),
      cdsSuppAdvInvDescr("cdsSuppAdvInvDescr", cSQL,
                         {core::Code, core::Name40, core::Name40Second}),
      cdsSuppDNoticeDescr("cdsSuppDNoticeDescr", cSQL,
                          {core::Code, core::Name40, core::Name40Second}),
      cdsSuppCNoticeDescr("cdsSuppCNoticeDescr", cSQL,
                          {core::Code, core::Name40, core::Name40Second}),
      cdsKindSupplyList("cdsKindSupplyList", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsNomIn90("cdsNomIn90", cSQL, {core::Element, core::Name30, core::Name30Second}),
      cdsSuppElKindPayment("cdsSuppElKindPayment", cSQL, {core::Element, NAME, NAME2}),
      partner(cdsPartner, "Partner"),
      kindSupplies(cdsKindSupplies, "Code"),
      capExPlan(cdsCapExPlan, "Code"),
      supplyRequestDescr(cdsSupplyRequestDescr, "Code"),
      supplyArtVchDescr(cdsSupplyArtVchDescr, "Code"),
      toSupplyArtVchDescr(cdsToSupplyArtVchDescr, "Code"),
      supplyInvoiceDescr(cdsSupplyInvoiceDescr, "Code"),
      suppAdvInvDescr(cdsSuppAdvInvDescr, "Code"),
      suppDNoticeDescr(cdsSuppDNoticeDescr, "Code"),
      suppCNoticeDescr(cdsSuppCNoticeDescr, "Code"),
      kindSupplyList(cdsKindSupplyList, "Code"),
      nomIn90(cdsNomIn90, "Element"),
      suppElKindPayment(cdsSuppElKindPayment, "Element"),
      dsSuppliesContracts(cdsSuppliesContracts),
      documentHead(form, cdsSuppliesContracts, MakeHeadRules()),
      form_(form) {
  NameRows(cdsSuppliesContracts, {{"Договор", IdNumber.name}});
  cdsSuppliesContracts.BeforePost = [this] { documentHead.Stamp(IdNumber); };
  cdsSuppliesContracts.OnNewRecord = [this] { cdsSuppliesContractsNewRecord(); };
  cdsSuppliesContracts[Supplier].OnChange = [this] { SupplierChange(); };
  for (const FieldDef& field : {AutomaticRenewal, KindContract, ManifacOrder})
    cdsSuppliesContracts[field].OnChange = [this] { form_.VisibleParamItems(); };
  dsSuppliesContracts.OnStateChange = [this] { form_.dsSuppliesContractsStateChange(); };
}

// --- loading ------------------------------------------------------------------------------------

void TdmSuppliesContracts::Operations(VariantArray& data) {
  CallOperations(sqlcSuppliesContracts, kOperations, data);
}

LoadCode TdmSuppliesContracts::GetRecord(Nav nav, int step, std::int64_t id) {
  form_.SendWaiting();
  VariantArray data(get_rec::kAskSize);
  data[get_rec::kOperation] = get_rec::kName;
  data[get_rec::kNav] = static_cast<int>(nav);
  data[get_rec::kStep] = step;
  data[get_rec::kId] = id;
  Operations(data);
  const auto [code, found] = ReadLoadTold(data);
  if (code != LoadCode::None && found) TakeRecord(data);
  form_.LastGetRecRes = code;
  return code;
}

void TdmSuppliesContracts::TakeRecord(const VariantArray& answer) {
  TakeShownRows(answer, {{get_rec::kSupplierRow, partner}, {get_rec::kPlanRow, capExPlan}});
  LoadPackets(answer, get_rec::kContract, {&cdsSuppliesContracts});
  TakeShownNames(cdsSuppliesContracts, {{KindContract.name, kindSupplies},
                                        {SupplyRequestDescr.name, supplyRequestDescr},
                                        {SupplyArtVchDescr.name, supplyArtVchDescr},
                                        {ToSupplyArtVchDescr.name, toSupplyArtVchDescr},
                                        {SupplyInvoiceDescr.name, supplyInvoiceDescr},
                                        {SuppAdvInvDescr.name, suppAdvInvDescr},
                                        {SuppDNoticeDescr.name, suppDNoticeDescr},
                                        {SuppCNoticeDescr.name, suppCNoticeDescr},
                                        {KindSupplyList.name, kindSupplyList},
                                        {SuppElKindPayment.name, suppElKindPayment}});
  SetNoticeParams();
  form_.ShowKey(cdsSuppliesContracts[IdNumber].AsInt().value_or(0));
  form_.VisibleParamItems();
}

// --- saving -------------------------------------------------------------------------------------

HeadApplyRules TdmSuppliesContracts::MakeHeadRules() {
  HeadApplyRules rules;
  rules.ownerData = [](bool postExisting) { return Variant(postExisting); };
  rules.reloadSaved = [this](const Variant& saved, bool postExisting) {
    GetRecord(Nav::ByKey, 0, postExisting ? form_.LastGetRec : saved.AsInt().value_or(0));
  };
  rules.reloadDropped = [this] {
    if (cdsSuppliesContracts.Editing()) cdsSuppliesContracts.Cancel();
    form_.ReloadShown();
  };
  return rules;
}

// --- rules of the fields ------------------------------------------------------------------------

void TdmSuppliesContracts::cdsSuppliesContractsNewRecord() {
  for (const FieldDef& flag :
       {AutomaticRenewal, ManifacOrder, InclTransportInPrice, UseQuantityRabat})
    cdsSuppliesContracts[flag].Set(false);
  SetNoticeParams();  // of no supplier yet
}

void TdmSuppliesContracts::SupplierChange() {
  const Variant supplier = cdsSuppliesContracts[Supplier].Value();
  if (!supplier.IsNull()) partner.LocateKey(supplier);
  SetNoticeParams();
}

void TdmSuppliesContracts::SetNoticeParams() {
  const Variant kind = partner.ValueOf(cdsSuppliesContracts[Supplier].Value(), "KindInvoice");
  suppDNoticeDescr.SetParam("KindInvoice", kind);
  suppCNoticeDescr.SetParam("KindInvoice", kind);
}

}  // namespace orvane::modules
