// Moves of a purchase request and decisions on its approval rows, as the screen offers them. From
// which status and by whom a move is allowed stands in contract/purchase_request.h.

#include "host/dialogs.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"

namespace orvane::modules {

using namespace purchase_request;

namespace {

constexpr int kInformation = 1;
constexpr std::string_view _rRateIsOne =
    "Валутният курс е 1.0000000. Желаете ли промяна на валутния курс?";

constexpr ApprovalFields kApprovalFields{.level = "ConfLevelLocate"};

/// Completion is offered from every status above rejected; the server tells what is missing.
constexpr Move kOfferedCompletion = OfferedFrom(
    kComplete, StatusSet(Entered, ForApproval, PartlyApproved, Approved, Fulfilling, Completed));

/// Keeps the stamp of amendment off while it lives: an annulment is no amendment.
class WithoutAmendStamp {
 public:
  explicit WithoutAmendStamp(bool& fillAmend, bool without = true) : fillAmend_(fillAmend) {
    fillAmend_ = !without;
  }
  ~WithoutAmendStamp() { fillAmend_ = true; }
  WithoutAmendStamp(const WithoutAmendStamp&) = delete;
  WithoutAmendStamp& operator=(const WithoutAmendStamp&) = delete;

 private:
  bool& fillAmend_;
};

}  // namespace

const Face<TfPurchaseOrder> TfPurchaseOrder::kFaces[] = {
    // move, action, caption, key, what runs, icon
    {kSend, "acForConfirmation", "За одобрение", KeyCode::F9, &TfPurchaseOrder::SendForApproval,
     "send"},
    {kCorrect, "acCorrect", "Корекция", Ctrl(KeyCode::F9), &TfPurchaseOrder::MoveHead, "correct"},
    {kAnnul, "acAnnul", "Анулиране", Ctrl(KeyCode::F5), &TfPurchaseOrder::Annul, "annul"},
    {kOfferedCompletion, "acFinish", "Приключване", Ctrl(KeyCode::F), &TfPurchaseOrder::MoveHead,
     "finish"},
    {kReopen, "acUnFinish", "Премахване на приключването", Ctrl(KeyCode::U),
     &TfPurchaseOrder::MoveHead, "reopen"},
};

const DecisionFace<TfPurchaseOrder> TfPurchaseOrder::kDecisions[] = {
    // decision, action, caption, key, when, icon
    {Decision::Approve, "acConfirm", "Одобряване", KeyCode::F8, &TfPurchaseOrder::MayDecide,
     "approve"},
    {Decision::Reject, "acRefuse", "Отхвърлянe", Alt(KeyCode::F8), &TfPurchaseOrder::MayDecide,
     "reject"},
    {Decision::Withdraw, "acUnconfirm", "Премахване на одобрението", Ctrl(KeyCode::F8),
     &TfPurchaseOrder::MayRemoveApproval, "withdraw"},
    {Decision::Withdraw, "acUnRefuse", "Премахване на отхвърлянето", Shift(KeyCode::F8),
     &TfPurchaseOrder::MayRemoveRejection, "withdraw"},
};

void TfPurchaseOrder::AddWorkflow() {
  AddFaces(*this, kFaces);
  AddDecisionFaces(*this, kDecisions, &TfPurchaseOrder::DecideApproval);
}

void TfPurchaseOrder::RefreshWorkflow() {
  const DocumentFacts facts = Facts();
  RefreshFaces(*this, kFaces, facts);
  RefreshDecisionFaces(*this, kDecisions, facts);
}

DocumentFacts TfPurchaseOrder::Facts() const {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  const Variant& employee = App().vCurrentEmployee;
  return {.loaded = IsLoaded(),
          .status = values.FDocumentStatus,
          .annulled = values.FDocumentAnnulated,
          .oldVersion = head[head::OldVersion].AsBool(),
          .isChief = values.vCostCentetChief,
          .isRequester = !employee.IsNull() && head[head::Notifier].Value() == employee};
}

bool TfPurchaseOrder::MayDecide() const {
  return values.vCanConfirm && values.vConfirmationStatus == ApprovalWaiting;
}

bool TfPurchaseOrder::MayRemoveApproval() const {
  return values.vCanUnConfirm && IsGiven(values.vUnConfirmationStatus) &&
         CanUnConfDoc(dmPurchaseOrder->cdsPurchaseOrderAdm, kApprovalFields,
                      values.vUnConfirmationLevel);
}

bool TfPurchaseOrder::MayRemoveRejection() const {
  return values.vCanUnConfirm && values.vUnConfirmationStatus == ApprovalRejected;
}

// --- what the operations do ---------------------------------------------------------------------

void TfPurchaseOrder::PostMove() {
  shown_.PostMove(dmPurchaseOrder->documentHead);
  SetPropertiesVals();
}

void TfPurchaseOrder::MoveHead(const Move& move) {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  const bool completes = move.to == Completed || move.from.Has(Completed);
  const WithoutAmendStamp completing(values.FillAmend, completes);
  if (!head.Editing()) head.Edit();
  head[head::Status].Set(static_cast<int>(move.to));
  PostMove();
}

bool TfPurchaseOrder::WantsRateFirst() {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  if (dmPurchaseOrder->InNationalCurrency()) return false;
  if (head[head::RateOfExchange].AsDecimal() != Decimal(1, 0)) return false;
  return Confirmed(*this, caption, _rRateIsOne);
}

void TfPurchaseOrder::SendForApproval(const Move& move) {
  if (WantsRateFirst()) return diMainInfo.FocusField("RateOfExchange");
  MoveHead(move);
  std::string difference;
  if (dmPurchaseOrder->GetSumCheck(values.LastGetID, values.LastGetVer, difference))
    VosMessageDlg(*this, kInformation, caption, difference);
}

void TfPurchaseOrder::Annul(const Move&) {
  TVosClientDataSet& head = dmPurchaseOrder->cdsPurchaseOrder;
  const WithoutAmendStamp annulling(values.FillAmend);
  if (!head.Editing()) head.Edit();
  head[head::AnnulOn].Set(App().Now());
  head[head::AnnulFrom].Set(App().UserName());
  PostMove();
}

int TfPurchaseOrder::LevelOf(Decision decision) const {
  return decision == Decision::Withdraw ? values.vUnConfirmationLevel : values.vConfirmationLevel;
}

std::string& TfPurchaseOrder::NoteOf(Decision decision) {
  const std::string shown =
      std::to_string(values.LastGetID) + "/" + std::to_string(values.LastGetVer);
  return notes_.Of(shown, LevelOf(decision), decision);
}

void TfPurchaseOrder::DecideApproval(Decision decision) {
  Decide(dmPurchaseOrder->cdsPurchaseOrderAdm, kApprovalFields,
         {decision, LevelOf(decision), App().vCurrentEmployee, App().Now()}, NoteOf(decision));
  dmPurchaseOrder->GetRecord(Nav::ByKey, 0, values.LastGetID, values.LastGetVer);
}

}  // namespace orvane::modules
