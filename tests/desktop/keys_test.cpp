// Keys as Qt delivers them: which are the editor's, which the actions', which the model's.

#include "desktop/qt_keys.h"

#include <gtest/gtest.h>

#include <QtGui/QClipboard>
#include <QtGui/QKeyEvent>

#include "desktop/screen.h"

namespace orvane::desktop {
namespace {

using sample::Screen;

TEST(DesktopKeys, LettersAreTheirLatinPlaceInEveryLayout) {
  struct Row {
    int key;
    quint32 scan;
    Qt::KeyboardModifiers modifiers;
    KeyStroke stroke;
  };
  const Row rows[] = {
      {Qt::Key_U, 0, Qt::ControlModifier, Ctrl(KeyCode::U)},
      {0x0423 /* У */, 30, Qt::ControlModifier, Ctrl(KeyCode::U)},
      {0x042F /* Я */, 24, Qt::ControlModifier, Ctrl(KeyCode::Q)},
      {0x0417 /* З */, 52, Qt::ControlModifier, Ctrl(KeyCode::Z)},
      {0x0427 /* Ч */, 49, Qt::ControlModifier, Ctrl(KeyCode::BackQuote)},
      {Qt::Key_Backtab, 23, Qt::ShiftModifier, Shift(KeyCode::Tab)},
      {Qt::Key_Enter, 0, Qt::KeypadModifier, KeyCode::Enter},
      {Qt::Key_T, 0, Qt::ControlModifier | Qt::AltModifier, CtrlAlt(KeyCode::T)},
      {Qt::Key_F4, 70, Qt::AltModifier, Alt(KeyCode::F4)},
      {Qt::Key_Control, 37, Qt::ControlModifier, {KeyCode::None, CtrlKey}},
  };
  for (const Row& row : rows) {
    const QKeyEvent event(QEvent::KeyPress, row.key, row.modifiers, row.scan, 0, 0);
    EXPECT_EQ(KeyText(StrokeOf(event)), KeyText(row.stroke)) << row.key << " at " << row.scan;
  }
}

TEST(DesktopKeys, EveryKeyOfTheModelCanBePressed) {
  for (int code = 1; code <= static_cast<int>(KeyCode::BackQuote); ++code) {
    const KeyStroke key(static_cast<KeyCode>(code));
    const QKeyEvent event(QEvent::KeyPress, QtKeyOf(key), Qt::NoModifier);
    EXPECT_EQ(StrokeOf(event), key) << KeyText(key);
  }
}

TEST(DesktopKeys, TypingOpensTheEditorAndEnterTakesIt) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 1, 7);
  EXPECT_EQ(screen.EditorText(), "(none)");
  screen.Type("12,5");
  EXPECT_EQ(screen.EditorText(), "12,5");
  EXPECT_EQ(QApplication::focusWidget(), screen.Line());
  screen.Press(KeyCode::Enter);
  EXPECT_EQ(screen.EditorText(), "(none)");
  EXPECT_EQ(*screen.form->cdsRows_.FieldByName("Quantity").AsDecimal(), *Decimal::Parse("12,5"));
  EXPECT_EQ(screen.form->gRows.CurrentColumn(), 8);
}

TEST(DesktopKeys, AKeyEditIsTypedIntoLikeACell) {
  Screen screen;
  std::string closed;
  screen.form->eVersion.OnEditClosed = [&closed](const std::string& text) { closed = text; };
  screen.PointAt(screen.form->eVersion, 0, 0);
  screen.Type("417");
  EXPECT_EQ(screen.EditorText(), "417");
  screen.Press(KeyCode::Home);
  screen.Press(KeyCode::Delete);
  screen.Press(KeyCode::Enter);
  EXPECT_EQ(closed, "17");
  EXPECT_EQ(screen.EditorText(), "(none)");
  screen.Type("5");
  screen.Press(KeyCode::Escape);
  EXPECT_EQ(screen.form->eVersion.Text(), "17");
}

TEST(DesktopKeys, AnActionsKeyReachesItThroughAnOpenEditor) {
  struct Row {
    int column;
    KeyStroke key;
    std::string action;
  };
  const Row rows[] = {
      {7, Ctrl(KeyCode::Z), "acCancel"},
      {7, Ctrl(KeyCode::U), "acUnFinish"},
      {7, KeyCode::F7, "acPrint"},
      {5, KeyCode::F2, "acSearch"},
  };
  for (const Row& row : rows) {
    Screen screen;
    screen.PointAt(screen.form->gRows, 0, row.column);
    screen.Type("1");
    ASSERT_NE(screen.Line(), nullptr);
    screen.form->executed.clear();
    screen.Press(row.key);
    EXPECT_EQ(screen.form->executed, std::vector{row.action}) << KeyText(row.key);
  }
}

