#include "server/demo/demo_company.h"

#include <string>
#include <vector>

#include "contract/points.h"
#include "server/demo/demo_documents.h"
#include "server/demo/demo_people.h"
#include "server/demo/demo_world.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"
#include "server/sessions/user_admin.h"

namespace orvane::server {
namespace {

constexpr char kNameCompany[] =
    "update Company set Name = ?1, LanguageName = ?2, LanguageName2 = ?3, MultiLanguage = ?4, "
    "Demonstration = 1";
constexpr std::int64_t kSecondRecord = 1901;
constexpr char kDoing[] = "filling the demonstration";

Answer<Done> AddUsers(UserAdmin& admin) {
  for (const DemoPerson& person : DemoPeople()) {
    const std::string login(person.login);
    const auto added = admin.AddUser({login, std::string(person.name), std::string(person.name2),
                                      person.level, person.language, std::string(person.password)});
    if (!added) return added;
    const auto granted = admin.GrantEverywhere(login, person.rights);
    if (!granted) return granted;
    for (const Point point : {Point::Deliveries, Point::SupplierInvoices}) {
      if (!person.seesLittle) break;
      const auto taken = admin.Grant(login, static_cast<std::int32_t>(point), 0);
      if (!taken) return taken;
    }
    if (person.employee == 0) continue;
    const auto employed = admin.AddEmployee(
        {person.employee, std::string(person.name), std::string(person.name2), login});
    if (!employed) return employed;
  }
  return Done{};
}

EngineAnswer<Done> WriteRegisters(Database& database, const DemoWorld& world, bool twoLanguages) {
  auto transaction = database.Begin();
  if (!transaction) return transaction.GetFailure();
  const auto named = (*transaction)
                         ->Execute(Command(kNameCompany, {"„Орване Демо“ АД", "Български",
                                                          "English", twoLanguages ? 1 : 0}));
  if (!named) return named.GetFailure();
  DemoWriter writer;
  AddOrganisation(writer, world);
  AddPartners(writer, world);
  AddGoods(writer, world);
  if (const auto written = writer.Flush(**transaction); !written) return written;
  return (*transaction)->Commit();
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
  if (const auto added = AddUsers(admin); !added) return added.GetFailure();
  if (options.secondRecord) {
    const auto added = admin.AddEmployee(
        {kSecondRecord, "Десислава Стоянова", "Desislava Stoyanova", "stoyanova"});
    if (!added) return added.GetFailure();
  }
  const DemoWorld world = MakeDemoWorld(options.seed, options.nationalCurrency, options.settings);
  const auto written = WriteRegisters(database, world, options.twoLanguages);
  if (!written) return ToFailure(written.GetFailure(), kDoing);
  if (options.documents == 0) return Done{};
  const auto documents = WriteDocuments(database, world, {options.documents, options.progress});
  if (!documents) return ToFailure(documents.GetFailure(), kDoing);
  return Done{};
}

}  // namespace orvane::server
