#pragma once

// The supplies contracts screen ("Договори за доставки"): one contract at a time, found by its
// identifier, entered, changed and deleted. tf_supplies_contracts_layout.cpp holds combos, items,
// ribbon and layout; everything else is in tf_supplies_contracts.cpp.

#include <memory>
#include <string>
#include <vector>

#include "host/controls/combo.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form.h"
#include "kit/documents/shown_document.h"
#include "kit/key_navigation.h"
#include "modules/purchases/contracts/tdm_supplies_contracts.h"

namespace orvane::modules {

class TfSuppliesContracts : public TVosDBForm {
 public:
  /// Throws Abort, after telling the user, when a kind of purchase is not set in the parameters.
  explicit TfSuppliesContracts(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override {
    return &dmSuppliesContracts->cdsSuppliesContracts;
  }

  // --- told by the data module
  /// A contract was loaded.
  void ShowKey(std::int64_t id);
  /// Items that depend on the kind of contract and on its renewal.
  void VisibleParamItems();
  /// What may be written follows the state and the rights.
  void dsSuppliesContractsStateChange();
  void ReloadShown() { shown_.Reload(); }

  LoadCode LastGetRecRes = LoadCode::Between;  ///< of the last load
  std::int64_t LastGetRec = 0;                 ///< identifier last loaded; 0: none

  std::unique_ptr<TdmSuppliesContracts> dmSuppliesContracts;
  TVosMTCombo cbSupplier, cbKindSupplies, cbCapExPlanCode, cbSupplyRequestDescr,
      cbSupplyArtVchDescr, cbToSupplyArtVchDescr, cbSupplyInvoiceDescr, cbSuppAdvInvDescr,
      cbSuppDNoticeDescr, cbSuppCNoticeDescr, cbKindSupplyList, cbNomIn90, cbSuppElKindPayment;
  TKeyEdit eIdNumber;
  TVosDataInspector diLeft, diRight;

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { dsSuppliesContractsStateChange(); }
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;

 private:
  static const LiveRow kLive[];

  void ReadParameters();
  void AddOwnActions();
  void SetUpLookups();
  void SetUpItems();
  void SetUpRibbon();
  void VosBaseFormShow();
  ShownDocumentRules MakeShownRules();

  void acNewExecute();
  void acSaveExecute();
  void acCancelExecute();
  void acDeleteExecute();
  /// The contract of that identifier was deleted: shows the next one, near the end the one before.
  /// False when the server did not take it.
  bool SaveContract();
  void ShowNeighbour(std::int64_t id);

  bool IsLoaded() const;
  bool MaySave() const { return !diLeft.readOnly; }

  std::int64_t _cpCar = 0;  ///< kinds of purchase
  std::int64_t _cpBRM = 0;
  std::int64_t _cpSuppWares = 0;
  std::vector<std::string> searches_;  ///< actions on the lookup in use, in the ribbon's order
  ShownDocument shown_;
  KeyNavigation identifiers_;
};

}  // namespace orvane::modules
