#include "packet/decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <random>
#include <string>

#include "support/seed.h"

namespace orvane {
namespace {

/// "-" stands for an empty answer.
std::string Text(const std::optional<Decimal>& value) {
  return value ? value->ToText() : "-";
}

Decimal Of(const char* text) {
  const auto value = Decimal::Parse(text);
  EXPECT_TRUE(value) << text;
  return value.value_or(Decimal());
}

TEST(Decimal, ReadsWhatPeopleTypeAndNothingElse) {
  const struct {
    const char* typed;
    const char* read;
  } rows[] = {
      {"0", "0"},
      {"-0", "0"},
      {"-0,50", "-0.50"},
      {"+7.5", "7.5"},
      {"3878,28", "3878.28"},
      {"007,10", "7.10"},
      {"  12 ", "12"},
      {"1 234 567,89", "1234567.89"},
      {"1\u00A0234,5", "1234.5"},
      {"1\u2009234\u202F567", "1234567"},
      {"0.123456789", "0.123456789"},
      {"0.1234567890000", "0.123456789"},
      {"0.1234567891", "-"},
      {"9223372036854775807", "9223372036854775807"},
      {"9223372036854775808", "-"},
      {"-9223372036854775808", "-9223372036854775808"},
      {"-9223372036854775809", "-"},
      {"922337203685477.5807", "922337203685477.5807"},
      {"922337203685477.5808", "-"},
      {"9223372036854775807,00", "9223372036854775807"},
      {"00000000000000000000000000000001", "1"},
      {"10000000000000000000000000000000", "-"},
      {"", "-"},
      {" ", "-"},
      {"-", "-"},
      {"5,", "-"},
      {",5", "-"},
      {"1,2,3", "-"},
      {"1.2e3", "-"},
      {"0x10", "-"},
      {"--1", "-"},
      {"- 1", "-"},
      {"12 34", "-"},
      {"1234 567", "-"},
      {"1 234 56", "-"},
      {"1  234", "-"},
      {"1,234 567", "-"},
      {"12лв", "-"},
      {"١٢", "-"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Text(Decimal::Parse(row.typed)), row.read) << row.typed;
}

TEST(Decimal, TextToDecimalToTextIsTheIdentity) {
  std::mt19937_64 random(Seed());
  for (int i = 0; i < 20'000; ++i) {
    const auto bits = static_cast<int>(random() % 64);
    const auto mantissa = static_cast<std::int64_t>(random()) >> bits;
    const Decimal value(mantissa, static_cast<int>(random() % 10));
    const auto again = Decimal::Parse(value.ToText(i % 2 == 0 ? '.' : ','));
    ASSERT_TRUE(again) << value.ToText();
    ASSERT_EQ(again->Mantissa(), mantissa);
    ASSERT_EQ(again->Scale(), value.Scale());
  }
}

TEST(Decimal, ProductsAreRoundedHalfAwayFromZeroOnce) {
  const struct {
    const char* left;
    const char* right;
    int decimals;
    const char* product;
  } rows[] = {
      // The exact products come from bc.
      {"3878.28", "1.95583", 2, "7585.26"},       // 7585.2563724
      {"3878.28", "1.95583", 7, "7585.2563724"},  //
      {"12345.6789", "0.0000001", 9, "0.001234568"},
      {"100.005", "1", 2, "100.01"},
      {"-100.005", "1", 2, "-100.01"},
      {"100.0049999", "1", 2, "100.00"},
      {"0.5", "1", 0, "1"},
      {"-0.5", "1", 0, "-1"},
      {"0.49", "1", 0, "0"},
      {"922337203685477.5807", "9999.9999999", 0, "9223372036762542087"},  // …086.63145224193
      {"922337203685477.5807", "9999.9999999", 1, "-"},
      {"9223372036854775807", "9223372036854775807", 0, "-"},
      {"-9223372036854775808", "-9223372036854775808", 9, "-"},
      {"-9223372036854775808", "1", 0, "-9223372036854775808"},
      {"0.000000001", "0.000000001", 9, "0.000000000"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Text(Of(row.left).Times(Of(row.right)).RoundedHalfUp(row.decimals)), row.product)
        << row.left << " * " << row.right << " to " << row.decimals;
  }
}

TEST(Decimal, QuotientsAreRoundedHalfAwayFromZeroOnce) {
  const struct {
    const char* left;
    const char* right;
    int decimals;
    const char* quotient;
  } rows[] = {
      {"1", "3", 9, "0.333333333"},
      {"2", "3", 9, "0.666666667"},
      {"-2", "3", 9, "-0.666666667"},
      {"2", "-3", 2, "-0.67"},
      {"-7", "-8", 2, "0.88"},  // 0.875
      {"7", "-8", 2, "-0.88"},
      {"0", "7", 4, "0.0000"},
      {"123456789.1234", "0.0000007", 2, "176366841604857.14"},
      {"9223372036854775807", "0.000000001", 0, "-"},
      {"9223372036854775807", "0.000000001", 9, "-"},
      {"-9223372036854775808", "-1", 0, "-"},
      {"0.000000001", "9223372036854775807", 9, "0.000000000"},
      {"7585.2563724", "1.95583", 2, "3878.28"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Text(Of(row.left).DividedBy(Of(row.right)).RoundedHalfUp(row.decimals)), row.quotient)
        << row.left << " / " << row.right << " to " << row.decimals;
  }
}

TEST(Decimal, SumsAreExactOrEmpty) {
  const struct {
    const char* left;
    const char* right;
    const char* sum;
    const char* difference;
  } rows[] = {
      {"0.1", "0.2", "0.3", "-0.1"},
      {"2.50", "2.5", "5.00", "0.00"},
      {"1", "0.000000001", "1.000000001", "0.999999999"},
      {"9223372036854775807", "1", "-", "9223372036854775806"},
      {"-9223372036854775808", "1", "-9223372036854775807", "-"},
      {"9223372036854775807", "0.0", "9223372036854775807", "9223372036854775807"},
      {"9223372036854775807", "-0.5", "-", "-"},
  };
  for (const auto& row : rows) {
    const Decimal left = Of(row.left);
    const Decimal right = Of(row.right);
    EXPECT_EQ(Text(left.Plus(right)), row.sum) << row.left << " + " << row.right;
    const std::string difference = Text(left.Minus(right));
    EXPECT_EQ(difference, row.difference) << row.left << " - " << row.right;
  }
}

TEST(Decimal, ComparesByValueWhateverTheScale) {
  EXPECT_EQ(Decimal(250, 2), Decimal(25, 1));
  EXPECT_EQ(Decimal(0, 9), Decimal(0, 0));
  EXPECT_LT(Decimal(-1, 9), Decimal(0, 0));
  EXPECT_GT(Decimal(std::numeric_limits<std::int64_t>::max(), 0),
            Decimal(std::numeric_limits<std::int64_t>::max(), 9));
  EXPECT_LT(Decimal(std::numeric_limits<std::int64_t>::min(), 0), Decimal(-1, 9));
}

TEST(Decimal, ChangesScaleOnlyWhenNothingIsLost) {
  EXPECT_EQ(Text(Of("2.50").AtScale(1)), "2.5");
  EXPECT_EQ(Text(Of("2.50").AtScale(4)), "2.5000");
  EXPECT_EQ(Text(Of("2.55").AtScale(1)), "-");
  EXPECT_EQ(Text(Of("9223372036854775807").AtScale(1)), "-");
}

TEST(Decimal, TakesDoublesAsTheShortestTextThatStandsForThem) {
  const struct {
    double value;
    int scale;
    const char* decimal;
  } rows[] = {
      {2.675, 2, "2.68"},  // the double lies below, the person typed a half
      {-2.675, 2, "-2.68"},
      {1.005, 2, "1.01"},
      {0.1 + 0.2, 9, "0.300000000"},
      {1.95583, 7, "1.9558300"},
      {1e15, 4, "-"},
      {1e14, 4, "100000000000000.0000"},
      {9007199254740993.0, 0, "9007199254740992"},
      {5e-324, 9, "0.000000000"},
      {1e308, 0, "-"},
      {-0.0, 2, "0.00"},
      {0.0000000005, 9, "0.000000001"},
      {std::numeric_limits<double>::quiet_NaN(), 2, "-"},
      {std::numeric_limits<double>::infinity(), 2, "-"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Text(Decimal::FromDouble(row.value, row.scale)), row.decimal) << row.value;
  }
}

TEST(Decimal, ToDoubleIsTheNearestOne) {
  EXPECT_EQ(Of("0.1").ToDouble(), 0.1);
  EXPECT_EQ(Of("922337203685477.5807").ToDouble(), 922337203685477.5807);
  EXPECT_EQ(Of("-9223372036854775808").ToDouble(), -9223372036854775808.0);
}

}  // namespace
}  // namespace orvane
