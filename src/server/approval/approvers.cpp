#include "server/approval/approvers.h"

#include <algorithm>

#include "packet/fold.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr std::string_view kPlaces =
    "select c.CostCenter, c.Name, c.Chief, s.Section, x.Name, x.Chief, s.Department, d.Name,"
    " d.Chief, case when s.CostCenter is null then 0 else 1 end"
    " from CostCenters c left join Structure s on s.CostCenter = c.CostCenter"
    " left join Sections x on x.Section = s.Section"
    " left join Department d on d.Code = s.Department where c.CostCenter = {cc}";

/// A person can decide when one employee record, and no other, has a login that is not blocked.
constexpr std::string_view kPerson =
    "e.Employee, {name}, e.Login, case when u.ShortName is not null and u.Blocked = 0 and not "
    "exists"
    " (select 1 from Employees o where o.Login = e.Login and o.Employee <> e.Employee)"
    " then 1 else 0 end";
constexpr std::string_view kLogins = " left join WSysUsers u on u.ShortName = e.Login";

constexpr std::string_view kPeople =
    "select 1, 0, {person} from CostCenters c join Employees e on e.Employee = c.Chief{logins}"
    " where c.CostCenter = {cc}"
    " union all select 2, 0, {person} from Structure s join Sections x on x.Section = s.Section"
    " join Employees e on e.Employee = x.Chief{logins} where s.CostCenter = {cc}"
    " union all select 3, 0, {person} from Structure s join Department d on d.Code = s.Department"
    " join Employees e on e.Login = d.Chief{logins} where s.CostCenter = {cc}"
    " union all select t.StructuralUnitType, 1, {person} from StructureDeputies t"
    " join StructDepDates p on p.StructDepId = t.IdNumber and p.FromDate <= :Today"
    " and (p.ToDate is null or p.ToDate >= :Today)"
    " join Employees e on e.Employee = p.Deputy{logins}"
    " where (t.StructuralUnitType = 1 and t.CostCenter = {cc})"
    " or (t.StructuralUnitType = 2 and t.Section in"
    " (select s.Section from Structure s where s.CostCenter = {cc}))"
    " or (t.StructuralUnitType = 3 and t.Department in"
    " (select s.Department from Structure s where s.CostCenter = {cc}))"
    " order by 1, 2, 3";

std::string PeopleOf(std::string_view costCenter, std::string_view name) {
  std::string written = Replaced(kPeople, "{person}", kPerson);
  written = Replaced(written, "{name}", name);
  written = Replaced(written, "{logins}", kLogins);
  return Replaced(written, "{cc}", costCenter);
}

std::string Quoted(const Variant& name) {
  return "„" + name.ToText() + "“";
}

std::string NoLoginOf(const std::string& unit) {
  return "Началникът на " + unit +
         " няма точно един запис в „Служители“ с потребител, който не е блокиран.";
}

/// What an expected approver lacks, told by the register where it is to be mended.
std::string GapOf(ApproverKind kind, const DataPacket& places, bool known) {
  if (places.rowCount == 0) return "Центърът за разход на документа не съществува.";
  const std::string center = "център за разход " + places.At(0, "CostCenter").ToText() + " " +
                             Quoted(places.At(0, "CostCenterName"));
  const bool placed = places.At(0, "Placed").AsBool().value_or(false);
  if (kind == ApproverKind::CostCenterHead) {
    if (places.At(0, "CostCenterChief").IsNull()) {
      return "В „Центрове за разходи“ няма началник на " + center + ".";
    }
    return NoLoginOf(center);
  }
  if (!placed) return "В „Организационна структура“ няма ред за " + center + ".";
  const bool section = kind == ApproverKind::SectionHead;
  const Variant unit = places.At(0, section ? "Section" : "Department");
  if (unit.IsNull()) {
    return "В „Организационна структура“ не е посочен" +
           std::string(section ? " отдел" : "а дирекция") + " за " + center + ".";
  }
  const std::string name = (section ? "отдел " : "дирекция ") + unit.ToText() + " " +
                           Quoted(places.At(0, section ? "SectionName" : "DepartmentName"));
  if (section && places.At(0, "SectionChief").IsNull()) {
    return "В „Отдели“ няма началник на " + name + ".";
  }
  if (!section && !known) {
    return "Началникът на " + name + ", потребител " + Quoted(places.At(0, "DepartmentChief")) +
           ", няма запис в таблица „Служители“.";
  }
  return NoLoginOf(name);
}

}  // namespace

