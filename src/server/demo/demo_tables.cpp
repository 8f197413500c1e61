#include "server/demo/demo_tables.h"

namespace orvane::server::demo {
namespace {

constexpr DemoColumn Bit(std::string_view name) {
  return {name, ValueKind::Bool, false};
}
constexpr DemoColumn Int(std::string_view name) {
  return {name, ValueKind::Int32, false};
}
constexpr DemoColumn Code(std::string_view name) {
  return {name, ValueKind::Code, false};
}
constexpr DemoColumn Money(std::string_view name) {
  return {name, ValueKind::Amount, false};
}
constexpr DemoColumn Day(std::string_view name) {
  return {name, ValueKind::Date, false};
}
constexpr DemoColumn Moment(std::string_view name) {
  return {name, ValueKind::Stamp, false};
}
constexpr DemoColumn Factor(std::string_view name) {
  return {name, ValueKind::Rate, false};
}
constexpr DemoColumn Real(std::string_view name) {
  return {name, ValueKind::Double, false};
}
constexpr DemoColumn Text(std::string_view name) {
  return {name, ValueKind::Memo, false};
}
constexpr DemoColumn kCode = Int("Code");
constexpr DemoColumn kName = {"Name", ValueKind::Memo, true};
constexpr DemoColumn kName2 = {"Name2", ValueKind::Memo, true};

constexpr DemoColumn kCodeNames[] = {kCode, kName, kName2};
constexpr DemoColumn kEmployee[] = {Code("Employee"), kName, kName2, Text("Login")};
constexpr DemoColumn kDepartments[] = {kCode, kName, kName2, Text("Chief")};
constexpr DemoColumn kSection[] = {Code("Section"), kName, kName2, Code("Chief")};
constexpr DemoColumn kCostCenter[] = {Code("CostCenter"), kName, kName2, Code("Chief")};
constexpr DemoColumn kPlace[] = {Code("CostCenter"), Int("Department"), Code("Section")};
constexpr DemoColumn kUnit[] = {Int("IdNumber"), Int("StructuralUnitType"), Int("Department"),
                                Code("Section"), Code("CostCenter")};
constexpr DemoColumn kPeriod[] = {Int("StructDepId"), Day("FromDate"), Day("ToDate"),
                                  Code("Deputy")};
constexpr DemoColumn kNotifier[] = {Code("CostCenter"), Code("Notifier")};
constexpr DemoColumn kLevel[] = {Int("KindRegister"), Int("KindSupply"), Int("Level"),
                                 Money("FromSum"),    Money("ToSum"),    Int("Approval")};
constexpr DemoColumn kFinancing[] = {Int("KindSection"), Code("Employee")};
constexpr DemoColumn kPlan[] = {
    kCode,          kName, kName2, Text("InternalNumber"), Day("FromDate"), Day("TimeLimit"),
    Money("CapSum")};
constexpr DemoColumn kParam[] = {Int("ParamGroup"), Int("Number"), Text("Value")};
constexpr DemoColumn kCurrency[] = {kCode, kName, kName2, Text("CurrencyCode")};
constexpr DemoColumn kInvoice[] = {
    kCode, kName, kName2, Int("KindInvoice"), Bit("AdvanceInvoice"), Bit("Respondent")};
constexpr DemoColumn kElement[] = {Int("FreeNomenclature"), Code("Element"), kName, kName2};
constexpr DemoColumn kPartner[] = {Code("Partner"),
                                   kName,
                                   kName2,
                                   Text("EIK"),
                                   Bit("PartnerTypeSupplier"),
                                   Int("SuppKindCurrency"),
                                   Int("KindSupplyChoice"),
                                   Int("KindSupplyList"),
                                   Int("SuppMaxTermOfPayment"),
                                   Int("SupplyInvoiceDescr"),
                                   Int("Seat"),
                                   Text("Address"),
                                   Text("Address2"),
                                   Text("Telephone1"),
                                   Text("email")};
constexpr DemoColumn kRate[] = {Code("Partner"), Int("KindCurrency"), Day("RateDate"),
                                Factor("CurrencyRate1")};
constexpr DemoColumn kMeasure[] = {kCode, kName, kName2, Int("Numerator"), Bit("OrdinaryFraction")};
constexpr DemoColumn kMaterial[] = {Int("IdNumber"),
                                    kName,
                                    kName2,
                                    Int("Measure"),
                                    Int("IncomeMeasure"),
                                    Int("BarCodeMeasure"),
                                    Int("RoundQuantity"),
                                    Day("SuppForbiddenFrom"),
                                    Day("SuppActiveFrom"),
                                    Int("VATPercent")};
constexpr DemoColumn kService[] = {
    kCode, kName, kName2, Int("Measure"), Int("RoundQuantity"), Int("VATPercent")};
constexpr DemoColumn kUserStore[] = {Text("ForUser"), Int("Store")};
constexpr DemoColumn kStockDocument[] = {kCode, kName, kName2, Int("KindOperation")};
constexpr DemoColumn kNaming[] = {Int("Id"), Bit("IdentityWithNom")};
constexpr DemoColumn kEntry[] = {Code("SerialNumber"),
                                 kName,
                                 kName2,
                                 Int("Kind"),
                                 Int("InventoryCode"),
                                 Int("ServiceCode"),
                                 Int("Measure"),
                                 Money("Price"),
                                 {"EffectiveName", ValueKind::Memo, true},
                                 {"EffectiveName2", ValueKind::Memo, true}};
constexpr DemoColumn kEntryPrice[] = {Code("SerialNumber"), Day("AvailableFromDate"),
                                      Money("Price")};
constexpr DemoColumn kListed[] = {Int("KindList"), Code("SerialNumber"), Int("Measure"),
                                  Money("Price")};
constexpr DemoColumn kListPrice[] = {Int("KindList"), Code("SerialNumber"),
                                     Day("AvailableFromDate"), Money("Price")};
constexpr DemoColumn kContract[] = {Int("IdNumber"),
                                    Code("Supplier"),
                                    Text("ContractNumber"),
                                    {"ShortDescription", ValueKind::Memo, true},
                                    {"ShortDescription2", ValueKind::Memo, true},
                                    Day("ContractDate"),
                                    Day("FinishDate"),
                                    Bit("AutomaticRenewal"),
                                    Int("NoticePeriod"),
                                    Int("KindContract"),
                                    Int("CapExPlanCode"),
                                    Bit("ManifacOrder"),
                                    Int("SupplyInvoiceDescr"),
                                    Int("KindSupplyList"),
                                    Int("KindSupplyChoice"),
                                    Bit("InclTransportInPrice"),
                                    Code("SuppElKindPayment"),
                                    Int("MaxTermOfPayment"),
                                    Text("CreatedFrom"),
                                    Moment("CreatedOn")};
constexpr DemoColumn kOrder[] = {
    Int("IdNumber"),          Day("DocumentDate"),      Text("Description"),
    Text("Description2"),     Day("FromDate"),          Day("ToDate"),
    Code("CostCenter"),       Int("KindSupply"),        Code("Supplier"),
    Int("ContractId"),        Int("IncTranspInPrice"),  Int("KindCurrency"),
    Factor("RateOfExchange"), Money("SumManifacOrder"), Money("CurrSumManifacOrder"),
    Code("Notifier"),         Text("CreatedFrom"),      Moment("CreatedOn"),
    Text("AmendFrom"),        Moment("AmendOn"),        Int("Status"),
    Text("AnnulFrom"),        Moment("AnnulOn"),        Int("SendingNumber"),
    Text("SentFrom"),         Moment("SentOn")};
constexpr DemoColumn kOrderRow[] = {
    Int("SuppManOrderId"), Int("RowNumber"),          Code("SerialNumber"), Int("Measure"),
    Real("Quantity"),      Int("RowNumerator"),       Int("Numerator"),     Int("InventoryId"),
    Int("ServiceCode"),    Money("CurrSumWithoutVAT")};
constexpr DemoColumn kOrderDecision[] = {
    Int("SuppManOrderId"), Int("ConfirmationLevel"), Int("SendingNumber"), Int("Approval"),
    Int("Status"),         Code("ConfirmedFrom"),    Moment("ConfermedOn")};
constexpr DemoColumn kRequest[] = {Int("POIdNumber"),         Int("POVersion"),
                                   Day("DocumentDate"),       Text("Description"),
                                   Text("Description2"),      Text("Rationale"),
                                   Text("Rationale2"),        Code("CostCenter"),
                                   Code("Notifier"),          Code("Supplier"),
                                   Int("ContractId"),         Int("KindSupply"),
                                   Int("IncTranspInPrice"),   Int("KindCurrency"),
                                   Factor("RateOfExchange"),  Money("CurrSumPurchaseOrder"),
                                   Money("SumPurchaseOrder"), Text("CreatedFrom"),
                                   Moment("CreatedOn"),       Text("AmendFrom"),
                                   Moment("AmendOn"),         Int("Status"),
                                   Text("AnnulFrom"),         Moment("AnnulOn"),
                                   Bit("OldVersion"),         Int("SendingNumber"),
                                   Text("SentFrom"),          Moment("SentOn"),
                                   Code("ServiceEmployee")};
constexpr DemoColumn kRequestRow[] = {
    Int("PurchaseOrderId"), Int("PurchaseOrderVer"),   Int("RowNumber"),
    Code("SerialNumber"),   Int("InventoryId"),        Int("ServiceCode"),
    Int("Measure"),         Int("SuppManifacOrderId"), Real("Quantity"),
    Int("Numerator"),       Int("RowNumerator"),       Money("CurrSumWithoutVAT"),
    Text("Remarks"),        Text("Remarks2")};
constexpr DemoColumn kRequestDate[] = {Int("PurchaseOrderId"), Int("PurchaseOrderVer"),
                                       Day("DeliveryDate"), Day("DateOfLoading"), Bit("Delivered")};
constexpr DemoColumn kRequestPayment[] = {
    Int("PurchaseOrderId"), Int("PurchaseOrderVer"), Int("RowNumber"),        Day("InvoiceDate"),
    Money("SumWithVAT"),    Bit("AdvancePayment"),   Bit("AdvanceStatement"), Day("PaymentDate")};
constexpr DemoColumn kRequestDecision[] = {Int("PurchaseOrderId"),   Int("PurchaseOrderVer"),
                                           Int("ConfirmationLevel"), Int("SendingNumber"),
                                           Int("Approval"),          Int("Status"),
                                           Code("ConfirmedFrom"),    Moment("ConfermedOn")};
constexpr DemoColumn kTurn[] = {Code("Employee"), Int("KindRegister"), Int("DocumentId"),
                                Int("DocumentVersion")};
constexpr DemoColumn kDelivery[] = {
    Int("IdNumber"),         Day("DeliveryDate"),   Day("PODeliveryDate"), Int("PurchaseOrderId"),
    Int("PurchaseOrderVer"), Int("KindSupply"),     Code("Supplier"),      Int("Store"),
    Text("SuppDocNumber"),   Day("SuppDocDate"),    Int("Status"),         Text("CreatedFrom"),
    Moment("CreatedOn"),     Text("ConfirmedFrom"), Moment("ConfirmedOn"), Int("SendingNumber"),
    Text("SentFrom"),        Moment("SentOn")};
constexpr DemoColumn kDeliveryRow[] = {Int("DeliveryId"),  Int("RowNumber"),   Code("SerialNumber"),
                                       Int("InventoryId"), Int("ServiceCode"), Int("Measure"),
                                       Real("Quantity"),   Int("Numerator"),   Int("RowNumerator")};
constexpr DemoColumn kOffer[] = {Code("Partner"), Code("SerialNumber"), Day("FromDate"),
                                 Day("ToDate")};

}  // namespace

constinit const DemoTable kEmployees{"Employees", kEmployee, 1};
constinit const DemoTable kDepartment{"Department", kDepartments, 1};
constinit const DemoTable kSections{"Sections", kSection, 1};
constinit const DemoTable kCostCenters{"CostCenters", kCostCenter, 1};
constinit const DemoTable kStructure{"Structure", kPlace, 1};
constinit const DemoTable kStructureDeputies{"StructureDeputies", kUnit, 1};
constinit const DemoTable kStructDepDates{"StructDepDates", kPeriod, 2};
constinit const DemoTable kAdmissibleNotifiers{"AdmissibleNotifiers", kNotifier, 2};
constinit const DemoTable kKindSupplies{"KindSupplies", kCodeNames, 1};
constinit const DemoTable kLevelsApproval{"LevelsApproval", kLevel, 4};
constinit const DemoTable kEmployeesFinSupp{"EmployeesFinSupp", kFinancing, 2};
constinit const DemoTable kCapExPlan{"CapExPlan", kPlan, 1};
constinit const DemoTable kParams{"Params", kParam, 2};
constinit const DemoTable kCurrencies{"Currencies", kCurrency, 1};
constinit const DemoTable kTowns{"TownsAndVillages", kCodeNames, 1};
constinit const DemoTable kKindSupplyLists{"KindSupplyLists", kCodeNames, 1};
constinit const DemoTable kInvoiceDescr{"SupplyInvoiceDescr", kInvoice, 1};
constinit const DemoTable kRequestDescr{"SupplyRequestDescr", kCodeNames, 1};
constinit const DemoTable kReceiptDescr{"SupplyArtVchDescr", kCodeNames, 1};
constinit const DemoTable kFreeNomElements{"FreeNomElements", kElement, 2};
constinit const DemoTable kPartners{"Partners", kPartner, 1};
constinit const DemoTable kRates{"RatesOfExchange", kRate, 3};
constinit const DemoTable kMeasures{"Measures", kMeasure, 1};
constinit const DemoTable kMaterials{"MaterialStocks", kMaterial, 1};
constinit const DemoTable kServices{"Services", kService, 1};
constinit const DemoTable kStores{"Stores", kCodeNames, 1};
constinit const DemoTable kUserStores{"UserAccessToStores", kUserStore, 2};
constinit const DemoTable kKindDocInventory{"KindDocInventory", kStockDocument, 1};
constinit const DemoTable kSupplyNaming{"DescrBaseSupplyList", kNaming, 1};
constinit const DemoTable kBaseSupplyList{"BaseSupplyList", kEntry, 1};
constinit const DemoTable kBaseSupplyListDates{"BaseSupplyListDates", kEntryPrice, 2};
constinit const DemoTable kSupplyLists{"SupplyLists", kListed, 2};
constinit const DemoTable kSupplyListsDates{"SupplyListsDates", kListPrice, 3};
constinit const DemoTable kPartnerSupplyEntries{"PartnerSupplyEntries", kOffer, 3};
constinit const DemoTable kContracts{"SuppliesContracts", kContract, 1};
constinit const DemoTable kOrders{"SuppManifacOrder", kOrder, 1};
constinit const DemoTable kOrderRows{"SuppManOrderDet", kOrderRow, 2};
constinit const DemoTable kOrderApproval{"SuppManOrderAdmin", kOrderDecision, 2};
constinit const DemoTable kRequests{"PurchaseOrder", kRequest, 2};
constinit const DemoTable kRequestRows{"PurchaseOrderDet", kRequestRow, 3};
constinit const DemoTable kRequestDates{"PurchaseOrderDel", kRequestDate, 3};
constinit const DemoTable kRequestPayments{"PurchaseOrderPayPl", kRequestPayment, 3};
constinit const DemoTable kRequestApproval{"PurchaseOrderAdm", kRequestDecision, 3};
constinit const DemoTable kTurns{"ApprovalTurn", kTurn, 4};
constinit const DemoTable kDeliveries{"Deliveries", kDelivery, 1};
constinit const DemoTable kDeliveryRows{"DeliveryRows", kDeliveryRow, 2};

namespace {

constexpr const DemoTable* kAllTables[] = {&kEmployees,
                                           &kDepartment,
                                           &kSections,
                                           &kCostCenters,
                                           &kStructure,
                                           &kStructureDeputies,
                                           &kStructDepDates,
                                           &kAdmissibleNotifiers,
                                           &kKindSupplies,
                                           &kLevelsApproval,
                                           &kEmployeesFinSupp,
                                           &kCapExPlan,
                                           &kParams,
                                           &kCurrencies,
                                           &kTowns,
                                           &kKindSupplyLists,
                                           &kInvoiceDescr,
                                           &kRequestDescr,
                                           &kReceiptDescr,
                                           &kFreeNomElements,
                                           &kPartners,
                                           &kRates,
                                           &kMeasures,
                                           &kMaterials,
                                           &kServices,
                                           &kStores,
                                           &kUserStores,
                                           &kKindDocInventory,
                                           &kSupplyNaming,
                                           &kBaseSupplyList,
                                           &kBaseSupplyListDates,
                                           &kSupplyLists,
                                           &kSupplyListsDates,
                                           &kPartnerSupplyEntries,
                                           &kContracts,
                                           &kOrders,
                                           &kOrderRows,
                                           &kOrderApproval,
                                           &kRequests,
                                           &kRequestRows,
                                           &kRequestDates,
                                           &kRequestPayments,
                                           &kRequestApproval,
                                           &kTurns,
                                           &kDeliveries,
                                           &kDeliveryRows};

}  // namespace

std::span<const DemoTable* const> AllTables() {
  return kAllTables;
}

}  // namespace orvane::server::demo
