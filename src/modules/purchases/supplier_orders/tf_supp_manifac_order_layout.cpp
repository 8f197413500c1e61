// How the screen of supplier orders is put together: combos, items, columns, pages, ribbon.

#include "kit/column_hand_over.h"
#include "kit/columns.h"
#include "kit/documents/rates.h"
#include "kit/lookup_setup.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "modules/core/lookups.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr std::string_view kSerialGroup = "Пореден номер";
constexpr std::string_view kMeasureGroup = "Мярка";
constexpr std::string_view kApprovedGroup = "Одобрен";

/// The two kinds of purchase that are ordered.
LookupSetup OrderedKinds() {
  LookupSetup setup = core::KindSupplies();
  setup.caption = "Търсене - Вид покупка";
  setup.sql = {"SELECT Code, Name, Name2", "FROM KindSupplies {$WN}",
               "WHERE Code IN (:BRM, :Wares)", "{$WA}", "{$O}"};
  return setup;
}

}  // namespace

void TfSuppManifacOrder::SetUpLookups() {
  TdmSuppManifacOrder& rules = *dmSuppManifacOrder;
  SetUpLookup(cbKindSupplies, OrderedKinds());
  SetUpLookup(cbCostCenters, core::CostCentersOfNotifier("Търсене - Центрове за разход"));
  SetUpLookup(cbSuppliers, core::Suppliers());
  SetUpLookup(cbKindCurrency, core::Currencies());
  SetUpLookup(cbContractIds, core::Contracts("KindSupply", " AND ManifacOrder = 1"));
  SetUpLookup(cbIncTranspInPrice, core::NomIn());
  SetUpLookup(cbKPL, core::SupplyList());
  SetUpLookup(cbMeasure, core::Measures());
  rules.nomIn250.SetParam("Nom", core::kNoYes);
  rules.kindSupplies.SetParam("BRM", rules.parameters.brm);
  rules.kindSupplies.SetParam("Wares", rules.parameters.wares);
  rules.costCenters.SetParam("Notifier", App().vCurrentEmployee);
  rules.suppliesContracts.SetParam("Supplier", {});
  rules.suppliesContracts.SetParam("KindSupply", {});
}

void TfSuppManifacOrder::SetUpItems() {
  using namespace supplier_order::head;
  di.items = {
      ItemOf(DocumentDate).Required(),
      ItemOf(Description).Shown(ItemKind::Memo),
      ItemOf(Description2).Shown(ItemKind::Memo),
      ItemOf(Rationale).Shown(ItemKind::Memo),
      ItemOf(Rationale2).Shown(ItemKind::Memo),
      Item(FromDate.name, "Период · От дата").Required(),
      Item(ToDate.name, "Период · До дата").Required(),
      ItemOf(CostCenter).Edit(cbCostCenters).Required(),
      ItemOf(KindSupply).Edit(cbKindSupplies).Required(),
      ItemOf(Supplier).Edit(cbSuppliers).Required(),
      Item(ContractId.name, "Идентификатор на договор").Edit(cbContractIds).Required(),
      ItemOf(lupIncTranspInPrice).Edit(cbIncTranspInPrice).Required(),
      ItemOf(KindCurrency).Edit(cbKindCurrency).Required(),
      ItemOf(RateOfExchange).Mask(kRateMask).Required(),
  };
  di2.items = {
      Item(CurrSumManifacOrder.name, "Валутна сума на поръчката"),
      Item(SumManifacOrder.name, "Сума на поръчката"),
      ItemOf(Notifier).Named(NotifierName.name),
      Item(CreatedFrom.name, "Създаден · От").Named(CreatedFromName.name),
      Item(CreatedOn.name, "Създаден · На"),
      Item(AmendFrom.name, "Последна корекция · От").Named(AmendFromName.name),
      Item(AmendOn.name, "Последна корекция · На"),
      ItemOf(head::Status).Named(lupStatus.name),
      Item(AnnulFrom.name, "Анулиран · От").Named(AnnulFromName.name),
      Item(AnnulOn.name, "Анулиран · На"),
      ItemOf(PrevYearId),
  };
  di2.readOnly = true;
  for (const FieldDef& amount : {SumManifacOrder, CurrSumManifacOrder})
    dmSuppManifacOrder->cdsSuppManifacOrder[amount].Format.decimals =
        dmSuppManifacOrder->parameters.amountDecimals;
  ShowOrderRate(dmSuppManifacOrder->cdsSuppManifacOrder[RateOfExchange]);
  ChooseLanguageItems(*this, di, {Description.name, Rationale.name}, LanguageMark::Angles);
}

