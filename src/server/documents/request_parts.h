#pragma once

// What the applies of all parts of a request have in common.

#include <span>

#include "server/documents/request_head.h"
#include "server/providers/write_rules.h"

namespace orvane {

/// The request whose parts a batch of changes belongs to. BadRequest when they belong to several,
/// or when a change would move its row to another request.
Answer<RequestKey, Setback> RequestOf(std::span<const PreparedChange> changes);

/// Value of a column in the row that a change leaves: the new one, else the one in `present`.
Variant ValueAfter(const Change& change, const NamedValues& present, std::string_view column);

/// Puts the present value of every changed column beside it, where the client sent none: history
/// keeps both.
void CompleteOldValues(Change& change, const NamedValues& present);

Setback Refusal(Failure failure);
Setback BadRequest(std::string sentence);

}  // namespace orvane
