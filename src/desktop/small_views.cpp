#include "desktop/small_views.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QToolTip>
#include <algorithm>

#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/small_controls.h"
#include "host/form.h"

namespace orvane::desktop {

// --- key edits
// ------------------------------------------------------------------------------------

namespace {
constexpr int kKeyHeight = 25;
}  // namespace

KeyEditView::KeyEditView(TKeyEdit& edit) : ControlView(edit), edit_(edit) {
  setFocusPolicy(Qt::NoFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(Qs(edit.caption));
}

QSize KeyEditView::sizeHint() const {
  const int caption = ScreenMetrics().horizontalAdvance(Qs(edit_.caption));
  return {caption + kMargin + edit_.width * CharWidth() + 2 * kPadding, kKeyHeight};
}

QRect KeyEditView::BoxRect() const {
  const int caption = ScreenMetrics().horizontalAdvance(Qs(edit_.caption));
  return rect().adjusted(caption + kMargin, 0, 0, 0);
}

QRect KeyEditView::BringIntoSight(int /*row*/, int /*column*/) {
  return BoxRect();
}

QString KeyEditView::CurrentText() const {
  return Qs(edit_.Text());
}

void KeyEditView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::Text));
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, Qs(edit_.caption));
  const QRect box = BoxRect();
  painter.fillRect(box, ColorOf(edit_.readOnly ? Role::FieldReadOnly : Role::Field));
  painter.drawText(box.adjusted(kPadding, 0, -kPadding, 0), Qt::AlignRight | Qt::AlignVCenter,
                   Qs(edit_.Text()));
  const int width = HasFocus() ? 2 : 1;
  painter.setPen(QPen(ColorOf(HasFocus() ? Role::Accent : Role::Line), width, Qt::SolidLine,
                      Qt::SquareCap, Qt::MiterJoin));
  painter.drawRect(box.adjusted(width / 2, width / 2, -1, -1));
}

void KeyEditView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) edit_.Form().Dispatch(Pointed{&edit_, 0, 0, false});
}

void KeyEditView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  TVosBaseForm& form = edit_.Form();
  form.Dispatch(Pointed{&edit_, 0, 0, true});
  if (edit_.Editor() == nullptr) form.Dispatch(KeyPressed{KeyCode::F2});
}

// --- bars
// -----------------------------------------------------------------------------------------

namespace {

constexpr int kBarButton = 25;

/// Signs of navigation, by how an action's name begins (acFirst, acFirstY).
struct SignRow {
  std::string_view name;
  int bars;       ///< strokes: a wall at that side
  int chevrons;   ///< how many
  int direction;  ///< -1 to the left, 1 to the right
};
constexpr SignRow kSigns[] = {
    // Longer names stand before the names they begin with.
    {"acFirst", 1, 1, -1},   {"acPriorPage", 0, 2, -1}, {"acPrior", 0, 1, -1},
    {"acNextPage", 0, 2, 1}, {"acNext", 0, 1, 1},       {"acLast", 1, 1, 1},
};

const SignRow* SignOf(std::string_view action) {
  const auto row = std::ranges::find_if(
      kSigns, [action](const SignRow& sign) { return action.starts_with(sign.name); });
  return row == std::end(kSigns) ? nullptr : row;
}

void PaintSign(QPainter& painter, const QRect& button, const SignRow& sign) {
  constexpr qreal kReach = 3.5;
  constexpr qreal kGap = 5;
  const QPointF middle = QRectF(button).center();
  const qreal wide = kGap * (sign.chevrons + sign.bars - 1);
  qreal x = middle.x() - sign.direction * (wide / 2);
  for (int i = 0; i < sign.chevrons; ++i) {
    const qreal half = sign.direction * kReach / 2;
    const QPointF line[] = {QPointF(x - half, middle.y() - kReach), QPointF(x + half, middle.y()),
                            QPointF(x - half, middle.y() + kReach)};
    painter.drawPolyline(line, 3);
    x += sign.direction * kGap;
  }
  if (sign.bars > 0)
    painter.drawLine(QPointF(x, middle.y() - kReach), QPointF(x, middle.y() + kReach));
}

}  // namespace

