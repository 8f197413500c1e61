#include "desktop/action_menu.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QMenu>

#include "desktop/icons.h"
#include "desktop/qt_text.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

QPixmap IconOf(const TAction& action) {
  QPixmap icon(kIconSide, kIconSide);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  PaintIcon(painter, QPoint(), action.icon, action.enabled);
  return icon;
}

}  // namespace

void OpenActionMenu(QWidget& owner, TVosBaseForm& form, const std::vector<std::string>& actions,
                    const QPoint& at) {
  auto* menu = new QMenu(&owner);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const std::string& name : actions) {
    const TAction* action = form.FindAction(name);
    if (action == nullptr || !action->visible) continue;
    // The text after the tab stands at the right edge; the key itself is the form's to answer.
    const QString key =
        action->shortcut.IsNone() ? QString() : "\t" + Qs(KeyText(action->shortcut));
    QAction* entry = menu->addAction(QIcon(IconOf(*action)), Qs(action->caption) + key);
    entry->setEnabled(action->enabled);
    // What an action opens runs a loop of its own, in which the closed menu is freed: the action
    // waits until nothing of the menu is on the stack.
    QObject::connect(
        entry, &QAction::triggered, &owner, [&form, name] { form.Dispatch(ActionChosen{name}); },
        Qt::QueuedConnection);
  }
  menu->popup(at);
}

}  // namespace orvane::desktop
