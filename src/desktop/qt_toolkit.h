#pragma once

// The toolkit of the desktop program: one window a form, own message dialogs, nested loops for what
// is modal.

#include <QtCore/QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/report_snapshot.h"
#include "host/toolkit.h"

namespace orvane::host {
class VosApplication;
}  // namespace orvane::host

namespace orvane::desktop {

class FormMemory;
class FormView;
class MessageView;
class ReportPages;

class QtToolkit final : public IToolkit {
 public:
  explicit QtToolkit(std::unique_ptr<FormMemory> memory);
  ~QtToolkit() override;

  // --- IToolkit ---------------------------------------------------------------------------------
  void Show(TVosBaseForm& form) override;
  void ShowModal(TVosBaseForm& form) override;
  void FormChanged(TVosBaseForm& form) override;
  void FormGone(TVosBaseForm& form) override;
  int ShowMessage(TVosBaseForm* owner, const MessageDialog& dialog) override;
  int AskLine(TVosBaseForm* owner, const MessageDialog& question, QuestionLine& line) override;
  void PreviewReport(TVosBaseForm& owner, ReportDocument report) override;
  void SetClipboard(const std::string& text) override;

  /// Shows a form and works until it is closed.
  void RunUntilClosed(TVosBaseForm& form);
  /// Works until `done`; may be nested.
  void WorkUntil(const std::function<bool()>& done);

  // --- for those who drive the windows (walks, tests) -------------------------------------------
  /// The window of a form; null when it is not shown.
  FormView* ViewOf(const TVosBaseForm& form) const;
  /// Windows that are shown, the one opened or raised last at the end.
  std::vector<FormView*> ShownViews() const;
  /// The innermost form of that application that is not closed.
  FormView* TopView(const VosApplication& app) const;
  /// Puts a window over the others and gives it the keyboard.
  void Raise(FormView& view);
  /// The message that is up; null when none is.
  MessageView* OpenMessage() const;
  /// The innermost nested loop has what it waits for, but has not returned yet.
  bool IsReturning() const;
  /// Ends every nested loop: questions get the harmless answer, modal forms are left as they are.
  void Abandon();

  /// Told of every message before it is shown, and of every report instead of its preview.
  std::function<void(const MessageDialog&)> onMessage;
  std::function<void(TakenReport)> onReport;

 private:
  FormView& MakeView(TVosBaseForm& form, bool modal);
  QWidget* TopWindow() const;
  /// Shows the message until it is answered; `line` is the one of a question that has one.
  int Ask(const TVosBaseForm* owner, const MessageDialog& dialog, QuestionLine* line);
  /// The window a dialog of the form stands over.
  QWidget* OwnerOf(const TVosBaseForm& form) const;
  void FreeClosed();
  /// The pages of a report that is to be previewed; null when there is nothing to preview (any
  /// more).
  std::unique_ptr<const ReportPages> PagesOf(TVosBaseForm& owner, ReportDocument report);

  std::unique_ptr<FormMemory> memory_;
  std::vector<std::unique_ptr<FormView>> views_;
  std::vector<std::unique_ptr<MessageView>> messages_;
  std::vector<const std::function<bool()>*> waits_;
  QTimer freeTimer_;
  bool abandoned_ = false;
};

}  // namespace orvane::desktop
