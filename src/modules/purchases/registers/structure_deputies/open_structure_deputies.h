#pragma once

#include "host/action.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::modules {

/// F8 of the registers that lead to the deputies: opens their screen over `opener`, at its point
/// and with its access, until it is closed.
TAction StructureDeputiesAction(TVosBaseForm& opener);

}  // namespace orvane::modules
