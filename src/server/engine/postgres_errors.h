#pragma once

#include <string_view>

#include "server/engine/database.h"

struct pg_result;

namespace orvane::server {

EngineErrorKind KindOfSqlState(std::string_view state);
/// The failure that a result of PostgreSQL reports.
EngineError PostgresErrorOf(const pg_result* result);

}  // namespace orvane::server
