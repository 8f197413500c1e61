#pragma once

// When somebody else changed the row that a user changed too: the fields that both changed, as
// mine, as they are now and as they were, in the words of the screen, and the choice between them.

#include "data/client_dataset.h"

namespace orvane::host {

class TVosBaseForm;

/// Shows the conflict over `form` and returns what to do. Merge writes the ticked fields only:
/// names of the others are put into `error.givenUp`. Leaving the dialog without a choice keeps what
/// was typed (Correct). When the row is gone, or was to be deleted, the user is told and Refresh
/// returned.
ReconcileAction RunConflictForm(TVosBaseForm& form, TVosClientDataSet& dataSet,
                                const ReconcileError& error);

}  // namespace orvane::host
