#pragma once

// Supplier orders: the datasets of one order, its loading and saving, and every rule of the
// document that the client holds. Opening, loading and saving stand in tdm_supp_manifac_order.cpp,
// the rules of head and rows in tdm_supp_manifac_order_rules.cpp.

#include <cstdint>
#include <optional>
#include <string>

#include "contract/supplier_order.h"
#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"
#include "kit/documents/document_apply.h"
#include "modules/core/supply_rows.h"

namespace orvane::modules {

class TfSuppManifacOrder;

/// Names of the status and of the transport, shown beside their codes.
inline constexpr auto lupStatus = String("lupStatus", 30, Joined, "Статус");
inline constexpr auto lupIncTranspInPrice =
    String("lupIncTranspInPrice", 30, Joined, "Включен транспорт в цената");

/// The user's part in the loaded order, as it came with it; statuses and level are 0 where he has
/// none.
struct OrderPart {
  bool mayApprove = false;   ///< the turn is his
  bool mayWithdraw = false;  ///< he has decided at a level
  int pendingStatus = 0;     ///< of the approval row that awaits him
  int ownStatus = 0;         ///< of the row that he may take back
  int ownLevel = 0;
  bool fullAccess = false;  ///< may complete and edit any order
};

/// Parameters of the store that orders read.
struct OrderParameters {
  std::int64_t brm = 0;  ///< the two kinds of purchase that are ordered
  std::int64_t wares = 0;
  SupplyWay way;        ///< where neither supplier nor contract agreed on one
  Variant centralBank;  ///< partner whose rates of exchange are used
  std::int64_t nationalCurrency = 0;
  bool ownMeasuresOnly = false;  ///< a material uses its own units only
  int amountDecimals = 0;
};

class TdmSuppManifacOrder : public TVosDataModule {
 public:
  explicit TdmSuppManifacOrder(TfSuppManifacOrder& form);

  // --- opening and loading
  /// Who the user is, for which cost centres he may order, and the names that the screen shows: one
  /// call.
  void GetParams();
  /// The cost centres of the current employee, anew.
  void FetchCostCenters();
  /// Loads an order with one call: by identifier exactly, to the ends, the neighbours, or by a
  /// step. When nothing is found the order that is shown stays. Changes that a broken link left
  /// behind are sent first.
  LoadCode GetRecord(Nav mode, int step, const std::string& idText);
  /// Drops all rows of the document but the head, for a new one.
  void EmptyParts();
  /// Names of codes in the language of the screen.
  void SetLanguage();

  // --- rules
  /// The order may be changed by this user.
  bool MayBeChanged() const;
  /// The user created it, or his level is below 3.
  bool IsOwner() const;
  bool InNationalCurrency() const;
  /// The search of the supply list, as contract, supplier or parameters choose it.
  void RefreshKPL();
  void RefreshMeasure();

  OrderParameters parameters;
  OrderPart part;
  bool newDocumentAllowed = false;  ///< the employee is an admissible requester
  Variant employeeName;             ///< of the current employee
  bool identityWithNom = false;     ///< names come from materials and services

  TVosSQLConnection sqlcSuppManifacOrder;
  TVosSQLConnection sqlcSQL;

  TVosClientDataSet cdsSuppManifacOrder;
  TVosClientDataSet cdsSuppManOrderDet;
  TVosClientDataSet cdsSuppManOrderAdmin;
  TVosClientDataSet cdsPurchaseOrder;
  TVosClientDataSet cdsRatesOfExchange;
  TVosClientDataSet cdsNomIn249;
  TVosClientDataSet cdsNomIn250;
  TVosClientDataSet cdsKindSupplies;
  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsSuppliers;
  TVosClientDataSet cdsCurrencies;
  TVosClientDataSet cdsSuppliesContracts;
  TVosClientDataSet cdsMeasures;
  TVosClientDataSet cdsKPL;

  TLookupTable nomIn250;
  TLookupTable kindSupplies;
  TLookupTable costCenters;
  TLookupTable suppliers;
  TLookupTable currencies;
  TLookupTable suppliesContracts;
  TLookupTable measures;
  TLookupTable kpl;

  TDataSource dsSuppManifacOrder;
  TDataSource dsSuppManOrderDet;
  TDataSource dsSuppManOrderAdmin;
  TDataSource dsPurchaseOrder;

  DocumentHead documentHead;
  SupplyRows supplyRows;

 private:
  void BindHead();
  void BindRows();
  void TakeRecord(const VariantArray& answer);
  HeadApplyRules MakeHeadRules();

  void cdsSuppManifacOrderNewRecord();
  void cdsSuppManifacOrderKindSupplyChange();
  void cdsSuppManifacOrderSupplierChange();
  void cdsSuppManifacOrderContractIdChange();
  void cdsSuppManifacOrderKindCurrencyChange();
  /// The one contract of that supplier and kind needs no choosing.
  void TakeOnlyContract();
  void SetRateOfExchange();

  void cdsSuppManOrderDetAfterInsert();
  void cdsSuppManOrderDetBeforePost();
  void cdsSuppManOrderDetSerialNumberChange();
  void cdsSuppManOrderDetMeasureChange();

  TfSuppManifacOrder& form_;
  std::string context_;             ///< of the server, given back with every load
  std::int64_t lastRowNumber_ = 0;  ///< highest of the loaded order
};

}  // namespace orvane::modules
