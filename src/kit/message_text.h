#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace orvane::kit {

/// The text with each %s replaced by the next value, in order.
std::string Filled(std::string_view text, std::initializer_list<std::string_view> values);

}  // namespace orvane::kit
