#pragma once

// The one door to a real toolkit. Two implementations: Qt, and the scripted one of tests and walks.

#include <cstdint>
#include <string>
#include <vector>

#include "packet/floors.h"

namespace orvane::host {

class TVosBaseForm;
struct ReportDocument;

/// Answers of message dialogs.
inline constexpr int kAnswerOk = 1;
inline constexpr int kAnswerBack = 2;  ///< neither: back to where the question came from
inline constexpr int kAnswerYes = 12;
inline constexpr int kAnswerNo = 13;

struct MessageDialog {
  int kind = 0;  ///< 0 error, 1 question or information, 2 warning, 3 warning question
  std::string caption;
  std::string text;
  bool yesNo = false;  ///< Да and Не, the harmless one being the default; otherwise one button
  /// A yesNo may also be left without an answer (Escape): the user goes on where he was.
  bool mayGoBack = false;
};

/// What closing a dialog means.
inline int HarmlessAnswer(const MessageDialog& dialog) {
  if (!dialog.yesNo) return kAnswerOk;
  return dialog.mayGoBack ? kAnswerBack : kAnswerNo;
}

/// A line to be typed into, between a question and its answers.
struct QuestionLine {
  std::string label;
  std::string hint;    ///< shown while nothing stands there
  std::string text;    ///< what stands there at first; when the question is over, what was typed
  bool first = false;  ///< the keyboard begins in it, not at the harmless answer
};

class IToolkit {
 public:
  virtual ~IToolkit() = default;

  /// Shows a form and returns at once.
  virtual void Show(TVosBaseForm& form) = 0;
  /// Returns when the form closes.
  virtual void ShowModal(TVosBaseForm& form) = 0;
  /// The form's model changed: whatever shows it should look again.
  virtual void FormChanged(TVosBaseForm& form) = 0;
  /// The form is about to be freed.
  virtual void FormGone(TVosBaseForm& form) = 0;
  /// Returns the answer; closing the dialog is the harmless one.
  virtual int ShowMessage(TVosBaseForm* owner, const MessageDialog& dialog) = 0;
  /// A question that also takes a line of text.
  virtual int AskLine(TVosBaseForm* owner, const MessageDialog& question, QuestionLine& line) = 0;
  /// Preview, from which the user prints or saves. Reads the report's rows to their end before it
  /// returns, or says why it did not; passes on what their sources throw.
  virtual void PreviewReport(TVosBaseForm& owner, ReportDocument report) = 0;
  virtual void SetClipboard(const std::string& text) = 0;
};

}  // namespace orvane::host
