#pragma once

// Registers behind the combos of documents and filters: the columns of their lookups, and how each
// is searched.

#include <string_view>

#include "contract/field.h"
#include "kit/lookup_setup.h"

namespace orvane::core {

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
LookupSetup CostCentersOfNotifier();
LookupSetup CostCenters(std::string_view caption = "Търсене - Центрове за разходи");
LookupSetup Sections();
LookupSetup Departments();
LookupSetup Employees(std::string_view caption = "Търсене - Служители");
LookupSetup KindSupplies();
LookupSetup KindSupplyLists();
/// Kinds of inventory documents that receive into stock.
LookupSetup InventoryReceipts();
LookupSetup Currencies();
/// The third line of the statement gives way to the units of a row (kit/units.h).
LookupSetup Measures();
/// Elements of one nomenclature, by parameter Nom.
LookupSetup NomIn();
/// The same with one name, in the language of the parameter NomInLanguage; the number is NomIn.
LookupSetup NomInOfLanguage();

}  // namespace orvane::core
