#pragma once

// Whether a contract is in force is never stored but derived on the day asked, by searches, by the
// contract's own load and by the check of requests alike.

#include <string>
#include <string_view>

#include "server/catalogue/sql_holes.h"

namespace orvane::server {

/// 1 for a row of SuppliesContracts (alias {t}) that is signed, not blocked, and either not ended
/// on the day ({today}) or renewed by itself; otherwise 0.
inline constexpr std::string_view kActiveContract =
    "(case when {t}.ContractDate <= {today}"
    " and ({t}.AutomaticRenewal = 1 or {t}.FinishDate is null or {t}.FinishDate > {today})"
    " and ({t}.FreezeDate is null or {t}.FreezeDate > {today}) then 1 else 0 end)";

/// The same over an alias, with the day as an expression.
inline std::string ActiveContract(std::string_view alias, std::string_view today) {
  return Replaced(Replaced(kActiveContract, "{t}", alias), "{today}", today);
}

}  // namespace orvane::server
