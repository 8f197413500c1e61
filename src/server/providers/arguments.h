#pragma once

// What a method takes: its arguments by position, named, with the kinds that the method goes on to
// read them as. Checked before anything of them is used, so that a value of a wrong kind is told by
// the argument's name instead of failing somewhere behind it.

#include <span>
#include <string_view>

#include "packet/failure.h"
#include "packet/value_kind.h"
#include "packet/variant.h"

namespace orvane::server {

enum class Need : std::uint8_t {
  Optional,
  Needed,
  OrText,  ///< may be left out, and a number may travel as text
};

struct Argument {
  std::string_view name;
  ValueKind kind = ValueKind::Int32;
  Need need = Need::Optional;
};

/// BadRequest when `given` are not as many as `taken` (or as `size` says, where more are sent than
/// are looked at), or one of them is not of its kind.
Answer<Done> CheckArguments(std::string_view method, std::span<const Argument> taken,
                            const VariantArray& given, std::size_t size = 0);

}  // namespace orvane::server
