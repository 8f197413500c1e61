#include "desktop/grids/grid_painter.h"

#include <QtGui/QPainter>
#include <QtWidgets/QWidget>
#include <algorithm>

#include "desktop/grids/grid_columns.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/grid.h"

namespace orvane::desktop {
namespace {

constexpr int kEditBar = 4;       // width of the mark at the left of the row in edit
constexpr int kWholeWidth = 320;  // of a cut text that is shown whole

class GridPainter {
 public:
  GridPainter(QPainter& painter, const GridPicture& picture)
      : painter_(painter),
        picture_(picture),
        grid_(picture.grid),
        rows_(picture.grid.DataSet()),
        columns_(picture.columns) {
    painter_.setFont(ScreenFont());
  }

  void Paint() {
    painter_.fillRect(QRect(QPoint(), picture_.size), ColorOf(Role::Field));
    painter_.fillRect(0, 0, picture_.size.width(), columns_.HeadHeight(), ColorOf(Role::Head));
    painter_.setPen(ColorOf(Role::Line));
    painter_.drawLine(0, columns_.HeadHeight() - 1, picture_.size.width(),
                      columns_.HeadHeight() - 1);
    PaintPart(columns_.Fixed(), columns_.Count());
    PaintPart(0, columns_.Fixed());
    PaintGroupAcrossFixed();
    PaintCursor();
    if (rows_.IsEmpty()) PaintEmptyText();
    painter_.setPen(ColorOf(Role::Line));
    painter_.drawRect(0, 0, picture_.size.width() - 1, picture_.size.height() - 1);
  }

 private:
  int Left(int column) const {
    const int left = columns_.Left(column);
    return column < columns_.Fixed() ? left : left - picture_.scrolled;
  }
  int Top(int row) const { return columns_.HeadHeight() + (row - picture_.firstRow) * kRowHeight; }
  QRect Cell(int row, int column) const {
    return {Left(column), Top(row), columns_.Width(column), kRowHeight};
  }
  int LastRow() const {
    const int fits = (picture_.size.height() - columns_.HeadHeight()) / kRowHeight + 1;
    return std::min(static_cast<int>(rows_.RecordCount()), picture_.firstRow + fits);
  }
  bool IsCurrent(int row) const { return row == static_cast<int>(rows_.RecNo()); }

  /// Columns from `first` up to `end`; those that scroll are cut at the fixed ones.
  void PaintPart(int first, int end) {
    if (first >= end) return;
    const int left = first >= columns_.Fixed() ? columns_.FixedWidth() : 0;
    painter_.save();
    painter_.setClipRect(QRect(left, 0, picture_.size.width() - left, picture_.size.height()));
    for (int row = picture_.firstRow; row < LastRow(); ++row) {
      for (int column = first; column < end; ++column)
        PaintCell(row, column);
    }
    PaintHead(first, end);
    painter_.restore();
  }

  Role GroundOf(int row, int column) const {
    if (IsCurrent(row) && rows_.Editing()) return Role::RowEdit;
    if (IsCurrent(row)) return Role::RowCurrent;
    if (column < columns_.Fixed()) return Role::FieldFixed;
    const GridColumn& shown = grid_.columns[static_cast<std::size_t>(column)];
    return grid_.readOnly || shown.readOnly ? Role::FieldReadOnly : Role::Field;
  }

  void PaintCell(int row, int column) {
    const QRect cell = Cell(row, column);
    if (cell.right() < 0 || cell.left() > picture_.size.width()) return;
    const GridColumn& shown = grid_.columns[static_cast<std::size_t>(column)];
    painter_.fillRect(cell, ColorOf(GroundOf(row, column)));
    painter_.setPen(ColorOf(Role::LineSoft));
    painter_.drawLine(cell.bottomLeft(), cell.bottomRight());
    painter_.drawLine(cell.topRight(), cell.bottomRight());
    const TField* field = rows_.FindField(shown.field);
    if (field == nullptr) return;
    const auto position = static_cast<std::size_t>(row);
    const bool readOnly = grid_.readOnly || shown.readOnly;
    if (shown.kind == ColumnKind::Check) {
      const Variant value = rows_.ValueAt(position, *field);
      const bool ticked = value.AsInt().value_or(0) != 0 || value.AsBool().value_or(false);
      return PaintCheckBox(painter_, CheckBoxRect(cell), ticked, !readOnly);
    }
    const QRect room = cell.adjusted(kPadding, 0, -kPadding, -1);
    painter_.setPen(ColorOf(readOnly && !grid_.readOnly ? Role::TextDim : Role::Text));
    QString text = Qs(rows_.TextAt(position, *field));
    text.replace('\n', ' ');
    const QString fitting = painter_.fontMetrics().elidedText(text, Qt::ElideRight, room.width());
    painter_.drawText(
        room,
        static_cast<int>(CellAlignment(grid_, column)) | Qt::AlignVCenter | Qt::TextSingleLine,
        fitting);
  }

