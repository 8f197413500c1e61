#include <optional>
#include <string>

#include "contract/structure_deputies.h"
#include "server/classes/server_classes.h"
#include "server/providers/row_lock.h"
#include "server/providers/work.h"
#include "server/sessions/statements.h"

namespace orvane::server {

using namespace structure_deputies;

namespace {

constexpr char kSelectUnits[] =
    "select u.IdNumber, u.StructuralUnitType, u.Department,"
    " case when :LNG = 2 then coalesce(d.Name2, d.Name) else d.Name end,"
    " u.Section,"
    " case when :LNG = 2 then coalesce(x.Name2, x.Name) else x.Name end,"
    " u.CostCenter,"
    " case when :LNG = 2 then coalesce(c.Name2, c.Name) else c.Name end"
    " from StructureDeputies u left join Department d on d.Code = u.Department"
    " left join Sections x on x.Section = u.Section"
    " left join CostCenters c on c.CostCenter = u.CostCenter"
    " order by u.StructuralUnitType, u.IdNumber";
constexpr char kSelectPeriods[] =
    "select p.StructDepId, p.FromDate, p.ToDate, p.Deputy,"
    " case when :LNG = 2 then coalesce(e.Name2, e.Name) else e.Name end"
    " from StructDepDates p join Employees e on e.Employee = p.Deputy"
    " where p.StructDepId = :IdNumber order by p.FromDate";
constexpr char kSelectMaxId[] = "select coalesce(max(IdNumber), 0) from StructureDeputies";

constexpr std::string_view kIdNumber[] = {"IdNumber"};
constexpr UniqueRule kUniqueUnits[] = {
    {kIdNumber,
     "Номер {IdNumber} междувременно е даден на друга структурна единица. Запишете реда още "
     "веднъж, "
     "той ще получи следващия свободен номер."},
};
constexpr ReferenceRule kUnitReferences[] = {
    {"CostCenter", "CostCenters", "CostCenter",
     "Няма център на разход {CostCenter}. Изберете друг център на разход."},
    {"Department", "Department", "Code", "Няма дирекция {Department}. Изберете друга дирекция."},
    {"Section", "Sections", "Section", "Няма отдел {Section}. Изберете друг отдел."},
};
constexpr UsedByRule kPeriodsOfUnit[] = {
    {"IdNumber", "StructDepDates", "StructDepId",
     "Структурната единица има въведени периоди на заместване, първият от {used}. Изтрийте първо "
     "периодите.",
     "FromDate", ValueKind::Date},
};

constexpr std::string_view kPeriodKey[] = {"StructDepId", "FromDate"};
constexpr UniqueRule kUniquePeriods[] = {
    {kPeriodKey,
     "Структурната единица вече има период от {FromDate}. Изберете друга начална дата."},
};
constexpr ReferenceRule kPeriodReferences[] = {
    {"StructDepId", "StructureDeputies", "IdNumber",
     "Структурната единица междувременно е изтрита. Изберете друга единица."},
    {"Deputy", "Employees", "Employee", "Няма служител {Deputy}. Изберете друг заместник."},
};

Answer<Done, Setback> Refuse(std::string sentence) {
  return Setback{Refused(std::move(sentence)), false};
}

/// The value in the row after the change, else as it was before; Null when the change tells
/// neither.
Variant ValueOf(const Change& change, const FieldDef& field) {
  if (const Variant* value = FindValue(change.after, field.name)) return *value;
  const Variant* value = FindValue(change.before, field.name);
  return value ? *value : Variant();
}

// --- units --------------------------------------------------------------------------------------

/// The type is known; and whoever makes a unit of the same cost centre, section or department
/// waits.
Answer<Done, Setback> BeforeUnits(WriteContext& context, std::span<PreparedChange> changes) {
  for (const PreparedChange& prepared : changes) {
    const Variant* type = FindValue(prepared.change.after, StructuralUnitType.name);
    if (type && FindUnitType(type->AsInt().value_or(0)) == nullptr)
      return Refuse("Няма тип структурна единица " + type->ToText() + ". Изберете друг тип.");
    for (const UnitType& row : kUnitTypes) {
      const Variant* code = FindValue(prepared.change.after, row.code.name);
      if (!code) continue;
      const auto locked = LockRow(context, row.table, row.tableCode, *code);
      if (!locked) return locked;
    }
  }
  return Done{};
}

constexpr char kUnit[] =
    "select StructuralUnitType, CostCenter, Section, Department from StructureDeputies"
    " where IdNumber = ?1";
constexpr char kSameUnit[] =
    "select min(IdNumber) from StructureDeputies where IdNumber <> ?1 and StructuralUnitType = ?2"
    " and case ?2 when 1 then CostCenter when 2 then Section else Department end = ?3";

/// Why a unit may not stand as its row has it; empty when it may. `row` answers kUnit.
std::optional<std::string> WhyUnitRefused(const UnitType& type, const DataPacket& row) {
  const std::string name(type.name);
  if (row.At(0, type.code.name).IsNull())
    return "Изберете код на " + name + " за структурната единица.";
  for (const UnitType& other : kUnitTypes) {
    if (other.type == type.type || row.At(0, other.code.name).IsNull()) continue;
    return "Структурна единица от тип " + name + " има само код на " + name +
           ". Изчистете кода на " + std::string(other.name) + ".";
  }
  return std::nullopt;
}

Answer<Done, Setback> CheckUnit(WriteContext& context, const Variant& id) {
  const auto row =
      context.transaction.Query(Select(kUnit, {id},
                                       {{std::string(StructuralUnitType.name), ValueKind::Byte, 0},
                                        {std::string(CostCenter.name), ValueKind::Code, 0},
                                        {std::string(Section.name), ValueKind::Code, 0},
                                        {std::string(Department.name), ValueKind::Int16, 0}}));
  if (!row) return ToSetback(row.GetFailure(), "reading a structural unit");
  if (row->rowCount == 0) return Done{};
  const Variant type = row->At(0, StructuralUnitType.name);
  const UnitType& known = *FindUnitType(type.AsInt().value_or(0));
  if (auto why = WhyUnitRefused(known, *row)) return Refuse(*std::move(why));
  const Variant code = row->At(0, known.code.name);
  const auto same = context.transaction.Query(
      Select(kSameUnit, {id, type, code}, {{"IdNumber", ValueKind::Int32, 0}}));
  if (!same) return ToSetback(same.GetFailure(), "looking for the same structural unit");
  if (same->At(0, "IdNumber").IsNull()) return Done{};
  return Refuse("За " + std::string(known.name) + " " + code.ToText() +
                " вече има структурна единица. Добавете периодите към нея.");
}

Answer<Done, Setback> CheckUnits(WriteContext& context, std::span<PreparedChange> changes) {
  for (const PreparedChange& prepared : changes) {
    if (prepared.change.kind == ChangeKind::Delete) continue;
    auto checked = CheckUnit(context, ValueOf(prepared.change, IdNumber));
    if (!checked) return checked;
  }
  return Done{};
}

// --- periods ------------------------------------------------------------------------------------

/// Two users who add periods of one unit at once see each other's.
Answer<Done, Setback> LockUnitsOfPeriods(WriteContext& context, std::span<PreparedChange> changes) {
  for (const PreparedChange& prepared : changes) {
    const auto locked = LockRow(context, "StructureDeputies", "IdNumber",
                                ValueOf(prepared.change, period::StructDepId));
    if (!locked) return locked;
  }
  return Done{};
}

constexpr char kReversed[] =
    "select FromDate, ToDate from StructDepDates where StructDepId = ?1 and ToDate < FromDate"
    " order by FromDate limit 1";
/// Days are whole: a period that begins on the day another ends shares that day with it.
constexpr char kOverlapping[] =
    "select a.FromDate, a.ToDate, b.FromDate, b.ToDate from StructDepDates a join StructDepDates b"
    " on b.StructDepId = a.StructDepId and b.FromDate > a.FromDate"
    " and (a.ToDate is null or b.FromDate <= a.ToDate)"
    " where a.StructDepId = ?1 order by a.FromDate, b.FromDate limit 1";

std::string PeriodText(const Variant& from, const Variant& to) {
  return "от " + from.ToText() + (to.IsNull() ? std::string(" нататък") : " до " + to.ToText());
}

Answer<Done, Setback> CheckPeriodsOf(WriteContext& context, const Variant& unit) {
  const Statement checks[] = {
      Select(kReversed, {unit}, {{"FromDate", ValueKind::Date, 0}, {"ToDate", ValueKind::Date, 0}}),
      Select(kOverlapping, {unit},
             {{"FromDate", ValueKind::Date, 0},
              {"ToDate", ValueKind::Date, 0},
              {"NextFrom", ValueKind::Date, 0},
              {"NextTo", ValueKind::Date, 0}})};
  const auto found = context.transaction.QueryAll(checks);
  if (!found) return ToSetback(found.GetFailure(), "checking the periods of a unit");
  const DataPacket& reversed = (*found)[0];
  if (reversed.rowCount > 0) {
    return Refuse("Крайната дата " + reversed.At(0, "ToDate").ToText() +
                  " е преди началната дата " + reversed.At(0, "FromDate").ToText() +
                  ". Поправете периода.");
  }
  const DataPacket& overlapping = (*found)[1];
  if (overlapping.rowCount == 0) return Done{};
  return Refuse("Периодите " +
                PeriodText(overlapping.At(0, "FromDate"), overlapping.At(0, "ToDate")) + " и " +
                PeriodText(overlapping.At(0, "NextFrom"), overlapping.At(0, "NextTo")) +
                " на една структурна единица се застъпват. Променете датите.");
}

Answer<Done, Setback> CheckPeriods(WriteContext& context, std::span<PreparedChange> changes) {
  for (const PreparedChange& prepared : changes) {
    if (prepared.change.kind == ChangeKind::Delete) continue;
    auto checked = CheckPeriodsOf(context, ValueOf(prepared.change, period::StructDepId));
    if (!checked) return checked;
  }
  return Done{};
}

}  // namespace

ServerClass TsmStructureDeputies() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::StructureDeputies, Point::Structure, Point::AdmissibleNotifiers})
      .Provider(dspStructureDeputies, kSelectUnits,
                {.unique = kUniqueUnits,
                 .references = kUnitReferences,
                 .usedBy = kPeriodsOfUnit,
                 .beforeWrite = &BeforeUnits,
                 .afterWrite = &CheckUnits},
                {LNG})
      .Provider(dspStructDepDates, kSelectPeriods,
                {.unique = kUniquePeriods,
                 .references = kPeriodReferences,
                 .beforeWrite = &LockUnitsOfPeriods,
                 .afterWrite = &CheckPeriods},
                {LNG, IdNumber})
      .ReadOnly(dspStructDeptMaxId, kSelectMaxId);
}

}  // namespace orvane::server
