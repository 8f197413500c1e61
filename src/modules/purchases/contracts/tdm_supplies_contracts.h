#pragma once

// Supplies contracts: the contract that is shown, its loading and saving, the lists its codes are
// chosen from, and the rules of its fields.

#include <cstdint>

#include "contract/supplies_contract.h"
#include "contract/workflow.h"
#include "data/data_module.h"
#include "data/lookup_table.h"
#include "kit/documents/document_apply.h"

namespace orvane::modules {

class TfSuppliesContracts;

class TdmSuppliesContracts : public TVosDataModule {
 public:
  explicit TdmSuppliesContracts(TfSuppliesContracts& form);

  /// Loads a contract with one call: by identifier exactly, to the ends, the neighbours, or by a
  /// step. When nothing is found the contract that is shown stays. A change that a broken link left
  /// behind is sent first.
  LoadCode GetRecord(Nav nav, int step, std::int64_t id);
  /// The one remote call of the document's own class: `data` gives way to the answer.
  void Operations(VariantArray& data);

  TVosSQLConnection sqlcSuppliesContracts;
  TVosSQLConnection cSQL;

  TVosClientDataSet cdsSuppliesContracts;
  TVosClientDataSet cdsPartner;
  TVosClientDataSet cdsKindSupplies;
  TVosClientDataSet cdsCapExPlan;
  TVosClientDataSet cdsSupplyRequestDescr;
  TVosClientDataSet cdsSupplyArtVchDescr;
  TVosClientDataSet cdsToSupplyArtVchDescr;
  TVosClientDataSet cdsSupplyInvoiceDescr;
  TVosClientDataSet cdsSuppAdvInvDescr;
  TVosClientDataSet cdsSuppDNoticeDescr;
  TVosClientDataSet cdsSuppCNoticeDescr;
  TVosClientDataSet cdsKindSupplyList;
  TVosClientDataSet cdsNomIn90;
  TVosClientDataSet cdsSuppElKindPayment;

  TLookupTable partner;
  TLookupTable kindSupplies;
  TLookupTable capExPlan;
  TLookupTable supplyRequestDescr;
  TLookupTable supplyArtVchDescr;
  TLookupTable toSupplyArtVchDescr;
  TLookupTable supplyInvoiceDescr;
  TLookupTable suppAdvInvDescr;
  TLookupTable suppDNoticeDescr;
  TLookupTable suppCNoticeDescr;
  TLookupTable kindSupplyList;
  TLookupTable nomIn90;
  TLookupTable suppElKindPayment;

  TDataSource dsSuppliesContracts;

  /// PostExistingRecord and ReconcileError of the contract.
  DocumentHead documentHead;

 private:
  void TakeRecord(const VariantArray& answer);
  HeadApplyRules MakeHeadRules();
  void cdsSuppliesContractsNewRecord();
  void SupplierChange();
  /// Debit and credit notices are offered by the supplier's kind of invoice.
  void SetNoticeParams();

  TfSuppliesContracts& form_;
};

}  // namespace orvane::modules
