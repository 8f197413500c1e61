#include "desktop/wait_pump.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

#include "desktop/theme.h"

namespace orvane::desktop {
namespace {

constexpr int kQuietMs = 60;       // no pump for so long: the call is over
constexpr int kSignAfterMs = 900;  // with the tenth of a second before the first pump: one second

}  // namespace

WaitPump::WaitPump() {
  quiet_.setInterval(kQuietMs);
  QObject::connect(&quiet_, &QTimer::timeout, this, [this] { EndWhenQuiet(); });
}

WaitPump::~WaitPump() {
  if (waiting_) QApplication::restoreOverrideCursor();
}

void WaitPump::Begin() {
  waiting_ = true;
  escaped_ = false;
  sinceBegin_.start();
  QApplication::setOverrideCursor(Qt::BusyCursor);
  QCoreApplication::instance()->installEventFilter(this);
  quiet_.start();
}

bool WaitPump::Pump(const QString& saying) {
  if (!waiting_) Begin();
  sincePump_.start();
  if (sinceBegin_.elapsed() > kSignAfterMs) Tell(saying);
  QCoreApplication::processEvents();
  sincePump_.start();
  return !escaped_;
}

/// Says that the program waits, for what, and how to stop it.
void WaitPump::Tell(const QString& saying) {
  QWidget* window = QApplication::activeWindow();
  if (sign_ == nullptr) {
    if (window == nullptr) return;
    sign_ = new QLabel(window);
    sign_->setAutoFillBackground(true);
    sign_->setFont(ScreenFont(true));
    sign_->setMargin(kMargin);
    QPalette palette = sign_->palette();
    palette.setColor(QPalette::Window, ColorOf(Role::ChipGround));
    palette.setColor(QPalette::WindowText, ColorOf(Role::ChipText));
    sign_->setPalette(palette);
  }
  sign_->setText(saying.isEmpty()
                     ? QString("Чака се отговор от сървъра: %1 с. Escape спира чакането.")
                           .arg(sinceBegin_.elapsed() / 1000 + 1)
                     : saying);
  sign_->adjustSize();
  sign_->move((sign_->parentWidget()->width() - sign_->width()) / 2, 2 * kMargin);
  sign_->show();
  sign_->raise();
}

void WaitPump::EndWhenQuiet() {
  if (sincePump_.elapsed() >= kQuietMs) End();
}

void WaitPump::End() {
  if (!waiting_) return;
  quiet_.stop();
  waiting_ = false;
  QCoreApplication::instance()->removeEventFilter(this);
  QApplication::restoreOverrideCursor();
  if (sign_ != nullptr) sign_->deleteLater();
  std::vector<Kept> kept;
  kept.swap(kept_);
  for (Kept& one : kept) {
    if (one.target) QCoreApplication::postEvent(one.target, one.event.release());
  }
}

bool WaitPump::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress: {
      // Windows see a key before their widgets do; it is kept for the widget only.
      if (!watched->isWidgetType()) return false;
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Escape)
        escaped_ = true;
      else
        kept_.push_back({watched, std::unique_ptr<QEvent>(key->clone())});
      return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
      return watched->isWidgetType();
    case QEvent::Close:
      event->ignore();
      return true;
    default:
      return false;
  }
}

}  // namespace orvane::desktop
