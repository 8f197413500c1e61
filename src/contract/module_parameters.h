#pragma once

// The module's own parameters, one field each: number in the store, type, what the user reads, and
// what register its value is a code of. The screen shows them, the server judges what is stored.

#include <cstdint>

#include "contract/field.h"
#include "contract/parameters.h"

namespace orvane::parameters {

/// The register whose code a parameter holds.
enum class Refers : std::uint8_t {
  Nothing,
  KindSupplies,
  KindSupplyLists,
  InventoryReceipts,  ///< kinds of inventory documents of operation 1
  Employees,
  WaysOfChoosing,   ///< nomenclature 90
  PriceAlgorithms,  ///< nomenclature 283
};

struct ModuleParameter {
  Module number;
  FieldDef field;
  Refers refers = Refers::Nothing;
  /// Bounds of a value that refers to nothing, both included.
  std::int64_t lowest = 0;
  std::int64_t highest = 999'999'999;
};

inline constexpr std::int64_t kLongestPaymentTerm = 99;  // days

/// By number.
inline constexpr ModuleParameter kModuleParameters[] = {
    {cpCar, Int32("cpCar", Plain, "Вид покупка \"Капиталов разход\""), Refers::KindSupplies},
    {cpBRM, Int32("cpBRM", Plain, "Вид покупка \"ОСМ\""), Refers::KindSupplies},
    {cpKindSupplyChoice, Int32("cpKindSupplyChoice", Plain, "Начин на избор"),
     Refers::WaysOfChoosing},
    {cpKindSupplyList, Int16("cpKindSupplyList", Plain, "Вид списък за доставка"),
     Refers::KindSupplyLists},
    {cpWares, Int32("cpWares", Plain, "Вид покупка \"Стоки\""), Refers::KindSupplies},
    {cpKindDocInvBRM, Int16("cpKindDocInvBRM", Plain, "Складов документ – приход на ОСМ"),
     Refers::InventoryReceipts},
    {cpKindDocInvWares, Int16("cpKindDocInvWares", Plain, "Складов документ – приход на стоки"),
     Refers::InventoryReceipts},
    {cpMaxTermOfPayment, Byte("cpMaxTermOfPayment", Plain, "Фирмен срок за плащане (дни)"),
     Refers::Nothing, 1, kLongestPaymentTerm},
    {cpPOTolerance, Amount("cpPOTolerance", Plain, "Допустима разлика за сума"), Refers::Nothing},
    {cpMixedKindSupp, Int32("cpMixedKindSupp", Plain, "Вид покупка \"Смесени\""),
     Refers::KindSupplies},
    {cpServiceUser, Code19("cpServiceUser", Plain, "Потребител за служебно одобряване"),
     Refers::Employees},
    {cpSuppServ, Int32("cpSuppServ", Plain, "Вид покупка „Услуги с цени“ "), Refers::KindSupplies},
    {cpSuppOtherMS, Int16("cpSuppOtherMS", Plain, "Вид покупка „Други материали“ "),
     Refers::KindSupplies},
    {cpKindDocOtherMS,
     Int16("cpKindDocOtherMS", Plain, "Складов документ – приход на други материали"),
     Refers::InventoryReceipts},
    {cpAlgoritmPrice, Code19("cpAlgoritmPrice", Plain, "Алгоритъм за извличане на цени"),
     Refers::PriceAlgorithms},
    {cpLastNumIniEval,
     Int32("cpLastNumIniEval", Plain, "Последен номер на карта за първоначално оценяване")},
    {cpMinPointsIniEval,
     Int32("cpMinPointsIniEval", Plain, "Минимален брой точки за първоначално одобряване")},
    {cpMinPointsPerEval,
     Int32("cpMinPointsPerEval", Plain, "Минимален брой точки за периодично одобряване")},
    {cpLastNumPerEval,
     Int32("cpLastNumPerEval", Plain, "Последен номер на карта за периодично оценяване")},
};

/// Null pointer when the module has no parameter of that number.
constexpr const ModuleParameter* FindModuleParameter(std::int64_t number) {
  for (const ModuleParameter& row : kModuleParameters) {
    if (row.number == number) return &row;
  }
  return nullptr;
}

}  // namespace orvane::parameters
