#include "desktop/grids/inspector_view.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>
#include <algorithm>

#include "desktop/grids/grid_painter.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/combo.h"
#include "host/controls/inspector.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

constexpr int kFewestLines = 3;
constexpr int kValueChars = 34;  // characters a value has room for when nothing else says so
constexpr int kNameGap = 10;     // between a code and the name behind it
constexpr int kMemoLines = 4;    // height of the editor of a memo

void PaintListSign(QPainter& painter, const QRect& place) {
  constexpr int kReach = 4;
  const QPoint middle = place.center();
  const QPoint line[] = {middle + QPoint(-kReach, -2), middle + QPoint(0, 2),
                         middle + QPoint(kReach, -2)};
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawPolyline(line, 3);
  painter.setRenderHint(QPainter::Antialiasing, false);
}

QString LabelText(const InspectorItem& item) {
  return Qs(item.label) + (item.required ? QStringLiteral(" •") : QString());
}

}  // namespace

InspectorView::InspectorView(TVosDataInspector& inspector)
    : ControlView(inspector), inspector_(inspector) {
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAttribute(Qt::WA_InputMethodEnabled);
  viewport()->setFocusPolicy(Qt::NoFocus);
  setAccessibleName(Qs(inspector.Name()));
  Measure();
}

void InspectorView::Measure() {
  const std::size_t before = shown_.size();
  shown_.clear();
  tops_ = {0};
  labelWidth_ = 0;
  for (std::size_t i = 0; i < inspector_.items.size(); ++i) {
    const InspectorItem& item = inspector_.items[i];
    if (!item.visible) continue;
    shown_.push_back(static_cast<int>(i));
    tops_.push_back(tops_.back() + item.lines * kRowHeight);
    labelWidth_ = std::max(labelWidth_, ScreenMetrics().horizontalAdvance(LabelText(item)));
  }
  labelWidth_ += kPadding * 2 + 3;
  if (before != shown_.size()) updateGeometry();
}

std::uint64_t InspectorView::ShownVersion() const {
  return inspector_.DataSet().Version();
}

void InspectorView::Changed() {
  Measure();
  SettleBar();
  const int item = inspector_.CurrentItem();
  if (item != seenItem_) FollowCursor();
  seenItem_ = item;
  viewport()->update();
}

QSize InspectorView::sizeHint() const {
  return {labelWidth_ + kValueChars * CharWidth(), tops_.back() + 2};
}

QSize InspectorView::minimumSizeHint() const {
  const int height = std::min(kFewestLines * kRowHeight, tops_.back());
  return {labelWidth_ + kValueChars / 3 * CharWidth(), height + 2};
}

// --- places
// ---------------------------------------------------------------------------------------

