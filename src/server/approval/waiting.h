#pragma once

// How many documents wait for somebody's decision now.

#include "server/providers/work.h"

namespace orvane {

/// Documents whose turn is at a level that the asker decides today, as head or as deputy. No
/// arguments; answer [0]: the number, 0 for a user without an employee record.
Answer<VariantArray> CountWaiting(Work& work, const VariantArray& arguments);

}  // namespace orvane
