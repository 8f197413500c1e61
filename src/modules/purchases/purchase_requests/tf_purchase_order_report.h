#pragma once

// The search report of purchase requests ("Искания за покупка"), in one of three modes: to choose a
// request to show, to make a new version of one, or to copy one.

#include <memory>
#include <vector>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "modules/purchases/purchase_requests/tdm_purchase_order_report.h"

namespace orvane::modules {

/// Mode of the report that only chooses; the others are the kinds of the server's "NewRec".
inline constexpr int kReportSearch = 1;

class TfPurchaseOrderReport : public TVosDBForm {
 public:
  explicit TfPurchaseOrderReport(const FormIdentity& identity);

  int pKind = kReportSearch;  ///< set before the report is shown
  bool Success = false;       ///< the caller may use the two below
  std::int64_t pIdNumber = 0;
  int pVersion = 0;

  TVosClientDataSet* MainDataSet() const override { return &dmPurchaseOrderReport->cdsResult; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnLanguageChanged() override;
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;
  bool HasUnsavedTyping() const override { return false; }

 private:
  static const LiveRow kLive[];

  void SetUpLookups();
  void SetUpItems();
  void AddOwnActions();
  void VosBaseFormShow();
  void VisibleColumns();
  bool HasNoResult() const { return !HasResult(); }
  bool HasResult() const { return !dmPurchaseOrderReport->cdsResult.IsEmpty(); }

  void acFilterExecute();
  void acChooseExecute();
  void acNewExecute();

  std::unique_ptr<TdmPurchaseOrderReport> dmPurchaseOrderReport;
  TVosMTCombo cbCostCenters, cbKindSupplies, cbPartners, cbNomIn249, cbSuppManOrd, cbBSL;
  TVosDataInspector diFilter;
  TVosDBGrid gResult;
  std::vector<GridColumn> gridSelected;
};

}  // namespace orvane::modules
