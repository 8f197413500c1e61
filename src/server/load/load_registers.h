#pragma once

// The registers that other programs of a company keep (cost centres, employees, partners, goods …),
// from a folder of CSV files. A file is named as its table and begins with the names of its
// columns; tables are written in the order in which they name each other, all in one transaction,
// with their history.

#include <cstdint>
#include <string>

#include "packet/clock.h"
#include "packet/failure.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Number of rows. Refused, naming file and line, when a file is of no register, a value is none of
/// its column, or the row contradicts what is there; nothing was written then.
Answer<std::int64_t> LoadRegisters(Database& database, const Clock& clock,
                                   const std::string& folder);

}  // namespace orvane::server
