#pragma once

// Saving a document's parts. The head is applied as soon as it is posted and the document is loaded
// again from the server; its rows are applied as soon as they are posted, and the columns of the
// head that this moved come back with the answer.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>

#include "data/client_dataset.h"
#include "host/dialogs.h"
#include "kit/immediate_apply.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// What differs between the heads of documents.
struct HeadApplyRules {
  AfterRefusal afterRefusal = AfterRefusal::Cancel;  ///< of a changed head; a new one stays typed
  /// The field of the head in which the server returns the identifier, sent empty for a new one;
  /// without it the identifier comes as owner data.
  std::string_view savedIdentifier = {};
  /// What the server is told beside the change; `postExisting` is false for a new document.
  std::function<Variant(bool postExisting)> ownerData;
  /// The head was saved: loads the document again. `saved` is the identifier that the server
  /// returned.
  std::function<void(const Variant& saved, bool postExisting)> reloadSaved;
  /// The change was dropped: loads what the server holds and puts the focus where it belongs.
  std::function<void()> reloadDropped;
};

/// Binds a head dataset's AfterPost, AfterDelete, BeforeApplyUpdates, AfterApplyUpdates and
/// OnReconcileError.
class DocumentHead {
 public:
  DocumentHead(TVosBaseForm& form, TVosClientDataSet& head, HeadApplyRules rules);

  /// Set by the head's BeforePost: the record being posted existed before.
  bool PostExistingRecord = false;
  /// The last apply of the head failed.
  bool ReconcileError = false;

  /// For the head's BeforePost: tells whether the record existed before, gives a new one the
  /// identifier -1 (or none) until the server numbers it, and stamps who entered it or, unless
  /// `amends` is false, who amended it. A new record that a broken link kept back is new however
  /// often it is posted. True when the record is being entered.
  bool Stamp(const FieldDef& id, bool amends = true);
  /// Posts the head, which applies it and loads the document again; false when it was not applied.
  bool Post();

 private:
  void Apply();
  ReconcileAction Reconcile(const data::ReconcileError& error);

  TVosBaseForm& form_;
  TVosClientDataSet& head_;
  HeadApplyRules rules_;
  bool dropped_ = false;
};

/// Binds a dataset of rows (or approval rows): applied at once, every change by itself, repeatedly
/// while passes apply something. The head's columns that an apply moved are shown at once. A head
/// that a broken link kept back goes before a row is begun: without a number of its own it could
/// not be told what the row belongs to.
void ApplyRowsAtOnce(TVosBaseForm& form, TVosClientDataSet& rows, TVosClientDataSet& head,
                     ImmediateApply how = {.maxErrors = -1, .form = ApplyForm::Repeated});

}  // namespace orvane::kit
