#pragma once

// How many documents wait for somebody's decision now.

#include "server/documents/document_head.h"
#include "server/providers/work.h"

namespace orvane::server {

/// Heads (alias p) of a kind with the approval row (alias a) whose turn it is: tables and condition
/// of a select.
std::string WaitingRows(const StoredDocument& document, std::string_view join = {});

/// Documents whose turn is at a level that the asker decides today, as head or as deputy. No
/// arguments; answer [0]: the number, 0 for a user without an employee record.
Answer<VariantArray> CountWaiting(Work& work, const VariantArray& arguments);

}  // namespace orvane::server
