#include "desktop/qt_toolkit.h"

#include <QtCore/QEventLoop>
#include <QtGui/QClipboard>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <set>

#include "desktop/accessible_views.h"
#include "desktop/form_memory.h"
#include "desktop/form_view.h"
#include "desktop/long_work.h"
#include "desktop/message_view.h"
#include "desktop/qt_text.h"
#include "desktop/reports/report_preview.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

/// Over whatever is open now: window managers keep it there.
void StandOver(QWidget& dialog, const QWidget* owner) {
  dialog.winId();  // makes the native window
  if (owner != nullptr) dialog.windowHandle()->setTransientParent(owner->windowHandle());
}

}  // namespace

QtToolkit::QtToolkit(std::unique_ptr<FormMemory> memory) : memory_(std::move(memory)) {
  InstallAccessibleViews();
  freeTimer_.setSingleShot(true);
  freeTimer_.setInterval(0);
  QObject::connect(&freeTimer_, &QTimer::timeout, [this] { FreeClosed(); });
}

QtToolkit::~QtToolkit() = default;

// --- forms
// ----------------------------------------------------------------------------------------

FormView& QtToolkit::MakeView(TVosBaseForm& form, bool modal) {
  const QWidget* owner = OwnerOf(form);
  views_.push_back(std::make_unique<FormView>(form, *memory_));
  FormView& view = *views_.back();
  if (modal) {
    view.setWindowFlag(Qt::Dialog);
    view.setWindowModality(Qt::ApplicationModal);
    StandOver(view, owner);
  }
  form.BeShown();
  if (form.IsClosed() || ViewOf(form) == nullptr) return view;
  view.Refresh();
  view.TakePlace(modal ? owner : nullptr);
  view.show();
  Raise(view);
  return view;
}

void QtToolkit::Raise(FormView& view) {
  const auto place =
      std::ranges::find_if(views_, [&view](const auto& other) { return other.get() == &view; });
  std::rotate(place, place + 1, views_.end());
  if (view.isMinimized()) view.showNormal();
  view.raise();
  view.activateWindow();
}

void QtToolkit::Show(TVosBaseForm& form) {
  FormView* view = ViewOf(form);
  if (view == nullptr) {
    MakeView(form, false);
    return;
  }
  Raise(*view);
  view->Refresh();
}

void QtToolkit::ShowModal(TVosBaseForm& form) {
  if (abandoned_) return;
  MakeView(form, true);
  WorkUntil([&form] { return form.IsClosed(); });
  if (FormView* view = ViewOf(form)) view->hide();
}

void QtToolkit::RunUntilClosed(TVosBaseForm& form) {
  Show(form);
  WorkUntil([&form] { return form.IsClosed(); });
}

void QtToolkit::FormChanged(TVosBaseForm& form) {
  FormView* view = ViewOf(form);
  if (view == nullptr) return;
  if (!form.IsClosed()) return view->Refresh();
  if (view->isHidden()) return freeTimer_.start();
  view->KeepPlace();
  view->hide();
  if (QWidget* next = TopWindow()) next->activateWindow();
  freeTimer_.start();
}

void QtToolkit::FormGone(TVosBaseForm& form) {
  std::erase_if(views_, [&form](const auto& view) { return &view->Form() == &form; });
}

/// Between events nothing of a closed form is on the stack any more.
void QtToolkit::FreeClosed() {
  std::set<VosApplication*> apps;
  bool busy = false;
  for (const auto& view : views_) {
    if (!view->Form().IsClosed()) continue;
    apps.insert(&view->Form().App());
    busy = busy || view->Form().IsBusy();
  }
  for (VosApplication* app : apps)
    app->FreeClosedForms();
  constexpr int kAgainMs = 50;
  if (busy) QTimer::singleShot(kAgainMs, &freeTimer_, [this] { freeTimer_.start(); });
}

FormView* QtToolkit::ViewOf(const TVosBaseForm& form) const {
  const auto found =
      std::ranges::find_if(views_, [&form](const auto& view) { return &view->Form() == &form; });
  return found == views_.end() ? nullptr : found->get();
}

std::vector<FormView*> QtToolkit::ShownViews() const {
  std::vector<FormView*> shown;
  for (const auto& view : views_) {
    if (!view->isHidden()) shown.push_back(view.get());
  }
  return shown;
}

