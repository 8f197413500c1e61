#pragma once

// Values as they stand in the text of a search statement.

#include <string>
#include <string_view>

#include "packet/date.h"

namespace orvane::kit {

/// "'ivanova'", quotes inside doubled.
std::string QuotedSql(std::string_view text);

/// A day in the form every server reads alike: "'20260305'".
std::string MSSQLDATE_Client(Date day);

}  // namespace orvane::kit