void TfSuppManifacOrder::SetUpColumns() {
  gSuppManOrderDet.columns = {
      Column("RowNumber", 7, "Номер~на ред").Mask(kMaskCode4),
      Column("SerialNumber", 12, "Код").Under(kSerialGroup).Edit(cbKPL),
      Column("Name", 36, "Име").Under(kSerialGroup).ReadOnly(),
      Column("Measure", 6, "Код").Under(kMeasureGroup).Edit(cbMeasure),
      Column("MeasureName", 10, "Име").Under(kMeasureGroup).ReadOnly(),
      Column("Quantity", 12, "Количество"),
      Column("Remarks", 24, "Бележки").Shown(ColumnKind::Memo),
      Column("Remarks2", 24, "Бележки").Shown(ColumnKind::Memo),
  };
  HandOverColumns(gSuppManOrderDet, {
                                        {.from = "Measure", .to = "Quantity"},
                                        {.from = "MeasureName", .to = "Quantity"},
                                    });
  gSuppManOrderAdmin.columns = {
      Column("ConfirmationLevel", 10, "Ниво на~одобрение"),
      Column("ApprovalName", 24, "Одобряващ"),
      Column("ConfirmedFrom", 10, "От").Under(kApprovedGroup),
      Column("ConfirmedFromName", 44, "Име").Under(kApprovedGroup),
      Column("ConfermedOn", 19, "На").Under(kApprovedGroup),
      Column("StatusName", 18, "Статус"),
      Column("ApprovalNote", 40, "Причина"),
      Column("WaitsFor", 32, "Чака решение от"),
  };
  gPurchaseOrder.columns = {
      Column("DocumentDate", 14, "Дата на доставка"),
      Column("POIdNumber", 10, "Номер"),
      Column("POVersion", 8, "Версия"),
      Column("Description", 40, "Описание"),
  };
  gSuppManOrderAdmin.readOnly = true;
  gPurchaseOrder.readOnly = true;
  dmSuppManifacOrder->cdsSuppManOrderAdmin[adm::ConfermedOn].Format.withSeconds = true;
  ChooseLanguageTexts(*this, gSuppManOrderDet, {"Remarks"}, LanguageMark::Angles);
}

void TfSuppManifacOrder::SetUpPages() {
  pcTables.pages = {
      {"tsSuppManOrderDet", "Материали и услуги", &gSuppManOrderDet},
      {"tsSuppManOrderAdmin", "Одобрения", &gSuppManOrderAdmin},
      {"tsPurchaseOrder", "Искания за покупка", &gPurchaseOrder, false},
  };
  gSuppManOrderAdmin.emptyText =
      "Одобренията се появяват, когато поръчката се изпрати за одобрение.";
  lStatus.chip = true;
  ribbon = {{"Операции",
             {{"Операции", {"acSave", "acCancel", "acDelete", "acNewDoc"}},
              {"Одобрение",
               {"acForConfirmation", "acCorrect", "acAnnul", "acApprove", "acReject",
                "acRemoveApproval", "acRemoveRejection", "acComplete", "acRemoveCompletion"}},
              {"Търсене", searches_},
              {"Справки", {"acReport", "acPrint", "acGoToRows"}},
              {"Изход", {"acExit"}}}}};
  layout = ColumnOf({
      RowOf({Of(eIdNumber), BarOf(identifiers_.ActionNames()), SpaceOf(1), Of(lStatus)}),
      RowOf({Of(di, 4), Of(di2, 3)}),
      Of(pcTables, 1),
  });
}

}  // namespace orvane::modules
