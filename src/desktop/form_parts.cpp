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

namespace orvane {
namespace {

constexpr int kStripHeight = 29;
constexpr int kStatusHeight = 24;
constexpr int kSide = 12;  // space at both ends of a strip

/// "Демонстрационно дружество · Мария Иванова · Български".
QString WhereText(const TVosBaseForm& form) {
  const VosApplication& app = form.App();
  if (!app.IsLoggedIn()) return {};
  const SessionInfo& info = app.Info();
  const bool second = !form.FirstLanguage() && !info.userName2.empty();
  QStringList parts;
  for (const std::string& part : {info.companyName, second ? info.userName2 : info.userName,
                                  app.LanguageName(app.GetLanguageNumber())}) {
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
}

QSize StatusLine::sizeHint() const {
  const QFontMetrics metrics = ScreenMetrics();
  return {metrics.horizontalAdvance(left_) + metrics.horizontalAdvance(right_) + 4 * kSide,
          kStatusHeight};
}

void StatusLine::Look() {
  const StatusBarText text = StatusBar(form_);
  const QString left = Qs(text.left);
  const QString right = Qs(text.right);
  if (left == left_ && right == right_) return;
  left_ = left;
  right_ = right;
  update();
}

void StatusLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Bar));
  painter.setPen(ColorOf(Role::Line));
  painter.drawLine(rect().topLeft(), rect().topRight());
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::Text));
  const QRect room = rect().adjusted(kSide, 0, -kSide, 0);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, left_);
  painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, right_);
}

}  // namespace orvane
