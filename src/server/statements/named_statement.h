#pragma once

// Statements whose parameters have names: ":Login" in the text becomes the number of a parameter
// with the value of that name.
//
//   Named("select Name from Employees where Employee = :Employee", {{"Employee", 100}}, columns)

#include <span>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "packet/variant.h"
#include "server/catalogue/sql_holes.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Every :Name of the text must be among the values (asserted); a value that the text does not name
/// is left out.
Statement Named(std::string_view text, const NamedValues& values,
                std::vector<ResultColumn> columns = {});

/// Columns of a result that has the provider's fields in their order.
std::vector<ResultColumn> ColumnsOf(const ProviderDef& provider);

}  // namespace orvane::server
