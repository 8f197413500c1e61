#pragma once

// Employees financing supplies: the dataset of the register, its lists, and the check of a row.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TfEmployeesFinSupp;

class TdmEmployeesFinSupp : public TVosDataModule {
 public:
  explicit TdmEmployeesFinSupp(TfEmployeesFinSupp& form);

  /// Fetches the lists and the register with names in the language of the screen; one call.
  void Fetch();

  TVosSQLConnection sqlcEmployeesFinSupp;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsEmployeesFinSupp;
  TVosClientDataSet cdsEmployees;
  TVosClientDataSet cdsNomIn246;
  TLookupTable employees;
  TLookupTable nomIn246;
  TDataSource dsEmployeesFinSupp;

 private:
  void cdsEmployeesFinSuppLocateKindSectionChange();
  void cdsEmployeesFinSuppBeforePost();

  TfEmployeesFinSupp& form_;
};

}  // namespace orvane::modules
