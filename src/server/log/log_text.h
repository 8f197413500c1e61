#pragma once

// Texts of others in the log: a line of the log is one line, whatever a client calls its machine.
//
//   spdlog::warn("failed login of {} from {}", LogText(login), LogText(machine));

#include <string>
#include <string_view>

namespace orvane::server {

/// In quotes, cut to 100 code points; controls, quotes and what is no UTF-8 as \xNN.
std::string LogText(std::string_view value);

/// The text with the passwords of connection strings ("password=…", "…://user:…@host") struck out.
std::string WithoutPasswords(std::string_view text);

/// Has every line of the log written without controls and passwords, and cut.
void GuardLog();

}  // namespace orvane::server
