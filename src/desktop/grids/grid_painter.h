#pragma once

// How a grid is painted: the same for windows and for pictures of them.

#include <QtCore/QRect>
#include <QtCore/QSize>

class QPainter;

#include "packet/floors.h"

namespace orvane::host {
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::desktop {

class GridColumns;

struct GridPicture {
  const TVosDBGrid& grid;
  const GridColumns& columns;
  QSize size;
  int firstRow = 0;      ///< the topmost row
  int scrolled = 0;      ///< pixels that the columns after the fixed ones are moved left
  bool focused = false;  ///< the grid has the focus
};

void PaintGrid(QPainter& painter, const GridPicture& picture);

/// Numbers to the right, check boxes in the middle, everything else to the left.
Qt::Alignment CellAlignment(const TVosDBGrid& grid, int column);
/// The box in the middle of a check cell.
QRect CheckBoxRect(const QRect& cell);
/// A box, ticked or not; told by its mark, not by colour.
void PaintCheckBox(QPainter& painter, const QRect& box, bool ticked, bool mayChange);

}  // namespace orvane::desktop
