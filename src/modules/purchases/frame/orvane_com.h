#pragma once

// The search of the supply list, from which requests, orders and deliveries pick their rows. It
// depends on how supplies are chosen and on the kind of supply list.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packet/date.h"
#include "packet/variant.h"

namespace orvane::host {
class TVosMTCombo;
}  // namespace orvane::host

namespace orvane::modules {

inline constexpr std::string_view _rBaseSuppList = "Търсене - Основен списък за доставка";
inline constexpr std::string_view _rBaseSuppListDates =
    "Търсене - Основен списък за доставка по дати";
inline constexpr std::string_view _rSuppList = "Търсене - Списък за доставка";
inline constexpr std::string_view _rSuppListDates = "Търсене - Списък за доставка по дати";

/// Ways of choosing from the supply list (nomenclature 90).
enum class SupplyChoice : int { None = 0, ByList = 1, ByListOnDate = 2, ByListUpToDate = 3 };

/// The template of the supply-list search, as lines for the combo's lookup, and the combo's search
/// caption set to match. `kindList` Null is the base list; no `onDate` is no date limit. Empty when
/// `kind` is none of the three ways: there is nothing to search then.
std::vector<std::string> SetSuppListsSQL(int kind, const Variant& kindList, TVosMTCombo& combo,
                                         std::optional<Date> onDate);

}  // namespace orvane::modules
