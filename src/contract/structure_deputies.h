#pragma once

// Structure deputies ("Заместници"): structural units, and for each the periods in which somebody
// stands in for its head. A unit is a cost centre, a section or a department; the code of its type
// is filled, and no other.

#include <cstdint>

#include "contract/names_language.h"

namespace orvane::structure_deputies {

inline constexpr auto IdNumber = Int32("IdNumber", Key | Required, "Номер");
/// Element of nomenclature 245: 1 cost centre, 2 section, 3 department.
inline constexpr auto StructuralUnitType = Byte("StructuralUnitType", Required, "Тип");
inline constexpr auto Department = Int16("Department", Plain, "Дирекция - Код");
inline constexpr auto DepName = String("DepName", 40, Joined, "Дирекция - Име");
inline constexpr auto Section = Code19("Section", Plain, "Отдел - Код");
inline constexpr auto SCName = String("SCName", 30, Joined, "Отдел - Име");
inline constexpr auto CostCenter = Code19("CostCenter", Plain, "Център на разход - Код");
inline constexpr auto CCName = String("CCName", 30, Joined, "Център на разход - Име");

/// A type of unit: the field of its code, the register the code is from, and how sentences call it.
struct UnitType {
  std::int64_t type;
  FieldDef code;
  std::string_view table;
  std::string_view tableCode;
  std::string_view name;
};
inline constexpr UnitType kUnitTypes[] = {
    {1, CostCenter, "CostCenters", "CostCenter", "център на разход"},
    {2, Section, "Sections", "Section", "отдел"},
    {3, Department, "Department", "Code", "дирекция"},
};

/// Null when there is no such type.
constexpr const UnitType* FindUnitType(std::int64_t type) {
  for (const UnitType& row : kUnitTypes) {
    if (row.type == type) return &row;
  }
  return nullptr;
}

namespace period {
/// Number of the unit.
inline constexpr auto StructDepId = Int32("StructDepId", Key | Required, "Структурна единица");
inline constexpr auto FromDate = Day("FromDate", Key | Required, "От дата");
/// Last day of the period; empty: until further notice.
inline constexpr auto ToDate = Day("ToDate", Plain, "До дата");
inline constexpr auto Deputy = Code19("Deputy", Required, "Заместник");
inline constexpr auto EmpName = String("EmpName", 30, Joined, "Заместник - Име");
}  // namespace period

/// The highest number of a unit in use; 0 while there is none.
inline constexpr auto MaxId = Int32("MaxId");

inline constexpr std::string_view kServerClass = "TsmStructureDeputies";
/// Parameter LNG.
inline constexpr auto dspStructureDeputies =
    Writes("dspStructureDeputies", "StructureDeputies", IdNumber, StructuralUnitType, Department,
           DepName, Section, SCName, CostCenter, CCName);
/// Parameters LNG and IdNumber, the unit whose periods are wanted.
inline constexpr auto dspStructDepDates =
    Writes("dspStructDepDates", "StructDepDates", period::StructDepId, period::FromDate,
           period::ToDate, period::Deputy, period::EmpName);
inline constexpr auto dspStructDeptMaxId = Reads("dspStructDeptMaxId", MaxId);

}  // namespace orvane::structure_deputies
