#pragma once

// The search report of supplier orders: a filter of one record and the orders that pass it, which
// the server's method answers in portions.

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TdmSuppManifacOrderReport : public TVosDataModule {
 public:
  explicit TdmSuppManifacOrderReport(TVosDBForm& form);

  /// What the screen opens with: its lists, by one call.
  void GetParams();
  /// The first portion of the orders that pass the filter.
  void GetReport();
  /// An empty filter, in edit.
  void EmptyFilter();
  /// The lists speak the user's language.
  void SetLanguage();

  TVosSQLConnection sqlcSuppManifacOrderReport;
  TVosSQLConnection sqlcSQL;
  TVosClientDataSet cdsFilter;
  TVosClientDataSet cdsReport;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsSuppliers;
  TVosClientDataSet cdsNomIn249;
  TLookupTable costCenters;
  TLookupTable suppliers;
  TLookupTable nomIn249;
  TDataSource dsFilter;
  TDataSource dsReport;

 private:
  DataPacket FetchPortion(std::int32_t rowLimit, const std::string& continuation);

  TVosDBForm& form_;
};

}  // namespace orvane::modules
