#pragma once

#include "packet/floors.h"

/// What the suites share sees every floor, and every test sees it.
namespace orvane {

namespace support {
using namespace apps;
}
using namespace support;

}  // namespace orvane
