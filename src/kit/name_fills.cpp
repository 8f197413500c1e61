#include "kit/name_fills.h"

#include <cassert>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/form.h"

namespace orvane::kit {
namespace {

/// A row without a name in the second language shows its first one, as the server does.
Variant NameIn(TVosClientDataSet& list, bool second) {
  const Variant name = second ? list.FieldByName("Name2").Value() : Variant();
  return name.IsEmpty() ? list.FieldByName("Name").Value() : name;
}

/// The name that belongs to the row's code; empty when the list does not know the code.
std::optional<Variant> NameOfCode(const TVosBaseForm& form, const Variant& code,
                                  const NameFill& fill, FillLanguage language) {
  if (code.IsNull()) return Variant();
  if (!fill.table.LocateKey(code)) return std::nullopt;
  const bool second = language == FillLanguage::Working && NamesLanguage(form) == 2;
  return NameIn(fill.table.DataSet(), second);
}

/// The server tells the own columns of a row that it did not take, not the names beside them.
void FollowConflicts(TVosBaseForm& form, TVosClientDataSet& rows,
                     const std::vector<NameFill>& fills, FillLanguage language) {
  assert(rows.OnReconcileError && rows.AfterApplyUpdates);
  const auto failed = std::make_shared<std::vector<Bookmark>>();
  rows.OnReconcileError = [failed, before = rows.OnReconcileError](const ReconcileError& error) {
    failed->push_back(error.row);
    return before(error);
  };
  const auto names = [&form, fills, language](const RowReader& row) {
    NamedValues found;
    for (const NameFill& fill : fills) {
      if (const auto name = NameOfCode(form, row(fill.code), fill, language))
        found.push_back({std::string(fill.name), *name});
    }
    return found;
  };
  rows.AfterApplyUpdates = [&rows, failed, names,
                            before = rows.AfterApplyUpdates](const Variant& answer) {
    before(answer);
    for (const Bookmark& row : std::exchange(*failed, {}))
      rows.NameCodes(row, names);
  };
}

}  // namespace

void FillNames(TVosBaseForm& form, TVosClientDataSet& rows, const std::vector<NameFill>& fills,
               FillLanguage language) {
  for (const NameFill& fill : fills) {
    rows.FieldByName(fill.code).OnChange = [&form, &rows, fill, language] {
      const Variant code = rows.FieldByName(fill.code).Value();
      if (const auto name = NameOfCode(form, code, fill, language))
        rows.FieldByName(fill.name).Set(*name);
    };
  }
  FollowConflicts(form, rows, fills, language);
}

int NamesLanguage(const TVosBaseForm& form) {
  return form.App().AppNotMultiLang() || form.FirstLanguage() ? 1 : 2;
}

}  // namespace orvane::kit
