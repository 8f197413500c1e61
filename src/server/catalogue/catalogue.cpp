#include "server/catalogue/catalogue.h"

#include <algorithm>
#include <array>

#include "packet/variant.h"
#include "server/catalogue/active_contract.h"
#include "server/catalogue/order_remainder.h"

namespace orvane::server {
namespace {

using Column = CatalogueColumn;

// Flags, short enough that a table of columns stays a table.
constexpr std::uint8_t kKey = kKeyColumn;
constexpr std::uint8_t kName = kNotNull;       // a first name is never empty
constexpr std::uint8_t kName2 = kPlainColumn;  // a second one may be

constexpr Column Bit(std::string_view name) {
  return {name, ValueKind::Bool, 0, kNotNull};
}
constexpr Column Byte(std::string_view name, std::uint8_t flags = kPlainColumn) {
  return {name, ValueKind::Byte, 0, flags};
}
constexpr Column Small(std::string_view name, std::uint8_t flags = kPlainColumn) {
  return {name, ValueKind::Int16, 0, flags};
}
constexpr Column Int(std::string_view name, std::uint8_t flags = kPlainColumn) {
  return {name, ValueKind::Int32, 0, flags};
}
constexpr Column Code(std::string_view name, std::uint8_t flags = kPlainColumn) {
  return {name, ValueKind::Code, 0, flags};
}
constexpr Column Money(std::string_view name) {
  return {name, ValueKind::Amount, 0, kPlainColumn};
}
constexpr Column Real(std::string_view name) {
  return {name, ValueKind::Double, 0, kPlainColumn};
}
constexpr Column Day(std::string_view name, std::uint8_t flags = kPlainColumn) {
  return {name, ValueKind::Date, 0, flags};
}
constexpr Column Moment(std::string_view name) {
  return {name, ValueKind::Stamp, 0, kPlainColumn};
}
// Whatever text may be searched may be so in either case: every one has a fold.
constexpr Column Text(std::string_view name, std::uint16_t size, std::uint8_t flags = 0) {
  return {name, ValueKind::String, size, static_cast<std::uint8_t>(flags | kFolded)};
}
constexpr Column Memo(std::string_view name) {
  return {name, ValueKind::Memo, 0, kFolded};
}
constexpr Column Derived(Column column, std::string_view expression,
                         std::string_view presence = {}) {
  column.expression = expression;
  column.presence = presence;
  return column;
}
constexpr Column InTrigrams(Column column, std::string_view index) {
  column.trigrams = index;
  return column;
}
constexpr Column FoldedBy(Column column, std::string_view expression) {
  column.foldExpression = expression;
  return column;
}

constexpr std::string_view kInvoiceNumber =
    "coalesce({t}.InvoiceNumberSymbol, cast({t}.InvoiceNumberDigit as text))";
constexpr std::string_view kFoldInvoiceNumber =
    "coalesce({t}.FoldInvoiceNumberSymbol, cast({t}.InvoiceNumberDigit as text))";

constexpr Column kCodeNames30[] = {Small("Code", kKey), Text("Name", 30, kName),
                                   Text("Name2", 30, kName2)};
constexpr Column kCodeNames40[] = {Small("Code", kKey), Text("Name", 40, kName),
                                   Text("Name2", 40, kName2)};
constexpr Column kCurrencies[] = {Small("Code", kKey), Text("Name", 20, kName),
                                  Text("Name2", 20, kName2)};
constexpr Column kDepartments[] = {Small("Code", kKey), Text("Name", 40, kName),
                                   Text("Name2", 40, kName2), Text("Chief", 10, kNotNull)};
constexpr Column kSections[] = {Code("Section", kKey), Text("Name", 30, kName),
                                Text("Name2", 30, kName2)};
constexpr Column kCostCenters[] = {Code("CostCenter", kKey), Text("Name", 30, kName),
                                   Text("Name2", 30, kName2)};
constexpr Column kEmployees[] = {Code("Employee", kKey), Text("Name", 30, kName),
                                 Text("Name2", 30, kName2)};
constexpr Column kUsers[] = {Text("ShortName", 10, kKey), Text("UserName", 40, kName),
                             Text("UserName2", 40, kName2)};
constexpr Column kNotifiers[] = {Code("CostCenter", kKey), Code("Notifier", kKey)};
constexpr Column kStructure[] = {Code("CostCenter", kKey), Small("Department"), Code("Section")};
constexpr Column kTowns[] = {Int("Code", kKey), Text("Name", 40, kName), Text("Name2", 40, kName2)};
constexpr Column kKindDocInventory[] = {Small("Code", kKey), Text("Name", 30, kName),
                                        Text("Name2", 30, kName2), Byte("KindOperation", kNotNull)};
constexpr Column kNomIn[] = {
    Int("Nomenclature", kKey), Code("Element", kKey), Text("Name", 30, kName),
    Text("Name2", 30, kName2), Text("Name3", 30),     Text("Name4", 30),
    Text("Name5", 30),         Text("Name6", 30),     Text("Name7", 30),
    Text("Name8", 30),         Text("Name9", 30),     Text("Name10", 30),
};
constexpr Column kFreeNomElements[] = {Int("FreeNomenclature", kKey), Code("Element", kKey),
                                       Text("Name", 30, kName), Text("Name2", 30, kName2)};
constexpr Column kMeasures[] = {Small("Code", kKey), Text("Name", 20, kName),
                                Text("Name2", 20, kName2), Int("Numerator", kNotNull),
                                Bit("OrdinaryFraction")};
constexpr Column kPartners[] = {
    Code("Partner", kKey),
    InTrigrams(Text("Name", 50, kName), "PartnersParts"),
    InTrigrams(Text("Name2", 50, kName2), "PartnersParts"),
    Bit("PartnerTypeSupplier"),
    Small("SuppKindCurrency"),
    Byte("KindSupplyChoice"),
    Small("KindSupplyList"),
    Small("SuppMaxTermOfPayment"),
    Small("SupplyInvoiceDescr"),
    Int("Seat"),
    Text("Address", 40),
    Text("Address2", 40),
    Text("Telephone1", 20),
    Text("Telephone2", 20),
    Text("email", 100),
};
constexpr Column kInvoiceDescr[] = {Small("Code", kKey),       Text("Name", 40, kName),
                                    Text("Name2", 40, kName2), Byte("KindInvoice"),
                                    Bit("AdvanceInvoice"),     Bit("Respondent")};
constexpr Column kCapExPlan[] = {
    Int("Code", kKey),         Text("Name", 50, kName),
    Text("Name2", 50, kName2), Text("InternalNumber", 30),
    Day("FromDate"),           Day("TimeLimit"),
    Money("CapSum"),
};

constexpr Column kMaterialStocks[] = {
    Int("IdNumber", kKey),      Text("Name", 40, kName),  Text("Name2", 40, kName2),
    Small("Measure", kNotNull), Small("IncomeMeasure"),   Small("BarCodeMeasure"),
    Byte("RoundQuantity"),      Day("SuppForbiddenFrom"), Day("SuppActiveFrom"),
};
constexpr Column kServices[] = {Int("Code", kKey), Text("Name", 40, kName),
                                Text("Name2", 40, kName2), Small("Measure"), Byte("RoundQuantity")};
constexpr Column kBaseSupplyList[] = {
    Code("SerialNumber", kKey),
    Text("Name", 40),
    Text("Name2", 40),
    Byte("Kind", kNotNull),
    Int("InventoryCode"),
    Int("ServiceCode"),
    Small("Measure", kNotNull),
    // The name of the material or service behind the entry, kept for searching and ordering.
    InTrigrams(Text("EffectiveName", 40), "BaseSupplyListParts"),
    InTrigrams(Text("EffectiveName2", 40), "BaseSupplyListParts"),
};
constexpr Column kBaseSupplyListDates[] = {Code("SerialNumber", kKey),
                                           Day("AvailableFromDate", kKey)};
constexpr Column kSupplyLists[] = {Small("KindList", kKey), Code("SerialNumber", kKey),
                                   Small("Measure", kNotNull)};
constexpr Column kSupplyListsDates[] = {Small("KindList", kKey), Code("SerialNumber", kKey),
                                        Day("AvailableFromDate", kKey)};
constexpr Column kKeptNames[] = {Text("EffectiveName", 40), Text("EffectiveName2", 40)};
constexpr Column kDescrBaseSupplyList[] = {{"IdentityWithNom", ValueKind::Bool}};

constexpr Column kStores[] = {Int("Code", kKey), Text("Name", 40, kName),
                              Text("Name2", 40, kName2)};
constexpr Column kUserStores[] = {Text("ForUser", 10, kKey), Int("Store", kKey)};

constexpr Column kPurchaseOrder[] = {
    Int("POIdNumber", kKey),
    Byte("POVersion", kKey),
    Day("DocumentDate", kNotNull),
    Memo("Description"),
    Memo("Description2"),
    Memo("Rationale"),
    Memo("Rationale2"),
    Code("CostCenter", kNotNull),
    Code("Notifier", kNotNull),
    Code("Supplier"),
    Int("ContractId"),
    Small("KindSupply", kNotNull),
    Byte("IncTranspInPrice"),
    Small("KindCurrency"),
    Money("CurrSumPurchaseOrder"),
    Money("SumPurchaseOrder"),
    Text("CreatedFrom", 10),
    Moment("CreatedOn"),
    Text("AmendFrom", 10),
    Moment("AmendOn"),
    Byte("Status", kNotNull),
    Text("AnnulFrom", 10),
    Moment("AnnulOn"),
    Bit("OldVersion"),
};
constexpr Column kPurchaseOrderDet[] = {
    Int("PurchaseOrderId", kKey),
    Byte("PurchaseOrderVer", kKey),
    Small("RowNumber", kKey),
    Code("SerialNumber", kNotNull),
    Int("InventoryId"),
    Int("ServiceCode"),
    Small("Measure", kNotNull),
    Int("SuppManifacOrderId"),
    Real("Quantity"),
    Int("Numerator"),
    Int("RowNumerator"),
    Money("CurrSumWithoutVAT"),
};
constexpr Column kPurchaseOrderDel[] = {Int("PurchaseOrderId", kKey),
                                        Byte("PurchaseOrderVer", kKey), Day("DeliveryDate", kKey),
                                        Day("DateOfLoading"), Bit("Delivered")};
constexpr Column kContracts[] = {
    Int("IdNumber", kKey),
    Code("Supplier", kNotNull),
    Text("ContractNumber", 30),
    Text("ShortDescription", 50, kName),
    Text("ShortDescription2", 50, kName2),
    Day("ContractDate", kNotNull),
    Day("FreezeDate"),
    Day("FinishDate"),
    Bit("AutomaticRenewal"),
    Small("KindContract", kNotNull),
    Int("CapExPlanCode"),
    Bit("ManifacOrder"),
    Small("KindSupplyList"),
    Byte("KindSupplyChoice"),
    Bit("InclTransportInPrice"),
    Byte("MaxTermOfPayment"),
    Derived(Int("Active", kNotNull), kActiveContract, "IdNumber"),
};
constexpr Column kSupplierOrder[] = {
    Int("IdNumber", kKey),    Day("DocumentDate", kNotNull),
    Memo("Description"),      Memo("Description2"),
    Day("FromDate"),          Day("ToDate"),
    Code("CostCenter"),       Small("KindSupply"),
    Code("Supplier"),         Int("ContractId"),
    Code("Notifier"),         Text("CreatedFrom", 10),
    Moment("CreatedOn"),      Byte("Status", kNotNull),
    Text("AnnulFrom", 10),    Moment("AnnulOn"),
    Money("SumManifacOrder"), Money("CurrSumManifacOrder"),
};
constexpr Column kSupplierOrderDet[] = {
    Int("SuppManOrderId", kKey),
    Small("RowNumber", kKey),
    Code("SerialNumber", kNotNull),
    Small("Measure", kNotNull),
    Real("Quantity"),
    Int("RowNumerator"),
    Int("Numerator"),
    Int("InventoryId"),
    Int("ServiceCode"),
    Derived(Real("CalcQuantity"), "{t}.Quantity"),
    Derived(Real("CalcOrderedQunatity"), kOrderedQuantity, "SuppManOrderId"),
    Derived(Real("CalcDeliverQuantity"), kDeliveredQuantity, "SuppManOrderId"),
};
constexpr Column kDeliveries[] = {
    Int("IdNumber", kKey),
    Day("DeliveryDate", kNotNull),
    Small("KindSupply", kNotNull),
    Code("Supplier", kNotNull),
    Int("PurchaseOrderId"),
    Byte("PurchaseOrderVer"),
    Day("PODeliveryDate"),
    Int("Store"),
    Text("SuppDocNumber", 30),
    Day("SuppDocDate"),
    Byte("Status", kNotNull),
    Bit("Difference"),
    Bit("OutsideTolerance"),
    Text("CreatedFrom", 10),
    Moment("CreatedOn"),
    Text("AnnulFrom", 10),
    Moment("AnnulOn"),
};
constexpr Column kDeliveryRows[] = {
    Int("DeliveryId", kKey),    Small("RowNumber", kKey), Code("SerialNumber", kNotNull),
    Small("Measure", kNotNull), Real("Quantity"),
};
constexpr Column kInvoices[] = {
    Int("IdNumber", kKey),
    Day("JoinedDate", kNotNull),
    Code("Supplier", kNotNull),
    Code("InvoiceNumberDigit"),
    Text("InvoiceNumberSymbol", 20),
    FoldedBy(Derived(Text("InvoiceNumber", 20), kInvoiceNumber), kFoldInvoiceNumber),
    Day("InvoiceDate", kNotNull),
    Byte("DocumentType"),
    Small("KindSupply"),
    Code("CostCenter"),
    Small("KindCurrency"),
    Money("CurrSumWithVATRb"),
    Money("SumWithoutVATRb"),
    Bit("OutsideTolerance"),
    Day("Maturity"),
    Byte("Status", kNotNull),
    Text("CreatedFrom", 10),
    Moment("CreatedOn"),
    Text("AnnulFrom", 10),
    Moment("AnnulOn"),
};
constexpr Column kCriteria[] = {
    Small("CriteriaType", kKey), Int("SerialNumber", kKey),  Text("Numeration", 30),
    Text("Name", 100, kName),    Text("Name2", 100, kName2), Bit("HeadPoint"),
    Int("ToHPSerialNumber"),     Bit("ToBeEvaluated"),       Bit("EvalFixedPoints"),
    Small("CountPoints"),        Small("MinCountPoints"),    Small("MaxCountPoints"),
};
constexpr Column kQuestionnaires[] = {
    Int("IdNumber", kKey),
    Day("ForDate"),
    Code("Supplier"),
    Text("SupplierName", 50, kName),
    Text("SupplierName2", 50, kName2),
    Int("Seat"),
    Text("Address", 40),
    Text("Address2", 40),
    Text("ContactPerson", 30),
    Text("ContactPerson2", 30),
    Text("Phone1", 20),
    Text("Phone2", 20),
    Text("email", 100),
};

// Who may read what is no reference data. Everyone with a session reads tables without such a list.
constexpr Point kUserReaders[] = {Point::Departments, Point::EvaluationCommittee};
constexpr Point kEmployeeReaders[] = {
    Point::EmployeesFinSupp,    Point::Parameters,     Point::Structure,
    Point::StructureDeputies,   Point::LevelsApproval, Point::AdmissibleNotifiers,
    Point::PurchaseRequests,    Point::SupplierOrders, Point::Deliveries,
    Point::EvaluationCommittee,
};
constexpr Point kNotifierReaders[] = {
    Point::AdmissibleNotifiers, Point::PurchaseRequests, Point::PurchaseRequestReport,
    Point::SupplierOrders,      Point::Deliveries,       Point::ApprovalQueue,
};
constexpr Point kStructureReaders[] = {Point::Structure, Point::StructureDeputies};
constexpr Point kPartnerReaders[] = {
    Point::Deliveries,          Point::SupplierOrders,       Point::SuppliesContracts,
    Point::PurchaseRequests,    Point::SupplierInvoices,     Point::PurchaseRequestReport,
    Point::ApprovalQueue,       Point::InitialQuestionnaire, Point::InitialEvaluationMap,
    Point::PeriodEvaluationMap,
};
constexpr Point kSupplyReaders[] = {
    Point::Deliveries,       Point::SupplierOrders,        Point::SuppliesContracts,
    Point::PurchaseRequests, Point::PurchaseRequestReport, Point::ApprovalQueue,
};
constexpr Point kStoreReaders[] = {Point::Deliveries, Point::ApprovalQueue};
constexpr Point kRequestReaders[] = {
    Point::PurchaseRequests, Point::PurchaseRequestReport, Point::Deliveries,
    Point::SupplierOrders,   Point::SupplierInvoices,      Point::ApprovalQueue,
};
constexpr Point kOrderReaders[] = {
    Point::SupplierOrders, Point::PurchaseRequests, Point::PurchaseRequestReport,
    Point::Deliveries,     Point::ApprovalQueue,
};
constexpr Point kDeliveryReaders[] = {Point::Deliveries, Point::PurchaseRequests,
                                      Point::SupplierInvoices, Point::ApprovalQueue};
constexpr Point kContractReaders[] = {Point::SuppliesContracts, Point::PurchaseRequests,
                                      Point::SupplierOrders, Point::Deliveries,
                                      Point::ApprovalQueue};
constexpr Point kContractPoint[] = {Point::SuppliesContracts};
constexpr Point kCapExReaders[] = {Point::CapExPlan, Point::SuppliesContracts};
constexpr Point kInvoiceReaders[] = {Point::SupplierInvoices, Point::ApprovalQueue};
constexpr Point kCriteriaReaders[] = {Point::EvaluationCriteria, Point::InitialEvaluationMap,
                                      Point::PeriodEvaluationMap, Point::InitialQuestionnaire};
constexpr Point kQuestionnaireReaders[] = {Point::InitialQuestionnaire,
                                           Point::InitialEvaluationMap};

constexpr std::span<const Point> kEveryone;
constexpr RowsSeen kAll = RowsSeen::All;
constexpr RowsSeen kVisible = RowsSeen::Visible;

constexpr CatalogueTable kTables[] = {
    {"AdmissibleNotifiers", "AdmissibleNotifiers", kAll, false, kNotifierReaders, kNotifiers},
    {"BaseSupplyList", "BaseSupplyList", kAll, false, kSupplyReaders, kBaseSupplyList},
    {"BaseSupplyListDates",
     "BaseSupplyListDates",
     kAll,
     false,
     kSupplyReaders,
     kBaseSupplyListDates,
     {},
     {},
     kKeptNames},
    {"CapExPlan", "CapExPlan", kAll, false, kCapExReaders, kCapExPlan},
    {"CostCenters", "CostCenters", kAll, false, kEveryone, kCostCenters},
    {"CriteriaEvalSupp", "CriteriaEvalSupp", kAll, false, kCriteriaReaders, kCriteria},
    {"Currencies", "Currencies", kAll, false, kEveryone, kCurrencies},
    {"Deliveries", "Deliveries", kVisible, false, kDeliveryReaders, kDeliveries},
    {"DeliveryRows", "DeliveryRows", kVisible, false, kDeliveryReaders, kDeliveryRows, "Deliveries",
     "{h}.IdNumber = {t}.DeliveryId"},
    {"Departments", "Department", kAll, false, kEveryone, kDepartments},
    {"DescrBaseSupplyList", "DescrBaseSupplyList", kAll, true, kSupplyReaders,
     kDescrBaseSupplyList},
    {"Employees", "Employees", kAll, false, kEmployeeReaders, kEmployees},
    {"FreeNomElements", "FreeNomElements", kAll, false, kEveryone, kFreeNomElements},
    {"KindDocInventory", "KindDocInventory", kAll, false, kEveryone, kKindDocInventory},
    {"KindSupplies", "KindSupplies", kAll, false, kEveryone, kCodeNames40},
    {"KindSupplyLists", "KindSupplyLists", kAll, false, kEveryone, kCodeNames30},
    {"MaterialStocks", "MaterialStocks", kAll, false, kSupplyReaders, kMaterialStocks},
    {"Measures", "Measures", kAll, false, kEveryone, kMeasures},
    {"NomIn", "NomIn", kAll, false, kEveryone, kNomIn},
    {"Partners", "Partners", kAll, false, kPartnerReaders, kPartners},
    {"PurchaseOrder", "PurchaseOrder", kVisible, false, kRequestReaders, kPurchaseOrder},
    {"PurchaseOrderDel", "PurchaseOrderDel", kVisible, false, kRequestReaders, kPurchaseOrderDel,
     "PurchaseOrder",
     "{h}.POIdNumber = {t}.PurchaseOrderId and {h}.POVersion = {t}.PurchaseOrderVer"},
    {"PurchaseOrderDet", "PurchaseOrderDet", kVisible, false, kRequestReaders, kPurchaseOrderDet,
     "PurchaseOrder",
     "{h}.POIdNumber = {t}.PurchaseOrderId and {h}.POVersion = {t}.PurchaseOrderVer"},
    {"QuestionInitEvalMap", "QuestionInitEvalMap", kAll, false, kQuestionnaireReaders,
     kQuestionnaires},
    {"Sections", "Sections", kAll, false, kEveryone, kSections},
    {"Services", "Services", kAll, false, kSupplyReaders, kServices},
    {"Stores", "Stores", kAll, false, kStoreReaders, kStores},
    {"Structure", "Structure", kAll, false, kStructureReaders, kStructure},
    {"SuppInvRegister", "SuppInvRegister", kAll, false, kInvoiceReaders, kInvoices},
    {"SuppManOrderDet", "SuppManOrderDet", kVisible, false, kOrderReaders, kSupplierOrderDet,
     "SuppManifacOrder", "{h}.IdNumber = {t}.SuppManOrderId"},
    {"SuppManifacOrder", "SuppManifacOrder", kVisible, false, kOrderReaders, kSupplierOrder},
    {"SuppliesContracts", "SuppliesContracts", kAll, false, kContractReaders, kContracts},
    {"SupplyArtVchDescr", "SupplyArtVchDescr", kAll, false, kContractPoint, kCodeNames40},
    {"SupplyInvoiceDescr", "SupplyInvoiceDescr", kAll, false, kContractPoint, kInvoiceDescr},
    {"SupplyLists", "SupplyLists", kAll, false, kSupplyReaders, kSupplyLists, {}, {}, kKeptNames},
    {"SupplyListsDates",
     "SupplyListsDates",
     kAll,
     false,
     kSupplyReaders,
     kSupplyListsDates,
     {},
     {},
     kKeptNames},
    {"SupplyRequestDescr", "SupplyRequestDescr", kAll, false, kContractPoint, kCodeNames40},
    {"TownsAndVillages", "TownsAndVillages", kAll, false, kEveryone, kTowns},
    {"UserAccessToStores", "UserAccessToStores", kAll, false, kStoreReaders, kUserStores},
    {"WSysUsers", "WSysUsers", kAll, false, kUserReaders, kUsers},
};

}  // namespace

const CatalogueColumn* CatalogueTable::Find(std::string_view column) const {
  for (const CatalogueColumn& row : columns) {
    if (SameName(row.name, column)) return &row;
  }
  return nullptr;
}

std::span<const CatalogueTable> SearchCatalogue() {
  return kTables;
}

const CatalogueTable* FindCatalogueTable(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kTables), std::end(kTables),
                   [&](const CatalogueTable& table) { return SameName(table.name, name); });
  return found == std::end(kTables) ? nullptr : found;
}

}  // namespace orvane::server
