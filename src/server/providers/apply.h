#pragma once

#include "packet/application_server.h"
#include "server/providers/server_class.h"
#include "server/providers/work.h"

namespace orvane::server {

/// More changes than any screen collects.
inline constexpr std::size_t kMostChanges = 5000;

/// Carries out a delta: first all changes in one go; when that fails, again one by one. Maximum
/// errors 0 keeps all or nothing and stops at the first failure, -1 keeps the good ones. Changes
/// whose keys were carried out before are answered as they were then.
Answer<ApplyAnswer> ApplyDelta(Work& work, const ServerClass& serverClass,
                               const ProviderRow& provider, const ApplyRequest& request);

}  // namespace orvane::server
