#pragma once

// What the purchase request screen and its rules tell each other beside the datasets: parameters,
// the loaded document's place and state, and the user's part in it.

#include <cstdint>

#include "contract/workflow.h"
#include "packet/variant.h"

namespace orvane::modules {

struct PurchaseOrderValues {
  // --- parameters, read when the screen is created; unset is 0
  // ------------------------------------
  int _cpKindSupplyChoice = 0;  ///< way of choosing from the supply list
  std::int64_t _cpKindSupplyList = 0;
  int _cpLimitMeasures = 0;          ///< 1: a material uses its own units only
  int _cpCountNumberAfterPoint = 0;  ///< decimals of amounts
  std::int64_t _cpCAR = 0;           ///< kinds of purchase
  std::int64_t _cpBRM = 0;
  std::int64_t _cpSuppWares = 0;
  std::int64_t _cpSuppServ = 0;
  std::int64_t _cpBGNKindCurrency = 0;  ///< the national currency
  int _cpMaxTermOfPayment = 0;          ///< days
  Variant _cpCentralBank;               ///< partner whose rates of exchange are used

  // --- the loaded document
  // ------------------------------------------------------------------------
  std::int64_t LastGetID = 0;  ///< 0: nothing was loaded
  int LastGetVer = 0;
  LoadCode LastGetRecID = LoadCode::Between;   ///< of the last load by identifier
  LoadCode LastGetRecVer = LoadCode::Between;  ///< of the last load by version
  bool FDocumentAnnulated = false;
  int FDocumentStatus = 0;

  // --- the user's part in it; levels and statuses are -1 where he has none
  // ------------------------
  bool vCanConfirm = false;
  int vConfirmationLevel = -1;
  int vConfirmationStatus = -1;
  bool vCanUnConfirm = false;
  int vUnConfirmationLevel = -1;
  int vUnConfirmationStatus = -1;
  bool vCostCentetChief = false;
  bool vCanAppend = false;  ///< the current employee is an admissible requester

  // --- the screen
  // ---------------------------------------------------------------------------------
  int LNG_ = 1;  ///< 1 first language, 2 second
  bool DisplayOneDocMode = false;
  bool FillAmend = true;      ///< stamp who amended when an edited head is posted
  int vMaxTermOfPayment = 0;  ///< payment term in force, days

  bool FirstLanguage() const { return LNG_ == 1; }
  /// Kinds whose requests name a supplier and a contract. No kind (0) is not one of them, nor is a
  /// parameter that is unset.
  bool IsContracted(std::int64_t kindSupply) const {
    return kindSupply != 0 &&
           (kindSupply == _cpCAR || kindSupply == _cpBRM || kindSupply == _cpSuppWares);
  }
  /// Kinds that are priced from the supply list: no amounts are typed, transport may be included.
  bool IsPricedByList(std::int64_t kindSupply) const {
    return kindSupply != 0 && (kindSupply == _cpBRM || kindSupply == _cpSuppWares);
  }
};

}  // namespace orvane::modules
