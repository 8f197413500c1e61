#include "desktop/reports/report_export.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMarginsF>
#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QPageLayout>
#include <QtGui/QPdfWriter>
#include <functional>

#include "desktop/qt_text.h"
#include "desktop/reports/report_csv.h"
#include "desktop/reports/report_xlsx.h"

namespace orvane::desktop {
namespace {

Failure Unwritable(const QString& path) {
  return {FailureKind::Refused,
          "Файлът „" + Utf8(path) + "“ не може да се запише. Изберете друго място."};
}

/// `write` fills the file, asking as it goes, and answers whether all went in.
Answer<Done> SaveWhole(const QString& path, const ReportProgress& progress,
                       const std::function<bool(QSaveFile&, const ReportProgress&)>& write) {
  bool stopped = false;
  const ReportProgress asking = [&](std::int64_t done, std::int64_t total) {
    stopped = stopped || (progress && !progress(done, total));
    return !stopped;
  };
  // What is no file (a device, a folder) is not to be replaced by one.
  const QFileInfo there(path);
  if (there.exists() && !there.isFile()) return Unwritable(path);
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return Unwritable(path);
  if (write(file, asking) && file.commit()) return Done();
  if (stopped) return Failure{FailureKind::Refused, "Записът е спрян. Файлът не е създаден."};
  return Unwritable(path);
}

bool Put(QSaveFile& file, std::string_view bytes) {
  const auto size = static_cast<qint64>(bytes.size());
  return file.write(bytes.data(), size) == size;
}

bool CopyInto(QSaveFile& file, const QString& path) {
  constexpr qint64 kPiece = 1 << 20;
  QFile from(path);
  if (!from.open(QIODevice::ReadOnly)) return false;
  while (!from.atEnd()) {
    const QByteArray piece = from.read(kPiece);
    if (piece.isEmpty() || file.write(piece) != piece.size()) return false;
  }
  return true;
}

}  // namespace

Answer<Done> SavePdf(const ReportPages& pages, const QString& path,
                     const ReportProgress& progress) {
  return SaveWhole(path, progress, [&pages](QSaveFile& file, const ReportProgress& asking) {
    constexpr int kResolution = 720;
    QPdfWriter writer(&file);
    writer.setResolution(kResolution);
    writer.setTitle(Qs(pages.Document().title));
    writer.setCreator("Orvane");
    writer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4),
                    pages.IsLying() ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF()));
    return pages.PaintAll(writer, kResolution, asking) && file.error() == QFileDevice::NoError;
  });
}

Answer<Done> SaveXlsx(const ReportPages& pages, const QString& path,
                      const ReportProgress& progress) {
  constexpr std::int64_t kOtherRows = 3;  // two of the heading and the sums
  const ReportSnapshot& report = pages.Snapshot();
  for (std::size_t table = 0; table < report.Document().tables.size(); ++table) {
    if (report.RowCount(table) <= kSheetRows - kOtherRows) continue;
    return Failure{FailureKind::Refused,
                   "Редовете са повече, отколкото събира лист на XLSX. "
                   "Запишете справката като CSV."};
  }
  return SaveWhole(path, progress, [&report](QSaveFile& file, const ReportProgress& asking) {
    const QTemporaryDir folder;
    const QString whole = folder.filePath("report.xlsx");
    return folder.isValid() && WriteXlsx(report, whole, asking) && CopyInto(file, whole);
  });
}

Answer<Done> SaveCsv(const ReportPages& pages, const QString& path,
                     const ReportProgress& progress) {
  return SaveWhole(path, progress, [&pages](QSaveFile& file, const ReportProgress& asking) {
    return WriteCsv(
        pages.Snapshot(), [&file](std::string_view bytes) { return Put(file, bytes); }, asking);
  });
}

}  // namespace orvane::desktop
