#pragma once

// A report laid out on pages. Planned once, painted on whatever shows it: the preview, a printer, a
// file. Lengths are tenths of a point.

#include <QtCore/QSize>
#include <QtCore/QString>
#include <vector>

#include "host/report.h"
#include "packet/failure.h"

class QPainter;
class QPagedPaintDevice;

namespace orvane {

class ReportPages {
 public:
  /// Keeps a copy of the document.
  explicit ReportPages(ReportDocument document);

  int Count() const { return static_cast<int>(pages_.size()); }
  /// A4, lying when the columns do not fit upright.
  bool IsLying() const { return lying_; }
  /// In tenths of a point.
  QSize PageSize() const;
  const ReportDocument& Document() const { return document_; }
  /// Paints a page; the painter's unit is a tenth of a point, its origin the page's corner.
  void PaintPage(QPainter& painter, int page) const;
  /// Paints all pages on a device whose page is A4 in the right orientation, without margins.
  /// False when the device failed.
  bool PaintAll(QPagedPaintDevice& device, int resolution) const;

  /// What stands on a page, top down.
  enum class Part : unsigned char { Head, Caption, Heading, Row, Totals, FootLine };
  struct Placed {
    Part part = Part::Row;
    int table = 0;
    int row = 0;
    int top = 0;
    int height = 0;
  };
  const std::vector<Placed>& PartsOf(int page) const {
    return pages_[static_cast<std::size_t>(page)];
  }

 private:
  struct TablePlan {
    std::vector<int> widths;
    std::vector<int> lefts;
    int headingHeight = 0;
    int groupHeight = 0;
  };

  void PlanTable(const ReportTable& table);
  void PlanPages();
  void PlaceTable(int table);
  /// Starts a new page when `height` does not fit; true when it did.
  bool Reserve(int height);
  void Place(Part part, int table, int row, int height);
  int RowHeight(int table, const std::vector<std::string>& texts, bool bold) const;
  int HeadHeight() const;
  int Bottom() const;

  void PaintHead(QPainter& painter, const Placed& at) const;
  void PaintNumber(QPainter& painter, int top) const;
  void PaintFacts(QPainter& painter, int top) const;
  void PaintHeading(QPainter& painter, const Placed& at) const;
  void PaintCells(QPainter& painter, const Placed& at, const std::vector<std::string>& texts,
                  bool bold) const;
  void PaintFoot(QPainter& painter, int page) const;

  ReportDocument document_;
  bool lying_ = false;
  std::vector<TablePlan> plans_;
  std::vector<std::vector<Placed>> pages_;
  int cursor_ = 0;  ///< while planning: where the next part goes
};

/// Writes the report as a PDF file. Refused, in a sentence, when the file cannot be written.
Answer<Done> RenderPdf(const ReportDocument& report, const QString& path);

}  // namespace orvane
