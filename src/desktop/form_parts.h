#pragma once

// The strips above and below every form: title, status.

#include <QtWidgets/QWidget>
#include <string>
#include <vector>

namespace orvane {

class TVosBaseForm;

/// Title of the form; company, user and language at the right, and a button with what the ribbon
/// does not hold.
class TitleStrip final : public QWidget {
 public:
  explicit TitleStrip(TVosBaseForm& form);
  void Look();
  /// Opens the menu of what the ribbon does not show: `folded` first, then what it never holds.
  void OpenMenu(std::vector<std::string> folded = {});
  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QRect MenuRect() const;
  bool HasMenu() const;

  TVosBaseForm& form_;
  QString title_;
  QString where_;
};

class StatusLine final : public QWidget {
 public:
  explicit StatusLine(TVosBaseForm& form);
  void Look();
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  TVosBaseForm& form_;
  QString left_;
  QString right_;
};

/// Actions of the form that its ribbon does not show, in order.
std::vector<std::string> ActionsBesideRibbon(const TVosBaseForm& form);

}  // namespace orvane
