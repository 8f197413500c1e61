#include "kit/immediate_apply.h"

#include "data/abort.h"
#include "host/form.h"

namespace orvane::kit {
namespace {

constexpr int kWarning = 2;

bool MayBeRepeated(FailureKind kind) {
  return kind == FailureKind::LinkDown || kind == FailureKind::OutcomeUnknown;
}

std::string_view RetryQuestion(FailureKind kind, bool dropsUnsent) {
  if (!dropsUnsent) {
    return "Няма връзка със сървъра и промяната още не е записана. Въведеното е запазено на "
           "екрана. Желаете ли нов опит?";
  }
  return kind == FailureKind::LinkDown
             ? "Няма връзка със сървъра и решението не е записано. Желаете ли нов опит?"
             : "Връзката прекъсна и не се знае дали решението е записано. Желаете ли нов опит?";
}

/// One pass over the log; on a broken link the user decides whether it is tried again.
void ApplyOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how) {
  for (;;) {
    try {
      dataSet.ApplyUpdates(how.maxErrors);
      return;
    } catch (const ServerError& error) {
      const FailureKind kind = error.failure.kind;
      if (MayBeRepeated(kind) &&
          Confirmed(form, form.caption, RetryQuestion(kind, how.dropsUnsent)))
        continue;
      if (how.dropsUnsent && kind != FailureKind::SessionEnded) dataSet.CancelUpdates();
      if (!MayBeRepeated(kind)) throw;
      throw Abort{};
    }
  }
}

}  // namespace

void ApplyChanges(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how) {
  std::size_t before = dataSet.ChangeCount();
  while (before > 0) {
    const std::uint64_t generation = dataSet.Generation();
    ApplyOnce(form, dataSet, how);
    if (dataSet.Generation() != generation) break;
    const std::size_t left = dataSet.ChangeCount();
    const bool goesOn = how.form == ApplyForm::Repeated && left < before;
    if (!goesOn && !dataSet.HasMerged()) break;
    before = left;
  }
  if (dataSet.Connection() != nullptr) dataSet.Connection()->Close();
}

void ApplyAtOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how) {
  const auto apply = [&form, &dataSet, how] { ApplyChanges(form, dataSet, how); };
  form.Keeps(dataSet, apply);
  dataSet.AfterPost = apply;
  dataSet.AfterDelete = apply;
  dataSet.OnReconcileError = [&form, &dataSet, how](const ReconcileError& error) {
    return HandleReconcileError(form, dataSet, error, how.afterRefusal);
  };
  dataSet.AfterApplyUpdates = [&form, &dataSet, how](const Variant& told) {
    dataSet.Connection()->Close();
    if (how.tellsWarnings && !told.IsEmpty())
      VosMessageDlg(form, kWarning, form.caption, told.ToText());
  };
}

}  // namespace orvane::kit
