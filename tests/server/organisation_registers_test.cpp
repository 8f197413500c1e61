// The registers of the organisation at the edges of their rules: the structure, its deputies, the
// employees who finance supplies and the admissible requesters.

#include <thread>

#include "contract/admissible_notifiers.h"
#include "contract/employees_fin_supp.h"
#include "contract/structure.h"
#include "contract/structure_deputies.h"
#include "server/server_case.h"

namespace orvane::server {
namespace {

struct Register {
  std::string_view serverClass;
  std::string_view provider;
  Point point;
};
constexpr Register kStructure{structure::kServerClass, "dspStructure", Point::Structure};
constexpr Register kUnits{structure_deputies::kServerClass, "dspStructureDeputies",
                          Point::StructureDeputies};
constexpr Register kPeriods{structure_deputies::kServerClass, "dspStructDepDates",
                            Point::StructureDeputies};
constexpr Register kFinancing{employees_fin_supp::kServerClass, "dspEmployeesFinSupp",
                              Point::EmployeesFinSupp};
constexpr Register kNotifiers{admissible_notifiers::kServerClass, "dspAdmissibleNotifiers",
                              Point::AdmissibleNotifiers};

/// One change and what the server says to it; "" is nothing.
struct Step {
  const Register& where;
  Change change;
  const char* refusal;
};

Variant DayOf(int day, int month = 3) {
  return *Date::FromYmd(2026, month, day);
}

NamedValues Unit(int id, int type, const Variant& costCenter, const Variant& section,
                 const Variant& department) {
  return {{"IdNumber", id},
          {"StructuralUnitType", type},
          {"Department", department},
          {"Section", section},
          {"CostCenter", costCenter}};
}

NamedValues Period(int unit, const Variant& from, const Variant& to, int deputy = 100) {
  return {{"StructDepId", unit}, {"FromDate", from}, {"ToDate", to}, {"Deputy", deputy}};
}

class OrganisationRegisters : public ServerCase {
 protected:
  OrganisationRegisters() : server(GetParam()) {
    server.AddUser("ivanova");  // employee 100
    server.AddUser("petrov");   // employee 101
    server.UseTwoLanguages();
    for (const char* statement :
         {"insert into Department (Code, Name, Name2, FoldName, FoldName2, Chief) values"
          " (1, 'Производство', 'Production', 'п', 'p', 'petrov'), (2, 'Финанси', null, 'ф', null,"
          " 'petrov')",
          "insert into Sections (Section, Name, FoldName) values (11, 'Цехове', 'ц'),"
          " (12, 'Монтаж', 'м')",
          "insert into CostCenters (CostCenter, Name, FoldName) values (1001, 'Механичен', 'м'),"
          " (1002, 'Заваръчен', 'з')"})
      server.Execute({statement, {}, {}});
    ivanova = server.LogIn("ivanova");
    petrov = server.LogIn("petrov");
  }

  Answer<ApplyAnswer> Apply(const Register& where, const Change& change,
                            const TestSession* as = nullptr) {
    const TestSession& who = as ? *as : ivanova;
    return server->Apply(
        who.At(where.point),
        {std::string(where.serverClass), std::string(where.provider), -1, {}, {change}});
  }
  std::string Refusal(const Register& where, const Change& change) {
    const auto answer = Apply(where, change);
    if (!answer) return answer.GetFailure().message;
    const auto& failure = answer->outcomes.front().failure;
    if (!failure) return "";
    EXPECT_EQ(Outcome(&*failure), "Refused") << failure->message;
    constexpr std::string_view kMark = "!!Err_";
    EXPECT_TRUE(failure->message.starts_with(kMark)) << failure->message;
    return failure->message.substr(kMark.size());
  }
  void Check(const std::vector<Step>& steps) {
    int number = 0;
    for (const Step& step : steps)
      EXPECT_EQ(Refusal(step.where, step.change), step.refusal) << "step " << ++number;
  }
  /// Rows as "a|b|c; …".
  std::string Rows(const Register& where, NamedValues params, Point point) {
    FetchRequest request;
    request.serverClass = where.serverClass;
    request.provider = where.provider;
    request.params = std::move(params);
    const auto answer = server->Fetch(ivanova.At(point), {request});
    if (!answer) return Outcome(answer);
    const DataPacket& packet = answer->front();
    std::string text;
    for (std::size_t row = 0; row < packet.rowCount; ++row) {
      if (row > 0) text += "; ";
      for (std::size_t column = 0; column < packet.columns.size(); ++column) {
        if (column > 0) text += '|';
        text += packet.At(row, column).ToText();
      }
    }
    return text;
  }

