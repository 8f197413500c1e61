#include "server/demo/demo_units.h"

#include <cassert>

namespace orvane::server {
namespace {

// Employees who head something; demo_people.cpp has them all.
constexpr std::int64_t kPetrov = 1002;
constexpr std::int64_t kGeorgieva = 1003;
constexpr std::int64_t kDimitrov = 1004;
constexpr std::int64_t kStoyanova = 1005;
constexpr std::int64_t kKolev = 1006;
constexpr std::int64_t kTodorova = 1007;
constexpr std::int64_t kAngelov = 1008;
constexpr std::int64_t kMarinov = 1011;

constexpr DemoDepartment kDepartments[] = {
    {1, "Производство", "Production", "petrov", kPetrov},
    {2, "Финанси", "Finance", "georgieva", kGeorgieva},
    {3, "Логистика", "Logistics", "dimitrov", kDimitrov},
    {4, "Качество", "Quality", "stoyanova", kStoyanova},
    {5, "Продажби", "Sales", "georgieva", kGeorgieva},
    {6, "Маркетинг", "Marketing", "georgieva", kGeorgieva},
    {7, "Информационни технологии", "Information Technology", "dimitrov", kDimitrov},
    {8, "Човешки ресурси", "Human Resources", "stoyanova", kStoyanova},
    {9, "Техническа поддръжка", "Maintenance", "petrov", kPetrov},
    {10, "Развойна дейност", "Research and Development", "petrov", kPetrov},
    {11, "Енергетика и опазване на околната среда", "Energy and Environment", "dimitrov",
     kDimitrov},
    {12, "Правна дейност", "Legal", "georgieva", kGeorgieva},
};

constexpr DemoSection kSections[] = {
    {11, 1, "Производствени цехове", "Production Shops", kMarinov},
    {12, 1, "Монтаж", "Assembly", kMarinov},
    {13, 1, "Покрития", "Coating", kKolev},
    {21, 2, "Счетоводство", "Accounting", kGeorgieva},
    {22, 2, "Планиране и контрол", "Planning and Control", kGeorgieva},
    {31, 3, "Снабдяване", "Purchasing", kTodorova},
    {32, 3, "Складово стопанство", "Warehousing", kAngelov},
    {33, 3, "Транспорт", "Transport", kDimitrov},
    {41, 4, "Контрол на качеството", "Quality Control", kStoyanova},
    {42, 4, "Лаборатории", "Laboratories", kStoyanova},
    {51, 5, "Продажби в страната", "Domestic Sales", kGeorgieva},
    {52, 5, "Износ", "Export", kGeorgieva},
    {61, 6, "Реклама", "Advertising", kGeorgieva},
    {71, 7, "Системи и мрежи", "Systems and Networks", kDimitrov},
    {81, 8, "Личен състав", "Personnel", kStoyanova},
    {82, 8, "Безопасност на труда", "Safety at Work", kStoyanova},
    {91, 9, "Ремонт", "Repairs", kMarinov},
    {92, 9, "Сгради и съоръжения", "Buildings and Facilities", kKolev},
    {101, 10, "Конструиране", "Design", kMarinov},
    {102, 10, "Прототипи", "Prototypes", kKolev},
    {111, 11, "Енергийно стопанство", "Energy", kDimitrov},
    {112, 11, "Околна среда", "Environment", kDimitrov},
    {121, 12, "Правен отдел", "Legal Office", kGeorgieva},
};

constexpr DemoCostCenter kCostCenters[] = {
    {1001, 11, "Механичен цех", "Machining Shop", kKolev, 110},
    {1002, 11, "Цех за заваряване", "Welding Shop", kKolev, 70},
    {1003, 11, "Щанцов цех", "Press Shop", kMarinov, 55},
    {1101, 12, "Монтажен цех 1", "Assembly Shop 1", kMarinov, 70},
    {1102, 12, "Монтажен цех 2", "Assembly Shop 2", kKolev, 45},
    {1201, 13, "Галваничен цех", "Plating Shop", kKolev, 25},
    {1202, 13, "Бояджиен цех", "Paint Shop", kMarinov, 25},
    {2001, 21, "Счетоводство", "Accounting", kGeorgieva, 15},
    {2002, 22, "Планиране и контрол", "Planning and Control", kGeorgieva, 10},
    {3001, 31, "Отдел „Снабдяване“", "Purchasing Office", kTodorova, 60},
    {3101, 32, "Централен склад", "Central Warehouse", kAngelov, 60},
    {3102, 32, "Склад „Готова продукция“", "Finished Goods Warehouse", kAngelov, 50},
    {3201, 33, "Автотранспорт", "Motor Transport", kDimitrov, 60},
    {4001, 41, "Входящ контрол", "Incoming Inspection", kStoyanova, 40},
    {4101, 42, "Изпитвателна лаборатория", "Testing Laboratory", kStoyanova, 30},
    {5001, 51, "Търговски отдел", "Sales Office", kGeorgieva, 25},
    {5101, 52, "Отдел „Износ“", "Export Office", kGeorgieva, 20},
    {6001, 61, "Реклама и изложения", "Advertising and Fairs", kGeorgieva, 20},
    {7001, 71, "Сървъри и мрежи", "Servers and Networks", kDimitrov, 40},
    {8001, 81, "Личен състав", "Personnel", kStoyanova, 15},
    {8002, 82, "Безопасност и здраве", "Safety and Health", kStoyanova, 20},
    {9001, 91, "Ремонтна работилница", "Repair Workshop", kMarinov, 45},
    {9101, 92, "Сграден фонд", "Buildings", kKolev, 20},
    {10001, 101, "Конструкторски отдел", "Design Office", kMarinov, 15},
    {10101, 102, "Прототипна работилница", "Prototype Workshop", kKolev, 20},
    {11001, 111, "Енергоцех", "Power Plant", kDimitrov, 15},
    {11101, 112, "Пречиствателна станция", "Water Treatment", kDimitrov, 15},
    {12001, 121, "Правен отдел", "Legal Office", kGeorgieva, 5},
};

}  // namespace

std::span<const DemoDepartment> DemoDepartments() {
  return kDepartments;
}

std::span<const DemoSection> DemoSections() {
  return kSections;
}

std::span<const DemoCostCenter> DemoCostCenters() {
  return kCostCenters;
}

const DemoSection& DemoSectionOf(const DemoCostCenter& center) {
  const DemoSection* found = kSections;
  while (found->code != center.section)
    ++found;
  return *found;
}

std::int64_t DemoHead(const DemoCostCenter& center, int kind) {
  assert(kind >= 1 && kind <= 3);
  const DemoSection& section = DemoSectionOf(center);
  if (kind == 1) return center.chief;
  if (kind == 2) return section.chief;
  return kDepartments[section.department - 1].chiefsEmployee;
}

}  // namespace orvane::server
