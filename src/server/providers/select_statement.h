#pragma once

#include <optional>
#include <string_view>

#include "packet/application_server.h"
#include "server/engine/database.h"
#include "server/providers/server_class.h"
#include "server/providers/work.h"

namespace orvane::server {

/// A provider's select with its parameters, ready to run. With a row limit the statement reads one
/// row more than the limit, in the order of the key, after the continuation's key. Fails with
/// BadRequest for parameters that are missing, unknown or of the wrong kind, and for a continuation
/// that is none of this provider's.
Answer<Statement> SelectStatement(const Work& work, const ProviderRow& provider,
                                  const FetchRequest& request);

/// Takes the row beyond the limit off, and tells how to go on when there was one.
void CutPortion(const ProviderRow& provider, std::int32_t rowLimit, DataPacket& packet);

}  // namespace orvane::server
