#include "desktop/form_parts.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>
#include <algorithm>

#include "desktop/action_menu.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

constexpr int kStripHeight = 29;
constexpr int kStatusHeight = 24;
constexpr int kSide = 12;     // space at both ends of a strip
constexpr int kPartGap = 20;  // between parts of the status bar
/// Before one brief part goes, all the others are brief.
constexpr int kBriefWeight = 100;

/// "Демонстрационно дружество · Мария Иванова · Български".
QString WhereText(const TVosBaseForm& form) {
  const VosApplication& app = form.App();
  if (!app.IsLoggedIn()) return {};
  const SessionInfo& info = app.Info();
  const bool second = !form.FirstLanguage() && !info.userName2.empty();
  QStringList parts;
  for (const std::string& part : {info.companyName, second ? info.userName2 : info.userName,
                                  app.LanguageName(form.GetLanguageNumber())}) {
    if (!part.empty()) parts.push_back(Qs(part));
  }
  return parts.join(QStringLiteral(" · "));
}

bool IsOnRibbon(const TVosBaseForm& form, const std::string& name) {
  for (const RibbonTab& tab : form.ribbon) {
    for (const RibbonGroup& group : tab.groups) {
      if (std::ranges::find(group.actions, name) != group.actions.end()) return true;
    }
  }
  return false;
}

bool IsOnBar(const LayoutNode& node, const std::string& name) {
  if (std::ranges::find(node.actions, name) != node.actions.end()) return true;
  return std::ranges::any_of(node.children,
                             [&](const LayoutNode& child) { return IsOnBar(child, name); });
}

int WidthOf(const std::string& text) {
  return ScreenMetrics().horizontalAdvance(Qs(text)) + 1;
}

/// The part of the least weight takes its brief form; one that has it, or has none, goes.
void GiveWay(std::vector<StatusPart>& parts) {
  const auto part = std::ranges::min_element(parts, {}, [](const StatusPart& one) {
    return one.brief == one.text ? one.weight + kBriefWeight : one.weight;
  });
  if (part->brief.empty() || part->brief == part->text)
    parts.erase(part);
  else
    part->text = part->brief;
}

}  // namespace

std::vector<std::string> ActionsBesideRibbon(const TVosBaseForm& form) {
  std::vector<std::string> names;
  for (const std::unique_ptr<TAction>& action : form.Actions()) {
    if (!action->visible || IsOnRibbon(form, action->name)) continue;
    if (!IsOnBar(form.layout, action->name)) names.push_back(action->name);
  }
  return names;
}

// --- the title
// ------------------------------------------------------------------------------------

TitleStrip::TitleStrip(TVosBaseForm& form) : form_(form) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize TitleStrip::sizeHint() const {
  return {ScreenMetrics(true).horizontalAdvance(title_) + 2 * kSide, kStripHeight};
}

void TitleStrip::Look() {
  const QString title = Qs(form_.caption);
  const QString where = WhereText(form_);
  if (title == title_ && where == where_) return;
  title_ = title;
  where_ = where;
  update();
}

bool TitleStrip::HasMenu() const {
  return !ActionsBesideRibbon(form_).empty();
}

QRect TitleStrip::MenuRect() const {
  return {width() - kSide - 20, 4, 20, height() - 8};
}

void TitleStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Strip));
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::StripText));
  QRect room = rect().adjusted(kSide, 0, -kSide, 0);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, title_);
  room.setLeft(room.left() + ScreenMetrics(true).horizontalAdvance(title_) + 2 * kSide);
  if (HasMenu()) {
    painter.setPen(QPen(ColorOf(Role::StripText), 2));
    const QRect menu = MenuRect();
    for (int i = -1; i <= 1; ++i) {
      const int y = menu.center().y() + 5 * i;
      painter.drawLine(menu.left() + 3, y, menu.right() - 3, y);
    }
    room.setRight(menu.left() - kSide);
  }
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::StripDim));
  // Shown whole or not at all: the title comes first.
  if (ScreenMetrics().horizontalAdvance(where_) <= room.width())
    painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, where_);
}

void TitleStrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !HasMenu()) return;
  if (MenuRect().adjusted(-4, -4, 4, 4).contains(event->pos())) OpenMenu();
}

