#include "desktop/grids/grid_columns.h"

#include <QtGui/QFontMetrics>
#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/grid.h"

namespace orvane::desktop {
namespace {

constexpr int kNarrowest = 30;
constexpr int kHeadLine = 16;  // a line of a title
constexpr int kHeadSpace = 7;  // above and below the lines of a head
constexpr std::size_t kMeasuredRows = 200;

bool IsText(const TField& field) {
  return RowOf(field.Def().kind).storage == Storage::Text;
}

int WidestLine(const QStringList& lines, const QFontMetrics& metrics) {
  int widest = 0;
  for (const QString& line : lines)
    widest = std::max(widest, metrics.horizontalAdvance(line));
  return widest;
}

/// The first rows tell how wide a text is in practice.
int WidestText(const TVosDBGrid& grid, const TField& field, const QFontMetrics& metrics) {
  const TVosClientDataSet& rows = grid.DataSet();
  int widest = 0;
  for (std::size_t row = 0; row < std::min(rows.RecordCount(), kMeasuredRows); ++row)
    widest = std::max(widest, metrics.horizontalAdvance(Qs(rows.TextAt(row, field))));
  return widest + 2 * kPadding + 1;
}

}  // namespace

QStringList TitleLines(const std::string& title) {
  return Qs(title).split('~');
}

void GridColumns::Measure(const TVosDBGrid& grid, const std::function<int(int)>& keptWidth) {
  const QFontMetrics metrics = ScreenMetrics();
  const QFontMetrics bold = ScreenMetrics(true);
  natural_.clear();
  needs_.clear();
  contents_.clear();
  stretches_.clear();
  for (std::size_t i = 0; i < grid.columns.size(); ++i) {
    const GridColumn& column = grid.columns[i];
    const TField* field = grid.DataSet().FindField(column.field);
    const int need = WidestLine(TitleLines(column.title), bold) + 2 * kPadding + 2;
    const int kept = keptWidth(static_cast<int>(i));
    const int wanted = column.width * CharWidth() + 2 * kPadding;
    const bool text = field != nullptr && IsText(*field) && column.kind != ColumnKind::Check;
    needs_.push_back(std::max(need, kNarrowest));
    natural_.push_back(kept > 0 ? kept : std::max(wanted, needs_.back()));
    contents_.push_back(text ? WidestText(grid, *field, metrics) : natural_.back());
    stretches_.push_back(text && kept == 0);
  }
  fixed_ = std::clamp(grid.fixedCols, 0, static_cast<int>(natural_.size()));
  MeasureGroups(grid);
  MeasureHead(grid);
  widths_ = natural_;
}

void GridColumns::MeasureGroups(const TVosDBGrid& grid) {
  groups_.clear();
  const QFontMetrics bold = ScreenMetrics(true);
  for (int i = 0; i < static_cast<int>(grid.columns.size()); ++i) {
    const std::string& title = grid.columns[static_cast<std::size_t>(i)].group;
    if (title.empty()) continue;
    // A group does not run from the columns that stay into those that scroll.
    const bool runsOn = !groups_.empty() && groups_.back().last == i - 1 && i != fixed_ &&
                        groups_.back().title == Qs(title);
    if (runsOn)
      groups_.back().last = i;
    else
      groups_.push_back({i, i, Qs(title)});
  }
  for (const ColumnGroup& group : groups_) {
    const int need = bold.horizontalAdvance(group.title) + 2 * kPadding + 2;
    const auto first = natural_.begin() + group.first;
    const int has = std::accumulate(first, natural_.begin() + group.last + 1, 0);
    const auto last = static_cast<std::size_t>(group.last);
    if (has >= need) continue;
    natural_[last] += need - has;
    needs_[last] += need - has;
  }
}

void GridColumns::MeasureHead(const TVosDBGrid& grid) {
  int lines = 1;
  for (const GridColumn& column : grid.columns)
    lines = std::max(lines, static_cast<int>(TitleLines(column.title).size()));
  headHeight_ = std::max(kRowHeight, lines * kHeadLine + kHeadSpace);
  groupHeight_ = 0;
  if (groups_.empty()) return;
  int groupedLines = 1;
  for (const ColumnGroup& group : groups_) {
    for (int i = group.first; i <= group.last; ++i) {
      const auto& title = grid.columns[static_cast<std::size_t>(i)].title;
      groupedLines = std::max(groupedLines, static_cast<int>(TitleLines(title).size()));
    }
  }
  groupHeight_ = kHeadLine + kHeadSpace / 2;
  headHeight_ = std::max(headHeight_, groupHeight_ + groupedLines * kHeadLine + kHeadSpace / 2);
}

void GridColumns::FitTo(int width) {
  widths_ = natural_;
  std::vector<std::size_t> sharing;
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (stretches_[i]) sharing.push_back(i);
  }
  ShareRoom(sharing, width - Total());
  LendRoom(sharing);
}

/// A text that does not fit takes room from texts that leave some.
void GridColumns::LendRoom(const std::vector<std::size_t>& sharing) {
  const auto spare = [this](std::size_t i) {
    return widths_[i] - std::max(needs_[i], contents_[i]);
  };
  int missing = 0;
  int offered = 0;
  for (const std::size_t i : sharing)
    (spare(i) < 0 ? missing : offered) += std::abs(spare(i));
  const qint64 lent = std::min(missing, offered);
  if (lent == 0) return;
  for (const std::size_t i : sharing) {
    // Rounded so that all together never become wider.
    if (spare(i) < 0)
      widths_[i] += static_cast<int>(lent * -spare(i) / missing);
    else
      widths_[i] -= static_cast<int>((lent * spare(i) + offered - 1) / offered);
  }
}

void GridColumns::ShareRoom(const std::vector<std::size_t>& sharing, int left) {
  if (sharing.empty() || left == 0) return;
  if (left > 0) {
    int weight = 0;
    for (const std::size_t i : sharing)
      weight += natural_[i];
    const int all = left;
    for (const std::size_t i : sharing) {
      const int share = i == sharing.back() ? left : all * natural_[i] / weight;
      widths_[i] += share;
      left -= share;
    }
    return;
  }
  int slack = 0;
  const auto slackOf = [this](std::size_t i) {
    return std::max(0, natural_[i] - std::max(needs_[i], contents_[i]));
  };
  for (const std::size_t i : sharing)
    slack += slackOf(i);
  if (slack == 0) return;
  const int cut = std::min(slack, -left);
  for (const std::size_t i : sharing)
    widths_[i] -= static_cast<int>(static_cast<qint64>(cut) * slackOf(i) / slack);
}

void GridColumns::SetWidth(int column, int width) {
  const auto index = static_cast<std::size_t>(column);
  natural_[index] = std::max(width, kNarrowest);
  stretches_[index] = false;
}

int GridColumns::Total() const {
  return Left(Count());
}

int GridColumns::NaturalTotal() const {
  return std::accumulate(natural_.begin(), natural_.end(), 0);
}

int GridColumns::Left(int column) const {
  return std::accumulate(widths_.begin(), widths_.begin() + column, 0);
}

const ColumnGroup* GridColumns::GroupOf(int column) const {
  const auto found = std::ranges::find_if(groups_, [column](const ColumnGroup& group) {
    return column >= group.first && column <= group.last;
  });
  return found == groups_.end() ? nullptr : &*found;
}

}  // namespace orvane::desktop
