#include "modules/purchases/registers/levels_approval/tdm_levels_approval.h"

#include "contract/system.h"

namespace orvane {

TdmLevelsApproval::TdmLevelsApproval(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcLevelsApproval(Session(), Point(), system::kLevelsApprovalClass) {}

std::int64_t TdmLevelsApproval::GetCurremtEmployee(std::string_view userName) {
  const VariantArray answer =
      sqlcLevelsApproval.Call(system::kGetCurrentEmployee, {Variant(userName)});
  sqlcLevelsApproval.Close();
  return answer.empty() ? 0 : answer.front().AsInt().value_or(0);
}

}  // namespace orvane