void TitleStrip::OpenMenu(std::vector<std::string> folded) {
  for (std::string& name : ActionsBesideRibbon(form_))
    folded.push_back(std::move(name));
  if (folded.empty()) return;
  OpenActionMenu(*this, form_, folded, mapToGlobal(MenuRect().bottomLeft()));
}

bool TitleStrip::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  if (HasMenu() && MenuRect().contains(help->pos()))
    QToolTip::showText(help->globalPos(), "Още операции (Shift+F10)", this);
  else
    QToolTip::hideText();
  return true;
}

// --- the status
// -----------------------------------------------------------------------------------

StatusLine::StatusLine(TVosBaseForm& form) : form_(form) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setMouseTracking(true);
  // The link and the day change by themselves.
  constexpr int kLookAgainMs = 1'000;
  startTimer(kLookAgainMs);
}

QSize StatusLine::sizeHint() const {
  int width = 2 * kSide;
  for (const StatusPart& part : parts_)
    width += WidthOf(part.text) + kPartGap;
  return {width, kStatusHeight};
}

QSize StatusLine::minimumSizeHint() const {
  return {0, kStatusHeight};
}

void StatusLine::Look() {
  std::vector<StatusPart> parts = StatusBar(form_);
  if (parts == parts_) return;
  parts_ = std::move(parts);
  Arrange();
  update();
}

void StatusLine::Arrange() {
  std::vector<StatusPart> shown = parts_;
  const auto room = [&shown] {
    int width = 2 * kSide - kPartGap;
    for (const StatusPart& part : shown)
      width += WidthOf(part.text) + kPartGap;
    return width;
  };
  while (shown.size() > 1 && room() > width())
    GiveWay(shown);
  places_.clear();
  int left = kSide;
  for (const StatusPart& part : shown) {
    if (part.atRight) continue;
    places_.push_back({Qs(part.text), QRect(left, 0, WidthOf(part.text), height()), part.action});
    left += WidthOf(part.text) + kPartGap;
  }
  int right = width() - kSide;
  for (auto part = shown.rbegin(); part != shown.rend(); ++part) {
    if (!part->atRight) continue;
    const int taken = WidthOf(part->text);
    places_.push_back({Qs(part->text), QRect(right - taken, 0, taken, height()), part->action});
    right -= taken + kPartGap;
  }
}

const StatusLine::Place* StatusLine::PlaceAt(const QPoint& at) const {
  const auto found = std::ranges::find_if(places_, [&at](const Place& place) {
    return !place.action.empty() && place.rect.contains(at);
  });
  return found == places_.end() ? nullptr : &*found;
}

void StatusLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Bar));
  painter.setPen(ColorOf(Role::Line));
  painter.drawLine(rect().topLeft(), rect().topRight());
  painter.setPen(ColorOf(Role::Text));
  for (const Place& place : places_) {
    QFont font = ScreenFont();
    font.setUnderline(!place.action.empty());
    painter.setFont(font);
    painter.drawText(place.rect, Qt::AlignLeft | Qt::AlignVCenter, place.text);
  }
}

void StatusLine::resizeEvent(QResizeEvent*) {
  Arrange();
}

void StatusLine::mousePressEvent(QMouseEvent* event) {
  const Place* place = PlaceAt(event->pos());
  if (place != nullptr && event->button() == Qt::LeftButton)
    form_.Dispatch(ActionChosen{std::string(place->action)});
}

void StatusLine::mouseMoveEvent(QMouseEvent* event) {
  setCursor(PlaceAt(event->pos()) == nullptr ? Qt::ArrowCursor : Qt::PointingHandCursor);
}

void StatusLine::timerEvent(QTimerEvent*) {
  if (isVisible()) Look();
}

bool StatusLine::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const Place* place = PlaceAt(help->pos());
  const TAction* action = place == nullptr ? nullptr : form_.FindAction(place->action);
  if (action != nullptr)
    QToolTip::showText(help->globalPos(),
                       Qs(action->caption + " (" + KeyText(action->shortcut) + ")"), this);
  else
    QToolTip::hideText();
  return true;
}

}  // namespace orvane::desktop
