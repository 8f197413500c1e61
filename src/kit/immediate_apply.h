#pragma once

// Saving without a save step: every posted or deleted row goes to the server at once.

#include <cstdint>

#include "data/client_dataset.h"
#include "host/dialogs.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// How often the log is sent: once, or again until nothing is left in it.
enum class ApplyForm : unsigned char { Once, Repeated };

struct ImmediateApply {
  std::int32_t maxErrors = 0;  ///< 0: all or nothing; -1: every row is tried
  ApplyForm form = ApplyForm::Once;
  AfterRefusal afterRefusal = AfterRefusal::Correct;
  /// The server answers an apply with a sentence where what was written deserves a second look: it
  /// is shown, and nothing of what was typed is undone.
  bool tellsWarnings = false;
  /// A change that cannot be sent is dropped instead of waiting in the log: decisions are made when
  /// they are made, not when a link comes back.
  bool dropsUnsent = false;
};

/// Binds the dataset's AfterPost, AfterDelete, OnReconcileError and AfterApplyUpdates so that
/// changes are applied at once and the connection is closed afterwards. What cannot be sent waits
/// in the log, and the form knows of it (TVosBaseForm::Keeps).
void ApplyAtOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how);

/// Sends what the log holds. When the link fails the user may try again as often as he likes; on No
/// the changes stay in the log, to be sent with the next ones, and the event ends. The repeated
/// form stops when a pass applies nothing. What the user laid over somebody else's change in a
/// conflict is a new attempt of his and goes at once, whatever the form.
void ApplyChanges(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how);

}  // namespace orvane::kit
