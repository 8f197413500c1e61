// Moves of a supplier order and decisions on its approval rows, as the screen offers them. From
// which status and by whom a move is allowed stands in contract/supplier_order.h.

#include "modules/purchases/frame/orvane_msgs.h"
#include "modules/purchases/supplier_orders/tf_supp_manifac_order.h"

namespace orvane::modules {

using namespace supplier_order;

namespace {

constexpr ApprovalFields kApprovalFields{.keepsDecider = true};

}  // namespace

const Face<TfSuppManifacOrder> TfSuppManifacOrder::kFaces[] = {
    // move, action, caption, key, what runs, icon, question
    {kSend, "acForConfirmation", "За одобрение", KeyCode::F9, &TfSuppManifacOrder::MoveHead, "send",
     _rForConfirmation},
    {kCorrect, "acCorrect", "Корекция", Ctrl(KeyCode::F9), &TfSuppManifacOrder::MoveHead, "correct",
     _rCorrection},
    {kAnnul, "acAnnul", "Анулиране", Ctrl(KeyCode::F5), &TfSuppManifacOrder::Annul, "annul",
     _rAnnul},
    {kComplete, "acComplete", "Приключване", Ctrl(KeyCode::F), &TfSuppManifacOrder::MoveHead,
     "finish", _rCompletion},
    {kReopen, "acRemoveCompletion", "Премахване на приключването", Ctrl(KeyCode::U),
     &TfSuppManifacOrder::MoveHead, "reopen", _rRemoveCompletion},
};

const DecisionFace<TfSuppManifacOrder> TfSuppManifacOrder::kDecisions[] = {
    // decision, action, caption, key, when, icon, question
    {Decision::Approve, "acApprove", "Одобряване", KeyCode::F8, &TfSuppManifacOrder::MayDecide,
     "approve", _rApprove},
    {Decision::Reject, "acReject", "Отхвърлянe", Alt(KeyCode::F8), &TfSuppManifacOrder::MayDecide,
     "reject", _rReject},
    {Decision::Withdraw, "acRemoveApproval", "Премахване на одобрението", Ctrl(KeyCode::F8),
     &TfSuppManifacOrder::MayRemoveApproval, "withdraw", _rRemoveApproval},
    {Decision::Withdraw, "acRemoveRejection", "Премахване на отхвърлянето", Shift(KeyCode::F8),
     &TfSuppManifacOrder::MayRemoveRejection, "withdraw", _rRemoveRejection},
};

void TfSuppManifacOrder::AddWorkflow() {
  AddFaces(*this, kFaces);
  AddDecisionFaces(*this, kDecisions, &TfSuppManifacOrder::DecideApproval);
}

void TfSuppManifacOrder::RefreshWorkflow() {
  const DocumentFacts facts = Facts();
  RefreshFaces(*this, kFaces, facts);
  // On the order's own screen a decision needs no more than to see it.
  RefreshDecisionFaces(*this, kDecisions, facts, paOpen);
}

DocumentFacts TfSuppManifacOrder::Facts() const {
  TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  const Variant& employee = App().vCurrentEmployee;
  return {.loaded = IsLoaded() && !viewOnly,
          .status = static_cast<int>(order[head::Status].AsInt().value_or(0)),
          .annulled = !order[head::AnnulOn].IsNull(),
          .isRequester = !employee.IsNull() && order[head::Notifier].Value() == employee,
          .isOwner = dmSuppManifacOrder->IsOwner(),
          .fullAccess = dmSuppManifacOrder->part.fullAccess};
}

bool TfSuppManifacOrder::MayDecide() const {
  const OrderPart& part = dmSuppManifacOrder->part;
  return part.mayApprove && part.pendingStatus == ApprovalWaiting;
}

bool TfSuppManifacOrder::MayRemoveApproval() const {
  const OrderPart& part = dmSuppManifacOrder->part;
  return part.mayWithdraw && IsGiven(part.ownStatus);
}

bool TfSuppManifacOrder::MayRemoveRejection() const {
  const OrderPart& part = dmSuppManifacOrder->part;
  return part.mayWithdraw && part.ownStatus == ApprovalRejected;
}

// --- what the operations do ---------------------------------------------------------------------

/// Sending and correcting amend the order; completing it and taking that back do not.
void TfSuppManifacOrder::MoveHead(const Move& move) {
  TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  if (!order.Editing()) order.Edit();
  order[head::Status].Set(static_cast<int>(move.to));
  if (move.to == ForApproval || move.to == Entered) {
    order[head::AmendFrom].Set(App().UserName());
    order[head::AmendOn].Set(App().Now());
  }
  shown_.PostMove(dmSuppManifacOrder->documentHead);
}

/// Which status that gives is the server's to write.
void TfSuppManifacOrder::Annul(const Move&) {
  TVosClientDataSet& order = dmSuppManifacOrder->cdsSuppManifacOrder;
  if (!order.Editing()) order.Edit();
  order[head::AnnulFrom].Set(App().UserName());
  order[head::AnnulOn].Set(App().Now());
  shown_.PostMove(dmSuppManifacOrder->documentHead);
}

std::string& TfSuppManifacOrder::NoteOf(Decision decision) {
  return notes_.Of(std::to_string(shownId_), dmSuppManifacOrder->part.ownLevel, decision);
}

void TfSuppManifacOrder::DecideApproval(Decision decision) {
  Decide(dmSuppManifacOrder->cdsSuppManOrderAdmin, kApprovalFields,
         {decision, dmSuppManifacOrder->part.ownLevel, App().vCurrentEmployee, App().Now()},
         NoteOf(decision));
  dmSuppManifacOrder->GetRecord(Nav::ByKey, 0, eIdNumber.Text());
}

}  // namespace orvane::modules
