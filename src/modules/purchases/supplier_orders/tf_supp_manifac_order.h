#pragma once

// The screen of supplier orders ("Поръчки за производство"): one order at a time, entered, sent for
// approval, decided level by level, corrected, annulled, completed and printed.
//
//   tf_supp_manifac_order.cpp           actions, when each is live, creation and showing, saving
//   tf_supp_manifac_order_layout.cpp    combos, items, columns, pages, ribbon
//   tf_supp_manifac_order_workflow.cpp  moves of the order and decisions on its approval

#include <memory>
#include <string>
#include <vector>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "kit/documents/shown_document.h"
#include "kit/documents/workflow_faces.h"
#include "kit/key_navigation.h"
#include "kit/language_switch.h"
#include "modules/purchases/supplier_orders/tdm_supp_manifac_order.h"

namespace orvane::modules {

class TfSuppManifacOrder : public TVosDBForm {
 public:
  /// Throws Abort, after telling the user, when he must have an employee record and has none, or
  /// when a parameter that orders rest on is not set.
  explicit TfSuppManifacOrder(const FormIdentity& identity);

  /// Shows one given order over another screen, to be read only, and returns when it is closed.
  /// Tells the user when there is no such order for him.
  static void StartSuppManifacOrder(TVosBaseForm& owner, std::int64_t id);

  TVosClientDataSet* MainDataSet() const override {
    return &dmSuppManifacOrder->cdsSuppManifacOrder;
  }

  // --- told by the data module
  /// An order was loaded.
  void ShowOrder(std::int64_t id);
  /// Rate and amount in currency are shown for a foreign currency only.
  void VisibleItemsDependOnCurrency();
  /// Ordinary fractions are asked for in a dialog and not typed into the column.
  void QuantityFollowsUnit();
  /// Loads the shown order again, unless that was just done in this event.
  void ReloadShown() { shown_.Reload(); }

  bool viewOnly = false;                  ///< shows one order that another screen gave
  LoadCode position = LoadCode::Between;  ///< of the shown order among those that the user sees

  std::unique_ptr<TdmSuppManifacOrder> dmSuppManifacOrder;
  TVosMTCombo cbKindSupplies, cbCostCenters, cbSuppliers, cbKindCurrency, cbContractIds,
      cbIncTranspInPrice, cbKPL, cbMeasure;
  TKeyEdit eIdNumber;
  TLabel lStatus;
  TVosDataInspector di, di2;
  TVosDBGrid gSuppManOrderDet, gSuppManOrderAdmin, gPurchaseOrder;
  TPageControl pcTables;
  /// The user's turn to decide on the shown document has come.
  bool MayDecide() const;
  /// Why the user decides so on the shown order, as far as it was typed and is not written.
  std::string& NoteOf(Decision decision);

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { SetReadWrite(false); }
  void OnLanguageChanged() override;
  void ShowDocument(std::int64_t id) override;
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;
  bool HandleFormKey(KeyStroke key) override;

 private:
  static const LiveRow kLive[];
  static const Face<TfSuppManifacOrder> kFaces[];
  static const DecisionFace<TfSuppManifacOrder> kDecisions[];

  // --- creation
  void ReadParameters();
  void AddOwnActions();
  void SetUpLookups();
  void SetUpItems();
  void SetUpColumns();
  void SetUpPages();
  void BindFocus();
  /// One given order is read in the user's own language alone.
  void ShowOwnLanguage();
  void VosBaseFormShow();
  ShownDocumentRules MakeShownRules();

  // --- actions
  void acNewDocExecute();
  void acSaveExecute();
  void acCancelExecute();
  void acDeleteExecute();
  void acGoToRowsExecute();
  void acPrintExecute();
  void acReportExecute();
  void SaveHead();
  void TabsEnter();
  void QuantityColumnEnter();
  void SetReadWrite(bool forceWritable);

  // --- workflow
  void AddWorkflow();
  void RefreshWorkflow();
  DocumentFacts Facts() const;
  void MoveHead(const Move& move);
  void Annul(const Move& move);
  void DecideApproval(Decision decision);
  bool MayRemoveApproval() const;
  bool MayRemoveRejection() const;

  // --- rules of the live table
  bool IsLoaded() const;
  bool MayLookFurther() const { return !viewOnly; }
  bool MayEnterNew() const { return dmSuppManifacOrder->newDocumentAllowed && !viewOnly; }
  /// Something is being typed here.
  bool IsTyping() const;
  bool MaySave() const { return !di.readOnly && IsTyping(); }
  bool MayDeleteRow() const;
  bool MaySearch() const;
  bool MayGoToNom() const;

  std::int64_t shownId_ = 0;  ///< identifier last loaded; 0: none
  bool newDocumentEntry_ = false;
  std::vector<std::string> searches_;  ///< actions on the lookup in use
  ShownDocument shown_;
  KeyNavigation identifiers_;
  LanguageSwitch language_;
  TypedNotes notes_;
};

}  // namespace orvane::modules
