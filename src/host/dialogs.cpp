#include "host/dialogs.h"

#include <algorithm>
#include <iterator>

#include "data/abort.h"
#include "host/conflict_form.h"
#include "host/controls/cell_editor.h"
#include "host/form.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

constexpr int kWarningQuestion = 3;

/// What a failure says when it brings no sentence of its own, or when the host knows better, and
/// what is to be done then.
struct FailureRow {
  FailureKind kind;
  std::string_view text;  ///< empty: the failure always brings its own
  std::string_view next = {};
  std::string_view nextWithTyping = " Въведеното е запазено.";  ///< where something was typed
};

/// Their own sentence tells all that is to be told.
constexpr FailureRow kOwnWords[] = {
    {FailureKind::Refused, "Сървърът отказа операцията."},
    {FailureKind::Conflict, "Записът е променен от друг потребител.",
     " Заредете го отново и повторете промяната.", " Заредете го отново и повторете промяната."},
    {FailureKind::NoRight, "Нямате право за тази операция.", "", ""},
    {FailureKind::BadRequest, "Сървърът не разбра заявката."},
    {FailureKind::Internal, "Грешка в сървъра.",
     " Опитайте отново или се обадете на администратора.",
     " Въведеното е запазено; опитайте отново или се обадете на администратора."},
};
/// What is to be done is added to what happened.
constexpr FailureRow kOfTheCall[] = {
    {FailureKind::SessionEnded, "Сесията Ви е приключила.",
     " Влезте отново и повторете операцията.",
     " Въведеното е запазено; влезте отново и повторете операцията."},
    {FailureKind::LinkDown, "", " Опитайте отново.", " Въведеното е запазено; опитайте отново."},
    {FailureKind::OutcomeUnknown, "Връзката прекъсна и не се знае дали операцията е изпълнена.",
     " Опитайте отново, промяната няма да се запише два пъти.",
     " Въведеното е запазено; опитайте отново, промяната няма да се запише два пъти."},
};

std::string WithoutMark(std::string text) {
  const std::string_view mark = kRefusalMark;
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at))
    text.erase(at, mark.size());
  return text;
}

/// The row of a failure of the call, not of the change: the change stays in the log. Null: it is
/// none.
const FailureRow* RowOfTheCall(FailureKind kind) {
  const auto row = std::ranges::find(kOfTheCall, kind, &FailureRow::kind);
  return row == std::end(kOfTheCall) ? nullptr : &*row;
}

/// What happened to the call, without what is to be done.
std::string WordsOf(const FailureRow& row, const Failure& failure) {
  return row.text.empty() ? WithoutMark(failure.message) : std::string(row.text);
}

}  // namespace

int VosMessageDlg(TVosBaseForm& form, int kind, std::string_view caption, std::string_view text,
                  DialogButtons buttons) {
  return form.App().Toolkit().ShowMessage(&form,
                                          {.kind = kind,
                                           .caption = std::string(caption),
                                           .text = WithoutMark(std::string(text)),
                                           .yesNo = buttons != DialogButtons::Ok,
                                           .mayGoBack = buttons == DialogButtons::YesNoBack});
}

bool Confirmed(TVosBaseForm& form, std::string_view caption, std::string_view text) {
  return VosMessageDlg(form, 1, caption, text, DialogButtons::YesNo) == kAnswerYes;
}

bool ConfirmedWithLine(TVosBaseForm& form, std::string_view caption, std::string_view text,
                       const FieldDef& field, QuestionLine& line) {
  const MessageDialog question{
      .kind = 1, .caption = std::string(caption), .text = std::string(text), .yesNo = true};
  for (;;) {
    const int answer = form.App().Toolkit().AskLine(&form, question, line);
    line.text = Trim(OneLine(line.text));
    if (answer != kAnswerYes) return false;
    if (Utf8Length(line.text) <= field.size) return true;
    VosMessageDlg(form, 0, caption, TooLong(line.label, field.size));
  }
}

bool SavesBeforeLeaving(TVosBaseForm& form, std::string_view question) {
  const int answer = VosMessageDlg(form, 1, form.caption, question, DialogButtons::YesNoBack);
  if (answer == kAnswerBack) throw Abort{};
  return answer == kAnswerYes;
}

std::string FailureText(const Failure& failure, Typing typing) {
  const auto nextOf = [typing](const FailureRow& row) {
    return typing == Typing::Kept ? row.nextWithTyping : row.next;
  };
  if (const FailureRow* row = RowOfTheCall(failure.kind))
    return WordsOf(*row, failure).append(nextOf(*row));
  if (!failure.message.empty()) return WithoutMark(failure.message);
  const auto row = std::ranges::find(kOwnWords, failure.kind, &FailureRow::kind);
  return std::string(row->text).append(nextOf(*row));
}

bool OfferAgain(VosApplication& app, TVosBaseForm* owner, std::string_view caption,
                const Failure& failure) {
  const FailureRow* row = RowOfTheCall(failure.kind);
  const bool again = row != nullptr && failure.kind != FailureKind::SessionEnded;
  const std::string text =
      again ? WordsOf(*row, failure) + " Желаете ли нов опит?" : FailureText(failure, Typing::None);
  const int answer = app.Toolkit().ShowMessage(owner, {.kind = again ? kWarningQuestion : 0,
                                                       .caption = std::string(caption),
                                                       .text = text,
                                                       .yesNo = again});
  return again && answer == kAnswerYes;
}

ReconcileAction HandleReconcileError(TVosBaseForm& form, TVosClientDataSet& dataSet,
                                     const ReconcileError& error, AfterRefusal afterRefusal) {
  if (RowOfTheCall(error.failure.kind) != nullptr) {
    form.ShowFailure(error.failure, Typing::Kept);
    return ReconcileAction::Abort;
  }
  // With nothing to lay side by side and nothing to correct, the server's own words tell more.
  const bool told = afterRefusal == AfterRefusal::Cancel && error.present.empty();
  if (error.failure.kind == FailureKind::Conflict && error.kind != ChangeKind::Insert && !told)
    return RunConflictForm(form, dataSet, error);
  VosMessageDlg(form, 0, form.caption, FailureText(error.failure, Typing::Kept));
  // A refused deletion has nothing to correct: the row comes back.
  const bool cancel = afterRefusal == AfterRefusal::Cancel || error.kind == ChangeKind::Delete;
  return cancel ? ReconcileAction::Cancel : ReconcileAction::Correct;
}

}  // namespace orvane::host
