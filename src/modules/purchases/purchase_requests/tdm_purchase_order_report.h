#pragma once

// The search report of purchase requests: a filter of one record, the rows that pass it, and the
// request for a new version or a copy.

#include <cstdint>
#include <optional>
#include <string>

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

/// A request by identifier and version.
struct RequestKey {
  std::int64_t id = 0;
  int version = 0;
};

class TdmPurchaseOrderReport : public TVosDataModule {
 public:
  explicit TdmPurchaseOrderReport(TVosDBForm& form);

  /// Names of statuses, and the registers the filter offers: one call.
  void FetchOnOpening();
  /// Fetches the first portion of the requests that pass the filter; `currentOnly` leaves out old
  /// versions. Users who do not see everything get their own.
  void FetchResult(bool currentOnly);
  /// Asks the server for a new version or a copy (`kind`) of a request; empty when it refused.
  std::optional<RequestKey> NewRec(int kind, RequestKey of);
  /// An empty filter, in edit.
  void EmptyFilter();
  bool IsFiltered(std::string_view field);
  void SetLanguage(bool first);

  TVosSQLConnection sqlcPurchaseOrderReport;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsFilter;
  TVosClientDataSet cdsResult;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsKindSupplies;
  TVosClientDataSet cdsPartners;
  TVosClientDataSet cdsNomIn249;
  TVosClientDataSet cdsSuppManOrd;
  TVosClientDataSet cdsBSL;
  TLookupTable costCenters;
  TLookupTable kindSupplies;
  TLookupTable partners;
  TLookupTable nomIn249;
  TLookupTable suppManOrd;
  TLookupTable bsl;
  TDataSource dsFilter;
  TDataSource dsResult;

 private:
  std::string Conditions(bool currentOnly);

  TVosDBForm& form_;
};

}  // namespace orvane::modules
