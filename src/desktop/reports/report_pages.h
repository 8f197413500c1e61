#pragma once

// A report laid out on pages. Planned once, painted on whatever shows it: the preview, a printer, a
// file. What is kept is where each page begins; a page's rows are read when it is painted. Lengths
// are tenths of a point.

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <memory>
#include <vector>

#include "host/report_snapshot.h"

class QPainter;
class QPagedPaintDevice;

namespace orvane::desktop {

class ReportPages {
 public:
  /// Runs through the report once, asking `progress` after every page; null when it was stopped.
  static std::unique_ptr<const ReportPages> Plan(TakenReport snapshot,
                                                 const ReportProgress& progress = {});
  /// Columns only, no pages; Plan makes those.
  explicit ReportPages(TakenReport snapshot);

  int Count() const { return static_cast<int>(starts_.size()); }
  /// A4, lying when the columns do not fit upright.
  bool IsLying() const { return lying_; }
  /// In tenths of a point.
  QSize PageSize() const;
  const ReportSnapshot& Snapshot() const { return *snapshot_; }
  const ReportDocument& Document() const { return snapshot_->Document(); }
  /// Paints a page; the painter's unit is a tenth of a point, its origin the page's corner.
  void PaintPage(QPainter& painter, int page) const;
  /// Paints all pages on a device whose page is A4 in the right orientation, without margins,
  /// asking `progress` before every page. False when the device failed or it was stopped.
  bool PaintAll(QPagedPaintDevice& device, int resolution,
                const ReportProgress& progress = {}) const;

  /// What stands on a page, top down.
  enum class Part : unsigned char { Head, Caption, Heading, Row, Totals, FootLine, End };
  struct Placed {
    Part part = Part::Row;
    std::size_t table = 0;
    std::int64_t row = 0;
    int top = 0;
    int height = 0;
    ReportRow cells;  ///< of a row and of totals
  };
  std::vector<Placed> PartsOf(int page) const;

 private:
  class Flow;
  struct TablePlan {
    std::vector<int> widths;
    std::vector<int> lefts;
    int headingHeight = 0;
    int groupHeight = 0;
  };
  /// A place between two parts, where a page may begin.
  struct Place {
    Part part = Part::Head;
    std::size_t table = 0;
    std::int64_t row = 0;
    ReportSnapshot::Mark mark;
  };

  void PlanTable(const ReportTable& table);
  int RowHeight(std::size_t table, const ReportRow& cells, bool bold) const;
  /// A labelled value of the head, from the top of the first.
  struct FactPlace {
    QRect label;
    QRect value;
    bool whole = true;  ///< all its lines have room
  };
  std::vector<FactPlace> PlaceFacts() const;
  int FactsHeight() const;
  int HeadHeight() const;
  int CaptionHeight(std::size_t table) const;
  int Bottom() const;

  void PaintHead(QPainter& painter, const Placed& at) const;
  void PaintNumber(QPainter& painter, int top) const;
  void PaintFacts(QPainter& painter, int top) const;
  void PaintHeading(QPainter& painter, const Placed& at) const;
  void PaintCells(QPainter& painter, const Placed& at, bool bold) const;
  void PaintFoot(QPainter& painter, int page) const;

  TakenReport snapshot_;
  bool lying_ = false;
  std::vector<TablePlan> plans_;
  std::vector<Place> starts_;
};

}  // namespace orvane::desktop
