#include "server/classes/server_classes.h"

namespace orvane::server {

std::vector<ServerClass> MakeServerClasses() {
  return {
      TsmSQL(),
      TsmParameters(),
      TsmDepartment(),
      TsmEmployeesFinSupp(),
      TsmStructure(),
      TsmStructureDeputies(),
      TsmLevelsApproval(),
      TsmAdmissibleNotifiers(),
      TsmPurchaseOrder(),
      TsmPurchaseOrderReport(),
      TsmKindSupplies(),
      TsmCapExPlan(),
      TsmSuppliesContracts(),
      TsmSuppManifacOrder(),
      TsmSuppManifacOrderReport(),
  };
}

}  // namespace orvane::server
