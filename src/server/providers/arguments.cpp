#include "server/providers/arguments.h"

namespace orvane::server {
namespace {

Failure Misgiven(std::string_view method, std::string_view sentence) {
  return {FailureKind::BadRequest,
          "Методът „" + std::string(method) + "“ " + std::string(sentence)};
}

/// Whether what the method reads the value as is there: a number with a point is no whole one, even
/// when nothing stands behind the point.
bool IsReadAs(ValueKind kind, const Variant& value) {
  if (kind == ValueKind::Bool) return value.AsBool().has_value();
  return kind == ValueKind::String || value.AsInt().has_value();
}

}  // namespace

Answer<Done> CheckArguments(std::string_view method, std::span<const Argument> taken,
                            const VariantArray& given, std::size_t size) {
  const std::size_t wanted = size == 0 ? taken.size() : size;
  if (given.size() != wanted) {
    return Misgiven(method, "очаква " + std::to_string(wanted) + " аргумента, а не " +
                                std::to_string(given.size()) + ".");
  }
  for (std::size_t i = 0; i < taken.size(); ++i) {
    const Argument& argument = taken[i];
    const std::string name = "„" + std::string(argument.name) + "“";
    if (given[i].IsNull()) {
      if (argument.need == Need::Needed) return Misgiven(method, "очаква аргумента " + name + ".");
      continue;
    }
    if (argument.need == Need::OrText && given[i].AsString()) continue;
    const auto kept = given[i].As(argument.kind);
    if (!kept) {
      return Misgiven(method, "не приема аргумента " + name + ": " + kept.GetFailure().message);
    }
    if (!IsReadAs(argument.kind, given[i])) {
      return Misgiven(method, "не приема аргумента " + name + ".");
    }
  }
  return Done{};
}

}  // namespace orvane::server
