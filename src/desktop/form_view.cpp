#include "desktop/form_view.h"

#include <QtGui/QClipboard>
#include <QtGui/QCloseEvent>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <algorithm>

#include "desktop/accessible_views.h"
#include "desktop/control_view.h"
#include "desktop/form_memory.h"
#include "desktop/form_parts.h"
#include "desktop/grids/grid_view.h"
#include "desktop/grids/inspector_view.h"
#include "desktop/qt_keys.h"
#include "desktop/qt_text.h"
#include "desktop/ribbon_view.h"
#include "desktop/small_views.h"
#include "desktop/theme.h"
#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form.h"

namespace orvane::desktop {

FormView::FormView(TVosBaseForm& form, FormMemory& memory)
    : form_(form), memory_(memory), edit_(*this, *this, form), list_(new ListPopup(*this, form)) {
  setFocusPolicy(Qt::NoFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  Build();
}

FormView::~FormView() = default;

// --- building
// -------------------------------------------------------------------------------------

void FormView::Build() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  title_ = new TitleStrip(form_);
  column->addWidget(title_);
  if (!form_.ribbon.empty()) {
    ribbon_ = new RibbonView(form_);
    column->addWidget(ribbon_);
  }
  auto* body = new QVBoxLayout;
  body->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  body->setSpacing(kMargin);
  AddNode(*body, form_.layout);
  column->addLayout(body, 1);
  status_ = new StatusLine(form_);
  column->addWidget(status_);
}

void FormView::AddNode(QBoxLayout& into, const LayoutNode& node) {
  switch (node.kind) {
    case LayoutKind::Column:
    case LayoutKind::Row: {
      const bool row = node.kind == LayoutKind::Row;
      auto* box = new QBoxLayout(row ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
      box->setSpacing(kMargin);
      for (const LayoutNode& child : node.children)
        AddNode(*box, child);
      into.addLayout(box, node.weight);
      return;
    }
    case LayoutKind::Widget: {
      const bool across = into.direction() == QBoxLayout::LeftToRight;
      QWidget* widget = MakeView(*node.control);
      const bool fixed = widget->sizePolicy().horizontalPolicy() == QSizePolicy::Fixed;
      // What keeps its width stands at the left of a column, in the middle of a row's height.
      into.addWidget(
          widget, node.weight,
          fixed && across ? Qt::AlignVCenter : (fixed ? Qt::AlignLeft : Qt::Alignment()));
      return;
    }
    case LayoutKind::Bar:
      bars_.push_back(new BarView(form_, node.actions));
      into.addWidget(bars_.back(), node.weight, Qt::AlignVCenter);
      return;
    case LayoutKind::Space:
      into.addStretch(node.weight);
      return;
  }
}

QWidget* FormView::MakeView(Control& control) {
  ControlView* view = nullptr;
  switch (control.Kind()) {
    case ControlKind::Grid:
      view = new GridView(static_cast<TVosDBGrid&>(control), memory_);
      break;
    case ControlKind::Inspector:
      view = new InspectorView(static_cast<TVosDataInspector&>(control));
      break;
    case ControlKind::KeyEdit:
      view = new KeyEditView(static_cast<TKeyEdit&>(control));
      break;
    case ControlKind::Label:
      view = new LabelView(static_cast<TLabel&>(control));
      break;
    case ControlKind::PageControl: {
      auto& pages = static_cast<TPageControl&>(control);
      auto* shown = new PageView(pages);
      for (int i = 0; i < static_cast<int>(pages.pages.size()); ++i) {
        Control* content = pages.pages[static_cast<std::size_t>(i)].content;
        shown->SetContent(i, content == nullptr ? nullptr : MakeView(*content));
      }
      view = shown;
      break;
    }
  }
  views_.push_back(view);
  view->Widget().installEventFilter(this);
  return &view->Widget();
}

ControlView* FormView::ViewOf(const Control& control) const {
  const auto found = std::ranges::find_if(
      views_, [&control](const ControlView* view) { return &view->Model() == &control; });
  return found == views_.end() ? nullptr : *found;
}

PageView* FormView::PageOf(const Control& control, int* page) const {
  for (ControlView* view : views_) {
    if (view->Model().Kind() != ControlKind::PageControl) continue;
    const auto& pages = static_cast<const TPageControl&>(view->Model());
    for (std::size_t i = 0; i < pages.pages.size(); ++i) {
      if (pages.pages[i].content != &control) continue;
      *page = static_cast<int>(i);
      return static_cast<PageView*>(&view->Widget());
    }
  }
  return nullptr;
}

// --- following the form
// ---------------------------------------------------------------------------

void FormView::Refresh() {
  refreshAgain_ = true;
  if (refreshing_) return;
  refreshing_ = true;
  while (refreshAgain_) {
    refreshAgain_ = false;
    RefreshOnce();
  }
  refreshing_ = false;
}

void FormView::RefreshOnce() {
  if (windowTitle() != Qs(form_.caption)) setWindowTitle(Qs(form_.caption));
  title_->Look();
  if (ribbon_ != nullptr) ribbon_->Look();
  for (BarView* bar : bars_)
    bar->Look();
  for (ControlView* view : views_) {
    if (view->Look() && view->HasFocus()) AnnouncePlace(*view);
  }
  FollowEditor();
  SettleFocus();
  edit_.HideUnused();
  status_->Look();
  DoWindowRequest();
}

void FormView::FollowEditor() {
  Control* active = form_.ActiveControl();
  ControlView* view = active == nullptr ? nullptr : ViewOf(*active);
  // The layout must be settled before a place in it is asked for.
  if (view != nullptr && active->Editor() != nullptr && layout() != nullptr) layout()->activate();
  edit_.Follow(view);
  const CellEditor* editor = active == nullptr ? nullptr : active->Editor();
  list_->Follow(editor == nullptr ? nullptr : editor->Combo(), edit_.Place());
}

QWidget& FormView::KeyTarget() {
  if (edit_.Current() != nullptr && !edit_.Current()->isHidden()) return *edit_.Current();
  Control* active = form_.ActiveControl();
  ControlView* view = active == nullptr ? nullptr : ViewOf(*active);
  return view == nullptr ? *static_cast<QWidget*>(this) : view->Widget();
}

/// The one place where the keyboard is moved, and only because the form says so.
void FormView::SettleFocus() {
  QWidget& target = KeyTarget();
  if (focusWidget() != &target) target.setFocus(Qt::OtherFocusReason);
}

void FormView::DoWindowRequest() {
  const WindowRequest request = form_.windowRequest;
  form_.windowRequest = WindowRequest::None;
  if (request == WindowRequest::Minimize) showMinimized();
  if (request == WindowRequest::Maximize) isMaximized() ? showNormal() : showMaximized();
  if (request == WindowRequest::ResetPosition) {
    memory_.ForgetPlace(form_.ClassName());
    showNormal();
    TakePlace(nullptr);
  }
  if (form_.stayOnTop == onTop_) return;
  onTop_ = form_.stayOnTop;
  setWindowFlag(Qt::WindowStaysOnTopHint, onTop_);
  show();
}

// --- place
// ----------------------------------------------------------------------------------------

void FormView::TakePlace(const QWidget* owner) {
  const QRect screen = (owner == nullptr ? this : owner)->screen()->availableGeometry();
  if (const std::optional<QRect> kept = memory_.Place(form_.ClassName())) {
    setGeometry(*kept & screen);
    return;
  }
  const auto count = [this](ControlKind kind) {
    return std::ranges::count(views_, kind,
                              [](const ControlView* view) { return view->Model().Kind(); });
  };
  const bool document = count(ControlKind::PageControl) > 0 || count(ControlKind::Inspector) > 1;
  layout()->activate();
  constexpr int kLeastWidth = 560;
  QSize size = sizeHint().expandedTo(QSize(kLeastWidth, 0));
  if (ribbon_ != nullptr) size.setWidth(std::max(size.width(), ribbon_->sizeHint().width()));
  size = (document ? screen.size() : size).boundedTo(screen.size());
  resize(size);
  QRect place(QPoint(), size);
  place.moveCenter(owner == nullptr ? screen.center() : owner->geometry().center());
  if (place.right() > screen.right()) place.moveRight(screen.right());
  if (place.bottom() > screen.bottom()) place.moveBottom(screen.bottom());
  move(std::max(place.left(), screen.left()), std::max(place.top(), screen.top()));
  if (document) setWindowState(windowState() | Qt::WindowMaximized);
}

void FormView::KeepPlace() {
  if (!isVisible() || isMaximized() || isMinimized()) return;
  memory_.KeepPlace(form_.ClassName(), geometry());
}

void FormView::resizeEvent(QResizeEvent*) {
  FollowEditor();
}

void FormView::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ColorOf(Role::Window));
}

