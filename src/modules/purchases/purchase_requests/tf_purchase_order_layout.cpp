// How the purchase request screen is put together: combos, items, columns, pages, ribbon.

#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "kit/parameters.h"
#include "kit/register_screen.h"
#include "modules/core/lookups.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr std::string_view kOrderGroup = "Поръчка за производство";
constexpr std::string_view kMeasureGroup = "Мярка";
constexpr std::string_view kApprovedGroup = "Одобрен";

/// Approved orders of the request's supplier that hold the row's item, with what they leave.
LookupSetup SupplierOrders() {
  return {
      .caption = "Търсене - Поръчки за производство",
      .sql = {"SELECT O.IdNumber, CAST(O.Description AS VARCHAR(50)) Description, ",
              " CAST(O.Description2 AS VARCHAR(50)) Description2, ", "  O.DocumentDate,",
              "  OD.CalcQuantity, OD.CalcOrderedQunatity, OD.CalcQuantity - "
              "OD.CalcOrderedQunatity RestOrdQNT,",
              "  OD.CalcDeliverQuantity, OD.CalcQuantity - OD.CalcDeliverQuantity RestDlvrQNT",
              "FROM SuppManifacOrder O  {$WN}", "INNER JOIN SuppManOrderDet OD  {$WN}",
              "ON O.IdNumber = OD.SuppManOrderId AND OD.SerialNumber = :SerialNumber",
              "WHERE O.Supplier = :Supplier AND O.Status IN (5,6) AND O.AnnulFrom IS NULL", "{$WA}",
              "{$O}"},
      .nameField = "Description",
      .nameField2 = "Description2",
      .searchFields = {SearchBy("O.IdNumber", "Номер"),
                       SearchBy("O.Description", "Описание").In(Visibility::fvFirstLang).ByPart(),
                       SearchBy("O.Description2", "Описание").In(Visibility::fvSecondLang).ByPart(),
                       SearchBy("O.DocumentDate", "Дата на документа"),
                       SearchBy("OD.CalcQuantity", "Поръчано количество"),
                       SearchBy("OD.CalcOrderedQunatity", "Поискано количество"),
                       SearchBy("RestOrdQNT", "Остатък за искане"),
                       SearchBy("OD.CalcDeliverQuantity", "Доставено количество"),
                       SearchBy("RestDlvrQNT", "Остатък за доставка")},
      .mask = std::string(kMaskCode9)};
}

}  // namespace

void TfPurchaseOrder::SetUpLookups() {
  SetUpLookup(cbCostCenters, core::CostCentersOfNotifier());
  SetUpLookup(cbKindSupplies, core::KindSupplies());
  SetUpLookup(cbPartners, core::Suppliers());
  SetUpLookup(cbSuppliesContract, core::Contracts("KindSupp"));
  SetUpLookup(cbNomIn250, core::NomIn());
  SetUpLookup(cbCurrencies, core::Currencies());
  dmPurchaseOrder->nomIn250.SetParam("Nom", core::kNoYes);
  dmPurchaseOrder->costCenters.SetParam("Notifier", App().vCurrentEmployee);
  dmPurchaseOrder->suppliesContracts.SetParam("Supplier", {});
  dmPurchaseOrder->suppliesContracts.SetParam("KindSupp", {});
}

void TfPurchaseOrder::SetUpRowLookups() {
  SetUpLookup(cbKPL, core::SupplyList());
  SetUpLookup(cbSuppManOrd, SupplierOrders());
  SetUpLookup(cbMeasures, core::Measures());
  dmPurchaseOrder->suppManOrd.SetParam("Supplier", {});
  dmPurchaseOrder->suppManOrd.SetParam("SerialNumber", {});
}

void TfPurchaseOrder::SetUpItems() {
  using namespace purchase_request::head;
  diMainInfo.items = {
      ItemOf(DocumentDate).Required(),
      ItemOf(Description).Shown(ItemKind::Memo),
      ItemOf(Description2).Shown(ItemKind::Memo),
      ItemOf(Rationale).Shown(ItemKind::Memo),
      ItemOf(Rationale2).Shown(ItemKind::Memo),
      ItemOf(CostCenter).Edit(cbCostCenters).Required(),
      ItemOf(KindSupply).Edit(cbKindSupplies).Required(),
      ItemOf(Supplier).Edit(cbPartners),
      ItemOf(ContractId).Edit(cbSuppliesContract),
      ItemOf(IncTranspInPrice).Edit(cbNomIn250).Required(),
      ItemOf(KindCurrency).Edit(cbCurrencies).Required(),
      ItemOf(RateOfExchange).Mask(kRateMask).Required(),
  };
  diAdminInfo.items = {
      ItemOf(SumPurchaseOrder),
      ItemOf(CurrSumPurchaseOrder),
      ItemOf(Notifier).Named(NtfName.name),
      Item(CreatedFrom.name, "Създаден · От").Named(CrtFrmName.name),
      Item(CreatedOn.name, "Създаден · На"),
      Item(AmendFrom.name, "Последна корекция · От").Named(AmndFrmName.name),
      Item(AmendOn.name, "Последна корекция · На"),
      ItemOf(head::Status).Named(lupStatusName.name),
      Item(AnnulFrom.name, "Анулиран · От").Named(AnnulFrmName.name),
      Item(AnnulOn.name, "Анулиран · На"),
      ItemOf(OldVersion).Shown(ItemKind::Check),
  };
  diAdminInfo.readOnly = true;
  for (const FieldDef& amount : {SumPurchaseOrder, CurrSumPurchaseOrder})
    dmPurchaseOrder->cdsPurchaseOrder[amount].Format.decimals = values._cpCountNumberAfterPoint;
}

