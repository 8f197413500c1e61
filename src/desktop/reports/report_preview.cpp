#include "desktop/reports/report_preview.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWheelEvent>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QScrollBar>
#include <algorithm>

#include "desktop/icons.h"
#include "desktop/long_work.h"
#include "desktop/qt_keys.h"
#include "desktop/qt_text.h"
#include "desktop/reports/report_export.h"
#include "desktop/theme.h"

namespace orvane::desktop {
namespace {

constexpr int kSheetGap = 14;
constexpr int kTitle = 29;
constexpr int kBar = 34;
constexpr int kLeastPercent = 40;
constexpr int kMostPercent = 300;
constexpr qreal kTenthsPerPixel = 720.0 / 96.0;  // at 100 %
constexpr int kItemPadding = 8;

}  // namespace

// --- the pages
// ------------------------------------------------------------------------------------

ReportSheet::ReportSheet(const ReportPages& pages) : pages_(pages) {
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::NoFrame);
  viewport()->setFocusPolicy(Qt::NoFocus);
}

QSize ReportSheet::SheetSize() const {
  const QSizeF size = QSizeF(pages_.PageSize()) / kTenthsPerPixel * percent_ / 100.0;
  return size.toSize();
}

void ReportSheet::SettleBars() {
  const QSize sheet = SheetSize();
  const int height = pages_.Count() * (sheet.height() + kSheetGap) + kSheetGap;
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(kRowHeight);
  verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setRange(0,
                                  std::max(0, sheet.width() + 2 * kSheetGap - viewport()->width()));
}

void ReportSheet::Zoom(int by) {
  percent_ = std::clamp(percent_ + by, kLeastPercent, kMostPercent);
  SettleBars();
  viewport()->update();
}

void ReportSheet::ScrollBy(int pages) {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(bar.value() + pages * (SheetSize().height() + kSheetGap));
}

void ReportSheet::ScrollLines(int lines) {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(bar.value() + lines * 2 * kRowHeight);
}

void ReportSheet::ScrollToEnd(bool last) {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(last ? bar.maximum() : 0);
}

int ReportSheet::PageInSight() const {
  const int middle = verticalScrollBar()->value() + viewport()->height() / 2;
  return std::clamp(middle / (SheetSize().height() + kSheetGap) + 1, 1, pages_.Count());
}

void ReportSheet::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), ColorOf(Role::Bar));
  const QSize sheet = SheetSize();
  const int left = std::max(kSheetGap, (viewport()->width() - sheet.width()) / 2) -
                   horizontalScrollBar()->value();
  const qreal scale = percent_ / 100.0 / kTenthsPerPixel;
  painter.setRenderHint(QPainter::Antialiasing);
  for (int page = 0; page < pages_.Count(); ++page) {
    const int top = kSheetGap + page * (sheet.height() + kSheetGap) - verticalScrollBar()->value();
    if (top > viewport()->height() || top + sheet.height() < 0) continue;
    painter.save();
    painter.translate(left, top);
    painter.scale(scale, scale);
    pages_.PaintPage(painter, page);
    painter.restore();
    painter.setPen(ColorOf(Role::Line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(left, top, sheet.width(), sheet.height());
  }
}

void ReportSheet::resizeEvent(QResizeEvent*) {
  SettleBars();
}

void ReportSheet::wheelEvent(QWheelEvent* event) {
  if (!(event->modifiers() & Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
  constexpr int kStep = 10;
  Zoom(event->angleDelta().y() > 0 ? kStep : -kStep);
}

// --- the window
// -----------------------------------------------------------------------------------

struct ReportPreview::Command {
  const char* caption;
  KeyStroke key;
  const char* icon;
  void (ReportPreview::*run)();
};

const ReportPreview::Command ReportPreview::kCommands[] = {
    {"Печат", KeyCode::F7, "print", &ReportPreview::Print},
    {"Запис като PDF", Ctrl(KeyCode::S), "save", &ReportPreview::SaveAsPdf},
    {"Запис като XLSX", Ctrl(KeyCode::E), "save", &ReportPreview::SaveAsXlsx},
    {"Запис като CSV", Ctrl(KeyCode::T), "save", &ReportPreview::SaveAsCsv},
    {"По-едро", KeyCode::F11, "new", &ReportPreview::Larger},
    {"По-дребно", Shift(KeyCode::F11), "search", &ReportPreview::Smaller},
    {"Затваряне", KeyCode::Escape, "exit", &ReportPreview::Leave},
};

ReportPreview::ReportPreview(std::unique_ptr<const ReportPages> pages)
    : QWidget(nullptr, Qt::Dialog), pages_(std::move(pages)), sheet_(new ReportSheet(*pages_)) {
  setWindowTitle(Qs(pages_->Document().title));
  setFocusPolicy(Qt::StrongFocus);
  sheet_->setParent(this);
  resize((screen()->availableGeometry().size() * 9) / 10);
  move(screen()->availableGeometry().center() - rect().center());
}

void ReportPreview::resizeEvent(QResizeEvent*) {
  sheet_->setGeometry(0, kTitle + kBar, width(), height() - kTitle - kBar);
}

std::vector<QRect> ReportPreview::CommandRects() const {
  std::vector<QRect> rects;
  int left = kItemPadding;
  for (const Command& command : kCommands) {
    const int text = ScreenMetrics().horizontalAdvance(QString(command.caption) + "   " +
                                                       Qs(KeyText(command.key)));
    const int width = kIconSide + 6 + text + 2 * kItemPadding;
    rects.emplace_back(left, kTitle + 4, width, kBar - 8);
    left += width + 4;
  }
  return rects;
}

void ReportPreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Panel));
  const QRect title(0, 0, width(), kTitle);
  painter.fillRect(title, ColorOf(Role::Strip));
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::StripText));
  painter.drawText(title.adjusted(12, 0, -12, 0), Qt::AlignVCenter, Qs(pages_->Document().title));
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::StripDim));
  const QString where = told_.isEmpty() ? QString("%1 стр.").arg(pages_->Count()) : told_;
  painter.drawText(title.adjusted(12, 0, -12, 0), Qt::AlignVCenter | Qt::AlignRight, where);
  const std::vector<QRect> rects = CommandRects();
  for (std::size_t i = 0; i < rects.size(); ++i) {
    const QRect inner = rects[i].adjusted(kItemPadding, 0, -kItemPadding, 0);
    PaintIcon(painter, {inner.left(), inner.top() + (inner.height() - kIconSide) / 2},
              kCommands[i].icon, true);
    painter.setPen(ColorOf(Role::Text));
    painter.drawText(inner.adjusted(kIconSide + 6, 0, 0, 0), Qt::AlignVCenter,
                     kCommands[i].caption);
    painter.setPen(ColorOf(Role::TextDim));
    painter.drawText(inner, Qt::AlignVCenter | Qt::AlignRight, Qs(KeyText(kCommands[i].key)));
  }
}

