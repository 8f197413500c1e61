#pragma once

// Approval levels: for now the question who the current employee is, which the module asks at
// start.

#include <cstdint>
#include <string_view>

#include "data/data_module.h"
#include "host/form.h"

namespace orvane {

class TdmLevelsApproval : public TVosDataModule {
 public:
  explicit TdmLevelsApproval(TVosDBForm& form);

  /// Code of the employee with that login; 0 when there is none, -1 when there is more than one.
  std::int64_t GetCurremtEmployee(std::string_view userName);

  TVosSQLConnection sqlcLevelsApproval;
};

}  // namespace orvane
