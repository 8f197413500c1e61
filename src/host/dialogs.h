#pragma once

// Dialogs of the host: messages, reconciling a refused or conflicting change.

#include <string>
#include <string_view>

#include "data/client_dataset.h"
#include "host/toolkit.h"

namespace orvane::host {

class TVosBaseForm;
class VosApplication;

/// Whether something that the user typed is there and stays.
enum class Typing : unsigned char { None, Kept };

enum class DialogButtons : unsigned char { Ok, YesNo, YesNoBack };

/// Shows a message over `form` and returns the answer (12 is Yes; see toolkit.h). The refusal mark
/// of the server is dropped from the text.
int VosMessageDlg(TVosBaseForm& form, int kind, std::string_view caption, std::string_view text,
                  DialogButtons buttons = DialogButtons::Ok);
/// True when a question was answered with Yes.
bool Confirmed(TVosBaseForm& form, std::string_view caption, std::string_view text);
/// The same for a question that takes a text of `field` besides. What was typed is in `line`
/// whatever the answer; Yes with a text that is too long for the field is refused and asked again.
bool ConfirmedWithLine(TVosBaseForm& form, std::string_view caption, std::string_view text,
                       const FieldDef& field, QuestionLine& line);

/// What was typed is about to be left without having been saved: asks whether to save it. True:
/// save, false: give it up. Going back is an Abort.
bool SavesBeforeLeaving(TVosBaseForm& form, std::string_view question);

/// A failure of the server as the user reads it: what happened, what became of his typing where
/// there is any, and what to do. The refusal mark is dropped.
std::string FailureText(const Failure& failure, Typing typing);

/// Tells of a failure to read, over `owner` or whatever is open, and where trying again may help
/// asks whether to; true for another attempt.
bool OfferAgain(VosApplication& app, TVosBaseForm* owner, std::string_view caption,
                const Failure& failure);

/// The host's question before a row is deleted.
inline constexpr std::string_view _rDeleteCaption = "Изтриване";
inline constexpr std::string_view _rDeleteText = "Желаете ли да изтриете текущия запис?";

/// What a refusal of the server does to the typed change.
enum class AfterRefusal : unsigned char { Correct, Cancel };

/// Tells the user why a change was not applied and returns what to do with it. A refusal is shown
/// as an error and answers as `afterRefusal` says; a conflict opens the table of differences (mine,
/// theirs, was) where the user keeps typing on theirs, overwrites field by field, or drops his own.
ReconcileAction HandleReconcileError(TVosBaseForm& form, TVosClientDataSet& dataSet,
                                     const ReconcileError& error,
                                     AfterRefusal afterRefusal = AfterRefusal::Correct);

}  // namespace orvane::host
