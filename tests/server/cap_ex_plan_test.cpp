// The capital-expenditure plan: where moves lead and what state they answer; what keeps a position.

#include "server/server_case.h"

namespace orvane::server {
namespace {

class CapExPlan : public ServerCase {
 protected:
  CapExPlan() : server(GetParam()) {
    server.AddUser("ivanova");
    ivanova = server.LogIn("ivanova");
  }

  static NamedValues Position(int code) {
    return {{"Code", code},
            {"Name", "Позиция"},
            {"FromDate", *Date::FromYmd(2026, 1, 1)},
            {"TimeLimit", *Date::FromYmd(2026, 12, 31)},
            {"CapSum", *Decimal::Parse("10")}};
  }
  std::string Apply(const Change& change) {
    const auto answer = server->Apply(ivanova.At(Point::CapExPlan),
                                      {"TsmCapExPlan", "dspCapExPlan", 0, {}, {change}});
    if (!answer) return answer.GetFailure().message;
    const ChangeOutcome& outcome = answer->outcomes.front();
    return outcome.failure ? outcome.failure->message : Outcome(outcome);
  }
  /// "20 state 0", "none state 3", or the kind of failure.
  std::string Move(int mode, int offset, const Variant& code) {
    const auto answer = server->Call(ivanova.At(Point::CapExPlan),
                                     {"TsmCapExPlan", "GetRecord", {mode, offset, code}});
    if (!answer) return Outcome(answer);
    const bool found = (*answer)[0].AsBool().value_or(false);
    std::string text = found ? (*answer)[2].AsPacket()->At(0, "Code").ToText() : "none";
    return text.append(" state ").append((*answer)[1].ToText());
  }

  TestServer server;
  TestSession ivanova;
};
INSTANTIATE_TEST_SUITE_P(Engines, CapExPlan, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(CapExPlan, MovesAnswerThePositionAndTheState) {
  EXPECT_EQ(Move(1, 0, ""), "none state 1") << "an empty plan";
  EXPECT_EQ(Move(4, 0, ""), "none state 2");
  for (const int code : {10, 20, 30, 40})
    ASSERT_EQ(Apply(InsertOf(Position(code))), "ok");
  const struct {
    int mode;
    int offset;
    Variant code;
    std::string answer;
  } rows[] = {
      {0, 0, "20", "20 state 0"},  {0, 0, "25", "none state 3"}, {0, 0, "", "none state 3"},
      {1, 0, "30", "10 state 1"},  {4, 0, "30", "40 state 2"},   {2, 0, "30", "20 state 0"},
      {2, 0, "20", "10 state 0"},  {2, 0, "10", "none state 1"}, {3, 0, "25", "30 state 0"},
      {3, 0, "30", "40 state 0"},  {3, 0, "40", "none state 2"}, {3, 0, "99", "none state 2"},
      {5, 2, "10", "30 state 0"},  {5, 10, "10", "40 state 2"},  {5, 10, "40", "none state 2"},
      {5, -1, "40", "30 state 0"}, {5, -10, "40", "10 state 1"}, {5, -10, "10", "none state 1"},
      {5, 0, "20", "20 state 0"},  {6, 0, "20", "BadRequest"},   {3, 200, "20", "BadRequest"},
      {0, 0, "два", "BadRequest"}, {0, 0, " 20 ", "20 state 0"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Move(row.mode, row.offset, row.code), row.answer)
        << row.mode << " " << row.offset << " " << row.code.ToText();
  }
}

TEST_P(CapExPlan, CodesAreOneOfEachAndTheRightsAreThePoints) {
  EXPECT_EQ(Apply(InsertOf(Position(10))), "ok");
  EXPECT_EQ(Apply(InsertOf(Position(10))), "!!Err_Вече има позиция 10 в плана. Изберете друг код.");
  EXPECT_EQ(Apply(InsertOf(Position(0))), "!!Err_Кодът на позиция е от 1 до 999999999.");
  ASSERT_TRUE(server.Admin().Grant("ivanova", static_cast<std::int32_t>(Point::CapExPlan), 1));
  EXPECT_EQ(Move(0, 0, "10"), "10 state 0");
  EXPECT_NE(Apply(DeleteOf(Position(10))), "ok");
  ASSERT_TRUE(server.Admin().Grant("ivanova", static_cast<std::int32_t>(Point::CapExPlan), 0));
  EXPECT_EQ(Move(0, 0, "10"), "NoRight");
}

}  // namespace
}  // namespace orvane::server
