#pragma once

#include <string>
#include <string_view>

namespace orvane::server {

/// The text with every `mark` replaced: how an expression kept with holes ("{t}", "{today}") meets
/// the alias and the day of one statement.
std::string Replaced(std::string_view text, std::string_view mark, std::string_view by);

}  // namespace orvane::server
