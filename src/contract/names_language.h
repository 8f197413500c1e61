#pragma once

#include "contract/field.h"

namespace orvane {

/// Parameter of providers that join one name per code: 1 the first language, 2 the second. A row
/// without a second name answers its first one.
inline constexpr auto LNG = Byte("LNG");

}  // namespace orvane
