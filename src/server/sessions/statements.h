#pragma once

// Statements written where they are run.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "server/engine/database.h"

namespace orvane::server {

/// A statement without a result.
inline Statement Command(std::string_view text, VariantArray params = {}) {
  return {std::string(text), std::move(params), {}};
}

inline Statement Select(std::string_view text, VariantArray params,
                        std::vector<ResultColumn> columns) {
  return {std::string(text), std::move(params), std::move(columns)};
}

}  // namespace orvane::server
