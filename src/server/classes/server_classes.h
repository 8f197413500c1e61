#pragma once

#include <vector>

#include "server/providers/server_class.h"

namespace orvane {

/// Every server class of the installation. A new class is a line here and a file in this folder.
std::vector<ServerClass> MakeServerClasses();

ServerClass TsmDepartment();
ServerClass TsmLevelsApproval();
ServerClass TsmParameters();
ServerClass TsmPurchaseOrder();
ServerClass TsmPurchaseOrderReport();
ServerClass TsmSQL();

}  // namespace orvane
