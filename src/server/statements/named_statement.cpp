#include "server/statements/named_statement.h"

#include <algorithm>
#include <cassert>

namespace orvane::server {
namespace {

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

}  // namespace

Statement Named(std::string_view text, const NamedValues& values,
                std::vector<ResultColumn> columns) {
  Statement statement;
  statement.columns = std::move(columns);
  std::vector<std::string_view> names;
  statement.text.reserve(text.size() + 8);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t colon = std::min(text.find(':', i), text.size());
    statement.text += text.substr(i, colon - i);
    i = colon;
    const bool named = i + 1 < text.size() && IsNameCharacter(text[i + 1]);
    if (!named) {
      if (i < text.size()) statement.text += text[i];
      continue;
    }
    std::size_t end = i + 1;
    while (end < text.size() && IsNameCharacter(text[end]))
      ++end;
    const std::string_view name = text.substr(i + 1, end - i - 1);
    const auto known = std::find(names.begin(), names.end(), name);
    const auto position = static_cast<std::size_t>(known - names.begin());
    if (known == names.end()) {
      const Variant* value = FindValue(values, name);
      assert(value != nullptr && "every parameter of a statement has a value");
      names.push_back(name);
      statement.params.push_back(value ? *value : Variant());
    }
    statement.text += '?' + std::to_string(position + 1);
    i = end - 1;
  }
  return statement;
}

std::vector<ResultColumn> ColumnsOf(const ProviderDef& provider) {
  std::vector<ResultColumn> columns;
  for (const FieldDef& field : provider.fields)
    columns.push_back({std::string(field.name), field.kind, field.size});
  return columns;
}

}  // namespace orvane::server