  // --- heads ------------------------------------------------------------------------------------

  void PaintHead(int first, int end) {
    painter_.setFont(ScreenFont(true));
    for (int column = first; column < end; ++column) {
      const int top = columns_.GroupOf(column) == nullptr ? 0 : columns_.GroupHeight();
      const QRect head(Left(column), top, columns_.Width(column), columns_.HeadHeight() - top);
      const std::string& title = grid_.columns[static_cast<std::size_t>(column)].title;
      PaintHeadCell(head, TitleLines(title).join('\n'));
    }
    for (const ColumnGroup& group : columns_.Groups()) {
      if (group.first < first || group.first >= end) continue;
      const int right = Left(group.last) + columns_.Width(group.last);
      const int left = Left(group.first);
      PaintHeadCell({left, 0, right - left, columns_.GroupHeight()}, group.title);
    }
    painter_.setFont(ScreenFont());
    painter_.setPen(ColorOf(Role::Line));
    const int bottom = columns_.HeadHeight() - 1;
    painter_.drawLine(Left(first), bottom, Left(end - 1) + columns_.Width(end - 1), bottom);
  }

  /// One title over both sides of the fixed columns' edge, while nothing is moved under it.
  void PaintGroupAcrossFixed() {
    const int fixed = columns_.Fixed();
    if (picture_.scrolled > 0 || fixed == 0 || fixed >= columns_.Count()) return;
    const ColumnGroup* here = columns_.GroupOf(fixed - 1);
    const ColumnGroup* there = columns_.GroupOf(fixed);
    if (here == nullptr || there == nullptr || here->title != there->title) return;
    const int left = Left(here->first);
    const int right = Left(there->last) + columns_.Width(there->last);
    painter_.setFont(ScreenFont(true));
    PaintHeadCell({left, 0, right - left, columns_.GroupHeight()}, here->title);
    painter_.setFont(ScreenFont());
  }

  void PaintHeadCell(const QRect& cell, const QString& text) {
    painter_.fillRect(cell, ColorOf(Role::Head));
    painter_.setPen(ColorOf(Role::Line));
    painter_.drawLine(cell.topRight(), cell.bottomRight());
    painter_.drawLine(cell.bottomLeft(), cell.bottomRight());
    painter_.setPen(ColorOf(Role::Text));
    painter_.drawText(cell.adjusted(1, 0, -1, 0), Qt::AlignCenter, text);
  }

  // --- the cursor -------------------------------------------------------------------------------

