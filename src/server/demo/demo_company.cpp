#include "server/demo/demo_company.h"

#include <string>
#include <vector>

#include "contract/system.h"
#include "packet/fold.h"
#include "server/demo/demo_people.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"
#include "server/sessions/user_admin.h"

namespace orvane {
namespace {

struct DemoDepartment {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
  std::string_view chief;
};
constexpr DemoDepartment kDepartments[] = {
    {1, "Производство", "Production", "petrov"},
    {2, "Финанси", "Finance", "georgieva"},
    {3, "Логистика", "Logistics", "dimitrov"},
    {4, "Качество", "Quality", "stoyanova"},
    {5, "Продажби", "Sales", "georgieva"},
    {6, "Маркетинг", "Marketing", "georgieva"},
    {7, "Информационни технологии", "Information Technology", "dimitrov"},
    {8, "Човешки ресурси", "Human Resources", "stoyanova"},
    {9, "Техническа поддръжка", "Maintenance", "petrov"},
    {10, "Развойна дейност", "Research and Development", "petrov"},
    {11, "Енергетика и опазване на околната среда", "Energy and Environment", "dimitrov"},
    {12, "Правна дейност", "Legal", "georgieva"},
};

struct DemoParam {
  std::int32_t number;
  std::string_view value;
};
/// Of the host's group: decimals of amounts, partner of the central bank, kind of the national
/// currency, decimals of sum masks, whether a stock row uses only its item's own units.
constexpr DemoParam kHostParams[] = {{3, "2"}, {26, "1"}, {27, "1"}, {80, "2"}, {283, "1"}};

constexpr char kNameCompany[] =
    "update Company set Name = ?1, LanguageName = ?2, LanguageName2 = ?3, MultiLanguage = 1, "
    "Demonstration = 1";
constexpr char kAddDepartment[] =
    "insert into Department (Code, Name, Name2, FoldName, FoldName2, Chief) "
    "values (?1, ?2, ?3, ?4, ?5, ?6)";
constexpr char kAddParam[] = "insert into Params (ParamGroup, Number, Value) values (?1, ?2, ?3)";

Answer<Done> AddPeople(UserAdmin& admin) {
  for (const DemoPerson& person : DemoPeople()) {
    const std::string login(person.login);
    const auto added = admin.AddUser({login, std::string(person.name), std::string(person.name2),
                                      person.level, person.language, std::string(person.password)});
    if (!added) return added;
    const auto granted = admin.GrantEverywhere(login, person.rights);
    if (!granted) return granted;
    if (person.employee == 0) continue;
    const auto employed = admin.AddEmployee(
        {person.employee, std::string(person.name), std::string(person.name2), login});
    if (!employed) return employed;
  }
  return Done{};
}

std::vector<Statement> CompanyStatements() {
  std::vector<Statement> statements = {
      Command(kNameCompany, {"„Орване Демо“ АД", "Български", "English"})};
  for (const DemoDepartment& row : kDepartments) {
    statements.push_back(Command(kAddDepartment, {row.code, row.name, row.name2, Fold(row.name),
                                                  Fold(row.name2), row.chief}));
  }
  for (const DemoParam& row : kHostParams) {
    statements.push_back(Command(kAddParam, {system::kHostGroup, row.number, row.value}));
  }
  return statements;
}

}  // namespace

Answer<Done> MakeDemoCompany(Database& database, const Clock& clock, const DemoOptions& options) {
  const Statement users =
      Select("select count(*) from WSysUsers", {}, {{"Users", ValueKind::Code, 0}});
  const auto present = database.ReadSnapshot({&users, 1});
  if (!present) return ToFailure(present.GetFailure(), "looking for users");
  if (present->front().At(0, "Users").AsInt().value_or(0) > 0) {
    return Refused("Базата вече съдържа потребители. Демонстрацията иска празна база.");
  }
  UserAdmin admin(database, clock, options.passwordCost);
  if (const auto added = AddPeople(admin); !added) return added.GetFailure();

  auto transaction = database.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "filling the demonstration");
  const auto written = (*transaction)->ExecuteAll(CompanyStatements());
  if (!written) return ToFailure(written.GetFailure(), "filling the demonstration");
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "filling the demonstration");
  return Done{};
}

}  // namespace orvane
