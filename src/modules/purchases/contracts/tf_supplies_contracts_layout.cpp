// How the supplies contracts screen is put together: combos, items, ribbon.

#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "kit/register_screen.h"
#include "modules/core/lookups.h"
#include "modules/purchases/contracts/tf_supplies_contracts.h"

namespace orvane::modules {

using namespace supplies_contract;

namespace {

/// With the kind of invoice of each partner, which decides the notices offered.
LookupSetup Suppliers() {
  return {.caption = "Търсене - Доставчик",
          .sql = {"SELECT p.Partner, p.Name, p.Name2, s.KindInvoice", "FROM Partners p {$WN}",
                  "LEFT OUTER JOIN SupplyInvoiceDescr s {$WN}", "ON p.SupplyInvoiceDescr = s.Code ",
                  "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Partner", "p."),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfPartners"};
}

/// All rows of a register of codes with names.
LookupSetup Register(std::string_view caption, const std::string& table,
                     std::string_view nomenclatureClass, std::string_view mask = kMaskCode4) {
  return {.caption = std::string(caption),
          .sql = {"SELECT Code, Name, Name2", "FROM " + table + " {$WN}", "{$W}", "{$O}"},
          .searchFields = CodeAndNames("Code"),
          .mask = std::string(mask),
          .nomenclatureClass = std::string(nomenclatureClass)};
}

/// Descriptions of the invoice register that meet a condition.
LookupSetup InvoiceDescriptions(std::string_view caption, std::vector<std::string> lines) {
  LookupSetup setup = Register(caption, "SupplyInvoiceDescr", "TfSupplyInvoiceDescr");
  setup.sql = std::move(lines);
  return setup;
}

LookupSetup Invoices(std::string_view caption) {
  return InvoiceDescriptions(
      caption,
      {"SELECT Code, Name, Name2", "FROM SupplyInvoiceDescr {$WN}",
       "WHERE AdvanceInvoice = 0 AND KindInvoice in (1,2) AND Respondent = 1", "{$WA}", "{$O}"});
}

/// Notices that go with invoices of the supplier's kind: of his kinds 1 and 2, those of `kinds`.
LookupSetup Notices(std::string_view caption, const std::string& kinds) {
  return InvoiceDescriptions(
      caption, {"DECLARE @KindInvoice int", "SET @KindInvoice = :KindInvoice", "",
                "SELECT Code, Name, Name2", "FROM SupplyInvoiceDescr {$WN}",
                "WHERE AdvanceInvoice = 0 AND Respondent = 1",
                "AND KindInvoice = case @KindInvoice " + kinds + " else 100 end", "{$WA}", "{$O}"});
}

LookupSetup WaysOfPayment() {
  return {.caption = "Търсене - Начин на плащане",
          .sql = {"SELECT Element, NAME, NAME2 FROM FreeNomElements", "{$WN}",
                  "WHERE FreeNomenclature = 15", "{$WA}", "{$O}"},
          .nameField = "NAME",
          .nameField2 = "NAME2",
          .searchFields = CodeAndNames("Element"),
          .mask = std::string(kMaskCode19),
          .nomenclatureClass = "TfFreeNomenclatures"};
}

constexpr std::string_view kMaskDays = "[*4[#]]";

}  // namespace

void TfSuppliesContracts::SetUpLookups() {
  SetUpLookup(cbSupplier, Suppliers());
  SetUpLookup(cbKindSupplies, Register("Търсене - Вид договор", "KindSupplies", "TfKindSupplies"));
  SetUpLookup(cbCapExPlanCode, Register("Търсене - Код в плана за капиталови разходи", "CapExPlan",
                                        "TfCapExPlan", kMaskCode9));
  SetUpLookup(cbSupplyRequestDescr, Register("Търсене - Описание на поръчка", "SupplyRequestDescr",
                                             "TfSupplyRequestDescr"));
  SetUpLookup(cbSupplyArtVchDescr, Register("Търсене - Описание на стокова разписка",
                                            "SupplyArtVchDescr", "TfSupplyArtVchDescr"));
  SetUpLookup(cbToSupplyArtVchDescr, Register("Търсене - Описание на разлики по стокова разписка",
                                              "SupplyArtVchDescr", "TfSupplyArtVchDescr"));
  SetUpLookup(cbSupplyInvoiceDescr, Invoices("Търсене - Описание на фактура"));
  SetUpLookup(cbSuppAdvInvDescr, Invoices("Търсене - Описание на фактура за авансово плащане"));
  SetUpLookup(cbSuppDNoticeDescr,
              Notices("Търсене - Описание на дебитно известие", "when 1 then 3 when 2 then 4"));
  SetUpLookup(cbSuppCNoticeDescr,
              Notices("Търсене - Описание на кредитно известие", "when 1 then 5 when 2 then 6"));
  SetUpLookup(cbKindSupplyList, core::KindSupplyLists());
  SetUpLookup(cbNomIn90, core::NomIn());
  SetUpLookup(cbSuppElKindPayment, WaysOfPayment());
  dmSuppliesContracts->nomIn90.SetParam("Nom", core::kWaysOfChoosing);
  dmSuppliesContracts->suppDNoticeDescr.SetParam("KindInvoice", {});
  dmSuppliesContracts->suppCNoticeDescr.SetParam("KindInvoice", {});
}

void TfSuppliesContracts::SetUpItems() {
  diLeft.items = {
      ItemOf(Supplier).Edit(cbSupplier).Required(),
      ItemOf(ContractNumber).Required(),
      ItemOf(ShortDescription).Required(),
      ItemOf(ShortDescription2),
      ItemOf(Description).Shown(ItemKind::Memo),
      ItemOf(Description2).Shown(ItemKind::Memo),
      ItemOf(ContractDate).Required(),
      ItemOf(FreezeDate),
      ItemOf(FinishDate),
      ItemOf(AutomaticRenewal).Shown(ItemKind::Check),
      ItemOf(NoticePeriod).Mask(kMaskDays),
      ItemOf(Active).Shown(ItemKind::Check).ReadOnly(),
      ItemOf(KindContract).Edit(cbKindSupplies).Required(),
      ItemOf(CapExPlanCode).Edit(cbCapExPlanCode),
      ItemOf(DeliveryTimes).Shown(ItemKind::Memo),
      ItemOf(DeliveryTimes2).Shown(ItemKind::Memo),
      ItemOf(MinOrderDelivery).Shown(ItemKind::Memo),
      ItemOf(MinOrderDelivery2).Shown(ItemKind::Memo),
      ItemOf(ManifacOrder).Shown(ItemKind::Check),
  };
  diRight.items = {
      ItemOf(SupplyRequestDescr).Edit(cbSupplyRequestDescr),
      ItemOf(SupplyArtVchDescr).Edit(cbSupplyArtVchDescr),
      ItemOf(ToSupplyArtVchDescr).Edit(cbToSupplyArtVchDescr),
      ItemOf(SupplyInvoiceDescr).Edit(cbSupplyInvoiceDescr),
      ItemOf(SuppAdvInvDescr).Edit(cbSuppAdvInvDescr),
      ItemOf(SuppDNoticeDescr).Edit(cbSuppDNoticeDescr),
      ItemOf(SuppCNoticeDescr).Edit(cbSuppCNoticeDescr),
      ItemOf(KindSupplyList).Edit(cbKindSupplyList),
      ItemOf(KindSupplyChoice).Edit(cbNomIn90).Required(),
      ItemOf(InclTransportInPrice).Shown(ItemKind::Check),
      ItemOf(UseQuantityRabat).Shown(ItemKind::Check),
      ItemOf(SuppElKindPayment).Edit(cbSuppElKindPayment),
      ItemOf(MaxTermOfPayment).Mask(kMaskDays),
      ItemOf(CreatedFrom).ReadOnly(),
      ItemOf(CreatedOn).ReadOnly(),
      ItemOf(AmendFrom).ReadOnly(),
      ItemOf(AmendOn).ReadOnly(),
  };
  for (const FieldDef& moment : {CreatedOn, AmendOn})
    dmSuppliesContracts->cdsSuppliesContracts[moment].Format.dayOnly = true;
  ChooseLanguageItems(
      *this, diLeft,
      {ShortDescription.name, Description.name, DeliveryTimes.name, MinOrderDelivery.name});
}

void TfSuppliesContracts::SetUpRibbon() {
  ribbon = {{"Операции",
             {{"Операции", {"acSave", "acCancel", "acDelete", "acNew"}},
              {"Търсене", searches_},
              {"Изход", {"acExit"}}}}};
  layout = ColumnOf({
      RowOf({Of(eIdNumber), BarOf(identifiers_.ActionNames()), SpaceOf(1)}),
      RowOf({Of(diLeft, 1), Of(diRight, 1)}),
  });
}

}  // namespace orvane::modules
