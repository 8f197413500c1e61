#include "desktop/grids/grid_view.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>
#include <algorithm>

#include "desktop/form_memory.h"
#include "desktop/grids/grid_painter.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/grid.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

constexpr int kFewestRows = 4;   // a grid is never lower than this many rows
constexpr int kDialogRows = 10;  // what a grid of a dialog asks for
constexpr int kWantedRows = 16;  // and one of a screen
constexpr int kMemoRows = 5;     // height of the editor of a memo
constexpr int kMemoWidth = 320;
constexpr int kBorderReach = 4;  // pixels around a border where it can be grasped

}  // namespace

GridView::GridView(TVosDBGrid& grid, FormMemory& memory)
    : ControlView(grid), grid_(grid), memory_(memory) {
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::NoFrame);
  setAttribute(Qt::WA_InputMethodEnabled);
  viewport()->setFocusPolicy(Qt::NoFocus);
  viewport()->setMouseTracking(true);
  setAccessibleName(Qs(grid.Name()));
  MeasureColumns();
}

/// What the columns' widths depend on.
std::size_t GridView::ColumnsHash() const {
  LookHasher hasher;
  for (const GridColumn& column : grid_.columns) {
    hasher.Add(column.field).Add(column.title).Add(column.group);
    hasher.Add(static_cast<std::size_t>(column.width)).Add(static_cast<std::size_t>(column.kind));
  }
  return hasher.Add(static_cast<std::size_t>(grid_.fixedCols))
      .Add(grid_.DataSet().Generation())
      .Add(grid_.DataSet().IsEmpty() ? 1U : 0U)
      .Value();
}

void GridView::MeasureColumns() {
  const std::size_t hash = ColumnsHash();
  if (hash == measured_) return;
  measured_ = hash;
  columns_.Measure(grid_, [this](int column) {
    const std::string& field = grid_.columns[static_cast<std::size_t>(column)].field;
    return memory_.ColumnWidth(grid_.Form().ClassName(), grid_.Name() + "." + field);
  });
  columns_.FitTo(viewport()->width());
}

std::uint64_t GridView::ShownVersion() const {
  return grid_.DataSet().Version();
}

void GridView::Changed() {
  MeasureColumns();
  SettleBars();
  const std::size_t row = grid_.DataSet().RecNo();
  const int column = grid_.CurrentColumn();
  if (row != seenRow_ || column != seenColumn_) FollowCursor();
  seenRow_ = row;
  seenColumn_ = column;
  viewport()->update();
}

int GridView::VisibleRows() const {
  return std::max(1, (viewport()->height() - columns_.HeadHeight()) / kRowHeight);
}

void GridView::SettleBars() {
  const int rows = static_cast<int>(grid_.DataSet().RecordCount());
  const int page = VisibleRows();
  grid_.pageRows = std::max(1, page - 1);
  verticalScrollBar()->setPageStep(page);
  verticalScrollBar()->setRange(0, std::max(0, rows - page));
  const int hidden = columns_.Total() - viewport()->width();
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setSingleStep(4 * CharWidth());
  horizontalScrollBar()->setRange(0, std::max(0, hidden));
}

/// Scrolls as little as it takes to show the current cell whole.
void GridView::FollowCursor() {
  const int row = static_cast<int>(grid_.DataSet().RecNo());
  QScrollBar& down = *verticalScrollBar();
  if (row < down.value()) down.setValue(row);
  if (row >= down.value() + VisibleRows()) down.setValue(row - VisibleRows() + 1);
  const int column = grid_.CurrentColumn();
  if (column < columns_.Fixed() || columns_.Count() == 0) return;
  QScrollBar& across = *horizontalScrollBar();
  const int left = columns_.Left(column) - columns_.FixedWidth();
  const int right = left + columns_.Width(column);
  const int room = viewport()->width() - columns_.FixedWidth();
  if (right > across.value() + room) across.setValue(right - room);
  if (left < across.value()) across.setValue(left);
}

