#pragma once

// Registers behind the combos of documents and filters: the columns of their lookups, and how each
// is searched.

#include <string>
#include <string_view>

#include "contract/field.h"
#include "kit/lookup_setup.h"

namespace orvane::modules::core {

/// A code with a name in two languages.
inline constexpr auto Code = Int16("Code", Key, "Код");
inline constexpr auto Name20 = String("Name", 20, Plain, "Име");
inline constexpr auto Name20Second = String("Name2", 20, Plain, "Име 2");
inline constexpr auto Name30 = String("Name", 30, Plain, "Име");
inline constexpr auto Name30Second = String("Name2", 30, Plain, "Име 2");
inline constexpr auto Name40 = String("Name", 40, Plain, "Име");
inline constexpr auto Name40Second = String("Name2", 40, Plain, "Име 2");
inline constexpr auto CostCenter = Code19("CostCenter", Key, "Код");
inline constexpr auto Section = Code19("Section", Key, "Код");
inline constexpr auto Employee = Code19("Employee", Key, "Код");
inline constexpr auto Element = Code19("Element", Key, "Код");
inline constexpr auto Numerator = Int32("Numerator", Plain, "Размер");
inline constexpr auto OrdinaryFraction = Bit("OrdinaryFraction", Plain, "Дробна");

/// An entry of the supply list, with the units of the material or service behind it.
namespace supply_list {
inline constexpr auto SerialNumber = Code19("SerialNumber", Key, "Пореден номер");
inline constexpr auto cbName = String("cbName", 40, Plain, "Име");
inline constexpr auto cbName2 = String("cbName2", 40, Plain, "Име 2");
inline constexpr auto InventoryCode = Int32("InventoryCode");
inline constexpr auto ServiceCode = Int32("ServiceCode");
inline constexpr auto bslMeasure = Int16("bslMeasure", Required);
inline constexpr auto msMeasure = Int16("msMeasure");
inline constexpr auto IncomeMeasure = Int16("IncomeMeasure");
inline constexpr auto BarCodeMeasure = Int16("BarCodeMeasure");
inline constexpr auto servMeasure = Int16("servMeasure");
inline constexpr auto roundQNT = Byte("roundQNT");
inline constexpr auto kEntry =
    Reads("", SerialNumber, cbName, cbName2, InventoryCode, ServiceCode, bslMeasure, msMeasure,
          IncomeMeasure, BarCodeMeasure, servMeasure, roundQNT);
}  // namespace supply_list

/// Numbers of nomenclatures.
enum Nomenclature : int {
  kWaysOfChoosing = 90,
  kKindsOfRegister = 244,
  kKindsOfApprover = 245,
  kRequestStatuses = 249,
  kNoYes = 250,
  kApprovalStatuses = 251,
  kPriceAlgorithms = 283,
};

/// Cost centres for which an employee is an admissible requester (parameter Notifier).
LookupSetup CostCentersOfNotifier(std::string_view caption = "Търсене - Центрове за разходи");
LookupSetup CostCenters(std::string_view caption = "Търсене - Центрове за разходи");
LookupSetup Sections();
LookupSetup Departments();
LookupSetup Employees(std::string_view caption = "Търсене - Служители");
LookupSetup KindSupplies();
LookupSetup KindSupplyLists();
/// Kinds of inventory documents that receive into stock.
LookupSetup InventoryReceipts();
LookupSetup Currencies();
/// Suppliers with their currency, way of choosing, kind of list and payment term
/// (own_rows::kPartner).
LookupSetup Suppliers();
/// Active contracts of one supplier (parameter Supplier) for one kind of purchase, with their terms
/// (own_rows::kContract). `kindParam` names the parameter of the kind; `condition` (" AND …")
/// narrows further.
LookupSetup Contracts(std::string_view kindParam, std::string_view condition = {});
/// The supply list (supply_list::kEntry); its statement follows the document.
LookupSetup SupplyList();
/// The third line of the statement gives way to the units of a row (kit/documents/units.h).
LookupSetup Measures();
/// Elements of one nomenclature, by parameter Nom.
LookupSetup NomIn();
/// The same with one name, in the language of the parameter NomInLanguage; the number is NomIn.
LookupSetup NomInOfLanguage();

}  // namespace orvane::modules::core
