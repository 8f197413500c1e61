#pragma once

// Approval levels ("Нива на одобрение"): for each kind of document register and kind of supply, who
// approves at which level a document whose sum lies in a range, both bounds included.

#include "contract/field.h"
#include "contract/system.h"
#include "contract/workflow.h"

namespace orvane::levels_approval {

/// Kind of document register: a DocumentKind, element of nomenclature 244.
inline constexpr auto KindRegister = Int32("KindRegister", Key | Required, "Вид регистър");
inline constexpr auto KindSupply = Int16("KindSupply", Key | Required, "Вид покупка");
inline constexpr auto Level = Int32("Level", Key | Required, "Ниво");
inline constexpr auto FromSum = Amount("FromSum", Key | Required, "От сума");
inline constexpr auto ToSum = Amount("ToSum", Required, "До сума");
/// Whose head decides: an ApproverKind, element of nomenclature 245.
inline constexpr auto Approval = Byte("Approval", Required, "Одобряващ");
/// Of the kind of supply, in the language of the parameter FirstLanguage.
inline constexpr auto KindSupplyName = String("KindSupplyName", 40, Joined, "Име");

inline constexpr std::string_view kServerClass = system::kLevelsApprovalClass;
inline constexpr auto FirstLanguage = Bit("FirstLanguage");
/// What an apply answers as owner data: Null, or a sentence that names the sums for which the
/// written rows leave no level.
inline constexpr auto dspLevelsApproval =
    Writes("dspLevelsApproval", "LevelsApproval", KindRegister, KindSupply, Level, FromSum, ToSum,
           Approval, KindSupplyName);

inline constexpr int kHighestLevel = 255;

/// Supplier orders are approved whatever their sum, and only for ОСМ and goods.
constexpr bool HasSums(std::int64_t kindRegister) {
  return kindRegister != static_cast<std::int64_t>(DocumentKind::SupplierOrder);
}

inline constexpr std::string_view kRangeUpsideDown =
    "Поле 'До сума' трябва да е по - голямо или равно на 'От сума'";

}  // namespace orvane::levels_approval
