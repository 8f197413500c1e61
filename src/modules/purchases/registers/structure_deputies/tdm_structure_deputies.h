#pragma once

// Structure deputies: the structural units, the periods of the current one, and the rules of both.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"
#include "kit/master_detail.h"

namespace orvane::modules {

class TfStructureDeputies;

class TdmStructureDeputies : public TVosDataModule {
 public:
  explicit TdmStructureDeputies(TfStructureDeputies& form);

  /// Fetches the lists and the units (one call), then the periods of the first unit (another one).
  void Fetch();

  TVosSQLConnection sqlcStructureDeputies;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsStructureDeputies;
  TVosClientDataSet cdsStructDepDates;
  TVosClientDataSet cdsStructDeptMaxId;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsDepartments;
  TVosClientDataSet cdsSections;
  TVosClientDataSet cdsEmployees;
  TVosClientDataSet cdsNomIn245;
  TLookupTable costCenters;
  TLookupTable departments;
  TLookupTable sections;
  TLookupTable employees;
  TLookupTable nomIn245;
  TDataSource dsStructureDeputies;
  TDataSource dsStructDepDates;
  MasterDetail periodsOfUnit;

 private:
  void StructuralUnitTypeChange();
  void cdsStructureDeputiesBeforePost();
  void cdsStructDepDatesBeforePost();

  TfStructureDeputies& form_;
};

}  // namespace orvane::modules
