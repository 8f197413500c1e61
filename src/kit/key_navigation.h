#pragma once

// Moving between documents (or versions): six actions under one key edit, what each asks the server
// for, and which of them lead somewhere.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "contract/workflow.h"
#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
class TKeyEdit;
}  // namespace orvane::host

namespace orvane::kit {

/// The six moves of one key edit. Their names end in a suffix of their own ("Y"), so that a screen
/// with two key edits has two sets on the same keys.
class KeyNavigation {
 public:
  /// Loads by a move with a step (0 but for the steps of ten).
  using Load = std::function<void(Nav nav, int step)>;

  KeyNavigation(TVosBaseForm& form, TKeyEdit& edit, std::string_view suffix, Load load);

  /// Adds acFirst, acPriorPage, acPrior, acNext, acNextPage, acLast with the suffix.
  void AddTo();
  /// Names in the order of the bar.
  std::vector<std::string> ActionNames() const;

  /// Enables the moves while the key edit has the focus, but for those beyond the end that the last
  /// load met, and none while the screen shows one given document. Called from the form's
  /// AfterRefreshActions.
  void Refresh(LoadCode lastLoad, bool oneDocument);

 private:
  TVosBaseForm& form_;
  TKeyEdit& edit_;
  std::string suffix_;
  Load load_;
};

}  // namespace orvane::kit
