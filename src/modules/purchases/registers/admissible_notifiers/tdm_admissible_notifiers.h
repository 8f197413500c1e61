#pragma once

// Admissible requesters: the dataset of the register, its lists, and the check of a row.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TfAdmissibleNotifiers;

class TdmAdmissibleNotifiers : public TVosDataModule {
 public:
  explicit TdmAdmissibleNotifiers(TfAdmissibleNotifiers& form);

  /// Fetches the lists and the pairs in one call.
  void Fetch();

  TVosSQLConnection sqlcAdmissibleNotifiers;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsAdmissibleNotifiers;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsEmployees;
  TLookupTable costCenters;
  TLookupTable employees;
  TDataSource dsAdmissibleNotifiers;

 private:
  void cdsAdmissibleNotifiersBeforePost();

  TfAdmissibleNotifiers& form_;
};

}  // namespace orvane::modules
