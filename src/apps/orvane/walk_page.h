#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::apps {

/// A page that tells a walk as a story: its comments as text, its pictures where they were taken,
/// the steps between them folded away. `pictures` are file names beside the page, in the order in
/// which the walk took them; a walk that stopped early has fewer.
std::string WalkPage(std::string_view walk, const std::vector<std::string>& pictures,
                     std::string_view problem);

}  // namespace orvane::apps
