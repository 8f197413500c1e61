#pragma once

// Values as text that reads back exactly, for what the server keeps for itself: answers under
// client keys, continuations of portions. Packets are not kept; they read back as Null.

#include <optional>
#include <string>
#include <string_view>

#include "packet/variant.h"

namespace orvane::server {

std::string EncodeValue(const Variant& value);
/// Empty when the text is no encoded value, or more than one.
std::optional<Variant> DecodeValue(std::string_view text);

}  // namespace orvane::server
