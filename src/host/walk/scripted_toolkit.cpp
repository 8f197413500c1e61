#include "host/walk/scripted_toolkit.h"

#include <algorithm>
#include <utility>

#include "host/form.h"

namespace orvane::host {

void ScriptedToolkit::Show(TVosBaseForm& form) {
  shown_.push_back(&form);
  form.BeShown();
}

void ScriptedToolkit::ShowModal(TVosBaseForm& form) {
  Show(form);
  if (runner_ != nullptr) runner_->RunUntil([&form] { return form.IsClosed(); });
  std::erase(shown_, &form);
}

void ScriptedToolkit::FormChanged(TVosBaseForm& form) {
  if (form.IsClosed()) std::erase(shown_, &form);
}

void ScriptedToolkit::FormGone(TVosBaseForm& form) {
  std::erase(shown_, &form);
}

int ScriptedToolkit::ShowMessage(TVosBaseForm*, const MessageDialog& dialog) {
  if (!dialog.yesNo) {
    messages_.push_back(dialog);
    return kAnswerOk;
  }
  return Ask(dialog, nullptr);
}

int ScriptedToolkit::AskLine(TVosBaseForm*, const MessageDialog& question, QuestionLine& line) {
  return Ask(question, &line);
}

int ScriptedToolkit::Ask(const MessageDialog& question, QuestionLine* line) {
  if (runner_ == nullptr) {
    messages_.push_back(question);
    return answerWithoutWalk;
  }
  questions_.push_back({question, line, 0});
  const std::size_t mine = questions_.size() - 1;
  runner_->RunUntil([this, mine] { return questions_[mine].answer != 0; });
  const int answer =
      questions_[mine].answer == 0 ? HarmlessAnswer(question) : questions_[mine].answer;
  questions_.pop_back();
  return answer;
}

void ScriptedToolkit::PreviewReport(TVosBaseForm& owner, ReportDocument report) {
  auto taken = ReportSnapshot::Take(std::move(report));
  if (taken)
    reports_.push_back(*std::move(taken));
  else
    ShowMessage(&owner, {.caption = owner.caption, .text = taken.GetFailure().message});
}

TVosBaseForm* ScriptedToolkit::ActiveForm(VosApplication& app) {
  for (auto form = shown_.rbegin(); form != shown_.rend(); ++form) {
    if (&(*form)->App() == &app && !(*form)->IsClosed()) return *form;
  }
  return nullptr;
}

void ScriptedToolkit::Press(TVosBaseForm& form, KeyStroke key) {
  form.Dispatch(KeyPressed{key});
}

void ScriptedToolkit::TypeText(TVosBaseForm& form, std::string_view text) {
  // One code point at a time, as keys arrive.
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = at + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u)
      ++end;
    form.Dispatch(TextTyped{std::string(text.substr(at, end - at))});
    at = end;
  }
}

void ScriptedToolkit::PointAt(TVosBaseForm& form, Control& control, int row, int column) {
  form.Dispatch(Pointed{&control, row, column, false});
}

void ScriptedToolkit::Choose(TVosBaseForm& form, std::string_view action) {
  form.Dispatch(ActionChosen{std::string(action)});
}

const MessageDialog* ScriptedToolkit::Question() const {
  if (questions_.empty() || questions_.back().answer != 0) return nullptr;
  return &questions_.back().dialog;
}

void ScriptedToolkit::AnswerQuestion(int answer) {
  if (Question() != nullptr) questions_.back().answer = answer;
}

std::optional<std::string> ScriptedToolkit::LineText() const {
  if (Question() == nullptr || questions_.back().line == nullptr) return std::nullopt;
  return questions_.back().line->text;
}

void ScriptedToolkit::FillLine(std::string_view text) {
  if (LineText()) questions_.back().line->text = text;
}

std::vector<MessageDialog> ScriptedToolkit::TakeMessages() {
  return std::exchange(messages_, {});
}

std::vector<TakenReport> ScriptedToolkit::TakeReports() {
  return std::exchange(reports_, {});
}

}  // namespace orvane::host
