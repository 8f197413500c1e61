#pragma once

// Moving between documents (or versions): six actions under one key edit, what each asks the server
// for, and which of them lead somewhere.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "contract/workflow.h"

namespace orvane {

class TVosBaseForm;
class TKeyEdit;

/// The six moves of one key edit. Their names end in a suffix of their own ("Y"), so that a screen
/// with two key edits has two sets on the same keys.
class KeyNavigation {
 public:
  /// Loads by a move with a step (0 but for the steps of ten); returns the load result code.
  using Load = std::function<LoadCode(Nav nav, int step)>;

  KeyNavigation(TVosBaseForm& form, TKeyEdit& edit, std::string_view suffix, Load load);

  /// Adds acFirst, acPriorPage, acPrior, acNext, acNextPage, acLast with the suffix.
  void AddTo();
  /// Names in the order of the bar.
  std::vector<std::string> ActionNames() const;

  /// What the last load said; the ends disable the moves beyond them.
  LoadCode code = LoadCode::Between;
  /// Set while the screen shows one given document: nothing moves.
  bool oneDocument = false;
  /// Enables the moves while the key edit has the focus; called from the form's live rules.
  void Refresh();

 private:
  TVosBaseForm& form_;
  TKeyEdit& edit_;
  std::string suffix_;
  Load load_;
};

}  // namespace orvane