bool FoundApprovers::Has(std::int64_t employee) const {
  return std::any_of(approvers.begin(), approvers.end(),
                     [&](const Approver& approver) { return approver.employee == employee; });
}

bool FoundApprovers::HasOther(const DocumentOwners& owners) const {
  return std::any_of(approvers.begin(), approvers.end(),
                     [&](const Approver& approver) { return !owners.Has(approver); });
}

std::string FoundApprovers::Names(const DocumentOwners* mayNotDecide, std::size_t most) const {
  std::string names;
  for (const Approver& approver : approvers) {
    if (mayNotDecide && mayNotDecide->Has(approver)) continue;
    const std::string next = (names.empty() ? "" : ", ") + approver.name;
    if (Utf8Length(names) + Utf8Length(next) >= most) return names + "…";
    names += next;
  }
  return names;
}

std::vector<Statement> SelectApprovers(std::string_view costCenter, const NamedValues& params,
                                       Date today, std::string_view name) {
  NamedValues values = params;
  values.push_back({"Today", today});
  return {Named(Replaced(kPlaces, "{cc}", costCenter), values,
                {{"CostCenter", ValueKind::Code, 0},
                 {"CostCenterName", ValueKind::String, 0},
                 {"CostCenterChief", ValueKind::Code, 0},
                 {"Section", ValueKind::Code, 0},
                 {"SectionName", ValueKind::String, 0},
                 {"SectionChief", ValueKind::Code, 0},
                 {"Department", ValueKind::Int16, 0},
                 {"DepartmentName", ValueKind::String, 0},
                 {"DepartmentChief", ValueKind::String, 0},
                 {"Placed", ValueKind::Bool, 0}}),
          Named(PeopleOf(costCenter, name), values,
                {{"Kind", ValueKind::Byte, 0},
                 {"Deputy", ValueKind::Bool, 0},
                 {"Employee", ValueKind::Code, 0},
                 {"Name", ValueKind::String, 0},
                 {"Login", ValueKind::String, 0},
                 {"Usable", ValueKind::Bool, 0}})};
}

ApproversOfCostCenter ReadApprovers(const DataPacket& places, const DataPacket& people) {
  ApproversOfCostCenter all;
  std::array<bool, 3> known{};
  for (std::size_t row = 0; row < people.rowCount; ++row) {
    const auto kind = static_cast<std::size_t>(people.At(row, "Kind").AsInt().value_or(1)) - 1;
    const std::int64_t employee = people.At(row, "Employee").AsInt().value_or(0);
    const bool deputy = people.At(row, "Deputy").AsBool().value_or(false);
    FoundApprovers& found = all.kinds.at(kind);
    if (!deputy) found.head = employee;
    known.at(kind) = known.at(kind) || !deputy;
    if (!people.At(row, "Usable").AsBool().value_or(false) || found.Has(employee)) continue;
    found.approvers.push_back(
        {employee, people.At(row, "Name").ToText(), deputy, people.At(row, "Login").ToText()});
  }
  for (std::size_t i = 0; i < all.kinds.size(); ++i) {
    if (!all.kinds[i].approvers.empty()) continue;
    all.kinds[i].gap = GapOf(static_cast<ApproverKind>(i + 1), places, known[i]);
  }
  return all;
}

}  // namespace orvane::server
