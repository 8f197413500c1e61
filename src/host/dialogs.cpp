#include "host/dialogs.h"

#include "host/conflict_form.h"
#include "host/form.h"

namespace orvane {
namespace {

/// What a failure says when it brings no sentence of its own, or when the host knows better.
struct FailureRow {
  FailureKind kind;
  bool ownWordsFirst;  ///< the failure's message is shown when it has one
  std::string_view text;
};

constexpr FailureRow kFailures[] = {
    {FailureKind::Refused,        true,  "Сървърът отказа операцията. Въведеното е запазено."                                    },
    {FailureKind::Conflict,       true,
     "Записът е променен от друг потребител. Заредете го отново и повторете промяната."                  },
    {FailureKind::NoRight,        true,  "Нямате право за тази операция."                                                                          },
    {FailureKind::SessionEnded,   false,
     "Сесията Ви е приключила. Въведеното е запазено; влезте отново и повторете операцията."         },
    {FailureKind::LinkDown,       false,
     "Няма връзка със сървъра. Въведеното е запазено; опитайте отново."                                                },
    {FailureKind::OutcomeUnknown, false,
     "Връзката прекъсна и не се знае дали операцията е изпълнена. Въведеното е запазено; "
     "опитайте отново, промяната няма да се запише два пъти."                                                                   },
    {FailureKind::BadRequest,     true,  "Сървърът не разбра заявката. Въведеното е запазено."                                   },
    {FailureKind::Internal,       true,
     "Грешка в сървъра. Въведеното е запазено; опитайте отново или се обадете на администратора."},
};

std::string WithoutMark(std::string text) {
  const std::string_view mark = kRefusalMark;
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at))
    text.erase(at, mark.size());
  return text;
}

/// A failure of the call, not of the change: the change stays in the log.
bool IsOfTheCall(FailureKind kind) {
  return kind == FailureKind::SessionEnded || kind == FailureKind::LinkDown ||
         kind == FailureKind::OutcomeUnknown;
}

}  // namespace

int VosMessageDlg(TVosBaseForm& form, int kind, std::string_view caption, std::string_view text,
                  DialogButtons buttons) {
  return form.App().Toolkit().ShowMessage(&form, {.kind = kind,
                                                  .caption = std::string(caption),
                                                  .text = WithoutMark(std::string(text)),
                                                  .yesNo = buttons == DialogButtons::YesNo});
}

bool Confirmed(TVosBaseForm& form, std::string_view caption, std::string_view text) {
  return VosMessageDlg(form, 1, caption, text, DialogButtons::YesNo) == kAnswerYes;
}

std::string FailureText(const Failure& failure) {
  for (const FailureRow& row : kFailures) {
    if (row.kind != failure.kind) continue;
    const bool own = row.ownWordsFirst && !failure.message.empty();
    return own ? WithoutMark(failure.message) : std::string(row.text);
  }
  return WithoutMark(failure.message);
}

ReconcileAction HandleReconcileError(TVosBaseForm& form, TVosClientDataSet& dataSet,
                                     const ReconcileError& error, AfterRefusal afterRefusal) {
  if (IsOfTheCall(error.failure.kind)) {
    form.ShowFailure(error.failure);
    return ReconcileAction::Abort;
  }
  // With nothing to lay side by side and nothing to correct, the server's own words tell more.
  const bool told = afterRefusal == AfterRefusal::Cancel && error.present.empty();
  if (error.failure.kind == FailureKind::Conflict && error.kind != ChangeKind::Insert && !told)
    return RunConflictForm(form, dataSet, error);
  VosMessageDlg(form, 0, form.caption, FailureText(error.failure));
  // A refused deletion has nothing to correct: the row comes back.
  const bool cancel = afterRefusal == AfterRefusal::Cancel || error.kind == ChangeKind::Delete;
  return cancel ? ReconcileAction::Cancel : ReconcileAction::Correct;
}

}  // namespace orvane
