#pragma once

// Where the columns of a grid stand: widths, heads of one or several lines, groups over neighbours,
// fixed columns that stay while the others scroll.

#include <QtCore/QRect>
#include <QtCore/QStringList>
#include <functional>
#include <vector>

#include "packet/floors.h"

namespace orvane::host {
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::desktop {

/// Neighbours under one group title: columns first to last.
struct ColumnGroup {
  int first = 0;
  int last = 0;
  QString title;
};

/// Lines of a title: '~' breaks it.
QStringList TitleLines(const std::string& title);

class GridColumns {
 public:
  /// Measures the grid's columns anew. `keptWidth` answers the width that the user gave a column, 0
  /// for none.
  void Measure(const TVosDBGrid& grid, const std::function<int(int column)>& keptWidth);
  /// Shares what `width` leaves over among the text columns, and narrows texts that hold less than
  /// they may when the columns would not fit.
  void FitTo(int width);

  int Count() const { return static_cast<int>(widths_.size()); }
  int Fixed() const { return fixed_; }
  int Width(int column) const { return widths_[static_cast<std::size_t>(column)]; }
  /// What the column's title and its group's title need.
  int TitleNeed(int column) const { return needs_[static_cast<std::size_t>(column)]; }
  void SetWidth(int column, int width);
  int Total() const;
  /// Width before anything was shared out.
  int NaturalTotal() const;
  int FixedWidth() const { return Left(fixed_); }
  /// Left edge of a column, as if nothing were scrolled; of Count(): the end.
  int Left(int column) const;
  int HeadHeight() const { return headHeight_; }
  /// Height of the group line; 0 where no column has a group.
  int GroupHeight() const { return groupHeight_; }
  const std::vector<ColumnGroup>& Groups() const { return groups_; }
  /// The group a column stands in; null when in none.
  const ColumnGroup* GroupOf(int column) const;

 private:
  void MeasureGroups(const TVosDBGrid& grid);
  void MeasureHead(const TVosDBGrid& grid);
  void ShareRoom(const std::vector<std::size_t>& sharing, int left);
  void LendRoom(const std::vector<std::size_t>& sharing);

  int fixed_ = 0;
  int headHeight_ = 0;
  int groupHeight_ = 0;
  std::vector<int> natural_;
  std::vector<int> widths_;
  std::vector<int> needs_;
  std::vector<int> contents_;    ///< what the rows that are here need
  std::vector<bool> stretches_;  ///< a text column whose width the user did not set
  std::vector<ColumnGroup> groups_;
};

}  // namespace orvane::desktop
