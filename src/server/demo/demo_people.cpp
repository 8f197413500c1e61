#include "server/demo/demo_people.h"

#include "server/demo/demo_users.h"

namespace orvane::server {
namespace {

constexpr DemoPerson kPeople[] = {
    {"admin", "Администратор", "Administrator", "admin2026", 0, 1, 15, 0,
     "администратор, вижда всичко"},
    {"ivanova", "Мария Иванова", "Maria Ivanova", "ivanova2026", 3, 1, 15, 1001,
     "заявител, отдел „Снабдяване“"},
    {"petrov", "Георги Петров", "Georgi Petrov", "petrov2026", 3, 1, 15, 1002,
     "началник на дирекция „Производство“"},
    {"georgieva", "Елена Георгиева", "Elena Georgieva", "georgieva2026", 3, 1, 15, 1003,
     "началник на дирекция „Финанси“"},
    {"dimitrov", "Николай Димитров", "Nikolay Dimitrov", "dimitrov2026", 3, 1, 15, 1004,
     "началник на дирекция „Логистика“"},
    {"stoyanova", "Десислава Стоянова", "Desislava Stoyanova", "stoyanova2026", 3, 1, 15, 1005,
     "началник на дирекция „Качество“"},
    {"kolev", "Христо Колев", "Hristo Kolev", "kolev2026", 3, 1, 15, 1006,
     "началник на цех „Механичен“"},
    {"todorova", "Ивелина Тодорова", "Ivelina Todorova", "todorova2026", 3, 1, 15, 1007,
     "снабдител"},
    {"angelov", "Петър Ангелов", "Petar Angelov", "angelov2026", 3, 1, 15, 1008,
     "складов отговорник"},
    {"smith", "Джон Смит", "John Smith", "smith2026", 3, 2, 15, 1009,
     "контролер, работи на английски"},
    {"vasilev", "Стефан Василев", "Stefan Vasilev", "vasilev2026", 3, 1, 1, 1010,
     "одитор, само чете"},
    {"marinov", "Красимир Маринов", "Krasimir Marinov", "marinov2026", 3, 1, 15, 1011,
     "началник на отдел „Производствени цехове“"},
    {"dobreva", "Лиляна Добрева", "Lilyana Dobreva", "dobreva2026", 3, 1, 15, 1012,
     "заявител, вижда само своите документи", true},
    {"nenkov", "Пламен Ненков", "Plamen Nenkov", "nenkov2026", 3, 1, 15, 0,
     "новопостъпил, още няма запис в „Служители“"},
};

}  // namespace

std::span<const DemoPerson> DemoPeople() {
  return kPeople;
}

std::vector<DemonstrationUser> DemonstrationUsers() {
  std::vector<DemonstrationUser> users;
  for (const DemoPerson& person : kPeople) {
    users.push_back({std::string(person.login), std::string(person.password),
                     std::string(person.name) + ", " + std::string(person.occupation)});
  }
  return users;
}

}  // namespace orvane::server