BarView::BarView(TVosBaseForm& form, std::vector<std::string> actions)
    : form_(form), actions_(std::move(actions)) {
  setFocusPolicy(Qt::NoFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void BarView::Look() {
  std::vector<bool> live;
  live.reserve(actions_.size());
  for (int i = 0; i < static_cast<int>(actions_.size()); ++i)
    live.push_back(ActionAt(i) != nullptr && ActionAt(i)->enabled);
  if (live == seen_) return;
  seen_ = live;
  update();
}

const TAction* BarView::ActionAt(int index) const {
  const auto place = static_cast<std::size_t>(index);
  return index < 0 || place >= actions_.size() ? nullptr : form_.FindAction(actions_[place]);
}

QSize BarView::sizeHint() const {
  int width = 0;
  for (int i = 0; i < static_cast<int>(actions_.size()); ++i)
    width = ButtonRect(i).right() + 1;
  return {width, kBarButton};
}

QRect BarView::ButtonRect(int index) const {
  int left = 0;
  for (int i = 0; i <= index; ++i) {
    const auto place = static_cast<std::size_t>(i);
    int width = kBarButton;
    if (SignOf(actions_[place]) == nullptr && ActionAt(i) != nullptr)
      width = ScreenMetrics().horizontalAdvance(Qs(ActionAt(i)->caption)) + 2 * kPadding + 2;
    if (i == index) return {left, 0, width, kBarButton};
    left += width + 1;
  }
  return {};
}

int BarView::ButtonAt(const QPoint& at) const {
  for (int i = 0; i < static_cast<int>(actions_.size()); ++i) {
    if (ButtonRect(i).contains(at)) return i;
  }
  return -1;
}

void BarView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(ScreenFont());
  for (int i = 0; i < static_cast<int>(actions_.size()); ++i)
    PaintButton(painter, i);
}

void BarView::PaintButton(QPainter& painter, int index) {
  const TAction* action = ActionAt(index);
  if (action == nullptr || !action->visible) return;
  const QRect button = ButtonRect(index);
  const bool hot = action->enabled && index == hovered_;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(button, ColorOf(hot ? Role::AccentSoft
                                       : (action->enabled ? Role::Field : Role::FieldReadOnly)));
  painter.setPen(ColorOf(Role::Line));
  painter.drawRect(button.adjusted(0, 0, -1, -1));
  const Role ink = action->enabled ? Role::Text : Role::IconGrey;
  const SignRow* sign = SignOf(actions_[static_cast<std::size_t>(index)]);
  if (sign == nullptr) {
    painter.setPen(ColorOf(action->enabled ? Role::Text : Role::TextDisabled));
    painter.drawText(button, Qt::AlignCenter, Qs(action->caption));
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ColorOf(ink), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  PaintSign(painter, button, *sign);
}

bool BarView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const TAction* action = ActionAt(ButtonAt(help->pos()));
    if (action != nullptr) {
      const std::string& words = action->hint.empty() ? action->caption : action->hint;
      const QString key =
          action->shortcut.IsNone() ? QString() : " (" + Qs(KeyText(action->shortcut)) + ")";
      QToolTip::showText(help->globalPos(), Qs(words) + key, this);
    }
    return true;
  }
  return QWidget::event(event);
}

void BarView::mousePressEvent(QMouseEvent* event) {
  const int index = ButtonAt(event->pos());
  if (event->button() != Qt::LeftButton || index < 0) return;
  form_.Dispatch(ActionChosen{actions_[static_cast<std::size_t>(index)]});
}

void BarView::mouseMoveEvent(QMouseEvent* event) {
  const int index = ButtonAt(event->pos());
  if (index == hovered_) return;
  hovered_ = index;
  update();
}

void BarView::leaveEvent(QEvent*) {
  hovered_ = -1;
  update();
}

// --- pages
// ----------------------------------------------------------------------------------------

namespace {
constexpr int kTabHeight = 27;
constexpr int kTabPadding = 15;
constexpr int kTabGap = 3;
}  // namespace

PageView::PageView(TPageControl& pages)
    : ControlView(pages), pages_(pages), stack_(new QStackedLayout) {
  setFocusPolicy(Qt::NoFocus);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, kTabHeight, 0, 0);
  layout->addLayout(stack_);
  setAccessibleName(Qs(pages.Name()));
}

void PageView::SetContent(int page, QWidget* content) {
  // The content hides and shows itself by its control; the page around it belongs to the stack.
  auto* holder = new QWidget;
  auto* layout = new QVBoxLayout(holder);
  layout->setContentsMargins(0, 0, 0, 0);
  if (content != nullptr) layout->addWidget(content);
  stack_->insertWidget(page, holder);
}

