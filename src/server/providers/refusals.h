#pragma once

#include "contract/field.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// The sentence for a change that the engine refused: the first of the provider's rules that the
/// change breaks, looked for in the transaction (after the change was undone). A general sentence
/// when no rule is broken any more.
Failure ExplainRefusal(Transaction& transaction, const ProviderDef& provider,
                       const WriteRules& rules, const Change& change, EngineErrorKind kind);

/// The sentence of a conflict: who changed the row, and what it looks like now or that it is gone
/// (`outcome.present` is empty then).
Failure ExplainConflict(const ProviderDef& provider, const WriteRules& rules, const Change& change,
                        const ChangeOutcome& outcome);

}  // namespace orvane::server
