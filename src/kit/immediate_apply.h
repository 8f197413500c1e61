#pragma once

// Saving without a save step: every posted or deleted row goes to the server at once.

#include <cstdint>

#include "data/client_dataset.h"
#include "host/dialogs.h"

namespace orvane {

class TVosBaseForm;

/// How often the log is sent: once, or again until nothing is left in it.
enum class ApplyForm : unsigned char { Once, Repeated };

struct ImmediateApply {
  std::int32_t maxErrors = 0;  ///< 0: all or nothing; -1: every row is tried
  ApplyForm form = ApplyForm::Once;
  AfterRefusal afterRefusal = AfterRefusal::Correct;
  /// The server answers an apply with a sentence where what was written deserves a second look: it
  /// is shown, and nothing of what was typed is undone.
  bool tellsWarnings = false;
};

/// Binds the dataset's AfterPost, AfterDelete, OnReconcileError and AfterApplyUpdates so that
/// changes are applied at once and the connection is closed afterwards.
void ApplyAtOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how);

/// Sends what the log holds. When the link fails the user may try again as often as he likes; on No
/// the changes stay in the log, to be sent with the next ones, and the event ends. The repeated
/// form stops when a pass applies nothing.
void ApplyChanges(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how);

}  // namespace orvane
