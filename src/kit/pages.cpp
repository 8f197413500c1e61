#include "kit/pages.h"

#include "host/small_controls.h"

namespace orvane {

bool ShowNextPage(TPageControl& pages) {
  for (auto next = static_cast<std::size_t>(pages.active) + 1; next < pages.pages.size(); ++next) {
    if (!pages.pages[next].visible) continue;
    pages.ShowPage(pages.pages[next].name);
    return true;
  }
  return false;
}

}  // namespace orvane
