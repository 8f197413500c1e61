#include "desktop/grids/cell_edit.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <algorithm>
#include <iterator>

#include "desktop/control_view.h"
#include "desktop/qt_keys.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"
#include "host/controls/cell_editor.h"
#include "host/form.h"

namespace orvane::desktop {
namespace {

/// Keys without Ctrl and Alt that move or erase in an open editor; Shift selects.
constexpr KeyCode kEditKeys[] = {KeyCode::Left, KeyCode::Right,     KeyCode::Home,
                                 KeyCode::End,  KeyCode::Backspace, KeyCode::Delete};
/// Keys with Ctrl: the same by words, and the clipboard.
constexpr KeyCode kEditChords[] = {
    KeyCode::Left,   KeyCode::Right, KeyCode::Home, KeyCode::End, KeyCode::Backspace,
    KeyCode::Delete, KeyCode::A,     KeyCode::C,    KeyCode::X,   KeyCode::V,
    KeyCode::Insert, KeyCode::Z,     KeyCode::Y};

bool IsOneOf(std::span<const KeyCode> keys, KeyCode code) {
  return std::ranges::find(keys, code) != keys.end();
}

}  // namespace

CellEdit::CellEdit(QWidget& window, QObject& filter, TVosBaseForm& form)
    : window_(window),
      form_(form),
      line_(new QLineEdit(&window)),
      lines_(new QPlainTextEdit(&window)) {
  line_->setFrame(false);
  line_->setTextMargins(kPadding - 4, 0, kPadding - 4, 0);
  lines_->setStyleSheet(
      QString("QPlainTextEdit { border: 2px solid %1; }").arg(ColorOf(Role::Accent).name()));
  lines_->setTabChangesFocus(true);
  for (QWidget* editor : {static_cast<QWidget*>(line_), static_cast<QWidget*>(lines_)}) {
    editor->setFocusPolicy(Qt::NoFocus);
    editor->setFont(ScreenFont());
    editor->setContextMenuPolicy(Qt::NoContextMenu);
    editor->installEventFilter(&filter);
    editor->hide();
  }
  QObject::connect(line_, &QLineEdit::textEdited, &window, [this] { Typed(); });
  QObject::connect(lines_, &QPlainTextEdit::textChanged, &window, [this] { Typed(); });
}

QString CellEdit::Text() const {
  return current_ == lines_ ? lines_->toPlainText() : line_->text();
}

void CellEdit::SetText(const QString& text) {
  settling_ = true;
  if (current_ == lines_) {
    lines_->setPlainText(text);
    lines_->moveCursor(QTextCursor::End);
  } else {
    line_->setText(text);
  }
  settling_ = false;
}

void CellEdit::Follow(ControlView* view) {
  const CellEditor* editor = view == nullptr ? nullptr : view->Model().Editor();
  if (editor == nullptr) {
    current_ = nullptr;
    owner_ = nullptr;
    return;
  }
  QWidget* wanted = editor->multiLine ? static_cast<QWidget*>(lines_) : line_;
  const bool opened = current_ != wanted || owner_ != &view->Model();
  current_ = wanted;
  owner_ = &view->Model();
  if (opened) {
    line_->setEchoMode(view->EditorIsSecret() ? QLineEdit::Password : QLineEdit::Normal);
    line_->setAlignment(view->EditorAlignment() | Qt::AlignVCenter);
  }
  if (opened || Text() != Qs(editor->Text())) SetText(Qs(editor->Text()));
  QRect place = view->EditorPlace();
  if (!place.isEmpty()) place.moveTopLeft(view->Surface().mapTo(&window_, place.topLeft()));
  // The view paints the border of one line; several lines bring their own.
  const int border = current_ == line_ ? 2 : 0;
  current_->setGeometry(place.adjusted(border, border, -border, -border));
  current_->setVisible(!place.isEmpty());
  current_->raise();
}

/// A narrow place grows to the right, then to the left, while the text is longer than it.
QRect CellEdit::WideEnough(QRect place, int room) const {
  if (current_ != line_) return place;
  const int need = ScreenMetrics().horizontalAdvance(Text()) + 2 * kPadding + 8;
  if (need <= place.width() || line_->echoMode() == QLineEdit::Password) return place;
  place.setWidth(std::min(need, std::max(room, place.width())));
  if (place.right() >= room) place.moveRight(room - 1);
  return place;
}

void CellEdit::HideUnused() {
  if (current_ != line_ && !line_->isHidden()) line_->hide();
  if (current_ != lines_ && !lines_->isHidden()) lines_->hide();
}

QRect CellEdit::Place() const {
  return current_ == nullptr ? QRect() : current_->geometry();
}

/// The model may refuse what was typed: then the editor goes back to the model's text, the caret to
/// where it was.
void CellEdit::Typed() {
  if (settling_ || current_ == nullptr) return;
  Control* active = form_.ActiveControl();
  const CellEditor* editor = active == nullptr ? nullptr : active->Editor();
  if (editor == nullptr) return;
  const QString typed = Text();
  const QString before = Qs(editor->Text());
  const auto grown = static_cast<int>(typed.size() - before.size());
  const int caret = line_->cursorPosition() - std::max(0, grown);
  form_.Dispatch(EditorTextChanged{Utf8(typed)});
  const bool refused = current_ == line_ && typed != before && line_->text() == before;
  if (refused) line_->setCursorPosition(caret);
}

bool CellEdit::IsForEditor(const QKeyEvent& event) const {
  if (current_ == nullptr) return false;
  if (!TypedBy(event).empty()) return true;
  const KeyStroke key = StrokeOf(event);
  if (form_.LiveActionFor(key) != nullptr) return false;
  if ((key.modifiers & AltKey) != 0) return false;
  if ((key.modifiers & CtrlKey) != 0) return IsOneOf(kEditChords, key.code);
  if (key.modifiers == ShiftKey && key.code == KeyCode::Insert) return true;
  const bool upDown = key.code == KeyCode::Up || key.code == KeyCode::Down;
  if (upDown && current_ == lines_) return lines_->blockCount() > 1;
  return IsOneOf(kEditKeys, key.code);
}

bool CellEdit::TypeLineEnd() {
  if (current_ != lines_ || lines_ == nullptr) return false;
  lines_->insertPlainText("\n");
  return true;
}

}  // namespace orvane::desktop