QRect PageView::TabRect(int page) const {
  int left = 0;
  for (int i = 0; i < static_cast<int>(pages_.pages.size()); ++i) {
    const TabPage& shown = pages_.pages[static_cast<std::size_t>(i)];
    if (!shown.visible) continue;
    const int width = ScreenMetrics(true).horizontalAdvance(Qs(shown.caption)) + 2 * kTabPadding;
    if (i == page) return {left, 0, width, kTabHeight};
    left += width + kTabGap;
  }
  return {};
}

void PageView::Changed() {
  if (pages_.active >= 0 && pages_.active < stack_->count()) stack_->setCurrentIndex(pages_.active);
  update();
}

void PageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (int i = 0; i < static_cast<int>(pages_.pages.size()); ++i) {
    const QRect tab = TabRect(i);
    if (tab.isEmpty()) continue;
    const bool active = i == pages_.active;
    painter.fillRect(tab, ColorOf(active ? Role::Field : Role::Bar));
    painter.setPen(ColorOf(Role::Line));
    painter.drawLine(tab.topLeft(), tab.bottomLeft());
    painter.drawLine(tab.topLeft(), tab.topRight());
    painter.drawLine(tab.topRight(), tab.bottomRight());
    if (active) painter.fillRect(tab.adjusted(0, 0, 0, -tab.height() + 2), ColorOf(Role::Accent));
    painter.setFont(ScreenFont(active));
    painter.setPen(ColorOf(Role::Text));
    painter.drawText(tab, Qt::AlignCenter, Qs(pages_.pages[static_cast<std::size_t>(i)].caption));
  }
}

void PageView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  for (int i = 0; i < static_cast<int>(pages_.pages.size()); ++i) {
    if (!TabRect(i).contains(event->pos())) continue;
    const TabPage& page = pages_.pages[static_cast<std::size_t>(i)];
    pages_.Form().Dispatch(PageChosen{pages_.Name(), page.name});
    return;
  }
}

// --- labels
// ---------------------------------------------------------------------------------------

namespace {
constexpr int kChipHeight = 22;
constexpr int kChipPadding = 11;

QString ChipText(const TLabel& label) {
  return QStringLiteral("● ") + Qs(label.text);
}
}  // namespace

LabelView::LabelView(TLabel& label) : ControlView(label), label_(label) {
  setFocusPolicy(Qt::NoFocus);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  if (label.chip) policy.setHorizontalPolicy(QSizePolicy::Fixed);
  policy.setHeightForWidth(!label.chip);
  setSizePolicy(policy);
  setAccessibleName(Qs(label.Name()));
}

bool LabelView::hasHeightForWidth() const {
  return !label_.chip;
}

int LabelView::heightForWidth(int width) const {
  if (label_.text.empty()) return 0;
  const QRect room(0, 0, std::max(width, 1), QWIDGETSIZE_MAX);
  return ScreenMetrics().boundingRect(room, Qt::TextWordWrap, Qs(label_.text)).height() + 4;
}

QSize LabelView::sizeHint() const {
  if (label_.text.empty()) return {0, label_.chip ? kChipHeight : 0};
  if (label_.chip)
    return {ScreenMetrics(true).horizontalAdvance(ChipText(label_)) + 2 * kChipPadding,
            kChipHeight};
  const int width = ScreenMetrics().horizontalAdvance(Qs(label_.text));
  constexpr int kWidest = 700;
  return {std::min(width + 2, kWidest), heightForWidth(std::min(width + 2, kWidest))};
}

void LabelView::Changed() {
  updateGeometry();
  update();
}

void LabelView::paintEvent(QPaintEvent*) {
  if (label_.text.empty()) return;
  QPainter painter(this);
  if (!label_.chip) {
    painter.setFont(ScreenFont());
    painter.setPen(ColorOf(Role::Text));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, Qs(label_.text));
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(ColorOf(Role::ChipLine));
  painter.setBrush(ColorOf(Role::ChipGround));
  const QRectF chip = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.drawRoundedRect(chip, chip.height() / 2, chip.height() / 2);
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::ChipText));
  painter.drawText(rect(), Qt::AlignCenter, ChipText(label_));
}

}  // namespace orvane::desktop
