#include "modules/purchases/registers/levels_approval/tf_levels_approval.h"

namespace orvane {

TfLevelsApproval::TfLevelsApproval(const FormIdentity& identity)
    : TVosDBForm(identity, "TfLevelsApproval", "Нива на одобрение"),
      dmLevelsApproval(std::make_unique<TdmLevelsApproval>(*this)) {}

Variant TfLevelsApproval::GetCurremtEmployee() {
  const std::int64_t employee = dmLevelsApproval->GetCurremtEmployee(App().UserName());
  return employee == 0 ? Variant() : Variant(employee);
}

}  // namespace orvane
