#pragma once

// A report into a file. All of it is written beside the file and takes its place at the end: a file
// that could not be written whole is not there, and one that was there before is as it was.
// Refused, in a sentence, when it cannot be written or `progress` stopped it.

#include <QtCore/QString>

#include "desktop/reports/report_pages.h"
#include "packet/failure.h"

namespace orvane::desktop {

Answer<Done> SavePdf(const ReportPages& pages, const QString& path,
                     const ReportProgress& progress = {});
/// Refused too when a table has more rows than a sheet.
Answer<Done> SaveXlsx(const ReportPages& pages, const QString& path,
                      const ReportProgress& progress = {});
Answer<Done> SaveCsv(const ReportPages& pages, const QString& path,
                     const ReportProgress& progress = {});

}  // namespace orvane::desktop
