#pragma once

// What the window does while a call to a distant server is on its way or long work is done here: it
// paints, shows what it waits for, and hears Escape. What is typed meanwhile is kept and comes
// afterwards.

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <memory>
#include <vector>

#include "packet/floors.h"

class QEvent;
class QLabel;
class QWidget;

namespace orvane::desktop {

class WaitPump final : public QObject {
 public:
  WaitPump();
  ~WaitPump() override;

  /// To be called again and again by whoever waits. False once Escape was pressed. After a second
  /// the window shows `saying`; without one, that and how long the server is waited for.
  bool Pump(const QString& saying = {});
  /// The waiting is over; without this, it is when nobody has pumped for a while.
  void End();
  /// A call is on its way; timers of the program keep still.
  bool IsWaiting() const { return waiting_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Kept {
    QPointer<QObject> target;
    std::unique_ptr<QEvent> event;
  };

  void Begin();
  void EndWhenQuiet();
  void Tell(const QString& saying);

  QElapsedTimer sinceBegin_;
  QElapsedTimer sincePump_;
  QTimer quiet_;
  std::vector<Kept> kept_;
  QPointer<QLabel> sign_;
  bool waiting_ = false;
  bool escaped_ = false;
};

}  // namespace orvane::desktop
