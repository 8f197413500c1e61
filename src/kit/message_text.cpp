#include "kit/message_text.h"

namespace orvane::kit {

std::string Filled(std::string_view text, std::initializer_list<std::string_view> values) {
  std::string filled;
  for (std::string_view value : values) {
    const std::size_t at = text.find("%s");
    if (at == std::string_view::npos) break;
    filled.append(text.substr(0, at)).append(value);
    text.remove_prefix(at + 2);
  }
  return filled.append(text);
}

}  // namespace orvane::kit
