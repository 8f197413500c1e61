#include "desktop/accessible_views.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QAccessibleWidget>

#include "desktop/control_view.h"
#include "desktop/qt_text.h"

namespace orvane::desktop {
namespace {

QAccessible::Role RoleOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::Grid:
      return QAccessible::Table;
    case ControlKind::Inspector:
      return QAccessible::PropertyPage;
    case ControlKind::KeyEdit:
      return QAccessible::EditableText;
    case ControlKind::PageControl:
      return QAccessible::PageTabList;
    case ControlKind::Label:
      break;
  }
  return QAccessible::StaticText;
}

class AccessibleView final : public QAccessibleWidget {
 public:
  explicit AccessibleView(ControlView& view)
      : QAccessibleWidget(&view.Widget(), RoleOf(view.Model().Kind())), view_(view) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) {
      const QString place = Qs(view_.Model().PlaceLabel());
      return place.isEmpty() ? QAccessibleWidget::text(kind) : place;
    }
    return kind == QAccessible::Value ? view_.CurrentText() : QAccessibleWidget::text(kind);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = view_.Model().CanFocus();
    state.focused = view_.HasFocus();
    return state;
  }

 private:
  ControlView& view_;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  auto* view = dynamic_cast<ControlView*>(object);
  return view == nullptr ? nullptr : new AccessibleView(*view);
}

}  // namespace

void InstallAccessibleViews() {
  QAccessible::installFactory(&MakeAccessible);
}

void AnnouncePlace(ControlView& view) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent name(&view.Widget(), QAccessible::NameChanged);
  QAccessible::updateAccessibility(&name);
  QAccessibleValueChangeEvent value(&view.Widget(), view.CurrentText());
  QAccessible::updateAccessibility(&value);
}

}  // namespace orvane::desktop
