#pragma once

#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QString>

class QKeyEvent;
class QLineEdit;
class QObject;
class QPlainTextEdit;
class QWidget;

#include "packet/floors.h"

namespace orvane::host {
class Control;
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::desktop {

class ControlView;

/// The in-place editor on the screen: one line edit and one for several lines, laid over the place
/// that the model's open editor belongs to. It holds caret and selection; what the text may be is
/// the model's to say.
class CellEdit {
 public:
  /// `window` is the form's window; `filter` sees the keys before the editors do.
  CellEdit(QWidget& window, QObject& filter, TVosBaseForm& form);

  /// Shows, moves or hides the editor as the model has it. `view` is the view of the control that
  /// has the focus, null when none has.
  void Follow(ControlView* view);
  /// Hides what Follow left behind; after the focus has gone elsewhere.
  void HideUnused();
  /// The editor that takes the keyboard now; null when none is open.
  QWidget* Current() const { return current_; }
  /// The place of the editor in the window.
  QRect Place() const;
  /// A key that the open editor itself is for: moving the caret, selecting, erasing, the clipboard,
  /// characters.
  bool IsForEditor(const QKeyEvent& event) const;
  /// Types a line end at the caret, where the editor takes them.
  bool TypeLineEnd();

 private:
  void Typed();
  QString Text() const;
  void SetText(const QString& text);
  QRect WideEnough(QRect place, int room) const;

  QWidget& window_;
  TVosBaseForm& form_;
  QLineEdit* line_;
  QPlainTextEdit* lines_;
  QPointer<QWidget> current_;
  const Control* owner_ = nullptr;
  bool settling_ = false;
};

}  // namespace orvane::desktop
