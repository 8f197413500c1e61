#pragma once

// The failures of a link, in the same words wherever a link may break. What to do next is added by
// whoever shows them.

#include "packet/failure.h"

namespace orvane {

/// The request did not reach the server, or it was a question and may simply be asked again.
inline Failure LinkIsDown() {
  return {FailureKind::LinkDown, "Няма връзка със сървъра."};
}

/// The answer to a question was lost, or the user stopped waiting for it: nothing came of it.
inline Failure AnswerIsLost() {
  return {FailureKind::LinkDown, "Отговорът на сървъра не дойде докрай."};
}

/// The answer to a write was lost; the write may stand.
inline Failure OutcomeIsUnknown() {
  return {FailureKind::OutcomeUnknown,
          "Връзката със сървъра прекъсна преди отговора. Не е известно дали промяната е записана."};
}

}  // namespace orvane
