#pragma once

// The strips above and below every form: title, status.

#include <QtWidgets/QWidget>
#include <string>
#include <vector>

#include "host/form.h"

namespace orvane::desktop {

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

/// The status bar. Its parts stand side by side at every width: what has no room gives way by
/// weight, nothing is cut or painted over.
class StatusLine final : public QWidget {
 public:
  explicit StatusLine(TVosBaseForm& form);
  void Look();
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// A part as it is shown.
  struct Place {
    QString text;
    QRect rect;
    std::string action;
  };
  const std::vector<Place>& Places() const { return places_; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void Arrange();
  /// The part under a point that does something; null when none does.
  const Place* PlaceAt(const QPoint& at) const;

  TVosBaseForm& form_;
  std::vector<StatusPart> parts_;
  std::vector<Place> places_;
};

/// Actions of the form that its ribbon does not show, in order.
std::vector<std::string> ActionsBesideRibbon(const TVosBaseForm& form);

}  // namespace orvane::desktop
