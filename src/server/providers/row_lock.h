#pragma once

#include <string_view>

#include "server/providers/work.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// Holds a row for the rest of the transaction, so that whoever checks the same thing waits his
/// turn and then sees what was written. A row that is not there holds nothing, which the reference
/// to it tells. SQLite has one writer and needs no lock.
Answer<Done, Setback> LockRow(WriteContext& context, std::string_view table,
                              std::string_view keyColumn, const Variant& key);

}  // namespace orvane::server
