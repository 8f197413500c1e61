// What a parameter of the module may hold, and what happens when two users change one.

#include "server/server_case.h"

namespace orvane::server {
namespace {

class Parameters : public ServerCase {
 protected:
  Parameters() : server(GetParam()) {
    server.AddUser("ivanova");
    ivanova = server.LogIn("ivanova");
    for (const char* text :
         {"insert into KindSupplies (Code, Name, FoldName) values (4, 'Стоки', 'стоки')",
          "insert into KindDocInventory (Code, Name, FoldName, KindOperation) values (1, 'Приход', "
          "'приход', 1)",
          "insert into KindDocInventory (Code, Name, FoldName, KindOperation) values (2, 'Разход', "
          "'разход', 2)",
          "insert into KindSupplyLists (Code, Name, FoldName) values (1, 'Списък', 'списък')"})
      server.Execute({text, {}, {}});
  }

  /// "ok", or the failure's kind and sentence.
  std::string Set(int number, const Variant& value, const Variant& seen = {}) {
    const auto answer =
        server->Call(ivanova.At(Point::Parameters),
                     {"TsmParameters", "SetParam", {11, number, value, seen}, NewClientKey()});
    if (answer) return "ok";
    std::string text = Outcome(answer);
    return text.append(": ").append(answer.GetFailure().message);
  }
  Variant Stored(int number) {
    return server.Value("select Value from Params where ParamGroup = 11 and Number = ?1",
                        ValueKind::String, {number});
  }

  TestServer server;
  TestSession ivanova;
};
INSTANTIATE_TEST_SUITE_P(Engines, Parameters, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Parameters, HoldWhatTheirTypeBoundsAndRegisterAllow) {
  const struct {
    int number;
    Variant value;
    std::string outcome;
  } rows[] = {
      {1, "4", "ok"},
      {1, "5",
       "Refused: !!Err_Параметърът 'Вид покупка \"Капиталов разход\"' няма стойност 5. Изберете от "
       "списъка."},
      {2, "четири", "Refused: !!Err_Параметърът 'Вид покупка \"ОСМ\"' трябва да е число."},
      {5, "4,5", "Refused: !!Err_Параметърът 'Вид покупка \"Стоки\"' трябва да е цяло число."},
      {13, "70000",
       "Refused: !!Err_Параметърът 'Вид покупка „Други материали“' няма стойност 70000. Изберете "
       "от списъка."},
      {3, "3", "ok"},
      {3, "4", "Refused: !!Err_Параметърът 'Начин на избор' няма стойност 4. Изберете от списъка."},
      {4, "1", "ok"},
      {6, "1", "ok"},
      {7, "2",
       "Refused: !!Err_Параметърът 'Складов документ – приход на стоки' няма стойност 2. Изберете "
       "от списъка."},
      {8, "0", "Refused: !!Err_Параметърът 'Фирмен срок за плащане (дни)' е от 1 до 99."},
      {8, "1", "ok"},
      {8, "100", "Refused: !!Err_Параметърът 'Фирмен срок за плащане (дни)' е от 1 до 99."},
      {9, "0,5", "ok"},
      {9, "-0,5", "Refused: !!Err_Параметърът 'Допустима разлика за сума' е от 0 до 999999999."},
      {11, "100", "ok"},
      {11, "999",
       "Refused: !!Err_Параметърът 'Потребител за служебно одобряване' няма стойност 999. Изберете "
       "от списъка."},
      {16, "999999999", "ok"},
      {16, Variant(), "ok"},
      {20, "1", "Refused: !!Err_Параметър 20 от група 11 не се променя оттук."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.number);
    EXPECT_EQ(Set(row.number, row.value, Stored(row.number)), row.outcome);
  }
}

TEST_P(Parameters, AValueChangedMeanwhileIsToldAndKept) {
  EXPECT_EQ(Set(9, "5"), "ok");
  EXPECT_EQ(Set(9, "6", "4"),
            "Conflict: Параметърът 'Допустима разлика за сума' междувременно е променен от друг "
            "потребител: вече е „5“. Вашата стойност не е записана; прегледайте я и запишете "
            "отново.");
  EXPECT_EQ(Stored(9), Variant("5"));
  EXPECT_EQ(Set(9, "5", "4"), "ok") << "both chose the same";
  EXPECT_EQ(Set(9, Variant(), "5"), "ok");
  EXPECT_EQ(Set(9, "7", "5").substr(0, 8), "Conflict");
}

}  // namespace
}  // namespace orvane::server
