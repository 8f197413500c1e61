#include "desktop/reports/barcode.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace orvane::desktop {
namespace {

/// Bars and gaps of each symbol, by its value; the last one ends the code.
constexpr std::string_view kSymbols[] = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312", "132212",
    "221213", "221312", "231212", "112232", "122132", "122231", "113222", "123122", "123221",
    "223211", "221132", "221231", "213212", "223112", "312131", "311222", "321122", "321221",
    "312212", "322112", "322211", "212123", "212321", "232121", "111323", "131123", "131321",
    "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331", "132131",
    "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311", "213131",
    "311123", "311321", "331121", "312113", "312311", "332111", "314111", "221411", "431111",
    "111224", "111422", "121124", "121421", "141122", "141221", "112214", "112412", "122114",
    "122411", "142112", "142211", "241211", "221114", "413111", "241112", "134111", "111242",
    "121142", "121241", "114212", "124112", "124211", "411212", "421112", "421211", "212141",
    "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113", "411311",
    "113141", "114131", "311141", "411131", "211412", "211214", "211232", "2331112"};
constexpr int kStartText = 104;
constexpr int kStartPairs = 105;
constexpr int kStop = 106;
constexpr int kModulus = 103;
static_assert(std::size(kSymbols) == kStop + 1);

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Values of the symbols between start and check; the start stands first.
std::vector<int> Values(std::string_view text) {
  const bool pairs = text.size() % 2 == 0 && std::ranges::all_of(text, IsDigit);
  std::vector<int> values = {pairs ? kStartPairs : kStartText};
  for (std::size_t i = 0; i < text.size(); i += pairs ? 2 : 1)
    values.push_back(pairs ? (text[i] - '0') * 10 + (text[i + 1] - '0') : text[i] - ' ');
  return values;
}

}  // namespace

std::optional<std::vector<int>> Code128(std::string_view text) {
  const bool printable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
  if (text.empty() || !printable) return std::nullopt;
  std::vector<int> values = Values(text);
  int sum = values.front();
  for (std::size_t i = 1; i < values.size(); ++i)
    sum = (sum + static_cast<int>(i) * values[i]) % kModulus;
  values.push_back(sum % kModulus);
  values.push_back(kStop);
  std::vector<int> widths;
  for (const int value : values) {
    for (const char width : kSymbols[value])
      widths.push_back(width - '0');
  }
  return widths;
}

}  // namespace orvane::desktop
