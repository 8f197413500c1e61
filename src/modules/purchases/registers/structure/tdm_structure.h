#pragma once

// Organisational structure: the dataset of the register and the lists its codes are chosen from.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TdmStructure : public TVosDataModule {
 public:
  explicit TdmStructure(TVosDBForm& form);

  /// Fetches the lists and the structure with names in the language of the screen; one call.
  void Fetch();

  TVosSQLConnection sqlcStructure;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsStructure;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsDepartments;
  TVosClientDataSet cdsSections;
  TLookupTable costCenters;
  TLookupTable departments;
  TLookupTable sections;
  TDataSource dsStructure;

 private:
  TVosDBForm& form_;
};

}  // namespace orvane::modules
