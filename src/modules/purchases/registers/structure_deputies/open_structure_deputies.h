#pragma once

#include "host/action.h"

namespace orvane {

class TVosBaseForm;

/// F8 of the registers that lead to the deputies: opens their screen over `opener`, at its point
/// and with its access, until it is closed.
TAction StructureDeputiesAction(TVosBaseForm& opener);

}  // namespace orvane