void ReportPreview::mousePressEvent(QMouseEvent* event) {
  const std::vector<QRect> rects = CommandRects();
  for (std::size_t i = 0; i < rects.size(); ++i) {
    if (rects[i].contains(event->pos())) return (this->*kCommands[i].run)();
  }
}

void ReportPreview::keyPressEvent(QKeyEvent* event) {
  const KeyStroke key = StrokeOf(*event);
  for (const Command& command : kCommands) {
    if (command.key == key) return (this->*command.run)();
  }
  switch (key.code) {
    case KeyCode::PageDown:
      return sheet_->ScrollBy(1);
    case KeyCode::PageUp:
      return sheet_->ScrollBy(-1);
    case KeyCode::Down:
      return sheet_->ScrollLines(1);
    case KeyCode::Up:
      return sheet_->ScrollLines(-1);
    case KeyCode::Home:
      return sheet_->ScrollToEnd(false);
    case KeyCode::End:
      return sheet_->ScrollToEnd(true);
    default:
      break;
  }
  if (event->text() == "+") Larger();
  if (event->text() == "-") Smaller();
}

void ReportPreview::Zoomed(int by) {
  sheet_->Zoom(by);
}

void ReportPreview::Tell(const QString& text) {
  told_ = text;
  update();
}

void ReportPreview::Print() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setFullPage(true);
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageOrientation(pages_->IsLying() ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setDocName(Qs(pages_->Document().title));
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  LongWork work("Страниците отиват към принтера");
  const bool sent = pages_->PaintAll(printer, printer.resolution(), work.Progress());
  if (work.WasStopped()) {
    printer.abort();
    return Tell("Печатът е спрян.");
  }
  Tell(sent ? "Изпратено за печат." : "Принтерът не прие документа.");
}

struct ReportPreview::FileKind {
  const char* caption;
  const char* suffix;
  const char* filter;
  Answer<Done> (*save)(const ReportPages& pages, const QString& path,
                       const ReportProgress& progress);
};

void ReportPreview::SaveAs(const FileKind& kind) {
  QString name = Qs(pages_->Document().title + " " + pages_->Document().number).trimmed();
  name.replace('/', '-');
  QFileDialog dialog(this, kind.caption, QString(), kind.filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(kind.suffix);
  dialog.selectFile(name + "." + kind.suffix);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  const QString path = dialog.selectedFiles().front();
  LongWork work("Записва се файлът");
  const Answer<Done> saved = kind.save(*pages_, path, work.Progress());
  Tell(saved ? "Записано: " + path : Qs(saved.GetFailure().message));
}

void ReportPreview::SaveAsPdf() {
  SaveAs({"Запис като PDF", "pdf", "PDF (*.pdf)", &SavePdf});
}

void ReportPreview::SaveAsXlsx() {
  SaveAs({"Запис като XLSX", "xlsx", "XLSX (*.xlsx)", &SaveXlsx});
}

void ReportPreview::SaveAsCsv() {
  SaveAs({"Запис като CSV", "csv", "CSV (*.csv)", &SaveCsv});
}

}  // namespace orvane::desktop
