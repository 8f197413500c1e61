#include "kit/pages.h"

#include "host/controls/grid.h"
#include "host/controls/small_controls.h"

namespace orvane::kit {

bool ShowNextPage(TPageControl& pages) {
  for (auto next = static_cast<std::size_t>(pages.active) + 1; next < pages.pages.size(); ++next) {
    if (!pages.pages[next].visible) continue;
    pages.ShowPage(pages.pages[next].name);
    return true;
  }
  return false;
}

void OfferPageWithRows(TPageControl& pages, std::string_view name) {
  TabPage& page = *pages.FindPage(name);
  page.visible = !dynamic_cast<const TVosDBGrid&>(*page.content).DataSet().IsEmpty();
  const bool shown = &pages.pages[static_cast<std::size_t>(pages.active)] == &page;
  if (shown && !page.visible) pages.active = 0;
}

}  // namespace orvane::kit
