#include "data/search_template.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace orvane::data {
namespace {

constexpr std::string_view kHintMacro = "{$WN}";
constexpr std::string_view kWhereMacro = "{$W}";
constexpr std::string_view kAndMacro = "{$WA}";
constexpr std::string_view kOrderMacro = "{$O}";
constexpr std::string_view kHint = "WITH(NOLOCK)";

void ReplaceAll(std::string& text, std::string_view macro, std::string_view with) {
  for (std::size_t at = text.find(macro); at != std::string::npos;
       at = text.find(macro, at + with.size())) {
    text.replace(at, macro.size(), with);
  }
}

/// What LIKE would take for a wildcard stands in brackets.
std::string Literal(std::string_view text) {
  std::string literal;
  for (const char c : text) {
    const bool wild = c == '%' || c == '_' || c == '[';
    if (wild) literal += '[';
    literal += c;
    if (wild) literal += ']';
  }
  return literal;
}

/// Collects conditions as text, and their values as parameters.
class ConditionWriter {
 public:
  explicit ConditionWriter(NamedValues& params) : params_(params) {}

  /// Empty when the condition lets everything through.
  std::string Write(const SearchCondition& condition) {
    if (const std::string* text = condition.value.AsString()) {
      return WriteText(condition.field, condition.match, *text);
    }
    const bool isNumber = std::holds_alternative<std::int64_t>(condition.value.Raw());
    if (isNumber && condition.match == SearchMatch::Begins) {
      return WriteFirstDigits(condition, *condition.value.AsInt());
    }
    return WriteEquals(condition.field, condition.value);
  }

 private:
  std::string WriteText(const std::string& field, SearchMatch match, const std::string& text) {
    if (match == SearchMatch::Equals) return WriteEquals(field, text);
    if (text.empty()) return {};
    const std::string pattern = (match == SearchMatch::Contains ? "%" : "") + Literal(text) + "%";
    return field + " LIKE " + Param(pattern);
  }

  std::string WriteEquals(const std::string& field, const Variant& value) {
    const VariantArray* values = value.AsArray();
    if (values == nullptr) {
      return value.IsNull() ? field + " IS NULL" : field + " = " + Param(value);
    }
    if (values->empty()) return "1 = 0";
    std::string list;
    for (const Variant& one : *values)
      list += (list.empty() ? "" : ", ") + Param(one);
    return field + " IN (" + list + ")";
  }

  /// 20 means 20, 200 to 209, 2000 to 2099 and so on: ranges, which an index answers.
  std::string WriteFirstDigits(const SearchCondition& condition, std::int64_t digits) {
    const std::string& field = condition.field;
    const std::int64_t highest = condition.highest;
    if (digits <= 0) return WriteEquals(field, digits);
    std::string ranges = field + " = " + Param(digits);
    std::int64_t width = 1;
    for (std::int64_t low = digits; low <= highest / 10;) {
      low *= 10;
      width *= 10;
      ranges += " OR " + field + " >= " + Param(low);
      const bool beyond = low > highest - (width - 1);
      ranges += " AND " + field + " <= " + Param(beyond ? highest : low + (width - 1));
    }
    return "(" + ranges + ")";
  }

  std::string Param(const Variant& value) {
    std::string name;
    do {
      name = "Cond" + std::to_string(++count_);
    } while (FindValue(params_, name) != nullptr);
    params_.push_back({name, value});
    return ":" + name;
  }

  NamedValues& params_;
  int count_ = 0;
};

}  // namespace

bool TakesConditions(const std::vector<std::string>& lines) {
  return std::ranges::any_of(lines, [](const std::string& line) {
    return line.find(kWhereMacro) != std::string::npos || line.find(kAndMacro) != std::string::npos;
  });
}

ComposedSearch ComposeSearch(const std::vector<std::string>& lines, const NamedValues& params,
                             const std::vector<SearchCondition>& conditions,
                             std::string_view orderField, bool descending) {
  ComposedSearch search;
  for (const std::string& line : lines) {
    if (!search.sql.empty()) search.sql += '\n';
    search.sql += line;
  }
  search.params = params;
  ConditionWriter writer(search.params);
  std::string joined;
  for (const SearchCondition& condition : conditions) {
    const std::string written = writer.Write(condition);
    if (!written.empty()) joined += (joined.empty() ? "" : " AND ") + written;
  }
  std::string order;
  if (!orderField.empty()) {
    order = "ORDER BY " + std::string(orderField) + (descending ? " DESC" : "");
  }
  ReplaceAll(search.sql, kHintMacro, kHint);
  ReplaceAll(search.sql, kWhereMacro, joined.empty() ? "" : "WHERE " + joined);
  ReplaceAll(search.sql, kAndMacro, joined.empty() ? "" : "AND " + joined);
  ReplaceAll(search.sql, kOrderMacro, order);
  return search;
}

bool IsOffered(const SearchField& field, bool multiLanguage, bool firstLanguage) {
  switch (field.visibility) {
    case Visibility::fvAlways:
      return true;
    case Visibility::fvFirstLang:
      return !multiLanguage || firstLanguage;
    case Visibility::fvSecondLang:
      return multiLanguage && !firstLanguage;
    case Visibility::fvHidden:
      return false;
  }
  return false;
}

}  // namespace orvane::data
