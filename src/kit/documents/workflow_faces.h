#pragma once

// The moves of a document as its screen offers them: which action, under which key, and what runs.
// From which status, with which right and by whom stands in the contract, where the server judges
// the change by the same row.
//
//   constexpr Face<TfPurchaseOrder> kFaces[] = {
//       {kSend, "acForConfirmation", "За одобрение", KeyCode::F9,
//       &TfPurchaseOrder::SendForApproval},
//   };
//   AddFaces(*this, kFaces);                       // each asks before it runs
//   RefreshFaces(*this, kFaces, Facts());          // at the end of every event

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "contract/workflow.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "kit/documents/approval_decisions.h"
#include "kit/documents/waiting.h"

namespace orvane::kit {

/// What of a loaded document decides over its moves.
struct DocumentFacts {
  bool loaded = false;
  int status = 0;
  bool annulled = false;
  bool oldVersion = false;
  bool isChief = false;      ///< the user heads the document's cost centre
  bool isRequester = false;  ///< the user requested it
  bool isOwner = false;      ///< the user created it, or his level is below 3
  bool fullAccess = false;   ///< the user may complete whatever document
};

/// Whether the move is allowed to a user who holds these rights.
bool MayMove(const Move& move, const DocumentFacts& facts, TPointAccess access);

/// The question before an operation; an empty one asks "Потвърдете операция "Корекция" !".
bool ConfirmedOperation(TVosBaseForm& form, std::string_view caption,
                        std::string_view question = {});

/// The question before a decision on a level; it also takes why, unless a decision is withdrawn. Of
/// a rejection the reason is asked first, an approval is answered first.
bool ConfirmedDecision(TVosBaseForm& form, Decision decision, std::string_view caption,
                       std::string_view question, std::string& note);

template <class FormClass>
struct Face {
  Move move;
  std::string_view action;
  std::string_view caption;
  KeyStroke key;
  void (FormClass::*run)(const Move& move);
  std::string_view icon = {};
  std::string_view question = {};  ///< in place of the usual one
};

/// The move offered from other statuses than those from which the server lets it happen; it then
/// says why not.
constexpr Move OfferedFrom(Move move, StatusSet statuses) {
  move.from = statuses;
  return move;
}

template <class FormClass, std::size_t N>
void AddFaces(FormClass& form, const Face<FormClass> (&faces)[N]) {
  for (const Face<FormClass>& face : faces) {
    TAction action;
    action.name = face.action;
    action.caption = face.caption;
    action.shortcut = face.key;
    action.icon = face.icon;
    action.OnExecute = [&form, &face] {
      if (!ConfirmedOperation(form, face.caption, face.question)) return;
      const TurnCounted counted(form.App(), [&form] { return form.MayDecide(); });
      (form.*face.run)(face.move);
    };
    form.AddAction(std::move(action));
  }
}

/// A decision on the approval rows as its action; live for the approver when the screen's rule says
/// so. FormClass::NoteOf is what was typed why for that decision on the shown document.
template <class FormClass>
struct DecisionFace {
  Decision decision;
  std::string_view action;
  std::string_view caption;
  KeyStroke key;
  bool (FormClass::*may)() const;
  std::string_view icon = {};
  std::string_view question = {};  ///< in place of the usual one
};

template <class FormClass, std::size_t N>
void AddDecisionFaces(FormClass& form, const DecisionFace<FormClass> (&faces)[N],
                      void (FormClass::*run)(Decision)) {
  for (const DecisionFace<FormClass>& face : faces) {
    TAction action;
    action.name = face.action;
    action.caption = face.caption;
    action.shortcut = face.key;
    action.icon = face.icon;
    action.OnExecute = [&form, &face, run] {
      std::string& note = form.NoteOf(face.decision);
      if (!ConfirmedDecision(form, face.decision, face.caption, face.question, note)) return;
      const TurnCounted counted(form.App(), [&form] { return form.MayDecide(); });
      (form.*run)(face.decision);
    };
    form.AddAction(std::move(action));
  }
}

/// A key edit has the focus: that is where moves and decisions are offered.
bool IsAtKeyEdit(const TVosBaseForm& form);

/// Makes live what the document allows, while a key edit has the focus.
template <class FormClass, std::size_t N>
void RefreshFaces(const FormClass& form, const Face<FormClass> (&faces)[N],
                  const DocumentFacts& facts) {
  const bool atKey = IsAtKeyEdit(form);
  for (const Face<FormClass>& face : faces)
    form.FindAction(face.action)->enabled = atKey && MayMove(face.move, facts, form.Access());
}

/// Decisions are offered to whoever holds `right` at the screen's point.
template <class FormClass, std::size_t N>
void RefreshDecisionFaces(const FormClass& form, const DecisionFace<FormClass> (&faces)[N],
                          const DocumentFacts& facts, PointAccessRight right = paEdit) {
  const bool offered = IsAtKeyEdit(form) && facts.loaded && !facts.annulled && form.May(right);
  for (const DecisionFace<FormClass>& face : faces)
    form.FindAction(face.action)->enabled = offered && (form.*face.may)();
}

}  // namespace orvane::kit
