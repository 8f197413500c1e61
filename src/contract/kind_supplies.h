#pragma once

// Kinds of supplies ("Видове покупки"): a small numeric code and a name in two languages.
// Parameters tell which of them are capital expenditure, ОСМ, goods and so on.

#include "contract/field.h"

namespace orvane::kind_supplies {

inline constexpr auto Code = Int16("Code", Key | Required, "Код");
inline constexpr auto Name = String("Name", 40, Required | Folded, "Име");
inline constexpr auto Name2 = String("Name2", 40, Folded, "Име");

inline constexpr std::string_view kServerClass = "TsmKindSupplies";
inline constexpr auto dsKindSupplies = Writes("dsKindSupplies", "KindSupplies", Code, Name, Name2);

}  // namespace orvane::kind_supplies
