#include "data/text_format.h"

#include <gtest/gtest.h>

namespace orvane::data {
namespace {

TextFormat Of(ValueKind kind, int decimals = -1, bool grouped = false) {
  TextFormat format;
  format.kind = kind;
  format.decimals = decimals;
  format.grouped = grouped;
  return format;
}

struct FormatRow {
  Variant value;
  TextFormat format;
  const char* text;
};

TEST(TextFormat, ShowsValuesAsTheUserReadsThem) {
  const FormatRow kRows[] = {
      {Variant(), Of(ValueKind::Amount), ""},
      {true, Of(ValueKind::Bool), "Да"},
      {0, Of(ValueKind::Bool), "Не"},
      {std::int64_t{9223372036854775807}, Of(ValueKind::Code), "9223372036854775807"},
      {Decimal(38782800, 4), Of(ValueKind::Amount, 2, true), "3\u2009878,28"},
      {Decimal(-12345678901250, 4), Of(ValueKind::Amount, 2, true),
       "-1\u2009234\u2009567\u2009890,13"},
      {Decimal(-1230000, 4), Of(ValueKind::Amount, 2, true), "-123,00"},
      {Decimal(20000, 4), Of(ValueKind::Amount), "2"},
      {Decimal(-4, 4), Of(ValueKind::Amount), "-0,0004"},
      {Decimal(19558300, 7), Of(ValueKind::Rate, 7), "1,9558300"},
      {Decimal(19558300, 7), Of(ValueKind::Rate), "1,95583"},
      {12.5, Of(ValueKind::Double), "12,5"},
      {1.0 / 3, Of(ValueKind::Double), "0,333333"},
      {0.0000001, Of(ValueKind::Double), "0"},
      {*Date::FromYmd(2026, 3, 5), Of(ValueKind::Date), "05.03.2026"},
      {"текст ", Of(ValueKind::String), "текст "},
  };
  TextFormat shortRate = Of(ValueKind::Rate, 6);
  shortRate.trimmed = true;
  EXPECT_EQ(FormatValue(Decimal(19558300, 7), shortRate), "1,95583");
  EXPECT_EQ(FormatValue(Decimal(19558306, 7), shortRate), "1,955831");
  EXPECT_EQ(FormatValue(Decimal(10000000, 7), shortRate), "1");
  for (const FormatRow& row : kRows)
    EXPECT_EQ(FormatValue(row.value, row.format), row.text);
}

TEST(TextFormat, MomentsAreShownAndReadInTheCompanysZone) {
  TextFormat format = Of(ValueKind::Stamp);
  const Stamp summer = format.zone.At(*Date::FromYmd(2026, 7, 1), 9, 5, 30);
  EXPECT_EQ(FormatValue(summer, format), "01.07.2026 09:05");
  format.withSeconds = true;
  EXPECT_EQ(FormatValue(summer, format), "01.07.2026 09:05:30");
  format.dayOnly = true;
  EXPECT_EQ(FormatValue(summer, format), "01.07.2026");
  EXPECT_EQ(*ParseValue("1.7.2026 9:05:30", format), Variant(summer));
  EXPECT_EQ(*ParseValue("01.07.2026", format),
            Variant(format.zone.At(*Date::FromYmd(2026, 7, 1), 0, 0)));
  for (const char* wrong : {"01.07.2026 24:00", "01.07.2026 9", "01.07.2026 9:60", "9:05"})
    EXPECT_FALSE(ParseValue(wrong, format).Ok()) << wrong;
}

struct ParseRow {
  const char* text;
  TextFormat format;
  Variant value;
};

TEST(TextFormat, ReadsWhatPeopleType) {
  const Date day = *Date::FromYmd(2026, 3, 5);
  const ParseRow kRows[] = {
      {"   ", Of(ValueKind::Int32), Variant()},
      {" \u00a0", Of(ValueKind::String), Variant()},
      {" 42 ", Of(ValueKind::Int16), 42},
      {"1 234", Of(ValueKind::Int32), 1234},
      {"9223372036854775807", Of(ValueKind::Code), std::int64_t{9223372036854775807}},
      {"12,5", Of(ValueKind::Amount), Decimal(125000, 4)},
      {"12.5", Of(ValueKind::Amount), Decimal(125000, 4)},
      {"3\u2009878,28", Of(ValueKind::Amount, 2), Decimal(38782800, 4)},
      {"3\u00a0878,2800", Of(ValueKind::Amount, 2), Decimal(38782800, 4)},
      {"-0,0004", Of(ValueKind::Amount), Decimal(-4, 4)},
      {"1,9558300", Of(ValueKind::Rate, 7), Decimal(19558300, 7)},
      {"2,675", Of(ValueKind::Double), 2.675},
      {"да", Of(ValueKind::Bool), true},
      {"НЕ", Of(ValueKind::Bool), false},
      {"5.3.2026", Of(ValueKind::Date), day},
      {"05/03/2026", Of(ValueKind::Date), day},
      {"5,3,2026", Of(ValueKind::Date), day},
      {"20260305", Of(ValueKind::Date), day},
      {" с интервали ", Of(ValueKind::Memo), " с интервали "},
  };
  for (const ParseRow& row : kRows) {
    const Answer<Variant> read = ParseValue(row.text, row.format);
    ASSERT_TRUE(read.Ok()) << row.text << ": " << read.GetFailure().message;
    EXPECT_EQ(*read, row.value) << row.text;
  }
}

struct RefusalRow {
  const char* text;
  TextFormat format;
  const char* sentence;
};

TEST(TextFormat, SaysWhatCannotBeReadAndWhatCan) {
  TextFormat shortText = Of(ValueKind::String);
  shortText.size = 3;
  const RefusalRow kRows[] = {
      {"05.03.0026", Of(ValueKind::Date),
       "„05.03.0026“ е с невъзможна година. Въведете година от 1900 до 2999."},
      {"32.01.2026", Of(ValueKind::Date), "„32.01.2026“ не е дата. Въведете ден.месец.година."},
      {"абв", Of(ValueKind::Int32), "„абв“ не е число. Въведете само цифри."},
      {"2,5", Of(ValueKind::Int32), "„2,5“ не е цяло число. Въведете го без десетични знаци."},
      {"256", Of(ValueKind::Byte), "„256“ е извън допустимите граници: от 0 до 255."},
      {"9223372036854775808", Of(ValueKind::Code), "„9223372036854775808“ е твърде голямо число."},
      {"1,23456", Of(ValueKind::Amount), "„1,23456“ има повече от 4 знака след запетаята."},
      {"1,234", Of(ValueKind::Amount, 2), "„1,234“ има повече от 2 знака след запетаята."},
      {"1,5", Of(ValueKind::Amount, 0), "„1,5“ не е цяло число. Въведете го без десетични знаци."},
      {"1,2,3", Of(ValueKind::Double), "„1,2,3“ не е число. Въведете цифри и десетична запетая."},
      {"може би", Of(ValueKind::Bool), "„може би“ не е отговор. Въведете Да или Не."},
      {"дълъг", shortText, "Текстът е по-дълъг от 3 знака."},
  };
  for (const RefusalRow& row : kRows) {
    const Answer<Variant> read = ParseValue(row.text, row.format);
    ASSERT_FALSE(read.Ok()) << row.text;
    EXPECT_EQ(read.GetFailure(), (Failure{FailureKind::Refused, row.sentence}));
  }
}

TEST(TextFormat, TextBecomesTheValueItCameFrom) {
  for (std::int64_t mantissa = -1234567890123456789; mantissa < 1234567890123456789;
       mantissa += 98765432109876543) {
    const TextFormat amount = Of(ValueKind::Amount, 4, true);
    const Variant value(Decimal(mantissa, 4));
    EXPECT_EQ(*ParseValue(FormatValue(value, amount), amount), value);
    const TextFormat code = Of(ValueKind::Code);
    EXPECT_EQ(*ParseValue(FormatValue(mantissa, code), code), Variant(mantissa));
  }
  for (int days = -25000; days < 376000; days += 997) {
    const TextFormat date = Of(ValueKind::Date);
    EXPECT_EQ(*ParseValue(FormatValue(Date{days}, date), date), Variant(Date{days}));
  }
}

}  // namespace
}  // namespace orvane::data
