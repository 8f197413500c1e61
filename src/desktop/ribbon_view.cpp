#include "desktop/ribbon_view.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolTip>
#include <algorithm>

#include "desktop/action_menu.h"
#include "desktop/icons.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

constexpr int kTabs = 29;  // height of the strip of tabs
constexpr int kRows = 3;
constexpr int kTop = 5;         // above the first row of a group
constexpr int kCaption = 19;    // below the last
constexpr int kGroupSpace = 5;  // at both sides of a group
constexpr int kColumnGap = 4;
constexpr int kItemPadding = 4;
constexpr int kIconGap = 6;
constexpr int kKeyGap = 11;  // between caption and key
constexpr int kFoldWidth = 34;
constexpr int kTabPadding = 16;

QString KeyCaption(const TAction& action) {
  return action.shortcut.IsNone() ? QString() : Qs(KeyText(action.shortcut));
}

bool OwnsMainKey(const TAction& action) {
  return action.enabled && action.shortcut == KeyStroke(KeyCode::F9);
}

int KeyWidth(const TAction& action) {
  const QString key = KeyCaption(action);
  return key.isEmpty() ? 0 : kKeyGap + ScreenMetrics().horizontalAdvance(key);
}

}  // namespace

RibbonView::RibbonView(TVosBaseForm& form) : form_(form) {
  setFocusPolicy(Qt::NoFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName("Лента с операции");
}

QSize RibbonView::sizeHint() const {
  auto& self = const_cast<RibbonView&>(*this);
  int width = 0;
  const std::size_t groups = form_.ribbon.empty() ? 0 : form_.ribbon.front().groups.size();
  for (std::size_t i = 0; i < groups; ++i)
    width += self.GroupWidth(static_cast<int>(i));
  return {width + 2, kTabs + kTop + kRows * kRowHeight + kCaption};
}

QSize RibbonView::minimumSizeHint() const {
  return {kFoldWidth, sizeHint().height()};
}

std::size_t RibbonView::LookHash() const {
  LookHasher hash;
  for (const std::unique_ptr<TAction>& action : form_.Actions()) {
    hash.Add(action->caption).Add((action->enabled ? 1U : 0U) + (action->visible ? 2U : 0U));
    hash.Add(static_cast<std::size_t>(action->shortcut.code) * 8 + action->shortcut.modifiers);
  }
  return hash.Add(form_.ribbon.size()).Value();
}

void RibbonView::Look() {
  const std::size_t look = LookHash();
  if (look == seen_) return;
  seen_ = look;
  Arrange();
  update();
}

// --- places
// ---------------------------------------------------------------------------------------

/// The owner of the main key is bold; its place must not move when the key changes hands.
int RibbonView::CaptionWidth(const TAction& action) {
  if (action.shortcut == KeyStroke(KeyCode::F9)) mainKeyed_.insert(action.name);
  const bool bold = mainKeyed_.contains(action.name);
  return ScreenMetrics(bold).horizontalAdvance(Qs(action.caption));
}

std::vector<const TAction*> RibbonView::ActionsOf(int group) const {
  std::vector<const TAction*> actions;
  const RibbonTab& tab = form_.ribbon[static_cast<std::size_t>(tab_)];
  for (const std::string& name : tab.groups[static_cast<std::size_t>(group)].actions) {
    const TAction* action = form_.FindAction(name);
    if (action != nullptr && action->visible) actions.push_back(action);
  }
  return actions;
}

int RibbonView::ArrangeGroup(const std::vector<const TAction*>& actions, int left,
                             std::vector<Item>& items) {
  int x = left + kGroupSpace;
  for (std::size_t first = 0; first < actions.size(); first += kRows) {
    const std::size_t end = std::min(first + kRows, actions.size());
    int text = 0;
    for (std::size_t i = first; i < end; ++i)
      text = std::max(text, CaptionWidth(*actions[i]) + KeyWidth(*actions[i]));
    const int width = 2 * kItemPadding + kIconSide + kIconGap + text;
    for (std::size_t i = first; i < end; ++i) {
      const int top = kTabs + kTop + static_cast<int>(i - first) * kRowHeight;
      items.push_back({actions[i]->name, QRect(x, top, width, kRowHeight),
                       CaptionWidth(*actions[i]),
                       width - 2 * kItemPadding - kIconSide - kIconGap - KeyWidth(*actions[i])});
    }
    x += width + kColumnGap;
  }
  return x - kColumnGap + kGroupSpace - left;
}

int RibbonView::GroupWidth(int group) {
  std::vector<Item> items;
  const RibbonTab& tab = form_.ribbon[static_cast<std::size_t>(tab_)];
  const QString caption = Qs(tab.groups[static_cast<std::size_t>(group)].caption);
  return std::max(ArrangeGroup(ActionsOf(group), 0, items),
                  ScreenMetrics().horizontalAdvance(caption) + 2 * kGroupSpace);
}

void RibbonView::Arrange() {
  groups_.clear();
  items_.clear();
  foldLeft_ = -1;
  folded_.clear();
  if (form_.ribbon.empty()) return;
  const auto& groups = form_.ribbon[static_cast<std::size_t>(tab_)].groups;
  std::vector<int> widths;
  int total = 0;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    widths.push_back(GroupWidth(static_cast<int>(i)));
    total += widths.back();
  }
  const int room = total <= width() ? width() : width() - kFoldWidth;
  int left = 0;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (left + widths[i] > room) {
      folded_.push_back(static_cast<int>(i));
      continue;
    }
    ArrangeGroup(ActionsOf(static_cast<int>(i)), left, items_);
    groups_.push_back({QRect(left, kTabs, widths[i], height() - kTabs), Qs(groups[i].caption)});
    left += widths[i];
  }
  if (!folded_.empty()) foldLeft_ = left;
}

