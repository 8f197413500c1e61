#include "host/calculator.h"

#include <gtest/gtest.h>

namespace orvane::host {
namespace {

TEST(Calculator, WorksOutSumsAsTheyAreWritten) {
  struct Row {
    std::string_view text;
    std::string_view result;
  };
  const Row rows[] = {
      {"2 + 3 * 4", "14"},
      {"(2 + 3) * 4", "20"},
      {"10 - 3 - 2", "5"},
      {"100 / 8 / 5", "2.5"},
      {"0,1 + 0,2", "0.3"},
      {"1 234,50 x 2", "2469"},
      {"1.250,50 * 2", "2501"},
      {"1\u2009234 + 1\u00A0000", "2234"},
      {"12,5 × 4 ÷ 10", "5"},
      {"3 х 4", "12"},
      {"-(2 - 5) * -2", "-6"},
      {"1 / 3", "0.333333"},
      {"2 / 3", "0.666667"},
      {"((((1))))", "1"},
      {"922337203685477 + 0,5", "922337203685477.5"},
  };
  for (const Row& row : rows) {
    const auto value = Calculate(row.text);
    ASSERT_TRUE(value) << row.text << ": " << value.GetFailure().message;
    EXPECT_EQ(*value, *Decimal::Parse(row.result)) << row.text << " = " << value->ToText();
  }
}

TEST(Calculator, SaysWhatCannotBeWorkedOut) {
  for (const std::string_view text : {"", "2 +", "(2", "2)", "две", "2 ** 3"}) {
    const auto value = Calculate(text);
    ASSERT_FALSE(value) << text;
    EXPECT_NE(value.GetFailure().message.find("не може да се пресметне"), std::string::npos);
  }
  for (const std::string_view text : {"2 3 + 1", "1,2,3"})
    EXPECT_NE(Calculate(text).GetFailure().message.find("не е число"), std::string::npos);
  EXPECT_NE(Calculate("1.250 * 2").GetFailure().message.find("1250 и като 1,25"),
            std::string::npos);
  EXPECT_EQ(Calculate("5 / (2 - 2)").GetFailure().message, "Не може да се дели на нула.");
  EXPECT_EQ(Calculate("9999999999 * 9999999999").GetFailure().message,
            "Резултатът е извън обхвата на калкулатора.");
  std::string deep(200, '(');
  deep.append("1").append(200, ')');
  EXPECT_FALSE(Calculate(deep));
}

}  // namespace
}  // namespace orvane::host
