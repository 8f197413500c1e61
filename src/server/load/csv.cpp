#include "server/load/csv.h"

#include <algorithm>

namespace orvane::server {
namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
    const std::string_view first = rest_.substr(0, rest_.find('\n'));
    separator_ = first.find(';') == std::string_view::npos ? ',' : ';';
  }

  Answer<std::vector<CsvRow>> All() {
    std::vector<CsvRow> rows;
    while (!rest_.empty()) {
      CsvRow row{line_, {}};
      if (!ReadRow(row))
        return Refused("ред " + std::to_string(row.line) + ": незатворени кавички.");
      if (row.values.size() == 1 && row.values.front().empty()) continue;
      if (!rows.empty() && row.values.size() != rows.front().values.size()) {
        return Refused("ред " + std::to_string(row.line) + ": стойностите са " +
                       std::to_string(row.values.size()) + ", а колоните " +
                       std::to_string(rows.front().values.size()) + ".");
      }
      rows.push_back(std::move(row));
    }
    return rows;
  }

 private:
  char Take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    if (c == '\n') ++line_;
    return c;
  }
  bool At(char c) const { return !rest_.empty() && rest_.front() == c; }

  /// Up to the end of its line; false when a quote is not closed.
  bool ReadRow(CsvRow& row) {
    for (bool more = true; more;) {
      std::string value;
      if (At('"')) {
        Take();
        for (;;) {
          if (rest_.empty()) return false;
          const char c = Take();
          if (c == '"' && !At('"')) break;
          value += c == '"' ? Take() : c;
        }
      }
      while (!rest_.empty() && !At(separator_) && !At('\n'))
        value += Take();
      if (!value.empty() && value.back() == '\r') value.pop_back();
      row.values.push_back(std::move(value));
      more = At(separator_);
      if (!rest_.empty()) Take();
    }
    return true;
  }

  std::string_view rest_;
  char separator_ = ';';
  int line_ = 1;
};

}  // namespace

Answer<std::vector<CsvRow>> ReadCsv(std::string_view text) {
  return Reader(text).All();
}

}  // namespace orvane::server
