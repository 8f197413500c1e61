#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "packet/failure.h"

namespace orvane::server {

/// A row of a CSV file and the line it begins on.
struct CsvRow {
  int line = 0;
  std::vector<std::string> values;
};

/// Reads CSV in UTF-8: parted by semicolons, or by commas when the first line has no semicolon;
/// texts with either, with quotes (doubled) or line ends stand in quotes. Empty lines are no rows.
/// Refused, naming the line, when a quote is not closed or a row is not as wide as the first.
Answer<std::vector<CsvRow>> ReadCsv(std::string_view text);

}  // namespace orvane::server