QRect RibbonView::ActionRect(const std::string& action) const {
  const auto found = std::ranges::find(items_, action, &Item::action);
  return found == items_.end() ? QRect() : found->place;
}

std::vector<std::string> RibbonView::FoldedActions() const {
  std::vector<std::string> folded;
  if (form_.ribbon.empty()) return folded;
  for (const int group : folded_) {
    for (const TAction* action : ActionsOf(group))
      folded.push_back(action->name);
  }
  return folded;
}

QRect RibbonView::TabRect(int tab) const {
  int left = kMargin;
  for (int i = 0; i < static_cast<int>(form_.ribbon.size()); ++i) {
    const QString caption = Qs(form_.ribbon[static_cast<std::size_t>(i)].caption);
    const int width = ScreenMetrics(true).horizontalAdvance(caption) + 2 * kTabPadding;
    if (i == tab) return {left, 4, width, kTabs - 4};
    left += width + 2;
  }
  return {};
}

QRect RibbonView::FoldRect() const {
  return {foldLeft_ + 3, kTabs + kTop, kFoldWidth - 6, kRows * kRowHeight};
}

const RibbonView::Item* RibbonView::ItemAt(const QPoint& at) const {
  const auto found =
      std::ranges::find_if(items_, [&at](const Item& item) { return item.place.contains(at); });
  return found == items_.end() ? nullptr : &*found;
}

// --- painting
// -------------------------------------------------------------------------------------

void RibbonView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Panel));
  PaintTabs(painter);
  painter.setFont(ScreenFont());
  for (const Group& group : groups_) {
    const QRect caption(group.place.left(), height() - kCaption, group.place.width(), kCaption - 3);
    painter.setPen(ColorOf(Role::TextDim));
    painter.drawText(caption, Qt::AlignCenter, group.caption);
    painter.setPen(ColorOf(Role::Line));
    painter.drawLine(group.place.right(), kTabs + 4, group.place.right(), height() - 5);
  }
  for (const Item& item : items_)
    PaintItem(painter, item);
  if (foldLeft_ >= 0) PaintFold(painter);
  painter.setPen(ColorOf(Role::Line));
  painter.drawLine(0, height() - 1, width(), height() - 1);
}

