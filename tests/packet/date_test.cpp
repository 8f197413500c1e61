#include "packet/date.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "packet/clock.h"

namespace orvane {
namespace {

constexpr TimeZone kSofia{120, true};

Stamp Seconds(std::int64_t seconds) {
  return {seconds * 1'000'000};
}

TEST(Date, CountsDaysAsTheCalendarDoes) {
  const struct {
    int year, month, day;
    std::int32_t days;  // from date(1)
  } rows[] = {
      {1970, 1, 1, 0},         {2000, 2, 29, 11016}, {1900, 3, 1, -25508}, {2024, 12, 31, 20088},
      {9999, 12, 31, 2932896}, {1, 1, 1, -719162},   {2026, 3, 5, 20517},
  };
  for (const auto& row : rows) {
    const auto date = Date::FromYmd(row.year, row.month, row.day);
    ASSERT_TRUE(date);
    EXPECT_EQ(date->days, row.days) << date->ToText();
  }
}

TEST(Date, GoesThroughEveryDayInOrder) {
  Date day = *Date::FromYmd(1896, 1, 1);
  for (int i = 0; i < 366 * 400; ++i, day = day.PlusDays(1)) {
    const auto again = Date::FromYmd(day.Year(), day.Month(), day.Day());
    ASSERT_EQ(again, day);
    ASSERT_EQ(Date::Parse(day.ToText()), day) << day.ToText();
  }
}

TEST(Date, ReadsThreeSpellingsAndRefusesDaysThatDoNotExist) {
  const struct {
    const char* text;
    const char* read;  // empty: refused
  } rows[] = {
      {"5.3.2026", "05.03.2026"},
      {"05.03.2026", "05.03.2026"},
      {"15.3.2026", "15.03.2026"},
      {"20260305", "05.03.2026"},
      {"29.02.2024", "29.02.2024"},
      {"29.02.2000", "29.02.2000"},
      {"29.02.2025", ""},
      {"29.02.1900", ""},
      {"31.04.2026", ""},
      {"00.01.2026", ""},
      {"01.00.2026", ""},
      {"01.13.2026", ""},
      {"32.01.2026", ""},
      {"01.01.0000", ""},
      {"1.1.26", ""},
      {"1.1.20260", ""},
      {"20261301", ""},
      {"2026-03-05", ""},
      {"5/3/2026", ""},
      {"", ""},
      {"..", ""},
      {".1.2026", ""},
      {"1..2026", ""},
      {"001.1.2026", ""},
      {"+1.-1.2026", ""},
      {"5.3.2026 ", ""},
  };
  for (const auto& row : rows) {
    const auto date = Date::Parse(row.text);
    EXPECT_EQ(date ? date->ToText() : "", row.read) << row.text;
  }
}

TEST(TimeZone, ShowsTheWallClockAcrossBothChangesOfTime) {
  const struct {
    std::int64_t seconds;
    const char* wall;  // from the zone database
  } rows[] = {
      {1774745999, "29.03.2026 02:59:59"}, {1774746000, "29.03.2026 04:00:00"},
      {1792889999, "25.10.2026 03:59:59"}, {1792890000, "25.10.2026 03:00:00"},
      {1901149200, "31.03.2030 04:00:00"}, {1824944399, "31.10.2027 03:59:59"},
      {1767304799, "01.01.2026 23:59:59"}, {1767304800, "02.01.2026 00:00:00"},
      {-7201, "31.12.1969 23:59:59"},
  };
  for (const auto& row : rows) {
    const std::string text = kSofia.ToTextWithSeconds(Seconds(row.seconds));
    EXPECT_EQ(text, row.wall);
    EXPECT_EQ(kSofia.ToText(Seconds(row.seconds)), text.substr(0, 16));
    EXPECT_EQ(kSofia.DayOf(Seconds(row.seconds)).ToText(), text.substr(0, 10));
  }
}

TEST(TimeZone, TheCompanysDayBeginsAtItsOwnMidnight) {
  const Stamp lastSecond = Seconds(1767304799);
  EXPECT_EQ(kSofia.DayOf(lastSecond).PlusDays(1), kSofia.DayOf(Seconds(1767304800)));
  EXPECT_EQ(kSofia.DayOf({lastSecond.micros + 999'999}), kSofia.DayOf(lastSecond));
  EXPECT_EQ(kSofia.DayOf({-1}).ToText(), "01.01.1970");
  EXPECT_EQ((TimeZone{0, false}).DayOf({-1}).ToText(), "31.12.1969");
}

TEST(TimeZone, TurnsWallClockIntoMomentsAlsoInTheDoubledAndTheMissingHour) {
  const Date autumn = *Date::FromYmd(2026, 10, 25);
  const Date spring = *Date::FromYmd(2026, 3, 29);
  EXPECT_EQ(kSofia.At(autumn, 3, 59, 59), Seconds(1792889999));  // the earlier of the two
  EXPECT_EQ(kSofia.At(autumn, 4, 0), Seconds(1792890000 + 3600));
  EXPECT_EQ(kSofia.At(spring, 2, 59, 59), Seconds(1774745999));
  EXPECT_EQ(kSofia.ToText(kSofia.At(spring, 3, 30)), "29.03.2026 04:30");
  EXPECT_EQ(kSofia.At(*Date::FromYmd(2026, 1, 2), 0, 0), Seconds(1767304800));
  EXPECT_EQ((TimeZone{120, false}).At(spring, 12, 0), Seconds(1774778400));
}

TEST(Clock, ASetClockKeepsStampsInOrder) {
  SetClock clock(Seconds(100));
  const Stamp first = clock.Now();
  EXPECT_EQ(first, Seconds(100));
  EXPECT_LT(first, clock.Now());
  clock.Set(Seconds(50));
  EXPECT_EQ(clock.Now(), Seconds(50));
}

}  // namespace
}  // namespace orvane
