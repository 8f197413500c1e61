#include "packet/typed_number.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "packet/fold.h"

namespace orvane {
namespace {

constexpr std::string_view kBlanks[] = {" ",      "\t",     "\n",     "\r",     "\u00A0",
                                        "\u2007", "\u2009", "\u200A", "\u202F", "\uFEFF"};
constexpr std::string_view kMinus = "\u2212";
/// Signs and names of currencies, folded, as they stand behind amounts.
constexpr std::string_view kCurrencies[] = {"ЛВ.", "ЛВ",   "ЛЕВА", "ЛЕВ", "BGN", "€",
                                            "EUR", "ЕВРО", "$",    "USD", "£",   "GBP"};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsMark(char c) {
  return c == ',' || c == '.';
}

Failure Told(std::string_view text, const std::string& sentence) {
  return {FailureKind::Refused, "„" + std::string(text) + "“ " + sentence};
}

std::string_view WithoutBlanks(std::string_view text) {
  while (const std::size_t length = BlankLength(text))
    text.remove_prefix(length);
  for (bool found = true; found;) {
    found = false;
    for (const std::string_view blank : kBlanks) {
      if (!text.ends_with(blank)) continue;
      text.remove_suffix(blank.size());
      found = true;
    }
  }
  return text;
}

std::string_view WithoutCurrency(std::string_view text) {
  const std::size_t end = text.find_last_of("0123456789,");
  const std::size_t point = text.find('.', end == std::string_view::npos ? 0 : end);
  const bool pointed = end != std::string_view::npos && point == end + 1;
  const std::size_t begin = end == std::string_view::npos ? 0 : end + (pointed ? 2 : 1);
  const std::string behind = Fold(WithoutBlanks(text.substr(begin)));
  const bool currency = std::ranges::any_of(
      kCurrencies, [&](std::string_view known) { return Fold(known) == behind; });
  return currency ? WithoutBlanks(text.substr(0, begin)) : text;
}

/// A number taken apart: digits, with the marks and blanks between them as they were written.
struct Written {
  bool negative = false;
  std::string digits;  ///< blanks as ' '
};

std::optional<Written> TakeApart(std::string_view text) {
  Written written;
  for (const std::string_view sign : {std::string_view("-"), kMinus, std::string_view("+")}) {
    if (!text.starts_with(sign)) continue;
    written.negative = sign != "+";
    text = WithoutBlanks(text.substr(sign.size()));
    break;
  }
  bool any = false;
  while (!text.empty()) {
    const std::size_t blank = BlankLength(text);
    if (blank == 0 && !IsDigit(text.front()) && !IsMark(text.front())) return std::nullopt;
    any = any || IsDigit(text.front());
    written.digits += blank == 0 ? text.front() : ' ';
    text.remove_prefix(blank == 0 ? 1 : blank);
  }
  return any ? std::optional(written) : std::nullopt;
}

/// The digits of a whole part whose thousands are parted by `mark`, or not at all; empty when they
/// are parted otherwise than into threes.
std::optional<std::string> Joined(std::string_view whole, char mark) {
  const std::size_t first = whole.find(mark);
  if (first == std::string_view::npos) return std::string(whole);
  if (first == 0 || first > 3) return std::nullopt;
  std::string digits(whole.substr(0, first));
  for (std::size_t at = first; at < whole.size(); at += 4) {
    const std::string_view group = whole.substr(at + 1, 3);
    if (whole[at] != mark || group.size() != 3 || !std::ranges::all_of(group, IsDigit))
      return std::nullopt;
    digits += group;
  }
  return digits;
}

/// Whole part and decimals of what was written; empty when it is no number.
struct Parts {
  std::string whole;
  std::string decimals;
  bool twoWays = false;  ///< the decimals may be thousands as well
  char mark = ' ';       ///< before the decimals
};

std::optional<Parts> PartsOf(std::string_view text) {
  const auto count = [&](char c) { return std::ranges::count(text, c); };
  const std::size_t last = text.find_last_of(",.");
  const bool grouped = last != std::string_view::npos && count(text[last]) > 1;
  if (grouped || last == std::string_view::npos) {
    if (grouped && (count(',') > 0) + (count('.') > 0) + (count(' ') > 0) > 1) return std::nullopt;
    const auto whole = Joined(text, grouped ? text[last] : ' ');
    if (!whole || whole->find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    return Parts{*whole, {}};
  }
  Parts parts{.whole = {}, .decimals = std::string(text.substr(last + 1)), .mark = text[last]};
  const std::string_view before = text.substr(0, last);
  const char other = text[last] == ',' ? '.' : ',';
  const bool pointed = before.find(other) != std::string_view::npos;
  const auto whole = Joined(before, pointed ? other : ' ');
  if (!whole || whole->find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  if (!std::ranges::all_of(parts.decimals, IsDigit)) return std::nullopt;
  parts.whole = *whole;
  parts.twoWays = before == *whole && parts.decimals.size() == 3 && !whole->empty() &&
                  whole->size() <= 3 && !whole->starts_with('0');
  return parts;
}

std::string WithoutZeros(std::string text, bool atEnd) {
  if (!atEnd) return text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
  while (text.ends_with('0'))
    text.pop_back();
  return text;
}

std::string Sentence(int decimals) {
  if (decimals == 0) return "не е цяло число. Въведете го без десетични знаци.";
  return "има повече от " + std::to_string(decimals) + (decimals == 1 ? " знак" : " знака") +
         " след запетаята.";
}

}  // namespace

std::size_t BlankLength(std::string_view text) {
  for (const std::string_view blank : kBlanks) {
    if (text.starts_with(blank)) return blank.size();
  }
  return 0;
}

Answer<Decimal> ReadNumber(std::string_view text, const WantedNumber& wanted) {
  const std::string_view typed = WithoutBlanks(text);
  const auto written = TakeApart(wanted.money ? WithoutCurrency(typed) : typed);
  const auto parts = written ? PartsOf(written->digits) : std::nullopt;
  if (!parts) {
    return Told(typed, wanted.decimals == 0 ? "не е число. Въведете само цифри."
                                            : "не е число. Въведете цифри и десетична запетая.");
  }
  const std::string sign = written->negative ? "-" : "";
  const std::string decimals = WithoutZeros(parts->decimals, true);
  const std::string fraction = decimals.empty() ? std::string() : "," + decimals;
  const auto places = static_cast<std::size_t>(wanted.decimals);
  const bool comma = parts->mark == ',';
  if (comma && decimals.size() > places) return Told(typed, Sentence(wanted.decimals));
  if (parts->twoWays && !(comma && wanted.decimals >= 3)) {
    const std::string thousands = sign + parts->whole + parts->decimals;
    return Told(typed, "може да се прочете като " + thousands + " и като " + sign + parts->whole +
                           fraction + ". Въведете го по единия от тези два начина.");
  }
  if (decimals.size() > places) return Told(typed, Sentence(wanted.decimals));
  std::string digits = WithoutZeros(parts->whole, false);
  const auto number = Decimal::Parse(sign + (digits.empty() ? "0" : digits) + fraction);
  if (!number) return Told(typed, "е твърде голямо число.");
  return *number;
}

}  // namespace orvane
