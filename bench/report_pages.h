#pragma once

// Pages of the report of requests under each field of its filter: the value that fewest requests
// have, the one that most have, and one that none has.

#include <string>
#include <string_view>
#include <vector>

#include "company.h"

namespace orvane::bench {

struct ReportPage {
  std::string name;    ///< "Supplier=rare"
  std::string asked;   ///< what the screen adds to its statement
  std::string byHand;  ///< the same as a condition on po
};

std::vector<ReportPage> ReportPages(const BenchCompany& company);

/// The statements as the screens send them, up to their conditions.
extern const std::string_view kReportSearch;
extern const std::string_view kSupplyListSearch;

}  // namespace orvane::bench
