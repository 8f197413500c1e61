#pragma once

namespace orvane {

class TPageControl;

/// Shows and focuses the next visible page behind the active one; false when there is none.
bool ShowNextPage(TPageControl& pages);

}  // namespace orvane
