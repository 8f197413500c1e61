#pragma once

// Organisational structure ("Организационна структура"): the department and the section of every
// cost centre. Approval finds the heads by it.

#include "contract/names_language.h"

namespace orvane::structure {

inline constexpr auto CostCenter = Code19("CostCenter", Key | Required, "Център на разход - Код");
inline constexpr auto CCName = String("CCName", 30, Joined, "Център на разход - Име");
inline constexpr auto Department = Int16("Department", Plain, "Дирекция - Код");
inline constexpr auto DepName = String("DepName", 40, Joined, "Дирекция - Име");
inline constexpr auto Section = Code19("Section", Plain, "Отдел - Код");
inline constexpr auto SCName = String("SCName", 30, Joined, "Отдел - Име");

inline constexpr std::string_view kServerClass = "TsmStructure";
/// Parameter LNG.
inline constexpr auto dspStructure =
    Writes("dspStructure", "Structure", CostCenter, CCName, Department, DepName, Section, SCName);

}  // namespace orvane::structure
