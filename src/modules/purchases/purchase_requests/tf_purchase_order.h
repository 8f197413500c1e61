#pragma once

// The purchase request screen ("Искане за покупка"): entered, looked up, sent for approval, decided
// level by level, corrected, annulled, completed and printed; one version of one request at a time.
//
//   tf_purchase_order.cpp           actions, when each is live, creation and showing, saving
//   tf_purchase_order_layout.cpp    combos, items, columns, pages, ribbon
//   tf_purchase_order_keys.cpp      identifier and version, navigation, what is shown and writable
//   tf_purchase_order_workflow.cpp  moves of the document and decisions on its approval

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
#include "modules/purchases/purchase_requests/purchase_order_values.h"
#include "modules/purchases/purchase_requests/tdm_purchase_order.h"

namespace orvane::modules {

inline constexpr std::string_view kDocumentName = "Искане за покупка";
inline constexpr std::string_view _rFieldNotFilled = "Поле \"%s\" не е попълнено!";

class TfPurchaseOrder : public TVosDBForm {
 public:
  /// Throws Abort, after telling the user, when he must have an employee record and has none.
  explicit TfPurchaseOrder(const FormIdentity& identity);

  /// Shows one given request over another screen, read only, and returns when it is closed. Tells
  /// the user when there is no such request for him.
  static void StartPurchaseOrder(TVosBaseForm& owner, std::int64_t id);

  TVosClientDataSet* MainDataSet() const override { return &dmPurchaseOrder->cdsPurchaseOrder; }

  // --- told by the rules of the document
  // ----------------------------------------------------------
  void ShowKeys(std::int64_t id, int ver);
  /// Transport is asked for where prices come from the supply list; supplier and contract are
  /// marked as required where they are.
  void VisibleItemsDependOnKind();
  /// Rate and amount in currency are shown for a foreign currency only.
  void VisibleItemsDependOnCurrency();
  void VisibleMSGridCols();
  void ShowDeliveriesPage();
  /// Copies the document's state and settles what may be written.
  void SetPropertiesVals();
  /// Loads the shown request again, unless that was just done in this event.
  void ReloadShown() { shown_.Reload(); }

  PurchaseOrderValues values;
  std::unique_ptr<TdmPurchaseOrder> dmPurchaseOrder;
  TVosMTCombo cbCostCenters, cbKindSupplies, cbPartners, cbSuppliesContract, cbNomIn250,
      cbCurrencies, cbKPL, cbSuppManOrd, cbMeasures;
  TKeyEdit eIdNum, eVer;
  TLabel lStatus;
  TVosDataInspector diMainInfo, diAdminInfo;
  TVosDBGrid gPurchaseOrderDet, gPurchaseOrderDel, gPOPayPl, gPOAdm, gDeliveries;
  TPageControl pcTables;
  /// The user's turn to decide on the shown document has come.
  bool MayDecide() const;
  /// Why the user decides so on the shown request, as far as it was typed and is not written.
  std::string& NoteOf(Decision decision);

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { SetPropertiesVals(); }
  void OnLanguageChanged() override;
  void ShowDocument(std::int64_t id) override;
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;

 private:
  static const LiveRow kLive[];
  static const Face<TfPurchaseOrder> kFaces[];
  static const DecisionFace<TfPurchaseOrder> kDecisions[];

  // --- creation
  // -----------------------------------------------------------------------------------
  void ReadParameters();
  void AddOwnActions();
  void SetUpLookups();
  void SetUpRowLookups();
  void SetUpItems();
  void SetUpColumns();
  void SetUpPages();
  void BindFocus();
  void ChooseLanguages();
  void VosBaseFormShow();

  // --- actions
  // ------------------------------------------------------------------------------------
  void acDocSearchExecute();
  void acSaveExecute();
  void acCancelExecute();
  void acPrintExecute();
  void acNewDocExecute();
  void acNewVersionExecute();
  void acDeleteExecute();
  void acQuantityExecute();
  void acCopyDocExecute();
  void acRowsExecute();
  void acSearchGroupExecute() { dmPurchaseOrder->SearchGroup(); }

  /// Whoever asks to save the head: the action goes on to the version, a grid is entered.
  enum class SavedBy { Action, EnteringGrid, Leaving };
  void SaveHead(SavedBy by);
  void GridEnter();
  void QuantityColumnEnter();
  void OrderComboEnter();
  void OpenReport(int kind);
  TVosDBGrid* FocusedRows() const;

  // --- identifier and version
  // ---------------------------------------------------------------------
  void eIdNumExit();
  void eVerClosed(const std::string& text);
  void SetReadWrite(bool forceWritable);

  // --- workflow
  // -----------------------------------------------------------------------------------
  void AddWorkflow();
  void RefreshWorkflow();
  DocumentFacts Facts() const;
  void PostMove();
  void MoveHead(const Move& move);
  void SendForApproval(const Move& move);
  void Annul(const Move& move);
  void DecideApproval(Decision decision);
  int LevelOf(Decision decision) const;
  bool WantsRateFirst();
  bool MayRemoveApproval() const;
  bool MayRemoveRejection() const;

  // --- rules of the live table
  // --------------------------------------------------------------------
  bool IsLoaded() const;
  bool MayAppend() const { return values.vCanAppend; }
  bool MayCopy() const { return values.vCanAppend && IsLoaded(); }
  bool MayMakeVersion() const;
  bool MaySave() const;
  bool IsTypingRow() const;
  bool MayDeleteRow() const;
  bool MayEnterQuantity() const;
  bool MayGoToNom() const;

  ShownDocumentRules MakeShownRules();

  ShownDocument shown_;
  KeyNavigation identifiers_;
  KeyNavigation versions_;
  LanguageSwitch language_;
  TypedNotes notes_;
  std::vector<GridColumn> MSGridCols;
};

}  // namespace orvane::modules