TEST(DesktopKeys, AnOpenEditorKeepsItsOwnKeys) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 1);
  screen.Press(KeyCode::F2);
  ASSERT_EQ(screen.EditorText(), "20045");
  const auto step = [&](KeyStroke key, const std::string& text, int caret) {
    screen.Press(key);
    EXPECT_EQ(screen.EditorText(), text) << KeyText(key);
    EXPECT_EQ(screen.Line()->cursorPosition(), caret) << KeyText(key);
    EXPECT_EQ(screen.form->gRows.CurrentColumn(), 1) << KeyText(key);
  };
  step(KeyCode::Left, "20045", 4);
  step(KeyCode::Home, "20045", 0);
  step(KeyCode::Delete, "0045", 0);
  step(KeyCode::End, "0045", 4);
  step(KeyCode::Backspace, "004", 3);
  step(Ctrl(KeyCode::A), "004", 3);
  step(Ctrl(KeyCode::X), "", 0);
  step(Ctrl(KeyCode::V), "004", 3);
  EXPECT_EQ(screen.form->gRows.Editor()->Text(), "004");
  screen.Press(KeyCode::Down);  // leaves the row and with it the editor
  EXPECT_EQ(screen.EditorText(), "(none)");
  EXPECT_EQ(screen.form->cdsRows_.RecNo(), 1U);
}

TEST(DesktopKeys, ANumberKeepsWhatIsTypedAtTheCaret) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 1);
  screen.Press(KeyCode::F2);
  screen.Press(KeyCode::Home);
  screen.Press(KeyCode::Right);
  screen.Type("щ");
  EXPECT_EQ(screen.EditorText(), "2щ0045");
  EXPECT_EQ(screen.Line()->cursorPosition(), 2);
  QApplication::clipboard()->setText(Qs("1\u00A0250,50\r\n"));
  screen.Press(Ctrl(KeyCode::A));
  screen.Press(Ctrl(KeyCode::V));
  EXPECT_EQ(screen.EditorText(), "1\u00A0250,50") << "what is pasted stays, its line end goes";
}

TEST(DesktopKeys, SeveralLinesAreTypedWithCtrlEnter) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 1, 9);
  screen.Type("едно");
  ASSERT_NE(screen.Lines(), nullptr);
  screen.Press(Ctrl(KeyCode::Enter));
  screen.Type("две");
  screen.Press(KeyCode::Up);
  screen.Press(KeyCode::End);
  screen.Type("!");
  EXPECT_EQ(screen.form->cdsRows_.RecNo(), 1U);
  screen.Press(KeyCode::Enter);
  EXPECT_EQ(screen.form->cdsRows_.TextAt(1, screen.form->cdsRows_.FieldByName("Remarks")),
            "едно!\nдве");
}

TEST(DesktopKeys, TheListOpensUnderTheCellAndIsPickedFromByKeyOrMouse) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 0, 5);
  screen.Press(Alt(KeyCode::Down));
  auto* list = screen.View().findChild<QWidget*>("list");
  ASSERT_FALSE(list->isHidden());
  EXPECT_GE(list->geometry().top(), screen.Line()->geometry().bottom());
  EXPECT_EQ(QApplication::focusWidget(), screen.Line());
  screen.Press(KeyCode::Down);
  screen.Press(KeyCode::Enter);
  EXPECT_TRUE(list->isHidden());
  EXPECT_EQ(screen.form->cdsRows_.ValueAt(0, screen.form->cdsRows_.FieldByName("Measure")), 102);

  screen.PointAt(screen.form->gRows, 0, 5);
  screen.Type("дуз");
  ASSERT_FALSE(list->isHidden());
  Click(*list, QRect(4, 4, 10, 10));
  EXPECT_TRUE(list->isHidden());
  EXPECT_EQ(screen.form->cdsRows_.ValueAt(0, screen.form->cdsRows_.FieldByName("Measure")), 212);
}

TEST(DesktopKeys, WithoutAnEditorTheClipboardTakesAndGivesTheWholePlace) {
  Screen screen;
  screen.PointAt(screen.form->gRows, 2, 1);
  screen.Press(Ctrl(KeyCode::C));
  EXPECT_EQ(Utf8(QApplication::clipboard()->text()), "30112");
  screen.PointAt(screen.form->gRows, 3, 1);
  screen.Press(Ctrl(KeyCode::V));
  EXPECT_EQ(screen.EditorText(), "30112");
}

TEST(DesktopKeys, FocusFollowsTheModelAlone) {
  Screen screen;
  sample::TfSample& form = *screen.form;
  ControlView& edit = *screen.View().ViewOf(form.eIdNum);
  EXPECT_EQ(QApplication::focusWidget(), &edit.Widget());
  screen.Press(KeyCode::F6);
  EXPECT_EQ(QApplication::focusWidget(), &screen.View().ViewOf(form.gRows)->Widget());
  for (const QWidget* widget : screen.View().findChildren<QWidget*>())
    EXPECT_EQ(widget->focusPolicy(), Qt::NoFocus) << widget->metaObject()->className();

  // Where the model keeps the focus, a click does not move it either.
  form.gRows.OnExit = [&form] { form.FocusControl(&form.gRows); };
  screen.PointAt(form.eVersion, 0, 0);
  EXPECT_EQ(form.ActiveControl(), &form.gRows);
  EXPECT_EQ(QApplication::focusWidget(), &screen.View().ViewOf(form.gRows)->Widget());
}

}  // namespace
}  // namespace orvane::desktop
