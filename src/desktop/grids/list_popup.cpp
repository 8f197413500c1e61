#include "desktop/grids/list_popup.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <algorithm>

#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/combo.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

constexpr int kMostLines = 12;
constexpr int kLeastWidth = 180;
constexpr int kMostWidth = 620;
constexpr int kThumb = 5;  // width of the mark that tells how far down the list is

QString MoreText() {
  return QStringLiteral("↓ има още; продължете надолу или пишете");
}

}  // namespace

ListPopup::ListPopup(QWidget& window, TVosBaseForm& form)
    : QWidget(&window), window_(window), form_(form) {
  setObjectName("list");
  setFocusPolicy(Qt::NoFocus);
  hide();
}

int ListPopup::Count() const {
  return combo_ == nullptr ? 0 : static_cast<int>(combo_->List().rows.size());
}

int ListPopup::VisibleLines() const {
  return std::min(Count(), kMostLines);
}

void ListPopup::Follow(const TVosMTCombo* combo, const QRect& place) {
  if (combo == nullptr || !combo->List().open || place.isEmpty()) {
    combo_ = nullptr;
    seen_ = 0;
    if (!isHidden()) hide();
    return;
  }
  if (combo != combo_) top_ = 0;
  const bool same = combo == combo_ && combo->ListVersion() == seen_ && !isHidden();
  combo_ = combo;
  seen_ = combo->ListVersion();
  const int lines = VisibleLines();
  if (!same) {
    const int current = std::max(0, combo->List().current);
    top_ = std::clamp(top_, std::max(0, current - lines + 1), std::max(0, current));
    top_ = std::clamp(top_, 0, std::max(0, Count() - lines));
  }
  int width = std::max(place.width() + 4, kLeastWidth);
  const QFontMetrics metrics = ScreenMetrics();
  for (int i = top_; i < top_ + lines; ++i) {
    const QString text = Qs(combo->ListText(static_cast<std::size_t>(i)));
    width = std::max(width, metrics.horizontalAdvance(text) + 2 * kPadding + kThumb + 4);
  }
  if (combo->List().more)
    width = std::max(width, metrics.horizontalAdvance(MoreText()) + 2 * kPadding + kThumb + 4);
  width = std::min({width, kMostWidth, window_.width() - 2});
  const int height = (lines + (combo->List().more ? 1 : 0)) * kRowHeight + 2;
  QRect box(place.left() - 2, place.bottom() + 3, width, height);
  if (box.bottom() > window_.height()) box.moveBottom(place.top() - 3);
  if (box.right() > window_.width() - 1) box.moveRight(window_.width() - 2);
  setGeometry(box);
  show();
  raise();
  update();
}

void ListPopup::paintEvent(QPaintEvent*) {
  if (combo_ == nullptr) return;
  QPainter painter(this);
  painter.setFont(ScreenFont());
  painter.fillRect(rect(), ColorOf(Role::Field));
  for (int line = 0; line < VisibleLines(); ++line)
    PaintLine(painter, line);
  if (combo_->List().more) {
    const QRect place(1, 1 + VisibleLines() * kRowHeight, width() - 2, kRowHeight);
    painter.fillRect(place, ColorOf(Role::FieldReadOnly));
    painter.setPen(ColorOf(Role::TextDim));
    painter.drawText(place.adjusted(kPadding, 0, 0, 0), Qt::AlignVCenter, MoreText());
  }
  if (Count() > VisibleLines()) {
    const int track = VisibleLines() * kRowHeight;
    const int length = std::max(14, track * VisibleLines() / Count());
    const int at = (track - length) * top_ / (Count() - VisibleLines());
    painter.fillRect(width() - kThumb - 2, 1 + at, kThumb, length, ColorOf(Role::AccentLine));
  }
  painter.setPen(ColorOf(Role::Accent));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ListPopup::PaintLine(QPainter& painter, int line) {
  const int entry = top_ + line;
  const QRect place(1, 1 + line * kRowHeight, width() - 2, kRowHeight);
  const bool current = entry == combo_->List().current;
  if (current) {
    painter.fillRect(place, ColorOf(Role::AccentSoft));
    painter.fillRect(place.left(), place.top(), 3, place.height(), ColorOf(Role::Accent));
  }
  const QRect room = place.adjusted(kPadding, 0, -kPadding - kThumb, 0);
  painter.setPen(ColorOf(Role::Text));
  const QString text = Qs(combo_->ListText(static_cast<std::size_t>(entry)));
  painter.drawText(room, Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
}

void ListPopup::mousePressEvent(QMouseEvent* event) {
  const int line = (event->pos().y() - 1) / kRowHeight;
  if (event->button() != Qt::LeftButton || line < 0 || line >= VisibleLines()) return;
  form_.Dispatch(ListPicked{top_ + line});
}

void ListPopup::wheelEvent(QWheelEvent* event) {
  constexpr int kLines = 3;
  const int by = event->angleDelta().y() > 0 ? -kLines : kLines;
  top_ = std::clamp(top_ + by, 0, std::max(0, Count() - VisibleLines()));
  event->accept();
  update();
}

}  // namespace orvane::desktop
