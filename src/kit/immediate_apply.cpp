#include "kit/immediate_apply.h"

#include "data/abort.h"
#include "host/form.h"

namespace orvane {
namespace {

constexpr int kWarning = 2;

bool MayBeRepeated(FailureKind kind) {
  return kind == FailureKind::LinkDown || kind == FailureKind::OutcomeUnknown;
}

/// One pass over the log; on a broken link the user decides whether it is tried again.
void ApplyOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, std::int32_t maxErrors) {
  for (;;) {
    try {
      dataSet.ApplyUpdates(maxErrors);
      return;
    } catch (const ServerError& error) {
      if (!MayBeRepeated(error.failure.kind)) throw;
      const bool again = Confirmed(
          form, form.caption,
          "Няма връзка със сървъра и промяната още не е записана. Въведеното е запазено на екрана. "
          "Желаете ли нов опит?");
      if (!again) throw Abort{};
    }
  }
}

}  // namespace

void ApplyChanges(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how) {
  std::size_t before = dataSet.ChangeCount();
  while (before > 0) {
    const std::uint64_t generation = dataSet.Generation();
    ApplyOnce(form, dataSet, how.maxErrors);
    if (how.form == ApplyForm::Once || dataSet.Generation() != generation) break;
    const std::size_t left = dataSet.ChangeCount();
    if (left >= before) break;
    before = left;
  }
  if (dataSet.Connection() != nullptr) dataSet.Connection()->Close();
}

void ApplyAtOnce(TVosBaseForm& form, TVosClientDataSet& dataSet, ImmediateApply how) {
  const auto apply = [&form, &dataSet, how] { ApplyChanges(form, dataSet, how); };
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

}  // namespace orvane
