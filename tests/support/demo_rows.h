#pragma once

// What the demonstration wrote, read back by the very tables it writes.

#include <string>

#include "server/demo/demo_tables.h"
#include "server/engine/database.h"
#include "support/floors.h"

namespace orvane::support {

/// Every column of the table in its order, rows by its key; `where` is a condition without the
/// word, empty for all rows. A failure is the test's.
DataPacket ReadDemoTable(Database& database, const DemoTable& table, const std::string& where = "");

}  // namespace orvane::support
