#pragma once

#include <vector>

#include "server/providers/server_class.h"

namespace orvane::server {

/// Every server class of the installation. A new class is a line here and a file in this folder.
std::vector<ServerClass> MakeServerClasses();

ServerClass TsmAdmissibleNotifiers();
ServerClass TsmCapExPlan();
ServerClass TsmDepartment();
ServerClass TsmEmployeesFinSupp();
ServerClass TsmKindSupplies();
ServerClass TsmLevelsApproval();
ServerClass TsmParameters();
ServerClass TsmPurchaseOrder();
ServerClass TsmPurchaseOrderReport();
ServerClass TsmSQL();
ServerClass TsmStructure();
ServerClass TsmStructureDeputies();
ServerClass TsmSuppManifacOrder();
ServerClass TsmSuppManifacOrderReport();
ServerClass TsmSuppliesContracts();

}  // namespace orvane::server
