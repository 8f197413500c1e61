#pragma once

#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
class VosApplication;
}  // namespace orvane::host

namespace orvane::kit {

/// Whether a user of this level may not work without an employee record.
bool NeedsEmployee(const VosApplication& app);

/// Refuses (message and Abort) to create the screen for a user who must have an employee record and
/// has none.
void RequireEmployee(TVosBaseForm& form, std::string_view text);

}  // namespace orvane::kit
