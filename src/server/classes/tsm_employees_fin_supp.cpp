#include "contract/employees_fin_supp.h"
#include "server/classes/server_classes.h"
#include "server/providers/work.h"
#include "server/sessions/statements.h"

namespace orvane::server {

using namespace employees_fin_supp;

namespace {

constexpr char kSelect[] =
    "select f.KindSection, f.Employee,"
    " case when :LNG = 2 then coalesce(e.Name2, e.Name) else e.Name end, f.KindSection"
    " from EmployeesFinSupp f join Employees e on e.Employee = f.Employee"
    " order by f.KindSection, f.Employee";

constexpr std::string_view kPair[] = {"KindSection", "Employee"};
constexpr UniqueRule kUnique[] = {
    {kPair,
     "Служител {Employee} вече финансира доставки за вид отдел {KindSection}. Изберете друг "
     "служител "
     "или друг вид отдел."},
};
constexpr ReferenceRule kReferences[] = {
    {"Employee", "Employees", "Employee", "Няма служител {Employee}. Изберете друг служител."},
};

constexpr char kKindExists[] =
    "select count(*) from NomIn where Nomenclature = ?1 and Element = ?2";

/// Nomenclatures are no table that the engine guards; and the copy of the kind goes back with it.
Answer<Done, Setback> BeforeWrite(WriteContext& context, std::span<PreparedChange> changes) {
  for (PreparedChange& prepared : changes) {
    const Variant* kind = FindValue(prepared.change.after, KindSection.name);
    if (!kind) continue;
    const auto found = context.transaction.Query(
        Select(kKindExists, {kKindsOfSection, *kind}, {{"Found", ValueKind::Code, 0}}));
    if (!found) return ToSetback(found.GetFailure(), "looking for a kind of department");
    if (found->At(0, "Found").AsInt() == 0) {
      return Setback{Refused("Няма вид отдел " + kind->ToText() + ". Изберете друг вид отдел."),
                     false};
    }
    prepared.filled.push_back({std::string(LocateKindSection.name), *kind});
  }
  return Done{};
}

}  // namespace

ServerClass TsmEmployeesFinSupp() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::EmployeesFinSupp})
      .Provider(dspEmployeesFinSupp, kSelect,
                {.unique = kUnique, .references = kReferences, .beforeWrite = &BeforeWrite}, {LNG});
}

}  // namespace orvane::server
