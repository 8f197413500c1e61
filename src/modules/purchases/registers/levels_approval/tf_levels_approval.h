#pragma once

#include <memory>

#include "host/form.h"
#include "modules/purchases/registers/levels_approval/tdm_levels_approval.h"

namespace orvane {

/// Created once at the module's start, never shown then: it only holds the data module that asks
/// for the current employee.
class TfLevelsApproval : public TVosDBForm {
 public:
  explicit TfLevelsApproval(const FormIdentity& identity);

  /// The employee code of the logged-in user; Null when he has no employee record, -1 when he has
  /// more than one.
  Variant GetCurremtEmployee();

 private:
  std::unique_ptr<TdmLevelsApproval> dmLevelsApproval;
};

}  // namespace orvane