  void PaintCursor() {
    if (rows_.IsEmpty() || columns_.Count() == 0) return;
    const int row = static_cast<int>(rows_.RecNo());
    if (row < picture_.firstRow || row >= LastRow()) return;
    painter_.setRenderHint(QPainter::Antialiasing, false);
    if (rows_.Editing()) PaintEditMark(row);
    const int column = grid_.CurrentColumn();
    const int left = column < columns_.Fixed() ? 0 : columns_.FixedWidth();
    painter_.setClipRect(
        QRect(left, columns_.HeadHeight(), picture_.size.width() - left, picture_.size.height()));
    const QRect cell = Cell(row, column);
    const int width = picture_.focused ? 2 : 1;
    painter_.setPen(QPen(ColorOf(picture_.focused ? Role::Accent : Role::AccentLine), width,
                         Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    const int inset = width / 2;
    painter_.drawRect(cell.adjusted(inset, inset, -1, -1));
    painter_.setClipping(false);
    if (picture_.focused && grid_.readOnly) PaintWhole(cell, row, column);
  }

  /// Where nothing is typed, no editor shows what the current cell cuts off: it is laid over the
  /// neighbours.
  void PaintWhole(const QRect& cell, int row, int column) {
    const GridColumn& shown = grid_.columns[static_cast<std::size_t>(column)];
    const TField* field = rows_.FindField(shown.field);
    if (field == nullptr || shown.kind == ColumnKind::Check) return;
    const QString text = Qs(rows_.TextAt(static_cast<std::size_t>(row), *field));
    const QFontMetrics metrics = painter_.fontMetrics();
    const bool broken = text.contains('\n');
    if (!broken && metrics.horizontalAdvance(text) <= cell.width() - 2 * kPadding) return;
    const QRect sight(0, columns_.HeadHeight(), picture_.size.width() - 1,
                      picture_.size.height() - columns_.HeadHeight() - 1);
    QRect whole(cell.topLeft(), QSize(std::max(cell.width(), kWholeWidth), 0));
    const QRect room(0, 0, whole.width() - 2 * kPadding, QWIDGETSIZE_MAX);
    constexpr int kWrap = Qt::TextWordWrap | Qt::TextWrapAnywhere;
    whole.setHeight(metrics.boundingRect(room, kWrap, text).height() + kPadding);
    if (whole.right() > sight.right()) whole.moveRight(sight.right());
    if (whole.bottom() > sight.bottom()) whole.moveBottom(sight.bottom());
    whole &= sight;
    painter_.fillRect(whole, ColorOf(Role::Field));
    painter_.setPen(QPen(ColorOf(Role::Accent), 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter_.drawRect(whole.adjusted(1, 1, 0, 0));
    painter_.setPen(ColorOf(Role::Text));
    painter_.drawText(whole.adjusted(kPadding, kPadding / 2, -kPadding, 0), kWrap, text);
  }

  void PaintEditMark(int row) {
    const int right = std::min(Left(columns_.Count() - 1) + columns_.Width(columns_.Count() - 1),
                               picture_.size.width());
    const QRect band(0, Top(row), right, kRowHeight);
    painter_.setPen(ColorOf(Role::EditMark));
    painter_.drawLine(band.topLeft(), band.topRight());
    painter_.drawLine(band.bottomLeft(), band.bottomRight());
    painter_.fillRect(band.left(), band.top(), kEditBar, band.height(), ColorOf(Role::EditMark));
  }

  void PaintEmptyText() {
    constexpr int kSpace = 24;
    const QRect room(kSpace, columns_.HeadHeight() + kSpace / 2, picture_.size.width() - 2 * kSpace,
                     picture_.size.height() - columns_.HeadHeight() - kSpace);
    painter_.setPen(ColorOf(Role::TextDim));
    painter_.drawText(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                      Qs(grid_.EmptyText()));
  }

  QPainter& painter_;
  const GridPicture& picture_;
  const TVosDBGrid& grid_;
  TVosClientDataSet& rows_;
  const GridColumns& columns_;
};

}  // namespace

void PaintGrid(QPainter& painter, const GridPicture& picture) {
  GridPainter(painter, picture).Paint();
}

Qt::Alignment CellAlignment(const TVosDBGrid& grid, int column) {
  const GridColumn& shown = grid.columns[static_cast<std::size_t>(column)];
  const TField* field = grid.DataSet().FindField(shown.field);
  if (shown.kind == ColumnKind::Check) return Qt::AlignHCenter;
  if (field == nullptr) return Qt::AlignLeft;
  switch (field->Def().kind) {
    case ValueKind::Bool:
    case ValueKind::Date:
    case ValueKind::Stamp:
    case ValueKind::String:
    case ValueKind::Memo:
      return Qt::AlignLeft;
    default:
      return Qt::AlignRight;
  }
}

QRect CheckBoxRect(const QRect& cell) {
  constexpr int kSide = 13;
  QRect box(0, 0, kSide, kSide);
  box.moveCenter(cell.center());
  return box;
}

void PaintCheckBox(QPainter& painter, const QRect& box, bool ticked, bool mayChange) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ColorOf(Role::TextDim), 1));
  painter.setBrush(ColorOf(mayChange ? Role::Field : Role::FieldReadOnly));
  painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
  if (ticked) {
    painter.setPen(QPen(ColorOf(Role::Text), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF mark[] = {QPointF(box.left() + 3.0, box.top() + 6.5),
                            QPointF(box.left() + 5.5, box.top() + 9.5),
                            QPointF(box.left() + 10.0, box.top() + 3.5)};
    painter.drawPolyline(mark, 3);
  }
  painter.restore();
}

}  // namespace orvane::desktop
