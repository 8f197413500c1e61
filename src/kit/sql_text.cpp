#include "kit/sql_text.h"

namespace orvane::kit {
namespace {

std::string Padded(int number, std::size_t width) {
  std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace

std::string QuotedSql(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += c;
    quoted += c;
  }
  return quoted + "'";
}

std::string MSSQLDATE_Client(Date day) {
  return "'" + Padded(day.Year(), 4) + Padded(day.Month(), 2) + Padded(day.Day(), 2) + "'";
}

}  // namespace orvane::kit
