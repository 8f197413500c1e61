#pragma once

#include <QtWidgets/QWidget>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "packet/floors.h"

namespace orvane::host {
struct TAction;
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::desktop {

/// The ribbon of a form: one strip of tabs, compact groups of three rows, each action with icon,
/// caption and key. Groups that do not fit fold into one button; a caption is never cut.
class RibbonView final : public QWidget {
 public:
  explicit RibbonView(TVosBaseForm& form);

  /// Takes over captions, keys and what is live.
  void Look();
  /// Where an action is clicked; empty when it is folded away or not on the tab shown.
  QRect ActionRect(const std::string& action) const;
  /// Where the fold is opened; of no use while nothing is folded.
  QRect FoldRect() const;
  /// Actions in the fold, in order.
  std::vector<std::string> FoldedActions() const;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// An action with its place, for those who check that nothing is cut.
  struct Item {
    std::string action;
    QRect place;
    int captionWidth = 0;  ///< what the caption takes
    int captionRoom = 0;   ///< what it has
  };
  const std::vector<Item>& Items() const { return items_; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Group {
    QRect place;
    QString caption;
  };

  void Arrange();
  /// Adds the items of a group from `left` on and returns its width.
  int ArrangeGroup(const std::vector<const TAction*>& actions, int left, std::vector<Item>& items);
  std::vector<const TAction*> ActionsOf(int group) const;
  int GroupWidth(int group);
  int CaptionWidth(const TAction& action);
  std::size_t LookHash() const;
  QRect TabRect(int tab) const;
  const Item* ItemAt(const QPoint& at) const;
  void PaintTabs(QPainter& painter);
  void PaintItem(QPainter& painter, const Item& item);
  void PaintFold(QPainter& painter);
  void OpenFold();

  TVosBaseForm& form_;
  int tab_ = 0;
  std::vector<Group> groups_;
  std::vector<Item> items_;
  std::vector<int> folded_;  ///< groups without room, in order; smaller ones behind may have it
  int foldLeft_ = -1;
  std::size_t seen_ = 0;
  std::string hovered_;
  std::set<std::string> mainKeyed_;  ///< actions that have had F9
};

}  // namespace orvane::desktop
