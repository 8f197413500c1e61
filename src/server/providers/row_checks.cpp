#include "server/providers/row_checks.h"

#include "packet/decimal.h"

namespace orvane::server {
namespace {

bool IsWithin(const Variant& value, const RangeRule& rule) {
  const auto number = value.AsDecimal();
  return !number || (*number >= Decimal(rule.lowest, 0) && *number <= Decimal(rule.highest, 0));
}

}  // namespace

Answer<Done, Setback> WithinRanges(std::span<const PreparedChange> changes,
                                   std::span<const RangeRule> rules) {
  for (const PreparedChange& prepared : changes) {
    for (const RangeRule& rule : rules) {
      const Variant* value = FindValue(prepared.change.after, rule.field.name);
      if (value && !IsWithin(*value, rule))
        return Setback{Refused(std::string(rule.sentence)), false};
    }
  }
  return Done{};
}

Variant AfterChange(const Change& change, const NamedValues& row, const FieldDef& field) {
  if (const Variant* value = FindValue(change.after, field.name)) return *value;
  const Variant* present = FindValue(row, field.name);
  return present ? *present : Variant();
}

}  // namespace orvane::server
