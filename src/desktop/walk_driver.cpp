#include "desktop/walk_driver.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "desktop/control_view.h"
#include "desktop/form_view.h"
#include "desktop/message_view.h"
#include "desktop/qt_keys.h"
#include "desktop/qt_text.h"
#include "desktop/qt_toolkit.h"
#include "desktop/reports/report_preview.h"
#include "desktop/ribbon_view.h"
#include "desktop/small_views.h"
#include "desktop/theme.h"
#include "host/controls/small_controls.h"

namespace orvane::desktop {
namespace {

void Send(QWidget& widget, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
          const QString& text) {
  QKeyEvent event(type, key, modifiers, text);
  QApplication::sendEvent(&widget, &event);
}

/// The next code point of UTF-8 at `at`.
std::string_view NextCharacter(std::string_view text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    ++end;
  return text.substr(at, end - at);
}

void SendMouse(QWidget& widget, QEvent::Type type, const QPoint& at) {
  const bool released = type == QEvent::MouseButtonRelease;
  QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton,
                    released ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

/// Everything that is on the screen: the form at the bottom and what stands over it.
QPixmap PictureOf(const std::vector<QWidget*>& windows) {
  QRect all;
  for (const QWidget* window : windows)
    all |= QRect(window->pos(), window->size());
  QPixmap picture(all.size());
  picture.fill(ColorOf(Role::Bar));
  QPainter painter(&picture);
  for (QWidget* window : windows) {
    const QPoint at = window->pos() - all.topLeft();
    painter.drawPixmap(at, window->grab());
    painter.setPen(ColorOf(Role::Strip));
    painter.drawRect(QRect(at, window->size()).adjusted(0, 0, -1, -1));
  }
  return picture;
}

}  // namespace

// --- events
// ---------------------------------------------------------------------------------------

void PressKey(QWidget& widget, KeyStroke key) {
  Qt::KeyboardModifiers modifiers;
  if ((key.modifiers & ShiftKey) != 0) modifiers |= Qt::ShiftModifier;
  if ((key.modifiers & CtrlKey) != 0) modifiers |= Qt::ControlModifier;
  if ((key.modifiers & AltKey) != 0) modifiers |= Qt::AltModifier;
  const bool blank = key == KeyStroke(KeyCode::Space);
  const QString text = blank ? QString(" ") : QString();
  const QPointer<QWidget> target = &widget;
  const int qtKey = QtKeyOf(key);
  Send(widget, QEvent::ShortcutOverride, qtKey, modifiers, text);
  if (target) Send(widget, QEvent::KeyPress, qtKey, modifiers, text);
  if (target) Send(widget, QEvent::KeyRelease, qtKey, modifiers, text);
}

void TypeKeys(QWidget& widget, std::string_view character) {
  const QString text = Qs(character);
  const int key = text.size() == 1 && text[0].unicode() < 0x80 ? text[0].toUpper().unicode() : 0;
  const QPointer<QWidget> target = &widget;
  Send(widget, QEvent::ShortcutOverride, key, Qt::NoModifier, text);
  if (target) Send(widget, QEvent::KeyPress, key, Qt::NoModifier, text);
  if (target) Send(widget, QEvent::KeyRelease, key, Qt::NoModifier, text);
}

void Click(QWidget& widget, const QRect& place, bool twice) {
  const QPoint at = place.center();
  const QPointer<QWidget> target = &widget;
  SendMouse(widget, QEvent::MouseButtonPress, at);
  if (target) SendMouse(widget, QEvent::MouseButtonRelease, at);
  if (!twice || !target) return;
  SendMouse(widget, QEvent::MouseButtonDblClick, at);
  if (target) SendMouse(widget, QEvent::MouseButtonRelease, at);
}

// --- going
// ----------------------------------------------------------------------------------------

QtWalkDriver::QtWalkDriver(QtToolkit& toolkit, QString pictures)
    : toolkit_(toolkit), pictures_(std::move(pictures)) {
  timer_.setSingleShot(true);
  timer_.setInterval(0);
  QObject::connect(&timer_, &QTimer::timeout, [this] { Step(); });
  toolkit_.onMessage = [this](const MessageDialog& dialog) {
    if (!dialog.yesNo) messages_.push_back(dialog);
  };
  toolkit_.onReport = [this](TakenReport report) {
    reports_.push_back(report);
    previewed_ = std::move(report);
  };
}

QtWalkDriver::~QtWalkDriver() {
  toolkit_.onMessage = nullptr;
  toolkit_.onReport = nullptr;
}

std::string QtWalkDriver::Go(WalkRunner& runner) {
  runner_ = &runner;
  timer_.start();
  toolkit_.WorkUntil([&runner] { return runner.IsOver(); });
  timer_.stop();
  toolkit_.Abandon();  // a walk without steps has not done so
  runner.Finish();
  runner_ = nullptr;
  return runner.FailureText().value_or("");
}

/// The next step is due before this one begins: a step that opens a dialog returns only when the
/// walk has closed it again.
void QtWalkDriver::Step() {
  if (runner_ == nullptr) return;
  // Dialogs that the walk's end left open must not keep their callers waiting.
  if (runner_->IsOver()) return toolkit_.Abandon();
  timer_.start();
  if (toolkit_.IsReturning()) return;
  MessageView* message = toolkit_.OpenMessage();
  if (message != nullptr && !message->Dialog().yesNo) {
    PressKey(*message, KeyCode::Enter);
    return;
  }
  runner_->RunNext();
}

// --- the driver
// -----------------------------------------------------------------------------------

IToolkit& QtWalkDriver::Toolkit() {
  return toolkit_;
}

TVosBaseForm* QtWalkDriver::ActiveForm(VosApplication& app) {
  const FormView* view = toolkit_.TopView(app);
  return view == nullptr ? nullptr : &view->Form();
}

FormView* QtWalkDriver::Window(TVosBaseForm& form) {
  FormView* view = toolkit_.ViewOf(form);
  const std::vector<FormView*> shown = toolkit_.ShownViews();
  // Another session's window may stand before it.
  if (view != nullptr && !shown.empty() && shown.back() != view) toolkit_.Raise(*view);
  return view;
}

void QtWalkDriver::Press(TVosBaseForm& form, KeyStroke key) {
  if (FormView* view = Window(form)) PressKey(view->KeyTarget(), key);
}

void QtWalkDriver::TypeText(TVosBaseForm& form, std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view character = NextCharacter(text, at);
    at += character.size();
    // The first character may open an editor that takes the others.
    if (FormView* view = Window(form)) TypeKeys(view->KeyTarget(), character);
  }
}

void QtWalkDriver::ShowPageOf(FormView& view, Control& control) {
  int page = 0;
  PageView* pages = view.PageOf(control, &page);
  const ControlView* shown = view.ViewOf(control);
  if (pages == nullptr || shown == nullptr) return;
  if (static_cast<TPageControl&>(pages->Model()).active != page)
    Click(*pages, pages->TabRect(page));
}

void QtWalkDriver::PointAt(TVosBaseForm& form, Control& control, int row, int column) {
  FormView* view = Window(form);
  if (view == nullptr) return;
  ShowPageOf(*view, control);
  ControlView* shown = view->ViewOf(control);
  if (shown == nullptr) return;
  const QRect place = shown->BringIntoSight(row, column);
  if (!place.isEmpty()) Click(shown->Surface(), place);
}

void QtWalkDriver::Choose(TVosBaseForm& form, std::string_view action) {
  FormView* view = Window(form);
  if (view == nullptr) return;
  const std::string name(action);
  const QRect place = view->Ribbon() == nullptr ? QRect() : view->Ribbon()->ActionRect(name);
  if (!place.isEmpty()) return Click(*view->Ribbon(), place);
  // In a menu or on a bar: what a click there comes to.
  form.Dispatch(ActionChosen{name});
}

const MessageDialog* QtWalkDriver::Question() const {
  const MessageView* message = toolkit_.OpenMessage();
  return message == nullptr || !message->Dialog().yesNo ? nullptr : &message->Dialog();
}

void QtWalkDriver::AnswerQuestion(int answer) {
  MessageView* message = toolkit_.OpenMessage();
  if (message == nullptr) return;
  if (answer == kAnswerBack) return PressKey(message->KeyTarget(), KeyCode::Escape);
  // Letters answer once the line is left.
  if (&message->KeyTarget() != message) PressKey(message->KeyTarget(), KeyCode::Enter);
  TypeKeys(message->KeyTarget(), answer == kAnswerYes ? "д" : "н");
}

std::optional<std::string> QtWalkDriver::LineText() const {
  const MessageView* message = toolkit_.OpenMessage();
  if (message == nullptr || !message->HasLine()) return std::nullopt;
  return Utf8(message->LineText());
}

void QtWalkDriver::FillLine(std::string_view text) {
  MessageView* message = toolkit_.OpenMessage();
  if (message == nullptr || !message->HasLine()) return;
  if (&message->KeyTarget() == message) PressKey(*message, KeyCode::Up);
  PressKey(message->KeyTarget(), Ctrl(KeyCode::A));
  PressKey(message->KeyTarget(), KeyCode::Delete);
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view character = NextCharacter(text, at);
    at += character.size();
    TypeKeys(message->KeyTarget(), character);
  }
}

