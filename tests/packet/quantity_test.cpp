#include "packet/quantity.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

constexpr QuantityUnit kPieces{1, 0, false};
constexpr QuantityUnit kKilograms{1, 3, false};
constexpr QuantityUnit kTons{1000, 3, false, 1};
constexpr QuantityUnit kHundreds{100, 0, false, 1};  // of pieces
constexpr QuantityUnit kGrossOf12{12, 0, false, 1};
constexpr QuantityUnit kDozens{12, 0, true};

TEST(Quantity, ReadsAsTheRowsUnitAndBack) {
  struct Case {
    double quantity;
    QuantityUnit unit;
    const char* text;
  };
  const Case cases[] = {
      {0, kPieces, "0"},
      {2000, kPieces, "2 000"},
      {1250.5, kKilograms, "1 250,5"},
      {0.001, kKilograms, "0,001"},
      {1250.5, kTons, "1,2505"},
      {1250, kTons, "1,25"},
      {500, kDozens, "41 8/12"},
      {20000, kDozens, "1 666 8/12"},
      {1234567, kPieces, "1 234 567"},
      {999, kPieces, "999"},
      {8, kDozens, "8/12"},
      {492, kDozens, "41"},
      {0, kDozens, "0"},
      {7, {1, 0, true}, "7"},
      {150, kHundreds, "1,5"},
      {40, kHundreds, "0,4"},
      {1, kGrossOf12, "0,083333"},
      {12.5, kPieces, "12,5"},
      {3000, {2000, 0, true}, "1 1000/2000"},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(QuantityToStr(row.quantity, row.unit), row.text);
    if (row.unit.decimals == 0 && row.quantity == 12.5) continue;  // not of a whole kind: not typed
    const Answer<double> back = StrToQuantity1(row.text, row.unit);
    ASSERT_TRUE(back) << row.text;
    EXPECT_EQ(*back, row.quantity) << row.text;
    EXPECT_EQ(QuantityToStr(*back, row.unit), row.text);
  }
}

TEST(Quantity, TakesCommaOrPointAndRefusesTheRest) {
  struct Case {
    const char* text;
    QuantityUnit unit;
    double quantity;  ///< negative: refused
  };
  const Case cases[] = {
      {"12,5", kKilograms, 12.5},
      {"12.5", kKilograms, 12.5},
      {" 12,5 ", kKilograms, 12.5},
      {"12,50", kKilograms, 12.5},
      {"12,0005", kKilograms, -1},
      {"1,5", kPieces, -1},
      {"-3", kPieces, -1},
      {"3 5/12", kDozens, 41},
      {"3  5/12", kDozens, 41},
      {"3 12/12", kDozens, -1},
      {"3 5/10", kDozens, -1},
      {"3,5", kDozens, -1},
      {"5/", kDozens, -1},
      {"/12", kDozens, -1},
      {"", kDozens, -1},
      {"", kPieces, -1},
      {"три", kPieces, -1},
      {"1e3", kKilograms, -1},
      {"3\u00A05/12", kDozens, 41},
      {"1,5", kHundreds, 150},
      {"1,505", kHundreds, -1},
      {"0,083333", kGrossOf12, 1},
      {"1.000.000", kPieces, 1e6},
      {"1,000", kPieces, -1},
      {"1,250", kKilograms, 1.25},
      {"1.250", kKilograms, -1},
      {"7,", kKilograms, 7},
      {"2,5", kTons, 2500},
      {"1000000000000", kTons, -1},
  };
  for (const Case& row : cases) {
    const Answer<double> answer = StrToQuantity1(row.text, row.unit);
    EXPECT_EQ(answer.Ok() ? *answer : -1, row.quantity) << row.text;
  }
}

TEST(Quantity, AreComparedAtSixDecimals) {
  EXPECT_EQ(CompareQuantities(0.1 + 0.2, 0.3), 0);
  EXPECT_EQ(CompareQuantities(0.3000004, 0.3), 0);
  EXPECT_LT(CompareQuantities(0.3, 0.300001), 0);
  EXPECT_GT(CompareQuantities(2, 1.999999), 0);
}

}  // namespace
}  // namespace orvane