int GridView::ColumnLeft(int column) const {
  const int left = columns_.Left(column);
  return column < columns_.Fixed() ? left : left - horizontalScrollBar()->value();
}

QRect GridView::CellRect(int row, int column) const {
  const int top = columns_.HeadHeight() + (row - verticalScrollBar()->value()) * kRowHeight;
  return {ColumnLeft(column), top, columns_.Width(column), kRowHeight};
}

QRect GridView::EditorPlace() const {
  if (columns_.Count() == 0 || grid_.DataSet().IsEmpty()) return {};
  const int column = grid_.CurrentColumn();
  QRect place = CellRect(static_cast<int>(grid_.DataSet().RecNo()), column);
  if (grid_.columns[static_cast<std::size_t>(column)].kind == ColumnKind::Memo) {
    place.setHeight(kMemoRows * kRowHeight);
    place.setWidth(std::max(place.width(), kMemoWidth));
    if (place.right() > viewport()->width()) place.moveRight(viewport()->width() - 1);
    if (place.bottom() > viewport()->height()) place.moveBottom(viewport()->height() - 1);
  }
  const int left = column < columns_.Fixed() ? 0 : columns_.FixedWidth();
  return place & QRect(left, columns_.HeadHeight(), viewport()->width() - left,
                       viewport()->height() - columns_.HeadHeight());
}

Qt::Alignment GridView::EditorAlignment() const {
  const auto column = static_cast<std::size_t>(grid_.CurrentColumn());
  if (column >= grid_.columns.size()) return Qt::AlignLeft;
  return CellAlignment(grid_, static_cast<int>(column));
}

QRect GridView::BringIntoSight(int row, int column) {
  const int rows = static_cast<int>(grid_.DataSet().RecordCount());
  if (columns_.Count() == 0 || rows == 0)
    return {1, columns_.HeadHeight() + 1, viewport()->width() - 2, kRowHeight};
  const int wantedRow = row < 0 ? static_cast<int>(grid_.DataSet().RecNo()) : row;
  const int wantedColumn = column < 0 ? grid_.CurrentColumn() : column;
  if (wantedRow >= rows || wantedColumn >= columns_.Count()) return {};
  QScrollBar& down = *verticalScrollBar();
  if (wantedRow < down.value()) down.setValue(wantedRow);
  if (wantedRow >= down.value() + VisibleRows()) down.setValue(wantedRow - VisibleRows() + 1);
  if (wantedColumn >= columns_.Fixed()) {
    const int left = columns_.Left(wantedColumn) - columns_.FixedWidth();
    const int room = viewport()->width() - columns_.FixedWidth();
    QScrollBar& across = *horizontalScrollBar();
    if (left + columns_.Width(wantedColumn) > across.value() + room)
      across.setValue(left + columns_.Width(wantedColumn) - room);
    if (left < across.value()) across.setValue(left);
  }
  return CellRect(wantedRow, wantedColumn) & viewport()->rect();
}

QString GridView::CurrentText() const {
  if (columns_.Count() == 0 || grid_.DataSet().IsEmpty()) return {};
  return Qs(grid_.CurrentField().Text());
}

QSize GridView::sizeHint() const {
  const int rows = grid_.Form().Identity().opener == nullptr ? kWantedRows : kDialogRows;
  return {columns_.NaturalTotal() + verticalScrollBar()->sizeHint().width() + 2,
          columns_.HeadHeight() + rows * kRowHeight};
}

QSize GridView::minimumSizeHint() const {
  return {columns_.FixedWidth() + kMemoWidth / 2, columns_.HeadHeight() + kFewestRows * kRowHeight};
}

void GridView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  PaintGrid(painter, {.grid = grid_,
                      .columns = columns_,
                      .size = viewport()->size(),
                      .firstRow = verticalScrollBar()->value(),
                      .scrolled = horizontalScrollBar()->value(),
                      .focused = HasFocus()});
}

void GridView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  columns_.FitTo(viewport()->width());
  SettleBars();
  FollowCursor();
}

