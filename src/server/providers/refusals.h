#pragma once

#include "contract/field.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/providers/write_rules.h"

namespace orvane {

/// The sentence for a change that the engine refused: the first of the provider's rules that the
/// change breaks, looked for in the transaction (after the change was undone). A general sentence
/// when no rule is broken any more.
Failure ExplainRefusal(Transaction& transaction, const ProviderDef& provider,
                       const WriteRules& rules, const Change& change, EngineErrorKind kind);

/// The sentence of a conflict: what the row looks like now, or that it is gone. `present` is empty
/// when it is gone.
Failure ExplainConflict(const ProviderDef& provider, const WriteRules& rules, const Change& change,
                        const NamedValues& present);

}  // namespace orvane
