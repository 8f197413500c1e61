#include "kit/documents/document_apply.h"

#include <algorithm>
#include <utility>

#include "data/abort.h"
#include "host/form.h"

namespace orvane::kit {

DocumentHead::DocumentHead(TVosBaseForm& form, TVosClientDataSet& head, HeadApplyRules rules)
    : form_(form), head_(head), rules_(std::move(rules)) {
  head_.AfterPost = [this] { Apply(); };
  head_.AfterDelete = [this] { Apply(); };
  head_.BeforeApplyUpdates = [this] {
    ReconcileError = false;
    head_.OwnerData = rules_.ownerData(PostExistingRecord);
  };
  head_.AfterApplyUpdates = [this](const Variant& saved) {
    if (rules_.savedIdentifier.empty()) {
      if (!saved.IsNull()) rules_.reloadSaved(saved, PostExistingRecord);
    } else if (!ReconcileError) {
      rules_.reloadSaved(head_.FieldByName(rules_.savedIdentifier).Value(), PostExistingRecord);
    }
  };
  head_.OnReconcileError = [this](const data::ReconcileError& error) { return Reconcile(error); };
  form_.Keeps(head_, [this] { Apply(); });
}

bool DocumentHead::Stamp(const FieldDef& id, bool amends) {
  const VosApplication& app = form_.App();
  const bool entered = head_.State() == DataSetState::Insert;
  const bool unsaved = head_[id].AsInt().value_or(-1) < 0;
  PostExistingRecord = !entered && !unsaved;
  if (entered) {
    head_[id].Set(rules_.savedIdentifier.empty() ? Variant(-1) : Variant());
    head_.FieldByName("CreatedFrom").Set(app.UserName());
    head_.FieldByName("CreatedOn").Set(app.Now());
  } else if (!unsaved && amends) {
    head_.FieldByName("AmendFrom").Set(app.UserName());
    head_.FieldByName("AmendOn").Set(app.Now());
  }
  return entered;
}

bool DocumentHead::Post() {
  ReconcileError = false;  // a head without changes is not applied
  head_.Post();
  if (!ReconcileError) form_.SendWaiting();  // what a broken link left behind
  return !ReconcileError;
}

void DocumentHead::Apply() {
  dropped_ = false;
  ApplyChanges(form_, head_, {.maxErrors = 0, .form = ApplyForm::Once});
  if (dropped_) rules_.reloadDropped();
}

ReconcileAction DocumentHead::Reconcile(const data::ReconcileError& error) {
  // Of a new document the server holds nothing to show instead: what was typed stays.
  const bool entered = error.kind == ChangeKind::Insert;
  const ReconcileAction action = HandleReconcileError(
      form_, head_, error, entered ? AfterRefusal::Correct : rules_.afterRefusal);
  ReconcileError = true;
  dropped_ = action == ReconcileAction::Cancel || action == ReconcileAction::Refresh;
  head_.Connection()->Close();
  return action;
}

void ApplyRowsAtOnce(TVosBaseForm& form, TVosClientDataSet& rows, TVosClientDataSet& head,
                     ImmediateApply how) {
  ApplyAtOnce(form, rows, how);
  rows.BeforeInsert = [&form, &head] {
    if (head.ChangeCount() == 0) return;
    form.SendWaiting();
    if (head.Editing()) throw Abort{};  // refused
  };
  rows.AfterApplyUpdates = [&rows, &head](const Variant&) {
    head.TakeLoaded(rows.HeadMoved());
    rows.Connection()->Close();
  };
}

}  // namespace orvane::kit
