#pragma once

// Calendar days and moments. A Date is a day of the company's calendar; a Stamp is a moment in UTC,
// which becomes a wall-clock text only in a TimeZone.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A day, counted from 1 January 1970 (proleptic Gregorian calendar).
struct Date {
  std::int32_t days = 0;

  /// Empty when the day does not exist or lies outside the years 1 to 9999.
  static std::optional<Date> FromYmd(int year, int month, int day);
  /// Reads "d.m.yyyy", "dd.mm.yyyy" and "yyyymmdd"; empty for anything else.
  static std::optional<Date> Parse(std::string_view text);

  int Year() const;
  int Month() const;
  int Day() const;
  Date PlusDays(int count) const { return {days + count}; }
  /// "dd.mm.yyyy".
  std::string ToText() const;

  auto operator<=>(const Date&) const = default;
};

/// A moment: microseconds since 1970-01-01 00:00 UTC.
struct Stamp {
  std::int64_t micros = 0;

  auto operator<=>(const Stamp&) const = default;
};

/// The zone in which a company keeps its days: a fixed offset from UTC, with or without the
/// European summer time (last Sunday of March to last Sunday of October, changing at 01:00 UTC).
struct TimeZone {
  std::int32_t offsetMinutes = 120;
  bool europeanSummerTime = true;

  Date DayOf(Stamp moment) const;
  /// Microseconds since 1970-01-01 00:00 that the wall clock of the zone shows at that moment.
  std::int64_t WallClockOf(Stamp moment) const;
  /// Wall-clock moment back to UTC; in the hour that happens twice, the earlier one.
  Stamp At(Date day, int hour, int minute, int second = 0) const;
  /// "dd.mm.yyyy hh:mm".
  std::string ToText(Stamp moment) const;
  /// "dd.mm.yyyy hh:mm:ss".
  std::string ToTextWithSeconds(Stamp moment) const;

  bool operator==(const TimeZone&) const = default;
};

}  // namespace orvane