std::vector<MessageDialog> QtWalkDriver::TakeMessages() {
  return std::exchange(messages_, {});
}

std::vector<TakenReport> QtWalkDriver::TakeReports() {
  return std::exchange(reports_, {});
}

/// The last window that is no dialog, of the session in use, and what stands over it.
std::vector<QWidget*> QtWalkDriver::WindowsInSight() const {
  std::vector<QWidget*> windows;
  const std::vector<FormView*> shown = toolkit_.ShownViews();
  for (auto view = shown.rbegin(); view != shown.rend(); ++view) {
    if (&(*view)->Form().App() != &shown.back()->Form().App()) continue;
    windows.insert(windows.begin(), *view);
    if (!(*view)->isModal()) break;
  }
  if (MessageView* message = toolkit_.OpenMessage()) windows.push_back(message);
  return windows;
}

void QtWalkDriver::Picture(std::string_view name) {
  if (pictures_.isEmpty()) return;
  std::vector<QWidget*> windows = WindowsInSight();
  if (windows.empty()) return;
  std::unique_ptr<ReportPreview> preview;
  if (previewed_ != nullptr) {
    preview = std::make_unique<ReportPreview>(ReportPages::Plan(previewed_));
    windows.push_back(preview.get());
    previewed_.reset();
  }
  const QString file = QString("%1-%2.png")
                           .arg(static_cast<int>(taken_.size()) + 1, 3, 10, QChar('0'))
                           .arg(Qs(name));
  if (PictureOf(windows).save(pictures_ + "/" + file)) taken_.push_back(Utf8(file));
}

}  // namespace orvane::desktop
