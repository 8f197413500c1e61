#include "kit/register_screen.h"

#include <utility>

#include "data/abort.h"
#include "host/combo.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane {

void RegisterScreen::AddTo() {
  const auto add = [this](std::string_view name, std::string_view caption, KeyStroke key,
                          std::string_view icon, std::function<void()> execute) {
    TAction action;
    action.name = name;
    action.caption = caption;
    action.shortcut = key;
    action.icon = icon;
    action.OnExecute = std::move(execute);
    form_.AddAction(std::move(action));
  };
  add("acDelete", "Изтриване", KeyCode::F5, "delete", [this] { Delete(); });
  add("acPrint", "Печат", KeyCode::F7, "print", [this] { Print(); });
  add("acCancel", "Отказ", Ctrl(KeyCode::Z), "cancel", [this] {
    grid_.CloseEditor();
    grid_.DataSet().Cancel();
  });
  add("acSearchByCode", "Търсене", KeyCode::F2, "search", [this] {
    TVosMTCombo& combo = FocusedCombo();
    combo.DoSearch(combo.GetLookupField(), false);
  });
  add("acSearchByName", "Търсене по име", Shift(KeyCode::F2), "search",
      [this] { FocusedCombo().SearchByName(); });
  add("acSearchByPartName", "Търсене по част от име", Ctrl(KeyCode::F2), "search",
      [this] { FocusedCombo().SearchByPartName(); });
  AddHostActions(form_);

  form_.ribbon = {{"Операции",
                   {{"Операции", {"acPrint", "acCancel", "acDelete"}},
                    {"Търсене", {"acSearchByName", "acSearchByPartName", "acSearchByCode"}},
                    {"Изход", {"acExit"}}}}};
  form_.layout = ColumnOf({Of(grid_, 1)});
}

void RegisterScreen::StateChange() {
  const bool inserting = grid_.DataSet().State() == DataSetState::Insert;
  form_.SetVosFormStatus(fsInserting, inserting);
  grid_.readOnly = !inserting && !form_.May(paEdit);
}

void RegisterScreen::ChangeAccess() {
  grid_.canInsert = form_.May(paInsert);
  grid_.insertWhenReadOnly = true;
  StateChange();
}

void RegisterScreen::Delete() {
  TVosClientDataSet& dataSet = grid_.DataSet();
  if (dataSet.IsEmpty()) return;
  if (!Confirmed(form_, _rDeleteCaption, _rDeleteText)) return;
  dataSet.Delete();
}

void RegisterScreen::Print() {
  const int variant =
      form_.App().AppNotMultiLang() ? report_.variantOneLanguage : report_.variantTwoLanguages;
  GenerateReport(form_, {kRegisterReportGroup, report_.number, variant}, grid_);
}

TVosMTCombo& RegisterScreen::FocusedCombo() const {
  Control* control = form_.ActiveControl();
  TVosMTCombo* combo = control == nullptr ? nullptr : control->ActiveCombo();
  if (combo == nullptr) throw Abort{};
  return *combo;
}

std::string LanguageTitle(const TVosBaseForm& form, std::string_view label, int language) {
  return std::string(label) + " (" + form.App().LanguageName(language) + ")";
}

void ChooseLanguageColumns(const TVosBaseForm& form, TVosDBGrid& grid,
                           const LanguageColumns& columns) {
  if (form.App().AppNotMultiLang()) {
    for (std::string_view field : columns.secondOnly)
      grid.RemoveColumn(field);
    return;
  }
  for (std::string_view field : columns.firstOnly)
    grid.RemoveColumn(field);
  for (const LanguageColumn& column : columns.titled) {
    TField& field = grid.DataSet().FieldByName(column.field);
    field.DisplayLabel = LanguageTitle(form, "Име", column.language);
    if (GridColumn* shown = grid.FindColumn(column.field)) shown->title = field.DisplayLabel;
  }
}

}  // namespace orvane
