#pragma once

// The search report of supplier orders ("Справка Поръчки за производство"): conditions above, the
// orders that meet them below, and the whole description of the one in use.

#include <memory>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "modules/purchases/supplier_orders/tdm_supp_manifac_order_report.h"

namespace orvane::modules {

class TfSuppManifacOrderReport : public TVosDBForm {
 public:
  /// Throws Abort, after telling the user, when he must have an employee record and has none.
  explicit TfSuppManifacOrderReport(const FormIdentity& identity);

  std::int64_t pIdNumber = 0;  ///< the order that was picked; 0: none

  TVosClientDataSet* MainDataSet() const override { return &dmSuppManifacOrderReport->cdsReport; }

 protected:
  void OnShow() override;
  void OnLanguageChanged() override;
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;
  bool HasUnsavedTyping() const override { return false; }

 private:
  static const LiveRow kLive[];

  void SetUpLookups();
  void SetUpItems();
  void AddOwnActions();
  bool HasNoResult() const { return !HasResult(); }
  bool HasResult() const { return !dmSuppManifacOrderReport->cdsReport.IsEmpty(); }

  void acRepExecute();
  void acReturnExecute();
  void acNewExecute();

  std::unique_ptr<TdmSuppManifacOrderReport> dmSuppManifacOrderReport;
  TVosMTCombo cbCostCenters, cbSuppliers, cbStatus;
  TLabel lFilter;
  TVosDataInspector di;
  TLabel lReport;
  TVosDBGrid gReport;
  TVosDataInspector diDescription;
};

}  // namespace orvane::modules
