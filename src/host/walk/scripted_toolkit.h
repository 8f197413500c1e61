#pragma once

// The toolkit of tests and walks: shows nothing, keeps what was shown, and hands modal calls to the
// walk that runs in it.

#include <string>
#include <string_view>
#include <vector>

#include "host/toolkit.h"
#include "host/walk/walk_runner.h"

namespace orvane::host {

class ScriptedToolkit final : public IToolkit, public IWalkDriver {
 public:
  /// The walk that goes on inside modal calls; without one a modal form closes at once and
  /// questions get `answerWithoutWalk`.
  void Attach(WalkRunner* runner) { runner_ = runner; }
  int answerWithoutWalk = kAnswerNo;

  // --- IToolkit ---------------------------------------------------------------------------------
  void Show(TVosBaseForm& form) override;
  void ShowModal(TVosBaseForm& form) override;
  void FormChanged(TVosBaseForm& form) override;
  void FormGone(TVosBaseForm& form) override;
  int ShowMessage(TVosBaseForm* owner, const MessageDialog& dialog) override;
  int AskLine(TVosBaseForm* owner, const MessageDialog& question, QuestionLine& line) override;
  void PreviewReport(TVosBaseForm& owner, ReportDocument report) override;
  void SetClipboard(const std::string& text) override { clipboard_ = text; }

  // --- IWalkDriver ------------------------------------------------------------------------------
  IToolkit& Toolkit() override { return *this; }
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
  void Picture(std::string_view) override {}

 private:
  struct OpenQuestion {
    MessageDialog dialog;
    QuestionLine* line = nullptr;  ///< null: it takes none
    int answer = 0;                ///< 0: not answered yet
  };

  int Ask(const MessageDialog& question, QuestionLine* line);

  WalkRunner* runner_ = nullptr;
  std::vector<TVosBaseForm*> shown_;
  std::vector<OpenQuestion> questions_;
  std::vector<MessageDialog> messages_;
  std::vector<TakenReport> reports_;
  std::string clipboard_;
};

}  // namespace orvane::host
