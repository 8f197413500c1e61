#pragma once

#include <QtWidgets/QAbstractScrollArea>
#include <vector>

#include "desktop/control_view.h"

namespace orvane::host {
class TVosDataInspector;
}  // namespace orvane::host

namespace orvane::desktop {

/// Shows a column of labelled items: label, value, and the name behind a code.
class InspectorView final : public QAbstractScrollArea, public ControlView {
 public:
  explicit InspectorView(TVosDataInspector& inspector);

  QWidget& Widget() override { return *this; }
  QWidget& Surface() override { return *viewport(); }
  QRect EditorPlace() const override;
  bool EditorIsSecret() const override;
  QRect BringIntoSight(int row, int column) override;
  QString CurrentText() const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  /// Width of the label column: the longest label with its mark.
  int LabelWidth() const { return labelWidth_; }

 protected:
  void Changed() override;
  std::uint64_t ShownVersion() const override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void Measure();
  void SettleBar();
  /// The line an item stands on; -1 when it is hidden.
  int LineOf(int item) const;
  int ItemAt(int y) const;
  QRect LineRect(int line) const;
  QRect ValueRect(int line) const;
  QRect ListSignRect(int line) const;
  void FollowCursor();
  void PaintItem(QPainter& painter, int line);
  void PaintValue(QPainter& painter, int item, const QRect& place);

  TVosDataInspector& inspector_;
  std::vector<int> shown_;  ///< visible items, top down
  std::vector<int> tops_;   ///< where each begins, in pixels, and at last where all end
  int labelWidth_ = 0;
  int seenItem_ = -1;
};

}  // namespace orvane::desktop