void TfPurchaseOrder::SetUpColumns() {
  const std::string sumMask = SumMask(values._cpCountNumberAfterPoint);
  gPurchaseOrderDet.columns = {
      Column("RowNumber", 7, "Номер~на ред").Mask(kMaskCode4),
      Column("SerialNumber", 12, "Пореден номер").Edit(cbKPL),
      Column("bslName", 36, "Име").ReadOnly(),
      Column("SuppManifacOrderId", 9, "Номер").Under(kOrderGroup).Edit(cbSuppManOrd),
      Column("SMOName", 24, "Име").Under(kOrderGroup).ReadOnly(),
      Column("Measure", 6, "Код").Under(kMeasureGroup).Edit(cbMeasures),
      Column("MsrName", 10, "Име").Under(kMeasureGroup).ReadOnly(),
      Column("Quantity", 12, "Количество"),
      Column("CurrSumWithoutVAT", 14, "Сума").Mask(sumMask),
      Column("Remarks", 24, "Бележки").Shown(ColumnKind::Memo),
      Column("Remarks2", 24, "Бележки").Shown(ColumnKind::Memo),
  };
  gPurchaseOrderDel.columns = {
      Column("DeliveryDate", 14, "Дата на доставка"),
      Column("DateOfLoading", 14, "Дата на товарене"),
      Column("Delivered", 10, "Доставено").Shown(ColumnKind::Check).ReadOnly(),
  };
  gPurchaseOrderDel.fixedCols = 0;
  gPOPayPl.columns = {
      Column("RNLocate", 7, "Номер~на ред").ReadOnly(),
      Column("InvoiceDate", 14, "Дата на фактура"),
      Column("SumWithVAT", 14, "Сума с ДДС").Mask(sumMask),
      Column("AdvancePayment", 10, "Авансово~плащане").Shown(ColumnKind::Check),
      Column("AdvanceStatement", 10, "Авансов~отчет").Shown(ColumnKind::Check),
      Column("PaymentDate", 14, "Дата на плащане"),
      Column("SupplyInvoiceId", 10, "Получена~фактура").ReadOnly(),
  };
  gPOAdm.columns = {
      Column("ConfirmationLevel", 10, "Ниво на~одобрение"),
      Column("lupApprovalName", 24, "Одобряващ"),
      Column("ConfirmedFrom", 10, "От").Under(kApprovedGroup),
      Column("EmpName", 44, "Име").Under(kApprovedGroup),
      Column("ConfermedOn", 19, "На").Under(kApprovedGroup),
      Column("lupAppStatusName", 18, "Статус"),
      Column("ApprovalNote", 40, "Причина"),
      Column("WaitsFor", 32, "Чака решение от"),
  };
  gDeliveries.columns = {
      Column("DeliveryDate", 14, "Дата на доставка"),
      Column("IdNumber", 10, "Номер"),
  };
  gPOAdm.readOnly = true;
  gDeliveries.readOnly = true;
  for (TField* amount : {&dmPurchaseOrder->cdsPurchaseOrderDet[det::CurrSumWithoutVAT],
                         &dmPurchaseOrder->cdsPurchaseOrderPayPl[pay::SumWithVAT]})
    amount->Format.decimals = values._cpCountNumberAfterPoint;
}

void TfPurchaseOrder::SetUpPages() {
  pcTables.pages = {
      {"tsPurchaseOrderDet", "Материали и услуги", &gPurchaseOrderDet},
      {"tsPurchaseOrderDel", "Дати на доставка", &gPurchaseOrderDel},
      {"tsPOPayPl", "План за плащане", &gPOPayPl},
      {"tsgPOAdm", "Одобрения", &gPOAdm},
      {"tsDeliveries", "Доставки", &gDeliveries, false},
  };
  gPOAdm.emptyText = "Одобренията се появяват, когато искането се изпрати за одобрение.";
  lStatus.chip = true;
  ribbon = {
      {"Операции",
       {{"Операции", {"acSave", "acCancel", "acDelete", "acNewDoc", "acNewVersion", "acCopyDoc"}},
        {"Одобрение",
         {"acForConfirmation", "acCorrect", "acAnnul", "acConfirm", "acRefuse", "acUnconfirm",
          "acUnRefuse", "acFinish", "acUnFinish"}},
        {"Търсене", {"acSearch", "acNameSearch", "acPartialSearch"}},
        {"Справки", {"acDocSearch", "acPrint", "acRows"}},
        {"Ред", {"acQuantity", "acSearchGroup", "acNomenclature"}},
        {"Изход", {"acExit"}}}}};
  layout = ColumnOf({
      RowOf({Of(eIdNum), BarOf(identifiers_.ActionNames()), SpaceOf(0), Of(eVer),
             BarOf(versions_.ActionNames()), SpaceOf(1), Of(lStatus)}),
      RowOf({Of(diMainInfo, 4), Of(diAdminInfo, 3)}),
      Of(pcTables, 1),
  });
}

void TfPurchaseOrder::ChooseLanguages() {
  ChooseLanguageItems(*this, diMainInfo, {"Description", "Rationale"});
  ChooseLanguageTexts(*this, gPurchaseOrderDet, {"Remarks"});
}

}  // namespace orvane::modules