FormView* QtToolkit::TopView(const VosApplication& app) const {
  for (auto view = views_.rbegin(); view != views_.rend(); ++view) {
    if (&(*view)->Form().App() == &app && !(*view)->Form().IsClosed()) return view->get();
  }
  return nullptr;
}

QWidget* QtToolkit::TopWindow() const {
  const std::vector<FormView*> shown = ShownViews();
  return shown.empty() ? nullptr : shown.back();
}

QWidget* QtToolkit::OwnerOf(const TVosBaseForm& form) const {
  const TVosBaseForm* opener = form.Identity().opener;
  QWidget* window = opener == nullptr ? nullptr : ViewOf(*opener);
  return window != nullptr && !window->isHidden() ? window : TopWindow();
}

// --- loops
// ----------------------------------------------------------------------------------------

void QtToolkit::WorkUntil(const std::function<bool()>& done) {
  waits_.push_back(&done);
  QEventLoop loop;
  while (!done() && !abandoned_)
    loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  waits_.pop_back();
}

bool QtToolkit::IsReturning() const {
  return abandoned_ || (!waits_.empty() && (*waits_.back())());
}

void QtToolkit::Abandon() {
  abandoned_ = true;
}

// --- messages
// -------------------------------------------------------------------------------------

MessageView* QtToolkit::OpenMessage() const {
  return messages_.empty() || messages_.back()->IsAnswered() ? nullptr : messages_.back().get();
}

int QtToolkit::ShowMessage(TVosBaseForm* owner, const MessageDialog& dialog) {
  return Ask(owner, dialog, nullptr);
}

int QtToolkit::AskLine(TVosBaseForm* owner, const MessageDialog& question, QuestionLine& line) {
  return Ask(owner, question, &line);
}

int QtToolkit::Ask(const TVosBaseForm* owner, const MessageDialog& dialog, QuestionLine* line) {
  if (onMessage) onMessage(dialog);
  if (abandoned_) return HarmlessAnswer(dialog);
  messages_.push_back(std::make_unique<MessageView>(dialog, line));
  MessageView& message = *messages_.back();
  const QWidget* over = owner == nullptr ? nullptr : ViewOf(*owner);
  if (over == nullptr || over->isHidden()) over = TopWindow();
  StandOver(message, over);
  const QScreen* screen = over == nullptr ? QApplication::primaryScreen() : over->screen();
  QRect place(QPoint(), message.sizeHint());
  place.moveCenter(over == nullptr ? screen->availableGeometry().center()
                                   : over->geometry().center());
  message.setGeometry(place);
  message.show();
  message.raise();
  message.activateWindow();
  message.TakeFocus();
  WorkUntil([&message] { return message.IsAnswered(); });
  message.Finish(message.HarmlessAnswer());
  const int answer = message.Answer();
  if (line != nullptr) line->text = Utf8(message.LineText());
  // The dialog's own key handler may still be on the stack.
  messages_.back().release()->deleteLater();
  messages_.pop_back();
  return answer;
}

std::unique_ptr<const ReportPages> QtToolkit::PagesOf(TVosBaseForm& owner, ReportDocument report) {
  LongWork work("Подготвя се справката");
  Answer<TakenReport> taken = ReportSnapshot::Take(std::move(report), work.Progress());
  if (taken && onReport) {
    onReport(*std::move(taken));
    return nullptr;
  }
  std::unique_ptr<const ReportPages> pages;
  if (taken) pages = ReportPages::Plan(*taken, work.Progress());
  if (pages != nullptr) return pages;
  const std::string why = taken ? "Справката е спряна." : taken.GetFailure().message;
  ShowMessage(&owner, {.kind = 1, .caption = owner.caption, .text = why});
  return nullptr;
}

void QtToolkit::PreviewReport(TVosBaseForm& owner, ReportDocument report) {
  std::unique_ptr<const ReportPages> pages = PagesOf(owner, std::move(report));
  if (pages == nullptr) return;
  auto preview = std::make_unique<ReportPreview>(std::move(pages));
  StandOver(*preview, ViewOf(owner));
  preview->setWindowModality(Qt::ApplicationModal);
  preview->show();
  preview->activateWindow();
  WorkUntil([&preview] { return preview->isHidden(); });
}

void QtToolkit::SetClipboard(const std::string& text) {
  QApplication::clipboard()->setText(Qs(text));
}

}  // namespace orvane::desktop
