#pragma once

// Numbers of the parameters, in the store's two groups: the module's own (system::kModuleGroup) and
// the host's general ones (system::kHostGroup).

namespace orvane::parameters {

/// The module's own parameters, by the names under which the screens know them.
enum Module : int {
  cpCar = 1,               ///< kind of supply for capital expenditure
  cpBRM = 2,               ///< kind of supply for ОСМ
  cpKindSupplyChoice = 3,  ///< way of choosing from the supply list
  cpKindSupplyList = 4,    ///< kind of supply list
  cpWares = 5,             ///< kind of supply for goods
  cpKindDocInvBRM = 6,
  cpKindDocInvWares = 7,
  cpMaxTermOfPayment = 8,  ///< days
  cpPOTolerance = 9,       ///< admissible difference of sums
  cpMixedKindSupp = 10,
  cpServiceUser = 11,
  cpSuppServ = 12,  ///< kind of supply for priced services
  cpSuppOtherMS = 13,
  cpKindDocOtherMS = 14,
  cpAlgoritmPrice = 15,
  cpLastNumIniEval = 16,
  cpMinPointsIniEval = 17,
  cpMinPointsPerEval = 18,
  cpLastNumPerEval = 19,
};

/// The host's parameters that documents read.
enum Host : int {
  kAmountDecimals = 3,
  kCentralBank = 26,       ///< partner whose rates of exchange are used
  kNationalCurrency = 27,  ///< kind of the national currency
  kSumMaskDecimals = 80,
  kOwnUnitsOnly = 283,  ///< 1: a stock row may use only its item's own units
};

}  // namespace orvane::parameters
