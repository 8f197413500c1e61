#pragma once

#include <QtWidgets/QWidget>
#include <vector>

#include "host/toolkit.h"
#include "packet/floors.h"

namespace orvane::desktop {

/// A message or question of the host. The focused button answers to Enter, the harmless one is
/// focused at first and answers to Escape; Да and Не answer to their letters in both layouts.
class MessageView final : public QWidget {
 public:
  explicit MessageView(const MessageDialog& dialog);

  const MessageDialog& Dialog() const { return dialog_; }
  bool IsAnswered() const { return answer_ != 0; }
  int Answer() const { return answer_; }
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
  bool focusNextPrevChild(bool next) override;

 private:
  struct Button {
    int answer;
    QString caption;
    QString key;  ///< shown beside the caption
  };

  QSize TextSize() const;
  QRect ButtonRect(int index) const;
  void PaintSign(QPainter& painter, const QRect& place) const;
  void PaintButton(QPainter& painter, int index) const;
  /// The answer a letter stands for; 0 for none.
  int AnswerOf(const QKeyEvent& event) const;
  void MoveFocus(int by);

  MessageDialog dialog_;
  std::vector<Button> buttons_;
  int focused_ = 0;
  int answer_ = 0;
};

}  // namespace orvane::desktop
