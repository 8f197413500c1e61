#include "desktop/reports/report_pages.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QFontMetrics>
#include <QtGui/QPagedPaintDevice>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <utility>

#include "desktop/qt_text.h"
#include "desktop/reports/barcode.h"

namespace orvane::desktop {
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
constexpr int kMostFactLines = 8;
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

/// Metrics of the body's type, by which a hundred thousand rows are measured.
const QFontMetrics& BodyMetrics(bool bold) {
  static const QFontMetrics plain(Type(kBody));
  static const QFontMetrics strong(Type(kBody, true));
  return bold ? strong : plain;
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

/// The room a text takes in the body's type: the sum of its letters, measured once each.
int LettersWidth(const QString& text, bool bold) {
  constexpr char16_t kLetters = 0x530;  // Latin and Cyrillic
  static std::array<std::vector<int>, 2> widths;
  std::vector<int>& known = widths[bold ? 1 : 0];
  if (known.empty()) {
    for (char16_t letter = 0; letter < kLetters; ++letter)
      known.push_back(BodyMetrics(bold).horizontalAdvance(QChar(letter)));
  }
  int width = 0;
  for (const QChar letter : text)
    width += letter.unicode() < kLetters ? known[letter.unicode()] : BodyMetrics(bold).maxWidth();
  return width;
}

int Lines(const QString& text, int width, bool bold,
          int wrap = Qt::TextWordWrap | Qt::TextWrapAnywhere) {
  const QFontMetrics& metrics = BodyMetrics(bold);
  const bool broken = text.contains('\n');
  if (!broken && LettersWidth(text, bold) <= width) return 1;
  if (!broken && metrics.horizontalAdvance(text) <= width) return 1;
  const QRect room(0, 0, width, QWIDGETSIZE_MAX);
  const int height = metrics.boundingRect(room, wrap, text).height();
  return std::max(1, (height + metrics.lineSpacing() / 2) / metrics.lineSpacing());
}

int LongestWord(const QString& text) {
  int longest = 0;
  for (const QString& word : text.split(QRegularExpression("\\s")))
    longest = std::max(longest, BodyMetrics(true).horizontalAdvance(word));
  return longest;
}

/// Between words, as long as each of them has room.
int WrapOf(const QString& text, int width) {
  return LongestWord(text) <= width ? Qt::TextWordWrap : Qt::TextWordWrap | Qt::TextWrapAnywhere;
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

// --- the flow of parts over pages
// --------------------------------------------------------------------------------------

/// Lays parts out on one page after another, from any place on. Planning runs it over the whole
/// report and keeps where pages begin; a page that is looked at is laid out anew from there.
class ReportPages::Flow {
 public:
  Flow(const ReportPages& pages, Place from) : pages_(pages), at_(from) {}

  bool AtEnd() const { return at_.part == Part::End; }
  const Place& At() const { return at_; }
  std::vector<Placed> NextPage();

 private:
  void TakeRow();
  int HeightHere() const;
  void Put(Part part, int height, ReportRow cells = {});
  void PutHere();
  void GoOn();
  void ToTable(std::size_t table);
  /// The row in hand, or the totals.
  int CellsHeight(const ReportRow& cells, bool bold) const {
    return pages_.RowHeight(at_.table, cells, bold);
  }

  const ReportPages& pages_;
  Place at_;
  std::optional<ReportSnapshot::Reader> reader_;
  std::optional<ReportRow> row_;  ///< the one at the place, once it was read
  std::vector<Placed> page_;
  int cursor_ = 0;
};

std::vector<ReportPages::Placed> ReportPages::Flow::NextPage() {
  page_.clear();
  cursor_ = kMarginTop;
  while (!AtEnd()) {
    TakeRow();
    if (!page_.empty() && cursor_ + HeightHere() > pages_.Bottom()) break;
    if (page_.empty() && (at_.part == Part::Row || at_.part == Part::Totals))
      Put(Part::Heading, pages_.plans_[at_.table].headingHeight);
    PutHere();
    GoOn();
  }
  return std::move(page_);
}

void ReportPages::Flow::TakeRow() {
  if (at_.part != Part::Row || row_) return;
  if (!reader_) reader_.emplace(*pages_.snapshot_, at_.table, at_.mark);
  row_ = reader_->Next();
}

/// The room that what stands here needs. A heading does not stand at the bottom without a row.
int ReportPages::Flow::HeightHere() const {
  switch (at_.part) {
    case Part::Head:
      return pages_.HeadHeight();
    case Part::Caption:
      return pages_.CaptionHeight(at_.table) + pages_.plans_[at_.table].headingHeight +
             2 * (kLine + kRowSpace);
    case Part::Row:
      return CellsHeight(*row_, false);
    case Part::Totals:
      return CellsHeight(pages_.snapshot_->Totals(at_.table), true);
    case Part::Heading:
    case Part::FootLine:
    case Part::End:
      break;
  }
  return kLine + kRowSpace / 2;
}

void ReportPages::Flow::Put(Part part, int height, ReportRow cells) {
  page_.push_back({part, at_.table, at_.row, cursor_, height, std::move(cells)});
  cursor_ += height;
}

void ReportPages::Flow::PutHere() {
  const int height = HeightHere();
  switch (at_.part) {
    case Part::Caption: {
      const int caption = pages_.CaptionHeight(at_.table);
      if (caption > 0) Put(Part::Caption, caption);
      return Put(Part::Heading, pages_.plans_[at_.table].headingHeight);
    }
    case Part::Row:
      return Put(Part::Row, height, *std::exchange(row_, std::nullopt));
    case Part::Totals:
      return Put(Part::Totals, height, pages_.snapshot_->Totals(at_.table));
    default:
      return Put(at_.part, height);
  }
}

void ReportPages::Flow::ToTable(std::size_t table) {
  reader_.reset();
  at_ = {Part::Caption, table, 0, {}};
  if (table < pages_.Document().tables.size()) return;
  at_ = {pages_.Document().footLines.empty() ? Part::End : Part::FootLine, 0, 0, {}};
  cursor_ += kGap / 2;
}

void ReportPages::Flow::GoOn() {
  const ReportSnapshot& snapshot = *pages_.snapshot_;
  switch (at_.part) {
    case Part::Head:
      return ToTable(0);
    case Part::Caption:
      at_.part = Part::Row;
      reader_.emplace(snapshot, at_.table);
      at_.mark = reader_->At();
      break;
    case Part::Row:
      ++at_.row;
      at_.mark = reader_->At();
      break;
    case Part::FootLine:
      if (++at_.row == static_cast<std::int64_t>(pages_.Document().footLines.size()))
        at_.part = Part::End;
      return;
    case Part::Heading:
    case Part::Totals:
    case Part::End:
      break;
  }
  if (at_.part == Part::Row && reader_->HasNext()) return;
  if (at_.part == Part::Row && !snapshot.Totals(at_.table).empty()) {
    at_.part = Part::Totals;
    return;
  }
  cursor_ += kGap;
  ToTable(at_.table + 1);
}

// --- planning
// -------------------------------------------------------------------------------------

ReportPages::ReportPages(TakenReport snapshot) : snapshot_(std::move(snapshot)) {
  constexpr int kUpright = kShortSide - 2 * kMarginX;
  lying_ = std::ranges::any_of(Document().tables, [](const ReportTable& table) {
    return WidthWanted(table) > kUpright * 11 / 10;
  });
  for (const ReportTable& table : Document().tables)
    PlanTable(table);
}

std::unique_ptr<const ReportPages> ReportPages::Plan(TakenReport snapshot,
                                                     const ReportProgress& progress) {
  auto pages = std::make_unique<ReportPages>(std::move(snapshot));
  const std::int64_t rows = pages->snapshot_->RowCount();
  std::int64_t laid = 0;
  Flow flow(*pages, {});
  while (!flow.AtEnd()) {
    pages->starts_.push_back(flow.At());
    for (const Placed& placed : flow.NextPage())
      laid += placed.part == Part::Row ? 1 : 0;
    if (progress && !progress(laid, rows)) return nullptr;
  }
  return pages;
}

std::vector<ReportPages::Placed> ReportPages::PartsOf(int page) const {
  return Flow(*this, starts_[static_cast<std::size_t>(page)]).NextPage();
}

QSize ReportPages::PageSize() const {
  return lying_ ? QSize(kLongSide, kShortSide) : QSize(kShortSide, kLongSide);
}

int ReportPages::Bottom() const {
  return PageSize().height() - kFoot;
}

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
  if (!Document().number.empty()) height += kNumber + kBarcodeHeight / 2;
  return height + FactsHeight() + kGap;
}

int ReportPages::CaptionHeight(std::size_t table) const {
  return Document().tables[table].caption.empty() ? 0 : kLine + kRowSpace;
}

int ReportPages::RowHeight(std::size_t table, const ReportRow& cells, bool bold) const {
  const TablePlan& plan = plans_[table];
  int lines = 1;
  for (std::size_t i = 0; i < std::min(cells.size(), plan.widths.size()); ++i)
    lines = std::max(lines, Lines(Qs(cells[i].text), plan.widths[i] - 2 * kCellSpace, bold));
  return lines * kLine + kRowSpace;
}

// --- painting
// -------------------------------------------------------------------------------------

void ReportPages::PaintPage(QPainter& painter, int page) const {
  painter.fillRect(QRect(QPoint(), PageSize()), Qt::white);
  painter.setPen(Qt::black);
  for (const Placed& at : PartsOf(page)) {
    switch (at.part) {
      case Part::Head:
        PaintHead(painter, at);
        break;
      case Part::Caption:
        painter.setFont(Type(kBody + 10, true));
        painter.drawText(kMarginX, at.top + kLine, Qs(Document().tables[at.table].caption));
        break;
      case Part::Heading:
        PaintHeading(painter, at);
        break;
      case Part::Row:
      case Part::Totals:
        PaintCells(painter, at, at.part == Part::Totals);
        break;
      case Part::FootLine:
        painter.setFont(Type(kBody));
        painter.drawText(kMarginX, at.top + kLine,
                         Qs(Document().footLines[static_cast<std::size_t>(at.row)]));
        break;
      case Part::End:
        break;
    }
  }
  PaintFoot(painter, page);
}

void ReportPages::PaintHead(QPainter& painter, const Placed& at) const {
  const int width = PageSize().width() - 2 * kMarginX;
  painter.setFont(Type(kBody, true));
  painter.drawText(kMarginX, at.top + kLine, Qs(Document().company));
  const int rule = at.top + kLine + kRowSpace;
  painter.setPen(QPen(Qt::black, 6));
  painter.drawLine(kMarginX, rule, kMarginX + width, rule);
  painter.setFont(Type(kBig, true));
  const int title = rule + kBig + kLine / 2;
  painter.drawText(kMarginX, title, Qs(Document().title));
  int top = title + kLine / 2;
  if (!Document().number.empty()) {
    PaintNumber(painter, top);
    top += kNumber + kBarcodeHeight / 2;
  }
  PaintFacts(painter, top);
}

void ReportPages::PaintNumber(QPainter& painter, int top) const {
  painter.setFont(Type(kNumber, true));
  painter.drawText(kMarginX, top + kNumber, "№ " + Qs(Document().number));
  const auto widths = Code128(Document().number);
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

/// Two columns of labelled values, read down the first and then the second; a long value goes on in
/// further lines.
std::vector<ReportPages::FactPlace> ReportPages::PlaceFacts() const {
  const std::vector<ReportFact>& facts = Document().facts;
  const std::size_t perColumn = std::max<std::size_t>(1, (facts.size() + 1) / 2);
  const int columnWidth = (PageSize().width() - 2 * kMarginX) / 2;
  int labels[2] = {0, 0};
  for (std::size_t i = 0; i < facts.size(); ++i) {
    int& widest = labels[i / perColumn];
    widest = std::max(widest, BodyMetrics(false).horizontalAdvance(Qs(facts[i].label) + ": "));
  }
  std::vector<FactPlace> places;
  int tops[2] = {0, 0};
  for (std::size_t i = 0; i < facts.size(); ++i) {
    const std::size_t column = i / perColumn;
    const int left = kMarginX + static_cast<int>(column) * columnWidth;
    const int room = columnWidth - labels[column] - 2 * kCellSpace;
    const QString value = Qs(facts[i].value);
    const int wanted = Lines(value, room, true, WrapOf(value, room));
    const int height = std::min(kMostFactLines, wanted) * kLine + kRowSpace / 2;
    places.push_back({QRect(left, tops[column], labels[column], kLine + kRowSpace / 2),
                      QRect(left + labels[column] + kCellSpace, tops[column], room, height),
                      wanted <= kMostFactLines});
    tops[column] += height;
  }
  return places;
}

int ReportPages::FactsHeight() const {
  int height = 0;
  for (const FactPlace& place : PlaceFacts())
    height = std::max(height, place.value.top() + place.value.height());
  return height;
}

void ReportPages::PaintFacts(QPainter& painter, int top) const {
  const std::vector<FactPlace> places = PlaceFacts();
  for (std::size_t i = 0; i < places.size(); ++i) {
    const ReportFact& fact = Document().facts[i];
    painter.setFont(Type(kBody));
    painter.drawText(places[i].label.translated(0, top), Qt::AlignVCenter, Qs(fact.label) + ":");
    painter.setFont(Type(kBody, true));
    const int align = places[i].whole ? Qt::AlignVCenter : Qt::AlignTop;
    const QString value = Qs(fact.value);
    painter.drawText(places[i].value.translated(0, top),
                     align | WrapOf(value, places[i].value.width()), value);
  }
}

void ReportPages::PaintHeading(QPainter& painter, const Placed& at) const {
  const auto& columns = Document().tables[at.table].columns;
  const TablePlan& plan = plans_[at.table];
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

void ReportPages::PaintCells(QPainter& painter, const Placed& at, bool bold) const {
  const auto& columns = Document().tables[at.table].columns;
  const TablePlan& plan = plans_[at.table];
  painter.setFont(Type(kBody, bold));
  painter.setPen(QPen(bold ? Qt::black : Qt::gray, bold ? 5 : 3));
  for (std::size_t i = 0; i < columns.size(); ++i)
    painter.drawRect(plan.lefts[i], at.top, plan.widths[i], at.height);
  painter.setPen(Qt::black);
  for (std::size_t i = 0; i < std::min(columns.size(), at.cells.size()); ++i) {
    if (at.cells[i].text.empty()) continue;
    const QRect room(plan.lefts[i] + kCellSpace, at.top, plan.widths[i] - 2 * kCellSpace,
                     at.height);
    painter.drawText(room,
                     static_cast<int>(Alignment(columns[i].align)) | Qt::AlignVCenter |
                         Qt::TextWordWrap | Qt::TextWrapAnywhere,
                     Qs(at.cells[i].text));
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
                   "Отпечатал: " + Qs(Document().printedBy) + ", " + Qs(Document().printedOn));
  painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                   QString("Страница %1 от %2").arg(page + 1).arg(Count()));
}

bool ReportPages::PaintAll(QPagedPaintDevice& device, int resolution,
                           const ReportProgress& progress) const {
  constexpr qreal kTenthsPerInch = 720;
  QPainter painter;
  if (!painter.begin(&device)) return false;
  for (int page = 0; page < Count(); ++page) {
    if (progress && !progress(page, Count())) return false;
    if (page > 0 && !device.newPage()) return false;
    painter.save();
    painter.scale(resolution / kTenthsPerInch, resolution / kTenthsPerInch);
    PaintPage(painter, page);
    painter.restore();
  }
  return painter.end();
}

}  // namespace orvane::desktop
