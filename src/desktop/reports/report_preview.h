#pragma once

#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QWidget>
#include <memory>
#include <vector>

#include "desktop/reports/report_pages.h"

namespace orvane::desktop {

/// The pages of a report one under another, on a grey ground.
class ReportSheet final : public QAbstractScrollArea {
 public:
  explicit ReportSheet(const ReportPages& pages);
  void Zoom(int by);
  void ScrollBy(int pages);
  void ScrollLines(int lines);
  void ScrollToEnd(bool last);
  /// The page in the middle of what is seen, from 1.
  int PageInSight() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QSize SheetSize() const;
  void SettleBars();

  const ReportPages& pages_;
  int percent_ = 100;
};

/// Shows a report before it is printed or saved. Escape closes it.
class ReportPreview final : public QWidget {
 public:
  explicit ReportPreview(std::unique_ptr<const ReportPages> pages);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Command;
  static const Command kCommands[];

  void Print();
  void SaveAsPdf();
  void SaveAsXlsx();
  void SaveAsCsv();
  void Larger() { Zoomed(20); }
  void Smaller() { Zoomed(-20); }
  void Leave() { hide(); }
  void Zoomed(int by);
  void Tell(const QString& text);
  /// A kind of file that the report is saved as.
  struct FileKind;
  void SaveAs(const FileKind& kind);
  std::vector<QRect> CommandRects() const;

  std::unique_ptr<const ReportPages> pages_;
  ReportSheet* sheet_;
  QString told_;
};

}  // namespace orvane::desktop