  TestServer server;
  TestSession ivanova;
  TestSession petrov;
};
INSTANTIATE_TEST_SUITE_P(Engines, OrganisationRegisters, testing::ValuesIn(TestEngines()),
                         TestEngineName);

TEST_P(OrganisationRegisters, StructureHoldsEveryCostCentreOnceAndNamesItsUnits) {
  const auto row = [](const Variant& center, const Variant& department, const Variant& section) {
    return InsertOf({{"CostCenter", center}, {"Department", department}, {"Section", section}});
  };
  Check({
      {kStructure, row(1001, 1, 11), ""},
      {kStructure, row(1002, 2, {}), ""},
      {kStructure, row(1001, 2, 12),
       "Център на разход 1001 вече е в организационната структура. Променете неговия ред."},
      {kStructure, row(1009, 1, 11), "Няма център на разход 1009. Изберете друг център на разход."},
      {kStructure, row({}, 1, 11), "Попълнете стойност в поле „Център на разход - Код“."},
      {kStructure, UpdateOf({{"CostCenter", 1002}, {"Department", 2}}, {{"Department", 7}}),
       "Няма дирекция 7. Изберете друга дирекция."},
      {kStructure, UpdateOf({{"CostCenter", 1002}, {"Section", {}}}, {{"Section", 99}}),
       "Няма отдел 99. Изберете друг отдел."},
      {kStructure, UpdateOf({{"CostCenter", 1002}}, {{"CostCenter", 1001}}),
       "Център на разход 1001 вече е в организационната структура. Променете неговия ред."},
  });
  EXPECT_EQ(Rows(kStructure, {{"LNG", 1}}, Point::Structure),
            "1001|Механичен|1|Производство|11|Цехове; 1002|Заваръчен|2|Финанси||");
  EXPECT_EQ(Rows(kStructure, {{"LNG", 2}}, Point::Structure),
            "1001|Механичен|1|Production|11|Цехове; 1002|Заваръчен|2|Финанси||");
}

TEST_P(OrganisationRegisters, AUnitHasTheCodeOfItsTypeAndStandsOnce) {
  Check({
      {kUnits, InsertOf(Unit(1, 1, 1001, {}, {})), ""},
      {kUnits, InsertOf(Unit(2, 2, {}, 11, {})), ""},
      {kUnits, InsertOf(Unit(3, 3, {}, {}, 1)), ""},
      {kUnits, InsertOf(Unit(4, 1, {}, {}, {})),
       "Изберете код на център на разход за структурната единица."},
      {kUnits, InsertOf(Unit(4, 2, 1001, {}, {})),
       "Изберете код на отдел за структурната единица."},
      {kUnits, InsertOf(Unit(4, 3, 1001, {}, 2)),
       "Структурна единица от тип дирекция има само код на дирекция. Изчистете кода на център на "
       "разход."},
      {kUnits, InsertOf(Unit(4, 4, {}, 12, {})),
       "Няма тип структурна единица 4. Изберете друг тип."},
      {kUnits, InsertOf(Unit(4, 2, {}, 11, {})),
       "За отдел 11 вече има структурна единица. Добавете периодите към нея."},
      {kUnits, InsertOf(Unit(4, 2, {}, 99, {})), "Няма отдел 99. Изберете друг отдел."},
      {kUnits, InsertOf(Unit(3, 2, {}, 12, {})),
       "Номер 3 междувременно е даден на друга структурна единица. Запишете реда още веднъж, той "
       "ще получи следващия свободен номер."},
      {kUnits, UpdateOf({{"IdNumber", 2}, {"StructuralUnitType", 2}}, {{"StructuralUnitType", 3}}),
       "Изберете код на дирекция за структурната единица."},
      {kUnits,
       UpdateOf({{"IdNumber", 2}, {"StructuralUnitType", 2}, {"Section", 11}, {"Department", {}}},
                {{"StructuralUnitType", 3}, {"Section", {}}, {"Department", 1}}),
       "За дирекция 1 вече има структурна единица. Добавете периодите към нея."},
      {kUnits, UpdateOf({{"IdNumber", 2}, {"Section", 11}}, {{"Section", 12}}), ""},
  });
  EXPECT_EQ(Rows(kUnits, {{"LNG", 2}}, Point::Structure),
            "1|1|||||1001|Механичен; 2|2|||12|Монтаж||; 3|3|1|Production||||")
      << "read from a register that leads there too";
  EXPECT_EQ(Rows({structure_deputies::kServerClass, "dspStructDeptMaxId", Point::Structure}, {},
                 Point::AdmissibleNotifiers),
            "3");
  EXPECT_EQ(Rows(kUnits, {{"LNG", 1}}, Point::Departments), "NoRight");
}

TEST_P(OrganisationRegisters, PeriodsOfAUnitNeitherRunBackNorOverlap) {
  const auto add = [](int unit, const Variant& from, const Variant& to) {
    return InsertOf(Period(unit, from, to));
  };
  const auto moveEnd = [](const Variant& from, const Variant& old, const Variant& to) {
    return UpdateOf({{"StructDepId", 1}, {"FromDate", from}, {"ToDate", old}}, {{"ToDate", to}});
  };
  Check({
      {kUnits, InsertOf(Unit(1, 1, 1001, {}, {})), ""},
      {kUnits, InsertOf(Unit(2, 1, 1002, {}, {})), ""},
      {kPeriods, add(1, DayOf(10), DayOf(12)), ""},
      {kPeriods, add(1, DayOf(13), DayOf(13)), ""},
      {kPeriods, add(1, DayOf(5), DayOf(9)), ""},
      {kPeriods, add(1, DayOf(10), DayOf(10)),
       "Структурната единица вече има период от 10.03.2026. Изберете друга начална дата."},
      {kPeriods, add(1, DayOf(12), DayOf(20)),
       "Периодите от 10.03.2026 до 12.03.2026 и от 12.03.2026 до 20.03.2026 на една структурна "
       "единица се застъпват. Променете датите."},
      {kPeriods, add(1, DayOf(1), DayOf(31)),
       "Периодите от 01.03.2026 до 31.03.2026 и от 05.03.2026 до 09.03.2026 на една структурна "
       "единица се застъпват. Променете датите."},
      {kPeriods, add(1, DayOf(1), {}),
       "Периодите от 01.03.2026 нататък и от 05.03.2026 до 09.03.2026 на една структурна единица "
       "се застъпват. Променете датите."},
      {kPeriods, add(1, DayOf(20), DayOf(19)),
       "Крайната дата 19.03.2026 е преди началната дата 20.03.2026. Поправете периода."},
      {kPeriods, add(1, DayOf(20), {}), ""},
      {kPeriods, add(1, DayOf(1, 4), DayOf(2, 4)),
       "Периодите от 20.03.2026 нататък и от 01.04.2026 до 02.04.2026 на една структурна единица "
       "се застъпват. Променете датите."},
      {kPeriods, add(2, DayOf(1), DayOf(31)), ""},
      {kPeriods, moveEnd(DayOf(10), DayOf(12), DayOf(13)),
       "Периодите от 10.03.2026 до 13.03.2026 и от 13.03.2026 до 13.03.2026 на една структурна "
       "единица се застъпват. Променете датите."},
      {kPeriods, moveEnd(DayOf(10), DayOf(12), DayOf(9)),
       "Крайната дата 09.03.2026 е преди началната дата 10.03.2026. Поправете периода."},
      {kPeriods, moveEnd(DayOf(10), DayOf(12), DayOf(11)), ""},
      {kPeriods, UpdateOf({{"StructDepId", 1}, {"FromDate", DayOf(13)}}, {{"FromDate", DayOf(11)}}),
       "Периодите от 10.03.2026 до 11.03.2026 и от 11.03.2026 до 13.03.2026 на една структурна "
       "единица се застъпват. Променете датите."},
      {kPeriods, add(9, DayOf(1), DayOf(2)),
       "Структурната единица междувременно е изтрита. Изберете друга единица."},
      {kPeriods, InsertOf(Period(2, DayOf(1, 5), {}, 999)),
       "Няма служител 999. Изберете друг заместник."},
      {kPeriods, InsertOf(Period(2, {}, {})), "Попълнете стойност в поле „От дата“."},
      {kUnits, DeleteOf(Unit(1, 1, 1001, {}, {})),
       "Структурната единица има въведени периоди на заместване, първият от 05.03.2026. Изтрийте "
       "първо периодите."},
      {kPeriods, DeleteOf(Period(2, DayOf(1), DayOf(31))), ""},
      {kUnits, DeleteOf(Unit(2, 1, 1002, {}, {})), ""},
  });
  EXPECT_EQ(Rows(kPeriods, {{"LNG", 2}, {"IdNumber", 1}}, Point::StructureDeputies),
            "1|05.03.2026|09.03.2026|100|Employee 100; 1|10.03.2026|11.03.2026|100|Employee 100; "
            "1|13.03.2026|13.03.2026|100|Employee 100; 1|20.03.2026||100|Employee 100");
  EXPECT_EQ(Rows(kPeriods, {{"LNG", 1}, {"IdNumber", -1}}, Point::StructureDeputies), "");
}

/// Of two users who add at the same moment what only one may have, one succeeds.
TEST_P(OrganisationRegisters, TwoUsersAtOnceMakeNeitherTwoUnitsNorOverlappingPeriods) {
  constexpr int kRounds = 12;
  ASSERT_EQ(Refusal(kUnits, InsertOf(Unit(1000, 1, 1001, {}, {}))), "");
  const auto count = [&](const char* table) {
    return *server.Value(std::string("select count(*) from ") + table, ValueKind::Code).AsInt();
  };
  for (int round = 0; round < kRounds; ++round) {
    const auto add = [&](const TestSession& session, int own) {
      // The same section under two numbers, and periods that share one day.
      (void)Apply(kUnits, InsertOf(Unit(2 * round + own, 2, {}, 11, {})), &session);
      const Variant from = DayOf(1 + own, 1 + round % 12);
      (void)Apply(kPeriods, InsertOf(Period(1000, from, DayOf(2, 1 + round % 12))), &session);
    };
    std::thread first(add, std::cref(ivanova), 0);
    std::thread second(add, std::cref(petrov), 1);
    first.join();
    second.join();
    EXPECT_EQ(count("StructureDeputies"), 2) << round;
    EXPECT_EQ(count("StructDepDates"), round + 1);
    server.Execute({"delete from StructureDeputies where IdNumber <> 1000", {}, {}});
  }
}

TEST_P(OrganisationRegisters, KindsOfDepartmentAndTheirEmployeesAreKnown) {
  const auto row = [](const Variant& kind, const Variant& employee) {
    return InsertOf({{"KindSection", kind}, {"Employee", employee}});
  };
  const auto first = Apply(kFinancing, row(1, 100));
  ASSERT_TRUE(first);
  EXPECT_EQ(FindValue(first->outcomes.front().filled, "LocateKindSection")->AsInt(), 1);
  Check({
      {kFinancing, row(1, 101), ""},
      {kFinancing, row(2, 100), ""},
      {kFinancing, row(1, 100),
       "Служител 100 вече финансира доставки за вид отдел 1. Изберете друг служител или друг вид "
       "отдел."},
      {kFinancing, row(99, 100), "Няма вид отдел 99. Изберете друг вид отдел."},
      {kFinancing, row({}, 100), "Попълнете стойност в поле „Вид отдел“."},
      {kFinancing, row(3, {}), "Попълнете стойност в поле „Служител“."},
      {kFinancing, row(3, 555), "Няма служител 555. Изберете друг служител."},
      {kFinancing, UpdateOf({{"KindSection", 2}, {"Employee", 100}}, {{"KindSection", 1}}),
       "Служител 100 вече финансира доставки за вид отдел 1. Изберете друг служител или друг вид "
       "отдел."},
      {kFinancing, UpdateOf({{"KindSection", 2}, {"Employee", 100}}, {{"Employee", 101}}), ""},
  });
  EXPECT_EQ(Rows(kFinancing, {{"LNG", 1}}, Point::EmployeesFinSupp),
            "1|100|Служител 100|1; 1|101|Служител 101|1; 2|101|Служител 101|2");
}

TEST_P(OrganisationRegisters, APairOfCostCentreAndRequesterStandsOnce) {
  const auto row = [](const Variant& center, const Variant& notifier) {
    return InsertOf({{"CostCenter", center}, {"Notifier", notifier}});
  };
  Check({
      {kNotifiers, row(1001, 100), ""},
      {kNotifiers, row(1001, 101), ""},
      {kNotifiers, row(1002, 100), ""},
      {kNotifiers, row(1001, 100),
       "Служител 100 вече е допустим заявител за център на разход 1001. Изберете друг заявител или "
       "друг център."},
      {kNotifiers, row(1009, 100), "Няма център на разход 1009. Изберете друг център на разход."},
      {kNotifiers, row(1001, 999), "Няма служител 999. Изберете друг заявител."},
      {kNotifiers, row({}, 100), "Попълнете стойност в поле „Център на разход“."},
      {kNotifiers, row(1001, {}), "Попълнете стойност в поле „Заявител“."},
      {kNotifiers, DeleteOf({{"CostCenter", 1002}, {"Notifier", 100}}), ""},
  });
  EXPECT_EQ(Rows(kNotifiers, {}, Point::AdmissibleNotifiers),
            "1001|Механичен|100|Служител 100; 1001|Механичен|101|Служител 101");
}

TEST_P(OrganisationRegisters, EveryRegisterAsksForTheRightOfItsOwnPoint) {
  const Change changes[] = {
      InsertOf({{"CostCenter", 1001}, {"Department", 1}, {"Section", 11}}),
      InsertOf(Unit(1, 1, 1001, {}, {})),
      InsertOf({{"KindSection", 1}, {"Employee", 100}}),
      InsertOf({{"CostCenter", 1001}, {"Notifier", 100}}),
  };
  const Register registers[] = {kStructure, kUnits, kFinancing, kNotifiers};
  for (std::size_t i = 0; i < std::size(registers); ++i) {
    const Register& own = registers[i];
    SCOPED_TRACE(own.provider);
    const auto outcome = [&](Point point) {
      const Register claimed{own.serverClass, own.provider, point};
      const auto answer = Apply(claimed, changes[i]);
      return answer ? Outcome(answer->outcomes.front()) : Outcome(answer);
    };
    EXPECT_EQ(outcome(Point::Departments), "NoRight");
    ASSERT_TRUE(server.Admin().Grant("ivanova", static_cast<std::int32_t>(own.point), 1 | 2 | 8));
    EXPECT_EQ(outcome(own.point), "NoRight") << "insert was not given";
    ASSERT_TRUE(server.Admin().Grant("ivanova", static_cast<std::int32_t>(own.point), 1 | 4));
    EXPECT_EQ(outcome(own.point), "ok");
  }
}

}  // namespace
}  // namespace orvane::server
