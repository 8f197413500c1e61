#pragma once

#include <QtWidgets/QAbstractScrollArea>

#include "desktop/control_view.h"
#include "desktop/grids/grid_columns.h"

namespace orvane::host {
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::desktop {

/// Shows an editable grid: heads, fixed columns, the current cell, the row in edit. Painted row by
/// row from the dataset, so that a hundred thousand rows cost what a screenful does.
class GridView final : public QAbstractScrollArea, public ControlView {
 public:
  GridView(TVosDBGrid& grid, FormMemory& memory);

  QWidget& Widget() override { return *this; }
  QWidget& Surface() override { return *viewport(); }
  QRect EditorPlace() const override;
  Qt::Alignment EditorAlignment() const override;
  QRect BringIntoSight(int row, int column) override;
  QString CurrentText() const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  const GridColumns& Columns() const { return columns_; }

 protected:
  void Changed() override;
  std::uint64_t ShownVersion() const override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  struct Drag {
    int column = -1;  ///< whose right border is dragged; -1: none
    int startX = 0;
    int startWidth = 0;
  };

  std::size_t ColumnsHash() const;
  void MeasureColumns();
  void SettleBars();
  void FollowCursor();
  int VisibleRows() const;
  int ColumnLeft(int column) const;
  QRect CellRect(int row, int column) const;
  int RowAt(int y) const;
  int ColumnAt(int x) const;
  /// The column whose right border is at that place of the head; -1 when none is.
  int BorderAt(const QPoint& at) const;
  void Point(const QPoint& at, bool openEditor);
  void EndDrag();

  TVosDBGrid& grid_;
  FormMemory& memory_;
  GridColumns columns_;
  std::size_t measured_ = 0;
  std::size_t seenRow_ = 0;
  int seenColumn_ = -1;
  Drag drag_;
};

}  // namespace orvane::desktop
