#pragma once

// Departments: the dataset of the register, the users offered as chiefs, and the checks of a row.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TdmDepartment : public TVosDataModule {
 public:
  explicit TdmDepartment(TVosDBForm& form);

  /// Fetches the users and the departments in one call.
  void Fetch();

  TVosSQLConnection sqDepartment;
  TVosSQLConnection sqlcSQL;
  TVosClientDataSet cdsDepartment;
  TVosClientDataSet cdsSysUsers;
  TLookupTable sysUsers;
  TDataSource dsDepartment;

 private:
  void cdsDepartmentBeforePost();

  TVosDBForm& form_;
};

}  // namespace orvane::modules
