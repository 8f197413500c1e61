#include "kit/documents/workflow_faces.h"

#include "contract/approval_rows.h"

namespace orvane::kit {
namespace {

PointAccessRight RightAtPoint(Right right) {
  switch (right) {
    case Right::Insert:
      return paInsert;
    case Right::Delete:
      return paDelete;
    case Right::Open:
    case Right::None:
      return paOpen;
    case Right::Edit:
      break;
  }
  return paEdit;
}

std::string QuestionOf(std::string_view caption, std::string_view question) {
  if (!question.empty()) return std::string(question);
  return "Потвърдете операция \"" + std::string(caption) + "\" !";
}

}  // namespace

bool MayMove(const Move& move, const DocumentFacts& facts, TPointAccess access) {
  if (!facts.loaded || facts.annulled || facts.oldVersion) return false;
  if (!access.Has(RightAtPoint(move.right)) || !move.from.Has(facts.status)) return false;
  switch (move.who) {
    case Who::ChiefOrRequester:
      return facts.isChief || facts.isRequester;
    case Who::Owner:
      return facts.isOwner;
    case Who::Requester:
      return facts.isRequester || facts.fullAccess;
    case Who::Anyone:
    case Who::Approver:
    case Who::Decider:
      break;
  }
  return true;
}

bool IsAtKeyEdit(const TVosBaseForm& form) {
  const Control* active = form.ActiveControl();
  return active != nullptr && active->Kind() == ControlKind::KeyEdit;
}

bool ConfirmedOperation(TVosBaseForm& form, std::string_view caption, std::string_view question) {
  return Confirmed(form, form.caption, QuestionOf(caption, question));
}

bool ConfirmedDecision(TVosBaseForm& form, Decision decision, std::string_view caption,
                       std::string_view question, std::string& note) {
  if (decision == Decision::Withdraw) return ConfirmedOperation(form, caption, question);
  const FieldDef& field = approval_rows::ApprovalNote;
  QuestionLine line{.label = std::string(field.label),
                    .hint = "по желание, до " + std::to_string(field.size) + " знака",
                    .text = note,
                    .first = decision == Decision::Reject};
  const bool confirmed =
      ConfirmedWithLine(form, form.caption, QuestionOf(caption, question), field, line);
  note = line.text;
  return confirmed;
}

}  // namespace orvane::kit
