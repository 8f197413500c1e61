// The register of approval levels: what its server class accepts, refuses and warns of.

#include "server/approval/levels.h"
#include "server/server_case.h"

namespace orvane::server {
namespace {

LevelRow Range(int from, int to) {
  return {1, Decimal(from, 2), Decimal(to, 2), ApproverKind::CostCenterHead};
}

TEST(ApprovalGaps, LieBetweenRangesAndNowhereElse) {
  const struct {
    std::vector<LevelRow> ranges;  ///< in cents
    int decimals;
    std::string gaps;
  } rows[] = {
      {{}, 2, ""},
      {{Range(500, 900)}, 2, ""},
      {{Range(0, 1000), Range(1000, 2000)}, 2, ""},
      {{Range(0, 1000), Range(1001, 2000)}, 2, ""},
      {{Range(0, 1000), Range(1002, 2000)}, 2, "10.01-10.01 "},
      {{Range(0, 1000), Range(1001, 2000)}, 4, "10.0001-10.0099 "},
      {{Range(3000, 4000), Range(0, 1000), Range(0, 2000)}, 2, "20.01-29.99 "},
      {{Range(0, 9000), Range(1000, 2000), Range(3000, 4000)}, 2, ""},
  };
  for (const auto& row : rows) {
    std::string gaps;
    for (const Gap& gap : GapsBetween(row.ranges, row.decimals))
      gaps.append(gap.from.ToText()).append("-").append(gap.to.ToText()).append(" ");
    EXPECT_EQ(gaps, row.gaps);
  }
}

class LevelsApproval : public ServerCase {
 protected:
  LevelsApproval() : server(GetParam()) {
    server.AddUser("ivanova");
    ivanova = server.LogIn("ivanova");
    for (const int code : {2, 3, 7}) {
      server.Execute({"insert into KindSupplies (Code, Name, FoldName) values (?1, ?2, ?2)",
                      {code, code == 2 ? "ОСМ" : "Друг"},
                      {}});
    }
    server.SetParam(11, 2, "2");
    server.SetParam(11, 5, "3");
  }

  static NamedValues Row(int kind, int supply, int level, const std::string& from,
                         const std::string& to, int approval = 1) {
    return {{"KindRegister", kind},
            {"KindSupply", supply},
            {"Level", level},
            {"FromSum", *Decimal::Parse(from)},
            {"ToSum", *Decimal::Parse(to)},
            {"Approval", approval}};
  }
  /// "ok", what the server warned of, or the sentence of the refusal.
  std::string Apply(const Change& change) {
    const auto answer = server->Apply(ivanova.At(Point::LevelsApproval),
                                      {"TsmLevelsApproval", "dspLevelsApproval", 0, {}, {change}});
    if (!answer) return answer.GetFailure().message;
    const ChangeOutcome& outcome = answer->outcomes.front();
    if (outcome.failure) return outcome.failure->message;
    return answer->ownerData.IsNull() ? Outcome(outcome) : answer->ownerData.ToText();
  }

  TestServer server;
  TestSession ivanova;
};
INSTANTIATE_TEST_SUITE_P(Engines, LevelsApproval, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(LevelsApproval, RangesAndOrdersAreJudgedBeforeAnythingIsWritten) {
  const std::string sums =
      "!!Err_Поръчките към доставчици се одобряват без оглед на сумата: 'От сума' и 'До сума' са "
      "0.";
  const struct {
    NamedValues row;
    std::string outcome;
  } rows[] = {
      {Row(2, 7, 1, "0", "1000"), "ok"},
      {Row(2, 7, 1, "0", "500"),
       "!!Err_Вече има ред с ниво 1 от същата сума за този вид регистър и вид покупка 7. Изберете "
       "друго ниво или друга сума."},
      {Row(2, 7, 2, "500", "500"), "ok"},
      {Row(2, 7, 3, "500,01", "500"),
       "!!Err_Поле 'До сума' трябва да е по - голямо или равно на 'От сума'"},
      {Row(2, 9, 1, "0", "1"), "!!Err_Няма вид покупка с код 9. Изберете друг вид."},
      {Row(5, 7, 1, "0", "1"), "!!Err_Няма такъв вид регистър. Изберете от списъка."},
      {Row(2, 7, 0, "0", "1"), "!!Err_Нивото на одобрение е от 1 до 255."},
      {Row(2, 7, 1, "-1", "1"), "!!Err_Поле 'От сума' е от 0 до 99999999999."},
      {Row(2, 7, 4, "0", "1", 4), "!!Err_Няма такъв одобряващ. Изберете от списъка."},
      {Row(1, 2, 1, "0", "0", 2), "ok"},
      {Row(1, 3, 1, "0", "0,01"), sums},
      {Row(1, 3, 1, "1", "1"), sums},
      {Row(1, 7, 1, "0", "0"),
       "!!Err_Поръчки към доставчици има само за видове покупки ОСМ (2) и стоки (3). Изберете един "
       "от тях."},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Apply(InsertOf(row.row)), row.outcome);
}

TEST_P(LevelsApproval, AnUpdateIsJudgedWithWhatTheRowKeeps) {
  ASSERT_EQ(Apply(InsertOf(Row(2, 7, 1, "100", "1000"))), "ok");
  const NamedValues key = {
      {"KindRegister", 2}, {"KindSupply", 7}, {"Level", 1}, {"FromSum", *Decimal::Parse("100")}};
  EXPECT_EQ(Apply(UpdateOf(key, {{"FromSum", *Decimal::Parse("1000,01")}})),
            "!!Err_Поле 'До сума' трябва да е по - голямо или равно на 'От сума'");
  EXPECT_EQ(Apply(UpdateOf(key, {{"KindRegister", 1}})).substr(0, 20),
            std::string("!!Err_Поръчките към доставчици").substr(0, 20));
  EXPECT_EQ(Apply(UpdateOf(key, {{"FromSum", *Decimal::Parse("1000")}})), "ok");
}

TEST_P(LevelsApproval, AGapIsToldAndWhatWasEnteredStays) {
  const std::string gap =
      "Промяната е записана. За „Искания за покупка“ и вид покупка „Друг“ няма ниво за суми от "
      "1000,01 "
      "до 1999,99: документ с такава сума няма да може да бъде изпратен за одобрение.";
  EXPECT_EQ(Apply(InsertOf(Row(2, 7, 1, "0", "1000"))), "ok");
  EXPECT_EQ(Apply(InsertOf(Row(3, 7, 1, "5000", "9000"))), "ok") << "another kind of register";
  EXPECT_EQ(Apply(InsertOf(Row(2, 7, 1, "2000", "3000"))), gap);
  EXPECT_EQ(Apply(InsertOf(Row(2, 7, 2, "500", "1999,99"))), "ok");
  EXPECT_EQ(Apply(DeleteOf(Row(2, 7, 2, "500", "1999,99"))), gap);
  EXPECT_EQ(server.Value("select count(*) from LevelsApproval", ValueKind::Code).AsInt(), 3);
}

}  // namespace
}  // namespace orvane::server
