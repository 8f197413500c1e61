#include "packet/date.h"

#include <array>
#include <cassert>
#include <charconv>
#include <chrono>

namespace orvane {
namespace {

using std::chrono::days;
using std::chrono::last;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr std::int64_t kMicrosPerSecond = 1'000'000;
constexpr std::int64_t kMicrosPerMinute = 60 * kMicrosPerSecond;
constexpr std::int64_t kMicrosPerHour = 60 * kMicrosPerMinute;
constexpr std::int64_t kMicrosPerDay = 24 * kMicrosPerHour;

year_month_day CalendarDay(Date date) {
  return sys_days(days(date.days));
}

bool IsDigits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// `text` is one to four digits.
int Number(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Zero-filled on the left to `width`.
std::string Padded(std::int64_t number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

/// When summer time begins or ends: 01:00 UTC on the month's last Sunday.
std::int64_t ChangeOfTime(year inYear, std::chrono::month month) {
  const sys_days sunday(inYear / month / std::chrono::Sunday[last]);
  return sunday.time_since_epoch().count() * kMicrosPerDay + kMicrosPerHour;
}

bool IsSummer(std::int64_t micros) {
  const Date day{static_cast<std::int32_t>(FloorDivide(micros, kMicrosPerDay))};
  const year inYear = CalendarDay(day).year();
  return micros >= ChangeOfTime(inYear, std::chrono::March) &&
         micros < ChangeOfTime(inYear, std::chrono::October);
}

}  // namespace

std::optional<Date> Date::FromYmd(int year, int month, int day) {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
    return std::nullopt;
  }
  const year_month_day calendarDay(std::chrono::year(year),
                                   std::chrono::month(static_cast<unsigned>(month)),
                                   std::chrono::day(static_cast<unsigned>(day)));
  if (!calendarDay.ok()) return std::nullopt;
  return Date{static_cast<std::int32_t>(sys_days(calendarDay).time_since_epoch().count())};
}

std::optional<Date> Date::Parse(std::string_view text) {
  if (text.size() == 8 && IsDigits(text)) {
    return FromYmd(Number(text.substr(0, 4)), Number(text.substr(4, 2)), Number(text.substr(6)));
  }
  const std::size_t first = text.find('.');
  if (first != 1 && first != 2) return std::nullopt;
  const std::size_t second = text.find('.', first + 1);
  if (second != first + 2 && second != first + 3) return std::nullopt;
  const std::string_view day = text.substr(0, first);
  const std::string_view month = text.substr(first + 1, second - first - 1);
  const std::string_view year = text.substr(second + 1);
  if (year.size() != 4 || !IsDigits(day) || !IsDigits(month) || !IsDigits(year)) {
    return std::nullopt;
  }
  return FromYmd(Number(year), Number(month), Number(day));
}

int Date::Year() const {
  return static_cast<int>(CalendarDay(*this).year());
}
int Date::Month() const {
  return static_cast<int>(static_cast<unsigned>(CalendarDay(*this).month()));
}
int Date::Day() const {
  return static_cast<int>(static_cast<unsigned>(CalendarDay(*this).day()));
}

std::string Date::ToText() const {
  return Padded(Day(), 2) + '.' + Padded(Month(), 2) + '.' + Padded(Year(), 4);
}

std::int64_t TimeZone::WallClockOf(Stamp moment) const {
  const bool summer = europeanSummerTime && IsSummer(moment.micros);
  return moment.micros + offsetMinutes * kMicrosPerMinute + (summer ? kMicrosPerHour : 0);
}

Date TimeZone::DayOf(Stamp moment) const {
  return {static_cast<std::int32_t>(FloorDivide(WallClockOf(moment), kMicrosPerDay))};
}

Stamp TimeZone::At(Date day, int hour, int minute, int second) const {
  const std::int64_t wall = day.days * kMicrosPerDay + hour * kMicrosPerHour +
                            minute * kMicrosPerMinute + second * kMicrosPerSecond;
  const std::int64_t standard = wall - offsetMinutes * kMicrosPerMinute;
  const std::int64_t summer = standard - kMicrosPerHour;
  return {europeanSummerTime && IsSummer(summer) ? summer : standard};
}

std::string TimeZone::ToText(Stamp moment) const {
  const std::int64_t wall = WallClockOf(moment);
  const std::int64_t day = FloorDivide(wall, kMicrosPerDay);
  const std::int64_t minutes = (wall - day * kMicrosPerDay) / kMicrosPerMinute;
  return Date{static_cast<std::int32_t>(day)}.ToText() + ' ' + Padded(minutes / 60, 2) + ':' +
         Padded(minutes % 60, 2);
}

std::string TimeZone::ToTextWithSeconds(Stamp moment) const {
  const std::int64_t seconds = FloorDivide(moment.micros, kMicrosPerSecond);
  const std::int64_t second = seconds - FloorDivide(seconds, 60) * 60;
  return ToText(moment) + ':' + Padded(second, 2);
}

}  // namespace orvane
