#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "packet/floors.h"

namespace orvane::data {
class TLookupTable;
}  // namespace orvane::data

namespace orvane::host {
class TVosDataInspector;
}  // namespace orvane::host

namespace orvane::kit {

/// Whether a currency of this name ("Лев", "Български лев", "BGN") is the lev.
bool IsLev(std::string_view currencyName);

/// A caption that speaks of the lev ("Левова сума на искането"): as it stands while the national
/// currency is the lev or has no name; for another one `plain` with its name: "Сума на искането в
/// евро".
std::string NationalCaption(std::string_view levCaption, std::string_view plain,
                            std::string_view currencyName);

/// Items of a document that follow its currency.
struct CurrencyItems {
  std::string_view sum;          ///< amount in the national currency
  std::string_view currencySum;  ///< amount in the document's
  std::string_view plain;        ///< caption of `sum` in the national currency
  std::string_view lev;          ///< and in a foreign one, while the national one is the lev
};

/// Rate and amount in currency are shown for a foreign currency only; the caption of the national
/// amount says then in what it is. The national currency's name is the one in `currencies`.
void ShowByCurrency(TVosDataInspector& head, TVosDataInspector& sums, const CurrencyItems& items,
                    bool foreign, const TLookupTable& currencies, std::int64_t nationalCurrency);

}  // namespace orvane::kit
