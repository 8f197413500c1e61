#include "server/classes/server_classes.h"

namespace orvane {

std::vector<ServerClass> MakeServerClasses() {
  return {
      TsmSQL(),           TsmParameters(),          TsmDepartment(), TsmLevelsApproval(),
      TsmPurchaseOrder(), TsmPurchaseOrderReport(),
  };
}

}  // namespace orvane
