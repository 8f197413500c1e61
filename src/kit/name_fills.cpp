#include "kit/name_fills.h"

#include <cassert>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/form.h"

namespace orvane {
namespace {

/// A row without a name in the second language shows its first one, as the server does.
Variant NameIn(TVosClientDataSet& list, bool second) {
  const Variant name = second ? list.FieldByName("Name2").Value() : Variant();
  return name.IsEmpty() ? list.FieldByName("Name").Value() : name;
}

/// The name that belongs to the row's code; empty when the list does not know the code.
std::optional<Variant> NameOfCode(const TVosBaseForm& form, TVosClientDataSet& rows,
                                  const NameFill& fill, FillLanguage language) {
  const Variant code = rows.FieldByName(fill.code).Value();
  if (code.IsNull()) return Variant();
  if (!fill.table.LocateKey(code)) return std::nullopt;
  const bool second = language == FillLanguage::Working && NamesLanguage(form) == 2;
  return NameIn(fill.table.DataSet(), second);
}

/// The server tells the row's own columns of a conflict, not the names beside them.
void FollowConflicts(TVosBaseForm& form, TVosClientDataSet& rows,
                     const std::vector<NameFill>& fills, FillLanguage language) {
  assert(rows.OnReconcileError && rows.AfterApplyUpdates);
  const auto conflicted = std::make_shared<bool>(false);
  rows.OnReconcileError = [conflicted,
                           before = rows.OnReconcileError](const ReconcileError& error) {
    *conflicted = true;
    return before(error);
  };
  rows.AfterApplyUpdates = [&form, &rows, fills, language, conflicted,
                            before = rows.AfterApplyUpdates](const Variant& answer) {
    before(answer);
    if (!std::exchange(*conflicted, false) || rows.Editing() || rows.IsEmpty()) return;
    for (const NameFill& fill : fills) {
      if (const auto name = NameOfCode(form, rows, fill, language))
        rows.TakeLoaded({{std::string(fill.name), *name}});
    }
  };
}

}  // namespace

void FillNames(TVosBaseForm& form, TVosClientDataSet& rows, const std::vector<NameFill>& fills,
               FillLanguage language) {
  for (const NameFill& fill : fills) {
    rows.FieldByName(fill.code).OnChange = [&form, &rows, fill, language] {
      if (const auto name = NameOfCode(form, rows, fill, language))
        rows.FieldByName(fill.name).Set(*name);
    };
  }
  FollowConflicts(form, rows, fills, language);
}

int NamesLanguage(const TVosBaseForm& form) {
  return form.App().AppNotMultiLang() || form.FirstLanguage() ? 1 : 2;
}

}  // namespace orvane
