#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "packet/variant.h"
#include "server/dialect/search.h"

namespace orvane::server::dialect {

/// A portion's last order values as a text for the client to send back.
std::string WriteContinuation(std::uint64_t fingerprint, std::span<const Variant> values);

/// The values of a continuation; empty when it belongs to another search, has other values than
/// the order, or is no continuation at all.
std::optional<VariantArray> ReadContinuation(std::string_view text, std::uint64_t fingerprint,
                                             std::span<const ValueKind> kinds);

}  // namespace orvane::server::dialect
