#pragma once

#include <QtWidgets/QWidget>
#include <vector>

#include "host/toolkit.h"
#include "packet/floors.h"

class QLineEdit;

namespace orvane::desktop {

/// A message or question of the host. The focused button answers to Enter, the harmless one is
/// focused at first and answers to Escape; Да and Не answer to their letters in both layouts. A
/// line to be typed into stands above the buttons: Enter, Tab and the arrows lead from it to them,
/// Up back.
class MessageView final : public QWidget {
 public:
  explicit MessageView(const MessageDialog& dialog, const QuestionLine* line = nullptr);

  const MessageDialog& Dialog() const { return dialog_; }
  bool IsAnswered() const { return answer_ != 0; }
  int Answer() const { return answer_; }
  bool HasLine() const { return line_ != nullptr; }
  /// What stands in the line; empty without one.
  QString LineText() const;
  /// Gives the keyboard to the line or to the buttons, whichever begins.
  void TakeFocus();
  /// What takes the keys now: the line, or the dialog for its buttons.
  QWidget& KeyTarget();
  /// Ends the dialog; later answers are ignored.
  void Finish(int answer);
  /// What closing without an answer means.
  int HarmlessAnswer() const { return host::HarmlessAnswer(dialog_); }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  /// The keys that lead out of the line.
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  struct Button {
    int answer;
    QString caption;
    QString key;  ///< shown beside the caption
  };

  void AddLine(const QuestionLine& line);
  QSize TextSize() const;
  /// The height of the sign and the text beside it.
  int BodyHeight() const;
  QRect ButtonRect(int index) const;
  void PaintSign(QPainter& painter, const QRect& place) const;
  void PaintButton(QPainter& painter, int index) const;
  /// The answer a letter stands for; 0 for none.
  int AnswerOf(const QKeyEvent& event) const;
  void MoveFocus(int by);
  void FocusOn(int place);

  bool IsInLine() const { return focused_ == static_cast<int>(buttons_.size()); }
  /// Where the keyboard begins: the harmless answer, the last one.
  int HarmlessButton() const { return static_cast<int>(buttons_.size()) - 1; }

  MessageDialog dialog_;
  std::vector<Button> buttons_;
  QLineEdit* line_ = nullptr;
  QString lineLabel_;
  int focused_ = 0;  ///< a button; behind the last one, the line
  int answer_ = 0;
};

}  // namespace orvane::desktop
