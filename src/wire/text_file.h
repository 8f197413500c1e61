#pragma once

#include <optional>
#include <string>

namespace orvane::wire {

/// The whole file; empty when it cannot be read.
std::optional<std::string> ReadTextFile(const std::string& path);

}  // namespace orvane::wire
