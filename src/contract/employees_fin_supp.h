#pragma once

// Employees who finance supplies ("Служители, финансиращи доставки"): who it is for each kind of
// department.

#include "contract/names_language.h"

namespace orvane::employees_fin_supp {

/// Element of nomenclature 246.
inline constexpr auto KindSection = Byte("KindSection", Key | Required, "Вид отдел");
inline constexpr auto Employee = Code19("Employee", Key | Required, "Служител");
inline constexpr auto EmpName = String("EmpName", 30, Joined, "Служител - Име");
/// A copy of KindSection, as the screen chooses it.
inline constexpr auto LocateKindSection = Int32("LocateKindSection", Joined, "Вид отдел");

/// Kinds of department.
inline constexpr int kKindsOfSection = 246;

inline constexpr std::string_view kServerClass = "TsmEmployeesFinSupp";
/// Parameter LNG.
inline constexpr auto dspEmployeesFinSupp = Writes(
    "dspEmployeesFinSupp", "EmployeesFinSupp", KindSection, Employee, EmpName, LocateKindSection);

}  // namespace orvane::employees_fin_supp
