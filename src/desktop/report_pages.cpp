#include "desktop/report_pages.h"

#include <QtCore/QFileInfo>
#include <QtCore/QMarginsF>
#include <QtCore/QRegularExpression>
#include <QtGui/QFontMetrics>
#include <QtGui/QPageLayout>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <numeric>

#include "desktop/barcode.h"
#include "desktop/qt_text.h"

namespace orvane {
namespace {

// Lengths in tenths of a point; A4.
constexpr int kShortSide = 5953;
constexpr int kLongSide = 8419;
constexpr int kMarginX = 400;
constexpr int kMarginTop = 380;
constexpr int kFoot = 420;  // at the bottom of a page, with page number and who printed
constexpr int kLine = 125;
constexpr int kCellSpace = 35;
constexpr int kRowSpace = 45;   // above and below the lines of a row together
constexpr int kCharacter = 52;  // of the body's type, on the average
constexpr int kGap = 160;
constexpr int kBody = 90;
constexpr int kSmall = 75;
constexpr int kBig = 150;
constexpr int kNumber = 260;
constexpr int kBarcodeHeight = 260;
constexpr int kBarcodeModule = 12;

QFont Type(int size, bool bold = false) {
  QFont font("PT Sans");
  font.setPixelSize(size);
  font.setBold(bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

QFontMetrics Metrics(int size, bool bold = false) {
  return QFontMetrics(Type(size, bold));
}

QString Title(const std::string& text) {
  return Qs(text).replace('~', '\n');
}

Qt::Alignment Alignment(Align align) {
  switch (align) {
    case Align::Right:
      return Qt::AlignRight;
    case Align::Center:
      return Qt::AlignHCenter;
    case Align::Left:
      break;
  }
  return Qt::AlignLeft;
}

int Lines(const QString& text, int width, bool bold) {
  const QFontMetrics metrics = Metrics(kBody, bold);
  if (!text.contains('\n') && metrics.horizontalAdvance(text) <= width) return 1;
  const QRect room(0, 0, width, QWIDGETSIZE_MAX);
  const int height =
      metrics.boundingRect(room, Qt::TextWordWrap | Qt::TextWrapAnywhere, text).height();
  return std::max(1, (height + metrics.lineSpacing() / 2) / metrics.lineSpacing());
}

int LongestWord(const QString& text) {
  int longest = 0;
  for (const QString& word : text.split(QRegularExpression("\\s")))
    longest = std::max(longest, Metrics(kBody, true).horizontalAdvance(word));
  return longest;
}

int WidthWanted(const ReportTable& table) {
  return std::accumulate(table.columns.begin(), table.columns.end(), 0,
                         [](int sum, const ReportColumn& column) {
                           return sum + column.width * kCharacter + 2 * kCellSpace;
                         });
}

/// The group's run of neighbours that begins at `first`; one past its last column.
std::size_t EndOfGroup(const std::vector<ReportColumn>& columns, std::size_t first) {
  std::size_t end = first + 1;
  while (end < columns.size() && columns[end].group == columns[first].group)
    ++end;
  return end;
}

}  // namespace

ReportPages::ReportPages(ReportDocument document) : document_(std::move(document)) {
  constexpr int kUpright = kShortSide - 2 * kMarginX;
  lying_ = std::ranges::any_of(document_.tables, [](const ReportTable& table) {
    return WidthWanted(table) > kUpright * 11 / 10;
  });
  for (const ReportTable& table : document_.tables)
    PlanTable(table);
  PlanPages();
}

QSize ReportPages::PageSize() const {
  return lying_ ? QSize(kLongSide, kShortSide) : QSize(kShortSide, kLongSide);
}

int ReportPages::Bottom() const {
  return PageSize().height() - kFoot;
}

// --- planning
// -------------------------------------------------------------------------------------

/// Columns share the page's width by what they want, but never less than their longest title word.
void ReportPages::PlanTable(const ReportTable& table) {
  TablePlan plan;
  const int room = PageSize().width() - 2 * kMarginX;
  const int wanted = std::max(1, WidthWanted(table));
  int lines = 1;
  bool groups = false;
  for (const ReportColumn& column : table.columns) {
    const int share = static_cast<int>(
        static_cast<qint64>(column.width * kCharacter + 2 * kCellSpace) * room / wanted);
    plan.widths.push_back(std::max(share, LongestWord(Title(column.title)) + 2 * kCellSpace));
    groups = groups || !column.group.empty();
  }
  int over = std::accumulate(plan.widths.begin(), plan.widths.end(), 0) - room;
  while (over > 0 && !plan.widths.empty()) {
    int& widest = *std::ranges::max_element(plan.widths);
    const int cut = std::min(over, std::max(1, widest / 20));
    widest -= cut;
    over -= cut;
  }
  int left = kMarginX;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    plan.lefts.push_back(left);
    left += plan.widths[i];
    lines = std::max(lines,
                     Lines(Title(table.columns[i].title), plan.widths[i] - 2 * kCellSpace, true));
  }
  plan.groupHeight = groups ? kLine + kRowSpace : 0;
  plan.headingHeight = plan.groupHeight + lines * kLine + kRowSpace;
  plans_.push_back(std::move(plan));
}

int ReportPages::HeadHeight() const {
  int height = kLine * 2 + kBig + kLine;
  if (!document_.number.empty()) height += kNumber + kBarcodeHeight / 2;
  const int factLines = (static_cast<int>(document_.facts.size()) + 1) / 2;
  return height + factLines * (kLine + kRowSpace / 2) + kGap;
}

int ReportPages::RowHeight(int table, const std::vector<std::string>& texts, bool bold) const {
  const TablePlan& plan = plans_[static_cast<std::size_t>(table)];
  int lines = 1;
  for (std::size_t i = 0; i < std::min(texts.size(), plan.widths.size()); ++i)
    lines = std::max(lines, Lines(Qs(texts[i]), plan.widths[i] - 2 * kCellSpace, bold));
  return lines * kLine + kRowSpace;
}

bool ReportPages::Reserve(int height) {
  if (!pages_.empty() && (cursor_ + height <= Bottom() || pages_.back().empty())) return false;
  pages_.emplace_back();
  cursor_ = kMarginTop;
  return true;
}

void ReportPages::Place(Part part, int table, int row, int height) {
  pages_.back().push_back({part, table, row, cursor_, height});
  cursor_ += height;
}

void ReportPages::PlanPages() {
  Reserve(0);
  Place(Part::Head, 0, 0, HeadHeight());
  for (int table = 0; table < static_cast<int>(document_.tables.size()); ++table)
    PlaceTable(table);
  for (int i = 0; i < static_cast<int>(document_.footLines.size()); ++i) {
    if (i == 0) cursor_ += kGap / 2;
    Reserve(kLine + kRowSpace / 2);
    Place(Part::FootLine, 0, i, kLine + kRowSpace / 2);
  }
}

void ReportPages::PlaceTable(int table) {
  const ReportTable& content = document_.tables[static_cast<std::size_t>(table)];
  const int heading = plans_[static_cast<std::size_t>(table)].headingHeight;
  const int caption = content.caption.empty() ? 0 : kLine + kRowSpace;
  // A heading does not stand at the bottom without a row.
  Reserve(caption + heading + 2 * (kLine + kRowSpace));
  if (caption > 0) Place(Part::Caption, table, 0, caption);
  Place(Part::Heading, table, 0, heading);
  const auto put = [&](Part part, int row, const std::vector<std::string>& texts, bool bold) {
    const int height = RowHeight(table, texts, bold);
    if (Reserve(height)) Place(Part::Heading, table, 0, heading);
    Place(part, table, row, height);
  };
  for (int row = 0; row < static_cast<int>(content.rows.size()); ++row)
    put(Part::Row, row, content.rows[static_cast<std::size_t>(row)], false);
  if (!content.totals.empty()) put(Part::Totals, 0, content.totals, true);
  cursor_ += kGap;
}

// --- painting
// -------------------------------------------------------------------------------------

void ReportPages::PaintPage(QPainter& painter, int page) const {
  painter.fillRect(QRect(QPoint(), PageSize()), Qt::white);
  painter.setPen(Qt::black);
  for (const Placed& at : PartsOf(page)) {
    const auto table = static_cast<std::size_t>(at.table);
    const auto row = static_cast<std::size_t>(at.row);
    switch (at.part) {
      case Part::Head:
        PaintHead(painter, at);
        break;
      case Part::Caption:
        painter.setFont(Type(kBody + 10, true));
        painter.drawText(kMarginX, at.top + kLine, Qs(document_.tables[table].caption));
        break;
      case Part::Heading:
        PaintHeading(painter, at);
        break;
      case Part::Row:
        PaintCells(painter, at, document_.tables[table].rows[row], false);
        break;
      case Part::Totals:
        PaintCells(painter, at, document_.tables[table].totals, true);
        break;
      case Part::FootLine:
        painter.setFont(Type(kBody));
        painter.drawText(kMarginX, at.top + kLine, Qs(document_.footLines[row]));
        break;
    }
  }
  PaintFoot(painter, page);
}

void ReportPages::PaintHead(QPainter& painter, const Placed& at) const {
  const int width = PageSize().width() - 2 * kMarginX;
  painter.setFont(Type(kBody, true));
  painter.drawText(kMarginX, at.top + kLine, Qs(document_.company));
  const int rule = at.top + kLine + kRowSpace;
  painter.setPen(QPen(Qt::black, 6));
  painter.drawLine(kMarginX, rule, kMarginX + width, rule);
  painter.setFont(Type(kBig, true));
  const int title = rule + kBig + kLine / 2;
  painter.drawText(kMarginX, title, Qs(document_.title));
  int top = title + kLine / 2;
  if (!document_.number.empty()) {
    PaintNumber(painter, top);
    top += kNumber + kBarcodeHeight / 2;
  }
  PaintFacts(painter, top);
}

void ReportPages::PaintNumber(QPainter& painter, int top) const {
  painter.setFont(Type(kNumber, true));
  painter.drawText(kMarginX, top + kNumber, "№ " + Qs(document_.number));
  const auto widths = Code128(document_.number);
  if (!widths) return;
  const int modules = std::accumulate(widths->begin(), widths->end(), 0);
  int x = PageSize().width() - kMarginX - modules * kBarcodeModule;
  bool bar = true;
  for (const int width : *widths) {
    if (bar) painter.fillRect(x, top, width * kBarcodeModule, kBarcodeHeight, Qt::black);
    x += width * kBarcodeModule;
    bar = !bar;
  }
}

/// Two columns of labelled values, read down the first and then the second.
void ReportPages::PaintFacts(QPainter& painter, int top) const {
  const int count = static_cast<int>(document_.facts.size());
  const int perColumn = (count + 1) / 2;
  const int columnWidth = (PageSize().width() - 2 * kMarginX) / 2;
  int labels[2] = {0, 0};
  for (int i = 0; i < count; ++i) {
    const QString label = Qs(document_.facts[static_cast<std::size_t>(i)].label) + ": ";
    int& widest = labels[i / std::max(1, perColumn)];
    widest = std::max(widest, Metrics(kBody).horizontalAdvance(label));
  }
  for (int i = 0; i < count; ++i) {
    const ReportFact& fact = document_.facts[static_cast<std::size_t>(i)];
    const int column = i / perColumn;
    const int left = kMarginX + column * columnWidth;
    const int label = labels[column];
    const int line = top + (i % perColumn) * (kLine + kRowSpace / 2);
    const int height = kLine + kRowSpace / 2;
    painter.setFont(Type(kBody));
    painter.drawText(QRect(left, line, label, height), Qt::AlignVCenter, Qs(fact.label) + ":");
    painter.setFont(Type(kBody, true));
    const int room = columnWidth - label - kCellSpace;
    painter.drawText(QRect(left + label + kCellSpace, line, room, height), Qt::AlignVCenter,
                     Metrics(kBody, true).elidedText(Qs(fact.value), Qt::ElideRight, room));
  }
}

void ReportPages::PaintHeading(QPainter& painter, const Placed& at) const {
  const auto& columns = document_.tables[static_cast<std::size_t>(at.table)].columns;
  const TablePlan& plan = plans_[static_cast<std::size_t>(at.table)];
  painter.setFont(Type(kBody, true));
  painter.setPen(QPen(Qt::black, 4));
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int group = columns[i].group.empty() ? 0 : plan.groupHeight;
    const QRect cell(plan.lefts[i], at.top + group, plan.widths[i], at.height - group);
    painter.fillRect(cell, QColor(0xEB, 0xEE, 0xF3));
    painter.drawRect(cell);
    painter.drawText(cell.adjusted(kCellSpace, 0, -kCellSpace, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, Title(columns[i].title));
  }
  for (std::size_t i = 0; i < columns.size(); i = EndOfGroup(columns, i)) {
    if (columns[i].group.empty()) continue;
    const std::size_t last = EndOfGroup(columns, i) - 1;
    const int width = plan.lefts[last] + plan.widths[last] - plan.lefts[i];
    const QRect cell(plan.lefts[i], at.top, width, plan.groupHeight);
    painter.fillRect(cell, QColor(0xEB, 0xEE, 0xF3));
    painter.drawRect(cell);
    painter.drawText(cell, Qt::AlignCenter, Title(columns[i].group));
  }
}

void ReportPages::PaintCells(QPainter& painter, const Placed& at,
                             const std::vector<std::string>& texts, bool bold) const {
  const auto& columns = document_.tables[static_cast<std::size_t>(at.table)].columns;
  const TablePlan& plan = plans_[static_cast<std::size_t>(at.table)];
  painter.setFont(Type(kBody, bold));
  painter.setPen(QPen(bold ? Qt::black : Qt::gray, bold ? 5 : 3));
  for (std::size_t i = 0; i < columns.size(); ++i)
    painter.drawRect(plan.lefts[i], at.top, plan.widths[i], at.height);
  painter.setPen(Qt::black);
  for (std::size_t i = 0; i < std::min(columns.size(), texts.size()); ++i) {
    if (texts[i].empty()) continue;
    const QRect room(plan.lefts[i] + kCellSpace, at.top, plan.widths[i] - 2 * kCellSpace,
                     at.height);
    painter.drawText(room,
                     static_cast<int>(Alignment(columns[i].align)) | Qt::AlignVCenter |
                         Qt::TextWordWrap | Qt::TextWrapAnywhere,
                     Qs(texts[i]));
  }
}

void ReportPages::PaintFoot(QPainter& painter, int page) const {
  const int width = PageSize().width() - 2 * kMarginX;
  const int top = PageSize().height() - kFoot + kGap;
  painter.setPen(QPen(Qt::gray, 3));
  painter.drawLine(kMarginX, top, kMarginX + width, top);
  painter.setPen(Qt::black);
  painter.setFont(Type(kSmall));
  const QRect line(kMarginX, top, width, kLine);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   "Отпечатал: " + Qs(document_.printedBy) + ", " + Qs(document_.printedOn));
  painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                   QString("Страница %1 от %2").arg(page + 1).arg(Count()));
}

bool ReportPages::PaintAll(QPagedPaintDevice& device, int resolution) const {
  constexpr qreal kTenthsPerInch = 720;
  QPainter painter;
  if (!painter.begin(&device)) return false;
  for (int page = 0; page < Count(); ++page) {
    if (page > 0 && !device.newPage()) return false;
    painter.save();
    painter.scale(resolution / kTenthsPerInch, resolution / kTenthsPerInch);
    PaintPage(painter, page);
    painter.restore();
  }
  return painter.end();
}

Answer<Done> RenderPdf(const ReportDocument& report, const QString& path) {
  const ReportPages pages(report);
  constexpr int kResolution = 720;
  QPdfWriter writer(path);
  writer.setResolution(kResolution);
  writer.setTitle(Qs(report.title));
  writer.setCreator("Orvane");
  writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4),
                                   pages.IsLying() ? QPageLayout::Landscape : QPageLayout::Portrait,
                                   QMarginsF()));
  if (!pages.PaintAll(writer, kResolution) || !QFileInfo::exists(path)) {
    return Failure{FailureKind::Refused,
                   "Файлът „" + Utf8(path) + "“ не може да се запише. Изберете друго място."};
  }
  return Done();
}

}  // namespace orvane
