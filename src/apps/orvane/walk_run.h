#pragma once

#include <string>

#include "apps/orvane/backend.h"

namespace orvane::desktop {
class QtToolkit;
}  // namespace orvane::desktop

namespace orvane::apps {

struct WalkOptions {
  std::string file;
  std::string pictures;  ///< folder for the pictures and the page with the story; empty: none
};

/// Goes a walk through the windows against a demonstration company. The problem's text; empty when
/// all went well.
std::string RunWalkFile(QtToolkit& toolkit, const WalkOptions& walk, BackendOptions backend);

}  // namespace orvane::apps