void RibbonView::PaintTabs(QPainter& painter) {
  painter.fillRect(QRect(0, 0, width(), kTabs), ColorOf(Role::Bar));
  for (int i = 0; i < static_cast<int>(form_.ribbon.size()); ++i) {
    const QRect tab = TabRect(i);
    if (i == tab_) painter.fillRect(tab, ColorOf(Role::Panel));
    painter.setFont(ScreenFont(i == tab_));
    painter.setPen(ColorOf(Role::Text));
    painter.drawText(tab, Qt::AlignCenter, Qs(form_.ribbon[static_cast<std::size_t>(i)].caption));
  }
}

void RibbonView::PaintItem(QPainter& painter, const Item& item) {
  const TAction* action = form_.FindAction(item.action);
  if (action == nullptr) return;
  const bool main = OwnsMainKey(*action);
  if (main || (action->enabled && hovered_ == item.action)) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(main ? ColorOf(Role::AccentLine) : ColorOf(Role::AccentSoft));
    painter.setBrush(ColorOf(Role::AccentSoft));
    painter.drawRoundedRect(QRectF(item.place).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  const QRect inner = item.place.adjusted(kItemPadding, 0, -kItemPadding, 0);
  const int iconTop = inner.top() + (inner.height() - kIconSide) / 2;
  PaintIcon(painter, QPoint(inner.left(), iconTop), action->icon, action->enabled);
  painter.setFont(ScreenFont(main));
  painter.setPen(ColorOf(action->enabled ? Role::Text : Role::TextDisabled));
  painter.drawText(inner.adjusted(kIconSide + kIconGap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   Qs(action->caption));
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(action->enabled ? Role::TextDim : Role::TextDisabled));
  painter.drawText(inner, Qt::AlignRight | Qt::AlignVCenter, KeyCaption(*action));
}

void RibbonView::PaintFold(QPainter& painter) {
  const QRect fold = FoldRect();
  painter.fillRect(fold, ColorOf(Role::AccentSoft));
  painter.setPen(ColorOf(Role::AccentLine));
  painter.drawRect(fold.adjusted(0, 0, -1, -1));
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::Text));
  painter.drawText(fold, Qt::AlignCenter, QStringLiteral("»"));
}

// --- the mouse
// ------------------------------------------------------------------------------------

bool RibbonView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const Item* item = ItemAt(help->pos());
  const TAction* action = item == nullptr ? nullptr : form_.FindAction(item->action);
  if (action != nullptr)
    QToolTip::showText(help->globalPos(), Qs(action->hint.empty() ? action->caption : action->hint),
                       this);
  else
    QToolTip::hideText();
  return true;
}

void RibbonView::resizeEvent(QResizeEvent*) {
  Arrange();
}

void RibbonView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (foldLeft_ >= 0 && FoldRect().contains(event->pos())) return OpenFold();
  for (int i = 0; i < static_cast<int>(form_.ribbon.size()); ++i) {
    if (!TabRect(i).contains(event->pos())) continue;
    tab_ = i;
    Arrange();
    update();
    return;
  }
  if (const Item* item = ItemAt(event->pos())) form_.Dispatch(ActionChosen{item->action});
}

void RibbonView::OpenFold() {
  OpenActionMenu(*this, form_, FoldedActions(), mapToGlobal(FoldRect().bottomLeft()));
}

void RibbonView::mouseMoveEvent(QMouseEvent* event) {
  const Item* item = ItemAt(event->pos());
  const std::string under = item == nullptr ? std::string() : item->action;
  if (under == hovered_) return;
  hovered_ = under;
  update();
}

void RibbonView::leaveEvent(QEvent*) {
  hovered_.clear();
  update();
}

}  // namespace orvane::desktop