int InspectorView::LineOf(int item) const {
  const auto found = std::ranges::find(shown_, item);
  return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

QRect InspectorView::LineRect(int line) const {
  const auto at = static_cast<std::size_t>(line);
  return {1, 1 + tops_[at] - verticalScrollBar()->value(), viewport()->width() - 2,
          tops_[at + 1] - tops_[at]};
}

QRect InspectorView::ValueRect(int line) const {
  return LineRect(line).adjusted(labelWidth_, 0, 0, 0);
}

int InspectorView::ItemAt(int y) const {
  const auto below = std::ranges::upper_bound(tops_, y - 1 + verticalScrollBar()->value());
  if (below == tops_.begin() || below == tops_.end()) return -1;
  return shown_[static_cast<std::size_t>(below - tops_.begin()) - 1];
}

void InspectorView::SettleBar() {
  const int height = tops_.back() + 2;
  verticalScrollBar()->setSingleStep(kRowHeight);
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
}

void InspectorView::FollowCursor() {
  const int line = LineOf(inspector_.CurrentItem());
  if (line < 0) return;
  const QRect place = LineRect(line);
  QScrollBar& bar = *verticalScrollBar();
  if (place.bottom() >= viewport()->height())
    bar.setValue(bar.value() + place.bottom() - viewport()->height() + 2);
  if (LineRect(line).top() < 1) bar.setValue(bar.value() + LineRect(line).top() - 1);
}

QRect InspectorView::EditorPlace() const {
  const int item = inspector_.CurrentItem();
  const int line = LineOf(item);
  if (line < 0) return {};
  QRect place = ValueRect(line);
  if (inspector_.items[static_cast<std::size_t>(item)].kind == ItemKind::Memo) {
    place.setHeight(kMemoLines * kRowHeight);
    if (place.bottom() >= viewport()->height()) place.moveBottom(viewport()->height() - 1);
  }
  return place & viewport()->rect();
}

bool InspectorView::EditorIsSecret() const {
  const auto item = static_cast<std::size_t>(inspector_.CurrentItem());
  return item < inspector_.items.size() && inspector_.items[item].kind == ItemKind::Password;
}

QRect InspectorView::BringIntoSight(int row, int /*column*/) {
  const int line = LineOf(row < 0 ? inspector_.CurrentItem() : row);
  if (line < 0) return {};
  QScrollBar& bar = *verticalScrollBar();
  const QRect place = LineRect(line);
  if (place.top() < 1) bar.setValue(bar.value() + place.top() - 1);
  if (place.bottom() >= viewport()->height())
    bar.setValue(bar.value() + place.bottom() - viewport()->height() + 2);
  return ValueRect(line) & viewport()->rect();
}

QString InspectorView::CurrentText() const {
  if (shown_.empty() || EditorIsSecret()) return {};
  return Qs(inspector_.DisplayText(inspector_.CurrentItem()));
}

// --- painting
// -------------------------------------------------------------------------------------

void InspectorView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.setFont(ScreenFont());
  painter.fillRect(viewport()->rect(), ColorOf(Role::Panel));
  for (int line = 0; line < static_cast<int>(shown_.size()); ++line)
    PaintItem(painter, line);
  painter.setPen(ColorOf(Role::Line));
  painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
  const int current = LineOf(inspector_.CurrentItem());
  if (!HasFocus() || current < 0) return;
  painter.setPen(QPen(ColorOf(Role::Accent), 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.drawRect(ValueRect(current).adjusted(1, 1, -1, -1));
  if (inspector_.ActiveCombo() != nullptr) PaintListSign(painter, ListSignRect(current));
}

/// Where the mouse opens the list of the current item.
QRect InspectorView::ListSignRect(int line) const {
  const QRect value = ValueRect(line);
  return {value.right() - kRowHeight, value.top(), kRowHeight, value.height()};
}

void InspectorView::PaintItem(QPainter& painter, int line) {
  const int index = shown_[static_cast<std::size_t>(line)];
  const InspectorItem& item = inspector_.items[static_cast<std::size_t>(index)];
  const QRect place = LineRect(line);
  if (place.bottom() < 0 || place.top() > viewport()->height()) return;
  const bool current = HasFocus() && index == inspector_.CurrentItem();
  const QRect label(place.left(), place.top(), labelWidth_, place.height());
  painter.fillRect(label, ColorOf(current ? Role::RowCurrent : Role::FieldFixed));
  painter.setPen(ColorOf(Role::Text));
  QRect text = label.adjusted(kPadding, 0, -kPadding, -1);
  text.setHeight(kRowHeight - 1);
  const Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
  painter.drawText(text, left | Qt::TextSingleLine, Qs(item.label));
  if (item.required) {
    const int after = ScreenMetrics().horizontalAdvance(Qs(item.label));
    painter.setPen(ColorOf(Role::Required));
    painter.drawText(text.adjusted(after, 0, 0, 0), left | Qt::TextSingleLine,
                     QStringLiteral(" •"));
  }
  PaintValue(painter, index, ValueRect(line));
  painter.setPen(ColorOf(Role::LineSoft));
  painter.drawLine(place.bottomLeft(), place.bottomRight());
  painter.drawLine(label.topRight(), label.bottomRight());
}

void InspectorView::PaintValue(QPainter& painter, int index, const QRect& place) {
  const InspectorItem& item = inspector_.items[static_cast<std::size_t>(index)];
  const bool readOnly = inspector_.readOnly || item.readOnly;
  painter.fillRect(place, ColorOf(readOnly ? Role::FieldReadOnly : Role::Field));
  if (item.kind == ItemKind::Check) {
    const TField* field = inspector_.DataSet().FindField(item.field);
    QRect box = CheckBoxRect(place);
    box.moveLeft(place.left() + kPadding);
    return PaintCheckBox(painter, box, field != nullptr && field->AsBool(), !readOnly);
  }
  QRect room = place.adjusted(kPadding, 0, -kPadding, -1);
  if (item.lines > 1) {
    painter.setPen(ColorOf(Role::Text));
    painter.drawText(room.adjusted(0, kPadding / 2, 0, 0),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                     Qs(inspector_.DisplayText(index)));
    return;
  }
  const QFontMetrics metrics = painter.fontMetrics();
  const auto paint = [&](const QString& text, Role role) {
    painter.setPen(ColorOf(role));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text, Qt::ElideRight, room.width()));
    room.setLeft(room.left() + metrics.horizontalAdvance(text) + kNameGap);
  };
  const QString value = Qs(inspector_.DisplayText(index)).replace('\n', ' ');
  if (!value.isEmpty()) paint(value, Role::Text);
  const QString name = Qs(inspector_.NameText(index));
  // Without a value before it a name would look like one.
  if (value.isEmpty())
    room.setLeft(room.right() - std::min(room.width(), metrics.horizontalAdvance(name)));
  if (!name.isEmpty() && room.width() > 0) paint(name, Role::TextDim);
}

void InspectorView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  SettleBar();
  FollowCursor();
}

void InspectorView::scrollContentsBy(int, int) {
  viewport()->update();
}

void InspectorView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int item = ItemAt(event->pos().y());
  bool open = false;
  if (item >= 0 && inspector_.items[static_cast<std::size_t>(item)].kind == ItemKind::Check) {
    QRect box = CheckBoxRect(ValueRect(LineOf(item)));
    box.moveLeft(ValueRect(LineOf(item)).left() + kPadding);
    open = box.adjusted(-3, -3, 3, 3).contains(event->pos());
  }
  inspector_.Form().Dispatch(Pointed{&inspector_, item, 0, open});
  if (item < 0 || item != inspector_.CurrentItem() || inspector_.ActiveCombo() == nullptr) return;
  if (ListSignRect(LineOf(item)).contains(event->pos())) inspector_.Form().Dispatch(ListWanted{});
}

void InspectorView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int item = ItemAt(event->pos().y());
  if (item >= 0 && inspector_.items[static_cast<std::size_t>(item)].kind == ItemKind::Check)
    return mousePressEvent(event);
  inspector_.Form().Dispatch(Pointed{&inspector_, item, 0, true});
  const CellEditor* editor = inspector_.Editor();
  if (editor != nullptr && editor->Combo() != nullptr && !editor->IsChanged())
    inspector_.Form().Dispatch(ListWanted{});
}

}  // namespace orvane::desktop
