#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/report_snapshot.h"
#include "packet/failure.h"

namespace orvane::desktop {

/// Writes a report as comma-separated text that a Bulgarian spreadsheet program opens by itself:
/// UTF-8 with its mark, semicolons, decimal commas without parted thousands, lines ended by CR LF.
/// A text that a spreadsheet would take for a formula gets an apostrophe before it. A list is its
/// table alone; a document has its facts above. `sink` answers false when it takes no more; false
/// then, and when `progress` stopped it or the snapshot cannot be read.
bool WriteCsv(const ReportSnapshot& report, const std::function<bool(std::string_view)>& sink,
              const ReportProgress& progress = {});

}  // namespace orvane::desktop
