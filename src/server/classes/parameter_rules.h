#pragma once

// What a parameter of the module may hold, and which parameter holds a code of a register.

#include <optional>
#include <string>

#include "contract/module_parameters.h"
#include "packet/failure.h"
#include "server/providers/work.h"

namespace orvane::server {

/// "Параметърът „Допустима разлика за сума“".
std::string ParameterName(const parameters::ModuleParameter& parameter);

/// The value as the parameter's field keeps it; Null for a blank one. Refused when the text is no
/// number of the parameter's type or lies outside its bounds.
Answer<Variant> ParameterValue(const parameters::ModuleParameter& parameter,
                               const std::string& text);

/// Finds the register's row that the value is a code of, and keeps it from being deleted until the
/// transaction ends. Empty when the parameter refers to nothing.
std::optional<Statement> ReferredRow(const Work& work, const parameters::ModuleParameter& parameter,
                                     const Variant& value);

/// Refused, naming the parameter, when a parameter of the module holds that code of the register.
Answer<Done, Setback> NotInParameters(Transaction& transaction, parameters::Refers refers,
                                      std::int64_t code, std::string_view what);

}  // namespace orvane::server