void GridView::scrollContentsBy(int, int dy) {
  viewport()->update();
  if (window() != nullptr) window()->update();
  const int rows = static_cast<int>(grid_.DataSet().RecordCount());
  const bool atEnd = verticalScrollBar()->value() + VisibleRows() >= rows;
  // Only while the user scrolls down: the keys fetch for themselves.
  if (dy < 0 && atEnd && grid_.DataSet().HasMore() && !grid_.Form().IsBusy())
    grid_.Form().Dispatch(EndNeared{&grid_});
}

// --- the mouse
// ------------------------------------------------------------------------------------

int GridView::RowAt(int y) const {
  if (y < columns_.HeadHeight()) return -1;
  const int row = verticalScrollBar()->value() + (y - columns_.HeadHeight()) / kRowHeight;
  return row < static_cast<int>(grid_.DataSet().RecordCount()) ? row : -1;
}

int GridView::ColumnAt(int x) const {
  for (int column = 0; column < columns_.Count(); ++column) {
    const int left = ColumnLeft(column);
    if (column >= columns_.Fixed() && x < columns_.FixedWidth()) continue;
    if (x >= left && x < left + columns_.Width(column)) return column;
  }
  return -1;
}

int GridView::BorderAt(const QPoint& at) const {
  if (at.y() >= columns_.HeadHeight()) return -1;
  for (int column = columns_.Count() - 1; column >= 0; --column) {
    const int right = ColumnLeft(column) + columns_.Width(column);
    if (std::abs(at.x() - right) <= kBorderReach) return column;
  }
  return -1;
}

void GridView::Point(const QPoint& at, bool openEditor) {
  const int row = RowAt(at.y());
  const int column = row < 0 ? -1 : ColumnAt(at.x());
  bool open = openEditor && row >= 0;
  if (row >= 0 && column >= 0 && !openEditor) {
    const bool check = grid_.columns[static_cast<std::size_t>(column)].kind == ColumnKind::Check;
    const bool onBox = CheckBoxRect(CellRect(row, column)).adjusted(-3, -3, 3, 3).contains(at);
    open = check && onBox && !grid_.readOnly &&
           !grid_.columns[static_cast<std::size_t>(column)].readOnly;
  }
  grid_.Form().Dispatch(Pointed{&grid_, row, column, open});
}

void GridView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int border = BorderAt(event->pos());
  if (border >= 0) {
    drag_ = {border, event->pos().x(), columns_.Width(border)};
    return;
  }
  Point(event->pos(), false);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (BorderAt(event->pos()) >= 0) return mousePressEvent(event);
  const int row = RowAt(event->pos().y());
  const int column = ColumnAt(event->pos().x());
  const bool check = row >= 0 && column >= 0 &&
                     grid_.columns[static_cast<std::size_t>(column)].kind == ColumnKind::Check;
  // The first click has flipped the box already.
  if (check && CheckBoxRect(CellRect(row, column)).contains(event->pos()))
    return mousePressEvent(event);
  Point(event->pos(), true);
  // The mouse has no Alt+Down: the list comes with the editor.
  const CellEditor* editor = grid_.Editor();
  if (editor != nullptr && editor->Combo() != nullptr && !editor->IsChanged())
    grid_.Form().Dispatch(ListWanted{});
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
  if (drag_.column < 0) {
    viewport()->setCursor(BorderAt(event->pos()) >= 0 ? Qt::SplitHCursor : Qt::ArrowCursor);
    return;
  }
  const int width = drag_.startWidth + event->pos().x() - drag_.startX;
  columns_.SetWidth(drag_.column, width);
  columns_.FitTo(viewport()->width());
  SettleBars();
  viewport()->update();
}

void GridView::mouseReleaseEvent(QMouseEvent*) {
  EndDrag();
}

void GridView::EndDrag() {
  if (drag_.column < 0) return;
  const std::string& field = grid_.columns[static_cast<std::size_t>(drag_.column)].field;
  memory_.KeepColumnWidth(grid_.Form().ClassName(), grid_.Name() + "." + field,
                          columns_.Width(drag_.column));
  drag_ = {};
}

}  // namespace orvane::desktop
