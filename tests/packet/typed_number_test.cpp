#include "packet/typed_number.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

constexpr WantedNumber kWhole{0, false};
constexpr WantedNumber kMoney{2, true};
constexpr WantedNumber kThree{3, false};
constexpr WantedNumber kRate{7, false};

TEST(TypedNumber, IsReadAsPeopleWriteItOrRefusedWithBothReadings) {
  struct Row {
    const char* text;
    WantedNumber wanted;
    const char* read;  ///< the number, or the sentence behind the quoted text
  };
  const std::string more = "има повече от 2 знака след запетаята.";
  const char* const both =
      "може да се прочете като 1250 и като 1,25. Въведете го по единия от тези два начина.";
  const char* const none = "не е число. Въведете цифри и десетична запетая.";
  const Row rows[] = {
      {"1 250,50", kMoney, "1250,5"},
      {"1\u00A0250,50", kMoney, "1250,5"},
      {"1\u2009250,50", kMoney, "1250,5"},
      {"1\u202F250,50", kMoney, "1250,5"},
      {"1.250,50", kMoney, "1250,5"},
      {"1,250.50", kMoney, "1250,5"},
      {"1250.50", kMoney, "1250,5"},
      {"1250,50 лв.", kMoney, "1250,5"},
      {"1 250,50лв", kMoney, "1250,5"},
      {"7. лв.", kMoney, "7"},
      {"1250.50\u00A0€", kMoney, "1250,5"},
      {"12 bgn", kMoney, "12"},
      {"1.250.000", kMoney, "1250000"},
      {"1,250,000", kMoney, "1250000"},
      {"1.250.000,5", kMoney, "1250000,5"},
      {"1 250 000.5\r\n", kMoney, "1250000,5"},
      {"7,", kMoney, "7"},
      {",5", kMoney, "0,5"},
      {".5", kMoney, "0,5"},
      {"-,5", kMoney, "-0,5"},
      {"\u2212"
       "1 250,5",
       kMoney, "-1250,5"},
      {"- 5", kMoney, "-5"},
      {"+5", kMoney, "5"},
      {"12,5000", kMoney, "12,5"},
      {"0.250", kMoney, "0,25"},
      {"1250.500", kMoney, "1250,5"},
      {"1 250.500", kMoney, "1250,5"},
      {"0012", kWhole, "12"},
      {"1 250", kWhole, "1250"},
      {"1,250", kThree, "1,25"},
      {"1,95583", kRate, "1,95583"},
      {"1.95583", kRate, "1,95583"},
      {"922337203685477,5807", kRate, "922337203685477,5807"},
      // Never another number.
      {"1.250", kMoney, both},
      {"1.250", kThree, both},
      {"1.250", kRate, both},
      {"1,250", kMoney, both},
      {"12,345", kMoney, more.c_str()},
      {"1250.505", kMoney, more.c_str()},
      {"1,000", kWhole,
       "може да се прочете като 1000 и като 1. Въведете го по единия от тези два начина."},
      {"1,5", kWhole, "не е цяло число. Въведете го без десетични знаци."},
      {"12a", kWhole, "не е число. Въведете само цифри."},
      {"1,2,3", kMoney, none},
      {"1.25.000", kMoney, none},
      {"1.250,50,1", kMoney, none},
      {"1 25,5", kMoney, none},
      {"1234 567", kMoney, none},
      {"1,25 5", kMoney, none},
      {"1 250.000,5", kMoney, none},
      {"--5", kMoney, none},
      {"5 лв.", kRate, none},
      {"лв.", kMoney, none},
      {",", kMoney, none},
      {"", kMoney, none},
      {"1e3", kMoney, none},
      {"(5)", kMoney, none},
      {"99999999999999999999", kMoney, "е твърде голямо число."},
      {"9223372036854775808", kWhole, "е твърде голямо число."},
  };
  for (const Row& row : rows) {
    const Answer<Decimal> number = ReadNumber(row.text, row.wanted);
    if (number) {
      EXPECT_EQ(number->ToText(','), row.read) << row.text;
    } else {
      const std::string& told = number.GetFailure().message;
      EXPECT_EQ(told.substr(told.rfind("“ ") + std::string("“ ").size()), row.read) << row.text;
    }
  }
}

}  // namespace
}  // namespace orvane
