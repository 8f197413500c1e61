// What the windows do beside showing forms: waiting for a distant server, speaking to screen
// readers.

#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>

#include "desktop/screen.h"
#include "desktop/wait_pump.h"

namespace orvane::desktop {
namespace {

using sample::Screen;

void PostKey(QWidget& widget, int key, const QString& text) {
  QApplication::postEvent(&widget, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
}

/// Works until the pump has noticed that the call is over.
void LetTheCallEnd(const WaitPump& pump) {
  QElapsedTimer since;
  since.start();
  constexpr int kLongestMs = 5000;
  while (pump.IsWaiting() && since.elapsed() < kLongestMs)
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  QApplication::processEvents();
}

TEST(DesktopWait, WhatIsTypedMeanwhileComesAfterwards) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 7);
  WaitPump pump;
  EXPECT_TRUE(pump.Pump());
  PostKey(screen.View().KeyTarget(), Qt::Key_7, "7");
  EXPECT_TRUE(pump.Pump());
  EXPECT_EQ(screen.EditorText(), "(none)");
  EXPECT_NE(QApplication::overrideCursor(), nullptr);
  LetTheCallEnd(pump);
  EXPECT_FALSE(pump.IsWaiting());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(screen.EditorText(), "7");
}

TEST(DesktopWait, EscapeStopsTheCallAndNothingElse) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 7);
  screen.Type("5");
  WaitPump pump;
  EXPECT_TRUE(pump.Pump());
  PostKey(*screen.Line(), Qt::Key_Escape, {});
  EXPECT_FALSE(pump.Pump());
  LetTheCallEnd(pump);
  EXPECT_EQ(screen.EditorText(), "5");
  EXPECT_TRUE(pump.Pump());  // the next call begins anew
  LetTheCallEnd(pump);
}

TEST(DesktopWait, AWindowIsNotClosedUnderACall) {
  Screen screen;
  WaitPump pump;
  EXPECT_TRUE(pump.Pump());
  screen.View().close();
  EXPECT_FALSE(screen.form->IsClosed());
  LetTheCallEnd(pump);
}

TEST(DesktopAccessible, ViewsAreFocusableAndTellPlaceAndValue) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 3, 6);
  QAccessibleInterface* rows =
      QAccessible::queryAccessibleInterface(&screen.View().ViewOf(screen.form->gRows)->Widget());
  ASSERT_NE(rows, nullptr);
  EXPECT_TRUE(rows->state().focusable);
  EXPECT_TRUE(rows->state().focused);
  EXPECT_EQ(Utf8(rows->text(QAccessible::Name)), "Мярка - Име");
  EXPECT_EQ(Utf8(rows->text(QAccessible::Value)), "дузина");
  const QAccessibleInterface* head =
      QAccessible::queryAccessibleInterface(&screen.View().ViewOf(screen.form->diMain)->Widget());
  EXPECT_FALSE(head->state().focused);
}

}  // namespace
}  // namespace orvane::desktop
