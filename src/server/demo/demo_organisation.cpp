#include "server/demo/demo_world.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "contract/system.h"
#include "packet/date.h"
#include "server/demo/demo_levels.h"
#include "server/demo/demo_tables.h"
#include "server/demo/demo_units.h"

namespace orvane::server {
namespace {

struct Param {
  std::int32_t group;
  std::int32_t number;
  std::string_view value;
};
constexpr std::int32_t kNationalCurrency = 27;
constexpr Param kParams[] = {
    // Of the host: decimals of amounts, partner of the central bank, kind of the national currency,
    // decimals of sum masks, whether a material is counted in its own units only.
    {system::kHostGroup, 3, "2"},
    {system::kHostGroup, 26, "1"},
    {system::kHostGroup, kNationalCurrency, ""},
    {system::kHostGroup, 80, "2"},
    {system::kHostGroup, 283, "1"},
    {system::kModuleGroup, 1, "1"},      // cpCar
    {system::kModuleGroup, 2, "2"},      // cpBRM
    {system::kModuleGroup, 3, "3"},      // cpKindSupplyChoice: by list up to a date
    {system::kModuleGroup, 4, "1"},      // cpKindSupplyList
    {system::kModuleGroup, 5, "3"},      // cpWares
    {system::kModuleGroup, 6, "1"},      // cpKindDocInvBRM
    {system::kModuleGroup, 7, "2"},      // cpKindDocInvWares
    {system::kModuleGroup, 8, "30"},     // cpMaxTermOfPayment
    {system::kModuleGroup, 9, "5"},      // cpPOTolerance
    {system::kModuleGroup, 10, "6"},     // cpMixedKindSupp
    {system::kModuleGroup, 11, "1999"},  // cpServiceUser
    {system::kModuleGroup, 12, "4"},     // cpSuppServ
    {system::kModuleGroup, 13, "5"},     // cpSuppOtherMS
    {system::kModuleGroup, 14, "3"},     // cpKindDocOtherMS
    {system::kModuleGroup, 15, "1"},     // cpAlgoritmPrice: of the supply list
    {system::kModuleGroup, 16, "0"},     // cpLastNumIniEval
    {system::kModuleGroup, 17, "60"},    // cpMinPointsIniEval
    {system::kModuleGroup, 18, "70"},    // cpMinPointsPerEval
    {system::kModuleGroup, 19, "0"},     // cpLastNumPerEval
};

struct CodeNames {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
};
constexpr CodeNames kKinds[] = {
    {kCapital, "Капиталови разходи", "Capital Expenditure"},
    {kRawMaterials, "Основни суровини и материали (ОСМ)", "Raw Materials"},
    {kWares, "Стоки", "Goods for Resale"},
    {kPricedServices, "Услуги с цени", "Priced Services"},
    {kOtherMaterials, "Други материали", "Other Materials"},
    {kMixed, "Смесени", "Mixed"},
    {kServices, "Услуги", "Services"},
    {kEntertainment, "Представителни разходи", "Entertainment"},
    {kSubscriptions, "Абонаменти", "Subscriptions"},
    {kRepairs, "Ремонт и поддръжка", "Repairs and Maintenance"},
};

/// Opened lately: it has no place in the structure, no requesters and no documents yet.
constexpr DemoCostCenter kNewCostCenter{13001, 0, "Цех за зъбни колела", "Gear Shop", 1006, 0};

/// Units that have deputies: 1 cost centre, 2 section, 3 department.
struct Unit {
  std::int32_t number;
  std::int32_t type;
  std::int64_t code;
};
constexpr Unit kUnits[] = {{1, 1, 1001}, {2, 2, 11}, {3, 3, 1}, {4, 3, 3}, {5, 1, 3101}, {6, 3, 2}};

struct Day {
  int year = 0;  ///< 0: until further notice
  int month = 0;
  int day = 0;
};
struct Period {
  std::int32_t unit;
  Day from;
  Day to;
  std::int64_t deputy;
};
constexpr Period kPeriods[] = {
    {1, {2025, 7, 14}, {2025, 8, 1}, 1011},
    {1, {2026, 7, 13}, {2026, 7, 31}, 1011},
    {2, {2025, 8, 4}, {2025, 8, 22}, 1002},
    {2, {2026, 8, 3}, {2026, 8, 21}, 1002},
    {3, {2025, 8, 18}, {2025, 8, 29}, 1011},
    {3, {2026, 12, 21}, {2026, 12, 31}, 1011},
    {4, {2025, 12, 22}, {2026, 1, 9}, 1007},
    {4, {2026, 3, 2}, {2026, 3, 13}, 1007},
    {5, {2026, 1, 1}, {}, 1004},
    {6, {2025, 9, 1}, {2025, 9, 12}, 1005},
};

struct Financing {
  std::int32_t kindSection;
  std::int64_t employee;
};
constexpr Financing kFinancing[] = {{1, 1003}, {2, 1007}, {3, 1002}, {4, 1005}};

struct Plan {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
  std::string_view number;
  Day from;
  Day to;
  std::int64_t sum;  ///< whole national currency
};
constexpr Plan kPlans[] = {
    {2501,
     "Нови стругове за механичния цех",
     "New Lathes for the Machining Shop",
     "КР-25/01",
     {2025, 1, 1},
     {2025, 12, 31},
     420000},
    {2502,
     "Складова техника",
     "Warehouse Vehicles",
     "КР-25/02",
     {2025, 3, 1},
     {2025, 11, 30},
     160000},
    {2503,
     "Компресорна станция",
     "Compressor Station",
     "КР-25/03",
     {2025, 5, 1},
     {2026, 4, 30},
     95000},
    {2601,
     "Обработващ център 5 оси",
     "Five-axis Machining Centre",
     "КР-26/01",
     {2026, 1, 1},
     {2026, 9, 30},
     310000},
    {2602,
     "Работни станции за конструкторите",
     "Workstations for Designers",
     "КР-26/02",
     {2026, 1, 1},
     {2026, 12, 31},
     60000},
    {2603,
     "Електромотокари",
     "Electric Forklifts",
     "КР-26/03",
     {2026, 2, 1},
     {2026, 12, 31},
     140000},
};

Variant DayOrNull(const Day& day) {
  const auto date = Date::FromYmd(day.year, day.month, day.day);
  return date ? Variant(*date) : Variant();
}

void AddParams(DemoWriter& writer, const DemoWorld& world) {
  for (const Param& row : kParams) {
    if (row.group == system::kModuleGroup && !world.settings) continue;
    const bool national = row.group == system::kHostGroup && row.number == kNationalCurrency;
    writer.Add(demo::kParams,
               {row.group, row.number,
                national ? Variant(std::to_string(world.national)) : Variant(row.value)});
  }
}

void AddPeople(DemoWriter& writer, const DemoWorld& world) {
  for (const DemoEmployee& employee : world.employees) {
    if (!employee.login.empty()) continue;  // users have their records already
    writer.Add(demo::kEmployees, {employee.code, employee.name, employee.name2, Variant()});
  }
}

void AddUnits(DemoWriter& writer) {
  for (const DemoDepartment& row : DemoDepartments())
    writer.Add(demo::kDepartment, {row.code, row.name, row.name2, row.chief});
  for (const DemoSection& row : DemoSections())
    writer.Add(demo::kSections, {row.code, row.name, row.name2, row.chief});
  for (const DemoCostCenter& row : DemoCostCenters())
    writer.Add(demo::kCostCenters, {row.code, row.name, row.name2, row.chief});
  writer.Add(demo::kCostCenters, {kNewCostCenter.code, kNewCostCenter.name, kNewCostCenter.name2,
                                  kNewCostCenter.chief});
  for (const DemoCostCenter& row : DemoCostCenters()) {
    writer.Add(demo::kStructure, {row.code, DemoSectionOf(row).department, row.section});
  }
}

void AddDeputies(DemoWriter& writer) {
  for (const Unit& unit : kUnits) {
    const auto codeOf = [&](int type) {
      return unit.type == type ? Variant(unit.code) : Variant();
    };
    writer.Add(demo::kStructureDeputies, {unit.number, unit.type, codeOf(3), codeOf(2), codeOf(1)});
  }
  for (const Period& row : kPeriods)
    writer.Add(demo::kStructDepDates,
               {row.unit, DayOrNull(row.from), DayOrNull(row.to), row.deputy});
}

void AddLevels(DemoWriter& writer) {
  for (const DocumentKind document : {DocumentKind::SupplierOrder, DocumentKind::PurchaseRequest,
                                      DocumentKind::Delivery, DocumentKind::SupplierInvoice}) {
    const bool sums = document != DocumentKind::SupplierOrder;
    for (const CodeNames& kind : kKinds) {
      for (const DemoLevel& level : DemoLevels(document, kind.code)) {
        writer.Add(demo::kLevelsApproval,
                   {static_cast<int>(document), kind.code, level.level, Cents(level.fromSum * 100),
                    Cents(sums ? kMostApproved * 100 : 0), static_cast<int>(level.approver)});
      }
    }
  }
}

}  // namespace

std::int64_t DemoDeputy(const DemoCostCenter& center, int kind, Date day) {
  const std::int64_t codes[] = {center.code, center.section, DemoSectionOf(center).department};
  for (const Unit& unit : kUnits) {
    if (unit.type != kind || unit.code != codes[kind - 1]) continue;
    for (const Period& row : kPeriods) {
      const auto from = Date::FromYmd(row.from.year, row.from.month, row.from.day);
      const auto to = Date::FromYmd(row.to.year, row.to.month, row.to.day);
      if (row.unit == unit.number && *from <= day && (!to || day <= *to)) return row.deputy;
    }
  }
  return 0;
}

void AddOrganisation(DemoWriter& writer, const DemoWorld& world) {
  AddParams(writer, world);
  AddPeople(writer, world);
  AddUnits(writer);
  AddDeputies(writer);
  for (const DemoNotifier& row : world.notifiers)
    writer.Add(demo::kAdmissibleNotifiers, {row.costCenter, row.employee});
  for (const CodeNames& row : kKinds)
    writer.Add(demo::kKindSupplies, {row.code, row.name, row.name2});
  AddLevels(writer);
  for (const Financing& row : kFinancing)
    writer.Add(demo::kEmployeesFinSupp, {row.kindSection, row.employee});
  for (const Plan& row : kPlans) {
    writer.Add(demo::kCapExPlan, {row.code, row.name, row.name2, row.number, DayOrNull(row.from),
                                  DayOrNull(row.to), Cents(row.sum * 100)});
  }
}

}  // namespace orvane::server