void FormView::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!form_.IsClosed()) form_.Dispatch(CloseWanted());
}

// --- keys
// -----------------------------------------------------------------------------------------

bool FormView::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      // Nobody else may take a key as his shortcut: the form decides whose it is.
      event->accept();
      return true;
    case QEvent::KeyPress:
      return TakeKey(static_cast<const QKeyEvent&>(*event));
    case QEvent::InputMethod: {
      const QString text = static_cast<const QInputMethodEvent*>(event)->commitString();
      if (watched == edit_.Current() || text.isEmpty()) return false;
      form_.Dispatch(TextTyped{Utf8(text)});
      return true;
    }
    default:
      return false;
  }
}

void FormView::keyPressEvent(QKeyEvent* event) {
  TakeKey(*event);
}

bool FormView::TakeKey(const QKeyEvent& event) {
  if (edit_.IsForEditor(event)) return false;
  const KeyStroke key = StrokeOf(event);
  const bool menuKey = event.key() == Qt::Key_Menu || key == Shift(KeyCode::F10);
  if (menuKey && form_.LiveActionFor(key) == nullptr) {
    title_->OpenMenu(ribbon_ == nullptr ? std::vector<std::string>() : ribbon_->FoldedActions());
    return true;
  }
  const bool editing = edit_.Current() != nullptr;
  if (editing && key == Ctrl(KeyCode::Enter) && edit_.TypeLineEnd()) return true;
  if (!editing && form_.LiveActionFor(key) == nullptr && CopyOrPaste(event)) return true;
  const std::string text = TypedBy(event);
  if (!text.empty())
    form_.Dispatch(TextTyped{text});
  else if (!key.IsNone())
    form_.Dispatch(KeyPressed{key});
  return true;
}

/// Without an open editor the clipboard works on the current place as a whole.
bool FormView::CopyOrPaste(const QKeyEvent& event) {
  const KeyStroke key = StrokeOf(event);
  Control* active = form_.ActiveControl();
  const ControlView* view = active == nullptr ? nullptr : ViewOf(*active);
  if (view == nullptr) return false;
  if (key == Ctrl(KeyCode::C) || key == Ctrl(KeyCode::Insert)) {
    QApplication::clipboard()->setText(view->CurrentText());
    return true;
  }
  if (key != Ctrl(KeyCode::V) && key != Shift(KeyCode::Insert)) return false;
  const QString text = QApplication::clipboard()->text().section('\n', 0, 0).trimmed();
  if (!text.isEmpty()) form_.Dispatch(TextTyped{Utf8(text)});
  return true;
}

/// Tab belongs to the form.
bool FormView::focusNextPrevChild(bool) {
  return false;
}

}  // namespace orvane::desktop
