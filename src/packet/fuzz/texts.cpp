// Whatever the bytes: readers of text do not crash, and what they promise about their results
// holds.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "packet/date.h"
#include "packet/decimal.h"
#include "packet/fold.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto must = [](bool holds) {
    if (!holds) std::abort();
  };
  if (const auto decimal = Decimal::Parse(text)) {
    must(Decimal::Parse(decimal->ToText()) == decimal);
  }
  if (const auto date = Date::Parse(text)) must(Date::Parse(date->ToText()) == date);
  const std::string folded = Fold(text);
  must(Fold(folded) == folded);
  must(Utf8Length(folded) <= Utf8Length(text));
  const std::string bound = PrefixUpperBound(text);
  must(bound.empty() || (bound > text && (!IsUtf8(text) || IsUtf8(bound))));
  return 0;
}
