#pragma once

#include <QtWidgets/QWidget>
#include <memory>
#include <vector>

#include "desktop/grids/cell_edit.h"
#include "desktop/grids/list_popup.h"

class QBoxLayout;

namespace orvane::host {
class Control;
class TVosBaseForm;
struct LayoutNode;
}  // namespace orvane::host

namespace orvane::desktop {

class BarView;
class ControlView;
class FormMemory;
class PageView;
class RibbonView;
class StatusLine;
class TitleStrip;

/// The window of one form, whatever the form is: title, ribbon, what the layout says, status. Keys
/// and clicks become events of the form; after each the window shows what the form has become.
class FormView final : public QWidget {
 public:
  FormView(TVosBaseForm& form, FormMemory& memory);
  ~FormView() override;

  TVosBaseForm& Form() const { return form_; }
  /// Takes over everything that was changed in the form.
  void Refresh();
  /// Size and place: as remembered, else what the content asks for, over `owner` when there is one.
  void TakePlace(const QWidget* owner);
  void KeepPlace();

  ControlView* ViewOf(const Control& control) const;
  /// Shows the page that a control stands on; null when it stands on none.
  PageView* PageOf(const Control& control, int* page) const;
  RibbonView* Ribbon() const { return ribbon_; }
  StatusLine& Status() const { return *status_; }
  /// The widget that keys go to now.
  QWidget& KeyTarget();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void Build();
  void AddNode(QBoxLayout& into, const LayoutNode& node);
  QWidget* MakeView(Control& control);
  void RefreshOnce();
  void SettleFocus();
  void FollowEditor();
  void DoWindowRequest();
  /// True when the key was the form's; false leaves it to the open editor.
  bool TakeKey(const QKeyEvent& event);
  bool CopyOrPaste(const QKeyEvent& event);

  TVosBaseForm& form_;
  FormMemory& memory_;
  TitleStrip* title_ = nullptr;
  RibbonView* ribbon_ = nullptr;
  StatusLine* status_ = nullptr;
  std::vector<ControlView*> views_;
  std::vector<BarView*> bars_;
  CellEdit edit_;
  ListPopup* list_;
  bool refreshing_ = false;
  bool refreshAgain_ = false;
  bool onTop_ = false;
};

}  // namespace orvane::desktop
