#include "kit/documents/national_currency.h"

#include "data/lookup_table.h"
#include "host/controls/inspector.h"
#include "packet/fold.h"

namespace orvane::kit {

bool IsLev(std::string_view currencyName) {
  const std::string name = Fold(Trim(currencyName));
  std::size_t begin = 0;
  while (begin <= name.size()) {
    const std::size_t end = std::min(name.find(' ', begin), name.size());
    const std::string_view word = std::string_view(name).substr(begin, end - begin);
    if (word == Fold("лев") || word == Fold("лева") || word == Fold("BGN")) return true;
    begin = end + 1;
  }
  return false;
}

std::string NationalCaption(std::string_view levCaption, std::string_view plain,
                            std::string_view currencyName) {
  if (IsBlank(currencyName) || IsLev(currencyName)) return std::string(levCaption);
  return std::string(plain) + " в " + Fold(currencyName);
}

void ShowByCurrency(TVosDataInspector& head, TVosDataInspector& sums, const CurrencyItems& items,
                    bool foreign, const TLookupTable& currencies, std::int64_t nationalCurrency) {
  head.FindItem("RateOfExchange")->visible = foreign;
  sums.FindItem(items.currencySum)->visible = foreign;
  const std::string name = currencies.ValueOf(nationalCurrency, "Name").ToText();
  sums.FindItem(items.sum)->label =
      foreign ? NationalCaption(items.lev, items.plain, name) : std::string(items.plain);
}

}  // namespace orvane::kit
