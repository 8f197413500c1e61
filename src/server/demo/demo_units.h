#pragma once

// How the demonstration company is divided: departments, sections, cost centres, and who heads
// them. Requests are made for cost centres and decided by these heads.

#include <cstdint>
#include <span>
#include <string_view>

namespace orvane::server {

struct DemoDepartment {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
  std::string_view chief;       ///< login
  std::int64_t chiefsEmployee;  ///< his employee record
};

struct DemoSection {
  std::int64_t code;
  std::int32_t department;
  std::string_view name;
  std::string_view name2;
  std::int64_t chief;  ///< employee
};

struct DemoCostCenter {
  std::int64_t code;
  std::int64_t section;
  std::string_view name;
  std::string_view name2;
  std::int64_t chief;  ///< employee
  int share;           ///< of a thousand requests, how many are made for it
};

std::span<const DemoDepartment> DemoDepartments();
std::span<const DemoSection> DemoSections();
std::span<const DemoCostCenter> DemoCostCenters();

const DemoSection& DemoSectionOf(const DemoCostCenter& center);
/// Head of the cost centre (kind 1), of its section (2) or of its department (3), as an employee.
std::int64_t DemoHead(const DemoCostCenter& center, int kind);

}  // namespace orvane::server
