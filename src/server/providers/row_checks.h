#pragma once

// Checks of single values that registers share, for their beforeWrite.

#include <cstdint>
#include <span>
#include <string_view>

#include "contract/field.h"
#include "server/providers/work.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// A number lies between two bounds, both included.
struct RangeRule {
  FieldDef field;
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
  std::string_view sentence;
};

/// Refused with the sentence of the first rule that a written value breaks.
Answer<Done, Setback> WithinRanges(std::span<const PreparedChange> changes,
                                   std::span<const RangeRule> rules);

/// The value that the row has after the change: the new one, else the present one of `row`.
Variant AfterChange(const Change& change, const NamedValues& row, const FieldDef& field);

}  // namespace orvane::server
