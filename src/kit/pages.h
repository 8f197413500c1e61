#pragma once

#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class TPageControl;
}  // namespace orvane::host

namespace orvane::kit {

/// Shows and focuses the next visible page behind the active one; false when there is none.
bool ShowNextPage(TPageControl& pages);

/// Offers a page while its grid has rows. When the page that is hidden was the active one, the
/// first page is shown.
void OfferPageWithRows(TPageControl& pages, std::string_view name);

}  // namespace orvane::kit
