#pragma once

// Purchase requests: the datasets of one version of one request, its loading and saving, and every
// rule of the document that the client holds. The rules of the head and of loading stand in
// tdm_purchase_order.cpp, those of rows, schedule and payment plan in tdm_purchase_order_rows.cpp.

#include <cstdint>
#include <string>

#include "contract/purchase_request.h"
#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"
#include "host/search_dialog.h"
#include "kit/documents/document_apply.h"
#include "modules/core/supply_rows.h"

namespace orvane::modules {

class TfPurchaseOrder;

/// Names of statuses and approvers, shown beside their codes.
inline constexpr auto lupStatusName = String("lupStatusName", 30, Joined, "Статус");
inline constexpr auto lupAppStatusName = String("lupAppStatusName", 30, Joined, "Статус");
inline constexpr auto lupApprovalName = String("lupApprovalName", 30, Joined, "Одобряващ");

class TdmPurchaseOrder : public TVosDataModule {
 public:
  explicit TdmPurchaseOrder(TfPurchaseOrder& form);

  // --- loading
  // ------------------------------------------------------------------------------------
  /// What the screen looks names up in, and whether the current employee may request: one call.
  void FetchOnOpening();
  /// Loads a request into all datasets with one call. By key exactly (`id`, `ver`), to the ends,
  /// the neighbours, or by a step; `ver` 0 asks for the current version. When nothing is found the
  /// request that is shown stays. Changes that a broken link left behind are sent first.
  LoadCode GetRecord(Nav nav, int step, std::int64_t id, int ver);
  /// True when the payment plan is out of line with the request; `Msg` then tells how.
  bool GetSumCheck(std::int64_t id, int ver, std::string& Msg);
  /// The one remote call of the document's own class: `data` gives way to the answer.
  void Operations(VariantArray& data);
  /// Drops all rows of the document but the head, for a new one.
  void EmptyParts();
  /// Names of statuses and approvers in the language of the screen.
  void SetLanguage();
  /// Something typed has not reached the server: a row in edit, or a change that the link kept
  /// back.

  // --- recomputations
  // -----------------------------------------------------------------------------
  void SetRateOfExchange();
  /// The payment term in force: the contract's, the supplier's, the firm's.
  void GetMaxTermOfPayment();
  void RefreshMeasure();
  /// The search of the supply list, as contract, supplier or parameters choose it.
  void SetUpKPL();
  /// A row names a supplier order.
  bool NamesOrders() const;
  /// Supplier and item whose orders are offered; the rows are fetched when they are needed.
  void SetOrderParams();
  /// Search by groups of goods among the supplier's entries; the one chosen goes into the row.
  void SearchGroup();
  SearchSpec GroupSearch();

  std::int64_t KindSupply() const;
  bool InNationalCurrency() const;

  TVosSQLConnection sqlcPurchaseOrder;
  TVosSQLConnection cSQL;

  TVosClientDataSet cdsPurchaseOrder;
  TVosClientDataSet cdsPurchaseOrderDet;
  TVosClientDataSet cdsPurchaseOrderDel;
  TVosClientDataSet cdsPurchaseOrderPayPl;
  TVosClientDataSet cdsPurchaseOrderAdm;
  TVosClientDataSet cdsDeliveries;
  TVosClientDataSet cdsGetSuppDocConfirm;
  TVosClientDataSet cdsCheckAdmNotifiers;
  TVosClientDataSet cdsRatesOfExchange;
  TVosClientDataSet cdsNomIn245;
  TVosClientDataSet cdsNomIn249;
  TVosClientDataSet cdsNomIn251;

  TVosClientDataSet cdsCostCenters;
  TVosClientDataSet cdsKindSupplies;
  TVosClientDataSet cdsPartners;
  TVosClientDataSet cdsSuppliesContracts;
  TVosClientDataSet cdsCurrencies;
  TVosClientDataSet cdsNomIn250;
  TVosClientDataSet cdsKPL;
  TVosClientDataSet cdsSuppManOrd;
  TVosClientDataSet cdsMeasures;

  TLookupTable costCenters;
  TLookupTable kindSupplies;
  TLookupTable partners;
  TLookupTable suppliesContracts;
  TLookupTable currencies;
  TLookupTable nomIn250;
  TLookupTable kpl;
  TLookupTable suppManOrd;
  TLookupTable measures;

  TDataSource dsPurchaseOrder;
  TDataSource dsPurchaseOrderDet;
  TDataSource dsPurchaseOrderDel;
  TDataSource dsPurchaseOrderPayPl;
  TDataSource dsPurchaseOrderAdm;
  TDataSource dsDeliveries;

  /// PostExistingRecord and ReconcileError of the head.
  DocumentHead documentHead;
  SupplyRows supplyRows;
  /// Sends what a broken link left behind, head first; nothing happens when there is nothing.

 private:
  void BindHead();
  void NameParts();
  void BindParts();
  void TakeRecord(const VariantArray& answer);
  void TakeRoles();
  HeadApplyRules MakeHeadRules();

  void cdsPurchaseOrderBeforePost();
  void cdsPurchaseOrderNewRecord();
  void DocumentDateChange() { SetRateOfExchange(); }
  void NotifierChange();
  void SupplierChange();
  void ContractIdChange();
  void KindSupplyChange();
  void KindCurrencyChange();
  /// Contracts belong to one supplier and one kind of purchase: another value clears the contract.
  void BindContractsTo(std::string_view param, const Variant& value);

  void cdsPurchaseOrderDetBeforePost();
  void cdsPurchaseOrderDetNewRecord();
  void dsPurchaseOrderDetStateChange();
  void SerialNumberChange();
  void SuppManifacOrderIdChange();
  std::string OrderQuantityText(const Variant& value);
  void CheckOrderRest();

  void cdsPurchaseOrderPayPlNewRecord();
  void cdsPurchaseOrderPayPlBeforePost();
  void InvoiceDateChange();
  /// In insert the row gets the request's key.
  void CopyKey(TVosClientDataSet& rows);

  TfPurchaseOrder& form_;
};

}  // namespace orvane::modules
