#pragma once

#include <QtWidgets/QWidget>

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
class TVosMTCombo;
}  // namespace orvane::host

namespace orvane::desktop {

/// The list under an open combo. It is part of the form's window and never takes the keyboard: the
/// model moves the highlight, the mouse picks.
class ListPopup final : public QWidget {
 public:
  ListPopup(QWidget& window, TVosBaseForm& form);

  /// Shows the list of the combo in use under `place` of the window, or hides.
  void Follow(const TVosMTCombo* combo, const QRect& place);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  int Count() const;
  int VisibleLines() const;
  void PaintLine(QPainter& painter, int line);

  QWidget& window_;
  TVosBaseForm& form_;
  const TVosMTCombo* combo_ = nullptr;
  std::uint64_t seen_ = 0;
  int top_ = 0;  ///< first entry shown
};

}  // namespace orvane::desktop
