#pragma once

// The kinds of company that a walk may name at its head.

#include <string_view>

#include "packet/failure.h"
#include "server/demo/demo_company.h"

namespace orvane::server {

/// What makes the company of that name; an empty name is the demonstration. Refused, with the names
/// there are, when there is none.
///
///   ""                    the demonstration
///   "one language"        names in Bulgarian alone
///   "lev"                 its national currency is the lev
///   "empty"               registers and users, no documents
///   "two records"         a user, stoyanova, has two employee records
///   "without parameters"  the settings of the purchases module were never filled in
Answer<DemoOptions> DemoCompanyNamed(std::string_view name);

}  // namespace orvane::server
