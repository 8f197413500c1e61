#pragma once

// Views of the small controls: key edits, navigation bars, pages, labels.

#include <QtWidgets/QWidget>
#include <string>
#include <vector>

#include "desktop/control_view.h"

class QStackedLayout;

namespace orvane::host {
struct TAction;
class TKeyEdit;
class TLabel;
class TPageControl;
}  // namespace orvane::host

namespace orvane::desktop {

class KeyEditView final : public QWidget, public ControlView {
 public:
  explicit KeyEditView(TKeyEdit& edit);
  QWidget& Widget() override { return *this; }
  QRect EditorPlace() const override { return BoxRect(); }
  Qt::Alignment EditorAlignment() const override { return Qt::AlignRight; }
  QRect BringIntoSight(int row, int column) override;
  QString CurrentText() const override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  QRect BoxRect() const;
  TKeyEdit& edit_;
};

/// A bar of actions drawn as the signs of navigation.
class BarView final : public QWidget {
 public:
  BarView(TVosBaseForm& form, std::vector<std::string> actions);
  /// Takes over which actions are live.
  void Look();
  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QRect ButtonRect(int index) const;
  int ButtonAt(const QPoint& at) const;
  const TAction* ActionAt(int index) const;
  void PaintButton(QPainter& painter, int index);

  TVosBaseForm& form_;
  std::vector<std::string> actions_;
  std::vector<bool> seen_;
  int hovered_ = -1;
};

class PageView final : public QWidget, public ControlView {
 public:
  explicit PageView(TPageControl& pages);
  QWidget& Widget() override { return *this; }
  /// The view of a page's content; pages without content stay empty.
  void SetContent(int page, QWidget* content);
  /// Where the tab of a page is clicked; empty when the page is hidden.
  QRect TabRect(int page) const;

 protected:
  void Changed() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  TPageControl& pages_;
  QStackedLayout* stack_;
};

class LabelView final : public QWidget, public ControlView {
 public:
  explicit LabelView(TLabel& label);
  QWidget& Widget() override { return *this; }
  QSize sizeHint() const override;
  int heightForWidth(int width) const override;
  bool hasHeightForWidth() const override;

 protected:
  void Changed() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  TLabel& label_;
};

}  // namespace orvane::desktop
