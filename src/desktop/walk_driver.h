#pragma once

// Goes a walk through the real windows: keys and clicks are Qt events on them, pictures are what
// they painted. Steps are fed by a timer, so that a walk goes on inside nested loops.
//
//   QtWalkDriver driver(toolkit, "pictures");
//   WalkRunner runner(file, steps, driver, world);
//   const std::string problem = driver.Go(runner);     // empty: all went well

#include <QtCore/QString>
#include <QtCore/QTimer>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/walk/walk_runner.h"

class QWidget;

namespace orvane::desktop {

class FormView;
class QtToolkit;

class QtWalkDriver final : public IWalkDriver {
 public:
  /// `pictures` is a folder that is there; empty: no pictures are taken.
  QtWalkDriver(QtToolkit& toolkit, QString pictures);
  ~QtWalkDriver() override;

  /// Runs the walk to its end; the problem's text, empty when all went well.
  std::string Go(WalkRunner& runner);
  /// Names of the pictures taken, in order: files of the folder.
  const std::vector<std::string>& Pictures() const { return taken_; }

  // --- IWalkDriver ------------------------------------------------------------------------------
  IToolkit& Toolkit() override;
  TVosBaseForm* ActiveForm(VosApplication& app) override;
  void Press(TVosBaseForm& form, KeyStroke key) override;
  void TypeText(TVosBaseForm& form, std::string_view text) override;
  void PointAt(TVosBaseForm& form, Control& control, int row, int column) override;
  void Choose(TVosBaseForm& form, std::string_view action) override;
  const MessageDialog* Question() const override;
  void AnswerQuestion(int answer) override;
  std::optional<std::string> LineText() const override;
  void FillLine(std::string_view text) override;
  std::vector<MessageDialog> TakeMessages() override;
  std::vector<TakenReport> TakeReports() override;
  void Picture(std::string_view name) override;

 private:
  void Step();
  /// The window of the form, made the active one.
  FormView* Window(TVosBaseForm& form);
  void ShowPageOf(FormView& view, Control& control);
  std::vector<QWidget*> WindowsInSight() const;

  QtToolkit& toolkit_;
  const QString pictures_;
  QTimer timer_;
  WalkRunner* runner_ = nullptr;
  std::vector<MessageDialog> messages_;
  std::vector<TakenReport> reports_;
  /// A walk does not stop at a preview; the next picture shows it.
  TakenReport previewed_;
  std::vector<std::string> taken_;
};

/// Presses and releases a key on a widget as the window system would.
void PressKey(QWidget& widget, KeyStroke key);
/// One key press per character.
void TypeKeys(QWidget& widget, std::string_view character);
/// Clicks at a place of a widget.
void Click(QWidget& widget, const QRect& place, bool twice = false);

}  // namespace orvane::desktop
