#pragma once

#include <QtCore/QString>
#include <string>
#include <vector>

#include "host/report_snapshot.h"
#include "packet/failure.h"

namespace orvane::desktop {

/// Rows of a sheet.
inline constexpr std::int64_t kSheetRows = 1'048'576;

/// Writes a report as a workbook of real numbers, days and moments: a sheet per table, and a first
/// one with the head of a document. Whole numbers and decimals of more than 15 digits, which a
/// spreadsheet would round, stand as texts; so do days before 1 March 1900. Texts are cut at
/// 32,767 characters, all that a cell holds. False when the file could not be written whole, or
/// `progress` stopped it; what is there then is no workbook.
bool WriteXlsx(const ReportSnapshot& report, const QString& path,
               const ReportProgress& progress = {});

/// Captions as names of sheets: without what such names may not have, at most 31 characters, each
/// other than the ones before it, never empty.
std::vector<std::string> SheetNames(const std::vector<std::string>& captions);

}  // namespace orvane::desktop
