#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace orvane::server {

/// Somebody of the demonstration company who may log in.
struct DemoPerson {
  std::string_view login;
  std::string_view name;
  std::string_view name2;
  std::string_view password;
  std::int32_t level;
  std::int32_t language;
  std::int32_t rights;          ///< at every point
  std::int64_t employee;        ///< code of the employee record, 0: none
  std::string_view occupation;  ///< what the login screen says of him
  /// Has no rights where deliveries and invoices are kept, and so sees only requests that concern
  /// him.
  bool seesLittle = false;
};

std::span<const DemoPerson> DemoPeople();

}  // namespace orvane::server
