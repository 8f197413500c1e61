// The register of kinds of supplies: what its server class accepts and why it refuses.

#include "server/server_case.h"

namespace orvane::server {
namespace {

class KindSupplies : public ServerCase {
 protected:
  KindSupplies() : server(GetParam()) {
    server.AddUser("ivanova");
    ivanova = server.LogIn("ivanova");
    EXPECT_EQ(Apply(InsertOf({{"Code", 4}, {"Name", "Стоки"}, {"Name2", Variant()}})), "ok");
  }

  /// "ok", or the first failure's sentence.
  std::string Apply(const Change& change) {
    const auto answer = server->Apply(ivanova.At(Point::KindSupplies),
                                      {"TsmKindSupplies", "dsKindSupplies", 0, {}, {change}});
    if (!answer) return answer.GetFailure().message;
    const ChangeOutcome& outcome = answer->outcomes.front();
    return outcome.failure ? outcome.failure->message : Outcome(outcome);
  }
  std::string Delete(int code) {
    return Apply(DeleteOf({{"Code", code}, {"Name", "Стоки"}, {"Name2", Variant()}}));
  }

  TestServer server;
  TestSession ivanova;
};
INSTANTIATE_TEST_SUITE_P(Engines, KindSupplies, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(KindSupplies, CodesAreOneOfEachFromOneToFourDigits) {
  const struct {
    Variant code;
    std::string name;
    std::string outcome;
  } rows[] = {
      {1, "Услуги", "ok"},
      {9999, "Други", "ok"},
      {0, "Нула", "!!Err_Кодът на вид покупка е от 1 до 9999."},
      {10000, "Много", "!!Err_Кодът на вид покупка е от 1 до 9999."},
      {4, "Пак стоки", "!!Err_Вече има вид покупка с код 4. Изберете друг код."},
      {5, "", "!!Err_Попълнете стойност в поле „Име“."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Apply(InsertOf({{"Code", row.code}, {"Name", row.name}, {"Name2", Variant()}})),
              row.outcome);
  }
}

TEST_P(KindSupplies, AKindInUseSaysByWhatItIsKept) {
  server.Execute(
      {"insert into LevelsApproval (KindRegister, KindSupply, Level, FromSum, ToSum, "
       "Approval) values (2, 4, 1, 0, 0, 1)",
       {},
       {}});
  EXPECT_EQ(Delete(4),
            "!!Err_Вид покупка 4 се ползва в „Нива на одобрение“. Изтрийте първо нивата за него.");
  server.Execute({"delete from LevelsApproval", {}, {}});
  server.SetParam(11, 5, "4,0");
  const std::string kept =
      "!!Err_Вид покупка 4 е стойност на параметъра 'Вид покупка \"Стоки\"'. Изберете първо друга "
      "стойност за него.";
  EXPECT_EQ(Delete(4), kept);
  EXPECT_EQ(Apply(UpdateOf({{"Code", 4}}, {{"Code", 6}})), kept) << "nor does it get another code";
  EXPECT_EQ(Apply(UpdateOf({{"Code", 4}, {"Name", "Стоки"}}, {{"Name", "Търговски стоки"}})), "ok");
  server.SetParam(11, 5, "1");
  EXPECT_EQ(Apply(DeleteOf({{"Code", 4}, {"Name", "Търговски стоки"}, {"Name2", Variant()}})),
            "ok");
}

}  // namespace
}  // namespace orvane::server
