#pragma once

// Rows that several documents ask for and show beside their own.

#include "contract/field.h"

namespace orvane {

/// Rate of a currency on a day. Data request: [central bank, currency, day].
inline constexpr auto CurrencyRate1 = Rate("CurrencyRate1");
inline constexpr auto dspRatesOfExchange = Reads("dspRatesOfExchange", CurrencyRate1);

/// Rows behind the codes of a head, with the columns of the lookups that offer them; they travel
/// with the load and in no fetch of their own.
namespace own_rows {

inline constexpr auto CostCenter = Code19("CostCenter", Key, "Код");
inline constexpr auto Partner = Code19("Partner", Key, "Код");
inline constexpr auto ContractId = Int32("IdNumber", Key, "Идентификатор");
inline constexpr auto Name30 = String("Name", 30, Plain, "Име");
inline constexpr auto Name30Second = String("Name2", 30, Plain, "Име 2");
inline constexpr auto Name50 = String("Name", 50, Plain, "Име");
inline constexpr auto Name50Second = String("Name2", 50, Plain, "Име 2");
inline constexpr auto ShortDescription = String("ShortDescription", 50, Plain, "Описание");
inline constexpr auto ShortDescription2 = String("ShortDescription2", 50, Plain, "Описание 2");
inline constexpr auto ContractDate = Day("ContractDate", Plain, "Дата на сключване");
inline constexpr auto SuppKindCurrency = Int16("SuppKindCurrency");
inline constexpr auto KindSupplyChoice = Byte("KindSupplyChoice");
inline constexpr auto KindSupplyList = Int16("KindSupplyList");
inline constexpr auto SuppMaxTermOfPayment = Int16("SuppMaxTermOfPayment");
inline constexpr auto MaxTermOfPayment = Byte("MaxTermOfPayment");
inline constexpr auto InclTransportInPrice = Bit("InclTransportInPrice");

inline constexpr auto kCostCenter = Reads("", CostCenter, Name30, Name30Second);
inline constexpr auto kPartner = Reads("", Partner, Name50, Name50Second, SuppKindCurrency,
                                       KindSupplyChoice, KindSupplyList, SuppMaxTermOfPayment);
inline constexpr auto kContract =
    Reads("", ContractId, ShortDescription, ContractDate, ShortDescription2, KindSupplyChoice,
          KindSupplyList, MaxTermOfPayment, InclTransportInPrice);

}  // namespace own_rows

}  // namespace orvane
