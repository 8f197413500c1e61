#pragma once

// What the window does while a call to a distant server is on its way: it paints, shows that it
// waits and since when, and hears Escape. What is typed meanwhile is kept and comes afterwards.

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <memory>
#include <vector>

class QEvent;
class QLabel;
class QWidget;

namespace orvane {

class WaitPump final : public QObject {
 public:
  WaitPump();
  ~WaitPump() override;

  /// To be called again and again by whoever waits. False once Escape was pressed.
  bool Pump();
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
  void Tell();

  QElapsedTimer sinceBegin_;
  QElapsedTimer sincePump_;
  QTimer quiet_;
  std::vector<Kept> kept_;
  QPointer<QLabel> sign_;
  bool waiting_ = false;
  bool escaped_ = false;
};

}  // namespace orvane
