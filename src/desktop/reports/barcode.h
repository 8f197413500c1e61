#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::desktop {

/// Widths of bars and gaps in turn, beginning with a bar, in modules; Code 128, digits in pairs.
/// Empty for an empty text and for characters outside of printable ASCII.
std::optional<std::vector<int>> Code128(std::string_view text);

}  // namespace orvane::desktop
