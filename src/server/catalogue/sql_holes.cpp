#include "server/catalogue/sql_holes.h"

namespace orvane::server {

std::string Replaced(std::string_view text, std::string_view mark, std::string_view by) {
  std::string replaced;
  for (;;) {
    const std::size_t at = text.find(mark);
    replaced += text.substr(0, at);
    if (at == std::string_view::npos) return replaced;
    replaced += by;
    text.remove_prefix(at + mark.size());
  }
}

}  // namespace orvane::server
